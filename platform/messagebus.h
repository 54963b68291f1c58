// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>

#include <QDBusConnection>
#include <QObject>
#include <QTimer>
#include <QVariant>

#include "platform/localsocket.h"

/// A D-Bus message bus that never blocks. QDBusConnection blocks its caller, and all other
/// connections, until the bus answers. This class therefore first does a handshake of its own, and
/// creates the QDBusConnection only after the bus has answered. Every reply passes call(), which
/// checks its signature.
class MessageBus : public QObject
{
    Q_OBJECT

public:
    /// A method call.
    struct Call
    {
        QString service;
        QString path;
        QString interface;
        QString method;
        QVariantList arguments = {};
        /// Whether the bus starts the service if it is not running.
        bool startsService = false;
        /// The call fails without a reply within this time.
        std::chrono::milliseconds timeout = std::chrono::seconds(25);
    };
    /// A signal with exactly the given signature.
    struct Signal
    {
        /// A unique name, the name of the bus itself, or empty for any sender. With any other name
        /// QDBusConnection would block until it knows the owner.
        QString service;
        QString path;
        QString interface;
        QString name;
        QString signature;
        /// The required first argument, a string; empty for any.
        QString firstArgument = {};
    };
    /// The signal of the bus that `service` has started, ended or been replaced.
    static Signal ownerChange(const QString &service);
    using Done = std::function<void(const QVariantList &results)>;
    /// `error` is a D-Bus error name.
    using Failed = std::function<void(const QString &error)>;

    /// `busAddress` is a D-Bus address, of which only UNIX sockets are tried. The bus is connected
    /// when it is first needed.
    explicit MessageBus(const QString &busAddress, QObject *parent = nullptr);
    ~MessageBus() override;

    /// The shared instances for the system bus and the session bus. The application object owns
    /// them.
    static MessageBus &system();
    static MessageBus &session();

    /// Calls `function` when the bus has answered: at once if it already has, and never if it does
    /// not answer or `context` is destroyed before.
    void whenReady(QObject *context, const std::function<void()> &function);

    /// Calls a method when the bus has answered. `done` receives the results if the reply has the
    /// signature `expected`. `failed` receives an error, also for a reply with another signature.
    /// Neither is called if `context` is destroyed before, or while the bus does not answer.
    void call(QObject *context, const Call &call, const QString &expected, const Done &done = {},
              const Failed &failed = {});

    /// Calls a method without a reply. Does nothing if the bus is not connected.
    void send(const Call &call);

    /// Connects a signal to `slot` of `receiver`. The bus must be ready.
    void connectSignal(const Signal &signal, QObject *receiver, const char *slot);
    void disconnectSignal(const Signal &signal, QObject *receiver, const char *slot);

signals:
    void ready();
    /// The connection has ended, and with it all signal connections. The next whenReady() or call()
    /// connects again.
    void lost();

private slots:
    void connectionEnded();

private:
    void probe();
    void readHandshake();
    void probeFailed();
    void tryLater();
    void connectToBus();

    QString address;
    QString connectionName;
    QDBusConnection connection;
    LocalSocket socket;
    /// The bus has accepted the authentication.
    bool isAccepted = false;
    QTimer silence;
    QTimer retry;
    std::chrono::seconds pause;
};
