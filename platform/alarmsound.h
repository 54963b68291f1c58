// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <QThread>

/// Plays a sound file, .wav or .mp3, a number of times.
///
/// A sound system can respond slowly or never, so it is used from a separate thread. The thread
/// starts with the first play(), and neither function waits for it. Errors are not reported; a file
/// that cannot be played is silent.
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

    /// Stops the sound for good, and ends the thread as soon as the sound system lets it. Does not
    /// wait for that. play() must not be called any more.
    void retire();

    /// Returns whether a destroyed AlarmSound has left a thread that still waits for the sound
    /// system. Qt would wait for that thread at the end of the process.
    static bool isAnyStuck();

private:
    class Worker;

    QString soundFile;
    int loops = 1;
    QPointer<QThread> thread; // deleted after it was retired
    Worker *worker = nullptr; // lives in the thread
};
