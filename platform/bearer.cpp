// SPDX-License-Identifier: MIT
#include "platform/bearer.h"

#include <algorithm>
#include <functional>

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QSet>

#include "platform/messagebus.h"

using namespace Qt::StringLiterals;

// The type in which org.freedesktop.DBus.ObjectManager returns the objects of a service.
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

// Other types, for example bridges of virtual machines, do not lead to a network by themselves.
const QSet<QString> kindsOfNetworks{u"802-3-ethernet"_s, u"802-11-wireless"_s, u"bluetooth"_s,
                                    u"cdma"_s, u"gsm"_s};

using Done = std::function<void(const QVariant &)>;
using Failed = std::function<void()>;

/// Calls a method of the NetworkManager with the bus name `owner`. `done` receives the single
/// result, which must have the signature `expected`, unless `context` has been destroyed. The call
/// does not start the service.
void call(QObject *context, const QString &owner, const QDBusObjectPath &object,
          const QString &interface, const QString &method, const QVariantList &arguments,
          const QString &expected, const Done &done, const Failed &failed = {})
{
    MessageBus::system().call(
        context, {owner, object.path(), interface, method, arguments}, expected,
        [done](const QVariantList &results) { done(results.constFirst()); },
        [failed](const QString & /*error*/) {
            if (failed)
                failed();
        });
}

/// Reads a property of an object. `done` receives the value; it is not called if there is none.
void readProperty(QObject *context, const QString &owner, const QDBusObjectPath &object,
                  const QString &interface, const QString &name, const Done &done)
{
    call(context, owner, object, u"org.freedesktop.DBus.Properties"_s, u"Get"_s, {interface, name},
         u"v"_s, [done](const QVariant &value) { done(value.value<QDBusVariant>().variant()); });
}

/// Returns the object paths in a property. Returns none if the property has another type, which
/// must not be demarshalled.
QList<QDBusObjectPath> pathsIn(const QVariant &value)
{
    if (value.userType() == qMetaTypeId<QDBusArgument>() &&
        value.value<QDBusArgument>().currentSignature() != "ao"_L1)
        return {};
    return qdbus_cast<QList<QDBusObjectPath>>(value);
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

const NetworkSnapshot::Connection *NetworkSnapshot::defaultConnection() const
{
    const auto found = std::ranges::find(connections, true, &Connection::isDefault);
    return found == connections.end() ? nullptr : &*found;
}

const NetworkSnapshot::Connection *NetworkSnapshot::anyConnection() const
{
    const Connection *best = nullptr;
    for (const Connection &each : connections) {
        if (each.isNetwork && (!best || (each.isUp && !best->isUp)))
            best = &each;
    }
    return best;
}

const NetworkSnapshot::Profile *NetworkSnapshot::bestProfile() const
{
    const Profile *best = nullptr;
    for (const Profile &each : profiles) {
        if (isSet(freeDevice(each)) && (!best || each.lastUsed > best->lastUsed))
            best = &each;
    }
    return best;
}

QDBusObjectPath NetworkSnapshot::freeDevice(const Profile &profile) const
{
    if (!profile.isNetwork)
        return {};
    for (const QDBusObjectPath &device : profile.devices) {
        const bool isUsed = std::ranges::any_of(connections, [&device](const Connection &each) {
            return each.devices.contains(device);
        });
        if (!isUsed)
            return device;
    }
    return {};
}

NetworkSnapshotRequest::NetworkSnapshotRequest(QObject *parent)
    : QObject(parent)
{
    qDBusRegisterMetaType<Interfaces>();
    qDBusRegisterMetaType<Objects>();
    // Gets the unique name, because a service that starts later has another one.
    call(
        this, u"org.freedesktop.DBus"_s, QDBusObjectPath(u"/org/freedesktop/DBus"_s),
        u"org.freedesktop.DBus"_s, u"GetNameOwner"_s, {service}, u"s"_s,
        [this](const QVariant &owner) {
            snapshot.owner = owner.toString();
            askForObjects();
        },
        [this] { fail(); });
}

void NetworkSnapshotRequest::askForObjects()
{
    call(
        this, snapshot.owner, QDBusObjectPath(u"/org/freedesktop"_s),
        u"org.freedesktop.DBus.ObjectManager"_s, u"GetManagedObjects"_s, {}, u"a{oa{sa{sv}}}"_s,
        [this](const QVariant &objects) { readObjects(objects); }, [this] { fail(); });
}

void NetworkSnapshotRequest::fail()
{
    emit failed();
    deleteLater();
}

void NetworkSnapshotRequest::readObjects(const QVariant &result)
{
    const auto objects = qdbus_cast<Objects>(result);
    for (auto object = objects.cbegin(); object != objects.cend(); ++object) {
        if (object->contains(profileInterface))
            snapshot.profiles.append({.path = object.key(), .uuid = {}, .devices = {}});
        const QVariantMap active = object->value(activeInterface);
        const uint state = active.value(u"State"_s).toUInt();
        if (state == activating || state == activated)
            snapshot.connections.append(
                {.path = object.key(),
                 .uuid = active.value(u"Uuid"_s).toString(),
                 .isNetwork = kindsOfNetworks.contains(active.value(u"Type"_s).toString()),
                 .isUp = state == activated,
                 .isDefault =
                     active.value(u"Default"_s).toBool() || active.value(u"Default6"_s).toBool(),
                 .devices = pathsIn(active.value(u"Devices"_s))});
    }
    for (auto object = objects.cbegin(); object != objects.cend(); ++object) {
        const QVariantMap device = object->value(deviceInterface);
        const QList<QDBusObjectPath> available = pathsIn(device.value(u"AvailableConnections"_s));
        for (NetworkSnapshot::Profile &profile : snapshot.profiles) {
            if (available.contains(profile.path))
                profile.devices << object.key();
        }
    }
    // The name of a profile is not a property; GetSettings returns it.
    settingsAwaited = snapshot.profiles.size();
    for (qsizetype index = 0; index < snapshot.profiles.size(); ++index) {
        call(
            this, snapshot.owner, snapshot.profiles.at(index).path, profileInterface,
            u"GetSettings"_s, {}, u"a{sa{sv}}"_s,
            [this, index](const QVariant &settings) {
                readSettings(index, settings);
                settingsHaveCome();
            },
            [this] { settingsHaveCome(); });
    }
    if (settingsAwaited == 0)
        finish();
}

void NetworkSnapshotRequest::readSettings(qsizetype index, const QVariant &result)
{
    const auto settings = qdbus_cast<Interfaces>(result);
    const auto setting = [&settings](const QString &group, const QString &key) {
        return settings.value(group).value(key);
    };
    const QString mode = setting(u"802-11-wireless"_s, u"mode"_s).toString();
    NetworkSnapshot::Profile &profile = snapshot.profiles[index];
    profile.uuid = setting(u"connection"_s, u"uuid"_s).toString();
    profile.lastUsed = setting(u"connection"_s, u"timestamp"_s).toULongLong();
    profile.isNetwork = kindsOfNetworks.contains(setting(u"connection"_s, u"type"_s).toString()) &&
                        (mode.isEmpty() || mode == u"infrastructure"_s) &&
                        setting(u"ipv4"_s, u"method"_s).toString() != u"shared"_s;
}

void NetworkSnapshotRequest::settingsHaveCome()
{
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
    if (!profile || !profile->isNetwork)
        return {};
    const NetworkSnapshot::Connection *connection = snapshot.connection(identifier);
    QNetworkConfiguration::StateFlag state = QNetworkConfiguration::Discovered;
    if (connection && connection->isUp)
        state = QNetworkConfiguration::Active;
    else if (profile->devices.isEmpty())
        state = QNetworkConfiguration::Defined;
    return {QNetworkConfiguration::InternetAccessPoint, identifier, state};
}

QNetworkConfiguration QNetworkConfigurationManager::defaultConfiguration() const
{
    const bool isReachable =
        snapshot.defaultConnection() || snapshot.anyConnection() || snapshot.bestProfile();
    return {QNetworkConfiguration::UserChoice, QString(),
            isReachable ? QNetworkConfiguration::Discovered : QNetworkConfiguration::Defined};
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

/// Uses the existing network, and activates a profile only on a device that is not connected.
void QNetworkSession::choose(const NetworkSnapshot &snapshot)
{
    owner = snapshot.owner;
    const bool choiceIsFree = config.type() == QNetworkConfiguration::UserChoice;
    const NetworkSnapshot::Connection *connection =
        choiceIsFree ? nullptr : snapshot.connection(config.identifier());
    if (!connection)
        connection = snapshot.defaultConnection();
    // A connection without a default route is used as well, but not instead of the requested
    // profile.
    if (!connection && choiceIsFree)
        connection = snapshot.anyConnection();
    const NetworkSnapshot::Profile *profile =
        choiceIsFree ? snapshot.bestProfile() : snapshot.profile(config.identifier());
    const QDBusObjectPath device = profile ? snapshot.freeDevice(*profile) : QDBusObjectPath();
    if (!connection && !isSet(device))
        connection = snapshot.anyConnection();
    if (connection)
        follow(connection->path);
    else if (isSet(device))
        bringUp(profile->path, device);
}

void QNetworkSession::bringUp(const QDBusObjectPath &profile, const QDBusObjectPath &device)
{
    // The device may have connected by itself while the profiles were read.
    readProperty(
        this, owner, device, deviceInterface, u"ActiveConnection"_s,
        [this, profile, device](const QVariant &value) {
            const auto connection = qvariant_cast<QDBusObjectPath>(value);
            if (isSet(connection)) {
                follow(connection);
                return;
            }
            call(this, owner, QDBusObjectPath(servicePath), service, u"ActivateConnection"_s,
                 {QVariant::fromValue(profile), QVariant::fromValue(device),
                  QVariant::fromValue(QDBusObjectPath(noObject))},
                 u"o"_s,
                 [this](const QVariant &path) { follow(qvariant_cast<QDBusObjectPath>(path)); });
        });
}

/// Waits until `connection` is activated.
void QNetworkSession::follow(const QDBusObjectPath &connection)
{
    followed = connection;
    MessageBus::system().connectSignal(
        {owner, connection.path(), activeInterface, u"StateChanged"_s, u"uu"_s}, this,
        SLOT(connectionStateChanged(uint)));
    // The connection may already be activated.
    readProperty(this, owner, connection, activeInterface, u"State"_s,
                 [this](const QVariant &state) { connectionStateChanged(state.toUInt()); });
}

void QNetworkSession::connectionStateChanged(uint state)
{
    if (state == activated)
        readProperty(this, owner, followed, activeInterface, u"Uuid"_s,
                     [this](const QVariant &uuid) { connectionIsUp(uuid.toString()); });
}

void QNetworkSession::connectionIsUp(const QString &uuid)
{
    if (!used.isEmpty())
        return; // reported a second time
    used = uuid;
    if (config.type() != QNetworkConfiguration::UserChoice)
        config = {QNetworkConfiguration::InternetAccessPoint, used, QNetworkConfiguration::Active};
    emit opened();
}
