// SPDX-License-Identifier: MIT
#pragma once

#include "base/frames.h"

class QSpinBox;

/// The goods of the active list, as they are being edited: nothing is stored before "OK".
struct ItemsListPage : ListFrame
{
    QPushButton *ok = nullptr;
    QPushButton *add = nullptr;
};

/// One of the goods: its name and its amount.
struct ItemEditPage : EditFrame
{
    QLineEdit *name = nullptr;
    QSpinBox *amount = nullptr;
};
