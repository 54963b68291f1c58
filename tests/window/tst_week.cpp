// SPDX-License-Identifier: MIT
#include <malloc.h>
#include <unistd.h>

#include <array>

#include <QApplication>
#include <QFile>
#include <QGeoCoordinate>
#include <QtPlugin>
#include <QtTest>

#include "base/pages.h"
#include "map/mapswidget.h"
#include "tests/support/randomrun.h"
#include "tests/support/records.h"
#include "tests/support/shopdriver.h"
#include "tests/support/testpositionplugin.h"

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
/// memory does not grow.
class TestWeek : public QObject
{
    Q_OBJECT

private slots:
    void everyReminderComes();

private:
    void view(ShopDriver &shop);
    void answer(ShopDriver &shop);

    QRandomGenerator random;
    /// The tracked stores.
    QList<Place> tracked;
};

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
    const int positions = RandomRun::count("TROLLEO_TEST_POSITIONS", 4000);
    random.seed(RandomRun::seed());

    ShopDriver shop(database(), {{"GpsEnabled", true}});
    shop.press("reminderButton");
    shop.press("startButton");
    tracked = places();
    int reminders = 0;
    double latitude = 10;
    double step = 0.0004; // 44 m
    double settled = 0;
    for (int position = 0; position < positions; ++position) {
        latitude += step;
        if (latitude < 10 || latitude > 10.12)
            step = -step;
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
    QVERIFY2(growth < 1.5, qPrintable(QString::number(growth)));
#endif
}

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    RandomRun::takeYourTime("TROLLEO_TEST_POSITIONS");
    Stoppable<TestWeek> test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_week.moc"
