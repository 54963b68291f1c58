// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDeadlineTimer>
#include <QObject>

class QSocketNotifier;

/// A connection over a UNIX socket, for short messages. No function blocks except waitForData().
/// QLocalSocket would make every start load the network library and nine others.
///
/// The name of a socket is a path, or begins with a zero byte if it is abstract.
class LocalSocket : public QObject
{
    Q_OBJECT

public:
    explicit LocalSocket(QObject *parent = nullptr);
    /// Takes over `descriptor`, a connected socket that does not block.
    explicit LocalSocket(int descriptor, QObject *parent = nullptr);
    ~LocalSocket() override;

    /// Ends the connection, if any, and makes a new one. Returns whether that is possible now.
    bool connectTo(const QByteArray &name);
    bool isConnected() const;
    /// Ends the connection. Signals nothing.
    void close();

    /// Ends the connection if the other end does not take all of `data` now.
    void write(const QByteArray &data);
    /// Returns what has been received; the caller removes what it has used.
    QByteArray &buffer();
    /// Blocks until something is received. Returns false if the connection or the time ends before.
    bool waitForData(const QDeadlineTimer &deadline);

signals:
    /// There is more in the buffer.
    void received();
    /// The other end has closed the connection.
    void closed();

private:
    void watch(int descriptor);
    void read();

    QSocketNotifier *notifier = nullptr; // has the descriptor; null without a connection
    QByteArray unread;
};

/// Accepts connections over a UNIX socket.
class LocalServer : public QObject
{
    Q_OBJECT

public:
    explicit LocalServer(QObject *parent = nullptr);
    ~LocalServer() override;

    /// Creates the socket `path`, in place of what is there. Returns false, with the reason in
    /// errno, if that is not possible.
    bool listen(const QByteArray &path);
    /// Removes the socket.
    void close();

signals:
    /// The receiver deletes `connection`.
    void connected(LocalSocket *connection);

private:
    QSocketNotifier *notifier = nullptr;
    QByteArray socketPath;
};
