// SPDX-License-Identifier: MIT
// Measures the time of one position while tracking runs and the tracked stores are shown, from the
// source's signal to the painted list, against computing the distances, one sort and one text per
// row alone. While another page is shown, only against computing the distances.
#include <algorithm>
#include <array>
#include <vector>

#include <QGeoCoordinate>
#include <QLoggingCategory>
#include <QtTest>

#include "base/pages.h"
#include "bench/report.h"
#include "tests/support/records.h"
#include "tests/support/shopdriver.h"
#include "tests/support/testpositionplugin.h"

Q_IMPORT_PLUGIN(TestPositionPlugin)

namespace {

constexpr double goal = 1.5;
constexpr double hiddenGoal = 0.3;

struct Place
{
    float latitude;
    float longitude;
    float distance;
};

/// Returns stores on a grid, about a hundred metres apart and at least 100 km from the walk.
std::vector<Place> places(int count)
{
    std::vector<Place> result;
    result.reserve(static_cast<std::size_t>(count));
    for (int index = 0; index < count; ++index) {
        const int row = index / 100;
        const int column = index * 37 % 100;
        result.push_back({.latitude = 11 + static_cast<float>(row) * 0.001F,
                          .longitude = 20 + static_cast<float>(column) * 0.001F,
                          .distance = 0});
    }
    return result;
}

double latitudeAt(int step)
{
    return 10 + step % 1000 * 1e-5;
}

Records recordsOf(int count)
{
    Records records;
    int id = 0;
    for (const Place &place : places(count)) {
        records.store(QString("Store %1").arg(++id))
            .at(double(place.latitude), double(place.longitude))
            .openList("List");
    }
    return records;
}

void measure(int count)
{
    const int positions = std::max(1, 5000 / count);
    int step = 0;
    std::vector<Place> stores = places(count);
    const auto computeDistances = [&stores, &step] {
        const QGeoCoordinate here(static_cast<float>(latitudeAt(++step)), 20.5F);
        for (Place &store : stores)
            store.distance = static_cast<float>(
                here.distanceTo(QGeoCoordinate(store.latitude, store.longitude)));
    };
    const auto bareDistances = [&computeDistances, positions] {
        for (int position = 0; position < positions; ++position)
            computeDistances();
    };
    const auto bareLoop = [&stores, &computeDistances, positions] {
        for (int position = 0; position < positions; ++position) {
            computeDistances();
            std::ranges::sort(stores, {}, &Place::distance);
            QStringList texts;
            for (const Place &store : stores)
                texts << QString::number(double(store.distance), 'f', 6);
        }
    };

    const ShopDriver shop(recordsOf(count), {{"GpsEnabled", true}});
    shop.press("reminderButton");
    shop.press("startButton");
    TestPositionSource::instance()->deliver(latitudeAt(0), 20.5);
    shop.press("viewButton");
    TestPositionSource::instance()->deliver(latitudeAt(0), 20.5);
    if (shop.page() != PageTrackedList || shop.list()->count() != count)
        qFatal("the tracked stores do not show");
    const auto window = [&step, positions] {
        for (int position = 0; position < positions; ++position) {
            TestPositionSource::instance()->deliver(latitudeAt(++step), 20.5);
            QCoreApplication::processEvents();
        }
    };
    Bench::compare("a position, tracked list showing", count, {window}, {bareLoop}, goal, 9,
                   positions);
    shop.press("okButton");
    Bench::compare("a position, another page showing", count, {window}, {bareDistances}, hiddenGoal,
                   9, positions);
}

} // namespace

/// Usage: bench_tracking [number of stores]; without a number it prints how the costs grow.
int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    QLoggingCategory::setFilterRules("*.debug=false");
    if (argc > 1) {
        measure(QByteArray(argv[1]).toInt());
        return 0;
    }
    for (const int count : {100, 1000, 10000, 100000})
        measure(count);
    return 0;
}
