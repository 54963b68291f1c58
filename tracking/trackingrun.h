// SPDX-License-Identifier: MIT
#pragma once

#include <QList>

#include "tracking/trackedstores.h"

/// What the person sees when a position arrives, as far as tracking minds.
enum class Sight {
    OtherPage,
    TrackedList,
    TrackedMap,
    StorePage, ///< which tells the distance to one store
};

/// What a position asks of the window.
struct PositionEffect
{
    bool refreshesList = false;
    bool centersMap = false;
    bool rings = false;
    bool refreshesStore = false;

    bool operator==(const PositionEffect &) const = default;
};

/// A run of tracking: what was chosen, the stores that are watched, and what a position means for
/// them. It knows no window.
class TrackingRun
{
public:
    /// What a position in degrees asks of a window in which the person sees `seen`. It measures the
    /// distances anew, but for the map, under which they stay as they were.
    PositionEffect take(float latitude, float longitude, Sight seen);

    /// Lets every store have its distance from a position in degrees, and the nearest be the first.
    /// Takes no time for the position that was measured last.
    void measure(float latitude, float longitude);

    /// Watches other stores from now on, in any order.
    void watch(const QList<TrackedStore> &stores);

    bool trackingActive = false;
    /// What was chosen when the stores were looked for.
    int trackStoreId = 0;
    int trackCategoryId = 0;
    /// The nearest first, as of the last position that was measured.
    QList<TrackedStore> trackedStores;

private:
    bool isMeasured = false;
    // Degrees.
    float measuredLatitude = 0;
    float measuredLongitude = 0;
};
