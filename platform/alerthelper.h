// SPDX-License-Identifier: MIT
#pragma once

/// Notifies the person through the device, by DeviceAlert: a notification, vibration, light. Its
/// operations may be called at any time, and do nothing where the device offers nothing to call.
class AlertHelper
{
public:
    AlertHelper() = default;
    /// Ends what alert() has started.
    ~AlertHelper();
    AlertHelper(const AlertHelper &) = delete;
    AlertHelper &operator=(const AlertHelper &) = delete;

    /// To be called once, before alert().
    void initialise();

    /// Starts to notify the person, or stops it.
    void alert(bool on);
};
