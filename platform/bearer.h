// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusObjectPath>
#include <QFlags>
#include <QList>
#include <QObject>
#include <QString>
#include <QVariant>

/// Bearer management as phones have it: which networks there are, and a session that brings one up.
/// It speaks to NetworkManager on the system bus and waits for nothing: every answer comes through
/// the event loop, or never. Without a NetworkManager no session is required.

/// What NetworkManager knew at one moment.
struct NetworkSnapshot
{
    /// A profile stored in NetworkManager.
    struct Profile
    {
        QDBusObjectPath path;
        QString uuid;
        /// It connects to a network: neither a bridge nor an access point of one's own.
        bool isNetwork = false;
        /// Seconds since 1970 of its last use; 0 for never.
        qulonglong lastUsed = 0;
        /// The devices that it could be brought up on, whether they are in use or not.
        QList<QDBusObjectPath> devices;
    };
    /// A profile that is being used, or is on its way there.
    struct Connection
    {
        QDBusObjectPath path;
        QString uuid;
        bool isNetwork = false;
        bool isUp = false;
        /// It leads to the rest of the world.
        bool isDefault = false;
        QList<QDBusObjectPath> devices;
    };

    const Profile *profile(const QString &uuid) const;
    const Connection *connection(const QString &uuid) const;
    /// What leads to the rest of the world, if anything does.
    const Connection *defaultConnection() const;
    /// Any network that the computer is connected to, or is about to be.
    const Connection *anyConnection() const;
    /// Of the profiles that a free device could be brought up with the one that was used last.
    const Profile *bestProfile() const;
    /// A device that is not in use and could be brought up with `profile`; an empty path for none.
    QDBusObjectPath freeDevice(const Profile &profile) const;

    /// NetworkManager's own name on the bus: one that is started later has another.
    QString owner;
    QList<Profile> profiles;
    QList<Connection> connections;
};

/// Asks NetworkManager for a snapshot, once. It deletes itself when it is done.
class NetworkSnapshotRequest : public QObject
{
    Q_OBJECT

public:
    explicit NetworkSnapshotRequest(QObject *parent);

signals:
    void succeeded(const NetworkSnapshot &snapshot);
    /// There is no NetworkManager, or it does not tell.
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

/// One network to connect by.
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
    /// NetworkManager's uuid of the profile; empty for the user's choice.
    QString identifier() const;
    StateFlags state() const;

private:
    Type kind = Invalid;
    QString uuid;
    StateFlags flags = Undefined;
};

/// Knows the networks as of its last update.
class QNetworkConfigurationManager : public QObject
{
    Q_OBJECT

public:
    enum Capability { CanStartAndStopInterfaces = 0x1, NetworkSessionRequired = 0x40 };
    Q_DECLARE_FLAGS(Capabilities, Capability)

    explicit QNetworkConfigurationManager(QObject *parent = nullptr);

    /// Looks what there is; updateCompleted() follows, if anything answers.
    void updateConfigurations();

    Capabilities capabilities() const;
    /// Invalid for an identifier that nothing is known of.
    QNetworkConfiguration configurationFromIdentifier(const QString &identifier) const;
    /// Leaves the choice to what is connected, or was used last.
    QNetworkConfiguration defaultConfiguration() const;

signals:
    void updateCompleted();

private:
    Capabilities abilities;
    NetworkSnapshot snapshot;
};

/// Brings a network up. A computer that is connected stays connected as it is, and the session then
/// is of the network it has.
class QNetworkSession : public QObject
{
    Q_OBJECT

public:
    explicit QNetworkSession(const QNetworkConfiguration &configuration, QObject *parent = nullptr);

    /// opened() follows when the network is up. When it cannot be brought up, nothing does.
    void open();

    /// What the session is of; once it is open, what it really uses.
    QNetworkConfiguration configuration() const;
    /// "UserChoiceConfiguration" is the identifier of what is really used, when the configuration
    /// left the choice open.
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
    /// Uuid of the profile being used.
    QString used;
};
