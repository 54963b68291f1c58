// SPDX-License-Identifier: MIT
#pragma once

#include "base/frames.h"

/// The current store: its name, its category, and how far it is.
struct StoresPage
{
    QLabel *name = nullptr;
    QLabel *category = nullptr;
    QLabel *distance = nullptr;
    QPushButton *edit = nullptr;
    QPushButton *stores = nullptr;
    QPushButton *create = nullptr;
};

/// The stores to choose from; also the picker of other pages.
struct StoreListPage : ListFrame
{
    QPushButton *add = nullptr;
    QPushButton *select = nullptr;
};
