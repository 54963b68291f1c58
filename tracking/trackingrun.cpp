// SPDX-License-Identifier: MIT
#include "tracking/trackingrun.h"

PositionEffect TrackingRun::take(float latitude, float longitude, Sight seen)
{
    if (seen != Sight::TrackedMap)
        measure(latitude, longitude);
    const bool rings = TrackedStores::isNearestWithinReach(trackedStores);
    return {
        .refreshesList = seen == Sight::TrackedList,
        .centersMap = seen == Sight::TrackedMap,
        .rings = rings,
        .refreshesStore = seen == Sight::StorePage && !rings,
    };
}

void TrackingRun::measure(float latitude, float longitude)
{
    if (isMeasured && latitude == measuredLatitude && longitude == measuredLongitude)
        return;
    TrackedStores::refreshDistances(trackedStores, latitude, longitude);
    isMeasured = true;
    measuredLatitude = latitude;
    measuredLongitude = longitude;
}

void TrackingRun::watch(const QList<TrackedStore> &stores)
{
    trackedStores = stores;
    isMeasured = false;
}
