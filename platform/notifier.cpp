// SPDX-License-Identifier: MIT
#include "platform/notifier.h"

#include <QStringList>
#include <QVariantMap>

#include "platform/messagebus.h"

using namespace Qt::StringLiterals;

namespace {

const QString service = u"org.freedesktop.Notifications"_s;
const QString path = u"/org/freedesktop/Notifications"_s;

MessageBus::Call closing(uint id)
{
    return {service, path, service, u"CloseNotification"_s, {id}};
}

} // namespace

Notifier::Notifier(MessageBus &sessionBus, QObject *parent)
    : QObject(parent)
    , bus(sessionBus)
{
    connect(&bus, &MessageBus::lost, this, [this] {
        signalsAreConnected = false;
        forget();
    });
}

Notifier::~Notifier()
{
    close();
}

void Notifier::show(const Notification &notification)
{
    const int current = ++wanted;
    QStringList actions;
    for (const auto &[key, label] : notification.actions)
        actions << key << label;
    const QVariantMap hints{
        {u"urgency"_s, QVariant::fromValue(static_cast<uchar>(notification.urgency))},
        {u"desktop-entry"_s, u"trolleo"_s},
        {u"suppress-sound"_s, true}, // the alarm has a sound of its own
        {u"resident"_s, notification.isResident},
    };
    // The service's default timeout could close the notification before the user sees it.
    constexpr int never = 0;
    waiting = std::make_unique<QObject>();
    bus.whenReady(waiting.get(), [this, notification, actions, hints, current] {
        connectSignals();
        bus.call(this,
                 {service,
                  path,
                  service,
                  u"Notify"_s,
                  {u"Trolleo"_s, id, u"trolleo"_s, notification.summary,
                   notification.body.toHtmlEscaped(), actions, hints, never},
                  true},
                 u"u"_s, [this, current](const QVariantList &results) {
                     take(results.constFirst().toUInt(), current);
                 });
    });
}

void Notifier::close()
{
    ++wanted;
    waiting.reset();
    if (id != 0)
        bus.send(closing(id));
    id = 0;
}

void Notifier::take(uint notification, int wantedThen)
{
    if (wantedThen == wanted)
        id = notification;
    else if (notification != id)
        bus.send(closing(notification));
}

void Notifier::connectSignals()
{
    if (signalsAreConnected)
        return;
    signalsAreConnected = true;
    bus.connectSignal({{}, path, service, u"ActionInvoked"_s, u"us"_s}, this,
                      SLOT(takeAction(uint, QString)));
    bus.connectSignal({{}, path, service, u"ActivationToken"_s, u"us"_s}, this,
                      SLOT(takeToken(uint, QString)));
    bus.connectSignal({{}, path, service, u"NotificationClosed"_s, u"uu"_s}, this,
                      SLOT(takeClosing(uint, uint)));
    bus.connectSignal(MessageBus::ownerChange(service), this, SLOT(forget()));
}

void Notifier::takeAction(uint notification, const QString &key)
{
    if (id != 0 && notification == id)
        emit actionInvoked(key);
}

void Notifier::takeToken(uint notification, const QString &token)
{
    if (id != 0 && notification == id)
        emit activationTokenGiven(token);
}

/// A service that starts anew gives the same ids to other notifications.
void Notifier::forget()
{
    id = 0;
}

void Notifier::takeClosing(uint notification, uint /*reason*/)
{
    if (notification == id)
        id = 0;
}
