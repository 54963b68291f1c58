// SPDX-License-Identifier: MIT
#pragma once

#include <QGeoPositionInfoSourceFactory>
#include <QNmeaPositionInfoSource>
#include <QPointer>
#include <QTimer>

#include "platform/gpsdstream.h"

/// The toolkit's reading of NMEA, kept from what makes it deaf: it drops every sentence that is
/// older than the newest it has seen, however wrong the clock was that wrote that.
class NmeaReader : public QNmeaPositionInfoSource
{
    Q_OBJECT

public:
    /// Reads from `device`, which outlives it.
    explicit NmeaReader(QIODevice *device, QObject *parent);

signals:
    /// The receiver's clock was set back: from now on only another reader will listen to it.
    void clockWasSetBack();

protected:
    bool parsePosInfoFromNmeaData(const char *data, int size, QGeoPositionInfo *position,
                                  bool *hasFix) override;

private:
    QDateTime newest;
};

/// Positions from a gpsd. While gpsd cannot be reached, each attempt that fails is reported as a
/// time-out. Connected only while updates run or a request is pending.
class GpsdSource : public QGeoPositionInfoSource
{
    Q_OBJECT

public:
    explicit GpsdSource(const GpsdAddress &gpsd, QObject *parent = nullptr);
    ~GpsdSource() override;

    void setUpdateInterval(int milliseconds) override;
    QGeoPositionInfo lastKnownPosition(bool fromSatellitePositioningMethodsOnly) const override;
    PositioningMethods supportedPositioningMethods() const override;
    int minimumUpdateInterval() const override;
    Error error() const override;

public slots:
    void startUpdates() override;
    void stopUpdates() override;
    void requestUpdate(int timeout) override;

private:
    void connectIfWanted();
    void renewReader();
    void dropReader();
    void tellPosition(const QGeoPositionInfo &position);
    void tellTimeout();

    GpsdStream stream;
    /// There while a connection is wanted; a new one for each connection.
    QPointer<NmeaReader> reader;
    /// Runs while a request waits for its position.
    QTimer requestTimer;
    bool updating = false;
    QGeoPositionInfo lastPosition;
    Error lastError = NoError;
};

/// Offers gpsd as a source of positions, before the toolkit's own sources, where one answers.
class GpsdPlugin : public QObject, public QGeoPositionInfoSourceFactory
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.qt-project.qt.position.sourcefactory/6.0" FILE "gpsdplugin.json")
    Q_INTERFACES(QGeoPositionInfoSourceFactory)

public:
    /// Null when no gpsd answers within 180 ms.
    QGeoPositionInfoSource *positionInfoSource(QObject *parent,
                                               const QVariantMap &parameters) override;
    QGeoSatelliteInfoSource *satelliteInfoSource(QObject *parent,
                                                 const QVariantMap &parameters) override;
    QGeoAreaMonitorSource *areaMonitor(QObject *parent, const QVariantMap &parameters) override;
};
