// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <memory>
#include <optional>

#include <QDBusObjectPath>
#include <QGeoPositionInfo>
#include <QObject>
#include <QTimer>
#include <QVariantMap>

class MessageBus;

/// Positions from the desktop's location service, GeoClue2, with the best accuracy that it offers.
/// No function blocks. After an error, and when the service exits, it is asked again.
class GeoClue : public QObject
{
    Q_OBJECT

public:
    /// `systemBus` must outlive this object.
    explicit GeoClue(MessageBus &systemBus, QObject *parent = nullptr);
    ~GeoClue() override;

    /// Starts or stops asking the service. While it is stopped, nothing is connected and no timer
    /// runs.
    void setWanted(bool wanted);
    /// Asks the service by a new client, unless the current one has received nothing yet. The
    /// service withholds from a client what is older than its last position, which is everything
    /// after the clock was set back.
    void askAnew();

    /// Returns the position in the properties of an org.freedesktop.GeoClue2.Location. Returns
    /// nothing if a required property is missing, has another type or is not a valid coordinate.
    static std::optional<QGeoPositionInfo> position(const QVariantMap &location);

signals:
    /// The service has a new position. A position with the timestamp of the previous one is the
    /// same and is not reported again. Otherwise timestamps do not matter, since clocks may be
    /// wrong, except that of the first position: another program may have had the service keep it
    /// for hours, so it is not reported if it differs from the clock by more than half a minute.
    void positioned(const QGeoPositionInfo &position);
    /// The service refuses to report positions: location is switched off, or not allowed for this
    /// program.
    void refused();

private slots:
    void ownerChanged(const QString &name, const QString &before, const QString &now);
    void locationUpdated(const QDBusObjectPath &before, const QDBusObjectPath &now);
    void propertiesChanged(const QString &interface, const QVariantMap &changed,
                           const QStringList &invalidated);

private:
    void begin();
    void askForClient();
    void askForOwner();
    void startClient();
    /// `to` is the well-known or the unique name of the service.
    void deleteClient(const QString &to, const QString &path);
    void end();
    void tryLater();
    void startFailed(const QString &error);
    void readLocation();
    void takeLocation(const QVariantMap &properties);
    void connectSignals(bool on);

    MessageBus &bus;
    bool isWanted = false;
    /// The context of an attempt. Its replies are ignored once it is destroyed.
    std::unique_ptr<QObject> attempt;
    /// The service's unique name and the path of our client object, once they are known.
    QString owner;
    QString client;
    /// The path of the latest location, whose contents may change.
    QString location;
    QTimer reread;
    bool isFirstLocation = true;
    QTimer retry;
    std::chrono::seconds pause;
    std::optional<QDateTime> lastTimestamp;
};
