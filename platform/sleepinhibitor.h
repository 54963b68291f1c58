// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include <QDBusUnixFileDescriptor>
#include <QObject>
#include <QString>

class MessageBus;

/// Keeps the device from falling asleep, by org.freedesktop.login1; the screen may go dark. Where
/// that is not granted, sleep is only delayed, and told. No call waits.
class SleepInhibitor : public QObject
{
    Q_OBJECT

public:
    /// `systemBus` outlives it.
    explicit SleepInhibitor(MessageBus &systemBus, QObject *parent = nullptr);

    /// Keeps it awake from now on; `why` is for the person, and translated.
    void hold(const QString &why);
    /// Lets it fall asleep again.
    void release();

signals:
    /// The device falls asleep in spite of it.
    void fallingAsleep();
    /// It has woken up.
    void wokeUp();

private slots:
    void prepareForSleep(bool begins);

private:
    void inhibitBy(const QString &mode);

    MessageBus &bus;
    QString reason;
    /// There while sleep is to be inhibited; replies go with it.
    std::unique_ptr<QObject> holding;
    /// Sleep is inhibited while this is open.
    QDBusUnixFileDescriptor lock;
};
