// SPDX-License-Identifier: MIT
#pragma once

class PictureLabel;
class QLabel;
class QPushButton;
class QScrollBar;

/// Warnings, information, help and About.
struct MessagePage
{
    PictureLabel *icon = nullptr;
    QLabel *title = nullptr;
    QLabel *text = nullptr;
    QScrollBar *scrollBar = nullptr;
    QPushButton *ok = nullptr;
};

/// A question to be answered with "Yes" or "No".
struct ConfirmationPage
{
    QLabel *title = nullptr;
    QLabel *text = nullptr;
    QPushButton *yes = nullptr;
    QPushButton *no = nullptr;
};

/// Shown while a position is awaited.
struct WaitingPage
{
    QPushButton *cancel = nullptr;
};
