// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

class QThread;

/// Plays a sound file, .wav or .mp3, a number of times.
///
/// A sound system may take its time, or never answer: it is spoken to from a thread of its own,
/// which starts with the first play(), so neither of them waits for it. Nothing is reported; what
/// cannot be played stays silent.
class AlarmSound : public QObject
{
    Q_OBJECT

public:
    /// `file` is a path; the file is not looked at before play().
    explicit AlarmSound(const QString &file, QObject *parent = nullptr);
    /// Ends the sound.
    ~AlarmSound() override;

    QString fileName() const;

    /// How often one play() plays the file; once unless told otherwise.
    void setLoops(int count);

    /// Plays the file from its beginning, also when it is playing already.
    void play();
    /// Ends the sound. Does nothing when it is silent.
    void stop();

    /// A sound that was destroyed has left its thread behind, waiting for a sound system that does
    /// not answer. Qt would wait for it at the end of the process.
    static bool isAnyStuck();

private:
    class Player;

    QString soundFile;
    int loops = 1;
    QThread *thread = nullptr;
    Player *player = nullptr; // lives in the thread
};
