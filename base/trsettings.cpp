// SPDX-License-Identifier: MIT
#include "base/trsettings.h"

#include <chrono>
#include <cmath>
#include <utility>

#include <QDateTime>
#include <QDeadlineTimer>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QThread>
#include <QVariant>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QString organization = u"Vantor"_s;
const QString application = u"Trolleo"_s;

const QString gpsEnabledKey = u"GpsEnabled"_s;
const QString gpsAutoStartKey = u"GpsAutoStart"_s;
const QString trackAutoStartKey = u"TrackAutoStart"_s;
const QString languageIdKey = u"LanguageId"_s;
const QString soundFileNameKey = u"SoundFileName"_s;
const QString lastLatitudeKey = u"LastLatitude"_s;
const QString lastLongitudeKey = u"LastLongitude"_s;
const QString networkConfigurationKey = u"DefaultNetworkConfiguration"_s;

QVariant read(const QString &key, const QVariant &fallback)
{
    return QSettings(organization, application).value(key, fallback);
}

bool anyWriteFailed = false;

/// QSettings locks its file while it writes. A program that is killed just after it has created the
/// lock file leaves it empty, and QSettings would wait half a minute for an unknown owner. A living
/// owner writes its name at once.
void removeAbandonedLock(const QString &settingsFile)
{
    constexpr auto timeToWriteName = 500ms;
    const QDeadlineTimer deadline(timeToWriteName);
    QFileInfo lock(settingsFile + u".lock"_s);
    while (lock.exists() && lock.size() == 0) {
        const QDateTime oldest = QDateTime::currentDateTime().addDuration(-timeToWriteName);
        if (deadline.hasExpired() || lock.lastModified() < oldest) {
            QFile::remove(lock.filePath());
            return;
        }
        QThread::msleep(10);
        lock.refresh();
    }
}

void write(const QVariantMap &values)
{
    QSettings settings(organization, application);
    // Every write waits for the disk, so a value that is already stored is not written again.
    // Fallbacks are disabled because system-wide settings are not the user's own.
    settings.setFallbacksEnabled(false);
    for (auto value = values.cbegin(); value != values.cend(); ++value) {
        const QString &key = value.key();
        if (settings.contains(key) && settings.value(key).toString() == value->toString())
            continue;
        removeAbandonedLock(settings.fileName());
        settings.setValue(key, *value);
    }
    // Otherwise the destructor would write, and tell nobody whether it could.
    settings.sync();
    if (settings.status() != QSettings::NoError)
        anyWriteFailed = true;
}

/// QVariant converts every text except "", "0" and "false" to true. A hand-written "no" or garbage
/// in the file must not enable GPS, so only "true" and numbers other than 0 are true.
bool readFlag(const QString &key)
{
    const QVariant value = read(key, QVariant(false));
    if (value.typeId() == QMetaType::Bool)
        return value.toBool();
    if (value.toString().compare(QLatin1String("true"), Qt::CaseInsensitive) == 0)
        return true;
    bool isNumber = false;
    const double number = value.toDouble(&isNumber);
    return isNumber && std::isfinite(number) && number != 0.0;
}

/// Qt parses "nan" and "inf" as numbers, but they are not valid degrees.
float readDegrees(const QString &key)
{
    const float degrees = read(key, QVariant(0)).toFloat();
    return std::isfinite(degrees) ? degrees : 0.0F;
}

} // namespace

TrSettings &TrSettings::instance()
{
    static TrSettings settings;
    return settings;
}

bool TrSettings::takeFailure() const
{
    return std::exchange(anyWriteFailed, false);
}

bool TrSettings::gpsEnabled() const
{
    return readFlag(gpsEnabledKey);
}

void TrSettings::setGpsEnabled(const bool &enabled)
{
    write({{gpsEnabledKey, enabled}});
}

bool TrSettings::gpsAutoStart() const
{
    return readFlag(gpsAutoStartKey);
}

void TrSettings::setGpsAutoStart(const bool &autoStart)
{
    write({{gpsAutoStartKey, autoStart}});
}

bool TrSettings::trackAutoStart() const
{
    return readFlag(trackAutoStartKey);
}

void TrSettings::setTrackAutoStart(const bool &autoStart)
{
    write({{trackAutoStartKey, autoStart}});
}

int TrSettings::languageId() const
{
    return read(languageIdKey, QVariant(0)).toInt();
}

void TrSettings::setLanguageId(const int &id)
{
    write({{languageIdKey, id}});
}

QString TrSettings::soundFileName() const
{
    return read(soundFileNameKey, QVariant(QString())).toString();
}

void TrSettings::setSoundFileName(const QString &fileName)
{
    write({{soundFileNameKey, fileName}});
}

float TrSettings::lastLatitude() const
{
    return readDegrees(lastLatitudeKey);
}

void TrSettings::setLastLatitude(const float &degrees)
{
    write({{lastLatitudeKey, degrees}});
}

float TrSettings::lastLongitude() const
{
    return readDegrees(lastLongitudeKey);
}

void TrSettings::setLastLongitude(const float &degrees)
{
    write({{lastLongitudeKey, degrees}});
}

void TrSettings::setLastPosition(float latitude, float longitude)
{
    write({{lastLatitudeKey, latitude}, {lastLongitudeKey, longitude}});
}

QString TrSettings::defaultNetworkConfiguration() const
{
    return read(networkConfigurationKey, QVariant()).toString();
}

void TrSettings::setDefaultNetworkConfiguration(const QString &identifier)
{
    write({{networkConfigurationKey, identifier}});
}
