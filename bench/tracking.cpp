// SPDX-License-Identifier: MIT
// The time that one position takes while tracking runs, from the source's signal to the window's
// rest, against a bare loop of the same distances and a sort. Usage: bench_tracking, on the
// platform "offscreen".
#include <algorithm>
#include <array>
#include <cstdio>
#include <vector>

#include <QElapsedTimer>
#include <QGeoCoordinate>
#include <QLoggingCategory>
#include <QtTest>

#include "app/pages.h"
#include "tests/support/shopdriver.h"
#include "tests/support/testpositionplugin.h"

Q_IMPORT_PLUGIN(TestPositionPlugin)

namespace {

constexpr int rounds = 5;

struct Place
{
    float latitude;
    float longitude;
    float distance;
};

/// Stores on a grid, about a hundred metres apart, at least 100 km from where the walk is.
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

/// Microseconds for one call of `position`, the best of some rounds.
template <typename Position>
double microseconds(int positions, const Position &position)
{
    double best = 1e12;
    for (int round = 0; round < rounds; ++round) {
        QElapsedTimer clock;
        clock.start();
        for (int step = 0; step < positions; ++step)
            position(step);
        best = std::min(best, static_cast<double>(clock.nsecsElapsed()) / 1000 / positions);
    }
    return best;
}

double bareLoop(int count, int positions)
{
    std::vector<Place> stores = places(count);
    return microseconds(positions, [&stores](int step) {
        const QGeoCoordinate here(static_cast<float>(latitudeAt(step)), 20.5F);
        for (Place &store : stores)
            store.distance = static_cast<float>(
                here.distanceTo(QGeoCoordinate(store.latitude, store.longitude)));
        std::ranges::sort(stores, {}, &Place::distance);
    });
}

double throughTheWindow(int count, int positions)
{
    QStringList statements{"pragma synchronous = off", "begin"};
    int id = 0;
    for (const Place &store : places(count)) {
        ++id;
        statements << QString("insert into magazin values (%1, 'Store %1', null, null)").arg(id)
                   << QString("insert into gpscoord values (%1, %2, %3, 0)")
                          .arg(id)
                          .arg(double(store.latitude), 0, 'g', 9)
                          .arg(double(store.longitude), 0, 'g', 9)
                   << QString("insert into shoplist values (%1, 'List', %1, 1)").arg(id);
    }
    statements << "commit";
    ShopDriver shop(statements, {{"GpsEnabled", true}});
    shop.press("reminderButton");
    shop.press("startButton");
    return microseconds(positions, [](int step) {
        TestPositionSource::instance()->deliver(latitudeAt(step), 20.5);
        QCoreApplication::processEvents();
    });
}

} // namespace

int main(int argc, char **argv)
{
    constexpr std::array counts{10, 1000, 10000};
    const auto positions = [](int count) {
        return count >= 10000 ? 50 : 500;
    };
    // Before the toolkit has drawn anything: its vector code can leave the processor in a state in
    // which a loop that calls nothing else runs many times slower.
    std::array<double, counts.size()> bare{};
    std::ranges::transform(counts, bare.begin(),
                           [&](int count) { return bareLoop(count, positions(count)); });

    const QApplication application(argc, argv);
    QLoggingCategory::setFilterRules("*.debug=false");
    std::printf("%8s %22s %22s %8s\n", "stores", "window, us/position", "bare loop, us/position",
                "ratio");
    for (std::size_t index = 0; index < counts.size(); ++index) {
        const double window = throughTheWindow(counts[index], positions(counts[index]));
        std::printf("%8d %22.1f %22.1f %8.2f\n", counts[index], window, bare[index],
                    window / bare[index]);
    }
    return 0;
}
