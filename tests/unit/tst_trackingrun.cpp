// SPDX-License-Identifier: MIT
#include <limits>

#include <QGeoCoordinate>
#include <QtTest>

#include "tracking/trackingrun.h"

Q_DECLARE_METATYPE(Sight)

/// Degrees of latitude, which have the same length everywhere.
static constexpr float here = 10;
static constexpr float near = 10.002F; // 222 m
static constexpr float far = 10.003F;  // 334 m
static constexpr float meridian = 20;

class TestTrackingRun : public QObject
{
    Q_OBJECT

private slots:
    void effectOfAPosition_data();
    void effectOfAPosition();
    void nearestIsFirst();
    void storesAreRejectedByDistanceOnly_data();
    void storesAreRejectedByDistanceOnly();
    void invalidCoordinatesAreNotNear();
    void mapTakesTheDistancesOfTheLastPosition();
    void distancesStayUnderTheMap();
    void otherStoresAreMeasured();
    void nothingToWatch();
};

static TrackedStore storeAt(int id, float latitude)
{
    TrackedStore store;
    store.storeId = id;
    store.latitude = latitude;
    store.longitude = meridian;
    return store;
}

void TestTrackingRun::effectOfAPosition_data()
{
    QTest::addColumn<Sight>("seen");
    QTest::addColumn<float>("store");
    QTest::addColumn<bool>("refreshesList");
    QTest::addColumn<bool>("centersMap");
    QTest::addColumn<bool>("rings");
    QTest::addColumn<bool>("refreshesStore");
    QTest::newRow("other page, far") << Sight::OtherPage << far << false << false << false << false;
    QTest::newRow("other page, near")
        << Sight::OtherPage << near << false << false << true << false;
    QTest::newRow("list, far") << Sight::TrackedList << far << true << false << false << false;
    QTest::newRow("list, near") << Sight::TrackedList << near << true << false << true << false;
    QTest::newRow("map, far") << Sight::TrackedMap << far << false << true << false << false;
    QTest::newRow("store, far") << Sight::StorePage << far << false << false << false << true;
    // The reminder replaces the page, so the distance is not visible.
    QTest::newRow("store, near") << Sight::StorePage << near << false << false << true << false;
}

void TestTrackingRun::effectOfAPosition()
{
    QFETCH(Sight, seen);
    QFETCH(float, store);
    QFETCH(bool, refreshesList);
    QFETCH(bool, centersMap);
    QFETCH(bool, rings);
    QFETCH(bool, refreshesStore);
    TrackingRun run;
    run.watch({storeAt(1, store)});
    run.measure(store + 1, meridian); // far from here
    const PositionEffect effect = run.take(here, meridian, seen);
    QCOMPARE(effect.refreshesList, refreshesList);
    QCOMPARE(effect.centersMap, centersMap);
    QCOMPARE(effect.rings, rings);
    QCOMPARE(effect.refreshesStore, refreshesStore);
}

void TestTrackingRun::nearestIsFirst()
{
    TrackingRun run;
    run.watch({storeAt(1, far), storeAt(2, near)});
    run.measure(here, meridian);
    QCOMPARE(run.trackedStores.first().storeId, 2);
    QVERIFY(run.take(here + 1, meridian, Sight::OtherPage) == PositionEffect());
    QCOMPARE(run.nearest().storeId, 1);
}

/// A store at the threshold, in all directions, rings exactly when its distance says so.
void TestTrackingRun::storesAreRejectedByDistanceOnly_data()
{
    QTest::addColumn<float>("latitude");
    for (const float latitude : {0.0F, 49.5F, -66.0F, 89.9F})
        QTest::addRow("%.1f", double(latitude)) << latitude;
}

void TestTrackingRun::storesAreRejectedByDistanceOnly()
{
    QFETCH(float, latitude);
    const QGeoCoordinate from(latitude, meridian);
    int rings = 0;
    for (int azimuth = 0; azimuth < 360; azimuth += 5) {
        for (const double meters : {1.0, 245.0, 249.9, 250.1, 255.0, 400.0}) {
            const QGeoCoordinate place = from.atDistanceAndAzimuth(meters, azimuth);
            TrackedStore store;
            store.latitude = static_cast<float>(place.latitude());
            store.longitude = static_cast<float>(place.longitude());
            QList<TrackedStore> stores{store};
            TrackedStores::refreshDistances(stores, latitude, meridian);
            const bool isNear = stores.first().distance < TrackedStores::reminderMeters;
            QCOMPARE(TrackedStores::isAnyWithinReach(stores, latitude, meridian), isNear);
            rings += isNear ? 1 : 0;
        }
    }
    QVERIFY(rings > 72);
}

void TestTrackingRun::invalidCoordinatesAreNotNear()
{
    TrackingRun run;
    run.watch({storeAt(1, std::numeric_limits<float>::quiet_NaN()), storeAt(2, 999)});
    QVERIFY(!run.take(here, meridian, Sight::OtherPage).rings);
    QVERIFY(!run.take(here, meridian, Sight::TrackedList).rings);
}

/// What a position decides does not depend on whether the distances were seen before.
void TestTrackingRun::mapTakesTheDistancesOfTheLastPosition()
{
    TrackingRun run;
    run.watch({storeAt(1, near)});
    QVERIFY(run.take(here, meridian, Sight::OtherPage).rings);
    QVERIFY(!run.take(here + 1, meridian, Sight::OtherPage).rings);
    QVERIFY(!run.take(here, meridian, Sight::TrackedMap).rings);
}

void TestTrackingRun::distancesStayUnderTheMap()
{
    TrackingRun run;
    run.watch({storeAt(1, near)});
    QVERIFY(run.take(here, meridian, Sight::OtherPage).rings);
    const float distance = run.trackedStores.first().distance;
    // The decision to ring does not change either.
    QVERIFY(run.take(here + 1, meridian, Sight::TrackedMap).rings);
    QCOMPARE(run.trackedStores.first().distance, distance);
    QVERIFY(!run.take(here + 1, meridian, Sight::TrackedList).rings);
}

void TestTrackingRun::otherStoresAreMeasured()
{
    // Exactly where the other stores were measured.
    TrackingRun run;
    run.watch({storeAt(1, far)});
    QVERIFY(!run.take(here, meridian, Sight::TrackedList).rings);
    run.watch({storeAt(2, far), storeAt(3, near)});
    QVERIFY(run.take(here, meridian, Sight::OtherPage).rings);
    QCOMPARE(run.trackedStores.first().storeId, 3);
}

void TestTrackingRun::nothingToWatch()
{
    TrackingRun run;
    QVERIFY(run.take(here, meridian, Sight::OtherPage) == PositionEffect());
    run.measure(here, meridian);
    QVERIFY(run.trackedStores.isEmpty());
}

QTEST_GUILESS_MAIN(TestTrackingRun)
#include "tst_trackingrun.moc"
