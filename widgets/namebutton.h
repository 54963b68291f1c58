// SPDX-License-Identifier: MIT
#pragma once

#include <QPushButton>

/// A button whose text is something's name: an ampersand in it is drawn, and makes no shortcut.
/// text() stays the name as it is.
class NameButton : public QPushButton
{
    Q_OBJECT

public:
    using QPushButton::QPushButton;

    void setName(const QString &name);

protected:
    void initStyleOption(QStyleOptionButton *option) const override;
};
