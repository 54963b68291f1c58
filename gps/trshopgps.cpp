// SPDX-License-Identifier: MIT
#include "gps/trshopgps.h"

#include <chrono>

#include <QDebug>
#include <QGeoCoordinate>
#include <QGeoPositionInfoSource>
#include <QtPlugin>

#include "platform/positionsource.h"

// The plugin is not referenced elsewhere, so the linker would drop it without this.
Q_IMPORT_PLUGIN(PositionPlugin)

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds updateInterval = 3000ms;
constexpr int waitedPerTimeout = 1000; // milliseconds

} // namespace

TrShopGps::TrShopGps(QObject *parent)
    : QObject(parent)
{}

TrShopGps::~TrShopGps() = default;

void TrShopGps::init()
{
    if (source)
        return;
    source = QGeoPositionInfoSource::createDefaultSource(this);
    if (!source) {
        available = false;
        emit startGpsFailed();
        return;
    }
    connect(source, &QGeoPositionInfoSource::positionUpdated, this, &TrShopGps::positionUpdated);
    connect(source, &QGeoPositionInfoSource::errorOccurred, this,
            [this](QGeoPositionInfoSource::Error error) {
                if (error == QGeoPositionInfoSource::UpdateTimeoutError)
                    updateTimeout();
            });
    // Qt's own sources do not have these signals.
    if (const auto *ours = qobject_cast<PositionSource *>(source)) {
        connect(ours, &PositionSource::roughPositionUpdated, this,
                [this](const QGeoPositionInfo &position) {
                    emit roughCoordinateUpdated(
                        position.coordinate().longitude(), position.coordinate().latitude(),
                        position.attribute(QGeoPositionInfo::HorizontalAccuracy));
                });
        connect(ours, &PositionSource::positionMissing, this, &TrShopGps::positionMissing);
        connect(ours, &PositionSource::locationRefused, this, &TrShopGps::locationRefused);
    }
    sourceCreated = true;
}

bool TrShopGps::isAvailable() const
{
    return available;
}

void TrShopGps::startUpdates()
{
    if (!source)
        return;
    waitedMs = 0;
    updating = true;
    source->startUpdates();
    source->setUpdateInterval(static_cast<int>(updateInterval.count()));
}

void TrShopGps::stopUpdates()
{
    if (!source)
        return;
    updating = false;
    source->stopUpdates();
}

bool TrShopGps::isUpdating() const
{
    return updating;
}

void TrShopGps::requestUpdate()
{
    if (source)
        source->requestUpdate(0);
}

void TrShopGps::cancelRequest()
{
    if (auto *ours = qobject_cast<PositionSource *>(source))
        ours->cancelRequest();
}

float TrShopGps::distanceBetween(float latitude1, float longitude1, float latitude2,
                                 float longitude2)
{
    const QGeoCoordinate from(latitude1, longitude1);
    const QGeoCoordinate to(latitude2, longitude2);
    return static_cast<float>(from.distanceTo(to));
}

// By value: a receiver of the position may stop the source, which then discards its own copy.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
void TrShopGps::positionUpdated(QGeoPositionInfo info)
{
    waitedMs = 0;
    if (info.isValid()) {
        const QGeoCoordinate coordinate = info.coordinate();
        emit coordinateUpdated(coordinate.longitude(), coordinate.latitude(),
                               coordinate.altitude());
    }
    qDebug() << "Position updated:" << info;
}

void TrShopGps::updateTimeout()
{
    waitedMs += waitedPerTimeout;
    emit coordinateRequestTimeout();
}
