// SPDX-License-Identifier: MIT
#include <cstdlib>
#include <memory>

#include <QApplication>
#include <QIcon>

#include "app/shopwindow.h"
#include "platform/alarmsound.h"
#include "platform/standarderror.h"

using namespace Qt::StringLiterals;

int main(int argc, char **argv)
{
    // Whoever started the program may not read what it says.
    StandardError::takeMessages();
    const QApplication application(argc, argv);
    // What the location service asks permission for, whatever the file is called that was started.
    QApplication::setApplicationName(u"trolleo"_s);
    QApplication::setApplicationVersion(QStringLiteral(TROLLEO_VERSION));
    QGuiApplication::setDesktopFileName(u"trolleo"_s);

    auto window = std::make_unique<ShopWindow>();
    // The window has made the pictures known.
    QApplication::setWindowIcon(QIcon(u":/img/House.png"_s));
    window->show();
    const int result = QApplication::exec();
    window.reset();
    if (AlarmSound::isAnyStuck())
        std::quick_exit(result);
    return result;
}
