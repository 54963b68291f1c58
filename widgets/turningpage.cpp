// SPDX-License-Identifier: MIT
#include "widgets/turningpage.h"

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

void TurningBoxes::turn(Qt::Orientation orientation) const
{
    const bool landscape = orientation == Qt::Horizontal;
    for (QBoxLayout *box : alongWidth)
        box->setDirection(landscape ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
    for (QBoxLayout *box : acrossWidth)
        box->setDirection(landscape ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    for (QFrame *line : separators)
        line->setFrameShape(landscape ? QFrame::VLine : QFrame::HLine);
}

namespace {

QAccessibleInterface *accessiblePage(const QString & /*className*/, QObject *object)
{
    auto *page = qobject_cast<TurningPage *>(object);
    return page ? new QAccessibleWidget(page, page->accessibleRole()) : nullptr;
}

} // namespace

TurningPage::TurningPage(QAccessible::Role pageRole, QWidget *parent)
    : QWidget(parent)
    , role(pageRole)
{
    // Installing it again changes nothing.
    QAccessible::installFactory(accessiblePage);
}

QAccessible::Role TurningPage::accessibleRole() const
{
    return role;
}

void TurningPage::turn(Qt::Orientation orientation)
{
    windowOrientation = orientation;
    turningBoxes.turn(orientation);
    // A hidden page gets its size when it is shown.
    if (isVisible())
        fit();
}

bool TurningPage::event(QEvent *event)
{
    const bool handled = QWidget::event(event);
    // Something on the page, a long name perhaps, wants another size. A hidden page has none yet.
    if (event->type() == QEvent::LayoutRequest && isVisible())
        scrollWhatIsTooLarge();
    return handled;
}

void TurningPage::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    fit();
}

void TurningPage::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    // What is on the page may have got its font only now, or another size while it was hidden.
    fit();
    // A page begins at its top each time.
    if (area)
        area->verticalScrollBar()->setValue(0);
}

QLayout *TurningPage::boxes() const
{
    return area ? area->widget()->layout() : layout();
}

void TurningPage::turnBoxes(Qt::Orientation orientation)
{
    turningBoxes.turn(orientation);
    for (const QBoxLayout *box : turningBoxes.alongWidth)
        measureAround(box);
    for (const QBoxLayout *box : turningBoxes.acrossWidth)
        measureAround(box);
}

/// What lies around a box that has turned remembers the size it had.
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
    const int bar = area ? area->verticalScrollBar()->sizeHint().width() : 0;
    return neededWidth() > width() - bar;
}

bool TurningPage::isTooHigh() const
{
    const int needed = boxes()->hasHeightForWidth() ? boxes()->totalMinimumHeightForWidth(width())
                                                    : boxes()->totalMinimumSize().height();
    return needed > height();
}

/// A window that is wide but not wide enough is laid out as an upright one.
void TurningPage::stackWhatIsTooWide()
{
    if (isTooWide() && windowOrientation == Qt::Horizontal)
        turnBoxes(Qt::Vertical);
    for (QBoxLayout *box : turningBoxes.acrossWidth) {
        if (!isTooWide())
            return;
        const int before = neededWidth();
        const QBoxLayout::Direction direction = box->direction();
        box->setDirection(QBoxLayout::TopToBottom);
        measureAround(box);
        if (neededWidth() == before) { // something else is the widest
            box->setDirection(direction);
            measureAround(box);
        }
    }
}

void TurningPage::scrollWhatIsTooLarge()
{
    if (area || !layout() || !(isTooWide() || isTooHigh()))
        return;
    QWidget *focused = window()->focusWidget();
    const bool hadFocus = focused && isAncestorOf(focused);
    const auto *field = qobject_cast<QLineEdit *>(focused);
    const int selectionStart = field ? field->selectionStart() : -1;
    const int selectionLength = field ? field->selectionLength() : 0;
    auto *contents = new QWidget;
    contents->setLayout(layout()); // takes what is laid out along
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
    stackWhatIsTooWide(); // the scroll bar takes some of the width
    // Whatever gives something the focus, it is to be seen.
    connect(qApp, &QApplication::focusChanged, area, [this](QWidget * /*before*/, QWidget *now) {
        if (now && area->widget()->isAncestorOf(now))
            area->ensureWidgetVisible(now);
    });
    // What changes its parent loses the focus, and a field its selection with that.
    if (!hadFocus)
        return;
    focused->setFocus();
    if (selectionStart >= 0)
        static_cast<QLineEdit *>(focused)->setSelection(selectionStart, selectionLength);
}

void TurningPage::fit()
{
    if (!layout())
        return;
    turnBoxes(windowOrientation);
    stackWhatIsTooWide();
    scrollWhatIsTooLarge();
    layout()->activate();
}
