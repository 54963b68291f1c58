// SPDX-License-Identifier: MIT
#pragma once

#include "base/frames.h"

/// The categories to choose from; also the picker of other pages.
struct CategoryListPage : ListFrame
{
    QPushButton *add = nullptr;
    QPushButton *select = nullptr;
};

/// One category: its name. "Save" adds or renames it.
struct CategoryEditPage : EditFrame
{
    QLineEdit *name = nullptr;
};
