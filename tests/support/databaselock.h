// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

#include <QProcess>

#include "tests/support/stoppable.h"

class TestHome;

/// Another process that has locked the database of a home, until it is told to let go.
class DatabaseLock
{
public:
    explicit DatabaseLock(const TestHome &home, const Caller &by = Caller::here());

    /// Lets it roll back after that time; returns at once.
    void releaseAfter(std::chrono::milliseconds time, const Caller &by = Caller::here());
    /// Waits for the other process, which has been told to let go.
    bool waitUntilReleased();

private:
    QProcess other;
};
