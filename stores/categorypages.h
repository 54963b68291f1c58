// SPDX-License-Identifier: MIT
#pragma once

#include "base/frames.h"

/// The list of categories. Other pages open it to select a category.
struct CategoryListPage : ListFrame
{
    QPushButton *add = nullptr;
    QPushButton *select = nullptr;
};

/// The name of one category. "Save" adds or renames the category.
struct CategoryEditPage : EditFrame
{
    QLineEdit *name = nullptr;
};
