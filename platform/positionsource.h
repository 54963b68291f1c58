// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <memory>

#include <QGeoPositionInfoSource>
#include <QGeoPositionInfoSourceFactory>
#include <QTimer>

#include "platform/geoclue.h"
#include "platform/gpsdaddress.h"

class GpsdFeed;
class MessageBus;

/// Positions from gpsd, and from GeoClue2 while gpsd delivers none. Either service may be started,
/// restarted or enabled later. Both are used only while updates run or a request is pending.
///
/// A position that is known to be less accurate than roughMeters is reported by
/// roughPositionUpdated() only.
class PositionSource : public QGeoPositionInfoSource
{
    Q_OBJECT

public:
    /// How long to wait for positions.
    struct Patience
    {
        /// For gpsd, until GeoClue is used as well.
        std::chrono::milliseconds gpsd = std::chrono::seconds(10);
        /// For any position, until positionMissing() is emitted.
        std::chrono::milliseconds position = std::chrono::seconds(60);
    };

    /// Accuracy in metres from which on a position is reported as rough.
    static constexpr qreal roughMeters = 250;

    /// `systemBus` must outlive this object.
    PositionSource(const GpsdAddress &gpsdAddress, MessageBus &systemBus, const Patience &howLong,
                   QObject *parent = nullptr);
    ~PositionSource() override;

    QGeoPositionInfo lastKnownPosition(bool fromSatellitePositioningMethodsOnly) const override;
    PositioningMethods supportedPositioningMethods() const override;
    int minimumUpdateInterval() const override;
    Error error() const override;

    /// Cancels a pending request. No signal is emitted for it.
    void cancelRequest();

public slots:
    void startUpdates() override;
    void stopUpdates() override;
    /// A timeout of 0 means five minutes.
    void requestUpdate(int timeout) override;

signals:
    /// A position is known, but its horizontal accuracy is worse than roughMeters.
    void roughPositionUpdated(const QGeoPositionInfo &position);
    /// No position of any accuracy has arrived for 60 s while one was wanted. Emitted once until a
    /// position arrives.
    void positionMissing();
    /// The location service refuses to report positions, and gpsd has none. The service is still
    /// asked.
    void locationRefused();

private:
    bool isWanted() const;
    void startOrStop();
    void askGpsd();
    void askGeoClueToo();
    void takePosition(const QGeoPositionInfo &position);
    void tell(Error problem);

    Patience patience;
    GpsdAddress address;
    std::unique_ptr<GpsdFeed> gpsd; // created when positions are first wanted
    GeoClue geoClue;
    /// Fire when a position has not arrived in time.
    QTimer gpsdSilence;
    QTimer missing;
    bool isMissingTold = false;
    /// Runs while a request is pending.
    QTimer request;
    bool updating = false;
    bool asking = false;
    /// State of the last time when positions were wanted.
    bool gpsdDelivers = true;
    QGeoPositionInfo lastPosition;
    Error lastError = NoError;
};

/// Offers a PositionSource before Qt's own sources.
class PositionPlugin : public QObject, public QGeoPositionInfoSourceFactory
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.qt-project.qt.position.sourcefactory/6.0" FILE "positionplugin.json")
    Q_INTERFACES(QGeoPositionInfoSourceFactory)

public:
    QGeoPositionInfoSource *positionInfoSource(QObject *parent,
                                               const QVariantMap &parameters) override;
    QGeoSatelliteInfoSource *satelliteInfoSource(QObject *parent,
                                                 const QVariantMap &parameters) override;
    QGeoAreaMonitorSource *areaMonitor(QObject *parent, const QVariantMap &parameters) override;

    /// Whether the plugin offers a source. Tests clear it to simulate a device without one.
    static inline bool isOffered = true;
};
