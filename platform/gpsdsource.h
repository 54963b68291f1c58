// SPDX-License-Identifier: MIT
#pragma once

#include <QDeadlineTimer>
#include <QGeoPositionInfoSourceFactory>
#include <QNmeaPositionInfoSource>

#include "platform/gpsdstream.h"

/// Positions from a gpsd. While gpsd cannot be reached, each attempt that fails is reported as a
/// time-out. Connected only while updates run or a request is pending.
class GpsdSource : public QNmeaPositionInfoSource
{
    Q_OBJECT

public:
    explicit GpsdSource(const GpsdAddress &gpsd, QObject *parent = nullptr);

    void startUpdates() override;
    void stopUpdates() override;
    void requestUpdate(int timeout) override;

private:
    void connectIfWanted();

    GpsdStream stream;
    bool updating = false;
    /// Until when a request waits for its position; has passed when none does.
    QDeadlineTimer requestDeadline;
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
