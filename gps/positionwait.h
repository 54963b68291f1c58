// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include <QTimer>

/// The wait for a position: whether there is one, who waits for the next one, and what the person
/// was told meanwhile. It asks the source again for as long as somebody waits.
class PositionWait
{
public:
    using Action = std::function<void()>;

    /// `askAction` lets the source look for a position; the source may refuse before that returns.
    /// `giveUpAction` lets it stop looking.
    PositionWait(Action askAction, Action giveUpAction);

    /// A position has arrived that may still be used.
    bool haveGpsFix() const
    {
        return isFresh;
    }
    /// A position has arrived, however long ago.
    bool positionKnown() const
    {
        return isKnown;
    }
    /// Somebody waits for the next position.
    bool waitingForFix() const
    {
        return state != State::Quiet;
    }

    /// Somebody waits from now on: the source is asked.
    void begin();
    /// Nobody waits any more, and the source stops looking unless the stores page needs it.
    void end();
    /// Who waited has a position. The source is left alone.
    void satisfy();
    /// The source has refused to look, or has found nothing in its time: it is asked again, after a
    /// pause if it has refused at once.
    void refused();
    void arrived();
    /// The position is too old to be used: the next one who needs one has to wait.
    void expire()
    {
        isFresh = false;
    }

    /// Lets the person be told again what was told before.
    void tellAnew();
    /// True when it is to be told that there is no position: once until one arrives, even a rough
    /// one.
    bool tellsMissing();
    /// True when it is to be told that a position is a rough one: once in each wait.
    bool tellsRough();
    /// A rough position has arrived, so there is one.
    void roughArrived()
    {
        isMissingTold = false;
    }

    /// The stores page waits as well, to tell the distance.
    bool distancePending = false;

private:
    enum class State {
        Quiet,
        Asking, ///< the source is being asked and has not returned yet
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
