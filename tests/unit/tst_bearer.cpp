// SPDX-License-Identifier: MIT
#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QSignalSpy>
#include <QtTest>

#include "platform/bearer.h"
#include "tests/support/privatebus.h"

using Interfaces = QMap<QString, QVariantMap>;
using Objects = QMap<QDBusObjectPath, Interfaces>;

static constexpr int soon = 5000; // milliseconds
static const QString manager = "org.freedesktop.NetworkManager";
static const QDBusObjectPath profilePath("/org/freedesktop/NetworkManager/Settings/1");
static const QDBusObjectPath devicePath("/org/freedesktop/NetworkManager/Devices/1");
static const QDBusObjectPath activePath("/org/freedesktop/NetworkManager/ActiveConnection/1");

/// A simulated NetworkManager with one profile and one device, which answers with wrong types. The
/// system tests use the real one.
class TestBearer : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void whatItPromises();
    void otherTypesThanPromised_data();
    void otherTypesThanPromised();

private:
    std::unique_ptr<PrivateBus> bus;
};

/// Returns the regular objects; `change` replaces one property.
static Objects objects(const QString &property = {}, const QVariant &change = {})
{
    QVariantMap active{{"State", 2U},
                       {"Uuid", "one"},
                       {"Type", "802-3-ethernet"},
                       {"Default", true},
                       {"Devices", QVariant::fromValue(QList<QDBusObjectPath>{devicePath})}};
    QVariantMap device{
        {"AvailableConnections", QVariant::fromValue(QList<QDBusObjectPath>{profilePath})}};
    if (active.contains(property))
        active[property] = change;
    if (device.contains(property))
        device[property] = change;
    return {{profilePath, {{manager + ".Settings.Connection", {}}}},
            {devicePath, {{manager + ".Device", device}}},
            {activePath, {{manager + ".Connection.Active", active}}}};
}

static Interfaces settings()
{
    return {{"connection", {{"uuid", "one"}, {"type", "802-3-ethernet"}}}};
}

/// A service with NetworkManager's two object paths.
struct Network : MadeUpService
{
    explicit Network(const QString &busAddress)
        : MadeUpService(busAddress, manager, "/org/freedesktop")
    {
        answers["GetManagedObjects"] = [](const QDBusMessage &message) {
            return message.createReply(QVariant::fromValue(objects()));
        };
        answers["GetSettings"] = [](const QDBusMessage &message) {
            return message.createReply(QVariant::fromValue(settings()));
        };
        answers["Get"] = [](const QDBusMessage &message) {
            const bool isState = message.arguments().at(1) == "State";
            return message.createReply(QVariant::fromValue(
                QDBusVariant(isState ? QVariant(2U) : QVariant(QString("one")))));
        };
    }
};

void TestBearer::initTestCase()
{
    qDBusRegisterMetaType<Interfaces>();
    qDBusRegisterMetaType<Objects>();
    bus = std::make_unique<PrivateBus>();
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", bus->address().toUtf8());
}

void TestBearer::whatItPromises()
{
    const Network network(bus->address());
    QNetworkConfigurationManager configurations;
    QSignalSpy completed(&configurations, &QNetworkConfigurationManager::updateCompleted);
    configurations.updateConfigurations();
    QTRY_COMPARE_WITH_TIMEOUT(completed.count(), 1, soon);
    QVERIFY(configurations.capabilities().testFlag(
        QNetworkConfigurationManager::NetworkSessionRequired));
    QCOMPARE(configurations.configurationFromIdentifier("one").state(),
             QNetworkConfiguration::Active);
    QNetworkSession session(configurations.configurationFromIdentifier("one"));
    QSignalSpy opened(&session, &QNetworkSession::opened);
    session.open();
    QTRY_COMPARE_WITH_TIMEOUT(opened.count(), 1, soon);
}

void TestBearer::otherTypesThanPromised_data()
{
    QTest::addColumn<QString>("method");
    QTest::addColumn<QVariant>("answer");
    const QVariantList strange{QVariant("text"),
                               QVariant(7U),
                               QVariant(1.5),
                               QVariant(QByteArray(1000, 'x')),
                               QVariant(QStringList(1000, "text")),
                               QVariant(QVariantMap{{"a", 1}}),
                               QVariant::fromValue(QDBusVariant(QVariant(7U))),
                               QVariant::fromValue(QList<QDBusObjectPath>{devicePath}),
                               QVariant::fromValue(settings()),
                               QVariant::fromValue(objects())};
    for (const QVariant &answer : strange) {
        const QByteArray type = answer.typeName();
        for (const char *method : {"GetManagedObjects", "GetSettings", "Get"})
            QTest::newRow(method + (" answers with " + type)) << method << answer;
        for (const char *property :
             {"State", "Uuid", "Type", "Default", "Devices", "AvailableConnections"})
            QTest::newRow(property + (" is " + type))
                << "GetManagedObjects" << QVariant::fromValue(objects(property, answer));
    }
}

void TestBearer::otherTypesThanPromised()
{
    QFETCH(QString, method);
    QFETCH(QVariant, answer);
    Network network(bus->address());
    network.answers[method] = [answer](const QDBusMessage &message) {
        return message.createReply(answer);
    };
    QNetworkConfigurationManager configurations;
    QSignalSpy completed(&configurations, &QNetworkConfigurationManager::updateCompleted);
    configurations.updateConfigurations();
    QTRY_COMPARE_WITH_TIMEOUT(completed.count(), 1, soon);
    QNetworkSession session(configurations.defaultConfiguration());
    session.open();
    const auto calls = network.heard.size();
    QTRY_VERIFY_WITH_TIMEOUT(network.heard.size() > calls, soon);
    QTest::qWait(20);
}

STOPPABLE_TEST_GUILESS_MAIN(TestBearer)
#include "tst_bearer.moc"
