// SPDX-License-Identifier: MIT
#include "tests/support/testpositionplugin.h"

#include <QPointer>

static QPointer<TestPositionSource> lastSource;

TestPositionSource::TestPositionSource(QObject *parent)
    : QGeoPositionInfoSource(parent)
{
    lastSource = this;
}

TestPositionSource::~TestPositionSource() = default;

TestPositionSource *TestPositionSource::instance()
{
    return lastSource;
}

void TestPositionSource::deliver(double latitude, double longitude)
{
    emit positionUpdated(
        QGeoPositionInfo(QGeoCoordinate(latitude, longitude, 0), QDateTime::currentDateTimeUtc()));
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
    updating = true;
}

void TestPositionSource::stopUpdates()
{
    updating = false;
}

void TestPositionSource::requestUpdate(int /*timeout*/)
{
    ++requests;
}

QGeoPositionInfoSource *TestPositionPlugin::positionInfoSource(QObject *parent,
                                                               const QVariantMap & /*parameters*/)
{
    return new TestPositionSource(parent);
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
