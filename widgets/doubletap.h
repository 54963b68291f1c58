// SPDX-License-Identifier: MIT
#pragma once

#include <QPointF>

class QMouseEvent;

/// The press of a mouse button or finger, as far as it decides whether the next one makes a double
/// tap of both.
///
/// Qt's own double clicks do not tell: for touches, Qt 6.4 reports one for every second touch of
/// the very same point, however late, and none for one that is a pixel beside it.
class TapPress
{
public:
    TapPress() = default;
    explicit TapPress(const QMouseEvent &press);

    /// Whether `press` comes within QStyleHints::mouseDoubleClickInterval() of this one, and no
    /// farther from it than QStyleHints::touchDoubleTapDistance() in either direction. False when
    /// there was no press yet.
    bool isFirstOfTwo(const QMouseEvent &press) const;

private:
    bool happened = false;
    /// Milliseconds, as events have them.
    quint64 time = 0;
    QPointF globalPosition;
};
