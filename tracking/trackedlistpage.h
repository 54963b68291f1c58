// SPDX-License-Identifier: MIT
#pragma once

#include <QList>

#include "base/frames.h"

class MapsWidget;
class QStackedWidget;

/// The tracked stores, nearest first, or the map around the position. The title names the
/// criterion.
struct TrackedListPage : ListFrame
{
    enum View { ListView, MapView };

    QPushButton *listButton = nullptr;
    QPushButton *mapButton = nullptr;
    QStackedWidget *views = nullptr;
    MapsWidget *map = nullptr;
    QPushButton *ok = nullptr;
    /// The ids of the rows' stores, since the rows themselves carry no ids.
    QList<int> storeIds = {};

    bool showsMap() const;
    void showView(View view) const;
};
