// SPDX-License-Identifier: MIT
#include "widgets/touchlist.h"

#include <algorithm>
#include <utility>

#include <QAccessible>
#include <QFocusEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QShowEvent>
#include <QSignalBlocker>

#include "widgets/listrow.h"
#include "widgets/pictures.h"
#include "widgets/TrKineticScroller.h"

namespace {

// Device-independent pixels.
constexpr int gapBesideRow = 3; // above and below it
constexpr int besideRows = 8;   // left and right of them, with the frame 14
constexpr int selectionBesideRow = 10;
constexpr int selectionRadius = 10;
constexpr int selectionLine = 2;
/// Keeps the rounded ends of a selection that is partly scrolled away out of sight.
constexpr int pillOverhang = 100;
constexpr int placeholderExtent = 96;
constexpr qreal placeholderOpacity = 0.45;

} // namespace

TouchList::TouchList(QWidget *parent)
    : QListWidget(parent)
    , scroller(new TrKineticScroller(this))
{
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setAutoScroll(false);
    setAlternatingRowColors(true); // which the program's own style does not show
    setUniformItemSizes(true);
    setSpacing(gapBesideRow);
    scroller->enableKineticScrollFor(this);
}

bool TouchList::wasTappedAgain(const QListWidgetItem &row, int &lastTapped)
{
    const int id = rowId(row);
    const bool again = id == lastTapped;
    lastTapped = id;
    return again;
}

void TouchList::showRows(const QList<QListWidgetItem *> &rows)
{
    clear();
    QAbstractItemModel *items = model();
    {
        // Told of each row, the view spends more time on that than on anything else.
        const QSignalBlocker blocker(items);
        for (QListWidgetItem *row : rows)
            addItem(row);
    }
    emit items->layoutChanged();
}

void TouchList::moveRow(int from, int to)
{
    {
        // The view would lay out all rows anew, though they are as many and as high as before.
        const QSignalBlocker blocker(model());
        insertItem(to, takeItem(from));
    }
    viewport()->update();
    if (QAccessible::isActive()) {
        // What a screen reader has been told of the rows is of other ones now.
        QAccessibleTableModelChangeEvent event(this, QAccessibleTableModelChangeEvent::ModelReset);
        QAccessible::updateAccessibility(&event);
    }
}

void TouchList::chooseInPlace(int row)
{
    const QScopedValueRollback guard(staysInPlace, true);
    setCurrentRow(row);
}

void TouchList::setPlaceholder(const QString &picture, const QString &text)
{
    placeholderPicture = picture;
    placeholderText = text;
}

/// The margins belong to the rows, which the selection shows. The gaps between rows belong to the
/// rows beside them: a finger in a gap means one of them.
QModelIndex TouchList::indexAt(const QPoint &position) const
{
    const int x = std::clamp(position.x(), besideRows,
                             std::max(besideRows, viewport()->width() - besideRows - 1));
    for (const int offset : {0, -2 * gapBesideRow, 2 * gapBesideRow}) {
        const QModelIndex index = QListWidget::indexAt({x, position.y() + offset});
        if (index.isValid())
            return index;
    }
    return {};
}

QRect TouchList::visualRect(const QModelIndex &index) const
{
    const QRect rect = QListWidget::visualRect(index);
    return rect.isValid()
               ? rect.adjusted(besideRows - gapBesideRow, 0, gapBesideRow - besideRows, 0)
               : rect;
}

/// The delegate fills its own rectangle only; the selection is wider and has rounded corners.
void TouchList::paintEvent(QPaintEvent *event)
{
    {
        QPainter painter(viewport());
        painter.setRenderHint(QPainter::Antialiasing);
        if (count() == 0 && !placeholderText.isEmpty())
            paintPlaceholder(painter);
        for (const QModelIndex &index : selectedIndexes()) {
            const QRectF pill =
                QRectF(visualRect(index))
                    .adjusted(-selectionBesideRow, -gapBesideRow + 1, selectionBesideRow,
                              gapBesideRow - 1)
                    .intersected(
                        QRectF(viewport()->rect()).adjusted(0, -pillOverhang, 0, pillOverhang));
            painter.setBrush(palette().brush(QPalette::Highlight));
            painter.setPen(QPen(palette().color(QPalette::Link), selectionLine));
            constexpr qreal half = selectionLine / 2.0;
            painter.drawRoundedRect(pill.adjusted(half, half, -half, -half), selectionRadius,
                                    selectionRadius);
        }
    }
    QListWidget::paintEvent(event);
}

void TouchList::paintPlaceholder(QPainter &painter) const
{
    const QFontMetrics metrics = window()->fontMetrics();
    const QRect room = viewport()->rect().adjusted(besideRows, 0, -besideRows, 0);
    const QRect text = metrics.boundingRect(QRect(0, 0, room.width(), room.height()),
                                            Qt::AlignHCenter | Qt::TextWordWrap, placeholderText);
    const int top = room.center().y() - (placeholderExtent + metrics.descent() + text.height()) / 2;
    painter.setOpacity(placeholderOpacity);
    Pictures::icon(placeholderPicture)
        .paint(&painter, QRect(room.center().x() - placeholderExtent / 2, top, placeholderExtent,
                               placeholderExtent));
    painter.setOpacity(1);
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.setFont(window()->font());
    painter.drawText(QRect(room.left(), top + placeholderExtent + metrics.descent(), room.width(),
                           text.height()),
                     Qt::AlignHCenter | Qt::TextWordWrap, placeholderText);
}

/// The view repaints rows, and the selection is higher than a row.
void TouchList::selectionChanged(const QItemSelection &selected, const QItemSelection &deselected)
{
    QListWidget::selectionChanged(selected, deselected);
    viewport()->update();
}

QSize TouchList::minimumSizeHint() const
{
    constexpr int characters = 12;
    constexpr int rows = 3;
    return {characters * fontMetrics().averageCharWidth(), rows * fontMetrics().height()};
}

/// All rows are as high and as wide whatever they show, so for one row the view need not lay out
/// all.
void TouchList::dataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                            const QList<int> &roles)
{
    if (topLeft == bottomRight) {
        // NOLINTNEXTLINE(bugprone-parent-virtual-call)
        QAbstractItemView::dataChanged(topLeft, bottomRight, roles);
    } else {
        QListWidget::dataChanged(topLeft, bottomRight, roles);
    }
}

void TouchList::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    QListWidget::currentChanged(current, previous);
    // The row under the finger is in view already; moving it away would upset the drag.
    if (staysInPlace || !current.isValid())
        return;
    if (isVisible())
        scrollTo(current);
    else
        scrollWhenShown = true;
}

void TouchList::focusInEvent(QFocusEvent *event)
{
    if (currentIndex().isValid()) {
        QListWidget::focusInEvent(event);
        return;
    }
    // The view would make its first row current, which nobody chose.
    QAbstractScrollArea::focusInEvent(event); // NOLINT(bugprone-parent-virtual-call)
    viewport()->update();
}

void TouchList::ignoreDoubleTap()
{
    movingPress = press;
}

/// The view would choose the row already now, though the finger may be about to drag it.
void TouchList::mousePressEvent(QMouseEvent *event)
{
    pressedRow = QModelIndex();
    if (event->button() != Qt::LeftButton || movingPress.isFirstOfTwo(*event))
        return;
    press = TapPress(*event);
    pressedRow = indexAt(event->position().toPoint());
}

/// Two quick taps are two taps.
void TouchList::mouseDoubleClickEvent(QMouseEvent *event)
{
    mousePressEvent(event);
}

/// The view would choose the rows that the finger passes.
void TouchList::mouseMoveEvent(QMouseEvent * /*event*/) {}

void TouchList::mouseReleaseEvent(QMouseEvent *event)
{
    const QModelIndex row = std::exchange(pressedRow, QModelIndex());
    if (event->button() != Qt::LeftButton || !row.isValid() || !scroller->isTap() ||
        indexAt(event->position().toPoint()) != row)
        return;
    chooseInPlace(row.row());
    emit clicked(row);
}

void TouchList::showEvent(QShowEvent *event)
{
    QListWidget::showEvent(event);
    if (scrollWhenShown)
        scrollTo(currentIndex());
    scrollWhenShown = false;
}
