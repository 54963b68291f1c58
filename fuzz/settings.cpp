// SPDX-License-Identifier: MIT
// The settings file with any contents. In an input that begins with the line "window", the rest is
// the file, and the window is started with it, which is slow. Any other input is the file itself,
// of which only every setting is read.
#include <cmath>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QtPlugin>

#include "app/shopwindow.h"
#include "base/trsettings.h"
#include "fuzz/support.h"
#include "tests/support/testhome.h"
#include "tests/support/testpositionplugin.h"

Q_IMPORT_PLUGIN(TestPositionPlugin)

using FuzzSupport::require;

namespace {

void readAll()
{
    const TrSettings &settings = TrSettings::instance();
    require(std::isfinite(settings.lastLatitude()), "degrees are finite");
    require(std::isfinite(settings.lastLongitude()), "degrees are finite");
    settings.gpsEnabled();
    settings.gpsAutoStart();
    settings.trackAutoStart();
    settings.languageId();
    settings.soundFileName();
    settings.defaultNetworkConfiguration();
}

/// A written value can be read, whatever else is in the file.
void writeAndRead()
{
    TrSettings &settings = TrSettings::instance();
    const bool flag = !settings.gpsEnabled();
    const float degrees = settings.lastLatitude() + 1;
    const QString text = settings.soundFileName() + u'x';
    settings.setGpsEnabled(flag);
    settings.setLastLongitude(degrees);
    settings.setSoundFileName(text);
    // An invalid file is not changed, so nothing is written.
    if (QSettings(QStringLiteral("Vantor"), QStringLiteral("Trolleo")).status() !=
        QSettings::NoError)
        return;
    require(settings.gpsEnabled() == flag, "a flag is what was written");
    require(settings.lastLongitude() == degrees, "degrees are what was written");
    require(settings.soundFileName() == text, "a text is what was written");
}

void startWindow()
{
    ShopWindow window;
    window.show();
    QCoreApplication::processEvents();
    FuzzSupport::requireSoundWindow(window);
}

} // namespace

int LLVMFuzzerInitialize(int * /*count*/, char *** /*arguments*/)
{
    FuzzSupport::startApplication();
    return 0;
}

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    // Each input has its own folder: Qt does not read a file again if its size and time have not
    // changed.
    const TestHome home;
    QByteArray content = FuzzSupport::bytesOf(data, size);
    const QByteArray mark = "window\n";
    const bool hasWindow = content.startsWith(mark);
    if (hasWindow)
        content.remove(0, mark.size());
    QDir().mkpath(QFileInfo(home.settingsFile()).path());
    QFile file(home.settingsFile());
    require(file.open(QIODevice::WriteOnly) && file.write(content) == content.size(),
            "the file can be written");
    file.close();

    readAll();
    if (hasWindow)
        startWindow();
    writeAndRead();
    return 0;
}
