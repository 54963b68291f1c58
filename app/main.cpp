// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstdlib>
#include <span>

#include <sys/stat.h>

#include <QApplication>
#include <QIcon>

#include "app/shopwindow.h"
#include "data/database.h"
#include "platform/quitsignals.h"
#include "platform/singleinstance.h"
#include "platform/standarderror.h"
#include "widgets/pictures.h"
#include "widgets/touchstyle.h"

using namespace Qt::StringLiterals;

int main(int argc, char **argv)
{
    // The files of the program say where its user lives, so only the user may read new ones.
    ::umask(S_IRWXG | S_IRWXO);
    // Standard error may be a pipe that nobody reads.
    StandardError::takeMessages();
    const auto arguments = std::span(argv, static_cast<std::size_t>(argc));
    const bool isStyleChosen = std::ranges::any_of(arguments, [](const char *argument) {
        const QLatin1StringView text(argument);
        return text == "-style"_L1 || text == "--style"_L1 || text.startsWith("-style="_L1) ||
               text.startsWith("--style="_L1);
    });
    // Qt removes it from the environment.
    const QByteArray activationToken = qgetenv("XDG_ACTIVATION_TOKEN");
    const QApplication application(argc, argv);
    QuitSignals::watch();
    TouchStyle::applyUnlessChosen(isStyleChosen);
    // Without these calls Qt derives the names from that of the executable, which may be renamed.
    QApplication::setApplicationName(u"trolleo"_s);
    QApplication::setApplicationVersion(QStringLiteral(TROLLEO_VERSION));
    QGuiApplication::setDesktopFileName(u"trolleo"_s);

    Database::prepareFolder();
    SingleInstance instance(Database::folder());
    switch (instance.start(activationToken)) {
    case SingleInstance::Result::First:
        break;
    case SingleInstance::Result::Answered:
        return EXIT_SUCCESS;
    case SingleInstance::Result::Unanswered:
        qWarning("Trolleo is already running, and does not respond.");
        return EXIT_FAILURE;
    }
    QObject::connect(&application, &QApplication::aboutToQuit, &instance,
                     &SingleInstance::stopListening);

    ShopWindow window;
    QObject::connect(&instance, &SingleInstance::startedAgain, &window,
                     &ShopWindow::bringToFrontBy);
    // ShopWindow has registered the resources.
    constexpr int windowIconExtent = 96;
    QApplication::setWindowIcon(
        QIcon(Pictures::icon(u":/img/House.png"_s).pixmap(windowIconExtent)));
    window.show();
    return QApplication::exec();
}
