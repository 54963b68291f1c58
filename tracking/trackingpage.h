// SPDX-License-Identifier: MIT
#pragma once

class NameButton;
class QPushButton;
class QRadioButton;
class QWidget;

/// Selection of the tracked stores, and start and stop of tracking.
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
