// SPDX-License-Identifier: MIT
#pragma once

#include "base/frames.h"

class NameButton;

/// The shopping lists, one of which can be made the active list.
struct ShoppingListsPage : ListFrame
{
    QPushButton *select = nullptr;
    QPushButton *create = nullptr;
};

/// The name, the store and the state of one list. "Save" creates or updates the list, "Reset"
/// unchecks its goods.
struct ListEditPage : EditFrame
{
    QLineEdit *name = nullptr;
    NameButton *store = nullptr;
    QLabel *state = nullptr;
    QPushButton *reset = nullptr;
};
