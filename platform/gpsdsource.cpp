// SPDX-License-Identifier: MIT
#include "platform/gpsdsource.h"

using namespace std::chrono_literals;

namespace {

/// The window waits for this when it starts.
constexpr auto probeLimit = 180ms;
/// How long a request waits that names no time; the toolkit's own.
constexpr std::chrono::milliseconds defaultTimeout = 5min;

} // namespace

GpsdSource::GpsdSource(const GpsdAddress &gpsd, QObject *parent)
    : QNmeaPositionInfoSource(RealTimeMode, parent)
    , stream(gpsd)
{
    setDevice(&stream);
    connect(&stream, &GpsdStream::connectionLost, this, [this] { setError(UpdateTimeoutError); });
    connect(this, &QGeoPositionInfoSource::positionUpdated, this, [this] {
        requestDeadline = {};
        connectIfWanted();
    });
    connect(this, &QGeoPositionInfoSource::errorOccurred, this, &GpsdSource::connectIfWanted);
}

void GpsdSource::startUpdates()
{
    updating = true;
    connectIfWanted();
    QNmeaPositionInfoSource::startUpdates();
}

void GpsdSource::stopUpdates()
{
    updating = false;
    QNmeaPositionInfoSource::stopUpdates();
    connectIfWanted();
}

void GpsdSource::requestUpdate(int timeout)
{
    // The toolkit's own timer may be early by a twentieth, and nobody looks at the deadline later.
    if (requestDeadline.hasExpired()) {
        const auto wait = timeout == 0 ? defaultTimeout : std::chrono::milliseconds(timeout);
        requestDeadline.setRemainingTime(wait * 95 / 100);
    }
    connectIfWanted();
    QNmeaPositionInfoSource::requestUpdate(timeout);
}

void GpsdSource::connectIfWanted()
{
    stream.setWanted(updating || !requestDeadline.hasExpired());
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
