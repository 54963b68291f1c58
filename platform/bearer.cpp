// SPDX-License-Identifier: MIT
#include "platform/bearer.h"

#include <algorithm>

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QSet>

using namespace Qt::StringLiterals;

// As org.freedesktop.DBus.ObjectManager tells the objects of a service.
using Interfaces = QMap<QString, QVariantMap>;
using Objects = QMap<QDBusObjectPath, Interfaces>;

namespace {

const QString service = u"org.freedesktop.NetworkManager"_s;
const QString servicePath = u"/org/freedesktop/NetworkManager"_s;
const QString activeInterface = u"org.freedesktop.NetworkManager.Connection.Active"_s;
const QString deviceInterface = u"org.freedesktop.NetworkManager.Device"_s;
const QString profileInterface = u"org.freedesktop.NetworkManager.Settings.Connection"_s;
const QString noObject = u"/"_s;

// NMActiveConnectionState.
constexpr uint activating = 1;
constexpr uint activated = 2;

// Other kinds, bridges of virtual machines for example, lead nowhere by themselves.
const QSet<QString> kindsOfNetworks{u"802-3-ethernet"_s, u"802-11-wireless"_s, u"bluetooth"_s,
                                    u"cdma"_s, u"gsm"_s};

/// Calls a method of NetworkManager, without starting one that does not run, and lets `done` take
/// the reply as long as `context` lives.
template <typename Done>
void call(QObject *context, const QString &path, const QString &interface, const QString &method,
          const QVariantList &arguments, Done done)
{
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    message.setAutoStartService(false);
    auto *watcher =
        new QDBusPendingCallWatcher(QDBusConnection::systemBus().asyncCall(message), context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, context,
                     [done](QDBusPendingCallWatcher *finished) {
                         finished->deleteLater();
                         done(finished->reply());
                     });
}

bool isError(const QDBusMessage &reply)
{
    return reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty();
}

bool isSet(const QDBusObjectPath &path)
{
    return !path.path().isEmpty() && path.path() != noObject;
}

} // namespace

const NetworkSnapshot::Profile *NetworkSnapshot::profile(const QString &uuid) const
{
    const auto found = std::ranges::find(profiles, uuid, &Profile::uuid);
    return found == profiles.end() ? nullptr : &*found;
}

const NetworkSnapshot::Connection *NetworkSnapshot::connection(const QString &uuid) const
{
    const auto found = std::ranges::find(connections, uuid, &Connection::uuid);
    return found == connections.end() ? nullptr : &*found;
}

const NetworkSnapshot::Connection *NetworkSnapshot::bestConnection() const
{
    const auto rank = [](const Connection &connection) {
        return std::pair(connection.isDefault, connection.isUp);
    };
    const auto best = std::ranges::max_element(connections, {}, rank);
    return best == connections.end() ? nullptr : &*best;
}

const NetworkSnapshot::Profile *NetworkSnapshot::bestProfile() const
{
    const Profile *best = nullptr;
    for (const Profile &each : profiles) {
        if (isSet(each.device) && (!best || each.lastUsed > best->lastUsed))
            best = &each;
    }
    return best;
}

NetworkSnapshotRequest::NetworkSnapshotRequest(QObject *parent)
    : QObject(parent)
{
    qDBusRegisterMetaType<Interfaces>();
    qDBusRegisterMetaType<Objects>();
    call(this, u"/org/freedesktop"_s, u"org.freedesktop.DBus.ObjectManager"_s,
         u"GetManagedObjects"_s, {}, [this](const QDBusMessage &reply) { readObjects(reply); });
}

void NetworkSnapshotRequest::fail()
{
    emit failed();
    deleteLater();
}

void NetworkSnapshotRequest::readObjects(const QDBusMessage &reply)
{
    if (isError(reply)) {
        fail();
        return;
    }
    const auto objects = qdbus_cast<Objects>(reply.arguments().constFirst());
    for (auto object = objects.cbegin(); object != objects.cend(); ++object) {
        if (object->contains(profileInterface))
            snapshot.profiles.append({.path = object.key(), .uuid = {}, .device = {}});
        const QVariantMap active = object->value(activeInterface);
        const uint state = active.value(u"State"_s).toUInt();
        const bool isDefault =
            active.value(u"Default"_s).toBool() || active.value(u"Default6"_s).toBool();
        if ((state == activating || state == activated) &&
            (isDefault || kindsOfNetworks.contains(active.value(u"Type"_s).toString()))) {
            snapshot.connections.append({.path = object.key(),
                                         .uuid = active.value(u"Uuid"_s).toString(),
                                         .isUp = state == activated,
                                         .isDefault = isDefault});
        }
    }
    for (auto object = objects.cbegin(); object != objects.cend(); ++object) {
        const QVariantMap device = object->value(deviceInterface);
        const auto available =
            qdbus_cast<QList<QDBusObjectPath>>(device.value(u"AvailableConnections"_s));
        for (NetworkSnapshot::Profile &profile : snapshot.profiles) {
            if (available.contains(profile.path))
                profile.device = object.key();
        }
    }
    // What a profile is called is no property of it.
    settingsAwaited = snapshot.profiles.size();
    for (qsizetype index = 0; index < snapshot.profiles.size(); ++index) {
        call(this, snapshot.profiles.at(index).path.path(), profileInterface, u"GetSettings"_s, {},
             [this, index](const QDBusMessage &settings) { readSettings(index, settings); });
    }
    if (settingsAwaited == 0)
        finish();
}

void NetworkSnapshotRequest::readSettings(qsizetype index, const QDBusMessage &reply)
{
    if (!isError(reply)) {
        const auto settings = qdbus_cast<Interfaces>(reply.arguments().constFirst());
        const QVariantMap connection = settings.value(u"connection"_s);
        NetworkSnapshot::Profile &profile = snapshot.profiles[index];
        profile.uuid = connection.value(u"uuid"_s).toString();
        profile.lastUsed = connection.value(u"timestamp"_s).toULongLong();
    }
    if (--settingsAwaited == 0)
        finish();
}

void NetworkSnapshotRequest::finish()
{
    emit succeeded(snapshot);
    deleteLater();
}

QNetworkConfiguration::QNetworkConfiguration(Type configurationType,
                                             const QString &configurationIdentifier,
                                             StateFlags stateFlags)
    : kind(configurationType)
    , uuid(configurationIdentifier)
    , flags(stateFlags)
{}

QNetworkConfiguration::Type QNetworkConfiguration::type() const
{
    return kind;
}

QString QNetworkConfiguration::identifier() const
{
    return uuid;
}

QNetworkConfiguration::StateFlags QNetworkConfiguration::state() const
{
    return flags;
}

QNetworkConfigurationManager::QNetworkConfigurationManager(QObject *parent)
    : QObject(parent)
{}

void QNetworkConfigurationManager::updateConfigurations()
{
    auto *request = new NetworkSnapshotRequest(this);
    connect(request, &NetworkSnapshotRequest::succeeded, this,
            [this](const NetworkSnapshot &current) {
                snapshot = current;
                abilities = {CanStartAndStopInterfaces, NetworkSessionRequired};
                emit updateCompleted();
            });
    connect(request, &NetworkSnapshotRequest::failed, this, [this] {
        snapshot = {};
        abilities = {};
        emit updateCompleted();
    });
}

QNetworkConfigurationManager::Capabilities QNetworkConfigurationManager::capabilities() const
{
    return abilities;
}

QNetworkConfiguration
QNetworkConfigurationManager::configurationFromIdentifier(const QString &identifier) const
{
    const NetworkSnapshot::Profile *profile = snapshot.profile(identifier);
    if (!profile)
        return {};
    const NetworkSnapshot::Connection *connection = snapshot.connection(identifier);
    const auto state = connection && connection->isUp ? QNetworkConfiguration::Active
                       : isSet(profile->device)       ? QNetworkConfiguration::Discovered
                                                      : QNetworkConfiguration::Defined;
    return {QNetworkConfiguration::InternetAccessPoint, identifier, state};
}

QNetworkConfiguration QNetworkConfigurationManager::defaultConfiguration() const
{
    const bool reachable = snapshot.bestConnection() || snapshot.bestProfile();
    return {QNetworkConfiguration::UserChoice, QString(),
            reachable ? QNetworkConfiguration::Discovered : QNetworkConfiguration::Defined};
}

QNetworkSession::QNetworkSession(const QNetworkConfiguration &configuration, QObject *parent)
    : QObject(parent)
    , config(configuration)
{}

void QNetworkSession::open()
{
    auto *request = new NetworkSnapshotRequest(this);
    connect(request, &NetworkSnapshotRequest::succeeded, this, &QNetworkSession::choose);
}

QNetworkConfiguration QNetworkSession::configuration() const
{
    return config;
}

QVariant QNetworkSession::sessionProperty(const QString &key) const
{
    return key == u"UserChoiceConfiguration"_s ? QVariant(used) : QVariant();
}

/// Takes the network there is; only a computer without one is connected.
void QNetworkSession::choose(const NetworkSnapshot &snapshot)
{
    const bool isFree = config.type() == QNetworkConfiguration::UserChoice;
    const NetworkSnapshot::Connection *connection =
        isFree ? nullptr : snapshot.connection(config.identifier());
    if (!connection)
        connection = snapshot.bestConnection();
    if (connection) {
        used = connection->uuid;
        follow(connection->path);
        return;
    }
    const NetworkSnapshot::Profile *profile =
        isFree ? snapshot.bestProfile() : snapshot.profile(config.identifier());
    if (!profile || !isSet(profile->device))
        return;
    used = profile->uuid;
    call(this, servicePath, service, u"ActivateConnection"_s,
         {QVariant::fromValue(profile->path), QVariant::fromValue(profile->device),
          QVariant::fromValue(QDBusObjectPath(noObject))},
         [this](const QDBusMessage &reply) {
             if (!isError(reply))
                 follow(qvariant_cast<QDBusObjectPath>(reply.arguments().constFirst()));
         });
}

/// Waits until a connection is up.
void QNetworkSession::follow(const QDBusObjectPath &connection)
{
    QDBusConnection::systemBus().connect(service, connection.path(), activeInterface,
                                         u"StateChanged"_s, this,
                                         SLOT(connectionStateChanged(uint)));
    // It may be up already.
    call(
        this, connection.path(), u"org.freedesktop.DBus.Properties"_s, u"Get"_s,
        {activeInterface, u"State"_s}, [this](const QDBusMessage &reply) {
            if (!isError(reply))
                connectionStateChanged(
                    qvariant_cast<QDBusVariant>(reply.arguments().constFirst()).variant().toUInt());
        });
}

void QNetworkSession::connectionStateChanged(uint state)
{
    if (state != activated || isOpen)
        return;
    isOpen = true;
    if (config.type() != QNetworkConfiguration::UserChoice)
        config = {QNetworkConfiguration::InternetAccessPoint, used, QNetworkConfiguration::Active};
    emit opened();
}
