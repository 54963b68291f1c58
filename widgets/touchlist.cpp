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

using namespace Qt::StringLiterals;

namespace {

// Device-independent pixels.
constexpr int gapBesideRow = 3; // above and below each row
constexpr int besideRows = 8;   // left and right of the rows; 14 with the frame
constexpr int selectionBesideRow = 10;
constexpr int selectionRadius = 10;
constexpr int selectionLine = 2;
/// A selection that is partly scrolled away is drawn up to this distance outside of the viewport,
/// so that its rounded corners are not visible.
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
    setAlternatingRowColors(true); // TouchStyle does not draw them
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
        // Notifying the view of each row would take most of the time.
        const QSignalBlocker blocker(items);
        for (QListWidgetItem *row : rows)
            addItem(row);
    }
    emit items->layoutChanged();
    tellPlaceholder(); // before the list gets the focus
}

void TouchList::moveRow(int from, int to, Qt::CheckState checkState)
{
    {
        // The view would lay out all rows again, although their number and heights do not change.
        const QSignalBlocker blocker(model());
        QListWidgetItem *row = takeItem(from);
        row->setCheckState(checkState); // a row of a list would look for its index first
        insertItem(to, row);
    }
    viewport()->update();
    if (QAccessible::isActive()) {
        // The view does not know of the change, so it does not notify screen readers.
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

/// Also returns a row for positions in the side margins, which the selection covers, and in the
/// gaps between rows, because a tap in a gap is meant for one of the rows beside it.
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

/// Draws the selection below the rows. The delegate fills only its own rectangle, but the selection
/// is wider and has rounded corners.
void TouchList::paintEvent(QPaintEvent *event)
{
    {
        QPainter painter(viewport());
        painter.setRenderHint(QPainter::Antialiasing);
        if (count() == 0 && !placeholderText.isEmpty())
            paintPlaceholder(painter);
        tellPlaceholder();
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

/// Lets screen readers tell what the list shows.
void TouchList::tellPlaceholder()
{
    const QString told = count() == 0 ? placeholderText : QString();
    if (accessibleDescription() != told)
        setAccessibleDescription(told);
}

void TouchList::paintPlaceholder(QPainter &painter) const
{
    const QFontMetrics metrics = window()->fontMetrics();
    const QRect room = viewport()->rect().adjusted(besideRows, 0, -besideRows, 0);
    // Where one line is too short, each sentence has its own.
    QString sentences = placeholderText;
    if (metrics.horizontalAdvance(sentences) > room.width())
        sentences.replace(u". "_s, u".\n"_s);
    const QRect text = metrics.boundingRect(QRect(0, 0, room.width(), room.height()),
                                            Qt::AlignHCenter | Qt::TextWordWrap, sentences);
    const int pictureHeight = placeholderExtent + metrics.descent();
    const bool hasRoom = pictureHeight + text.height() <= room.height();
    const int height = (hasRoom ? pictureHeight : 0) + text.height();
    int top = std::max(room.center().y() - height / 2, room.top());
    if (hasRoom) { // a large text takes the room of the picture
        painter.setOpacity(placeholderOpacity);
        Pictures::icon(placeholderPicture)
            .paint(&painter, QRect(room.center().x() - placeholderExtent / 2, top,
                                   placeholderExtent, placeholderExtent));
        painter.setOpacity(1);
        top += pictureHeight;
    }
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.setFont(window()->font());
    painter.drawText(QRect(room.left(), top, room.width(), text.height()),
                     Qt::AlignHCenter | Qt::TextWordWrap, sentences);
}

/// Repaints the viewport, because the view repaints only rows and the selection is higher.
void TouchList::selectionChanged(const QItemSelection &selected, const QItemSelection &deselected)
{
    QListWidget::selectionChanged(selected, deselected);
    viewport()->update();
}

QSize TouchList::minimumSizeHint() const
{
    constexpr int characters = 10;
    constexpr int rows = 3;
    return {characters * fontMetrics().averageCharWidth(), rows * fontMetrics().height()};
}

/// If only one row has changed, skips QListView, which would lay out all rows again. The size of a
/// row does not depend on its contents.
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
    // chooseInPlace() must not scroll: a tapped row is visible, and the tracked list keeps its
    // scroll position.
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
    // QAbstractItemView would make the first row current, although nobody has selected it.
    QAbstractScrollArea::focusInEvent(event); // NOLINT(bugprone-parent-virtual-call)
    viewport()->update();
}

void TouchList::ignoreDoubleTap()
{
    movingPress = press;
}

/// Does not call the base class, which would select the row at the press, although the finger may
/// start a drag.
void TouchList::mousePressEvent(QMouseEvent *event)
{
    pressedRow = QModelIndex();
    if (event->button() != Qt::LeftButton || movingPress.isFirstOfTwo(*event))
        return;
    press = TapPress(*event);
    pressedRow = indexAt(event->position().toPoint());
}

/// Treats two quick taps as two taps.
void TouchList::mouseDoubleClickEvent(QMouseEvent *event)
{
    mousePressEvent(event);
}

/// Does not call the base class, which would select the rows that the finger passes.
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
