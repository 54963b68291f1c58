// SPDX-License-Identifier: MIT
#pragma once

#include <QGeoPositionInfoSource>
#include <QGeoPositionInfoSourceFactory>
#include <QStringList>

/// A position source that tells nothing by itself: a test counts what is asked of it and delivers
/// positions when it likes. No receiver does that, so this one is made up.
class TestPositionSource : public QGeoPositionInfoSource
{
    Q_OBJECT

public:
    explicit TestPositionSource(QObject *parent);
    ~TestPositionSource() override;

    /// How many were made.
    static int made();
    /// The source made last, or null when it is gone.
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
    /// What was called, in order: "start", "stop", "interval 3000", "request".
    QStringList calls;
    /// A request reports a time-out before it returns.
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
