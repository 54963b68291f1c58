// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include <QObject>

class QAbstractScrollArea;
class QMouseEvent;
class QPoint;

/// Kinetic scrolling for one scroll area: dragging moves the contents, and if the finger is lifted
/// while they move, they glide on and slow down. Only the vertical scroll bar is moved. The mouse
/// events of the area are watched but never filtered out, so the area still receives a tap as a
/// click.
class TrKineticScroller : public QObject
{
    Q_OBJECT

public:
    explicit TrKineticScroller(QObject *parent = nullptr);
    ~TrKineticScroller() override;

    /// Watches `area` instead of the previous one. `area` must not be null. It is not owned, and
    /// may be destroyed before the scroller.
    void enableKineticScrollFor(QAbstractScrollArea *area);

    /// Returns whether the contents are being dragged or glide.
    bool isMoving() const;

    /// Returns whether the press that is being released is a tap: the pointer stayed within
    /// QApplication::startDragDistance() of the press, the contents did not move, and the press did
    /// not stop a glide.
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
