// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// The user's preferences and the remembered position and network, in the settings store of the
/// platform.
///
/// Nothing is cached: every call opens the store, so each read returns what was written last. A
/// missing key or a value of the wrong type is read as the default: false, 0 or an empty text.
/// Setters do not report errors; takeFailure() does.
class TrSettings
{
public:
    /// Returns the instance that all callers share.
    static TrSettings &instance();

    /// Returns whether a setter could not store its value since the last call.
    bool takeFailure() const;

    bool gpsEnabled() const;
    void setGpsEnabled(const bool &enabled);

    bool gpsAutoStart() const;
    void setGpsAutoStart(const bool &autoStart);

    bool trackAutoStart() const;
    void setTrackAutoStart(const bool &autoStart);

    /// 0 follows the system locale, 1 is English, 2 is Russian.
    int languageId() const;
    void setLanguageId(const int &id);

    /// Path of the alarm sound; empty for the default alarm.
    QString soundFileName() const;
    void setSoundFileName(const QString &fileName);

    /// Degrees, stored in single precision.
    float lastLatitude() const;
    void setLastLatitude(const float &degrees);

    /// Degrees, stored in single precision.
    float lastLongitude() const;
    void setLastLongitude(const float &degrees);

    /// Stores both coordinates in degrees, and writes the file once.
    void setLastPosition(float latitude, float longitude);

    /// Identifier of the network configuration used last; empty if there is none.
    QString defaultNetworkConfiguration() const;
    void setDefaultNetworkConfiguration(const QString &identifier);
};
