// SPDX-License-Identifier: MIT
#include <QLabel>
#include <QtTest>

#include "base/pages.h"
#include "map/mapswidget.h"
#include "platform/informationbox.h"
#include "platform/positionsource.h"
#include "tests/support/madeupgpsd.h"
#include "tests/support/privatebus.h"
#include "tests/support/records.h"
#include "tests/support/shopdriver.h"

static const Records bakery = store("Bakery").at(10.01, 20).openList("Bread");
static const QVariantMap gpsOn{{"GpsEnabled", true}};
static constexpr int soon = 5000; // milliseconds

/// Tests the window with the real position source and simulated services, which act at the moment
/// that a test chooses.
class TestNeighbours : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void roughPositionNeitherRingsNorIsAStore();
    void roughPositionCentresTheMap();
    void refusalIsToldOnce();
    void missingPositionIsTold();
    void sleepIsInhibitedWhileTracking();
    void notificationsComeAndGo();
    void answersByNotification_data();
    void answersByNotification();
    void requestEndsWithGps();

private:
    static void track(ShopDriver &shop)
    {
        shop.press("reminderButton");
        shop.press("startButton");
        QVERIFY(shop.isEnabled("stopButton"));
    }
    /// Returns the answers of a notification service, with increasing ids.
    static MadeUpService::Answer numbered(uint first)
    {
        return [number = first](const QDBusMessage &message) mutable {
            return message.createReply(number++);
        };
    }

    MadeUpGpsd gpsd;
    std::unique_ptr<PrivateBus> bus;
};

void TestNeighbours::initTestCase()
{
    qputenv("TROLLEO_GPSD", gpsd.environment());
    // The buses of the program, for all test functions.
    bus = std::make_unique<PrivateBus>();
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", bus->address().toUtf8());
    qputenv("DBUS_SESSION_BUS_ADDRESS", bus->address().toUtf8());
}

void TestNeighbours::roughPositionNeitherRingsNorIsAStore()
{
    ShopDriver shop(bakery, gpsOn);
    track(shop);
    const int polls = gpsd.polls();
    QTRY_VERIFY_WITH_TIMEOUT(gpsd.polls() > polls, soon);
    gpsd.tell(1, 10.01, 20, "\"eph\":24300.0");
    QTRY_COMPARE_WITH_TIMEOUT(shop.banner(), "Your position is known to within 25 km only.", soon);
    QCOMPARE(shop.page(), PageTracking);
    // It does not end a wait either.
    shop.press("viewButton");
    QCOMPARE(shop.page(), PageWaiting);
    delete shop.window->findChild<InformationBox *>();
    gpsd.tell(2, 10.01, 20, "\"eph\":251.0");
    QTRY_COMPARE_WITH_TIMEOUT(shop.banner(), "Your position is known to within 1 km only.", soon);
    QCOMPARE(shop.page(), PageWaiting);
    delete shop.window->findChild<InformationBox *>();
    gpsd.tell(3, 10.01, 20, "\"eph\":252.0");
    QTest::qWait(3500);
    QCOMPARE(shop.banner(), QString()); // once in each wait
    gpsd.tell(4, 10.01, 20, "\"eph\":249.0");
    QTRY_COMPARE_WITH_TIMEOUT(shop.page(), PageReminder, soon);
}

void TestNeighbours::roughPositionCentresTheMap()
{
    ShopDriver shop(bakery, gpsOn);
    track(shop);
    shop.press("viewButton");
    const int polls = gpsd.polls();
    QTRY_VERIFY_WITH_TIMEOUT(gpsd.polls() > polls, soon);
    gpsd.tell(10, 11, 21);
    QTRY_COMPARE_WITH_TIMEOUT(shop.page(), PageTrackedList, 2 * soon);
    shop.press("mapViewButton");
    gpsd.tell(11, 48, 2, "\"eph\":5000.0");
    QTRY_COMPARE_WITH_TIMEOUT(shop.banner(), "Your position is known to within 5 km only.", soon);
    QCOMPARE(shop.page(), PageTrackedList);
    QCOMPARE(shop.map()->centerLatitude(), 48.0F);
    QCOMPARE(shop.map()->centerLongitude(), 2.0F);
}

void TestNeighbours::refusalIsToldOnce()
{
    MadeUpGeoClue geoClue(bus->address());
    geoClue.refuses = true;
    gpsd.answer = MadeUpGpsd::poll({});
    gpsd.close();
    ShopDriver shop(bakery, gpsOn);
    track(shop);
    QTRY_VERIFY_WITH_TIMEOUT(shop.banner().startsWith("Location is switched off"), 15000);
    delete shop.window->findChild<InformationBox *>();
    const auto refused = geoClue.calls("Start").size();
    QTRY_VERIFY_WITH_TIMEOUT(geoClue.calls("Start").size() > refused, 12000);
    QTest::qWait(100);
    QCOMPARE(shop.banner(), QString());
    QVERIFY(shop.isEnabled("stopButton")); // tracking continues
    geoClue.refuses = false;
    QTRY_VERIFY_WITH_TIMEOUT(geoClue.isStarted(), 25000);
    geoClue.locate(10.01, 20, 1);
    QTRY_COMPARE_WITH_TIMEOUT(shop.page(), PageReminder, soon);
    QVERIFY(gpsd.listen(QHostAddress::LocalHost, quint16(qgetenv("TROLLEO_GPSD").mid(10).toInt())));
}

void TestNeighbours::missingPositionIsTold()
{
    gpsd.answer = MadeUpGpsd::poll({});
    ShopDriver shop(bakery, gpsOn);
    QElapsedTimer clock;
    track(shop);
    clock.start();
    QTRY_VERIFY_WITH_TIMEOUT(shop.banner().startsWith("No position yet."), 70000);
    QVERIFY2(clock.elapsed() > 57000, qPrintable(QString::number(clock.elapsed())));
    QVERIFY(shop.isEnabled("stopButton"));
}

void TestNeighbours::sleepIsInhibitedWhileTracking()
{
    MadeUpService login(bus->address(), "org.freedesktop.login1", "/org/freedesktop/login1");
    gpsd.answer = MadeUpGpsd::poll({});
    ShopDriver shop(bakery, gpsOn);
    QTest::qWait(200);
    QVERIFY(login.heard.isEmpty());
    track(shop);
    QTRY_COMPARE_WITH_TIMEOUT(login.calls("Inhibit").size(), 1, soon);
    QCOMPARE(login.calls("Inhibit").first().arguments().first(), "sleep");
    login.emitSignal("/org/freedesktop/login1", "org.freedesktop.login1.Manager", "PrepareForSleep",
                     {true});
    QTRY_COMPARE_WITH_TIMEOUT(shop.banner(), "Tracking pauses while the device sleeps.", soon);
}

void TestNeighbours::notificationsComeAndGo()
{
    MadeUpService service(bus->address(), "org.freedesktop.Notifications",
                          "/org/freedesktop/Notifications");
    service.answers["Notify"] = numbered(1);
    const auto summaries = [&service] {
        QStringList texts;
        for (const QDBusMessage &call : service.calls("Notify"))
            texts << call.arguments().at(3).toString();
        return texts;
    };
    const auto closed = [&service] {
        QList<uint> ids;
        for (const QDBusMessage &call : service.calls("CloseNotification"))
            ids << call.arguments().first().toUInt();
        return ids;
    };
    gpsd.answer = MadeUpGpsd::poll({});
    {
        ShopDriver shop(bakery, gpsOn);
        track(shop);
        QTRY_COMPARE_WITH_TIMEOUT(summaries(), QStringList{"Tracking is running"}, soon);
        const int polls = gpsd.polls();
        QTRY_VERIFY_WITH_TIMEOUT(gpsd.polls() > polls, soon);
        gpsd.tell(20, 10.01, 20);
        QTRY_COMPARE_WITH_TIMEOUT(summaries().size(), 2, soon);
        QCOMPARE(summaries().last(), "Bakery (at 0.00 meters)");
        QTest::qWait(100);
        shop.press("stopButton"); // both disappear
        QTRY_COMPARE_WITH_TIMEOUT(closed().size(), 2, soon);
        const QList<uint> ids = closed();
        QCOMPARE(QSet<uint>(ids.cbegin(), ids.cend()), (QSet<uint>{1, 2}));
        shop.press("startButton");
        QTRY_COMPARE_WITH_TIMEOUT(summaries().size(), 3, soon);
        QTest::qWait(100);
    }
    // The same happens when the program ends.
    QTRY_COMPARE_WITH_TIMEOUT(closed().size(), 3, soon);
}

void TestNeighbours::answersByNotification_data()
{
    QTest::addColumn<QString>("action");
    QTest::addColumn<Page>("page");
    QTest::addColumn<bool>("tracks");
    QTest::newRow("next") << "next" << PageTracking << true;
    QTest::newRow("stop") << "stop" << PageTracking << false;
    QTest::newRow("start") << "start" << PageDoShopping << false;
    QTest::newRow("default") << "default" << PageReminder << true;
    QTest::newRow("unknown") << "snooze" << PageReminder << true;
}

void TestNeighbours::answersByNotification()
{
    QFETCH(QString, action);
    QFETCH(Page, page);
    QFETCH(bool, tracks);
    MadeUpService service(bus->address(), "org.freedesktop.Notifications",
                          "/org/freedesktop/Notifications");
    service.answers["Notify"] = numbered(1);
    gpsd.answer = MadeUpGpsd::poll({});
    ShopDriver shop({bakery, store("Dairy").at(11, 20).openList("Milk")}, gpsOn);
    track(shop);
    const int polls = gpsd.polls();
    QTRY_VERIFY_WITH_TIMEOUT(gpsd.polls() > polls, soon);
    gpsd.tell(30, 10.01, 20);
    QTRY_COMPARE_WITH_TIMEOUT(service.calls("Notify").size(), 2, soon);
    QTest::qWait(100);
    const auto answer = [&] {
        service.emitSignal("/org/freedesktop/Notifications", "org.freedesktop.Notifications",
                           "ActionInvoked", {2U, action});
    };
    answer();
    QTRY_COMPARE_WITH_TIMEOUT(shop.page(), page, soon);
    answer(); // the reminder is already answered, or it is not an answer
    QTest::qWait(200);
    QCOMPARE(shop.page(), page);
    QCOMPARE(shop.window->findChild<QWidget *>("trackingPage")
                 ->findChild<QWidget *>("stopButton")
                 ->isEnabled(),
             tracks);
}

void TestNeighbours::requestEndsWithGps()
{
    gpsd.answer = MadeUpGpsd::poll({});
    ShopDriver shop(bakery, gpsOn);
    shop.press("reminderButton");
    shop.press("viewButton");
    QCOMPARE(shop.page(), PageWaiting);
    QTRY_VERIFY_WITH_TIMEOUT(gpsd.isConnected(), soon);
    shop.press("waitingCancelButton");
    QTRY_VERIFY_WITH_TIMEOUT(!gpsd.isConnected(), soon);
}

STOPPABLE_TEST_MAIN(TestNeighbours)
#include "tst_neighbours.moc"
