// SPDX-License-Identifier: MIT
#include "tracking/trackedstores.h"

#include <algorithm>
#include <limits>

#include <QGeoCoordinate>
#include <QVariant>

using namespace Qt::StringLiterals;

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
    for (TrackedStore &store : stores) {
        const QGeoCoordinate place(store.latitude, store.longitude);
        // For invalid coordinates Qt returns the distance 0, which would ring.
        store.distance = place.isValid() ? static_cast<float>(here.distanceTo(place))
                                         : std::numeric_limits<float>::infinity();
    }
    // A stable sort, so that equally distant stores keep their order.
    std::ranges::stable_sort(stores, {}, &TrackedStore::distance);
}

bool TrackedStores::isNearestWithinReach(const QList<TrackedStore> &stores)
{
    return !stores.isEmpty() && stores.first().distance < reminderMeters;
}
