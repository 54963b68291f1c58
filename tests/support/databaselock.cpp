// SPDX-License-Identifier: MIT
#include "tests/support/databaselock.h"

#include "tests/support/testhome.h"

DatabaseLock::DatabaseLock(const TestHome &home)
{
    other.start("sqlite3", {home.databaseFile()});
    if (!other.waitForStarted())
        qFatal("sqlite3 cannot be run; its package is sqlite3");
    other.write("begin exclusive;\n.shell echo locked\n");
    if (!other.waitForReadyRead() || other.readAllStandardOutput() != "locked\n")
        qFatal("the database cannot be locked: %s", other.readAllStandardError().constData());
}

void DatabaseLock::releaseAfter(std::chrono::milliseconds time)
{
    const QByteArray seconds = QByteArray::number(double(time.count()) / 1000);
    other.write(".shell sleep " + seconds + "\nrollback;\n.quit\n");
    if (!other.waitForBytesWritten())
        qFatal("sqlite3 does not listen");
}

bool DatabaseLock::waitUntilReleased()
{
    return other.state() == QProcess::NotRunning || other.waitForFinished();
}
