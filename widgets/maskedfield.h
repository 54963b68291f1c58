// SPDX-License-Identifier: MIT
#pragma once

#include <QClipboard>
#include <QLineEdit>

/// A field with an input mask for a number. A value that the mask cannot hold is not shown cut: the
/// field stays empty and keeps the value until the person types another. A comma is a decimal
/// point, and a sign can be put to digits that are there.
class MaskedField : public QLineEdit
{
    Q_OBJECT

public:
    explicit MaskedField(const QString &mask, QWidget *parent = nullptr);

    /// Shows `text`, a number or nothing. Decimals beyond those of the mask are shown rounded.
    void setValue(const QString &text);
    /// What was set, whether shown or not, or what was typed since.
    QString value() const;
    /// There is a value that does not show.
    bool hidesValue() const;

    /// Wide enough for all that the mask holds.
    QSize minimumSizeHint() const override;

protected:
    void focusInEvent(QFocusEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    bool showNumber(const QString &text);
    bool isBlank() const;
    qsizetype pointOfMask() const;
    bool takeKey(const QString &key);
    void paste(QClipboard::Mode mode);

    QString given;
    /// What text() was when the value was set.
    QString shownText;
    /// The last key was the digit before the point.
    bool wholeIsFull = false;
};
