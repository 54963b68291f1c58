// SPDX-License-Identifier: MIT
#pragma once

/// Alerts the user through the device, using DeviceAlert: notification, vibration, light. The
/// functions can be called at any time, and do nothing if the device offers no such service.
class AlertHelper
{
public:
    AlertHelper() = default;
    /// Ends the alert.
    ~AlertHelper();
    AlertHelper(const AlertHelper &) = delete;
    AlertHelper &operator=(const AlertHelper &) = delete;

    /// Must be called once, before alert().
    void initialise();

    /// Starts the alert, or stops it.
    void alert(bool on);
};
