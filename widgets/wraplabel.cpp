// SPDX-License-Identifier: MIT
#include "widgets/wraplabel.h"

#include <QPainter>
#include <QStyle>

namespace {

constexpr int wrapAnywhere = Qt::TextWordWrap | Qt::TextWrapAnywhere;
// Lower than any text gets.
constexpr int unboundedHeight = 1 << 20;

} // namespace

WrapLabel::WrapLabel(QWidget *parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
}

QSize WrapLabel::sizeHint() const
{
    const int margins = 2 * margin();
    return fontMetrics().size(0, text()) + QSize(margins, margins);
}

QSize WrapLabel::minimumSizeHint() const
{
    const int margins = 2 * margin();
    return {fontMetrics().averageCharWidth() + margins, fontMetrics().height() + margins};
}

bool WrapLabel::hasHeightForWidth() const
{
    return true;
}

int WrapLabel::heightForWidth(int width) const
{
    const int margins = 2 * margin();
    const QRect room(0, 0, width - margins, unboundedHeight);
    return fontMetrics().boundingRect(room, wrapAnywhere, text()).height() + margins;
}

void WrapLabel::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    style()->drawItemText(
        &painter, contentsRect().marginsRemoved(QMargins(margin(), margin(), margin(), margin())),
        static_cast<int>(alignment()) | wrapAnywhere, palette(), isEnabled(), text(),
        foregroundRole());
}
