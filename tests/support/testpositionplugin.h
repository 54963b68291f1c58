// SPDX-License-Identifier: MIT
#pragma once

#include <QGeoPositionInfoSource>
#include <QGeoPositionInfoSourceFactory>
#include <QStringList>

/// A simulated position source that reports nothing by itself: a test checks the calls and delivers
/// positions at chosen moments, which no real receiver could do.
class TestPositionSource : public QGeoPositionInfoSource
{
    Q_OBJECT

public:
    explicit TestPositionSource(QObject *parent);
    ~TestPositionSource() override;

    /// Number of sources created.
    static int made();
    /// Returns the source created last, or null if it has been deleted.
    static TestPositionSource *instance();

    void deliver(double latitude, double longitude, double altitude = 0);
    void deliver(const QGeoPositionInfo &position);
    void fail(Error error);

    QGeoPositionInfo lastKnownPosition(bool satelliteOnly) const override;
    PositioningMethods supportedPositioningMethods() const override;
    int minimumUpdateInterval() const override;
    Error error() const override;
    void setUpdateInterval(int milliseconds) override;
    void startUpdates() override;
    void stopUpdates() override;
    void requestUpdate(int timeout) override;

    int requests = 0;
    int lastTimeout = -1;
    bool updating = false;
    /// The calls, in order: "start", "stop", "interval 3000", "request".
    QStringList calls;
    /// If true, a request reports a timeout before it returns.
    bool refuses = false;
};

/// Offers a TestPositionSource, or nothing while `offersSource` is false.
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

    static inline bool offersSource = true;
};
