// SPDX-License-Identifier: MIT
#pragma once

#include "base/frames.h"

class NameButton;

/// The lists to choose from.
struct ShoppingListsPage : ListFrame
{
    QPushButton *select = nullptr;
    QPushButton *create = nullptr;
};

/// One list: its name and its store. "Save" creates or updates it, "Reset" unchecks its goods.
struct ListEditPage : EditFrame
{
    QLineEdit *name = nullptr;
    NameButton *store = nullptr;
    QLabel *state = nullptr;
    QPushButton *reset = nullptr;
};
