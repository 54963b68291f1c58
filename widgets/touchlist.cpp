// SPDX-License-Identifier: MIT
#include "widgets/touchlist.h"

#include <utility>

#include <QAccessible>
#include <QFocusEvent>
#include <QMouseEvent>
#include <QScopedValueRollback>
#include <QShowEvent>
#include <QSignalBlocker>

#include "widgets/listrow.h"
#include "widgets/TrKineticScroller.h"

TouchList::TouchList(QWidget *parent)
    : QListWidget(parent)
    , scroller(new TrKineticScroller(this))
{
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setAutoScroll(false);
    setAlternatingRowColors(true);
    setUniformItemSizes(true);
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
