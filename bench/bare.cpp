// SPDX-License-Identifier: MIT
// The smallest program with Qt Widgets: a window with a label.
#include <QApplication>
#include <QLabel>
#include <QMainWindow>

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    QMainWindow window;
    window.setCentralWidget(new QLabel("bare"));
    window.resize(800, 480);
    window.show();
    return QApplication::exec();
}
