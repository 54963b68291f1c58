// SPDX-License-Identifier: MIT
#pragma once

#include "base/frames.h"

class NameButton;

/// One store: its name, its category and its coordinates. "Save" adds or updates it.
struct StoreEditPage : EditFrame
{
    QLineEdit *name = nullptr;
    NameButton *category = nullptr;
    NameButton *coordinates = nullptr;
};
