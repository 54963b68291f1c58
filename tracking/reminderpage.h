// SPDX-License-Identifier: MIT
#pragma once

class QLabel;
class QPushButton;

/// The reminder: the store that is near, and the possible answers.
struct ReminderPage
{
    QLabel *heading = nullptr;
    QLabel *store = nullptr;
    QPushButton *next = nullptr;
    QPushButton *stop = nullptr;
    QPushButton *startShopping = nullptr;
};
