// SPDX-License-Identifier: MIT
#include "platform/gpsdsource.h"

#include <algorithm>
#include <limits>

#include <QDateTime>

using namespace std::chrono_literals;

namespace {

/// The window waits for this when it starts.
constexpr auto probeLimit = 180ms;
/// How long a request waits that names no time; as long as in the toolkit's own sources.
constexpr std::chrono::milliseconds defaultTimeout = 5min;
constexpr int shortestInterval = 2; // milliseconds

} // namespace

NmeaReader::NmeaReader(QIODevice *device, QObject *parent)
    : QNmeaPositionInfoSource(RealTimeMode, parent)
{
    setDevice(device);
}

bool NmeaReader::parsePosInfoFromNmeaData(const char *data, int size, QGeoPositionInfo *position,
                                          bool *hasFix)
{
    // Without a fix the time is a guess of the receiver's own clock.
    if (!QNmeaPositionInfoSource::parsePosInfoFromNmeaData(data, size, position, hasFix) ||
        !*hasFix)
        return false;
    const QDateTime time = position->timestamp();
    if (!time.isValid())
        return true;
    if (newest.isValid() && time < newest)
        emit clockWasSetBack();
    newest = time;
    return true;
}

GpsdSource::GpsdSource(const GpsdAddress &gpsd, QObject *parent)
    : QGeoPositionInfoSource(parent)
    , stream(gpsd)
{
    requestTimer.setSingleShot(true);
    connect(&requestTimer, &QTimer::timeout, this, [this] {
        connectIfWanted();
        tellTimeout();
    });
    connect(&stream, &GpsdStream::connected, this, &GpsdSource::renewReader);
    connect(&stream, &GpsdStream::connectionLost, this, &GpsdSource::tellTimeout);
}

GpsdSource::~GpsdSource()
{
    delete reader;
}

void GpsdSource::setUpdateInterval(int milliseconds)
{
    const int interval = milliseconds > 0 ? std::max(milliseconds, shortestInterval) : 0;
    QGeoPositionInfoSource::setUpdateInterval(interval);
    if (reader)
        reader->setUpdateInterval(interval);
}

QGeoPositionInfo GpsdSource::lastKnownPosition(bool /*fromSatellitePositioningMethodsOnly*/) const
{
    return lastPosition;
}

QGeoPositionInfoSource::PositioningMethods GpsdSource::supportedPositioningMethods() const
{
    return SatellitePositioningMethods;
}

int GpsdSource::minimumUpdateInterval() const
{
    return shortestInterval;
}

QGeoPositionInfoSource::Error GpsdSource::error() const
{
    return lastError;
}

void GpsdSource::startUpdates()
{
    lastError = NoError;
    if (updating)
        return;
    updating = true;
    connectIfWanted();
    if (reader)
        reader->startUpdates();
}

void GpsdSource::stopUpdates()
{
    updating = false;
    if (reader)
        reader->stopUpdates();
    connectIfWanted();
}

void GpsdSource::requestUpdate(int timeout)
{
    if (requestTimer.isActive())
        return;
    lastError = NoError;
    if (timeout != 0 && timeout < shortestInterval) {
        tellTimeout();
        return;
    }
    requestTimer.start(timeout == 0 ? defaultTimeout : std::chrono::milliseconds(timeout));
    connectIfWanted();
    if (reader)
        reader->requestUpdate(std::numeric_limits<int>::max());
}

void GpsdSource::connectIfWanted()
{
    const bool wanted = updating || requestTimer.isActive();
    if (!wanted)
        dropReader();
    stream.setWanted(wanted);
}

void GpsdSource::renewReader()
{
    dropReader();
    reader = new NmeaReader(&stream, this);
    connect(reader, &QGeoPositionInfoSource::positionUpdated, this, &GpsdSource::tellPosition);
    connect(reader, &QGeoPositionInfoSource::errorOccurred, this, [this](Error problem) {
        if (problem == UpdateTimeoutError)
            tellTimeout();
    });
    // Queued: it tells so while it reads.
    connect(reader, &NmeaReader::clockWasSetBack, this, &GpsdSource::renewReader,
            Qt::QueuedConnection);
    reader->setUpdateInterval(updateInterval());
    if (updating)
        reader->startUpdates();
    if (requestTimer.isActive())
        reader->requestUpdate(std::numeric_limits<int>::max());
}

void GpsdSource::dropReader()
{
    if (!reader)
        return;
    // Later: this may be called by what it tells.
    reader->disconnect(this);
    reader->stopUpdates();
    reader->deleteLater();
    reader = nullptr;
}

void GpsdSource::tellPosition(const QGeoPositionInfo &position)
{
    lastPosition = position;
    requestTimer.stop();
    connectIfWanted();
    emit positionUpdated(lastPosition);
}

void GpsdSource::tellTimeout()
{
    lastError = UpdateTimeoutError;
    emit errorOccurred(UpdateTimeoutError);
}

QGeoPositionInfoSource *GpsdPlugin::positionInfoSource(QObject *parent,
                                                       const QVariantMap & /*parameters*/)
{
    const GpsdAddress gpsd = GpsdAddress::fromEnvironment();
    return GpsdStream::answers(gpsd, probeLimit) ? new GpsdSource(gpsd, parent) : nullptr;
}

QGeoSatelliteInfoSource *GpsdPlugin::satelliteInfoSource(QObject * /*parent*/,
                                                         const QVariantMap & /*parameters*/)
{
    return nullptr;
}

QGeoAreaMonitorSource *GpsdPlugin::areaMonitor(QObject * /*parent*/,
                                               const QVariantMap & /*parameters*/)
{
    return nullptr;
}
