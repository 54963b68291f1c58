// SPDX-License-Identifier: MIT
#include "tests/support/databaselock.h"

#include "tests/support/testhome.h"

DatabaseLock::DatabaseLock(const TestHome &home, const Caller &by)
{
    other.start("sqlite3", {home.databaseFile()});
    if (!other.waitForStarted())
        stopTest("sqlite3 cannot be run; its package is sqlite3", by);
    other.write("begin exclusive;\n.shell echo locked\n");
    if (!other.waitForReadyRead() || other.readAllStandardOutput() != "locked\n")
        stopTest("the database cannot be locked: " + other.readAllStandardError(), by);
}

void DatabaseLock::releaseAfter(std::chrono::milliseconds time, const Caller &by)
{
    const QByteArray seconds = QByteArray::number(double(time.count()) / 1000);
    other.write(".shell sleep " + seconds + "\nrollback;\n.quit\n");
    if (!other.waitForBytesWritten())
        stopTest("sqlite3 does not listen", by);
}

bool DatabaseLock::waitUntilReleased()
{
    return other.state() == QProcess::NotRunning || other.waitForFinished();
}
