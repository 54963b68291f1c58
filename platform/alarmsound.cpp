// SPDX-License-Identifier: MIT
#include "platform/alarmsound.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <memory>

#include <QAudioBuffer>
#include <QAudioDecoder>
#include <QAudioDevice>
#include <QAudioFormat>
#include <QAudioSink>
#include <QDeadlineTimer>
#include <QFileInfo>
#include <QIODevice>
#include <QMediaDevices>
#include <QThread>
#include <QUrl>

using namespace std::chrono_literals;

namespace {

/// How long the end of the program waits for a sound system that does not answer.
constexpr auto patience = 500ms;

bool anyIsStuck = false;

/// Bytes of decoded sound that are kept, some minutes; what follows in a longer file is not played.
constexpr qsizetype longestSound = qsizetype{64} * 1024 * 1024;
/// Silence after the sound, until the device has played what it holds.
constexpr auto tail = 1s;

/// Decoded sound, to be read a number of times over, from the moment its first part is there. It
/// is silent where there is nothing to read yet, since a device that once got nothing asks no more,
/// and for a while after the end, since a device that is stopped drops what it has not played.
class LoopedSound : public QIODevice
{
public:
    LoopedSound(int count, qsizetype tailSize)
        : roundsLeft(count)
        , tailLeft(tailSize)
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    /// False when it holds as much as it will.
    bool append(const char *data, qsizetype size)
    {
        const qsizetype room = longestSound - sound.size();
        sound.append(data, std::min(size, room));
        return size < room;
    }
    /// No more will be appended.
    void finish()
    {
        complete = true;
    }
    bool isEmpty() const
    {
        return sound.isEmpty();
    }
    bool isComplete() const
    {
        return complete;
    }
    /// Everything has been read as often as it is to be read.
    bool isOver() const
    {
        return complete && tailLeft == 0;
    }

    bool isSequential() const override
    {
        return true;
    }

protected:
    qint64 readData(char *data, qint64 maxSize) override
    {
        if (position == sound.size() && complete && roundsLeft > 1) {
            position = 0;
            --roundsLeft;
        }
        if (position == sound.size())
            return readSilence(data, maxSize);
        const qint64 size = std::min<qint64>(maxSize, sound.size() - position);
        std::memcpy(data, sound.constData() + position, static_cast<size_t>(size));
        position += size;
        return size;
    }
    qint64 writeData(const char * /*data*/, qint64 /*maxSize*/) override
    {
        return -1;
    }

private:
    qint64 readSilence(char *data, qint64 maxSize)
    {
        const qint64 size = complete ? std::min<qint64>(maxSize, tailLeft) : maxSize;
        std::memset(data, 0, static_cast<size_t>(size));
        if (complete)
            tailLeft -= size;
        return size;
    }

    QByteArray sound;
    qsizetype position = 0;
    int roundsLeft;
    qsizetype tailLeft; // bytes
    bool complete = false;
};

} // namespace

/// What touches the sound system, which is held only while it plays. The file is decoded and fed to
/// the device here: Qt's media player repeats a file by seeking in it, after which its
/// sound is often lost.
class AlarmSound::Player : public QObject
{
public:
    void play(const QString &file, int count)
    {
        stop();
        // Spares loading the sound system for nothing.
        if (!QFileInfo(file).isFile())
            return;
        const QAudioDevice device = QMediaDevices::defaultAudioOutput();
        if (device.isNull())
            return;
        QAudioFormat format = device.preferredFormat();
        format.setSampleFormat(QAudioFormat::Int16); // in which silence is 0
        sound = std::make_unique<LoopedSound>(
            count, format.bytesForDuration(std::chrono::microseconds(tail).count()));
        sink = std::make_unique<QAudioSink>(device, format);
        decoder = std::make_unique<QAudioDecoder>();
        decoder->setAudioFormat(format);
        decoder->setSource(QUrl::fromLocalFile(file));
        connect(decoder.get(), &QAudioDecoder::bufferReady, this, &Player::takeBuffer);
        // What could be decoded of a damaged file is played.
        connect(decoder.get(), &QAudioDecoder::finished, this, &Player::finish);
        connect(decoder.get(), qOverload<QAudioDecoder::Error>(&QAudioDecoder::error), this,
                &Player::finish);
        // Queued: the sink is not to be destroyed by what it tells.
        connect(sink.get(), &QAudioSink::stateChanged, this, &Player::stopIfOver,
                Qt::QueuedConnection);
        decoder->start();
    }

    void stop()
    {
        decoder.reset();
        sink.reset();
        sound.reset();
    }

private:
    void finish()
    {
        sound->finish();
        QMetaObject::invokeMethod(this, &Player::stopIfOver, Qt::QueuedConnection);
    }

    void stopIfOver()
    {
        if (!sink)
            return;
        // Stopped: nothing could be decoded, or the device is gone.
        const QAudio::State state = sink->state();
        if (sound->isComplete() &&
            (state == QAudio::StoppedState || (state == QAudio::IdleState && sound->isOver())))
            stop();
    }

    void takeBuffer()
    {
        const QAudioBuffer buffer = decoder->read();
        const bool isFirst = sound->isEmpty();
        if (!sound->append(buffer.constData<char>(), buffer.byteCount())) {
            decoder->stop();
            finish();
        }
        if (isFirst)
            sink->start(sound.get());
    }

    std::unique_ptr<LoopedSound> sound;
    std::unique_ptr<QAudioSink> sink;
    std::unique_ptr<QAudioDecoder> decoder;
};

AlarmSound::AlarmSound(const QString &file, QObject *parent)
    : QObject(parent)
    , soundFile(file)
{
    // libpulse gives what it plays for this process the properties that this names: a desktop may
    // treat an alarm otherwise than music. Qt 6 has no call for it.
    if (!qEnvironmentVariableIsSet("PULSE_PROP"))
        qputenv("PULSE_PROP", "media.role=alarm");
}

AlarmSound::~AlarmSound()
{
    if (!thread)
        return;
    stop();
    thread->quit();
    // A thread that hangs in the sound system ends with the process; destroyed, it would abort it.
    if (thread->wait(QDeadlineTimer(patience)))
        delete thread;
    else
        anyIsStuck = true;
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
