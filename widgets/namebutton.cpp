// SPDX-License-Identifier: MIT
#include "widgets/namebutton.h"

#include <algorithm>

#include <QKeySequence>
#include <QStyle>
#include <QStyleOptionButton>

#include "widgets/controls.h"

using namespace Qt::StringLiterals;

namespace {

/// Enough to tell most names from each other.
constexpr int leastCharacters = 17;

} // namespace

NameButton::NameButton(QWidget *parent)
    : QPushButton(parent)
{
    // A layout takes the size hint of a button for its least size else.
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setProperty(Controls::leadsOnProperty, true);
}

void NameButton::setName(const QString &name)
{
    setText(name);
    // setText() takes an ampersand for the mark of a shortcut, and so does the accessible name
    // that is derived from the text.
    setShortcut(QKeySequence());
    setAccessibleName(name);
}

QSize NameButton::sizeFor(int textWidth) const
{
    QStyleOptionButton option;
    QPushButton::initStyleOption(&option);
    const QSize contents(textWidth, fontMetrics().height());
    return style()->sizeFromContents(QStyle::CT_PushButton, &option, contents, this);
}

QSize NameButton::sizeHint() const
{
    // Qt's own hint takes an ampersand for a mark that has no width.
    return sizeFor(fontMetrics().horizontalAdvance(text()));
}

QSize NameButton::minimumSizeHint() const
{
    const int least = leastCharacters * fontMetrics().averageCharWidth();
    return sizeFor(std::min(least, fontMetrics().horizontalAdvance(text())));
}

void NameButton::initStyleOption(QStyleOptionButton *option) const
{
    QPushButton::initStyleOption(option);
    constexpr int wide = 1000; // wider than the least width of any style's button
    const int room = width() - (sizeFor(wide).width() - wide);
    option->text = fontMetrics().elidedText(text(), Qt::ElideRight, room);
    option->text.replace(QLatin1Char('&'), "&&"_L1);
}
