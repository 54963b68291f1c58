// SPDX-License-Identifier: MIT
#pragma once

class QLabel;
class QPushButton;

/// The active list, with buttons to start shopping, to edit the list or its goods, and to select
/// another list.
struct ShoppingPage
{
    QLabel *listName = nullptr;
    QLabel *store = nullptr;
    QLabel *state = nullptr;
    QPushButton *start = nullptr;
    QPushButton *edit = nullptr;
    QPushButton *goods = nullptr;
    QPushButton *lists = nullptr;
};
