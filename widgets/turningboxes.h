// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <Qt>

class QBoxLayout;
class QFrame;

/// The parts of one page that turn with the window. None of them is owned.
struct TurningBoxes
{
    /// Side by side in landscape, stacked in portrait.
    QList<QBoxLayout *> alongWidth;
    /// Stacked in landscape, side by side in portrait.
    QList<QBoxLayout *> acrossWidth;
    /// Lines between boxes of `alongWidth`.
    QList<QFrame *> separators;

    /// Lays everything out for a window that is wider than high (Qt::Horizontal) or not
    /// (Qt::Vertical).
    void turn(Qt::Orientation orientation) const;
};
