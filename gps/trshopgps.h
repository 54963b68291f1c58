// SPDX-License-Identifier: MIT
#pragma once

#include <QGeoPositionInfo>
#include <QObject>
#include <QPointer>

class QGeoPositionInfoSource;

/// The position of the device, followed continuously or requested once. Without a source, every
/// function but init() does nothing.
class TrShopGps : public QObject
{
    Q_OBJECT

public:
    explicit TrShopGps(QObject *parent = nullptr);
    ~TrShopGps() override;

    /// Creates the platform's default source, unless there is one. Emits startGpsFailed() if the
    /// platform has none.
    void init();

    /// Returns false once creating the source has failed.
    bool isAvailable() const;

    /// Follows the position at intervals of 3000 ms.
    void startUpdates();
    void stopUpdates();
    bool isUpdating() const;

    /// Requests the position once, with the source's default timeout.
    void requestUpdate();
    /// Cancels the request made by requestUpdate().
    void cancelRequest();

    /// Returns the great-circle distance in metres between two points in degrees.
    static float distanceBetween(float latitude1, float longitude1, float latitude2,
                                 float longitude2);

signals:
    void startGpsFailed();
    /// Degrees and metres, longitude first.
    void coordinateUpdated(qreal longitude, qreal latitude, qreal altitude);
    void coordinateRequestTimeout();
    /// Degrees and metres. The position is so inaccurate that it neither triggers a reminder nor
    /// sets the coordinates of a store.
    void roughCoordinateUpdated(qreal longitude, qreal latitude, qreal accuracyMeters);
    /// No position has arrived for a minute. Emitted once until a position arrives.
    void positionMissing();
    /// The desktop's location service is switched off, or not allowed for this program.
    void locationRefused();

private slots:
    void positionUpdated(QGeoPositionInfo info);
    void updateTimeout();

private:
    QPointer<QGeoPositionInfoSource> source;
    bool available = true;
    bool sourceCreated = false;
    bool updating = false;
    /// Time in timeouts since the last position or start, in milliseconds.
    int waitedMs = 0;
};
