// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

#include <QProcess>

#include "tests/support/stoppable.h"

class TestHome;

/// Another process that locks the database of a home until it is told to release it.
class DatabaseLock
{
public:
    explicit DatabaseLock(const TestHome &home, const Caller &by = Caller::here());

    /// Makes the process release the lock after that time; returns at once.
    void releaseAfter(std::chrono::milliseconds time, const Caller &by = Caller::here());
    /// Waits for the release by the other process, which must already have been requested.
    bool waitUntilReleased();

private:
    QProcess other;
};
