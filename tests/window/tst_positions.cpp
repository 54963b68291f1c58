// SPDX-License-Identifier: MIT
#include <limits>

#include <QLabel>
#include <QSettings>
#include <QSignalSpy>
#include <QSqlDatabase>
#include <QTimer>
#include <QtTest>

#include "base/pages.h"
#include "gps/trshopgps.h"
#include "platform/positionsource.h"
#include "tests/support/records.h"
#include "tests/support/shopdriver.h"
#include "tests/support/testpositionplugin.h"

Q_IMPORT_PLUGIN(TestPositionPlugin)

static const Records oneStore = store("Bakery").at(10.01, 20).openList("Bread");
static const QVariantMap gpsOn{{"GpsEnabled", true}};

class TestPositions : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup()
    {
        TestPositionPlugin::offersSource = true;
        PositionPlugin::isOffered = true;
    }
    void sourceIsMadeOnce();
    void operationsWithoutASource();
    void sourceThatCannotBeMade();
    void positionsAreToldLongitudeFirst();
    void invalidPositionsAreIgnored_data();
    void invalidPositionsAreIgnored();
    void onlyTheTimeoutIsATimeout();
    void updatesEveryThreeSeconds();
    void withGpsOffNothingIsAsked();
    void withoutASourceTheWindowSaysSo();
    void gpsAutostart();
    void everyPositionTellsWhoeverWaits();
    void timeoutsWhileWaitingAskAgain();
    void timeoutsWhileNobodyWaitsAskNothing();
    void sourceThatRefusesIsAskedOnceASecond();
    void otherErrorsChangeNothing();
    void cancelledWaitLeavesNothingBehind();
    void currentPositionIsTakenForAStore_data();
    void currentPositionIsTakenForAStore();

private:
    static TestPositionSource *source()
    {
        return TestPositionSource::instance();
    }
    /// Makes "View tracked" wait for a position.
    static void waitForPosition(ShopDriver &shop)
    {
        shop.press("reminderButton");
        shop.press("viewButton");
        QCOMPARE(shop.page(), PageWaiting);
    }
};

void TestPositions::initTestCase()
{
    // Qt's own sources must not be found, since one of them is always available.
    QVERIFY(QSqlDatabase::isDriverAvailable("QSQLITE"));
    QCoreApplication::setLibraryPaths({});
}

void TestPositions::sourceIsMadeOnce()
{
    const int before = TestPositionSource::made();
    TrShopGps gps;
    QVERIFY(gps.isAvailable());
    gps.init();
    gps.init();
    QVERIFY(gps.isAvailable());
    QCOMPARE(TestPositionSource::made(), before + 1);
    QCOMPARE(source()->parent(), &gps);
}

void TestPositions::operationsWithoutASource()
{
    TrShopGps gps;
    gps.startUpdates();
    gps.stopUpdates();
    gps.requestUpdate();
    QVERIFY(gps.isAvailable());
}

void TestPositions::sourceThatCannotBeMade()
{
    TestPositionPlugin::offersSource = false;
    PositionPlugin::isOffered = false;
    TrShopGps gps;
    QSignalSpy failed(&gps, &TrShopGps::startGpsFailed);
    gps.init();
    QVERIFY(!gps.isAvailable());
    QCOMPARE(failed.count(), 1);
    gps.startUpdates();
    gps.requestUpdate();
}

void TestPositions::positionsAreToldLongitudeFirst()
{
    TrShopGps gps;
    gps.init();
    QSignalSpy updated(&gps, &TrShopGps::coordinateUpdated);
    QTest::ignoreMessage(QtDebugMsg, QRegularExpression("^Position updated: QGeoPositionInfo"));
    source()->deliver(59.913822, 10.738741, 12.5);
    QCOMPARE(updated.count(), 1);
    QCOMPARE(updated.first(), (QVariantList{10.738741, 59.913822, 12.5}));
}

void TestPositions::invalidPositionsAreIgnored_data()
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinite = std::numeric_limits<double>::infinity();
    QTest::addColumn<QGeoPositionInfo>("position");
    const QDateTime now = QDateTime::currentDateTimeUtc();
    const auto add = [&now](const char *name, double latitude, double longitude) {
        QTest::newRow(name) << QGeoPositionInfo(QGeoCoordinate(latitude, longitude), now);
    };
    QTest::newRow("nothing") << QGeoPositionInfo();
    QTest::newRow("no time") << QGeoPositionInfo(QGeoCoordinate(10, 20), QDateTime());
    add("no latitude", nan, 20);
    add("no longitude", 10, nan);
    add("infinite", infinite, infinite);
    add("beyond the pole", 90.0001, 20);
    add("beyond the date line", 10, -180.0001);
    add("999", 999, 999);
}

void TestPositions::invalidPositionsAreIgnored()
{
    QFETCH(QGeoPositionInfo, position);
    ShopDriver shop(oneStore, gpsOn);
    waitForPosition(shop);
    QTest::ignoreMessage(QtDebugMsg, QRegularExpression("^Position updated: QGeoPositionInfo"));
    source()->deliver(position);
    QCOMPARE(shop.page(), PageWaiting);
}

void TestPositions::onlyTheTimeoutIsATimeout()
{
    TrShopGps gps;
    gps.init();
    QSignalSpy timedOut(&gps, &TrShopGps::coordinateRequestTimeout);
    for (const auto error :
         {QGeoPositionInfoSource::AccessError, QGeoPositionInfoSource::ClosedError,
          QGeoPositionInfoSource::UnknownSourceError, QGeoPositionInfoSource::NoError})
        source()->fail(error);
    QCOMPARE(timedOut.count(), 0);
    source()->fail(QGeoPositionInfoSource::UpdateTimeoutError);
    QCOMPARE(timedOut.count(), 1);
}

void TestPositions::updatesEveryThreeSeconds()
{
    TrShopGps gps;
    gps.init();
    gps.startUpdates();
    gps.requestUpdate();
    gps.stopUpdates();
    QCOMPARE(source()->calls, (QStringList{"start", "interval 3000", "request", "stop"}));
    QCOMPARE(source()->lastTimeout, 0);
}

void TestPositions::withGpsOffNothingIsAsked()
{
    const int before = TestPositionSource::made();
    ShopDriver shop(oneStore, {{"GpsEnabled", false}, {"GpsAutoStart", true}});
    shop.press("shopsButton");
    shop.press("storesButton");
    shop.tap(0);
    shop.press("selectButton");
    QCOMPARE(shop.labelText("storeDistance"), "(GPS disabled)");
    QCOMPARE(TestPositionSource::made(), before);
}

void TestPositions::withoutASourceTheWindowSaysSo()
{
    TestPositionPlugin::offersSource = false;
    PositionPlugin::isOffered = false;
    ShopDriver shop(oneStore, gpsOn);
    QCOMPARE(shop.message(), "GPS: Failed to start GPS system");
    shop.press("messageOkButton");
    QCOMPARE(shop.page(), PageMain);
    // A request never has a result here.
    waitForPosition(shop);
    shop.press("waitingCancelButton");
    QCOMPARE(shop.page(), PageTracking);
}

void TestPositions::gpsAutostart()
{
    {
        const ShopDriver shop(oneStore, gpsOn);
        QVERIFY(!source()->updating);
        QCOMPARE(source()->calls, QStringList());
    }
    const ShopDriver shop(oneStore, {{"GpsEnabled", true}, {"GpsAutoStart", true}});
    QVERIFY(source()->updating);
    QCOMPARE(source()->calls, (QStringList{"start", "interval 3000"}));
}

void TestPositions::everyPositionTellsWhoeverWaits()
{
    ShopDriver shop(oneStore, gpsOn);
    waitForPosition(shop);
    // The signal is emitted for every position during a wait. The page disconnects after the first
    // one, so the test takes its place.
    QObject::disconnect(shop.window.get(), &ShopWindow::requestedGpsUpdate, nullptr, nullptr);
    QSignalSpy told(shop.window.get(), &ShopWindow::requestedGpsUpdate);
    source()->deliver(10, 20);
    source()->deliver(10, 20);
    QCOMPARE(told.count(), 2);
    shop.press("waitingCancelButton");

    QSignalSpy toldLater(shop.window.get(), &ShopWindow::requestedGpsUpdate);
    source()->deliver(10, 20);
    QCOMPARE(toldLater.count(), 0);
    QCOMPARE(shop.page(), PageTracking);
}

void TestPositions::timeoutsWhileWaitingAskAgain()
{
    ShopDriver shop(oneStore, gpsOn);
    waitForPosition(shop);
    QCOMPARE(source()->requests, 1);
    for (int time = 2; time <= 100; ++time) {
        source()->fail(QGeoPositionInfoSource::UpdateTimeoutError);
        QCOMPARE(source()->requests, time);
    }
    source()->deliver(10, 20);
    QCOMPARE(shop.page(), PageTrackedList);
}

void TestPositions::timeoutsWhileNobodyWaitsAskNothing()
{
    ShopDriver shop(oneStore, gpsOn);
    source()->fail(QGeoPositionInfoSource::UpdateTimeoutError);
    QCOMPARE(source()->requests, 0);
    // The stores page asks once and does not repeat the request.
    shop.press("shopsButton");
    shop.press("storesButton");
    shop.tap(0);
    shop.press("selectButton");
    QCOMPARE(source()->requests, 1);
    source()->fail(QGeoPositionInfoSource::UpdateTimeoutError);
    QCOMPARE(source()->requests, 1);
    QCOMPARE(shop.labelText("storeDistance"), "(calculating)");
    source()->deliver(10, 20);
    QVERIFY(shop.labelText("storeDistance").startsWith("1111.9"));
}

void TestPositions::sourceThatRefusesIsAskedOnceASecond()
{
    ShopDriver shop(oneStore, gpsOn);
    source()->refuses = true;
    QElapsedTimer clock;
    clock.start();
    waitForPosition(shop);
    QCOMPARE(source()->requests, 1);
    QTRY_COMPARE_WITH_TIMEOUT(source()->requests, 2, 2000);
    QVERIFY2(clock.elapsed() >= 950, qPrintable(QString::number(clock.elapsed())));
    QTRY_COMPARE_WITH_TIMEOUT(source()->requests, 3, 2000);
    QVERIFY2(clock.elapsed() >= 1900, qPrintable(QString::number(clock.elapsed())));
    shop.press("waitingCancelButton");
    for (const QTimer *timer : shop.window->findChildren<QTimer *>())
        QVERIFY(!timer->isActive());
}

void TestPositions::otherErrorsChangeNothing()
{
    ShopDriver shop(oneStore, gpsOn);
    waitForPosition(shop);
    for (const auto error :
         {QGeoPositionInfoSource::AccessError, QGeoPositionInfoSource::ClosedError,
          QGeoPositionInfoSource::UnknownSourceError})
        source()->fail(error);
    QCOMPARE(source()->requests, 1);
    QCOMPARE(shop.page(), PageWaiting);
    source()->deliver(10, 20);
    QCOMPARE(shop.page(), PageTrackedList);
}

void TestPositions::cancelledWaitLeavesNothingBehind()
{
    ShopDriver shop(oneStore, gpsOn);
    waitForPosition(shop);
    shop.press("waitingCancelButton");
    source()->fail(QGeoPositionInfoSource::UpdateTimeoutError);
    QCOMPARE(source()->requests, 1);
    source()->deliver(10, 20);
    QCOMPARE(shop.page(), PageTracking);
    for (const QTimer *timer : shop.window->findChildren<QTimer *>())
        QVERIFY(!timer->isActive());
}

void TestPositions::currentPositionIsTakenForAStore_data()
{
    QTest::addColumn<double>("altitude");
    QTest::addColumn<double>("stored");
    QTest::newRow("known") << 12.5 << 12.5;
    QTest::newRow("not known") << std::numeric_limits<double>::quiet_NaN() << 0.0;
    QTest::newRow("infinite") << -std::numeric_limits<double>::infinity() << 0.0;
    QTest::newRow("too large") << 1e300 << 0.0;
}

void TestPositions::currentPositionIsTakenForAStore()
{
    QFETCH(double, altitude);
    QFETCH(double, stored);
    ShopDriver shop(oneStore, gpsOn);
    shop.press("shopsButton");
    shop.press("newButton");
    shop.type("Fish");
    source()->deliver(59.913822, 10.738741, altitude);
    // No button of the page calls this yet.
    QVERIFY(QMetaObject::invokeMethod(shop.window.get(), "fixCurrentGps"));
    QCOMPARE(shop.buttonText("coordinatesButton"), "coords is set (update...)");
    QCOMPARE(source()->requests, 0);
    shop.press("saveButton");
    QCOMPARE(shop.db->rows("select latitude, longitude, altitude from gpscoord where id = 2"),
             (QList<QVariantList>{{59.913822, 10.738741, stored}}));
    const QSettings settings("Vantor", "Trolleo");
    QCOMPARE(settings.value("LastLatitude").toFloat(), 59.913822F);
    QCOMPARE(settings.value("LastLongitude").toFloat(), 10.738741F);
}

STOPPABLE_TEST_MAIN(TestPositions)
#include "tst_positions.moc"
