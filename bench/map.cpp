// SPDX-License-Identifier: MIT
// What a frame costs while the map is dragged: the core's arithmetic and painting the whole view.
#include <algorithm>
#include <vector>

#include <QApplication>
#include <QElapsedTimer>
#include <QMouseEvent>
#include <QTest>
#include <QTextStream>

#include "map/mapswidget.h"
#include "tests/support/testhome.h"
#include "tests/support/tilehost.h"

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    const TestHome home;
    TileHost host;
    qputenv("TROLLEO_TILE_SERVER", host.address());
    Q_INIT_RESOURCE(pictures);

    MapsWidget map;
    map.resize(1920, 1080);
    map.setTrackingMode(true);
    map.setCenter(59.9F, 10.7F);
    map.setStorePin(59.91F, 10.71F);
    map.setPositionMark(59.9F, 10.7F);
    map.show();
    while (host.paths.size() < 54) // nine columns, six rows
        QTest::qWait(50);
    QTest::qWait(500);

    const auto send = [&map](QEvent::Type type, const QPoint &position) {
        QMouseEvent event(type, position, map.mapToGlobal(position), Qt::LeftButton, Qt::LeftButton,
                          Qt::NoModifier);
        QApplication::sendEvent(&map, &event);
    };
    QPoint finger(960, 540);
    send(QEvent::MouseButtonPress, finger);
    std::vector<double> milliseconds;
    for (int frame = 0; frame < 600; ++frame) {
        QElapsedTimer clock;
        clock.start();
        finger += frame % 120 < 60 ? QPoint(7, 3) : QPoint(-7, -3);
        send(QEvent::MouseMove, finger);
        QApplication::sendPostedEvents();
        map.repaint();
        milliseconds.push_back(double(clock.nsecsElapsed()) / 1e6);
        QApplication::processEvents();
    }
    std::sort(milliseconds.begin(), milliseconds.end());
    QTextStream(stdout) << "1920 x 1080, a frame while dragging: "
                        << milliseconds.at(milliseconds.size() / 2) << " ms in the middle, "
                        << milliseconds.at(milliseconds.size() * 99 / 100)
                        << " ms at most for 99 %, " << milliseconds.back() << " ms the longest\n";
}
