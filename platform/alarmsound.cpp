// SPDX-License-Identifier: MIT
#include "platform/alarmsound.h"

#include <chrono>
#include <memory>

#include <QAudioOutput>
#include <QDeadlineTimer>
#include <QFileInfo>
#include <QMediaPlayer>
#include <QThread>
#include <QUrl>

using namespace std::chrono_literals;

namespace {

/// How long the end of the program waits for a sound system that does not answer.
constexpr auto patience = 500ms;

} // namespace

/// What touches the sound system. The device is held only while the sound plays.
class AlarmSound::Player : public QObject
{
public:
    void play(const QString &file, int count)
    {
        stop();
        // Spares loading the sound system for nothing.
        if (!QFileInfo::exists(file))
            return;
        output = std::make_unique<QAudioOutput>();
        player = std::make_unique<QMediaPlayer>();
        player->setAudioOutput(output.get());
        player->setLoops(count);
        // Queued: a player must not be destroyed by a slot of its own.
        connect(
            player.get(), &QMediaPlayer::playbackStateChanged, this,
            [this](QMediaPlayer::PlaybackState state) {
                if (state == QMediaPlayer::StoppedState)
                    stop();
            },
            Qt::QueuedConnection);
        player->setSource(QUrl::fromLocalFile(file));
        player->play();
    }

    void stop()
    {
        if (player)
            disconnect(player.get(), nullptr, this, nullptr);
        player.reset();
        output.reset();
    }

private:
    std::unique_ptr<QAudioOutput> output;
    std::unique_ptr<QMediaPlayer> player;
};

AlarmSound::AlarmSound(const QString &file, QObject *parent)
    : QObject(parent)
    , soundFile(file)
{}

AlarmSound::~AlarmSound()
{
    if (!thread)
        return;
    stop();
    thread->quit();
    // A thread that hangs in the sound system ends with the process; destroyed, it would abort it.
    if (thread->wait(QDeadlineTimer(patience)))
        delete thread;
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
        player = new Player;
        player->moveToThread(thread);
        connect(thread, &QThread::finished, player, &QObject::deleteLater);
        thread->start();
    }
    QMetaObject::invokeMethod(
        player, [target = player, file = soundFile, count = loops] { target->play(file, count); });
}

void AlarmSound::stop()
{
    if (player)
        QMetaObject::invokeMethod(player, [target = player] { target->stop(); });
}
