// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include <QObject>

#include "platform/notifier.h"

/// Alerts the user through the desktop and the device: a notification above all programs, and
/// vibration or light where a feedback service (org.sigxcpu.Feedback) runs. No function blocks.
class DeviceAlert : public QObject
{
    Q_OBJECT

public:
    /// `sessionBus` must outlive this object.
    explicit DeviceAlert(MessageBus &sessionBus, QObject *parent = nullptr);
    ~DeviceAlert() override;

    /// Returns the program's instance, which the application object owns.
    static DeviceAlert &instance();

    /// Sets the notification that the next start() shows.
    void setNotification(const Notification &content);

    void start();
    void stop();

signals:
    /// The same signals as those of Notifier.
    void actionInvoked(const QString &key);
    void activationTokenGiven(const QString &token);

private:
    void startFeedback();
    void endFeedback(uint feedback);

    MessageBus &bus;
    Notifier notifier;
    Notification notification;
    /// The service's id of the current feedback; 0 if there is none.
    uint feedbackId = 0;
    /// Destroying this cancels a start that waits for the bus.
    std::unique_ptr<QObject> waiting;
    /// Number of starts and stops. A reply to an earlier start ends the feedback that it started.
    int wanted = 0;
};
