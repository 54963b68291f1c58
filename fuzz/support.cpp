// SPDX-License-Identifier: MIT
#include "fuzz/support.h"

#include <array>

#include <QApplication>
#include <QGeoPositionInfo>
#include <QStackedWidget>
#include <QTextStream>

#include "app/shopwindow.h"
#include "tests/support/pagenames.h"

namespace {

void tellFailuresOnly(QtMsgType type, const QMessageLogContext & /*context*/,
                      const QString &message)
{
    if (type == QtFatalMsg)
        QTextStream(stderr) << message << Qt::endl;
}

} // namespace

// Only sanitizers call these two functions. The leak in the font library is not caused by this
// program.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" const char *__lsan_default_suppressions();
extern "C" const char *__lsan_default_suppressions()
{
    return "leak:libfontconfig\n";
}

extern "C" const char *__lsan_default_options();
extern "C" const char *__lsan_default_options()
{
    return "print_suppressions=0";
}
// NOLINTEND(bugprone-reserved-identifier)

void FuzzSupport::startApplication()
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    for (const char *bus : {"DBUS_SYSTEM_BUS_ADDRESS", "DBUS_SESSION_BUS_ADDRESS"})
        qputenv(bus, "unix:path=/nonexistent");
    qInstallMessageHandler(tellFailuresOnly);
    // The application keeps references to both.
    static std::array<char, 5> name{"fuzz"};
    static std::array<char *, 2> arguments{name.data(), nullptr};
    static int count = 1;
    // Never deleted: the fuzzer ends the process while its own objects still exist.
    [[maybe_unused]] static const auto *application = new QApplication(count, arguments.data());
    // By default closing the last window would end the program, but the next input opens another
    // one.
    QGuiApplication::setQuitOnLastWindowClosed(false);
}

QByteArray FuzzSupport::bytesOf(const std::uint8_t *data, std::size_t size)
{
    return {reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)};
}

void FuzzSupport::require(bool holds, const char *what)
{
    if (!holds)
        qFatal("does not hold: %s", what);
}

void FuzzSupport::requireSoundPosition(const QGeoPositionInfo &position)
{
    require(position.isValid(), "a position has its place and time");
    const bool isAccurate = !position.hasAttribute(QGeoPositionInfo::HorizontalAccuracy) ||
                            position.attribute(QGeoPositionInfo::HorizontalAccuracy) >= 0;
    require(isAccurate, "an accuracy is a distance");
}

void FuzzSupport::requireSoundWindow(const ShopWindow &window)
{
    const auto *pages = window.findChild<QStackedWidget *>(QStringLiteral("pageStack"));
    require(pages && pages->count() == PageCount, "the window has all pages");
    require(pages->currentIndex() >= PageMain && pages->currentIndex() <= PageCoordinates,
            "a page shows");
}
