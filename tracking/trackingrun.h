// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <utility>

#include <QList>

#include "tracking/trackedstores.h"

/// What the user sees when a position arrives, as far as tracking distinguishes it.
enum class Sight {
    OtherPage,
    TrackedList,
    TrackedMap,
    StorePage, ///< shows the distance to one store
};

/// What the window must do for a position.
struct PositionEffect
{
    bool refreshesList = false;
    bool centersMap = false;
    bool rings = false;
    bool refreshesStore = false;

    bool operator==(const PositionEffect &) const = default;
};

/// A run of tracking: the criteria, the tracked stores, and the effect of a position on them. It
/// does not depend on the window.
class TrackingRun
{
public:
    /// Returns what the window must do for a position in degrees while the user sees `seen`.
    /// Updates the distances, except while the tracked map is shown. If no store is near and the
    /// distances are not seen, they are computed later, when something needs them.
    PositionEffect take(float latitude, float longitude, Sight seen);

    /// Computes the distance of every store from a position in degrees and sorts the nearest first.
    /// Does nothing for the position that was measured last.
    void measure(float latitude, float longitude);

    /// Returns the tracked store that is nearest to the position taken last. There must be one.
    const TrackedStore &nearest();

    /// Replaces the tracked stores. They may be in any order.
    void watch(const QList<TrackedStore> &stores);

    bool trackingActive = false;
    /// The criteria when the stores were queried.
    int trackStoreId = 0;
    int trackCategoryId = 0;
    /// Sorted by the distance from the last measured position, nearest first. After take(), measure
    /// or ask for nearest() before using them.
    QList<TrackedStore> trackedStores;

private:
    using Point = std::pair<float, float>; // latitude and longitude in degrees

    void measureLate();

    /// The position for which `trackedStores` has the distances.
    std::optional<Point> measured;
    /// A later position for which it should have them.
    std::optional<Point> late;
};
