// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QList>

#include <unistd.h>

/// Returns the ids of the running children of this process with that name.
inline QList<int> childrenNamed(const QByteArray &name)
{
    QList<int> children;
    const QString processes = "/proc/";
    for (const QString &process : QDir(processes).entryList({"[1-9]*"}, QDir::Dirs)) {
        QFile file(processes + process + "/stat");
        // Process id, name in parentheses, state, and the parent's process id.
        const QByteArray stat = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        const qsizetype end = stat.lastIndexOf(')');
        const QList<QByteArray> rest = stat.mid(end + 2).split(' ');
        if (stat.left(end).endsWith('(' + name) && rest.value(0) != "Z" &&
            rest.value(1).toInt() == getpid())
            children << process.toInt();
    }
    return children;
}
