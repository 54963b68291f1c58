// SPDX-License-Identifier: MIT
#include "widgets/doubletap.h"

#include <algorithm>
#include <cmath>

#include <QGuiApplication>
#include <QMouseEvent>
#include <QStyleHints>

TapPress::TapPress(const QMouseEvent &press)
    : happened(true)
    , time(press.timestamp())
    , globalPosition(press.globalPosition())
{}

bool TapPress::isFirstOfTwo(const QMouseEvent &press) const
{
    const QStyleHints *hints = QGuiApplication::styleHints();
    if (!happened ||
        press.timestamp() - time >= static_cast<quint64>(hints->mouseDoubleClickInterval()))
        return false;
    const QPointF distance = press.globalPosition() - globalPosition;
    return std::max(std::abs(distance.x()), std::abs(distance.y())) <=
           hints->touchDoubleTapDistance();
}
