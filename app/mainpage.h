// SPDX-License-Identifier: MIT
#pragma once

class QPushButton;

/// The first page: three large buttons that open other pages, and a toolbar.
struct MainPage
{
    QPushButton *shopping = nullptr;
    QPushButton *reminder = nullptr;
    QPushButton *shops = nullptr;
    QPushButton *options = nullptr;
    QPushButton *help = nullptr;
    QPushButton *about = nullptr;
    QPushButton *exit = nullptr;
};
