// SPDX-License-Identifier: MIT
#include "widgets/namebutton.h"

#include <algorithm>

#include <QKeySequence>
#include <QStyle>
#include <QStyleOptionButton>

#include "widgets/controls.h"
#include "widgets/wrappingbutton.h"

using namespace Qt::StringLiterals;

namespace {

/// Minimum width in characters, which is enough to distinguish most names.
constexpr int leastCharacters = 17;

} // namespace

NameButton::NameButton(QWidget *parent)
    : QPushButton(parent)
{
    // With the size policy of QPushButton, a layout would not make it narrower than its size hint.
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setProperty(Controls::leadsOnProperty, true);
}

void NameButton::setName(const QString &name)
{
    setText(name);
    // An ampersand in the text sets a shortcut, and is missing in the accessible name that Qt
    // derives from the text.
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
    // The size hint of QPushButton has no room for an ampersand, which it takes for a mnemonic.
    return sizeFor(fontMetrics().horizontalAdvance(TextBreaking::shownPart(text())));
}

QSize NameButton::minimumSizeHint() const
{
    const int least = leastCharacters * fontMetrics().averageCharWidth();
    return sizeFor(
        std::min(least, fontMetrics().horizontalAdvance(TextBreaking::shownPart(text()))));
}

void NameButton::initStyleOption(QStyleOptionButton *option) const
{
    QPushButton::initStyleOption(option);
    constexpr int wide = 1000; // more than the minimum width of a button in any style
    const int room = width() - (sizeFor(wide).width() - wide);
    option->text = fontMetrics().elidedText(TextBreaking::shownPart(text()), Qt::ElideRight, room);
    option->text.replace(QLatin1Char('&'), "&&"_L1);
}
