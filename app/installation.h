// SPDX-License-Identifier: MIT
#pragma once

#include <QLatin1StringView>

/// Where the alarm sound and the translations are installed; ends with a slash.
inline constexpr QLatin1StringView installationFolder{TROLLEO_INSTALLATION_FOLDER};

/// The alarm that rings unless the person chose another, in the installation folder.
inline constexpr QLatin1StringView defaultAlarmFile{"Alarm5.wav"};
