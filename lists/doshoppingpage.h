// SPDX-License-Identifier: MIT
#pragma once

#include "base/frames.h"

/// The page used while shopping: the goods to buy, and below them the checked goods.
struct DoShoppingPage : ListFrame
{
    QPushButton *ok = nullptr;
    QPushButton *check = nullptr;
    QPushButton *uncheck = nullptr;
};
