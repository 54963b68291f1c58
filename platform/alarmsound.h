// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include <QObject>
#include <QString>

/// Plays a sound file, .wav or .mp3, a number of times.
///
/// A sound system can respond slowly or never, so it is used from a separate thread, which all
/// objects share, and which plays one sound at a time. The thread starts with the first play(),
/// and neither function waits for it. Errors are not reported; a file that cannot be played is
/// silent.
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
    /// Stops the sound, also that of another object. Does nothing if no sound is playing.
    void stop();

    /// Returns whether a destroyed AlarmSound has left a thread that still waits for the sound
    /// system. Qt would wait for that thread at the end of the process.
    static bool isAnyStuck();

private:
    class Thread;

    QString soundFile;
    int loops = 1;
    std::shared_ptr<Thread> thread;
};
