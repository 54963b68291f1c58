// SPDX-License-Identifier: MIT
#pragma once

#include "app/frames.h"

/// The tracked stores, nearest first; its title tells the criterion.
struct TrackedListPage : ListFrame
{
    QPushButton *ok = nullptr;
};
