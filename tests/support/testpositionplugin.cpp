// SPDX-License-Identifier: MIT
#include "tests/support/testpositionplugin.h"

#include <QPointer>

static QPointer<TestPositionSource> lastSource;
static int madeSources = 0;

TestPositionSource::TestPositionSource(QObject *parent)
    : QGeoPositionInfoSource(parent)
{
    lastSource = this;
    ++madeSources;
}

TestPositionSource::~TestPositionSource() = default;

TestPositionSource *TestPositionSource::instance()
{
    return lastSource;
}

int TestPositionSource::made()
{
    return madeSources;
}

void TestPositionSource::deliver(double latitude, double longitude, double altitude)
{
    deliver(QGeoPositionInfo(QGeoCoordinate(latitude, longitude, altitude),
                             QDateTime::currentDateTimeUtc()));
}

void TestPositionSource::deliver(const QGeoPositionInfo &position)
{
    emit positionUpdated(position);
}

void TestPositionSource::fail(Error error)
{
    emit errorOccurred(error);
}

void TestPositionSource::setUpdateInterval(int milliseconds)
{
    calls << QString("interval %1").arg(milliseconds);
    QGeoPositionInfoSource::setUpdateInterval(milliseconds);
}

QGeoPositionInfo TestPositionSource::lastKnownPosition(bool /*satelliteOnly*/) const
{
    return {};
}

QGeoPositionInfoSource::PositioningMethods TestPositionSource::supportedPositioningMethods() const
{
    return AllPositioningMethods;
}

int TestPositionSource::minimumUpdateInterval() const
{
    return 1;
}

QGeoPositionInfoSource::Error TestPositionSource::error() const
{
    return NoError;
}

void TestPositionSource::startUpdates()
{
    calls << "start";
    updating = true;
}

void TestPositionSource::stopUpdates()
{
    calls << "stop";
    updating = false;
}

void TestPositionSource::requestUpdate(int timeout)
{
    calls << "request";
    ++requests;
    lastTimeout = timeout;
    if (refuses)
        fail(UpdateTimeoutError);
}

QGeoPositionInfoSource *TestPositionPlugin::positionInfoSource(QObject *parent,
                                                               const QVariantMap & /*parameters*/)
{
    return offersSource ? new TestPositionSource(parent) : nullptr;
}

QGeoSatelliteInfoSource *TestPositionPlugin::satelliteInfoSource(QObject * /*parent*/,
                                                                 const QVariantMap & /*parameters*/)
{
    return nullptr;
}

QGeoAreaMonitorSource *TestPositionPlugin::areaMonitor(QObject * /*parent*/,
                                                       const QVariantMap & /*parameters*/)
{
    return nullptr;
}
