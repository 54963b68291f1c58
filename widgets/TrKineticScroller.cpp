// SPDX-License-Identifier: MIT
#include "widgets/TrKineticScroller.h"

#include <algorithm>
#include <chrono>

#include <QAbstractScrollArea>
#include <QApplication>
#include <QEvent>
#include <QMouseEvent>
#include <QPoint>
#include <QPointer>
#include <QPointF>
#include <QScrollBar>
#include <QTimer>

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds tick = 30ms;
/// A drag starts with the first move that follows more moves than this since the press, because a
/// shaky tap moves as well.
constexpr int toleratedMoves = 3;
/// In pixels per tick.
constexpr int fastestGlide = 30;
/// The press and the release of the click that may follow a click.
constexpr int actionsAfterClick = 2;

/// Identifies one physical mouse event.
struct Fingerprint
{
    QEvent::Type type = QEvent::None;
    quint64 timestamp = 0;
    QPointF globalPosition;

    bool operator==(const Fingerprint &) const = default;
};

Fingerprint fingerprint(const QMouseEvent &event)
{
    return {event.type(), event.timestamp(), event.globalPosition()};
}

} // namespace

struct TrKineticScroller::State
{
    explicit State(QObject *parent)
        : kineticTimer(parent)
    {}

    QPointer<QAbstractScrollArea> scrollArea;
    bool isPressed = false;
    /// Whether the contents are being dragged or glide.
    bool isMoving = false;
    /// Whether the last press stopped a glide.
    bool stoppedGlide = false;
    /// Whether the pointer has been farther from the last press than is allowed for a tap.
    bool leftPressPoint = false;
    /// In coordinates of the area, like all positions in this structure.
    QPoint lastPressPoint;
    /// The position of the pointer at the last tick, or at the start of the drag.
    int lastMouseYPos = 0;
    /// The position of the last press or move. QCursor::pos() does not follow a finger.
    int pointerY = 0;
    int lastScrollBarPosition = 0;
    /// In pixels per tick, positive downwards.
    int velocity = 0;
    /// The number of moves since the press, before scrolling starts.
    int ignoredMouseMoves = 0;
    /// The number of presses and releases still to be ignored.
    int ignoredMouseActions = 0;
    /// The last event seen at the viewport. Reset by the next event of the area.
    Fingerprint seenAtViewport;
    QTimer kineticTimer;
};

TrKineticScroller::TrKineticScroller(QObject *parent)
    : QObject(parent)
    , d(std::make_unique<State>(this))
{
    connect(&d->kineticTimer, &QTimer::timeout, this, &TrKineticScroller::onKineticTimerElapsed);
}

TrKineticScroller::~TrKineticScroller() = default;

void TrKineticScroller::enableKineticScrollFor(QAbstractScrollArea *area)
{
    Q_ASSERT_X(area, "kinetic scroller", "missing scroll area");
    if (d->scrollArea) {
        d->scrollArea->viewport()->removeEventFilter(this);
        d->scrollArea->removeEventFilter(this);
    }
    d->isPressed = false;
    d->ignoredMouseActions = 0;
    d->seenAtViewport = {};
    stopMotion();
    area->installEventFilter(this);
    area->viewport()->installEventFilter(this);
    d->scrollArea = area;
}

bool TrKineticScroller::isMoving() const
{
    return d->isMoving;
}

bool TrKineticScroller::isTap() const
{
    // A few small moves start a drag, but a tap with a shaking finger must still count as a tap.
    return d->scrollArea && !d->stoppedGlide && !d->leftPressPoint &&
           d->scrollArea->verticalScrollBar()->value() == d->lastScrollBarPosition;
}

bool TrKineticScroller::eventFilter(QObject *object, QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseMove:
        break;
    case QEvent::Hide:
        // A page that is hidden during a press receives no release.
        d->isPressed = false;
        stopMotion();
        return false;
    default:
        return false;
    }

    const auto *mouseEvent = static_cast<QMouseEvent *>(event);
    if (!d->scrollArea || isCopy(object, *mouseEvent))
        return false;
    const QPoint position = static_cast<QWidget *>(object)->mapTo(d->scrollArea.data(),
                                                                  mouseEvent->position().toPoint());
    if (event->type() == QEvent::MouseMove)
        moved(position);
    else if (event->type() == QEvent::MouseButtonRelease)
        released();
    else
        pressed(position);
    return false;
}

/// Returns whether `event` has been seen at the viewport. Qt propagates an event that the viewport
/// does not accept to the area, where it arrives a second time.
bool TrKineticScroller::isCopy(const QObject *object, const QMouseEvent &event)
{
    const Fingerprint print = fingerprint(event);
    if (object != d->scrollArea) {
        d->seenAtViewport = print;
        return false;
    }
    const bool copy = print == d->seenAtViewport;
    d->seenAtViewport = {};
    return copy;
}

void TrKineticScroller::pressed(const QPoint &position)
{
    d->isPressed = true;
    d->lastPressPoint = position;
    d->pointerY = position.y();
    d->lastScrollBarPosition = d->scrollArea->verticalScrollBar()->value();
    d->ignoredMouseMoves = 0;
    d->leftPressPoint = false;
    d->stoppedGlide = d->isMoving;
    // A touch stops a glide even if the press is ignored otherwise.
    stopMotion();
    letPassUntouched();
}

void TrKineticScroller::released()
{
    // Reset even if the release is ignored otherwise, because a lifted finger must not drag.
    d->isPressed = false;
    if (letPassUntouched())
        return;
    if (!d->isMoving)
        d->ignoredMouseActions = actionsAfterClick;
}

void TrKineticScroller::moved(const QPoint &position)
{
    // A hovering mouse must not drag.
    if (!d->isPressed)
        return;
    d->pointerY = position.y();
    if ((position - d->lastPressPoint).manhattanLength() > QApplication::startDragDistance())
        d->leftPressPoint = true;
    if (d->isMoving) {
        const int dy = position.y() - d->lastPressPoint.y();
        d->scrollArea->verticalScrollBar()->setValue(d->lastScrollBarPosition - dy);
    } else if (d->ignoredMouseMoves > toleratedMoves) {
        d->ignoredMouseMoves = 0;
        d->isMoving = true;
        d->lastMouseYPos = position.y();
        if (!d->kineticTimer.isActive())
            d->kineticTimer.start(tick);
    } else {
        ++d->ignoredMouseMoves;
    }
}

bool TrKineticScroller::letPassUntouched()
{
    if (d->ignoredMouseActions == 0)
        return false;
    --d->ignoredMouseActions;
    return true;
}

void TrKineticScroller::stopMotion()
{
    d->isMoving = false;
    d->velocity = 0;
    d->kineticTimer.stop();
}

void TrKineticScroller::onKineticTimerElapsed()
{
    if (!d->scrollArea || !d->isMoving) {
        stopMotion();
        return;
    }
    if (d->isPressed) {
        d->velocity = d->pointerY - d->lastMouseYPos;
        d->lastMouseYPos = d->pointerY;
        return;
    }
    d->velocity = std::clamp(d->velocity, -fastestGlide, fastestGlide);
    if (d->velocity > 0)
        --d->velocity;
    else if (d->velocity < 0)
        ++d->velocity;
    if (d->velocity == 0) {
        stopMotion();
        return;
    }
    QScrollBar *bar = d->scrollArea->verticalScrollBar();
    const int before = bar->value();
    bar->setValue(before - d->velocity);
    // At the end of the contents the glide ends, so that the next touch counts as a tap.
    if (bar->value() == before)
        stopMotion();
}
