// SPDX-License-Identifier: MIT
#include "app/shopwindow.h"

#include <QApplication>
#include <QIcon>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QApplication::setApplicationVersion(QStringLiteral(TROLLEO_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("trolleo"));

    ShopWindow window;
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/img/House.png")));
    window.show();
    return QApplication::exec();
}
