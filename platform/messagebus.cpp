// SPDX-License-Identifier: MIT
#include "platform/messagebus.h"

#include <algorithm>
#include <chrono>

#include <QCoreApplication>
#include <QDataStream>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QIODevice>
#include <QMetaMethod>
#include <QPointer>

#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// A bus answers the handshake within milliseconds.
constexpr auto longestSilence = 5s;
constexpr std::chrono::seconds firstPause = 5s;
constexpr std::chrono::seconds longestPause = 60s;

const QString wrongSignature = u"org.freedesktop.DBus.Error.InvalidSignature"_s;

/// Returns the name of the first UNIX socket of a D-Bus address such as
/// "unix:path=/run/bus,guid=1;tcp:host=a", or an empty name if there is none.
QByteArray unixSocket(const QString &address)
{
    for (const QString &each : address.split(u';')) {
        if (!each.startsWith("unix:"_L1))
            continue;
        for (const QString &pair : each.sliced(5).split(u',')) {
            // Escaped as in a URL.
            QByteArray value = QByteArray::fromPercentEncoding(pair.section(u'=', 1).toUtf8());
            if (pair.startsWith("path="_L1))
                return value;
            if (pair.startsWith("abstract="_L1))
                return '\0' + value;
        }
    }
    return {};
}

/// Returns the marshalled Hello call, which must be the first on a connection.
QByteArray helloMessage()
{
    QByteArray message;
    QDataStream stream(&message, QIODevice::WriteOnly);
    stream.setByteOrder(QDataStream::LittleEndian);
    const auto put = [&stream](std::initializer_list<quint8> bytes) {
        for (const quint8 byte : bytes)
            stream << byte;
    };
    const auto align = [&message, &put] {
        while (message.size() % 8 != 0)
            put({0});
    };
    const auto putField = [&](quint8 code, quint8 type, QByteArrayView text) {
        align();
        put({code, 1, type, 0});
        stream << static_cast<quint32>(text.size());
        stream.writeRawData(text.data(), static_cast<int>(text.size()));
        put({0});
    };
    constexpr quint32 bodySize = 0;
    constexpr quint32 serial = 1;
    constexpr int fieldsAt = 16;
    put({'l', 1, 0, 1}); // little endian, a method call, no flags, version 1
    stream << bodySize << serial << quint32{0};
    putField(1, 'o', "/org/freedesktop/DBus");
    putField(2, 's', "org.freedesktop.DBus");
    putField(3, 's', "Hello");
    putField(6, 's', "org.freedesktop.DBus");
    const auto fieldsSize = static_cast<quint32>(message.size() - fieldsAt);
    align();
    stream.device()->seek(fieldsAt - static_cast<int>(sizeof fieldsSize));
    stream << fieldsSize;
    return message;
}

QDBusMessage messageOf(const MessageBus::Call &call)
{
    QDBusMessage message =
        QDBusMessage::createMethodCall(call.service, call.path, call.interface, call.method);
    message.setArguments(call.arguments);
    message.setAutoStartService(call.startsService);
    return message;
}

QStringList argumentsOf(const MessageBus::Signal &signal)
{
    return signal.firstArgument.isEmpty() ? QStringList() : QStringList(signal.firstArgument);
}

MessageBus &shared(QPointer<MessageBus> &bus, const char *variable, const QString &usual)
{
    if (!bus)
        bus = new MessageBus(qEnvironmentVariable(variable, usual), QCoreApplication::instance());
    return *bus;
}

} // namespace

MessageBus::MessageBus(const QString &busAddress, QObject *parent)
    : QObject(parent)
    , address(busAddress)
    , connection(QString())
    , pause(firstPause)
{
    silence.setSingleShot(true);
    silence.setInterval(longestSilence);
    retry.setSingleShot(true);
    connect(&retry, &QTimer::timeout, this, [this] {
        if (isSignalConnected(QMetaMethod::fromSignal(&MessageBus::ready)))
            probe();
    });
    connect(&silence, &QTimer::timeout, this, &MessageBus::probeFailed);
    connect(&socket, &LocalSocket::received, this, &MessageBus::readHandshake);
    connect(&socket, &LocalSocket::closed, this, &MessageBus::probeFailed);
}

MessageBus::~MessageBus()
{
    if (!connectionName.isEmpty())
        QDBusConnection::disconnectFromBus(connectionName);
}

MessageBus::Signal MessageBus::ownerChange(const QString &service)
{
    const QString bus = u"org.freedesktop.DBus"_s;
    return {bus, u"/org/freedesktop/DBus"_s, bus, u"NameOwnerChanged"_s, u"sss"_s, service};
}

MessageBus &MessageBus::system()
{
    static QPointer<MessageBus> bus;
    return shared(bus, "DBUS_SYSTEM_BUS_ADDRESS", u"unix:path=/run/dbus/system_bus_socket"_s);
}

MessageBus &MessageBus::session()
{
    static QPointer<MessageBus> bus;
    const QString usual =
        u"unix:path="_s + qEnvironmentVariable("XDG_RUNTIME_DIR", u"/nonexistent"_s) + u"/bus"_s;
    return shared(bus, "DBUS_SESSION_BUS_ADDRESS", usual);
}

void MessageBus::whenReady(QObject *context, const std::function<void()> &function)
{
    if (connection.isConnected()) {
        function();
        return;
    }
    connect(this, &MessageBus::ready, context, function,
            static_cast<Qt::ConnectionType>(Qt::AutoConnection | Qt::SingleShotConnection));
    if (!silence.isActive() && !retry.isActive())
        probe();
}

void MessageBus::call(QObject *context, const Call &call, const QString &expected, const Done &done,
                      const Failed &failed)
{
    whenReady(context, [this, context, call, expected, done, failed] {
        auto *watcher = new QDBusPendingCallWatcher(
            connection.asyncCall(messageOf(call), static_cast<int>(call.timeout.count())), this);
        connect(watcher, &QDBusPendingCallWatcher::finished, watcher, &QObject::deleteLater);
        connect(watcher, &QDBusPendingCallWatcher::finished, context,
                [expected, done, failed](QDBusPendingCallWatcher *finished) {
                    const QDBusMessage reply = finished->reply();
                    const bool isReply = reply.type() == QDBusMessage::ReplyMessage;
                    if (isReply && reply.signature() == expected) {
                        if (done)
                            done(reply.arguments());
                    } else if (failed) {
                        failed(isReply ? wrongSignature : reply.errorName());
                    }
                });
    });
}

void MessageBus::send(const Call &call)
{
    if (connection.isConnected())
        connection.send(messageOf(call));
}

void MessageBus::connectSignal(const Signal &signal, QObject *receiver, const char *slot)
{
    connection.connect(signal.service, signal.path, signal.interface, signal.name,
                       argumentsOf(signal), signal.signature, receiver, slot);
}

void MessageBus::disconnectSignal(const Signal &signal, QObject *receiver, const char *slot)
{
    connection.disconnect(signal.service, signal.path, signal.interface, signal.name,
                          argumentsOf(signal), signal.signature, receiver, slot);
}

void MessageBus::probe()
{
    const QByteArray name = unixSocket(address);
    if (name.isEmpty())
        return; // no address that can be tried without blocking
    isAccepted = false;
    silence.start();
    if (!socket.connectTo(name)) {
        probeFailed();
        return;
    }
    const QByteArray user = QByteArray::number(getuid()).toHex();
    // The zero byte carries the credentials of the process.
    socket.write(QByteArray(1, '\0') + "AUTH EXTERNAL " + user + "\r\n");
    if (!socket.isConnected())
        probeFailed();
}

/// The bus sends "OK" and then the reply to Hello.
void MessageBus::readHandshake()
{
    QByteArray &answer = socket.buffer();
    if (!isAccepted) {
        constexpr qsizetype longestAnswer = 1024; // bytes
        const qsizetype end = answer.indexOf('\n');
        if (end < 0 && answer.size() < longestAnswer)
            return;
        isAccepted = end >= 0 && answer.startsWith("OK ");
        if (!isAccepted) {
            probeFailed();
            return;
        }
        answer.remove(0, end + 1);
        socket.write("BEGIN\r\n" + helloMessage());
    }
    constexpr char methodReturn = 2;
    if (answer.size() >= 2) {
        if (answer.at(1) == methodReturn)
            connectToBus();
        else
            probeFailed();
    }
}

void MessageBus::probeFailed()
{
    silence.stop();
    socket.close();
    tryLater();
}

void MessageBus::tryLater()
{
    retry.start(pause);
    pause = std::min(2 * pause, longestPause);
}

void MessageBus::connectToBus()
{
    silence.stop();
    socket.close();
    static int count = 0;
    connectionName = u"trolleo-bus-%1"_s.arg(++count);
    connection = QDBusConnection::connectToBus(address, connectionName);
    if (!connection.isConnected()) {
        tryLater();
        return;
    }
    pause = firstPause;
    connection.connect(QString(), u"/org/freedesktop/DBus/Local"_s, u"org.freedesktop.DBus.Local"_s,
                       u"Disconnected"_s, this, SLOT(connectionEnded()));
    emit ready();
}

void MessageBus::connectionEnded()
{
    QDBusConnection::disconnectFromBus(connectionName);
    connection = QDBusConnection(QString());
    emit lost();
}
