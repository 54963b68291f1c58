// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QSqlQuery>
#include <QString>

/// A store that tracking watches.
struct TrackedStore
{
    QString name;
    /// One of its lists that are still open.
    QString listName;
    int storeId = 0;
    int listId = 0;
    /// Degrees.
    float latitude = 0;
    float longitude = 0;
    /// Metres from the last position; infinite where the coordinates are no place on earth.
    float distance = 0;
};

namespace TrackedStores {

/// A store nearer than this rings.
inline constexpr float reminderMeters = 250.0F;

/// The entry that the row of `query` makes; `storeId` is not read from it.
TrackedStore entry(const QSqlQuery &query, int storeId);

/// An entry for each store of the rows of `query`, made from the store's first row. The rows of a
/// store follow each other. Empty for a statement that failed.
QList<TrackedStore> entries(QSqlQuery &query);

/// Computes the distance of each of `stores` from a point in degrees and puts the nearest first.
void refreshDistances(QList<TrackedStore> &stores, float latitude, float longitude);

/// Whether the nearest store is near enough to ring. `stores` are in order and may be empty.
bool isNearestWithinReach(const QList<TrackedStore> &stores);

} // namespace TrackedStores
