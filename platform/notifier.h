// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <utility>

#include <QList>
#include <QObject>
#include <QString>

class MessageBus;

/// The content of a notification for the desktop's notification service
/// (org.freedesktop.Notifications 1.2).
struct Notification
{
    enum Urgency : uchar { Low, Normal, Critical };

    QString summary;
    /// Optional plain text; markup is not interpreted.
    QString body = {};
    Urgency urgency = Normal;
    /// The notification stays when one of its actions is chosen.
    bool isResident = false;
    /// Keys and labels. "default" is a click on the notification itself.
    QList<std::pair<QString, QString>> actions = {};
};

/// Shows one notification at a time, if the desktop has a notification service. No function blocks.
class Notifier : public QObject
{
    Q_OBJECT

public:
    /// `sessionBus` must outlive this object.
    explicit Notifier(MessageBus &sessionBus, QObject *parent = nullptr);
    ~Notifier() override;

    /// Shows `notification`, replacing the current one.
    void show(const Notification &notification);
    /// Closes the notification, now or as soon as the service has confirmed that it is shown.
    void close();

signals:
    /// The user has chosen an action of the current notification.
    void actionInvoked(const QString &key);
    /// Emitted before actionInvoked() if the compositor requires a token to activate a window.
    void activationTokenGiven(const QString &token);

private slots:
    void takeAction(uint notification, const QString &key);
    void takeToken(uint notification, const QString &token);
    void takeClosing(uint notification, uint reason);
    void forget();

private:
    void connectSignals();
    void take(uint notification, int wantedThen);

    MessageBus &bus;
    bool signalsAreConnected = false;
    /// The service's id of the current notification; 0 if there is none.
    uint id = 0;
    /// Destroying this cancels a notification that waits for the bus.
    std::unique_ptr<QObject> waiting;
    /// Number of requests. A reply to an earlier request is ignored.
    int wanted = 0;
};
