// SPDX-License-Identifier: MIT
#include "platform/alarmsound.h"

#include <chrono>
#include <memory>

#include <QDeadlineTimer>
#include <QFileInfo>

#include "platform/module.h"
#include "platform/soundplayer.h"

using namespace std::chrono_literals;

namespace {

/// How long the program waits at its end for a sound system that does not respond.
constexpr auto patience = 500ms;

bool anyIsStuck = false;

} // namespace

/// Lives in the thread and loads the module there.
class AlarmSound::Worker : public QObject
{
public:
    void play(const QString &file, int count)
    {
        stop();
        // Avoids loading the sound system needlessly.
        if (!QFileInfo(file).isFile())
            return;
        if (!player)
            player = load();
        if (player)
            player->play(file, count);
    }

    void stop()
    {
        if (player)
            player->stop();
    }

private:
    static std::unique_ptr<SoundPlayer> load()
    {
        auto *factory = loadModule<SoundPlayerFactory>(QStringLiteral("trolleo-sound"));
        return factory ? factory->create() : nullptr;
    }

    std::unique_ptr<SoundPlayer> player;
};

AlarmSound::AlarmSound(const QString &file, QObject *parent)
    : QObject(parent)
    , soundFile(file)
{
    // PULSE_PROP sets the properties that libpulse gives to the streams of this process. The role
    // lets a desktop treat an alarm differently from music. Qt 6 has no function for it.
    if (!qEnvironmentVariableIsSet("PULSE_PROP"))
        qputenv("PULSE_PROP", "media.role=alarm");
}

AlarmSound::~AlarmSound()
{
    if (!thread)
        return;
    stop();
    thread->quit();
    // A thread that hangs in the sound system ends with the process. Deleting it would abort the
    // process.
    if (thread->wait(QDeadlineTimer(patience)))
        delete thread;
    else
        anyIsStuck = true;
}

void AlarmSound::retire()
{
    if (!worker)
        return;
    connect(thread, &QThread::finished, thread, &QObject::deleteLater);
    // In the thread, because quit() would keep it from stopping the sound first.
    QMetaObject::invokeMethod(worker, [target = worker] {
        target->stop();
        target->thread()->quit();
    });
    worker = nullptr;
}

bool AlarmSound::isAnyStuck()
{
    return anyIsStuck;
}

QString AlarmSound::fileName() const
{
    return soundFile;
}

void AlarmSound::setLoops(int count)
{
    loops = count;
}

void AlarmSound::play()
{
    if (!thread) {
        thread = new QThread;
        thread->setObjectName(QStringLiteral("alarm"));
        worker = new Worker;
        worker->moveToThread(thread);
        connect(thread, &QThread::finished, worker, &QObject::deleteLater);
        thread->start();
    }
    QMetaObject::invokeMethod(
        worker, [target = worker, file = soundFile, count = loops] { target->play(file, count); });
}

void AlarmSound::stop()
{
    if (worker)
        QMetaObject::invokeMethod(worker, [target = worker] { target->stop(); });
}
