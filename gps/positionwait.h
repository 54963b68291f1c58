// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include <QTimer>

/// The wait for a position: whether a position is available, whether a page waits for the next one,
/// and what the user has been told. It repeats its request to the source during a wait.
class PositionWait
{
public:
    using Action = std::function<void()>;

    /// `askAction` makes the source look for a position; refused() may be called before it returns.
    /// `giveUpAction` makes the source stop.
    PositionWait(Action askAction, Action giveUpAction);

    /// Returns whether a position has arrived that is still current.
    bool haveGpsFix() const
    {
        return isFresh;
    }
    /// Returns whether a position has ever arrived.
    bool positionKnown() const
    {
        return isKnown;
    }
    /// Returns whether a page waits for the next position.
    bool waitingForFix() const
    {
        return state != State::Quiet;
    }

    /// Starts a wait and asks the source.
    void begin();
    /// Ends the wait. The source stops looking unless the stores page needs it.
    void end();
    /// Ends the wait because a position has arrived. The source is not stopped.
    void satisfy();
    /// The source has refused to look, or has found nothing in time. It is asked again, after a
    /// pause if it refused at once.
    void refused();
    void arrived();
    /// The position is no longer current: the next request must wait.
    void expire()
    {
        isFresh = false;
    }

    /// Allows messages that were already shown to be shown again.
    void tellAnew();
    /// Returns true if the user must be told that there is no position. It does so once, until a
    /// position arrives, even a rough one.
    bool tellsMissing();
    /// Returns true if the user must be told that the position is rough, once in each wait.
    bool tellsRough();
    /// A rough position has arrived, so a position is not missing.
    void roughArrived()
    {
        isMissingTold = false;
    }

    /// The stores page waits as well, to show the distance.
    bool distancePending = false;

private:
    enum class State {
        Quiet,
        Asking, ///< the request to the source has not returned yet
        Waiting,
    };

    void askSource();

    Action ask;
    Action giveUp;
    State state = State::Quiet;
    bool isFresh = false;
    bool isKnown = false;
    bool isMissingTold = false;
    bool isRoughTold = false;
    QTimer retryTimer;
};
