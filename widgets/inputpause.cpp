// SPDX-License-Identifier: MIT
#include "widgets/inputpause.h"

#include <algorithm>
#include <chrono>

#include <QCoreApplication>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QWidget>

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds shortestPause = 1s;
constexpr std::chrono::milliseconds quietTime = 300ms;
/// After this time without input, held keys count as released: the window may not have received the
/// release.
constexpr std::chrono::milliseconds longestHold = 10s;

bool isInput(const QEvent *event)
{
    switch (event->type()) {
    case QEvent::Shortcut:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::InputMethod:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel:
    case QEvent::TabletPress:
    case QEvent::TabletRelease:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
        return true;
    default:
        return false;
    }
}

} // namespace

InputPause::InputPause(QWidget *pausedWindow)
    : QObject(pausedWindow)
    , window(pausedWindow)
{
    timer.setSingleShot(true);
    timer.setTimerType(Qt::PreciseTimer);
    connect(&timer, &QTimer::timeout, this, &InputPause::endIfQuiet);
}

void InputPause::begin(QWidget *page)
{
    shownPage = page;
    // A filter that is already installed is not installed twice.
    QCoreApplication::instance()->installEventFilter(this);
    isTouched = false;
    heldKeys = 0;
    restart();
}

void InputPause::restart()
{
    isPausing = true;
    sinceInput.start();
    timer.start(shortestPause);
}

bool InputPause::eventFilter(QObject *object, QEvent *event)
{
    // The page has been answered, by a screen reader or through the notification.
    if (!shownPage || !shownPage->isVisible()) {
        end();
        return false;
    }
    if (event->type() == QEvent::WindowActivate && object == window)
        restart();
    // Events of the QWindow pass, because Qt keeps track of pressed buttons there.
    if (!isPausing || !isInput(event) || !object->isWidgetType() ||
        static_cast<QWidget *>(object)->window() != window)
        return false;
    sinceInput.start();
    if (event->type() == QEvent::TouchBegin || event->type() == QEvent::TouchUpdate)
        isTouched = true;
    else if (event->type() == QEvent::TouchEnd || event->type() == QEvent::TouchCancel)
        isTouched = false;
    else if (event->type() == QEvent::KeyPress && !static_cast<QKeyEvent *>(event)->isAutoRepeat())
        ++heldKeys;
    else if (event->type() == QEvent::KeyRelease &&
             !static_cast<QKeyEvent *>(event)->isAutoRepeat())
        heldKeys = std::max(heldKeys - 1, 0);
    if (timer.remainingTimeAsDuration() < quietTime)
        timer.start(quietTime);
    return true;
}

void InputPause::endIfQuiet()
{
    const bool isHeld =
        isTouched || heldKeys > 0 || QGuiApplication::mouseButtons() != Qt::NoButton;
    if (isHeld && !sinceInput.hasExpired(longestHold.count())) {
        timer.start(quietTime);
        return;
    }
    isPausing = false;
}

void InputPause::end()
{
    isPausing = false;
    timer.stop();
    QCoreApplication::instance()->removeEventFilter(this);
}
