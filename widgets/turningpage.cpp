// SPDX-License-Identifier: MIT
#include "widgets/turningpage.h"

#include <algorithm>
#include <utility>

#include <QAccessibleWidget>
#include <QApplication>
#include <QBoxLayout>
#include <QEvent>
#include <QFrame>
#include <QLineEdit>
#include <QScrollArea>
#include <QScrollBar>

#include "widgets/TrKineticScroller.h"

using namespace Qt::StringLiterals;

bool TurningBoxes::turn(Qt::Orientation orientation) const
{
    const bool landscape = orientation == Qt::Horizontal;
    const auto alongDirection = landscape ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom;
    const auto acrossDirection = landscape ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight;
    bool changed = false;
    for (QBoxLayout *box : alongWidth) {
        changed |= box->direction() != alongDirection;
        box->setDirection(alongDirection);
    }
    for (QBoxLayout *box : acrossWidth) {
        changed |= box->direction() != acrossDirection;
        box->setDirection(acrossDirection);
    }
    for (QBoxLayout *box : sideBySide) {
        changed |= box->direction() != QBoxLayout::LeftToRight;
        box->setDirection(QBoxLayout::LeftToRight);
    }
    for (QFrame *line : separators)
        line->setFrameShape(landscape ? QFrame::VLine : QFrame::HLine);
    return changed;
}

namespace {

QAccessibleInterface *accessiblePage(const QString & /*className*/, QObject *object)
{
    auto *page = qobject_cast<TurningPage *>(object);
    return page ? new QAccessibleWidget(page, page->accessibleRole()) : nullptr;
}

/// Restores the focus of a widget on `page`, and the selection of a field. A widget loses the focus
/// when its parent changes, and a field then loses its selection.
class FocusKeeper
{
public:
    explicit FocusKeeper(const QWidget *page)
    {
        QWidget *widget = page->window()->focusWidget();
        if (!widget || !page->isAncestorOf(widget))
            return;
        focused = widget;
        field = qobject_cast<QLineEdit *>(widget);
        if (field) {
            selectionStart = field->selectionStart();
            selectionLength = field->selectionLength();
        }
    }
    ~FocusKeeper()
    {
        if (focused)
            focused->setFocus();
        if (selectionStart >= 0)
            field->setSelection(selectionStart, selectionLength);
    }
    FocusKeeper(const FocusKeeper &) = delete;
    FocusKeeper &operator=(const FocusKeeper &) = delete;

private:
    QWidget *focused = nullptr;
    QLineEdit *field = nullptr;
    int selectionStart = -1; // no selection
    int selectionLength = 0;
};

} // namespace

TurningPage::TurningPage(QAccessible::Role pageRole, QWidget *parent)
    : QWidget(parent)
    , role(pageRole)
{
    // A factory that is already installed is not installed twice.
    QAccessible::installFactory(accessiblePage);
}

QAccessible::Role TurningPage::accessibleRole() const
{
    return role;
}

void TurningPage::turn(Qt::Orientation orientation)
{
    windowOrientation = orientation;
    turnBoxes(orientation);
    // A hidden page gets its size when it is shown.
    if (isVisible())
        fit();
}

bool TurningPage::event(QEvent *event)
{
    const bool handled = QWidget::event(event);
    // A size hint has changed, for example that of a long name. A hidden page has no size yet.
    if (event->type() == QEvent::LayoutRequest) {
        if (!isVisible())
            changedUnseen = true;
        else if (layout() && isTooWide() && !tight)
            fit();
        else
            scrollWhatIsTooLarge();
    }
    return handled;
}

void TurningPage::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    // QWidget::grab() sends hidden pages a resize event with a size that they never had.
    if (isVisible())
        fit();
    else
        changedUnseen = true;
}

void TurningPage::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    // The widgets have received their font only now, or other sizes while the page was hidden.
    // A page with a scroll area is not notified of changes in it.
    if (std::exchange(changedUnseen, false) || area)
        fit();
}

void TurningPage::open()
{
    if (area) {
        focusIsNew = false;
        area->verticalScrollBar()->setValue(0);
        if (qobject_cast<QLineEdit *>(QApplication::focusWidget()))
            showFocused();
    } else if (firstFocus) {
        firstFocus->setFocus();
    }
}

QLayout *TurningPage::boxes() const
{
    return area ? area->widget()->layout() : layout();
}

void TurningPage::turnBoxes(Qt::Orientation orientation)
{
    if (!turningBoxes.turn(orientation))
        return;
    // The activate() call below updates boxes that are directly in the layout of the page.
    for (const QBoxLayout *box : turningBoxes.alongWidth + turningBoxes.sideBySide) {
        if (box->parentWidget() != boxes()->parentWidget())
            measureAround(box);
    }
    boxes()->activate();
}

/// Updates the layouts around `box`, whose direction has changed. They have cached its old size.
void TurningPage::measureAround(const QBoxLayout *box)
{
    for (QWidget *widget = box->parentWidget(); widget; widget = widget->parentWidget()) {
        if (widget->layout())
            widget->layout()->activate();
        if (widget == boxes()->parentWidget())
            break;
        widget->updateGeometry();
    }
}

int TurningPage::neededWidth() const
{
    return boxes()->totalMinimumSize().width();
}

bool TurningPage::isTooWide() const
{
    return neededWidth() > width();
}

bool TurningPage::isTooHigh() const
{
    const int needed = boxes()->hasHeightForWidth() ? boxes()->totalMinimumHeightForWidth(width())
                                                    : boxes()->totalMinimumSize().height();
    return needed > height();
}

bool TurningPage::isTight(const QWidget *widget)
{
    for (; widget; widget = widget->parentWidget()) {
        if (const auto *page = qobject_cast<const TurningPage *>(widget))
            return page->tight;
    }
    return false;
}

/// Sets whether texts may be smaller, and updates what the layouts know of their sizes.
void TurningPage::setTight(bool mayShrink)
{
    if (tight == mayShrink)
        return;
    tight = mayShrink;
    QList<QWidget *> inside = findChildren<QWidget *>();
    // The inner ones first: a layout caches what it has measured until it is activated.
    std::ranges::reverse(inside);
    for (QWidget *widget : std::as_const(inside)) {
        if (widget->layout())
            widget->layout()->activate();
        widget->updateGeometry();
    }
    boxes()->activate();
}

/// Stacks the contents of the boxes, or puts them side by side.
void TurningPage::turnRow(const QList<QBoxLayout *> &row, Qt::Orientation orientation)
{
    for (QBoxLayout *box : row) {
        box->setDirection(orientation == Qt::Vertical ? QBoxLayout::TopToBottom
                                                      : QBoxLayout::LeftToRight);
        measureAround(box);
    }
}

/// Stacks the contents of `row`, boxes of the same direction, if the page is too wide and they are
/// part of the reason.
void TurningPage::stackIfTooWide(const QList<QBoxLayout *> &row)
{
    if (row.isEmpty() || row.first()->direction() == QBoxLayout::TopToBottom || !isTooWide())
        return;
    const bool fitsAlone = std::ranges::all_of(
        row, [this](const QBoxLayout *box) { return box->minimumSize().width() <= width(); });
    const int before = neededWidth();
    turnRow(row, Qt::Vertical);
    if (fitsAlone && neededWidth() == before) // another part of the page is the widest
        turnRow(row, Qt::Horizontal);
}

/// Uses the layout of portrait if the page is too wide for a window in landscape, and then stacks
/// the boxes that are still too wide.
void TurningPage::stackWhatIsTooWide()
{
    if (isTooWide() && windowOrientation == Qt::Horizontal)
        turnBoxes(Qt::Vertical);
    for (QBoxLayout *box : turningBoxes.acrossWidth)
        stackIfTooWide({box});
    stackIfTooWide(turningBoxes.sideBySide);
}

/// Lets texts shrink if the page is too wide, and lets it scroll if it is still too large.
void TurningPage::scrollWhatIsTooLarge()
{
    if (!layout())
        return;
    if (isTooWide())
        setTight(true);
    if (area || !(isTooWide() || isTooHigh()))
        return;
    const FocusKeeper focus(this);
    auto *contents = new QWidget;
    contents->setLayout(layout()); // moves the widgets of the layout as well
    area = new QScrollArea;
    area->setObjectName(u"pageArea"_s);
    area->setAccessibleName(accessibleName());
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setWidget(contents);
    (new TrKineticScroller(area))->enableKineticScrollFor(area);
    auto *box = new QVBoxLayout(this);
    box->setContentsMargins({});
    box->addWidget(area);
    area->show();
    const auto chooseBar = [this] {
        // What the vertical bar covers is the margin of the page.
        area->setHorizontalScrollBarPolicy(neededWidth() > width() ? Qt::ScrollBarAsNeeded
                                                                   : Qt::ScrollBarAlwaysOff);
    };
    chooseBar();
    connect(area->horizontalScrollBar(), &QScrollBar::rangeChanged, area, chooseBar);
    // The widget with the focus must be visible, whatever has moved the focus.
    connect(qApp, &QApplication::focusChanged, area, [this] {
        focusIsNew = true;
        showFocused();
    });
    // The contents may get their size only after the focus change. Later changes of the size must
    // not undo the scrolling of the user.
    connect(area->verticalScrollBar(), &QScrollBar::rangeChanged, area, [this] {
        if (std::exchange(focusIsNew, false))
            showFocused();
    });
}

void TurningPage::showFocused()
{
    const QWidget *contents = area->widget(); // null while the page is destroyed
    const QWidget *focused = QApplication::focusWidget();
    if (!contents || !focused || !contents->isAncestorOf(focused))
        return;
    // ensureWidgetVisible() would make only the cursor of a field visible.
    constexpr int around = 8; // device-independent pixels
    const QRect rect(focused->mapTo(contents, QPoint()), focused->size());
    const QSize half =
        (rect.size() / 2 + QSize(around, around)).boundedTo(area->viewport()->size() / 2);
    area->ensureVisible(rect.center().x(), rect.center().y(), half.width(), half.height());
}

void TurningPage::fit()
{
    if (!layout())
        return;
    setTight(false);
    turnBoxes(windowOrientation);
    stackWhatIsTooWide();
    scrollWhatIsTooLarge();
    layout()->activate();
}
