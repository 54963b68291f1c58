// SPDX-License-Identifier: MIT
#include "tracking/trackingrun.h"

#include <utility>

PositionEffect TrackingRun::take(float latitude, float longitude, Sight seen)
{
    if (seen == Sight::TrackedMap)
        measureLate();
    else if (seen == Sight::TrackedList ||
             TrackedStores::isAnyWithinReach(trackedStores, latitude, longitude))
        measure(latitude, longitude);
    else
        late = {latitude, longitude}; // nobody sees the distances
    const bool rings = !late && TrackedStores::isNearestWithinReach(trackedStores);
    return {
        .refreshesList = seen == Sight::TrackedList,
        .centersMap = seen == Sight::TrackedMap,
        .rings = rings,
        .refreshesStore = seen == Sight::StorePage && !rings,
    };
}

void TrackingRun::measure(float latitude, float longitude)
{
    const Point point{latitude, longitude};
    late.reset();
    if (measured == point)
        return;
    TrackedStores::refreshDistances(trackedStores, latitude, longitude);
    measured = point;
}

void TrackingRun::measureLate()
{
    if (const auto point = std::exchange(late, std::nullopt))
        measure(point->first, point->second);
}

const TrackedStore &TrackingRun::nearest()
{
    measureLate();
    return trackedStores.first();
}

void TrackingRun::watch(const QList<TrackedStore> &stores)
{
    trackedStores = stores;
    measured.reset();
    late.reset();
}
