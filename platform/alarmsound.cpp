// SPDX-License-Identifier: MIT
#include "platform/alarmsound.h"

#include <chrono>
#include <memory>

#include <QDeadlineTimer>
#include <QFileInfo>
#include <QThread>

#include "platform/module.h"
#include "platform/soundplayer.h"

using namespace std::chrono_literals;

namespace {

/// How long the program waits at its end for a sound system that does not respond.
constexpr auto patience = 500ms;

bool anyIsStuck = false;

/// Lives in the thread and loads the module there.
class Worker : public QObject
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

} // namespace

/// Qt's sound system belongs to the thread that first uses it, and connects to a restarted sound
/// server only while that thread runs. So all alarms share a thread, which ends with the last
/// AlarmSound that has played.
class AlarmSound::Thread
{
public:
    static std::shared_ptr<Thread> shared()
    {
        static std::weak_ptr<Thread> common;
        std::shared_ptr<Thread> found = common.lock();
        if (!found) {
            found = std::make_shared<Thread>();
            common = found;
        }
        return found;
    }

    Thread()
        : thread(new QThread)
        , worker(new Worker)
    {
        thread->setObjectName(QStringLiteral("alarm"));
        worker->moveToThread(thread);
        QObject::connect(thread, &QThread::finished, worker, &QObject::deleteLater);
        thread->start();
    }

    ~Thread()
    {
        thread->quit();
        // A thread that hangs in the sound system ends with the process. Deleting it would abort
        // the process.
        if (thread->wait(QDeadlineTimer(patience)))
            delete thread;
        else
            anyIsStuck = true;
    }

    Thread(const Thread &) = delete;
    Thread &operator=(const Thread &) = delete;

    void play(const QString &file, int count)
    {
        QMetaObject::invokeMethod(worker,
                                  [target = worker, file, count] { target->play(file, count); });
    }

    void stop()
    {
        QMetaObject::invokeMethod(worker, [target = worker] { target->stop(); });
    }

private:
    QThread *thread;
    Worker *worker; // lives in the thread
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
    stop();
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
    if (!thread)
        thread = Thread::shared();
    thread->play(soundFile, loops);
}

void AlarmSound::stop()
{
    if (thread)
        thread->stop();
}
