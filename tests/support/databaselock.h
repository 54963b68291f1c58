// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

#include <QProcess>

class TestHome;

/// Another process that has locked the database of a home, until it is told to let go.
class DatabaseLock
{
public:
    explicit DatabaseLock(const TestHome &home);

    /// Lets it roll back after that time; returns at once.
    void releaseAfter(std::chrono::milliseconds time);
    /// Waits for the other process, which has been told to let go.
    bool waitUntilReleased();

private:
    QProcess other;
};
