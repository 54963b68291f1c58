// SPDX-License-Identifier: MIT
#include "widgets/dragthrough.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QCoreApplication>
#include <QMouseEvent>

#include "widgets/TrKineticScroller.h"

DragThrough::DragThrough(QAbstractScrollArea *scrolledArea, const TrKineticScroller *itsScroller)
    : QObject(scrolledArea)
    , area(scrolledArea)
    , scroller(itsScroller)
{}

void DragThrough::watch(QAbstractButton *button)
{
    button->installEventFilter(this);
}

bool DragThrough::eventFilter(QObject *object, QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseMove:
        break;
    default:
        return false;
    }
    const auto *mouse = static_cast<QMouseEvent *>(event);
    auto *button = static_cast<QAbstractButton *>(object);
    // What a button does not accept reaches the viewport anyway.
    const bool isLeft = mouse->button() == Qt::LeftButton || mouse->buttons() == Qt::LeftButton;
    if (!button->isEnabled() || !isLeft)
        return false;
    // The scroller watches the viewport, which gets no events that a button accepts.
    QMouseEvent copy(mouse->type(), area->viewport()->mapFromGlobal(mouse->globalPosition()),
                     mouse->globalPosition(), mouse->button(), mouse->buttons(), mouse->modifiers(),
                     mouse->pointingDevice());
    copy.setTimestamp(mouse->timestamp());
    QCoreApplication::sendEvent(area->viewport(), &copy);
    if (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonDblClick ||
        scroller->isTap())
        return false;
    button->setDown(false);
    return true;
}
