// SPDX-License-Identifier: MIT
#include "platform/positionsource.h"

#include <utility>

#include "platform/messagebus.h"
#include "platform/networkfactory.h"

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds usualTimeout = 5min;
/// In milliseconds: the interval at which gpsd and GeoClue deliver.
constexpr int shortestInterval = 3000;

bool isRough(const QGeoPositionInfo &position)
{
    return position.hasAttribute(QGeoPositionInfo::HorizontalAccuracy) &&
           position.attribute(QGeoPositionInfo::HorizontalAccuracy) > PositionSource::roughMeters;
}

} // namespace

PositionSource::PositionSource(const GpsdAddress &gpsdAddress, MessageBus &systemBus,
                               const Patience &howLong, QObject *parent)
    : QGeoPositionInfoSource(parent)
    , patience(howLong)
    , address(gpsdAddress)
    , geoClue(systemBus)
{
    for (QTimer *timer : {&gpsdSilence, &missing, &request})
        timer->setSingleShot(true);
    connect(&gpsdSilence, &QTimer::timeout, this, &PositionSource::askGeoClueToo);
    connect(&missing, &QTimer::timeout, this, [this] {
        missing.start(patience.position);
        geoClue.askAnew();
        if (std::exchange(isMissingTold, true))
            return;
        tell(UpdateTimeoutError);
        emit positionMissing();
    });
    connect(&request, &QTimer::timeout, this, [this] {
        startOrStop();
        tell(UpdateTimeoutError);
    });
    connect(&geoClue, &GeoClue::positioned, this, &PositionSource::takePosition);
    connect(&geoClue, &GeoClue::refused, this, [this] {
        tell(AccessError);
        emit locationRefused();
    });
}

PositionSource::~PositionSource() = default;

QGeoPositionInfo
PositionSource::lastKnownPosition(bool /*fromSatellitePositioningMethodsOnly*/) const
{
    return lastPosition;
}

QGeoPositionInfoSource::PositioningMethods PositionSource::supportedPositioningMethods() const
{
    return AllPositioningMethods;
}

int PositionSource::minimumUpdateInterval() const
{
    return shortestInterval;
}

QGeoPositionInfoSource::Error PositionSource::error() const
{
    return lastError;
}

void PositionSource::startUpdates()
{
    lastError = NoError;
    updating = true;
    startOrStop();
}

void PositionSource::stopUpdates()
{
    updating = false;
    startOrStop();
}

void PositionSource::requestUpdate(int timeout)
{
    if (request.isActive())
        return;
    lastError = NoError;
    request.start(timeout > 0 ? std::chrono::milliseconds(timeout) : usualTimeout);
    startOrStop();
}

void PositionSource::cancelRequest()
{
    request.stop();
    startOrStop();
}

bool PositionSource::isWanted() const
{
    return updating || request.isActive();
}

/// Runs gpsd and GeoClue exactly while positions are wanted.
void PositionSource::startOrStop()
{
    if (isWanted() == asking)
        return;
    asking = isWanted();
    if (!asking) {
        if (gpsd)
            gpsd->setWanted(false);
        gpsdSilence.stop();
        missing.stop();
        geoClue.setWanted(false);
        return;
    }
    isMissingTold = false;
    missing.start(patience.position);
    if (gpsdDelivers)
        gpsdSilence.start(patience.gpsd);
    else
        geoClue.setWanted(true);
    askGpsd();
}

void PositionSource::askGpsd()
{
    NetworkFactory *factory = NetworkFactory::instance();
    if (!gpsd && factory)
        gpsd = factory->createGpsdFeed(
            address,
            [this](const QGeoPositionInfo &position) {
                if (!isRough(position)) {
                    gpsdDelivers = true;
                    gpsdSilence.start(patience.gpsd);
                    geoClue.setWanted(false);
                }
                takePosition(position);
            },
            // A gpsd that cannot be reached delivers nothing, so GeoClue is asked at once.
            [this] { askGeoClueToo(); });
    if (gpsd)
        gpsd->setWanted(true);
    else
        askGeoClueToo();
}

void PositionSource::askGeoClueToo()
{
    gpsdDelivers = false;
    gpsdSilence.stop();
    geoClue.setWanted(asking);
}

void PositionSource::takePosition(const QGeoPositionInfo &position)
{
    isMissingTold = false;
    missing.start(patience.position);
    if (isRough(position)) {
        emit roughPositionUpdated(position);
        return;
    }
    lastPosition = position;
    request.stop();
    startOrStop();
    emit positionUpdated(position);
}

void PositionSource::tell(Error problem)
{
    lastError = problem;
    emit errorOccurred(problem);
}

QGeoPositionInfoSource *PositionPlugin::positionInfoSource(QObject *parent,
                                                           const QVariantMap & /*parameters*/)
{
    // cppcheck-suppress knownConditionTrueFalse // tests change it
    if (!isOffered)
        return nullptr;
    return new PositionSource(GpsdAddress::fromEnvironment(), MessageBus::system(), {}, parent);
}

QGeoSatelliteInfoSource *PositionPlugin::satelliteInfoSource(QObject * /*parent*/,
                                                             const QVariantMap & /*parameters*/)
{
    return nullptr;
}

QGeoAreaMonitorSource *PositionPlugin::areaMonitor(QObject * /*parent*/,
                                                   const QVariantMap & /*parameters*/)
{
    return nullptr;
}
