// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// Where the alarm sound and the translations are installed; ends with a slash.
QString installationFolder();

/// The file that rings: `chosen`, or the installed alarm when nothing was chosen.
QString alarmFile(const QString &chosen);
