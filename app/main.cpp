// SPDX-License-Identifier: MIT
#include "app/shopwindow.h"

#include <QApplication>
#include <QIcon>

using namespace Qt::StringLiterals;

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QApplication::setApplicationVersion(QStringLiteral(TROLLEO_VERSION));
    QGuiApplication::setDesktopFileName(u"trolleo"_s);

    ShopWindow window;
    QApplication::setWindowIcon(QIcon(u":/img/House.png"_s));
    window.show();
    return QApplication::exec();
}
