// SPDX-License-Identifier: MIT
#pragma once

#include "base/frames.h"

class NameButton;

/// The name, the category and the coordinates of one store. "Save" adds or updates the store.
struct StoreEditPage : EditFrame
{
    QLineEdit *name = nullptr;
    NameButton *category = nullptr;
    NameButton *coordinates = nullptr;
};
