// SPDX-License-Identifier: MIT
#include "widgets/trlistdelegate.h"

#include <QPainter>
#include <QTextOption>

#include "widgets/contrast.h"
#include "widgets/listrow.h"
#include "widgets/pictures.h"
#include "widgets/wrappingbutton.h"

using namespace Qt::StringLiterals;

namespace {

// Pixels.
constexpr int roomAboveAndBelowText = 9;
constexpr int gapBesideColumn = 2;
constexpr int gapBetweenColumns = 10;
constexpr int columns = 3; // the second column takes the last third

void drawElided(QPainter *painter, const QRect &rect, const QString &text,
                const QTextOption &option)
{
    const QString elided = painter->fontMetrics().elidedText(TextBreaking::shownPart(text),
                                                             Qt::ElideRight, rect.width());
    painter->drawText(QRectF(rect), elided, option);
}

} // namespace

TrListDelegate::TrListDelegate(QObject *parent)
    : QStyledItemDelegate(parent)
    , checked(Pictures::icon(u":/img/check-aqua.svg"_s))
    , unchecked(Pictures::icon(u":/img/uncheck-aqua.svg"_s))
{}

TrListDelegate::~TrListDelegate() = default;

void TrListDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                           const QModelIndex &index) const
{
    const QRect &rect = option.rect;
    const int width = rect.width();
    const int height = rect.height();
    painter->save();
    painter->setRenderHint(QPainter::TextAntialiasing);

    QPen pen = painter->pen();
    pen.setColor(option.palette.color(QPalette::WindowText));
    pen.setWidth(0);
    painter->setPen(pen);
    if (index.row() > 0) {
        // One device pixel high. A line would look the same, but Qt draws it pixel by pixel.
        const qreal pixel = 1 / painter->device()->devicePixelRatio();
        painter->fillRect(QRectF(rect.x(), rect.y(), width, pixel), pen.color());
    }

    if (option.state & QStyle::State_Selected) {
        painter->fillRect(rect, option.palette.brush(QPalette::Highlight));
        // Selected texts are not readable with the palette of every desktop.
        pen.setColor(Contrast::readable(option.palette.color(QPalette::HighlightedText),
                                        option.palette.color(QPalette::Highlight)));
        painter->setPen(pen);
    }

    QFont font = option.font;
    int left = 0;
    if (index.data(CheckableRole).toBool()) {
        left = height + gapBesideColumn;
        const bool isChecked = index.data(Qt::CheckStateRole).toInt() == Qt::Checked;
        font.setStrikeOut(isChecked || font.strikeOut());
        const QRect square(rect.x(), rect.y(), height, height);
        painter->drawPixmap(square,
                            (isChecked ? checked : unchecked)
                                .pixmap(square.size(), painter->device()->devicePixelRatio(),
                                        QIcon::Normal, QIcon::On));
    }
    painter->setFont(font);

    const QString text = index.data(Qt::DisplayRole).toString();
    const QVariant shown = index.data(ShownSecondRole);
    const QString second = (shown.isValid() ? shown : index.data(SecondColumnRole)).toString();
    QTextOption alignment(Qt::AlignLeft | Qt::AlignVCenter);
    alignment.setWrapMode(QTextOption::NoWrap);
    if (second.isEmpty()) {
        drawElided(painter, rect.adjusted(left, 0, 0, 0), text, alignment);
    } else {
        const int third = width / columns;
        const QRect first = rect.adjusted(left, 0, -(third + gapBesideColumn), 0);
        drawElided(painter, first.adjusted(0, 0, -gapBetweenColumns, 0), text, alignment);
        if (option.fontMetrics.horizontalAdvance(TextBreaking::shownPart(second)) < third)
            alignment.setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        font.setItalic(true);
        font.setPointSize(font.pointSize() - 1);
        painter->setFont(font);
        const int secondLeft = width * (columns - 1) / columns + gapBesideColumn;
        drawElided(painter, rect.adjusted(secondLeft, 0, 0, 0), second, alignment);
    }
    painter->restore();
}

QSize TrListDelegate::sizeHint(const QStyleOptionViewItem &option,
                               const QModelIndex & /*index*/) const
{
    return {option.rect.width(), option.fontMetrics.height() + roomAboveAndBelowText};
}

void TrListDelegate::closeAndCommitEditor() {}
