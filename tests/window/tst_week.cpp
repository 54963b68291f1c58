// SPDX-License-Identifier: MIT
#include <malloc.h>
#include <unistd.h>

#include <algorithm>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QGeoCoordinate>
#include <QtPlugin>
#include <QtTest>

#include "base/pages.h"
#include "map/mapswidget.h"
#include "platform/alarmsound.h"
#include "tests/support/emulator.h"
#include "tests/support/randomrun.h"
#include "tests/support/records.h"
#include "tests/support/shopdriver.h"
#include "tests/support/testpositionplugin.h"
#include "tests/support/tilehost.h"

Q_IMPORT_PLUGIN(TestPositionPlugin)

namespace {

struct Place
{
    QString name;
    QGeoCoordinate coordinate;
};

/// Returns the resident memory of this process in MiB, without memory that is already free.
double memory()
{
    malloc_trim(0);
    QFile file("/proc/self/statm");
    if (!file.open(QIODevice::ReadOnly))
        stopTest("the kernel tells no memory");
    return file.readAll().split(' ').at(1).toDouble() * double(sysconf(_SC_PAGESIZE)) / 1024 / 1024;
}

/// Returns stores in a row, 1.5 km apart, so that only one is near at a time.
QList<Place> places()
{
    QList<Place> result;
    for (int store = 1; store <= 8; ++store)
        result << Place{QString("Store %1").arg(store), QGeoCoordinate(10 + store * 0.0135, 20)};
    return result;
}

/// What the process uses.
struct Usage
{
    static Usage measured()
    {
        qsizetype objects = qApp->findChildren<QObject *>().size();
        // The window keeps the alarm sounds of earlier options until its end.
        for (const QWidget *widget : QApplication::topLevelWidgets())
            objects += 1 + widget->findChildren<QObject *>().size() -
                       widget->findChildren<AlarmSound *>().size();
        return {entries("/proc/self/task"), entries("/proc/self/fd"), objects, memory()};
    }
    static qsizetype entries(const QString &folder)
    {
        return QDir(folder)
            .entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot)
            .size();
    }

    qsizetype threads = 0;
    qsizetype descriptors = 0;
    qsizetype objects = 0;
    double mebibytes = 0;
};

/// The number of pages that are visited while tracking runs.
constexpr int otherPages = 4;

Records database()
{
    Records records;
    for (const Place &place : places()) {
        records.store(place.name)
            .at(place.coordinate.latitude(), place.coordinate.longitude())
            .openList("List of " + place.name)
            .good("Good of " + place.name);
    }
    return records;
}

} // namespace

/// Walks for a week with tracking on: every store that comes near rings, nothing else does, and
/// nothing grows.
class TestWeek : public QObject
{
    Q_OBJECT

private slots:
    void everyReminderComes();
    void nothingGrowsByTheHour();

private:
    void goOn();
    void view(ShopDriver &shop);
    void answer(ShopDriver &shop);
    void visitAnotherPage(ShopDriver &shop, int which);
    void walk(ShopDriver &shop, int positions);

    QRandomGenerator random;
    /// The tracked stores.
    QList<Place> tracked;
    double latitude = 10;
    double step = 0.0004; // 44 m
    bool isRussian = false;
};

/// Goes a step along the row of stores, and turns at its ends.
void TestWeek::goOn()
{
    latitude += step;
    if (latitude < 10 || latitude > 10.12)
        step = -step;
}

/// Changes the page, among those that the user may see while tracking runs.
void TestWeek::view(ShopDriver &shop)
{
    if (shop.page() == PageTracking) {
        shop.pressByScreenReader("viewButton");
        if (shop.page() == PageWaiting) // ended by the next position
            return;
        shop.pressByScreenReader(random.bounded(2) == 0 ? "mapViewButton" : "listViewButton");
    } else if (shop.page() == PageTrackedList) {
        shop.pressByScreenReader("backButton");
    }
}

void TestWeek::answer(ShopDriver &shop)
{
    switch (random.bounded(3)) {
    case 0:
        shop.pressByScreenReader("stopButton");
        tracked.clear();
        break;
    case 1:
        // To the goods and back; the last good is not bought, so the list stays open.
        shop.pressByScreenReader("startShoppingButton");
        QCOMPARE(shop.page(), PageDoShopping);
        shop.pressByScreenReader("okButton");
        shop.pressByScreenReader("backButton");
        shop.pressByScreenReader("reminderButton");
        tracked.clear();
        break;
    default:
        shop.pressByScreenReader("nextButton");
        tracked.removeFirst();
    }
    QCOMPARE(shop.page(), PageTracking);
    if (tracked.isEmpty()) {
        shop.pressByScreenReader("startButton");
        tracked = places();
    }
}

void TestWeek::everyReminderComes()
{
    const int positions = RandomRun::count("TROLLEO_TEST_POSITIONS", 1500);
    random.seed(RandomRun::seed());

    ShopDriver shop(database(), {{"GpsEnabled", true}});
    shop.press("reminderButton");
    shop.press("startButton");
    tracked = places();
    int reminders = 0;
    double settled = 0;
    for (int position = 0; position < positions; ++position) {
        goOn();
        if (random.bounded(20) == 0)
            view(shop);
        // The map shows the position; the distances are not updated meanwhile.
        const bool showsMap = shop.page() == PageTrackedList && shop.map()->isVisible();
        const QGeoCoordinate here(latitude, 20);
        std::ranges::stable_sort(tracked, {}, [&here](const Place &place) {
            return float(here.distanceTo(place.coordinate));
        });
        const bool isNear = here.distanceTo(tracked.first().coordinate) < 250;
        TestPositionSource::instance()->deliver(latitude, 20);
        TestPositionSource::instance()->calls.clear(); // otherwise they accumulate
        if (isNear && !showsMap) {
            QCOMPARE(shop.page(), PageReminder);
            QVERIFY(shop.labelText("reminderStore").startsWith(tracked.first().name + " (at "));
            ++reminders;
            answer(shop);
            if (QTest::currentTestFailed())
                return;
        } else {
            QVERIFY(shop.page() != PageReminder);
        }
        // The program's event loop does this, that of a test does not.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        if (position == positions / 4)
            settled = memory();
        if (position % 20000 == 19999)
            qInfo("%d positions, %d reminders, %.1f MiB", position + 1, reminders, memory());
    }
    const double growth = memory() - settled;
    qInfo("%d reminders, memory %.1f MiB after a quarter, %+.2f MiB since", reminders, settled,
          growth);
    QVERIFY(reminders > positions / 200);
#ifndef __SANITIZE_ADDRESS__ // AddressSanitizer keeps freed memory
    // An emulator keeps the code that it has translated.
    const double allowed = Emulator::isUsed() ? 8 : 1.5;
    QVERIFY2(growth < allowed, qPrintable(QString::number(growth)));
#endif
}

/// Leaves the tracking page for one that has nothing to do with tracking, and returns.
void TestWeek::visitAnotherPage(ShopDriver &shop, int which)
{
    shop.pressByScreenReader("backButton");
    QCOMPARE(shop.page(), PageMain);
    switch (which) {
    case 0:
        shop.pressByScreenReader("shoppingButton");
        shop.pressByScreenReader("goodsButton");
        break;
    case 1:
        isRussian = !isRussian;
        shop.changeLanguage(isRussian ? "russianRadio" : "englishRadio");
        break;
    case 2:
        shop.pressByScreenReader("optionsButton");
        shop.pressByScreenReader("okButton");
        break;
    default:
        shop.pressByScreenReader("shopsButton");
        shop.pressByScreenReader("storesButton");
        shop.tap(random.bounded(4));
        if (shop.page() == PageStoreList) // one tap chooses the store that was edited last
            shop.pressByScreenReader("selectButton");
        shop.pressByScreenReader("editButton");
        shop.pressByScreenReader("coordinatesButton");
        shop.pressByScreenReader("mapViewButton");
        QTest::qWait(20); // for some tiles
    }
    while (shop.page() != PageMain)
        shop.pressByScreenReader("backButton");
    shop.pressByScreenReader("reminderButton");
}

/// Receives positions, and answers all reminders.
void TestWeek::walk(ShopDriver &shop, int positions)
{
    for (int position = 0; position < positions && !QTest::currentTestFailed(); ++position) {
        goOn();
        TestPositionSource::instance()->deliver(latitude, 20);
        TestPositionSource::instance()->calls.clear();
        if (shop.page() == PageReminder)
            answer(shop);
        else if (random.bounded(10) == 0)
            view(shop);
        else if (shop.page() == PageTracking && random.bounded(20) == 0)
            visitAnotherPage(shop, random.bounded(otherPages));
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

void TestWeek::nothingGrowsByTheHour()
{
    // Without the variable the hours are short.
    const bool isLong = qEnvironmentVariableIsSet("TROLLEO_TEST_HOURS");
    const int hours = RandomRun::count("TROLLEO_TEST_HOURS", 3);
    const int positionsInAnHour = isLong ? 1200 : 100;
    random.seed(RandomRun::seed());
    const TileHost host;
    qputenv("TROLLEO_TILE_SERVER", host.address());

    ShopDriver shop(database(), {{"GpsEnabled", true}});
    shop.press("reminderButton");
    shop.press("startButton");
    tracked = places();
    // What comes with the first use of a page is no growth.
    for (int which = 0; which < otherPages; ++which)
        visitAnotherPage(shop, which);
    Usage first;
    double leastEarly = 0;
    double leastLate = 0;
    for (int hour = 1; hour <= hours; ++hour) {
        walk(shop, positionsInAnHour);
        while (shop.page() != PageTracking && !QTest::currentTestFailed()) {
            if (shop.page() == PageWaiting || shop.page() == PageReminder)
                walk(shop, 1);
            else
                shop.pressByScreenReader("backButton");
        }
        QVERIFY(!QTest::currentTestFailed());
        QTest::qWait(500); // transfers and animations end
        const Usage now = Usage::measured();
        qInfo("hour %d: %d threads, %d descriptors, %d objects, %.1f MiB", hour, int(now.threads),
              int(now.descriptors), int(now.objects), now.mebibytes);
        if (hour == 1)
            first = now;
        // Idle threads of pools, and connections that are kept alive. In a whole hour everything
        // happens about sixty times.
        QVERIFY(now.threads <= first.threads + 6);
        QVERIFY(now.descriptors <= first.descriptors + 15);
        QVERIFY(now.objects <= first.objects + 20);
        // The maps keep some tiles around their last view, so single hours differ by megabytes.
        double &least = 2 * hour <= hours ? leastEarly : leastLate;
        least = least > 0 ? std::min(least, now.mebibytes) : now.mebibytes;
    }
#ifndef __SANITIZE_ADDRESS__
    QVERIFY2(!isLong || hours < 2 || leastLate < leastEarly + 8,
             qPrintable(QString::number(leastLate)));
#endif
    QVERIFY(host.paths.size() > hours);
}

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    RandomRun::takeYourTime("TROLLEO_TEST_POSITIONS");
    RandomRun::takeYourTime("TROLLEO_TEST_HOURS");
    Stoppable<TestWeek> test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_week.moc"
