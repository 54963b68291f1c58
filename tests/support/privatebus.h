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

/// A message bus of a test's own.
class PrivateBus
{
public:
    explicit PrivateBus(const Caller &by = Caller::here());
    ~PrivateBus();

    QString address() const;
    /// It answers nobody until it is thawed.
    void freeze() const;
    void thaw() const;

private:
    QTemporaryFile configuration;
    QProcess daemon;
    QString addressText;
};

/// Stands in for a service on a private bus where the real one cannot be made to refuse, to fall
/// silent or to answer with other types than it promises. It notes what it is asked.
class MadeUpService : public QDBusVirtualObject
{
public:
    using Answer = std::function<QDBusMessage(const QDBusMessage &)>;

    /// Takes calls of all objects below `path` under the bus name `name`.
    MadeUpService(const QString &busAddress, const QString &name, const QString &path,
                  const Caller &by = Caller::here());
    ~MadeUpService() override;

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override;
    QString introspect(const QString &path) const override;

    /// Leaves the bus, with its name; or comes back.
    void leave();
    void comeBack(const Caller &by = Caller::here());
    void emitSignal(const QString &path, const QString &interface, const QString &signal,
                    const QVariantList &arguments) const;
    /// The calls of a method, in order.
    QList<QDBusMessage> calls(const QString &method) const;

    /// By method; one that is not here is never answered.
    QHash<QString, Answer> answers;
    QList<QDBusMessage> heard;

private:
    QString address;
    QString serviceName;
    QString rootPath;
    QString connectionName;
};

/// A location service of that kind: org.freedesktop.GeoClue2.
class MadeUpGeoClue : public MadeUpService
{
public:
    explicit MadeUpGeoClue(const QString &busAddress);

    /// Tells its client where it is; `second` is its clock's.
    void locate(double latitude, double longitude, int second, double accuracy = 10);
    bool isStarted() const;
    /// What the client has set, by the name of the property.
    QVariantMap properties;
    bool refuses = false;
    bool isSilent = false;

private:
    QDBusMessage answerTo(const QDBusMessage &message);

    QVariantMap location;
    int locations = 0;
    bool started = false;
};
