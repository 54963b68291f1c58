// SPDX-License-Identifier: MIT
#pragma once

#include <QGeoPositionInfoSource>
#include <QGeoPositionInfoSourceFactory>

/// A position source that tells nothing by itself: a test counts what is asked of it and delivers
/// positions when it likes. No receiver does that, so this one is made up.
class TestPositionSource : public QGeoPositionInfoSource
{
    Q_OBJECT

public:
    explicit TestPositionSource(QObject *parent);
    ~TestPositionSource() override;

    /// The source made last, or null when it is gone.
    static TestPositionSource *instance();

    void deliver(double latitude, double longitude);

    QGeoPositionInfo lastKnownPosition(bool satelliteOnly) const override;
    PositioningMethods supportedPositioningMethods() const override;
    int minimumUpdateInterval() const override;
    Error error() const override;
    void startUpdates() override;
    void stopUpdates() override;
    void requestUpdate(int timeout) override;

    int requests = 0;
    bool updating = false;
};

class TestPositionPlugin : public QObject, public QGeoPositionInfoSourceFactory
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.qt-project.qt.position.sourcefactory/6.0" FILE
                          "testpositionplugin.json")
    Q_INTERFACES(QGeoPositionInfoSourceFactory)

public:
    QGeoPositionInfoSource *positionInfoSource(QObject *parent,
                                               const QVariantMap &parameters) override;
    QGeoSatelliteInfoSource *satelliteInfoSource(QObject *parent,
                                                 const QVariantMap &parameters) override;
    QGeoAreaMonitorSource *areaMonitor(QObject *parent, const QVariantMap &parameters) override;
};
