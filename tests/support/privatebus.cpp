// SPDX-License-Identifier: MIT
#include "tests/support/privatebus.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QTest>

#include <csignal>

#include <sys/prctl.h>

struct GeoClueTime
{
    qulonglong seconds = 0;
    qulonglong microseconds = 0;
};
Q_DECLARE_METATYPE(GeoClueTime)

static QDBusArgument &operator<<(QDBusArgument &argument, const GeoClueTime &time)
{
    argument.beginStructure();
    argument << time.seconds << time.microseconds;
    argument.endStructure();
    return argument;
}

static const QDBusArgument &operator>>(const QDBusArgument &argument, GeoClueTime &time)
{
    argument.beginStructure();
    argument >> time.seconds >> time.microseconds;
    argument.endStructure();
    return argument;
}

static const char busConfiguration[] = R"(
<busconfig>
  <type>session</type>
  <listen>unix:tmpdir=/tmp</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";

PrivateBus::PrivateBus(const Caller &by)
{
    // The desktop's own configuration would start services of the desktop, and queue calls for
    // them.
    if (!configuration.open() || configuration.write(busConfiguration) < 0 ||
        !configuration.flush())
        stopTest("cannot write the configuration of a bus", by);
    // It must not outlive a test that crashes.
    daemon.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGTERM); });
    daemon.start("dbus-daemon",
                 {"--config-file=" + configuration.fileName(), "--nofork", "--print-address=1"});
    if (!daemon.waitForStarted() || !daemon.waitForReadyRead(10000))
        stopTest("dbus-daemon cannot be run; its package is dbus", by);
    addressText = QString::fromUtf8(daemon.readLine().trimmed());
}

PrivateBus::~PrivateBus()
{
    thaw();
    daemon.terminate(); // it deletes its socket
    daemon.waitForFinished();
}

QString PrivateBus::address() const
{
    return addressText;
}

void PrivateBus::freeze() const
{
    ::kill(pid_t(daemon.processId()), SIGSTOP);
}

void PrivateBus::thaw() const
{
    ::kill(pid_t(daemon.processId()), SIGCONT);
}

MadeUpService::MadeUpService(const QString &busAddress, const QString &name, const QString &path,
                             const Caller &by)
    : address(busAddress)
    , serviceName(name)
    , rootPath(path)
{
    comeBack(by);
}

MadeUpService::~MadeUpService()
{
    leave();
}

void MadeUpService::leave()
{
    if (connectionName.isEmpty())
        return;
    // A call that was not handled yet is answered by its connection when its event is deleted, so
    // that must not happen after the connection was closed.
    QDBusConnection(connectionName).unregisterObject(rootPath, QDBusConnection::UnregisterTree);
    QCoreApplication::removePostedEvents(this);
    QDBusConnection::disconnectFromBus(connectionName);
    connectionName.clear();
}

void MadeUpService::comeBack(const Caller &by)
{
    static int count = 0;
    connectionName = QString("made-up-%1").arg(++count);
    QDBusConnection connection = QDBusConnection::connectToBus(address, connectionName);
    // The bus may not have noticed yet that the connection of before, which had the name, is gone.
    if (!connection.registerVirtualObject(rootPath, this, QDBusConnection::SubPath) ||
        !QTest::qWaitFor([&] { return connection.registerService(serviceName); }))
        stopTest("cannot offer " + serviceName + ": " + connection.lastError().message(), by);
}

bool MadeUpService::handleMessage(const QDBusMessage &message, const QDBusConnection &connection)
{
    heard << message;
    if (answers.contains(message.member())) {
        const QDBusMessage answer = answers[message.member()](message);
        if (answer.type() != QDBusMessage::InvalidMessage)
            connection.send(answer);
    }
    return true;
}

QString MadeUpService::introspect(const QString & /*path*/) const
{
    return {};
}

void MadeUpService::emitSignal(const QString &path, const QString &interface, const QString &signal,
                               const QVariantList &arguments) const
{
    QDBusMessage message = QDBusMessage::createSignal(path, interface, signal);
    message.setArguments(arguments);
    QDBusConnection(connectionName).send(message);
}

QList<QDBusMessage> MadeUpService::calls(const QString &method) const
{
    QList<QDBusMessage> found;
    for (const QDBusMessage &message : heard) {
        if (message.member() == method)
            found << message;
    }
    return found;
}

static const QString clientPath = "/org/freedesktop/GeoClue2/Client/1";

MadeUpGeoClue::MadeUpGeoClue(const QString &busAddress)
    : MadeUpService(busAddress, "org.freedesktop.GeoClue2", "/org/freedesktop/GeoClue2")
{
    qDBusRegisterMetaType<GeoClueTime>();
    for (const char *method : {"GetClient", "Set", "Start", "DeleteClient", "GetAll"})
        answers[method] = [this](const QDBusMessage &message) {
            return answerTo(message);
        };
}

QDBusMessage MadeUpGeoClue::answerTo(const QDBusMessage &message)
{
    const QString method = message.member();
    if (isSilent)
        return {};
    if (method == "GetClient")
        return message.createReply(QVariant::fromValue(QDBusObjectPath(clientPath)));
    if (method == "GetAll")
        return message.createReply(QVariant(location));
    if (method == "Set") {
        const auto value = message.arguments().at(2).value<QDBusVariant>().variant();
        properties[message.arguments().at(1).toString()] = value;
    } else if (method == "Start" && refuses) {
        return message.createErrorReply(QDBusError::AccessDenied, "no");
    } else {
        started = method == "Start";
    }
    return message.createReply();
}

bool MadeUpGeoClue::isStarted() const
{
    return started;
}

void MadeUpGeoClue::correct(double latitude, double longitude, int second, double accuracy)
{
    const GeoClueTime time{.seconds = qulonglong(start + second), .microseconds = 0};
    location = {{"Latitude", latitude},
                {"Longitude", longitude},
                {"Accuracy", accuracy},
                {"Altitude", std::numeric_limits<double>::lowest()},
                {"Timestamp", QVariant::fromValue(time)}};
}

void MadeUpGeoClue::locate(double latitude, double longitude, int second, double accuracy)
{
    correct(latitude, longitude, second, accuracy);
    if (!started)
        return;
    const QDBusObjectPath before("/org/freedesktop/GeoClue2/Location/" +
                                 QString::number(locations));
    const QDBusObjectPath now("/org/freedesktop/GeoClue2/Location/" + QString::number(++locations));
    emitSignal(clientPath, "org.freedesktop.GeoClue2.Client", "LocationUpdated",
               {QVariant::fromValue(before), QVariant::fromValue(now)});
}
