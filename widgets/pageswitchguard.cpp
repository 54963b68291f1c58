// SPDX-License-Identifier: MIT
#include "widgets/pageswitchguard.h"

#include <utility>

#include <QEvent>
#include <QStackedWidget>
#include <QWindow>

PageSwitchGuard::PageSwitchGuard(QStackedWidget *guarded)
    : QObject(guarded)
    , stack(guarded)
{
    // The window's surface, where events pass before they reach any page, is there once it shows.
    stack->window()->installEventFilter(this);
    if (QWindow *surface = stack->window()->windowHandle())
        surface->installEventFilter(this);
}

bool PageSwitchGuard::eventFilter(QObject *object, QEvent *event)
{
    if (!object->isWindowType()) {
        if (event->type() == QEvent::Show && object == stack->window())
            stack->window()->windowHandle()->installEventFilter(this);
        return false;
    }
    // A double click comes after the press that makes it one, which no widget gets.
    if (event->type() == QEvent::MouseButtonPress)
        pageAtEarlierPress = std::exchange(pageAtPress, stack->currentIndex());
    return event->type() == QEvent::MouseButtonDblClick && pageAtPress != pageAtEarlierPress;
}
