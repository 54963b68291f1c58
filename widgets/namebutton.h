// SPDX-License-Identifier: MIT
#pragma once

#include <QPushButton>

/// A button whose text is something's name. An ampersand in it is drawn and makes no shortcut, and
/// a name that is too long for the button is elided, so that it never widens a page. text() stays
/// the name as it is.
class NameButton : public QPushButton
{
    Q_OBJECT

public:
    explicit NameButton(QWidget *parent = nullptr);

    /// Shows `name`, which a screen reader says as well.
    void setName(const QString &name);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void initStyleOption(QStyleOptionButton *option) const override;

private:
    QSize sizeFor(int textWidth) const;
};
