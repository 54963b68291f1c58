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

/// The positions of the desktop's location service, GeoClue2, as exact as it has them. No call
/// waits for its answer; after an error, and when the service goes away, it is asked again.
class GeoClue : public QObject
{
    Q_OBJECT

public:
    /// `systemBus` outlives it.
    explicit GeoClue(MessageBus &systemBus, QObject *parent = nullptr);
    ~GeoClue() override;

    /// Starts or stops asking the service. Nothing is connected, and nothing wakes up, while
    /// nothing is wanted.
    void setWanted(bool wanted);

    /// The position in the properties of a org.freedesktop.GeoClue2.Location; nothing when one that
    /// is needed is missing, has another type or is no place on earth.
    static std::optional<QGeoPositionInfo> position(const QVariantMap &location);

signals:
    /// The service knows a new position. One with the timestamp of the position told last is the
    /// same and not told again; timestamps are not compared otherwise, since clocks may be wrong.
    void positioned(const QGeoPositionInfo &position);
    /// The service refuses to tell positions: location is switched off, or not allowed to us.
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
    /// `to` is the service's name, of whichever kind.
    void deleteClient(const QString &to, const QString &path);
    void end();
    void tryLater();
    void startFailed(const QString &error);
    void readLocation(const QDBusObjectPath &location);
    void connectSignals(bool on);

    MessageBus &bus;
    bool isWanted = false;
    /// Replies to calls of an attempt that has ended go with it.
    std::unique_ptr<QObject> attempt;
    /// The service's unique name and our client object there, once they are known.
    QString owner;
    QString client;
    QTimer retry;
    std::chrono::seconds pause;
    std::optional<QDateTime> lastTimestamp;
};
