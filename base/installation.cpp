// SPDX-License-Identifier: MIT
#include "base/installation.h"

using namespace Qt::StringLiterals;

QString installationFolder()
{
    return QStringLiteral(TROLLEO_INSTALLATION_FOLDER);
}

QString alarmFile(const QString &chosen)
{
    return chosen.isEmpty() ? installationFolder() + "Alarm5.wav"_L1 : chosen;
}
