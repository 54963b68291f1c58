// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>

#include <QDBusConnection>
#include <QLocalSocket>
#include <QObject>
#include <QTimer>
#include <QVariant>

/// A D-Bus message bus that is never waited for. QDBusConnection blocks its caller, and all other
/// connections, until the bus has answered; so it is made only once the bus has answered a
/// handshake of ours. Every reply passes call(), which compares its signature.
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
        /// Whether the bus starts a service that does not run.
        bool startsService = false;
        /// Without a reply for so long, the call has failed.
        std::chrono::milliseconds timeout = std::chrono::seconds(25);
    };
    /// A signal with exactly the given signature.
    struct Signal
    {
        /// Empty for any sender, or a unique name: QDBusConnection would wait for the owner of
        /// another, but for that of the bus itself.
        QString service;
        QString path;
        QString interface;
        QString name;
        QString signature;
        /// What its first argument has to be, a string; empty for anything.
        QString firstArgument = {};
    };
    using Done = std::function<void(const QVariantList &results)>;
    /// `error` is a D-Bus error name.
    using Failed = std::function<void(const QString &error)>;

    /// The bus at `busAddress`, in D-Bus notation; only its UNIX sockets are tried. Nothing is
    /// connected before it is needed.
    explicit MessageBus(const QString &busAddress, QObject *parent = nullptr);
    ~MessageBus() override;

    /// The system bus and the session bus, shared by all; they belong to the application object.
    static MessageBus &system();
    static MessageBus &session();

    /// Runs `function` when the bus has answered: at once when it has already, never when it does
    /// not, or when `context` is gone by then.
    void whenReady(QObject *context, const std::function<void()> &function);

    /// Calls a method when the bus has answered. `done` takes the results if the reply has the
    /// signature `expected`; an error, or a reply of another signature, goes to `failed`. Neither
    /// is called when `context` is gone by then, or while the bus does not answer.
    void call(QObject *context, const Call &call, const QString &expected, const Done &done = {},
              const Failed &failed = {});

    /// Calls a method of which no reply is wanted; nothing happens when the bus is not connected.
    void send(const Call &call);

    /// Lets `slot` of `receiver` take a signal. The bus has to be ready.
    void connectSignal(const Signal &signal, QObject *receiver, const char *slot);
    void disconnectSignal(const Signal &signal, QObject *receiver, const char *slot);

signals:
    void ready();
    /// The connection has ended, and with it all signal connections. It is made anew when somebody
    /// calls whenReady() or call().
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
    QLocalSocket socket;
    /// The bus has accepted us as who we are.
    bool isAccepted = false;
    QTimer silence;
    QTimer retry;
    std::chrono::seconds pause;
};
