// SPDX-License-Identifier: MIT
#pragma once

#include "base/frames.h"

/// The name, the category and the distance of the current store.
struct StoresPage
{
    QLabel *name = nullptr;
    QLabel *category = nullptr;
    QLabel *distance = nullptr;
    QPushButton *edit = nullptr;
    QPushButton *stores = nullptr;
    QPushButton *create = nullptr;
};

/// The list of stores. Other pages open it to select a store.
struct StoreListPage : ListFrame
{
    QPushButton *add = nullptr;
    QPushButton *select = nullptr;
};
