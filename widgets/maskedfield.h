// SPDX-License-Identifier: MIT
#pragma once

#include <QClipboard>
#include <QElapsedTimer>
#include <QLineEdit>

/// Field with an input mask for a number. A number that the mask cannot hold is shown without the
/// mask, and kept until the user types another one. A comma is a decimal point, digits of any
/// script can be pasted, and a sign can be added to existing digits.
class MaskedField : public QLineEdit
{
    Q_OBJECT

public:
    explicit MaskedField(const QString &mask, QWidget *parent = nullptr);

    /// Shows `text`, a number or nothing. Decimals beyond those of the mask are shown rounded.
    void setValue(const QString &text);
    /// Returns what was set, although it may be shown rounded, or what was typed since.
    QString value() const;
    /// Returns whether the field shows a number that the mask cannot hold.
    bool exceedsMask() const;
    /// Empties the field, and ignores the rest of the number that is being typed.
    void refuse();

    /// Returns the size for everything that the mask can hold.
    QSize minimumSizeHint() const override;

signals:
    /// A digit was typed before the point for which the mask has no room. It was ignored.
    void tooManyDigits();
    /// The clipboard contains two numbers, which are not pasted into this field.
    void pairPasted(const QString &first, const QString &second);

protected:
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    void takeTyped(const QString &typed);
    void takeForeignText(const QString &text);
    bool showNumber(const QString &text);
    void showBlank();
    bool isBlank() const;
    qsizetype pointOfMask() const;
    bool isIgnoredAfterRefusal(const QString &key);
    bool takeKey(const QString &key);
    void paste(QClipboard::Mode mode);

    const QString mask;
    QString given;
    /// text() as this class or the user has made it.
    QString knownText;
    /// The last key was the digit before the point.
    bool wholeIsFull = false;
    bool isShowing = false;
    /// Time since the last key of a refused number; invalid if none was refused.
    QElapsedTimer sinceRefused;
};
