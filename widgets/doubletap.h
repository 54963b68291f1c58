// SPDX-License-Identifier: MIT
#pragma once

#include <QPointF>

class QMouseEvent;

/// A press of a mouse button or finger, which determines whether the next press makes a double tap.
///
/// Double click events of Qt are not reliable for this: for touches, Qt 6.4 sends one for every
/// second touch at exactly the same point, however late, and none if the points differ by a pixel.
class TapPress
{
public:
    TapPress() = default;
    explicit TapPress(const QMouseEvent &press);

    /// Returns whether `press` comes within QStyleHints::mouseDoubleClickInterval() after this one,
    /// and not farther from it than QStyleHints::touchDoubleTapDistance() in x and y. Returns false
    /// for a default-constructed object.
    bool isFirstOfTwo(const QMouseEvent &press) const;

private:
    bool happened = false;
    /// The timestamp of the event, in milliseconds.
    quint64 time = 0;
    QPointF globalPosition;
};
