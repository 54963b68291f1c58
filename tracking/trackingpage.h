// SPDX-License-Identifier: MIT
#pragma once

class NameButton;
class QPushButton;
class QRadioButton;
class QWidget;

/// Which stores are watched, and start and stop of watching them.
struct TrackingPage
{
    QPushButton *start = nullptr;
    QPushButton *stop = nullptr;
    QWidget *criteria = nullptr;
    QRadioButton *all = nullptr;
    QRadioButton *byCategory = nullptr;
    QRadioButton *byStore = nullptr;
    NameButton *category = nullptr;
    NameButton *store = nullptr;
    QPushButton *view = nullptr;
};
