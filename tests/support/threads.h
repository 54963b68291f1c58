// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>

/// Returns the number of threads of this process with that name. A joined thread may count for a
/// moment longer, and a new one has its creator's name until it runs.
inline int threadsNamed(const QByteArray &name)
{
    int count = 0;
    const QString tasks = "/proc/self/task/";
    for (const QString &task : QDir(tasks).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile file(tasks + task + "/comm");
        count += file.open(QIODevice::ReadOnly) && file.readAll().trimmed() == name ? 1 : 0;
    }
    return count;
}
