// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QHash>
#include <QList>
#include <QProcess>
#include <QString>
#include <QTemporaryFile>

#include "tests/support/stoppable.h"

/// A separate message bus for a test.
class PrivateBus
{
public:
    explicit PrivateBus(const Caller &by = Caller::here());
    ~PrivateBus();

    QString address() const;
    /// Stops answering until it is thawed.
    void freeze() const;
    void thaw() const;

private:
    QTemporaryFile configuration;
    QProcess daemon;
    QString addressText;
};

/// Simulates a service on a private bus, in cases where the real one cannot be made to refuse, to
/// stop answering or to answer with wrong types. It records the calls.
class MadeUpService : public QDBusVirtualObject
{
public:
    using Answer = std::function<QDBusMessage(const QDBusMessage &)>;

    /// Handles calls of all objects below `path` under the bus name `name`.
    MadeUpService(const QString &busAddress, const QString &name, const QString &path,
                  const Caller &by = Caller::here());
    ~MadeUpService() override;

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override;
    QString introspect(const QString &path) const override;

    /// Disconnects from the bus, which releases the name; or connects again.
    void leave();
    void comeBack(const Caller &by = Caller::here());
    void emitSignal(const QString &path, const QString &interface, const QString &signal,
                    const QVariantList &arguments) const;
    /// Returns the calls of a method, in order.
    QList<QDBusMessage> calls(const QString &method) const;

    /// By method. A method that is missing here is never answered.
    QHash<QString, Answer> answers;
    QList<QDBusMessage> heard;

private:
    QString address;
    QString serviceName;
    QString rootPath;
    QString connectionName;
};

/// A simulated location service: org.freedesktop.GeoClue2.
class MadeUpGeoClue : public MadeUpService
{
public:
    explicit MadeUpGeoClue(const QString &busAddress);

    /// Reports a position to its client; `second` is its time, counted from the start of this
    /// service.
    void locate(double latitude, double longitude, int second, double accuracy = 10);
    /// Changes the position it has reported last, without a signal.
    void correct(double latitude, double longitude, int second, double accuracy = 10);
    bool isStarted() const;
    /// The properties that the client has set, by name.
    QVariantMap properties;
    bool refuses = false;
    bool isSilent = false;

private:
    QDBusMessage answerTo(const QDBusMessage &message);

    const qint64 start = QDateTime::currentSecsSinceEpoch();
    QVariantMap location;
    int locations = 0;
    bool started = false;
};
