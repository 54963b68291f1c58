// SPDX-License-Identifier: MIT
#include "bench/report.h"

#include <algorithm>
#include <cstdio>
#include <vector>

#include <QCoreApplication>
#include <QElapsedTimer>

namespace {

double roundOf(const Bench::Work &work)
{
    work.prepare();
    // Work left over from before must not count for this round.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
    QElapsedTimer clock;
    clock.start();
    work.run();
    return static_cast<double>(clock.nsecsElapsed()) / 1e6;
}

double median(std::vector<double> times)
{
    std::ranges::sort(times);
    return times.at(times.size() / 2);
}

void print(const char *what, int scale, double ours, double floor, double goal)
{
    std::printf("%-34s %8d %12.4f %12.4f %8.2f %8.2f\n", what, scale, ours, floor, ours / floor,
                goal);
    std::fflush(stdout); // NOLINT(cert-err33-c): what is not printed is seen to be missing
}

} // namespace

void Bench::compare(const char *what, int scale, const Work &ours, const Work &floor, double goal,
                    int rounds, int times)
{
    std::vector<double> oursTimes;
    std::vector<double> floorTimes;
    oursTimes.reserve(static_cast<std::size_t>(rounds));
    floorTimes.reserve(static_cast<std::size_t>(rounds));
    for (int round = 0; round < rounds; ++round) {
        oursTimes.push_back(roundOf(ours) / times);
        floorTimes.push_back(roundOf(floor) / times);
    }
    print(what, scale, median(oursTimes), median(floorTimes), goal);
}
