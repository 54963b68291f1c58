// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include <QObject>

#include "platform/notifier.h"

/// Alerts the person through the desktop and the device: a notification over all programs, and
/// vibration or light where a feedback service (org.sigxcpu.Feedback) runs. No call waits.
class DeviceAlert : public QObject
{
    Q_OBJECT

public:
    /// `sessionBus` outlives it.
    explicit DeviceAlert(MessageBus &sessionBus, QObject *parent = nullptr);
    ~DeviceAlert() override;

    /// The one of the program; it belongs to the application object.
    static DeviceAlert &instance();

    /// What the next start() shows.
    void setNotification(const Notification &content);

    void start();
    void stop();

signals:
    /// As those of Notifier.
    void actionInvoked(const QString &key);
    void activationTokenGiven(const QString &token);

private:
    void startFeedback();
    void endFeedback(uint feedback);

    MessageBus &bus;
    Notifier notifier;
    Notification notification;
    /// What the service calls the feedback that runs; 0 for none.
    uint feedbackId = 0;
    /// A start waits for the bus as long as this is there.
    std::unique_ptr<QObject> waiting;
    /// Counts starts and stops; a reply to an earlier start ends what that has started.
    int wanted = 0;
};
