// SPDX-License-Identifier: MIT
#include "widgets/namebutton.h"

#include <algorithm>

#include <QKeySequence>
#include <QStyle>
#include <QStyleOptionButton>
#include <QStylePainter>

#include "widgets/controls.h"
#include "widgets/turningpage.h"
#include "widgets/wrappingbutton.h"

using namespace Qt::StringLiterals;

namespace {

/// Width in characters that is enough to distinguish most names.
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

/// Returns the width of the part of the name that is never elided.
int NameButton::requiredTextWidth() const
{
    const int least = leastCharacters * fontMetrics().averageCharWidth();
    return std::min(least, fontMetrics().horizontalAdvance(TextBreaking::shownPart(text())));
}

QSize NameButton::minimumSizeHint() const
{
    return sizeFor(TextBreaking::requiredWidth(this, requiredTextWidth()));
}

int NameButton::roomForText() const
{
    constexpr int wide = 1000; // more than the minimum width of a button in any style
    return width() - (sizeFor(wide).width() - wide);
}

QFont NameButton::drawnFont() const
{
    return TurningPage::isTight(this)
               ? TextBreaking::fitting(font(), requiredTextWidth(), roomForText())
               : font();
}

void NameButton::initStyleOption(QStyleOptionButton *option) const
{
    QPushButton::initStyleOption(option);
    option->fontMetrics = QFontMetrics(drawnFont());
    option->text = option->fontMetrics.elidedText(TextBreaking::shownPart(text()), Qt::ElideRight,
                                                  roomForText());
    option->text.replace(QLatin1Char('&'), "&&"_L1);
}

void NameButton::paintEvent(QPaintEvent * /*event*/)
{
    QStyleOptionButton option;
    initStyleOption(&option);
    QStylePainter painter(this);
    painter.setFont(drawnFont());
    painter.drawControl(QStyle::CE_PushButton, option);
}
