// SPDX-License-Identifier: MIT
#include "platform/geoclue.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <utility>

#include <QDateTime>
#include <QDBusArgument>
#include <QDBusVariant>
#include <QGeoCoordinate>
#include <QPointer>
#include <QTimeZone>

#include "platform/messagebus.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QString service = u"org.freedesktop.GeoClue2"_s;
const QString managerPath = u"/org/freedesktop/GeoClue2/Manager"_s;
const QString managerInterface = u"org.freedesktop.GeoClue2.Manager"_s;
const QString clientInterface = u"org.freedesktop.GeoClue2.Client"_s;
const QString locationInterface = u"org.freedesktop.GeoClue2.Location"_s;
const QString propertiesInterface = u"org.freedesktop.DBus.Properties"_s;
const QString busService = u"org.freedesktop.DBus"_s;
const QString busPath = u"/org/freedesktop/DBus"_s;
const QString noReply = u"org.freedesktop.DBus.Error.NoReply"_s;
const QString accessDenied = u"org.freedesktop.DBus.Error.AccessDenied"_s;

/// The service looks up the permission of the program by this name.
const QString desktopId = u"trolleo"_s;
/// GClueAccuracyLevel "exact". At lower levels GeoClue uses no satellite receiver.
constexpr uint exactLevel = 8;
/// Seconds between two positions, the same as with gpsd.
constexpr uint timeThreshold = 3;
/// A position that follows sooner does not become a new location, but changes the latest one, and
/// this is not signalled.
constexpr std::chrono::seconds untilChanged{timeThreshold + 1};
/// For the first position, which the service may have kept for another program.
constexpr std::chrono::seconds oldestKept = 30s;

constexpr std::chrono::seconds firstPause = 5s;
constexpr std::chrono::seconds longestPause = 30s;
/// A suspended service does not answer. The call then fails and is repeated.
constexpr std::chrono::milliseconds longestWait = 10s;

/// Converts GeoClue's timestamp, which is seconds since 1970 and microseconds.
std::optional<QDateTime> timestampFrom(const QVariant &value)
{
    if (value.userType() != qMetaTypeId<QDBusArgument>())
        return {};
    const auto argument = value.value<QDBusArgument>();
    if (argument.currentSignature() != "(tt)"_L1)
        return {};
    qulonglong seconds = 0;
    qulonglong microseconds = 0;
    argument.beginStructure();
    argument >> seconds >> microseconds;
    argument.endStructure();
    constexpr qulonglong yearNineThousand = 221845392000; // later dates overflow in milliseconds
    if (seconds > yearNineThousand)
        return {};
    return QDateTime::fromMSecsSinceEpoch(
        static_cast<qint64>(seconds * 1000 + microseconds / 1000 % 1000), QTimeZone::utc());
}

std::optional<double> numberFrom(const QVariant &value)
{
    if (value.userType() != QMetaType::Double || !std::isfinite(value.toDouble()))
        return {};
    return value.toDouble();
}

} // namespace

GeoClue::GeoClue(MessageBus &systemBus, QObject *parent)
    : QObject(parent)
    , bus(systemBus)
    , pause(firstPause)
{
    retry.setSingleShot(true);
    connect(&retry, &QTimer::timeout, this, &GeoClue::begin);
    reread.setSingleShot(true);
    reread.setInterval(untilChanged);
    connect(&reread, &QTimer::timeout, this, &GeoClue::readLocation);
    connect(&bus, &MessageBus::lost, this, [this] {
        if (isWanted)
            tryLater();
    });
}

GeoClue::~GeoClue()
{
    setWanted(false);
}

void GeoClue::setWanted(bool wanted)
{
    if (wanted == isWanted)
        return;
    isWanted = wanted;
    pause = firstPause;
    if (wanted)
        begin();
    else
        end();
}

std::optional<QGeoPositionInfo> GeoClue::position(const QVariantMap &location)
{
    const std::optional<double> latitude = numberFrom(location.value(u"Latitude"_s));
    const std::optional<double> longitude = numberFrom(location.value(u"Longitude"_s));
    const std::optional<QDateTime> timestamp = timestampFrom(location.value(u"Timestamp"_s));
    if (!latitude || !longitude || !timestamp)
        return {};
    QGeoCoordinate coordinate(*latitude, *longitude);
    // The lowest double means that the altitude is unknown.
    const std::optional<double> altitude = numberFrom(location.value(u"Altitude"_s));
    if (altitude && *altitude > std::numeric_limits<double>::lowest())
        coordinate.setAltitude(*altitude);
    if (!coordinate.isValid())
        return {};
    QGeoPositionInfo position(coordinate, *timestamp);
    const std::optional<double> accuracy = numberFrom(location.value(u"Accuracy"_s));
    if (accuracy && *accuracy >= 0)
        position.setAttribute(QGeoPositionInfo::HorizontalAccuracy, *accuracy);
    return position;
}

void GeoClue::askAnew()
{
    // A receiver that is still searching would begin again.
    if (!isFirstLocation)
        begin();
}

/// Starts an attempt and ends the current one, if any.
void GeoClue::begin()
{
    end();
    attempt = std::make_unique<QObject>();
    bus.whenReady(attempt.get(), [this] {
        bus.connectSignal(MessageBus::ownerChange(service), this,
                          SLOT(ownerChanged(QString, QString, QString)));
        askForClient();
    });
}

void GeoClue::askForClient()
{
    const QPointer<QObject> current(attempt.get());
    // GetClient returns the existing client if a call is answered after its timeout; CreateClient
    // would create a second one. Without an agent no call is answered.
    bus.call(
        this, {service, managerPath, managerInterface, u"GetClient"_s, {}, true, longestWait},
        u"o"_s,
        [this, current](const QVariantList &results) {
            const QString path = qvariant_cast<QDBusObjectPath>(results.constFirst()).path();
            if (current) {
                client = path;
                askForOwner();
            } else if (!attempt) {
                deleteClient(service, path); // positions are no longer wanted
            }
        },
        [this, current](const QString &error) {
            if (current)
                startFailed(error);
        });
}

void GeoClue::askForOwner()
{
    bus.call(
        attempt.get(),
        {busService, busPath, busService, u"GetNameOwner"_s, {service}, false, longestWait}, u"s"_s,
        [this](const QVariantList &results) {
            owner = results.constFirst().toString();
            startClient();
        },
        [this](const QString &error) { startFailed(error); });
}

void GeoClue::deleteClient(const QString &to, const QString &path)
{
    bus.send({to,
              managerPath,
              managerInterface,
              u"DeleteClient"_s,
              {QVariant::fromValue(QDBusObjectPath(path))}});
}

void GeoClue::startClient()
{
    connectSignals(true);
    const auto failed = [this](const QString &error) {
        startFailed(error);
    };
    const auto set = [this, &failed](const QString &property, const QVariant &value) {
        bus.call(attempt.get(),
                 {owner,
                  client,
                  propertiesInterface,
                  u"Set"_s,
                  {clientInterface, property, QVariant::fromValue(QDBusVariant(value))},
                  false,
                  longestWait},
                 QString(), {}, failed);
    };
    set(u"DesktopId"_s, desktopId);
    set(u"RequestedAccuracyLevel"_s, exactLevel);
    set(u"TimeThreshold"_s, timeThreshold);
    bus.call(attempt.get(), {owner, client, clientInterface, u"Start"_s, {}, false, longestWait},
             QString(), {}, failed);
}

/// Ends the current attempt without starting another.
void GeoClue::end()
{
    retry.stop();
    reread.stop();
    if (!attempt)
        return;
    // Replies of this attempt are ignored from here on.
    attempt.reset();
    bus.disconnectSignal(MessageBus::ownerChange(service), this,
                         SLOT(ownerChanged(QString, QString, QString)));
    if (!owner.isEmpty()) {
        connectSignals(false);
        // A client that is stopped but not deleted would keep the service running. If its agent
        // exits meanwhile, the service never restarts it.
        deleteClient(owner, client);
    }
    owner.clear();
    client.clear();
    isFirstLocation = true;
}

void GeoClue::connectSignals(bool on)
{
    const auto change = on ? &MessageBus::connectSignal : &MessageBus::disconnectSignal;
    (bus.*change)({owner, client, clientInterface, u"LocationUpdated"_s, u"oo"_s}, this,
                  SLOT(locationUpdated(QDBusObjectPath, QDBusObjectPath)));
    (bus.*change)({owner, client, propertiesInterface, u"PropertiesChanged"_s, u"sa{sv}as"_s}, this,
                  SLOT(propertiesChanged(QString, QVariantMap, QStringList)));
}

/// Starts a new attempt after a pause.
void GeoClue::tryLater()
{
    if (retry.isActive())
        return;
    retry.start(pause);
    pause = std::min(2 * pause, longestPause);
}

void GeoClue::startFailed(const QString &error)
{
    if (retry.isActive())
        return; // a failure of the same attempt
    // A service that does not answer now may answer at any moment.
    if (error == noReply)
        pause = firstPause;
    tryLater();
    if (error == accessDenied)
        emit refused();
}

void GeoClue::ownerChanged(const QString &name, const QString &before, const QString &now)
{
    if (name != service)
        return;
    // If our own call has started the service, the attempt is already running.
    if (!now.isEmpty() && (retry.isActive() || (!owner.isEmpty() && now != owner)))
        begin();
    else if (!before.isEmpty() && now.isEmpty() && isWanted)
        tryLater();
}

void GeoClue::locationUpdated(const QDBusObjectPath & /*before*/, const QDBusObjectPath &now)
{
    if (!attempt)
        return; // received after the end of the attempt
    location = now.path();
    readLocation();
    reread.start();
}

void GeoClue::propertiesChanged(const QString &interface, const QVariantMap &changed,
                                const QStringList & /*invalidated*/)
{
    // Location was switched off. The service continues by itself when it is switched on again, but
    // not when another agent gives permission.
    if (!attempt || interface != clientInterface || changed.value(u"Active"_s) != QVariant(false))
        return;
    tryLater();
    emit refused();
}

void GeoClue::readLocation()
{
    bus.call(attempt.get(),
             {owner, location, propertiesInterface, u"GetAll"_s, {locationInterface}}, u"a{sv}"_s,
             [this](const QVariantList &results) {
                 takeLocation(qdbus_cast<QVariantMap>(results.constFirst()));
             });
}

void GeoClue::takeLocation(const QVariantMap &properties)
{
    const auto info = position(properties);
    if (!info)
        return;
    const bool isFirst = std::exchange(isFirstLocation, false);
    if (info->timestamp() == lastTimestamp)
        return;
    lastTimestamp = info->timestamp();
    pause = firstPause;
    // One from the future was kept as well, if the clock was set back since.
    const auto age = std::chrono::milliseconds(
        std::abs(info->timestamp().msecsTo(QDateTime::currentDateTimeUtc())));
    if (isFirst && age > oldestKept)
        return;
    emit positioned(*info);
}
