// SPDX-License-Identifier: MIT
#include "widgets/namebutton.h"

#include <QKeySequence>
#include <QStyleOptionButton>

void NameButton::setName(const QString &name)
{
    setText(name);
    // setText() takes an ampersand for the mark of a shortcut, and so does the accessible name
    // that is derived from the text.
    setShortcut(QKeySequence());
    setAccessibleName(name);
}

void NameButton::initStyleOption(QStyleOptionButton *option) const
{
    QPushButton::initStyleOption(option);
    option->text.replace(QLatin1Char('&'), QLatin1String("&&"));
}
