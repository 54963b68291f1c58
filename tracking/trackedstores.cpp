// SPDX-License-Identifier: MIT
#include "tracking/trackedstores.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <QGeoCoordinate>
#include <QVariant>

using namespace Qt::StringLiterals;

namespace {

/// Returns the distance in metres, or infinity if the coordinates of `store` are invalid.
float distanceTo(const TrackedStore &store, const QGeoCoordinate &here)
{
    const QGeoCoordinate place(store.latitude, store.longitude);
    // For invalid coordinates Qt returns the distance 0, which would ring.
    return place.isValid() ? static_cast<float>(here.distanceTo(place))
                           : std::numeric_limits<float>::infinity();
}

bool isWithinReach(float distance)
{
    return distance < TrackedStores::reminderMeters;
}

} // namespace

TrackedStore TrackedStores::entry(const QSqlQuery &query, int storeId)
{
    return {
        .name = query.value(u"name"_s).toString(),
        .listName = query.value(u"sname"_s).toString(),
        .storeId = storeId,
        .listId = query.value(u"sid"_s).toInt(),
        .latitude = query.value(u"latitude"_s).toFloat(),
        .longitude = query.value(u"longitude"_s).toFloat(),
    };
}

QList<TrackedStore> TrackedStores::entries(QSqlQuery &query)
{
    QList<TrackedStore> stores;
    int previousId = 0;
    while (query.next()) {
        const int id = query.value(u"id"_s).toInt();
        if (id != previousId)
            stores << entry(query, id);
        previousId = id;
    }
    return stores;
}

void TrackedStores::refreshDistances(QList<TrackedStore> &stores, float latitude, float longitude)
{
    const QGeoCoordinate here(latitude, longitude);
    for (TrackedStore &store : stores)
        store.distance = distanceTo(store, here);
    // A stable sort, so that equally distant stores keep their order.
    std::ranges::stable_sort(stores, {}, &TrackedStore::distance);
}

bool TrackedStores::isAnyWithinReach(const QList<TrackedStore> &stores, float latitude,
                                     float longitude)
{
    // A degree of latitude is 111.2 km, and no way between two latitudes is shorter than along a
    // meridian. The threshold is 0.00225 degrees.
    constexpr float reach = 0.0025F;
    const QGeoCoordinate here(latitude, longitude);
    return std::ranges::any_of(stores, [&here, latitude](const TrackedStore &store) {
        return std::abs(store.latitude - latitude) < reach &&
               isWithinReach(distanceTo(store, here));
    });
}

bool TrackedStores::isNearestWithinReach(const QList<TrackedStore> &stores)
{
    return !stores.isEmpty() && isWithinReach(stores.first().distance);
}
