// SPDX-License-Identifier: MIT
#pragma once

#include "base/frames.h"

class QSpinBox;
class Suggestions;

/// The goods of the active list while they are being edited. "OK" stores the changes.
struct ItemsListPage : ListFrame
{
    QPushButton *ok = nullptr;
    QPushButton *add = nullptr;
};

/// The name and the amount of one good.
struct ItemEditPage : EditFrame
{
    Suggestions *suggestions = nullptr;
    QLineEdit *name = nullptr;
    QSpinBox *amount = nullptr;
};
