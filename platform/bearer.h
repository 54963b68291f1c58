// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusObjectPath>
#include <QFlags>
#include <QList>
#include <QObject>
#include <QString>
#include <QVariant>

/// Bearer management as on a phone: the known networks, and a session that activates one. It uses
/// NetworkManager on the system bus and never waits: every answer arrives through the event loop,
/// or not at all. Without NetworkManager no session is required.

/// The state of NetworkManager at one moment.
struct NetworkSnapshot
{
    /// A profile stored in NetworkManager.
    struct Profile
    {
        QDBusObjectPath path;
        QString uuid;
        /// True if the profile connects to a network, false for a bridge or an access point on this
        /// computer.
        bool isNetwork = false;
        /// Time of last use in seconds since 1970; 0 if never used.
        qulonglong lastUsed = 0;
        /// The devices on which the profile can be activated, whether they are in use or not.
        QList<QDBusObjectPath> devices;
    };
    /// A profile that is activated, or is being activated.
    struct Connection
    {
        QDBusObjectPath path;
        QString uuid;
        bool isNetwork = false;
        bool isUp = false;
        /// True for the connection with the default route.
        bool isDefault = false;
        QList<QDBusObjectPath> devices;
    };

    const Profile *profile(const QString &uuid) const;
    const Connection *connection(const QString &uuid) const;
    /// Returns the connection with the default route, or null.
    const Connection *defaultConnection() const;
    /// Returns any network connection that is activated or being activated, or null.
    const Connection *anyConnection() const;
    /// Returns the profile that was used last, among those that can be activated on a free device,
    /// or null.
    const Profile *bestProfile() const;
    /// Returns a device that is not in use and can activate `profile`, or an empty path.
    QDBusObjectPath freeDevice(const Profile &profile) const;

    /// The unique bus name of NetworkManager. It changes when the service restarts.
    QString owner;
    QList<Profile> profiles;
    QList<Connection> connections;
};

/// Requests a snapshot of NetworkManager once, and deletes itself when it is done.
class NetworkSnapshotRequest : public QObject
{
    Q_OBJECT

public:
    explicit NetworkSnapshotRequest(QObject *parent);

signals:
    void succeeded(const NetworkSnapshot &snapshot);
    /// NetworkManager is not running, or does not answer.
    void failed();

private:
    void askForObjects();
    void readObjects(const QVariant &result);
    void readSettings(qsizetype index, const QVariant &result);
    void settingsHaveCome();
    void finish();
    void fail();

    NetworkSnapshot snapshot;
    qsizetype settingsAwaited = 0;
};

/// A network to connect with.
class QNetworkConfiguration
{
public:
    enum Type { InternetAccessPoint, ServiceNetwork, UserChoice, Invalid };
    enum StateFlag { Undefined = 0x1, Defined = 0x2, Discovered = 0x6, Active = 0xe };
    Q_DECLARE_FLAGS(StateFlags, StateFlag)

    QNetworkConfiguration() = default;
    QNetworkConfiguration(Type configurationType, const QString &configurationIdentifier,
                          StateFlags stateFlags);

    Type type() const;
    /// NetworkManager's UUID of the profile; empty for the user's choice.
    QString identifier() const;
    StateFlags state() const;

private:
    Type kind = Invalid;
    QString uuid;
    StateFlags flags = Undefined;
};

/// Knows the networks as of the last update.
class QNetworkConfigurationManager : public QObject
{
    Q_OBJECT

public:
    enum Capability { CanStartAndStopInterfaces = 0x1, NetworkSessionRequired = 0x40 };
    Q_DECLARE_FLAGS(Capabilities, Capability)

    explicit QNetworkConfigurationManager(QObject *parent = nullptr);

    /// Updates the list of networks. updateCompleted() follows if the bus answers.
    void updateConfigurations();

    Capabilities capabilities() const;
    /// Returns an invalid configuration if the identifier is unknown.
    QNetworkConfiguration configurationFromIdentifier(const QString &identifier) const;
    /// Returns a configuration that stands for the connected network, or else the one used last.
    QNetworkConfiguration defaultConfiguration() const;

signals:
    void updateCompleted();

private:
    Capabilities abilities;
    NetworkSnapshot snapshot;
};

/// Activates a network. If the computer is already connected, the session uses the existing
/// connection.
class QNetworkSession : public QObject
{
    Q_OBJECT

public:
    explicit QNetworkSession(const QNetworkConfiguration &configuration, QObject *parent = nullptr);

    /// Emits opened() when the network is up. Nothing is emitted if it cannot be activated.
    void open();

    /// Returns the configuration of the session; once the session is open, the one in use.
    QNetworkConfiguration configuration() const;
    /// Returns session properties. "UserChoiceConfiguration" is the identifier of the configuration
    /// in use, if the session's configuration is the user's choice.
    QVariant sessionProperty(const QString &key) const;

signals:
    void opened();

private slots:
    void connectionStateChanged(uint state);

private:
    void choose(const NetworkSnapshot &snapshot);
    void bringUp(const QDBusObjectPath &profile, const QDBusObjectPath &device);
    void follow(const QDBusObjectPath &connection);
    void connectionIsUp(const QString &uuid);

    QNetworkConfiguration config;
    QString owner;
    QDBusObjectPath followed;
    /// UUID of the profile in use.
    QString used;
};
