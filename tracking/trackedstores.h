// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QSqlQuery>
#include <QString>

/// A store that is tracked.
struct TrackedStore
{
    QString name;
    /// One of the open lists of the store.
    QString listName;
    int storeId = 0;
    int listId = 0;
    /// In degrees.
    float latitude = 0;
    float longitude = 0;
    /// Metres from the last position; infinite if the coordinates are not valid.
    float distance = 0;
};

namespace TrackedStores {

/// The reminder rings for a store nearer than this.
inline constexpr float reminderMeters = 250.0F;

/// Creates an entry from the current row of `query`. `storeId` is not read from it.
TrackedStore entry(const QSqlQuery &query, int storeId);

/// Creates an entry for each store in `query`, from the first row of the store. The rows of a store
/// must follow each other. Returns an empty list for a failed statement.
QList<TrackedStore> entries(QSqlQuery &query);

/// Computes the distance of each store from a point in degrees and sorts the nearest first.
void refreshDistances(QList<TrackedStore> &stores, float latitude, float longitude);

/// Returns whether any of `stores`, which need not be sorted, is near enough to ring from a point
/// in degrees. Most stores are rejected by their latitude alone.
bool isAnyWithinReach(const QList<TrackedStore> &stores, float latitude, float longitude);

/// Returns whether the nearest store is near enough to ring. `stores` must be sorted and may be
/// empty.
bool isNearestWithinReach(const QList<TrackedStore> &stores);

} // namespace TrackedStores
