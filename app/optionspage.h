// SPDX-License-Identifier: MIT
#pragma once

#include "base/frames.h"

class NameButton;
class QCheckBox;
class QRadioButton;
class QScrollBar;

/// The user's preferences. "OK" saves and applies them.
struct OptionsPage : ToolbarFrame
{
    QCheckBox *enableGps = nullptr;
    QCheckBox *gpsAlwaysActive = nullptr;
    QCheckBox *autoStartTracking = nullptr;
    QScrollBar *scrollBar = nullptr;
    NameButton *sound = nullptr;
    QRadioButton *autoDetect = nullptr;
    QRadioButton *english = nullptr;
    QRadioButton *russian = nullptr;
    QPushButton *ok = nullptr;
    QPushButton *cancel = nullptr;
};
