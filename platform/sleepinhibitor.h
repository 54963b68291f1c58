// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include <QDBusUnixFileDescriptor>
#include <QObject>
#include <QString>

class MessageBus;

/// Prevents the device from sleeping, by org.freedesktop.login1; the screen may turn off. Where
/// that is not granted, it only delays sleep and emits fallingAsleep(). No function blocks.
class SleepInhibitor : public QObject
{
    Q_OBJECT

public:
    /// `systemBus` must outlive this object.
    explicit SleepInhibitor(MessageBus &systemBus, QObject *parent = nullptr);

    /// Prevents sleep from now on. `why` is a translated text for the user.
    void hold(const QString &why);
    /// Allows sleep again.
    void release();

signals:
    /// The device is about to sleep in spite of the lock.
    void fallingAsleep();
    /// The device has woken up.
    void wokeUp();

private slots:
    void prepareForSleep(bool begins);

private:
    void inhibitBy(const QString &mode);

    MessageBus &bus;
    QString reason;
    /// The context of all calls while sleep is inhibited. Replies are ignored once it is destroyed.
    std::unique_ptr<QObject> holding;
    /// Sleep is inhibited while this is open.
    QDBusUnixFileDescriptor lock;
};
