// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <utility>

#include <QList>
#include <QObject>
#include <QString>

class MessageBus;

/// What the desktop's notification service (org.freedesktop.Notifications 1.2) shows.
struct Notification
{
    enum Urgency : uchar { Low, Normal, Critical };

    QString summary;
    /// May be empty. Its text is taken as it is, not as markup.
    QString body = {};
    Urgency urgency = Normal;
    /// It stays when one of its actions is chosen.
    bool isResident = false;
    /// Keys and labels; "default" is the notification itself.
    QList<std::pair<QString, QString>> actions = {};
};

/// Shows one notification at a time, where the desktop has a service for that. No call waits.
class Notifier : public QObject
{
    Q_OBJECT

public:
    /// `sessionBus` outlives it.
    explicit Notifier(MessageBus &sessionBus, QObject *parent = nullptr);
    ~Notifier() override;

    /// Shows `notification` instead of the one that shows.
    void show(const Notification &notification);
    /// Takes the notification away, now or as soon as the service has told that it shows.
    void close();

signals:
    /// The person has chosen an action of the notification that shows.
    void actionInvoked(const QString &key);
    /// Precedes actionInvoked() where the compositor lets a window come forward by a token.
    void activationTokenGiven(const QString &token);

private slots:
    void takeAction(uint notification, const QString &key);
    void takeToken(uint notification, const QString &token);
    void takeClosing(uint notification, uint reason);

private:
    void connectSignals();
    void take(uint notification, int wantedThen);

    MessageBus &bus;
    bool signalsAreConnected = false;
    /// What the service calls the notification that shows; 0 for none.
    uint id = 0;
    /// What is to be shown waits for the bus as long as this is there.
    std::unique_ptr<QObject> waiting;
    /// Counts what was wanted; a reply to an earlier wish is for nothing.
    int wanted = 0;
};
