// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QIcon>

#include "app/shopwindow.h"

using namespace Qt::StringLiterals;

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    // What the location service asks permission for, whatever the file is called that was started.
    QApplication::setApplicationName(u"trolleo"_s);
    QApplication::setApplicationVersion(QStringLiteral(TROLLEO_VERSION));
    QGuiApplication::setDesktopFileName(u"trolleo"_s);

    ShopWindow window;
    // The window has made the pictures known.
    QApplication::setWindowIcon(QIcon(u":/img/House.png"_s));
    window.show();
    return QApplication::exec();
}
