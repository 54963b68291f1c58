// SPDX-License-Identifier: MIT
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>

#include <QAudioBuffer>
#include <QAudioDecoder>
#include <QAudioDevice>
#include <QAudioFormat>
#include <QAudioSink>
#include <QCoreApplication>
#include <QIODevice>
#include <QMediaDevices>
#include <QTimer>
#include <QUrl>

#include "platform/standarderror.h"

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

/// Maximum size in bytes of the decoded sound, enough for some minutes. The rest of a longer file
/// is not played.
constexpr qsizetype longestSound = qsizetype{64} * 1024 * 1024;
/// Duration of the silence after the sound, which lets the device play its buffered data.
constexpr auto tail = 1s;
/// A device that takes no data for this time is lost: if it is removed while the sound server goes
/// on, Qt 6.4 does not tell.
constexpr auto longestStall = 3s;

/// Decoded sound that is read a number of times. Reading can begin as soon as the first part is
/// decoded. Where no data is available yet, it returns silence, because a device that once gets no
/// data requests no more. It also returns silence for a while after the end, because a device that
/// is stopped discards its buffered data.
class LoopedSound : public QIODevice
{
public:
    LoopedSound(int count, qsizetype tailSize)
        : roundsLeft(count)
        , tailLeft(tailSize)
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    /// Returns false if no more data fits.
    bool append(const char *data, qsizetype size)
    {
        const qsizetype room = longestSound - sound.size();
        sound.append(data, std::min(size, room));
        return size < room;
    }
    /// Ends the sound: no more data is appended.
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
    /// Returns whether all rounds have been read.
    bool isRead() const
    {
        return complete && roundsLeft <= 1 && position == sound.size();
    }
    /// Returns whether all rounds and the silence after them have been read.
    bool isOver() const
    {
        return complete && tailLeft == 0;
    }
    /// Returns whether anything has been read since the previous call.
    bool takeProgress()
    {
        return std::exchange(progress, false);
    }

    bool isSequential() const override
    {
        return true;
    }

protected:
    qint64 readData(char *data, qint64 maxSize) override
    {
        progress = true;
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
    bool progress = false;
};

/// Plays a file and ends the process. It decodes the file and feeds the device itself: Qt's media
/// player repeats a file by seeking in it, and the sound is then often lost.
class Player : public QObject
{
public:
    void play(const QString &file, int count)
    {
        const QAudioDevice device = QMediaDevices::defaultAudioOutput();
        if (device.isNull())
            end(EXIT_FAILURE);
        QAudioFormat format = device.preferredFormat();
        format.setSampleFormat(QAudioFormat::Int16); // silence is 0 in this format
        sound = std::make_unique<LoopedSound>(
            count, format.bytesForDuration(std::chrono::microseconds(tail).count()));
        sink = std::make_unique<QAudioSink>(device, format);
        connect(sink.get(), &QAudioSink::stateChanged, this, &Player::endIfOver);
        decoder.setAudioFormat(format);
        decoder.setSource(QUrl::fromLocalFile(file));
        connect(&decoder, &QAudioDecoder::bufferReady, this, &Player::takeBuffer);
        // If the file is damaged, the part that could be decoded is played.
        connect(&decoder, &QAudioDecoder::finished, this, &Player::finish);
        connect(&decoder, qOverload<QAudioDecoder::Error>(&QAudioDecoder::error), this,
                &Player::finish);
        connect(&stall, &QTimer::timeout, this, [this] {
            if (!sound->takeProgress())
                endLost();
        });
        decoder.start();
    }

private:
    void takeBuffer()
    {
        const QAudioBuffer buffer = decoder.read();
        const bool isFirst = sound->isEmpty();
        const bool isAll = !sound->append(buffer.constData<char>(), buffer.byteCount());
        if (isFirst) {
            sink->start(sound.get());
            stall.start(longestStall);
        }
        if (isAll) {
            decoder.stop();
            sound->finish();
        }
        endIfOver();
    }

    void finish()
    {
        sound->finish();
        endIfOver();
    }

    void endIfOver()
    {
        const QAudio::State state = sink->state();
        if (sound->isEmpty()) {
            if (sound->isComplete())
                end(EXIT_SUCCESS); // nothing could be decoded
        } else if (state == QAudio::StoppedState) {
            endLost();
        } else if (state == QAudio::IdleState && sound->isOver()) {
            end(EXIT_SUCCESS);
        }
    }

    /// Ends the process because the device is lost, which does not matter after the sound.
    [[noreturn]] void endLost()
    {
        end(sound->isRead() ? EXIT_SUCCESS : EXIT_FAILURE);
    }

    /// Ends the process without the destructors, in which a sound system that is gone can hang.
    [[noreturn]] static void end(int result)
    {
        std::_Exit(result);
    }

    std::unique_ptr<LoopedSound> sound;
    std::unique_ptr<QAudioSink> sink;
    QAudioDecoder decoder;
    QTimer stall;
};

} // namespace

/// Plays a sound file a number of times: trolleo-alarm FILE COUNT. Fails if there is no device, or
/// if it is lost before the end. A file that cannot be decoded is silent.
int main(int argc, char *argv[])
{
    StandardError::takeMessages();
    // PULSE_PROP sets the properties that libpulse gives to the streams of this process. The role
    // lets a desktop treat an alarm differently from music. Qt 6 has no function for it.
    if (!qEnvironmentVariableIsSet("PULSE_PROP"))
        qputenv("PULSE_PROP", "media.role=alarm");
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(u"trolleo"_s);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3) {
        qCritical("usage: trolleo-alarm FILE COUNT");
        return EXIT_FAILURE;
    }
    Player player;
    player.play(arguments.at(1), arguments.at(2).toInt());
    return QCoreApplication::exec();
}
