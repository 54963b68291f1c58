// SPDX-License-Identifier: MIT
#pragma once

/// Hook for notifying the person through the device itself (vibration, backlight). Today's
/// desktops offer nothing of the kind to call, so its operations do nothing; they may be called
/// at any time.
class AlertHelper
{
public:
    AlertHelper() = default;
    ~AlertHelper() = default;
    AlertHelper(const AlertHelper &) = delete;
    AlertHelper &operator=(const AlertHelper &) = delete;

    /// To be called once, before alert().
    void initialise();

    /// Starts to notify the person, or stops it.
    void alert(bool on);
};
