// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

#include <QGeoPositionInfoSource>
#include <QGeoPositionInfoSourceFactory>
#include <QTimer>

#include "platform/geoclue.h"
#include "platform/gpsdclient.h"

class MessageBus;

/// Positions from gpsd, and from GeoClue2 while gpsd delivers none: when either is started,
/// restarted or switched on later, its positions come. Both are asked only while updates run or a
/// request is pending.
///
/// A position that is known to be less accurate than roughMeters is told by
/// roughPositionUpdated() alone.
class PositionSource : public QGeoPositionInfoSource
{
    Q_OBJECT

public:
    /// How long to wait in vain.
    struct Patience
    {
        /// For gpsd, until GeoClue is asked as well.
        std::chrono::milliseconds gpsd = std::chrono::seconds(10);
        /// For any position, until it is told that there is none.
        std::chrono::milliseconds position = std::chrono::seconds(60);
    };

    /// Metres; the accuracy of a position that may be too far from where one really is.
    static constexpr qreal roughMeters = 250;

    /// `systemBus` outlives it.
    PositionSource(const GpsdAddress &gpsdAddress, MessageBus &systemBus, const Patience &howLong,
                   QObject *parent = nullptr);

    QGeoPositionInfo lastKnownPosition(bool fromSatellitePositioningMethodsOnly) const override;
    PositioningMethods supportedPositioningMethods() const override;
    int minimumUpdateInterval() const override;
    Error error() const override;

    /// Gives a pending request up; nothing is told of it any more.
    void cancelRequest();

public slots:
    void startUpdates() override;
    void stopUpdates() override;
    /// A time-out of 0 stands for five minutes.
    void requestUpdate(int timeout) override;

signals:
    /// A position is known, but not closer than by the horizontal accuracy it has.
    void roughPositionUpdated(const QGeoPositionInfo &position);
    /// No position of any accuracy has come for 60 s while one was wanted. It is told once until
    /// one comes.
    void positionMissing();
    /// The location service refuses to tell positions, and gpsd has none. It goes on being asked.
    void locationRefused();

private:
    bool isWanted() const;
    void startOrStop();
    void askGeoClueToo();
    void takePosition(const QGeoPositionInfo &position);
    void tell(Error problem);

    Patience patience;
    GpsdClient gpsd;
    GeoClue geoClue;
    /// Run out when a position has not come in time.
    QTimer gpsdSilence;
    QTimer missing;
    /// Runs while a request waits for its position.
    QTimer request;
    bool updating = false;
    bool asking = false;
    /// As of the last time that positions were wanted.
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

    /// Whether it offers a source; tests see what a device without any does.
    static inline bool isOffered = true;
};
