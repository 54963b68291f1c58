// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include <QObject>

class QAbstractScrollArea;
class QMouseEvent;
class QPoint;

/// Flick scrolling for one scroll area: dragging moves the contents with the finger, and letting
/// go while they move makes them glide on and slow down. Only the vertical scroll bar is driven.
/// The area's mouse events are watched and never swallowed, so a tap still reaches it as a click.
class TrKineticScroller : public QObject
{
    Q_OBJECT

public:
    explicit TrKineticScroller(QObject *parent = nullptr);
    ~TrKineticScroller() override;

    /// Watches `area` instead of the one watched so far. `area` must not be null, is not owned, and
    /// may die before the scroller.
    void enableKineticScrollFor(QAbstractScrollArea *area);

    /// Whether the contents are being dragged or glide.
    bool isMoving() const;

    /// Whether the press that is being released is a tap: it stayed within startDragDistance() of
    /// where it began, moved the contents by nothing, and did not stop them gliding.
    bool isTap() const;

    bool eventFilter(QObject *object, QEvent *event) override;

private slots:
    void onKineticTimerElapsed();

private:
    struct State;

    bool isCopy(const QObject *object, const QMouseEvent &event);
    void pressed(const QPoint &position);
    void released();
    void moved(const QPoint &position);
    bool letPassUntouched();
    void stopMotion();

    std::unique_ptr<State> d;
};
