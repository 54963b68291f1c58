// SPDX-License-Identifier: MIT
#include "widgets/wraplabel.h"

#include <algorithm>
#include <cmath>

#include <QPainter>
#include <QRegularExpression>
#include <QTextLayout>

#include "widgets/wrappingbutton.h"

namespace {

/// Breaks the text of `layout` into lines for `width` and returns their common height.
qreal breakLines(QTextLayout &layout, int width, Qt::Alignment alignment)
{
    QTextOption option(alignment);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    qreal height = 0;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        line.setPosition(QPointF(0, height));
        height += line.height();
    }
    layout.endLayout();
    return height;
}

/// Returns the shown part of `text`, with line separators for newlines, because QTextLayout breaks
/// only at the former.
QString laidOutText(const QString &text)
{
    return TextBreaking::shownPart(text).replace(QLatin1Char('\n'), QChar::LineSeparator);
}

} // namespace

WrapLabel::WrapLabel(QWidget *parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
}

void WrapLabel::setLeastCharacters(int characters)
{
    leastCharacters = characters;
    updateGeometry();
}

QSize WrapLabel::sizeHint() const
{
    return fontMetrics().size(0, TextBreaking::shownPart(text()));
}

QSize WrapLabel::minimumSizeHint() const
{
    const int least = leastCharacters * fontMetrics().averageCharWidth();
    return {TextBreaking::requiredWidth(this, least), fontMetrics().height()};
}

bool WrapLabel::hasHeightForWidth() const
{
    return true;
}

/// Returns the font in which no word is wider than `width`, if that is not much smaller than the
/// font of the label.
QFont WrapLabel::fontFor(int width) const
{
    static const QRegularExpression between(QStringLiteral("\\s|(?<=[-/])"));
    int widest = 0;
    for (const QString &word : TextBreaking::shownPart(text()).split(between))
        widest = std::max(widest, fontMetrics().horizontalAdvance(word));
    return width < TextBreaking::smallest * widest ? font()
                                                   : TextBreaking::fitting(font(), widest, width);
}

/// Breaks the text of `layout` like breakLines(), in a smaller font if a word is too wide.
qreal WrapLabel::layOut(QTextLayout &layout, int width) const
{
    const qreal height = breakLines(layout, width, alignment());
    if (layout.lineCount() < 2) // no word is too wide, and measuring them would take longer
        return height;
    layout.setFont(fontFor(width));
    return breakLines(layout, width, alignment());
}

int WrapLabel::heightForWidth(int width) const
{
    QTextLayout layout(laidOutText(text()), font(), this);
    return static_cast<int>(std::ceil(layOut(layout, width)));
}

void WrapLabel::paintEvent(QPaintEvent * /*event*/)
{
    QTextLayout layout(laidOutText(text()), font(), this);
    const qreal height = layOut(layout, width());
    qreal top = 0;
    if (alignment() & Qt::AlignVCenter)
        top = (this->height() - height) / 2;
    else if (alignment() & Qt::AlignBottom)
        top = this->height() - height;
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    layout.draw(&painter, QPointF(0, top));
}

void WrapLabel::resizeEvent(QResizeEvent *event)
{
    QLabel::resizeEvent(event);
    // A layout may have used the height for another width. updateGeometry() makes it ask again.
    if (height() < heightForWidth(width()))
        updateGeometry();
}
