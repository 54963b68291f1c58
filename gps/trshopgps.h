// SPDX-License-Identifier: MIT
#pragma once

#include <QGeoPositionInfo>
#include <QObject>
#include <QPointer>

class QGeoPositionInfoSource;

/// The device's position: follows it, or asks for it once. Each operation but init() does nothing
/// while there is no source.
class TrShopGps : public QObject
{
    Q_OBJECT

public:
    explicit TrShopGps(QObject *parent = nullptr);
    ~TrShopGps() override;

    /// Makes the platform's default source, unless there is one. Emits startGpsFailed() when the
    /// platform has none.
    void init();

    /// False once making the source has failed.
    bool isAvailable() const;

    /// Follows the position, every 3000 ms.
    void startUpdates();
    void stopUpdates();
    bool isUpdating() const;

    /// Asks for the position once, for as long as the source itself sees fit to wait.
    void requestUpdate();
    /// Nobody waits for the position any more that requestUpdate() asked for.
    void cancelRequest();

    /// The great-circle distance in metres between two points in degrees.
    static float distanceBetween(float latitude1, float longitude1, float latitude2,
                                 float longitude2);

signals:
    void startGpsFailed();
    /// Degrees and metres, longitude first.
    void coordinateUpdated(qreal longitude, qreal latitude, qreal altitude);
    void coordinateRequestTimeout();
    /// Degrees and metres: a position that is known to be off by so much that it neither rings nor
    /// says where a store is.
    void roughCoordinateUpdated(qreal longitude, qreal latitude, qreal accuracyMeters);
    /// No position has come for a minute; told once until one comes.
    void positionMissing();
    /// The desktop's location service is switched off, or closed to us.
    void locationRefused();

private slots:
    void positionUpdated(QGeoPositionInfo info);
    void updateTimeout();

private:
    QPointer<QGeoPositionInfoSource> source;
    bool available = true;
    bool sourceCreated = false;
    bool updating = false;
    /// Milliseconds of time-outs since the last position or start.
    int waitedMs = 0;
};
