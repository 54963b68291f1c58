// SPDX-License-Identifier: MIT
#pragma once

#include "base/frames.h"

/// The goods to buy, and below them those bought already.
struct DoShoppingPage : ListFrame
{
    QPushButton *ok = nullptr;
    QPushButton *check = nullptr;
    QPushButton *uncheck = nullptr;
};
