// SPDX-License-Identifier: MIT
#pragma once

class QLabel;
class QPushButton;

/// The active list, and the ways to shop, edit and choose.
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
