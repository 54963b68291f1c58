// SPDX-License-Identifier: MIT
#include "widgets/pageswitchguard.h"

#include <utility>

#include <QEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QStackedWidget>
#include <QWindow>

PageSwitchGuard::PageSwitchGuard(QWidget *guardedWindow)
    : QObject(guardedWindow)
    , window(guardedWindow)
{
    // The QWindow, which receives events before any page, exists only once the window is shown.
    window->installEventFilter(this);
}

void PageSwitchGuard::guard(QStackedWidget *pages)
{
    stack = pages;
}

bool PageSwitchGuard::eventFilter(QObject *object, QEvent *event)
{
    if (object == window) {
        if (event->type() == QEvent::Show)
            window->windowHandle()->installEventFilter(this);
        return false;
    }
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseMove:
        return isIgnored(*static_cast<QMouseEvent *>(event));
    case QEvent::KeyPress: {
        // A key that is held must not press the main actions of one page after the other.
        const auto *key = static_cast<QKeyEvent *>(event);
        return key->isAutoRepeat() && (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter);
    }
    default:
        return false;
    }
}

bool PageSwitchGuard::isIgnored(const QMouseEvent &event)
{
    if (event.type() == QEvent::MouseButtonRelease)
        return std::exchange(ignoring, false);
    if (event.type() == QEvent::MouseMove)
        return ignoring;
    const QWidget *page = stack ? stack->currentWidget() : nullptr;
    // A double click event follows a press event with the same time and position, and is ignored if
    // that is.
    ignoring = page != pageAtPress && press.isFirstOfTwo(event);
    if (!ignoring) {
        press = TapPress(event);
        pageAtPress = page;
    }
    return ignoring;
}
