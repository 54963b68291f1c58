// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// The person's preferences and two remembered values, in the platform's settings store.
///
/// Nothing is kept here: every call opens the store anew, so what one call writes the next one
/// reads. A missing key or a value of another type reads as the default, which is false, 0 or an
/// empty text. Failing writes are not reported.
class TrSettings
{
public:
    /// The one instance that all callers share.
    static TrSettings &instance();

    bool gpsEnabled() const;
    void setGpsEnabled(const bool &enabled);

    bool gpsAutoStart() const;
    void setGpsAutoStart(const bool &autoStart);

    bool trackAutoStart() const;
    void setTrackAutoStart(const bool &autoStart);

    /// 0 follows the system's locale, 1 is English, 2 is Russian.
    int languageId() const;
    void setLanguageId(const int &id);

    /// The alarm sound's path; empty stands for the default alarm.
    QString soundFileName() const;
    void setSoundFileName(const QString &fileName);

    /// Degrees, stored in single precision.
    float lastLatitude() const;
    void setLastLatitude(const float &degrees);

    /// Degrees, stored in single precision.
    float lastLongitude() const;
    void setLastLongitude(const float &degrees);

    /// Identifier of the network configuration used last; empty when there is none.
    QString defaultNetworkConfiguration() const;
    void setDefaultNetworkConfiguration(const QString &identifier);
};
