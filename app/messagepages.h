// SPDX-License-Identifier: MIT
#pragma once

class PictureLabel;
class QLabel;
class QPushButton;
class QScrollBar;

/// The page for warnings, information, help and About.
struct MessagePage
{
    PictureLabel *icon = nullptr;
    QLabel *title = nullptr;
    QLabel *text = nullptr;
    QScrollBar *scrollBar = nullptr;
    QPushButton *ok = nullptr;
};

/// The page for a question that the user answers with "Yes" or "No".
struct ConfirmationPage
{
    QLabel *title = nullptr;
    QLabel *text = nullptr;
    QPushButton *yes = nullptr;
    QPushButton *no = nullptr;
};

/// The page shown while the program waits for a position.
struct WaitingPage
{
    QPushButton *cancel = nullptr;
};
