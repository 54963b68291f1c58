// SPDX-License-Identifier: MIT
#pragma once

#include <QLocalServer>
#include <QTemporaryDir>

/// A sound server that accepts clients and never answers, so an alarm lasts until it is stopped.
/// PULSE_SERVER leads to it while this object exists, also before listen().
class MuteSoundServer
{
public:
    MuteSoundServer()
    {
        qputenv("PULSE_SERVER", "unix:" + socket().toUtf8());
    }
    ~MuteSoundServer()
    {
        qunsetenv("PULSE_SERVER");
    }
    MuteSoundServer(const MuteSoundServer &) = delete;
    MuteSoundServer &operator=(const MuteSoundServer &) = delete;

    bool listen()
    {
        return server.listen(socket());
    }

private:
    QString socket() const
    {
        return folder.filePath("native");
    }

    QTemporaryDir folder;
    QLocalServer server;
};
