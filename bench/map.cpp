// SPDX-License-Identifier: MIT
// Measures the cost of a frame while the map is dragged, against drawing the same pixmaps alone,
// and the cost of the map's chain of requests, against the same requests alone.
#include <functional>
#include <memory>

#include <QApplication>
#include <QEventLoop>
#include <QIcon>
#include <QMouseEvent>
#include <QNetworkAccessManager>
#include <QNetworkDiskCache>
#include <QNetworkReply>
#include <QPainter>
#include <QTemporaryDir>
#include <QTest>

#include "bench/report.h"
#include "map/mapscore.h"
#include "map/mapswidget.h"
#include "map/webmercator.h"
#include "network/httptilefetcher.h"
#include "tests/support/testhome.h"
#include "tests/support/tilehost.h"

namespace {

constexpr double frameGoal = 1.2;
constexpr double tilesGoal = 1.1;
constexpr int columns = 9;
constexpr int rows = 6;

/// A widget that draws as many tiles as the map does, from the same pictures, and both markers.
class Tiles : public QWidget
{
public:
    Tiles()
    {
        setAttribute(Qt::WA_OpaquePaintEvent);
        for (int index = 0; index < columns * rows; ++index) {
            const QString path = QString("/14/%1/%2.png").arg(index % columns).arg(index / columns);
            QPixmap tile;
            tile.loadFromData(TileHost::picture(TileHost::colorOf(path)));
            tiles << tile;
        }
    }

    QPoint offset{-240, -120}; // the tiles cover the whole widget wherever they are dragged

protected:
    void paintEvent(QPaintEvent * /*event*/) override
    {
        QPainter painter(this);
        for (int index = 0; index < tiles.size(); ++index) {
            const QPoint place(index % columns, index / columns);
            painter.drawPixmap(place * WebMercator::tileExtent + offset, tiles.at(index));
        }
        painter.drawPixmap(width() / 2, height() / 2, storePin);
        painter.drawPixmap(width() / 3, height() / 3, positionMark);
    }

private:
    QList<QPixmap> tiles;
    QPixmap storePin = QIcon(":/img/blue_pin.svg").pixmap(QSize(30, 30), 1.0);
    QPixmap positionMark = QIcon(":/img/smile.svg").pixmap(QSize(20, 20), 1.0);
};

void measureFrames(TileHost &host)
{
    constexpr int frames = 60;
    MapsWidget map;
    map.resize(1920, 1080);
    map.setTrackingMode(true);
    map.setCenter(59.9F, 10.7F);
    map.setStorePin(59.91F, 10.71F);
    map.setPositionMark(59.9F, 10.7F);
    map.show();
    const auto isWhole = [&host] {
        return host.paths.size() >= qsizetype{columns} * rows;
    };
    if (!QTest::qWaitFor(isWhole, 20000))
        qFatal("the map gets no tiles");
    QTest::qWait(500);
    Tiles tiles;
    tiles.resize(map.size());
    tiles.show();
    QTest::qWait(100);

    const auto send = [&map](QEvent::Type type, const QPoint &position) {
        QMouseEvent event(type, position, map.mapToGlobal(position), Qt::LeftButton, Qt::LeftButton,
                          Qt::NoModifier);
        QApplication::sendEvent(&map, &event);
    };
    const auto step = [](int frame) {
        return frame % frames < frames / 2 ? QPoint(7, 3) : QPoint(-7, -3);
    };
    QPoint finger(960, 540);
    send(QEvent::MouseButtonPress, finger);
    const auto drag = [&] {
        for (int frame = 0; frame < frames; ++frame) {
            finger += step(frame);
            send(QEvent::MouseMove, finger);
            QApplication::processEvents();
        }
    };
    drag(); // fetches the tiles that come into view first
    QTest::qWait(500);
    const auto draw = [&] {
        for (int frame = 0; frame < frames; ++frame) {
            tiles.offset += step(frame);
            tiles.update();
            QApplication::processEvents();
        }
    };
    Bench::compare("a dragged frame, 1920 x 1080", columns * rows, {drag}, {draw}, frameGoal, 11,
                   frames);
}

/// Fetches `paths` one after the other, with the least possible work.
void fetchBare(const QByteArray &server, const QStringList &paths)
{
    const QTemporaryDir folder;
    QNetworkAccessManager manager;
    auto *cache = new QNetworkDiskCache(&manager);
    cache->setCacheDirectory(folder.path());
    manager.setCache(cache);
    QEventLoop loop;
    qsizetype next = 0;
    const auto fetch = [&] {
        QNetworkRequest request(QUrl(server + paths.at(next).toLatin1()));
        request.setRawHeader("User-Agent", HttpTileFetcher::userAgent());
        ++next;
        manager.get(request);
    };
    QObject::connect(&manager, &QNetworkAccessManager::finished, &loop, [&](QNetworkReply *reply) {
        reply->deleteLater();
        QPixmap tile;
        tile.loadFromData(reply->readAll());
        if (next < paths.size())
            fetch();
        else
            loop.quit();
    });
    fetch();
    loop.exec();
}

void measureTiles(TileHost &host)
{
    constexpr int tiles = 200;
    // 20 by 10 tiles, including those fetched beyond the view.
    const QSize view(18 * WebMercator::tileExtent, 8 * WebMercator::tileExtent);
    std::unique_ptr<TestHome> home;
    std::unique_ptr<MapsCore> core;
    QStringList asked;
    const Bench::Work chain{[&] {
                                core->setFetching(true);
                                while (host.paths.size() < tiles)
                                    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
                                // The time ends when the last tile is there.
                                QEventLoop loop;
                                QObject::connect(core.get(), &MapsCore::updated, &loop,
                                                 &QEventLoop::quit);
                                loop.exec();
                                asked = host.paths;
                            },
                            [&] {
                                core.reset();
                                home = std::make_unique<TestHome>();
                                core = std::make_unique<MapsCore>();
                                core->setFetching(false);
                                core->setSize(view);
                                core->setCenter(59.9F, 10.7F);
                                host.paths.clear();
                            }};
    chain.prepare();
    chain.run();
    if (asked.size() != tiles)
        qFatal("%d tiles instead of %d", int(asked.size()), tiles);
    Bench::compare("fetching tiles from loopback", tiles, chain, {[&] {
                       fetchBare(host.address(), asked);
                   }},
                   tilesGoal);
}

} // namespace

/// Usage: bench_map
int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    const TestHome home;
    TileHost host;
    qputenv("TROLLEO_TILE_SERVER", host.address());
    Q_INIT_RESOURCE(pictures);
    measureFrames(host);
    host.paths.clear();
    measureTiles(host);
    return 0;
}
