// SPDX-License-Identifier: MIT
#include <cmath>
#include <limits>
#include <memory>

#include <fcntl.h>
#include <unistd.h>

#include <QDirIterator>
#include <QFile>
#include <QImage>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPainter>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTcpSocket>
#include <QtTest>

#include "map/mapscore.h"
#include "map/webmercator.h"
#include "network/tileimage.h"
#include "tests/support/testhome.h"
#include "tests/support/tilehost.h"

// The pictures of the map are compiled into a static library.
static void initPictures()
{
    Q_INIT_RESOURCE(pictures);
}

/// A finished reply with contents that a server could send.
class CannedReply : public QNetworkReply
{
public:
    CannedReply(const QByteArray &body, const QPoint &tile)
        : bytes(body)
    {
        QNetworkRequest request(QUrl("http://127.0.0.1/16/1/1.png"));
        request.setAttribute(QNetworkRequest::User, tile);
        setRequest(request);
        open(ReadOnly);
    }
    void abort() override {}
    qint64 bytesAvailable() const override
    {
        return bytes.size() + QNetworkReply::bytesAvailable();
    }

protected:
    qint64 readData(char *data, qint64 size) override
    {
        const qint64 count = std::min<qint64>(size, bytes.size());
        std::copy_n(bytes.constData(), count, data);
        bytes.remove(0, count);
        return count;
    }

private:
    QByteArray bytes;
};

/// Suppresses the output of libraries while it exists.
class Silence
{
public:
    Silence()
        : kept(dup(STDERR_FILENO))
    {
        const int nowhere = open("/dev/null", O_WRONLY);
        dup2(nowhere, STDERR_FILENO);
        close(nowhere);
    }
    ~Silence()
    {
        dup2(kept, STDERR_FILENO);
        close(kept);
    }
    Silence(const Silence &) = delete;
    Silence &operator=(const Silence &) = delete;

private:
    int kept;
};

using Damage = std::function<QByteArray(QByteArray file)>;
Q_DECLARE_METATYPE(Damage)

class TestMapsCore : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        initPictures();
    }
    void init();
    void cleanup();

    void withoutTheModule(); // before another function loads it
    void requestsFollowTheRule_data();
    void requestsFollowTheRule();
    void oneRequestAtATime();
    void programSaysWhoItIs();
    void nothingTellsWhoComesAgain();
    void tilesAreDrawnWhereTheyBelong();
    void emptyViewsComputeNothing_data();
    void emptyViewsComputeNothing();
    void firstTileOfTheWorldIsNeverFetched();
    void panningMovesTheMap();
    void slowDragsDoNotDrift();
    void farTilesAreDroppedByTheNextReply();
    void secondStartTakesFreshTilesFromTheDisk();
    void oldTilesAreShownWithoutANetwork_data();
    void oldTilesAreShownWithoutANetwork();
    void failedTileIsGreyAndTheNextIsFetched_data();
    void failedTileIsGreyAndTheNextIsFetched();
    void serversThatNeverFinishAreLeft();
    void redirectedTileKeepsItsPlace();
    void redirectedTileIsKeptOnTheDisk();
    void redirectionsAreNotKept();
    void oldTilesAreShownWhenARedirectionFails_data();
    void oldTilesAreShownWhenARedirectionFails();
    void redirectionsDoNotReachLocalServices_data();
    void redirectionsDoNotReachLocalServices();
    void redirectionsAreLeftWithTheView_data();
    void redirectionsAreLeftWithTheView();
    void endlessBodyIsNotTakenIn();
    void pageInsteadOfATileIsForgotten();
    void damagedTilesOfTheDiskAreFetchedAgain_data();
    void damagedTilesOfTheDiskAreFetchedAgain();
    void damagedTileThatTheServerConfirmsIsFetchedAgain();
    void coordinatesThatNoMapShows_data();
    void coordinatesThatNoMapShows();
    void markersStandAtTheirPlaces();
    void markersGrowWithTheScreen();
    void pinIsPutWhereThePersonPoints();
    void pinBeyondTheDateLine();
    void nothingIsFetchedUnseen();
    void deletedWithARequestOnItsWay();
    void changedZoomShowsNoOldTiles();
    void damagedPictures();

private:
    /// Returns a map of that size whose centre is at that place of the tile grid.
    std::unique_ptr<MapsCore> mapAt(double tx, double ty, const QSize &size, int zoom = 16);
    static void moveTo(MapsCore &core, double tx, double ty, int zoom = 16);
    static QImage drawing(MapsCore &core, const QSize &size);
    static QStringList sorted(QStringList list)
    {
        list.sort();
        return list;
    }
    /// Shows a map until all its tiles have arrived.
    void visit(double tx, double ty, const QSize &size, int tiles);
    /// Waits until the host has received that many requests, and no more.
    void waitForPaths(int count);
    void redirectElsewhere();
    int damageCache(const Damage &damage) const;

    std::unique_ptr<TestHome> home;
    std::unique_ptr<TileHost> host;
};

static const QColor grey(Qt::lightGray);

void TestMapsCore::init()
{
    home = std::make_unique<TestHome>();
    host = std::make_unique<TileHost>();
    qputenv("TROLLEO_TILE_SERVER", host->address());
}

void TestMapsCore::cleanup()
{
    host.reset();
    home.reset();
}

void TestMapsCore::moveTo(MapsCore &core, double tx, double ty, int zoom)
{
    core.setCenter(float(WebMercator::latitudeFromTile(ty, zoom)),
                   float(WebMercator::longitudeFromTile(tx, zoom)));
}

std::unique_ptr<MapsCore> TestMapsCore::mapAt(double tx, double ty, const QSize &size, int zoom)
{
    auto core = std::make_unique<MapsCore>();
    core->setSize(size);
    core->setZoom(zoom);
    moveTo(*core, tx, ty, zoom);
    return core;
}

QImage TestMapsCore::drawing(MapsCore &core, const QSize &size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::black);
    QPainter painter(&image);
    core.render(&painter, image.rect());
    return image;
}

void TestMapsCore::visit(double tx, double ty, const QSize &size, int tiles)
{
    const auto core = mapAt(tx, ty, size);
    const QSignalSpy updated(core.get(), &MapsCore::updated);
    QTRY_COMPARE(updated.count(), tiles);
}

void TestMapsCore::waitForPaths(int count)
{
    QTRY_COMPARE(host->paths.size(), count);
    QTest::qWait(50);
    QCOMPARE(host->paths.size(), count);
}

void TestMapsCore::withoutTheModule()
{
    const QStringList paths = QCoreApplication::libraryPaths();
    QCoreApplication::setLibraryPaths({});
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^Module trolleo-network: "));
    const auto core = mapAt(100.25, 200.25, {256, 256});
    core->pan({300, 300});
    QCOMPARE(drawing(*core, {256, 256}).pixelColor(10, 10), QColor(Qt::lightGray));
    QCoreApplication::setLibraryPaths(paths);
    core->pan({1, 1});
    QTRY_VERIFY(!host->paths.isEmpty());
}

void TestMapsCore::requestsFollowTheRule_data()
{
    QTest::addColumn<QPointF>("center");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("zoom");
    QTest::addColumn<QStringList>("paths");
    // The middle tile's corner is at 128 - 64 = 64 in both directions: one more tile is needed to
    // the left and above, none to the right and below. With the column and the row beyond the view
    // that is 99..101 and 199..201. The rightmost column is fetched first, from its top.
    QTest::newRow("a little more than a tile")
        << QPointF(100.25, 200.25) << QSize(256, 256) << 16
        << QStringList{"/16/101/199.png", "/16/101/200.png", "/16/101/201.png",
                       "/16/100/199.png", "/16/100/200.png", "/16/100/201.png",
                       "/16/99/199.png",  "/16/99/200.png",  "/16/99/201.png"};
    // The corner is at 300 - 128 = 172 and 150 - 192 = -42: columns 999 to 1001 and rows 500 to 501
    // cover the view.
    QTest::newRow("wide") << QPointF(1000.5001, 500.75) << QSize(600, 300) << 16
                          << QStringList{"/16/1002/500.png", "/16/1002/501.png", "/16/1002/502.png",
                                         "/16/1001/500.png", "/16/1001/501.png", "/16/1001/502.png",
                                         "/16/1000/500.png", "/16/1000/501.png", "/16/1000/502.png",
                                         "/16/999/500.png",  "/16/999/501.png",  "/16/999/502.png"};
    // The corner is at 128 - 16 = 112: columns 16382 to 16383, and the world ends at the latter.
    // The rows are the same.
    QTest::newRow("corner of the world")
        << QPointF(16383.0625, 16383.0625) << QSize(256, 256) << 14
        << QStringList{"/14/16383/16382.png", "/14/16383/16383.png", "/14/16382/16382.png",
                       "/14/16382/16383.png"};
}

void TestMapsCore::requestsFollowTheRule()
{
    QFETCH(QPointF, center);
    QFETCH(QSize, size);
    QFETCH(int, zoom);
    QFETCH(QStringList, paths);
    const auto core = mapAt(center.x(), center.y(), size, zoom);
    waitForPaths(int(paths.size()));
    QCOMPARE(host->paths, paths);
    core->invalidate();
    QTest::qWait(50);
    QCOMPARE(host->paths, paths);
}

void TestMapsCore::oneRequestAtATime()
{
    QList<QPair<QTcpSocket *, QString>> asked;
    host->answer = [&asked](QTcpSocket *socket, const QString &path) {
        asked.append({socket, path});
    };
    const auto core = mapAt(100.25, 200.25, {256, 256});
    for (int count = 1; count <= 9; ++count) {
        QTRY_COMPARE(asked.size(), count);
        core->invalidate();
        core->pan({1, 0});
        QTest::qWait(20);
        QCOMPARE(asked.size(), count);
        host->sendTile(asked.last().first, asked.last().second);
    }
    QCOMPARE(host->mostWaiting, 1);
}

void TestMapsCore::programSaysWhoItIs()
{
    const auto core = mapAt(100.25, 200.25, {1, 1});
    QTRY_VERIFY(!host->headers.isEmpty());
    const QRegularExpression pattern("^Trolleo/\\d+\\.\\d+\\.\\d+ \\([^ @]+@[^ @]+\\)$");
    QVERIFY(pattern.match(host->headers.first().value("user-agent")).hasMatch());
}

void TestMapsCore::nothingTellsWhoComesAgain()
{
    host->answer = [this](QTcpSocket *socket, const QString &path) {
        host->finish(socket, TileHost::response(TileHost::picture(TileHost::colorOf(path)),
                                                "image/png", "Set-Cookie: who=me; Path=/\r\n"));
    };
    const auto core = mapAt(100.25, 200.25, {1, 1});
    waitForPaths(4);
    for (const auto &headers : host->headers)
        QVERIFY(!headers.contains("cookie"));
}

void TestMapsCore::tilesAreDrawnWhereTheyBelong()
{
    const QSize size(256, 256);
    const auto core = mapAt(100.25, 200.25, size);
    QSignalSpy updated(core.get(), &MapsCore::updated);
    waitForPaths(9);
    QTRY_COMPARE(updated.count(), 9);
    // The fifth is the middle tile, whose corner is at (64, 64).
    QCOMPARE(host->paths.at(4), "/16/100/200.png");
    QCOMPARE(updated.at(4).first().toRect(), QRect(64, 64, 256, 256));
    const QImage image = drawing(*core, size);
    QCOMPARE(image.pixelColor(64, 64), TileHost::colorOf("/16/100/200.png"));
    QCOMPARE(image.pixelColor(255, 255), TileHost::colorOf("/16/100/200.png"));
    QCOMPARE(image.pixelColor(63, 64), TileHost::colorOf("/16/99/200.png"));
    QCOMPARE(image.pixelColor(64, 63), TileHost::colorOf("/16/100/199.png"));
    QCOMPARE(image.pixelColor(0, 0), TileHost::colorOf("/16/99/199.png"));
}

void TestMapsCore::emptyViewsComputeNothing_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("no width") << QSize(0, 300);
    QTest::newRow("no height") << QSize(300, 0);
    QTest::newRow("less than nothing") << QSize(-1, -1);
}

void TestMapsCore::emptyViewsComputeNothing()
{
    QFETCH(QSize, size);
    MapsCore core;
    QSignalSpy updated(&core, &MapsCore::updated);
    core.setSize(size);
    core.setCenter(10, 20);
    core.setStorePin(10, 20);
    QTest::qWait(50);
    QCOMPARE(updated.count(), 0);
    QCOMPARE(host->paths, QStringList());
}

void TestMapsCore::firstTileOfTheWorldIsNeverFetched()
{
    // Rows 0 to 2 of columns 0 to 2. The topmost tile of column 0 is (0, 0), which means none.
    const auto core = mapAt(0.75, 0.75, {256, 256}, 14);
    waitForPaths(6);
    QCOMPARE(host->paths, (QStringList{"/14/2/0.png", "/14/2/1.png", "/14/2/2.png", "/14/1/0.png",
                                       "/14/1/1.png", "/14/1/2.png"}));
    const QImage image = drawing(*core, {256, 256});
    QCOMPARE(image.pixelColor(0, 0), grey);
    QCOMPARE(image.pixelColor(255, 0), TileHost::colorOf("/14/1/0.png"));
}

void TestMapsCore::panningMovesTheMap()
{
    const auto core = mapAt(100.25, 200.25, {256, 256});
    waitForPaths(9);
    core->pan({-64, 32});
    QVERIFY(core->centerLongitude() == float(WebMercator::longitudeFromTile(100.5, 16)));
    QVERIFY(core->centerLatitude() == float(WebMercator::latitudeFromTile(200.125, 16)));
    // The corner of the middle tile moves as well.
    const QImage image = drawing(*core, {256, 256});
    QCOMPARE(image.pixelColor(0, 96), TileHost::colorOf("/16/100/200.png"));
    QCOMPARE(image.pixelColor(0, 95), TileHost::colorOf("/16/100/199.png"));
}

void TestMapsCore::slowDragsDoNotDrift()
{
    // At this zoom a float has a resolution of only half a pixel at a longitude of 170 degrees.
    const auto core = mapAt(64500.25, 200.25, {256, 256}, 16);
    const float latitude = core->centerLatitude();
    const float longitude = core->centerLongitude();
    for (int step = 0; step < 1000; ++step)
        core->pan({-1, -1});
    for (int step = 0; step < 10; ++step)
        core->pan({100, 100});
    QVERIFY(core->centerLatitude() == latitude);
    QVERIFY(core->centerLongitude() == longitude);
    // There is no rounding to whole pixels either: a thousand steps are a thousand pixels.
    for (int step = 0; step < 1024; ++step)
        core->pan({-1, 0});
    QVERIFY(core->centerLongitude() ==
            float(WebMercator::longitudeFromTile(
                WebMercator::tileForCoordinate(latitude, longitude, 16).x() + 4, 16)));
}

void TestMapsCore::farTilesAreDroppedByTheNextReply()
{
    const QSize size(256, 256);
    const auto core = mapAt(100.25, 200.25, size);
    waitForPaths(9);
    QTcpSocket *held = nullptr;
    QString heldPath;
    host->answer = [&](QTcpSocket *socket, const QString &path) {
        held = socket;
        heldPath = path;
    };
    const QColor middle = TileHost::colorOf("/16/100/200.png");
    moveTo(*core, 110.25, 200.25);
    QTRY_VERIFY(held);
    moveTo(*core, 100.25, 200.25);
    QCOMPARE(drawing(*core, size).pixelColor(128, 128), middle);

    moveTo(*core, 110.25, 200.25);
    QSignalSpy updated(core.get(), &MapsCore::updated);
    host->sendTile(std::exchange(held, nullptr), heldPath);
    QTRY_COMPARE(updated.count(), 1);
    moveTo(*core, 100.25, 200.25);
    QCOMPARE(drawing(*core, size).pixelColor(128, 128), grey);
    // Two tiles beyond the view are kept.
    moveTo(*core, 110.25, 200.25);
    QTRY_VERIFY(held);
    host->answer = [this](QTcpSocket *socket, const QString &path) {
        host->sendTile(socket, path);
    };
    host->sendTile(std::exchange(held, nullptr), host->paths.last());
    QTRY_COMPARE(drawing(*core, size).pixelColor(128, 128), TileHost::colorOf("/16/110/200.png"));
    waitForPaths(18);
    moveTo(*core, 112.25, 200.25);
    waitForPaths(18 + 6); // columns 112 and 113; 111 was kept
    moveTo(*core, 110.25, 200.25);
    QCOMPARE(drawing(*core, size).pixelColor(0, 0), TileHost::colorOf("/16/109/199.png"));
}

void TestMapsCore::secondStartTakesFreshTilesFromTheDisk()
{
    visit(100.25, 200.25, {256, 256}, 9);
    const auto core = mapAt(100.25, 200.25, {256, 256});
    QTRY_COMPARE(drawing(*core, {256, 256}).pixelColor(0, 0), TileHost::colorOf("/16/99/199.png"));
    QTest::qWait(50);
    QCOMPARE(host->paths.size(), 9);
}

void TestMapsCore::oldTilesAreShownWithoutANetwork_data()
{
    // The server must be asked again each time.
    QTest::addColumn<QByteArray>("headers");
    QTest::newRow("expired") << QByteArray("Date: Sat, 01 Jan 2022 00:00:00 GMT\r\n"
                                           "Expires: Sat, 01 Jan 2022 01:00:00 GMT\r\n");
    QTest::newRow("must be asked for") << QByteArray("Cache-Control: max-age=3600, no-cache\r\n");
}

void TestMapsCore::oldTilesAreShownWithoutANetwork()
{
    QFETCH(QByteArray, headers);
    host->answer = [this, &headers](QTcpSocket *socket, const QString &path) {
        host->finish(socket, TileHost::response(TileHost::picture(TileHost::colorOf(path)),
                                                "image/png", headers));
    };
    visit(100.25, 200.25, {256, 256}, 9);
    visit(100.25, 200.25, {256, 256}, 9);
    QCOMPARE(host->paths.size(), 18);
    // A server that fails is treated like none.
    host->answer = [this](QTcpSocket *socket, const QString &) {
        host->finish(socket, TileHost::response("no", "text/plain", "", "503 Overloaded"));
    };
    {
        const auto core = mapAt(100.25, 200.25, {256, 256});
        waitForPaths(27);
        QTRY_COMPARE(drawing(*core, {256, 256}).pixelColor(0, 0),
                     TileHost::colorOf("/16/99/199.png"));
    }
    host->close();
    for (QTcpSocket *socket : host->findChildren<QTcpSocket *>())
        socket->abort();
    const auto core = mapAt(100.25, 200.25, {256, 256});
    QSignalSpy updated(core.get(), &MapsCore::updated);
    QTRY_COMPARE(updated.count(), 9);
    QCOMPARE(drawing(*core, {256, 256}).pixelColor(0, 0), TileHost::colorOf("/16/99/199.png"));
    // A tile that was never cached is grey, and is requested once.
    updated.clear();
    moveTo(*core, 300.25, 200.25);
    QTRY_COMPARE(updated.count(), 10);
    QCOMPARE(drawing(*core, {256, 256}).pixelColor(0, 0), grey);
}

using Answer = std::function<void(TileHost &, QTcpSocket *)>;
Q_DECLARE_METATYPE(Answer)

static Answer status(const QByteArray &line)
{
    return [line](TileHost &host, QTcpSocket *socket) {
        host.finish(socket, TileHost::response("no tile", "text/plain", "", line));
    };
}

static Answer body(const QByteArray &bytes, const QByteArray &type = "image/png")
{
    return [bytes, type](TileHost &host, QTcpSocket *socket) {
        host.finish(socket, TileHost::response(bytes, type));
    };
}

static Answer redirect(const QByteArray &target)
{
    return [target](TileHost &host, QTcpSocket *socket) {
        host.finish(socket, TileHost::response("", "text/plain", "Location: " + target + "\r\n",
                                               "302 Found"));
    };
}

void TestMapsCore::failedTileIsGreyAndTheNextIsFetched_data()
{
    QTest::addColumn<Answer>("answer");
    QTest::newRow("404") << status("404 Not Found");
    QTest::newRow("500") << status("500 Internal Server Error");
    QTest::newRow("418") << status("418 I'm a teapot");
    QTest::newRow("429") << status("429 Too Many Requests");
    QTest::newRow("401") << Answer([](TileHost &server, QTcpSocket *socket) {
        server.finish(socket, TileHost::response("", "text/plain",
                                                 "WWW-Authenticate: Basic realm=\"tiles\"\r\n",
                                                 "401 Unauthorized"));
    });
    QTest::newRow("page") << body("<html><body>Welcome to our hotspot</body></html>", "text/html");
    QTest::newRow("nothing") << body("");
    const QByteArray png = TileHost::picture(Qt::red);
    const QByteArray jpeg = TileHost::picture(Qt::red, "jpg");
    QTest::newRow("half a png") << body(png.left(png.size() / 2));
    QTest::newRow("half a jpeg") << body(jpeg.left(jpeg.size() / 2), "image/jpeg");
    QTest::newRow("huge picture") << body(TileHost::picture(Qt::red, "png", 5000));
    QTest::newRow("3 MiB") << body(QByteArray(3 * 1024 * 1024, 'x'));
    QTest::newRow("reset in the body") << Answer([](TileHost &, QTcpSocket *socket) {
        socket->write("HTTP/1.1 200 OK\r\nContent-Type: image/png\r\nContent-Length: 9000\r\n\r\n"
                      "\x89PNG");
        socket->flush();
        QTimer::singleShot(20, socket, &QTcpSocket::abort);
    });
    QTest::newRow("end at once") << Answer(
        [](TileHost &, QTcpSocket *socket) { socket->disconnectFromHost(); });
    QTest::newRow("no HTTP") << Answer([](TileHost &server, QTcpSocket *socket) {
        server.finish(socket, "rubbish rubbish rubbish\r\n\r\n");
        socket->disconnectFromHost();
    });
    QTest::newRow("redirect to a file") << redirect("file:///etc/passwd");
    QTest::newRow("redirect to ftp") << redirect("ftp://127.0.0.1/tile.png");
    QTest::newRow("redirect to data") << redirect("data:image/png;base64," + png.toBase64());
    QTest::newRow("redirect to nowhere") << redirect("");
    QTest::newRow("redirect loop") << redirect("/16/101/199.png");
}

void TestMapsCore::failedTileIsGreyAndTheNextIsFetched()
{
    QFETCH(Answer, answer);
    const QString bad = "/16/101/199.png"; // the first
    host->answer = [&](QTcpSocket *socket, const QString &path) {
        if (path == bad)
            answer(*host, socket);
        else
            host->sendTile(socket, path);
    };
    const auto core = mapAt(100.5001, 200.25, {300, 256});
    QTRY_VERIFY(host->paths.contains("/16/99/201.png"));
    QTRY_COMPARE(drawing(*core, {300, 256}).pixelColor(0, 0), TileHost::colorOf("/16/99/199.png"));
    QCOMPARE(drawing(*core, {300, 256}).pixelColor(299, 0), grey);
    QCOMPARE(host->mostWaiting, 1);
    // It is not requested again while the view stays the same.
    const auto count = host->paths.count(bad);
    core->invalidate();
    QTest::qWait(50);
    QCOMPARE(host->paths.count(bad), count);
    QVERIFY(count <= 7); // a redirection loop is given up
}

void TestMapsCore::serversThatNeverFinishAreLeft()
{
    // Three servers at once: one that sends nothing, one that sends a byte per second, and one that
    // sends half a redirection.
    TileHost silent;
    TileHost slow;
    TileHost half;
    half.answer = [&half](QTcpSocket *socket, const QString &path) {
        if (path == "/16/101/199.png")
            socket->write("HTTP/1.1 302 Found\r\nLocation: /second\r\nContent-Length: 99\r\n\r\n");
        else if (path != "/second")
            half.sendTile(socket, path);
    };
    silent.answer = [&silent](QTcpSocket *socket, const QString &path) {
        if (path != "/16/101/199.png")
            silent.sendTile(socket, path);
    };
    slow.answer = [&slow](QTcpSocket *socket, const QString &path) {
        if (path != "/16/101/199.png") {
            slow.sendTile(socket, path);
            return;
        }
        socket->write("HTTP/1.1 200 OK\r\nContent-Type: image/png\r\nContent-Length: 900\r\n\r\n");
        auto *timer = new QTimer(socket);
        connect(timer, &QTimer::timeout, socket, [socket] { socket->write("x"); });
        timer->start(1000);
    };
    std::vector<std::unique_ptr<MapsCore>> maps;
    for (const TileHost *server : {&silent, &slow, &half}) {
        qputenv("TROLLEO_TILE_SERVER", server->address());
        maps.push_back(mapAt(100.25, 200.25, {256, 256}));
    }
    QElapsedTimer clock;
    clock.start();
    QTRY_COMPARE_WITH_TIMEOUT(silent.paths.size(), 9, 40000);
    QTRY_COMPARE_WITH_TIMEOUT(slow.paths.size(), 9, 40000);
    QTRY_COMPARE_WITH_TIMEOUT(half.paths.size(), 9, 40000);
    QVERIFY(!half.paths.contains("/second"));
    QVERIFY(clock.elapsed() >= 29000);
}

/// From now on every tile is blue, and at another address.
void TestMapsCore::redirectElsewhere()
{
    host->answer = [this](QTcpSocket *socket, const QString &path) {
        if (path.startsWith("/elsewhere"))
            host->finish(socket, TileHost::response(TileHost::picture(Qt::blue)));
        else
            redirect("/elsewhere" + path.toUtf8())(*host, socket);
    };
}

void TestMapsCore::redirectedTileKeepsItsPlace()
{
    redirectElsewhere();
    const auto core = mapAt(100.25, 200.25, {1, 1});
    waitForPaths(8);
    QTRY_COMPARE(drawing(*core, {1, 1}).pixelColor(0, 0), QColor(Qt::blue));
}

void TestMapsCore::redirectedTileIsKeptOnTheDisk()
{
    redirectElsewhere();
    visit(100.25, 200.25, {1, 1}, 4);
    QCOMPARE(host->paths.size(), 8);
    const auto core = mapAt(100.25, 200.25, {1, 1});
    QTRY_COMPARE(drawing(*core, {1, 1}).pixelColor(0, 0), QColor(Qt::blue));
    QTest::qWait(50);
    QCOMPARE(host->paths.size(), 8);
}

void TestMapsCore::redirectionsAreNotKept()
{
    // Two hops, with bodies and for ever, as web servers send them.
    host->answer = [&](QTcpSocket *socket, const QString &path) {
        const auto move = [&](const QByteArray &to) {
            host->finish(socket,
                         TileHost::response("<html>Moved</html>", "text/html",
                                            "Cache-Control: max-age=3600\r\nLocation: " + to +
                                                path.mid(path.lastIndexOf('/')).toUtf8() + "\r\n",
                                            "301 Moved Permanently"));
        };
        if (path.startsWith("/16/"))
            move("/second");
        else if (path.startsWith("/second/"))
            move("/third");
        else
            host->finish(socket, TileHost::response("no", "text/plain", "", "503 Overloaded"));
    };
    visit(100.25, 200.25, {1, 1}, 4);
    QCOMPARE(host->paths.filter("/third/").size(), 4);
    // The first server has the tiles again.
    host->answer = [this](QTcpSocket *socket, const QString &path) {
        host->sendTile(socket, path);
    };
    const auto core = mapAt(100.25, 200.25, {1, 1});
    QTRY_COMPARE(drawing(*core, {1, 1}).pixelColor(0, 0), TileHost::colorOf("/16/100/200.png"));
}

void TestMapsCore::oldTilesAreShownWhenARedirectionFails_data()
{
    QTest::addColumn<QByteArray>("target");
    QTest::newRow("to a server that fails") << QByteArray("/elsewhere");
    QTest::newRow("to the local network") << QByteArray("http://192.168.1.1");
    QTest::newRow("to a page") << QByteArray("/page");
    QTest::newRow("and is cut short") << QByteArray("/cut");
    QTest::newRow("in a circle") << QByteArray();
}

void TestMapsCore::oldTilesAreShownWhenARedirectionFails()
{
    QFETCH(QByteArray, target);
    host->answer = [this](QTcpSocket *socket, const QString &path) {
        host->finish(socket, TileHost::response(TileHost::picture(TileHost::colorOf(path)),
                                                "image/png", "Cache-Control: no-cache\r\n"));
    };
    visit(100.25, 200.25, {1, 1}, 4);
    host->answer = [&](QTcpSocket *socket, const QString &path) {
        if (path.startsWith("/elsewhere")) {
            host->finish(socket, TileHost::response("no", "text/plain", "", "503 Overloaded"));
        } else if (path.startsWith("/page")) {
            host->finish(socket, TileHost::response("<html>Welcome</html>", "text/html"));
        } else if (target == "/cut") {
            socket->write("HTTP/1.1 302 Found\r\nLocation: /cut\r\nCache-Control: max-age=60\r\n"
                          "Transfer-Encoding: chunked\r\n\r\n20\r\n<html>");
            socket->disconnectFromHost();
        } else {
            host->finish(socket, TileHost::response("<html>Moved</html>", "text/html",
                                                    "Location: " + target + path.toUtf8() + "\r\n",
                                                    "302 Found"));
        }
    };
    for (int start = 0; start < 2; ++start) { // nothing is lost by the first
        const auto core = mapAt(100.25, 200.25, {1, 1});
        const QSignalSpy updated(core.get(), &MapsCore::updated);
        QTRY_COMPARE(updated.count(), 4);
        QCOMPARE(drawing(*core, {1, 1}).pixelColor(0, 0), TileHost::colorOf("/16/100/200.png"));
    }
}

void TestMapsCore::redirectionsDoNotReachLocalServices_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("by name") << QByteArray("localhost");
    QTest::newRow("by IPv6") << QByteArray("[::ffff:127.0.0.1]");
}

void TestMapsCore::redirectionsDoNotReachLocalServices()
{
    QFETCH(QByteArray, name);
    const TileHost other;
    const QByteArray place = "http://" + name + ":" + QByteArray::number(other.serverPort());
    // The second hop leads there.
    host->answer = [&](QTcpSocket *socket, const QString &path) {
        const bool isSecond = path.startsWith("/second");
        redirect(isSecond ? place + path.toUtf8() : "/second" + path.toUtf8())(*host, socket);
    };
    visit(100.25, 200.25, {1, 1}, 4);
    QCOMPARE(host->paths.size(), 8);
    QCOMPARE(other.paths, QStringList());
}

void TestMapsCore::redirectionsAreLeftWithTheView_data()
{
    QTest::addColumn<bool>("isHidden");
    QTest::newRow("hidden") << true;
    QTest::newRow("at another zoom level") << false;
}

void TestMapsCore::redirectionsAreLeftWithTheView()
{
    QFETCH(bool, isHidden);
    host->answer = [this](QTcpSocket *socket, const QString &path) {
        if (path.startsWith("/16/"))
            redirect("http://localhost:9" + path.toUtf8())(*host, socket);
        else
            host->sendTile(socket, path);
    };
    const auto core = mapAt(100.25, 200.25, {1, 1});
    const QSignalSpy updated(core.get(), &MapsCore::updated);
    auto *manager = core->findChild<QNetworkAccessManager *>();
    QVERIFY(manager);
    // The name is being looked up then.
    connect(manager, &QNetworkAccessManager::finished, core.get(), [&] {
        if (isHidden)
            core->setFetching(false);
        else if (host->paths.size() == 1)
            core->setZoom(15);
    });
    QTRY_VERIFY(!host->paths.isEmpty());
    if (isHidden) {
        QTest::qWait(200);
        QCOMPARE(updated.count(), 0);
        QCOMPARE(host->paths.size(), 1);
        return;
    }
    moveTo(*core, 100.25, 200.25, 15);
    QTRY_COMPARE(host->paths.filter("/15/").size(), 4); // the redirected one among them
    QCOMPARE(host->paths.filter("/16/").size(), 1);
}

void TestMapsCore::endlessBodyIsNotTakenIn()
{
    qint64 sent = 0;
    const QByteArray chunk(64 * 1024, 'x');
    host->answer = [&](QTcpSocket *socket, const QString &path) {
        if (path != "/16/101/200.png") {
            host->sendTile(socket, path);
            return;
        }
        socket->write("HTTP/1.1 200 OK\r\nContent-Type: image/png\r\n\r\n");
        const auto more = [&sent, &chunk, socket] {
            if (socket->bytesToWrite() == 0)
                sent += socket->write(chunk);
        };
        connect(socket, &QTcpSocket::bytesWritten, socket, more);
        more();
    };
    const auto core = mapAt(100.25, 200.25, {1, 1});
    QTRY_COMPARE(host->paths.size(), 4);
    // The limit, plus the capacity of the buffers of two sockets.
    QVERIFY(sent >= TileImage::largestBody);
    QVERIFY2(sent < TileImage::largestBody + 16 * 1024 * 1024, qPrintable(QString::number(sent)));
}

void TestMapsCore::pageInsteadOfATileIsForgotten()
{
    host->answer = [this](QTcpSocket *socket, const QString &) {
        host->finish(socket, TileHost::response("<html>Welcome</html>", "text/html"));
    };
    visit(100.25, 200.25, {1, 1}, 4);
    host->answer = [this](QTcpSocket *socket, const QString &path) {
        host->sendTile(socket, path);
    };
    const auto core = mapAt(100.25, 200.25, {1, 1});
    waitForPaths(8);
    QTRY_COMPARE(drawing(*core, {1, 1}).pixelColor(0, 0), TileHost::colorOf("/16/100/200.png"));
}

void TestMapsCore::damagedTilesOfTheDiskAreFetchedAgain_data()
{
    QTest::addColumn<Damage>("damage");
    const auto cut = [](double part) {
        return [part](QByteArray file) {
            return file.left(qsizetype(part * double(file.size())));
        };
    };
    QTest::newRow("empty") << Damage(cut(0));
    QTest::newRow("one byte") << Damage([](QByteArray file) { return file.left(1); });
    QTest::newRow("cut in its description") << Damage(cut(0.2));
    QTest::newRow("cut in the picture") << Damage(cut(0.9));
    QTest::newRow("without its last byte")
        << Damage([](QByteArray file) { return file.chopped(1); });
    QTest::newRow("without the picture")
        << Damage([](QByteArray file) { return file.left(file.indexOf("\x89PNG")); });
    QTest::newRow("no picture") << Damage([](QByteArray file) {
        const auto begin = file.indexOf("\x89PNG");
        return file.left(begin) + QByteArray(file.size() - begin, 'x');
    });
    QTest::newRow("zeroes") << Damage(
        [](QByteArray file) { return QByteArray(file.size(), '\0'); });
    QTest::newRow("other bytes in its description") << Damage([](QByteArray file) {
        for (int at = 8; at < 200; at += 7)
            file[at] = char(0xff);
        return file;
    });
    QTest::newRow("longer") << Damage([](QByteArray file) { return file + QByteArray(5000, 'x'); });
}

/// Damages each file of the disk cache, and returns their number.
int TestMapsCore::damageCache(const Damage &damage) const
{
    int files = 0;
    for (QDirIterator each(home->path() + "/.cache", {"*.d"}, QDir::Files,
                           QDirIterator::Subdirectories);
         each.hasNext();) {
        QFile file(each.next());
        if (!file.open(QIODevice::ReadWrite))
            continue;
        const QByteArray damaged = damage(file.readAll());
        files += file.resize(0) && file.seek(0) && file.write(damaged) == damaged.size() ? 1 : 0;
    }
    return files;
}

void TestMapsCore::damagedTilesOfTheDiskAreFetchedAgain()
{
    QFETCH(Damage, damage);
    const bool isPictureWhole = QByteArray(QTest::currentDataTag()) == "longer";
    visit(100.25, 200.25, {1, 1}, 4);
    QCOMPARE(damageCache(damage), 4);
    const auto core = mapAt(100.25, 200.25, {1, 1});
    const QSignalSpy updated(core.get(), &MapsCore::updated);
    QTRY_COMPARE(updated.count(), 4); // without waiting for the end of a transfer
    QCOMPARE(drawing(*core, {1, 1}).pixelColor(0, 0), TileHost::colorOf("/16/100/200.png"));
    QCOMPARE(host->paths.size(), isPictureWhole ? 4 : 8);
}

void TestMapsCore::damagedTileThatTheServerConfirmsIsFetchedAgain()
{
    host->answer = [this](QTcpSocket *socket, const QString &path) {
        const bool isCondition = host->headers.last().contains("if-none-match");
        const QByteArray headers = "ETag: \"1\"\r\nCache-Control: max-age=3600\r\n";
        host->finish(socket, isCondition
                                 ? "HTTP/1.1 304 Not Modified\r\n" + headers + "\r\n"
                                 : TileHost::response(TileHost::picture(TileHost::colorOf(path)),
                                                      "image/png", headers));
    };
    visit(100.25, 200.25, {1, 1}, 4);
    QCOMPARE(damageCache([](const QByteArray &file) { return file.chopped(1); }), 4);
    const auto core = mapAt(100.25, 200.25, {1, 1});
    const QSignalSpy updated(core.get(), &MapsCore::updated);
    QTRY_COMPARE(updated.count(), 4);
    QCOMPARE(drawing(*core, {1, 1}).pixelColor(0, 0), TileHost::colorOf("/16/100/200.png"));
}

void TestMapsCore::coordinatesThatNoMapShows_data()
{
    const float infinite = std::numeric_limits<float>::infinity();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    QTest::addColumn<float>("latitude");
    QTest::addColumn<float>("longitude");
    QTest::newRow("999") << 999.0F << 999.0F;
    QTest::newRow("-999") << -999.0F << -999.0F;
    QTest::newRow("the largest") << std::numeric_limits<float>::max()
                                 << std::numeric_limits<float>::lowest();
    QTest::newRow("infinite") << infinite << -infinite;
    QTest::newRow("no numbers") << nan << nan;
    QTest::newRow("north pole") << 90.0F << 0.0F;
    QTest::newRow("south pole") << -90.0F << 180.0F;
}

void TestMapsCore::coordinatesThatNoMapShows()
{
    QFETCH(float, latitude);
    QFETCH(float, longitude);
    MapsCore core;
    core.setSize({800, 480});
    core.setStorePin(latitude, longitude);
    core.setPositionMark(latitude, longitude);
    core.setCenter(latitude, longitude);
    QVERIFY(std::abs(core.centerLatitude()) <= 85.0512F);
    QVERIFY(std::abs(core.centerLongitude()) <= 180);
    core.pan({10000000, -10000000});
    QVERIFY(std::abs(core.centerLatitude()) <= 85.0512F);
    QVERIFY(std::abs(core.centerLongitude()) <= 180);
    core.placeStorePinAt(100000, -100000);
    QVERIFY(std::abs(core.pinLatitude()) <= 85.0512F);
    QVERIFY(std::abs(core.pinLongitude()) <= 180);
    drawing(core, {800, 480});
    // Only tiles that exist, and not more than fit into the view.
    QTest::qWait(200);
    QVERIFY(host->paths.size() <= 5 * 4 * 3);
    for (const QString &path : std::as_const(host->paths)) {
        const QStringList parts = path.split('/');
        QVERIFY2(parts.at(2).toInt() >= 0 && parts.at(2).toInt() < 65536, qPrintable(path));
        const int row = parts.at(3).chopped(4).toInt();
        QVERIFY2(row >= 0 && row < 65536, qPrintable(path));
    }
}

/// Returns the bounding rectangle of the differences between two pictures.
static QRect difference(const QImage &one, const QImage &other)
{
    QRect result;
    for (int y = 0; y < one.height(); ++y)
        for (int x = 0; x < one.width(); ++x)
            if (one.pixel(x, y) != other.pixel(x, y))
                result |= QRect(x, y, 1, 1);
    return result;
}

void TestMapsCore::markersStandAtTheirPlaces()
{
    const QSize size(400, 300);
    MapsCore core;
    core.setFetching(false);
    core.invalidate(); // the initial size
    const QImage plain = drawing(core, size);
    QCOMPARE(plain.pixelColor(200, 150), grey);
    core.setStorePin(core.centerLatitude(), core.centerLongitude());
    const QImage pinned = drawing(core, size);
    const QRect pin = difference(plain, pinned);
    QVERIFY(QRect(170, 120, 30, 30).contains(pin));
    QCOMPARE(pin.bottom(), 149); // its tip
    QVERIFY(pin.right() >= 197);
    core.hideStorePin();
    QVERIFY(!core.isStorePinShown());
    QCOMPARE(drawing(core, size), plain);

    core.setPositionMark(core.centerLatitude(), core.centerLongitude());
    const QImage marked = drawing(core, size);
    const QRect mark = difference(plain, marked);
    QVERIFY(QRect(180, 130, 20, 20).contains(mark));
    QVERIFY(mark.width() > 17 && mark.height() > 17);

    // The mark is drawn above the pin.
    core.setStorePin(core.centerLatitude(), core.centerLongitude());
    QCOMPARE(drawing(core, size).pixelColor(190, 140), marked.pixelColor(190, 140));

    // 64 pixels east and 32 south of the centre.
    const QPointF center =
        WebMercator::tileForCoordinate(core.centerLatitude(), core.centerLongitude(), 16);
    core.hideStorePin();
    core.setPositionMark(float(WebMercator::latitudeFromTile(center.y() + 0.126, 16)),
                         float(WebMercator::longitudeFromTile(center.x() + 0.251, 16)));
    QVERIFY(QRect(244, 162, 20, 20).contains(difference(plain, drawing(core, size))));
}

void TestMapsCore::markersGrowWithTheScreen()
{
    MapsCore core;
    core.setFetching(false);
    core.setPixelRatio(2);
    core.invalidate();
    const QImage plain = drawing(core, {400, 300});
    core.setPositionMark(core.centerLatitude(), core.centerLongitude());
    const QRect mark = difference(plain, drawing(core, {400, 300}));
    QVERIFY(QRect(160, 110, 40, 40).contains(mark));
    QVERIFY(mark.width() > 35);
}

void TestMapsCore::pinIsPutWhereThePersonPoints()
{
    const auto core = mapAt(100.25, 200.25, {401, 301});
    core->placeStorePinAt(200, 150); // the middle
    QVERIFY(core->isStorePinShown());
    QVERIFY(core->pinLatitude() == core->centerLatitude());
    QVERIFY(core->pinLongitude() == core->centerLongitude());
    core->placeStorePinAt(200 + 128, 150 - 64);
    QVERIFY(core->pinLongitude() == float(WebMercator::longitudeFromTile(100.75, 16)));
    QVERIFY(core->pinLatitude() == float(WebMercator::latitudeFromTile(200.0, 16)));
}

void TestMapsCore::pinBeyondTheDateLine()
{
    MapsCore core;
    core.setFetching(false);
    core.setCenter(0, 180);
    core.placeStorePinAt(200 + 256, 150);
    const double degreesOfATile = 360.0 / 65536;
    QVERIFY(core.pinLongitude() == float(-180 + degreesOfATile));
}

void TestMapsCore::nothingIsFetchedUnseen()
{
    QPointer<QTcpSocket> held;
    host->answer = [&held](QTcpSocket *socket, const QString &) {
        held = socket;
    };
    MapsCore core;
    core.setFetching(false);
    core.setSize({256, 256});
    moveTo(core, 100.25, 200.25);
    QTest::qWait(50);
    QCOMPARE(host->paths, QStringList());
    core.setFetching(true);
    QTRY_VERIFY(held);
    // Aborted during the request, and requested again later.
    core.setFetching(false);
    QTRY_VERIFY(!held);
    core.invalidate();
    QTest::qWait(50);
    QCOMPARE(host->paths, QStringList{"/16/101/199.png"});
    host->answer = [this](QTcpSocket *socket, const QString &path) {
        host->sendTile(socket, path);
    };
    core.setFetching(true);
    waitForPaths(10);
    QCOMPARE(host->paths.at(1), "/16/101/199.png");
}

void TestMapsCore::deletedWithARequestOnItsWay()
{
    host->answer = [](QTcpSocket *socket, const QString &) {
        socket->write("HTTP/1.1 200 OK\r\nContent-Length: 900\r\n\r\nx");
    };
    auto core = mapAt(100.25, 200.25, {256, 256});
    QTRY_COMPARE(host->paths.size(), 1);
    QTest::qWait(20);
    core.reset();
    QTest::qWait(50);
    QCOMPARE(host->paths.size(), 1);
}

void TestMapsCore::changedZoomShowsNoOldTiles()
{
    QPointer<QTcpSocket> held;
    QString heldPath;
    const auto core = mapAt(100.25, 200.25, {1, 1});
    waitForPaths(4);
    QTRY_COMPARE(drawing(*core, {1, 1}).pixelColor(0, 0), TileHost::colorOf("/16/100/200.png"));
    // One request is still pending.
    host->answer = [&](QTcpSocket *socket, const QString &path) {
        held = socket;
        heldPath = path;
    };
    moveTo(*core, 101.25, 200.25);
    QTRY_VERIFY(held);
    core->setZoom(14);
    moveTo(*core, 102.25, 200.25, 14);
    QCOMPARE(drawing(*core, {1, 1}).pixelColor(0, 0), grey);
    host->answer = [this](QTcpSocket *socket, const QString &path) {
        host->sendTile(socket, path);
    };
    host->sendTile(held, heldPath);
    QTRY_COMPARE(drawing(*core, {1, 1}).pixelColor(0, 0), TileHost::colorOf("/14/102/200.png"));
    QVERIFY(heldPath.startsWith("/16/102/"));
    QCOMPARE(host->paths.count("/14/102/200.png"), 1);
    QCOMPARE(host->paths.count(QString(heldPath).replace("/16/", "/14/")), 1);
}

void TestMapsCore::damagedPictures()
{
    QList<QByteArray> originals;
    QImage photo(64, 64, QImage::Format_RGB32);
    QRandomGenerator random(5);
    for (int y = 0; y < photo.height(); ++y)
        for (int x = 0; x < photo.width(); ++x)
            photo.setPixel(x, y, random.generate() | 0xff000000);
    for (const char *format : {"png", "jpg"}) {
        QByteArray bytes;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        photo.save(&buffer, format);
        originals << bytes << TileHost::picture(Qt::red, format);
    }
    // One black pixel.
    originals
        << QByteArray::fromBase64("R0lGODlhAQABAIAAAAAAAAAAACH5BAAAAAAALAAAAAABAAEAAAICRAEAOw==")
        << QByteArray::fromBase64("UklGRiQAAABXRUJQVlA4IBgAAAAwAQCdASoBAAEAAgA0JaQAA3AA/vuUAAA=");
    // The decoders print a warning for each of them.
    QLoggingCategory::setFilterRules("qt.gui.imageio*=false");
    const Silence silence;
    MapsCore core;
    core.setFetching(false);
    core.setSize({1, 1});
    moveTo(core, 100.25, 200.25);
    QSignalSpy updated(&core, &MapsCore::updated);
    const int rounds = 5000;
    for (int round = 0; round < rounds; ++round) {
        QByteArray body = originals.at(round % originals.size());
        const int damages = random.bounded(1, 20);
        for (int damage = 0; damage < damages; ++damage) {
            const int at = random.bounded(int(body.size()));
            switch (random.bounded(4)) {
            case 0:
                body[at] = char(random.bounded(256));
                break;
            case 1:
                body[at] = char(body.at(at) ^ (1 << random.bounded(8)));
                break;
            case 2:
                body.insert(at, QByteArray(random.bounded(1, 9), char(random.bounded(256))));
                break;
            default:
                body.remove(at, random.bounded(1, 9));
            }
        }
        if (body.isEmpty())
            continue;
        core.handleNetworkData(new CannedReply(body, {100, 200}));
        drawing(core, {1, 1});
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    QVERIFY(updated.count() > rounds * 9 / 10);
    core.handleNetworkData(new CannedReply(TileHost::picture(Qt::red), {100, 200}));
    QCOMPARE(drawing(core, {1, 1}).pixelColor(0, 0), QColor(Qt::red));
}

STOPPABLE_TEST_MAIN(TestMapsCore)
#include "tst_mapscore.moc"
