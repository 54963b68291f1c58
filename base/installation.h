// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// Returns the folder of the alarm sound and the translations, with a trailing slash.
QString installationFolder();

/// Returns the path of the alarm sound: `chosen`, or the installed alarm if `chosen` is empty.
QString alarmFile(const QString &chosen);
