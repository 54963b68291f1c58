// SPDX-License-Identifier: MIT
#include <chrono>
#include <utility>

#include "gps/positionwait.h"

using namespace std::chrono_literals;

namespace {

constexpr auto retryPause = 1000ms;

} // namespace

PositionWait::PositionWait(Action askAction, Action giveUpAction)
    : ask(std::move(askAction))
    , giveUp(std::move(giveUpAction))
{
    retryTimer.setSingleShot(true);
    retryTimer.setInterval(retryPause);
    retryTimer.callOnTimeout([this] { refused(); });
}

void PositionWait::begin()
{
    tellAnew();
    askSource();
}

void PositionWait::askSource()
{
    state = State::Asking;
    ask();
    // A source that answers synchronously may have ended the wait.
    // cppcheck-suppress knownConditionTrueFalse // it does not see that
    if (state == State::Asking)
        state = State::Waiting;
}

void PositionWait::end()
{
    if (waitingForFix() && !distancePending)
        giveUp();
    satisfy();
}

void PositionWait::satisfy()
{
    state = State::Quiet;
    retryTimer.stop();
}

void PositionWait::refused()
{
    if (state == State::Asking)
        retryTimer.start();
    else if (state == State::Waiting)
        askSource();
}

void PositionWait::arrived()
{
    isFresh = true;
    isKnown = true;
    isMissingTold = false;
}

void PositionWait::tellAnew()
{
    isMissingTold = false;
    isRoughTold = false;
}

bool PositionWait::tellsMissing()
{
    return !std::exchange(isMissingTold, true);
}

bool PositionWait::tellsRough()
{
    return !std::exchange(isRoughTold, true);
}
