// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

class QAbstractButton;
class QAbstractScrollArea;
class TrKineticScroller;

/// Lets a drag that begins on a button scroll the area around it. The button is then not clicked,
/// nor is it by the touch that stops a glide.
class DragThrough : public QObject
{
    Q_OBJECT

public:
    /// `scroller` scrolls `area`; `area` owns this object.
    DragThrough(QAbstractScrollArea *area, const TrKineticScroller *scroller);

    /// `button` is inside the area.
    void watch(QAbstractButton *button);

protected:
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    QAbstractScrollArea *area;
    const TrKineticScroller *scroller;
};
