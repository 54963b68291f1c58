// SPDX-License-Identifier: MIT
#pragma once

#include <QLineEdit>

/// A field with an input mask for a number. A value that the mask cannot hold is not shown cut: the
/// field stays empty and keeps the value until the person types. A comma is a decimal point.
class MaskedField : public QLineEdit
{
    Q_OBJECT

public:
    explicit MaskedField(const QString &mask, QWidget *parent = nullptr);

    /// Shows `text`, a number or nothing. Decimals beyond those of the mask are shown rounded.
    void setValue(const QString &text);
    /// What was set, whether shown or not, or what was typed since.
    QString value() const;

    /// Wide enough for all that the mask holds.
    QSize minimumSizeHint() const override;

protected:
    void inputMethodEvent(QInputMethodEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;

private:
    QString given;
};
