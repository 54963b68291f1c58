// SPDX-License-Identifier: MIT
#pragma once

class QLabel;
class QPushButton;

/// The store that has come near, and what to do about it.
struct ReminderPage
{
    QLabel *heading = nullptr;
    QLabel *store = nullptr;
    QPushButton *next = nullptr;
    QPushButton *stop = nullptr;
    QPushButton *startShopping = nullptr;
};
