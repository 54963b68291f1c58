// SPDX-License-Identifier: MIT
#include <algorithm>
#include <chrono>
#include <cstring>
#include <memory>

#include <QAudioBuffer>
#include <QAudioDecoder>
#include <QAudioDevice>
#include <QAudioFormat>
#include <QAudioSink>
#include <QIODevice>
#include <QMediaDevices>
#include <QUrl>

#include "platform/soundplayer.h"

using namespace std::chrono_literals;

namespace {

/// Maximum size in bytes of the decoded sound, enough for some minutes. The rest of a longer file
/// is not played.
constexpr qsizetype longestSound = qsizetype{64} * 1024 * 1024;
/// Duration of the silence after the sound, which lets the device play its buffered data.
constexpr auto tail = 1s;

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
    /// Returns whether all rounds and the silence after them have been read.
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

/// Uses the sound system, and holds it only while it plays. It decodes the file and feeds the
/// device itself: Qt's media player repeats a file by seeking in it, and the sound is then often
/// lost.
class Player : public SoundPlayer
{
public:
    void play(const QString &file, int count) override
    {
        stop();
        const QAudioDevice device = QMediaDevices::defaultAudioOutput();
        if (device.isNull())
            return;
        QAudioFormat format = device.preferredFormat();
        format.setSampleFormat(QAudioFormat::Int16); // silence is 0 in this format
        sound = std::make_unique<LoopedSound>(
            count, format.bytesForDuration(std::chrono::microseconds(tail).count()));
        sink = std::make_unique<QAudioSink>(device, format);
        decoder = std::make_unique<QAudioDecoder>();
        decoder->setAudioFormat(format);
        decoder->setSource(QUrl::fromLocalFile(file));
        connect(decoder.get(), &QAudioDecoder::bufferReady, this, &Player::takeBuffer);
        // If the file is damaged, the part that could be decoded is played.
        connect(decoder.get(), &QAudioDecoder::finished, this, &Player::finish);
        connect(decoder.get(), qOverload<QAudioDecoder::Error>(&QAudioDecoder::error), this,
                &Player::finish);
        // Queued, because the sink must not be destroyed within its own signal.
        connect(sink.get(), &QAudioSink::stateChanged, this, &Player::stopIfOver,
                Qt::QueuedConnection);
        decoder->start();
    }

    void stop() override
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
        // The stopped state means that nothing could be decoded, or that the device is gone.
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

} // namespace

class SoundModule : public QObject, public SoundPlayerFactory
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID SoundPlayerFactory_iid)
    Q_INTERFACES(SoundPlayerFactory)

public:
    std::unique_ptr<SoundPlayer> create() override
    {
        return std::make_unique<Player>();
    }
};

#include "soundmodule.moc"
