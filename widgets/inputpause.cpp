// SPDX-License-Identifier: MIT
#include "widgets/inputpause.h"

#include <chrono>

#include <QEvent>
#include <QGuiApplication>
#include <QWidget>

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds shortestPause = 1s;
constexpr std::chrono::milliseconds quietTime = 300ms;

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

void InputPause::begin()
{
    QCoreApplication::instance()->installEventFilter(this);
    timer.start(shortestPause);
}

bool InputPause::eventFilter(QObject *object, QEvent *event)
{
    // Not those of the window's surface: it keeps account of what is pressed.
    if (!isInput(event) || !object->isWidgetType() ||
        static_cast<QWidget *>(object)->window() != window)
        return false;
    if (event->type() == QEvent::TouchBegin || event->type() == QEvent::TouchUpdate)
        isTouched = true;
    else if (event->type() == QEvent::TouchEnd || event->type() == QEvent::TouchCancel)
        isTouched = false;
    if (timer.remainingTimeAsDuration() < quietTime)
        timer.start(quietTime);
    return true;
}

void InputPause::endIfQuiet()
{
    if (isTouched || QGuiApplication::mouseButtons() != Qt::NoButton)
        timer.start(quietTime);
    else
        QCoreApplication::instance()->removeEventFilter(this);
}
