// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

#include <QObject>
#include <QString>
#include <QTimer>

class QProcess;

/// Plays a sound file, .wav or .mp3, a number of times.
///
/// The program "trolleo-alarm" does it, a process for each alarm: a sound system can respond slowly
/// or never, its libraries would take a tenth of the start of this program, and Qt connects to a
/// sound server only once in a process. No function waits for it. If there is no sound device, if
/// it is lost before the end, or if the player crashes, the file is played again from its beginning
/// after 1, 2, 4, and so on up to 25 s. A file that cannot be decoded is silent.
class AlarmSound : public QObject
{
    Q_OBJECT

public:
    /// `file` is a path. The file is not opened before play().
    explicit AlarmSound(const QString &file, QObject *parent = nullptr);
    /// Stops the sound.
    ~AlarmSound() override;

    QString fileName() const;

    /// Sets how many times play() plays the file; the default is once.
    void setLoops(int count);

    /// Plays the file from its beginning, even if it is already playing.
    void play();
    /// Stops the sound. Does nothing if no sound is playing.
    void stop();

private:
    void startPlayer();
    void takeResult(bool isPlayed);

    QString soundFile;
    int loops = 1;
    QProcess *player = nullptr; // owned; null if none is playing
    QTimer retry;
    std::chrono::seconds retryPause;
};
