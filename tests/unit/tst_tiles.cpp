// SPDX-License-Identifier: MIT
#include <cmath>
#include <limits>
#include <optional>

#include <QBuffer>
#include <QImage>
#include <QImageReader>
#include <QNetworkInterface>
#include <QRandomGenerator>
#include <QtEndian>
#include <QtTest>

#include "map/tileserver.h"
#include "map/webmercator.h"
#include "network/httptilefetcher.h"
#include "network/redirections.h"
#include "network/tileimage.h"
#include "tests/support/tilehost.h"

class TestTiles : public QObject
{
    Q_OBJECT

private slots:
    void tileOfACoordinate_data();
    void tileOfACoordinate();
    void coordinatesComeBack();
    void whatNoMapShowsIsMoved_data();
    void whatNoMapShowsIsMoved();
    void longitudesAreWrapped_data();
    void longitudesAreWrapped();
    void offsetsInPixels();
    void gridEndsWithTheWorld();
    void serverSetting_data();
    void serverSetting();
    void tileUrls();
    void publicAddresses_data();
    void publicAddresses();
    void networksOfThisMachineAreNotPublic();
    void redirections_data();
    void redirections();
    void userAgentNamesAContact();
    void pictures_data();
    void pictures();
    void pictureOfAnotherSizeFillsTheTile();
    void nothingHugeIsUnpacked();
    void packedTextsAreLeftOut();
    void jpegOfManyScansIsRefused();
};

void TestTiles::tileOfACoordinate_data()
{
    QTest::addColumn<double>("latitude");
    QTest::addColumn<double>("longitude");
    QTest::addColumn<int>("zoom");
    QTest::addColumn<QPointF>("tile");
    QTest::newRow("the whole world") << 0.0 << 0.0 << 0 << QPointF(0.5, 0.5);
    QTest::newRow("north-west corner")
        << WebMercator::latitudeLimit << -180.0 << 14 << QPointF(0, 0);
    QTest::newRow("south-east corner")
        << -WebMercator::latitudeLimit << 180.0 << 14 << QPointF(16384, 16384);
    // gd(pi / 2) is the latitude half way to the upper edge of the map.
    QTest::newRow("half way up") << 66.513260443111858 << 90.0 << 2 << QPointF(3, 1);
    QTest::newRow("half way down") << -66.513260443111858 << -90.0 << 2 << QPointF(1, 3);
    // From an independent computation with 50 digits.
    QTest::newRow("Oslo") << 59.913822 << 10.738741 << 16
                          << QPointF(34722.928139377778, 19062.966527997473);
    QTest::newRow("Sydney") << -33.868820 << 151.209290 << 14
                            << QPointF(15073.702798222222, 9831.9125441367957);
}

void TestTiles::tileOfACoordinate()
{
    QFETCH(double, latitude);
    QFETCH(double, longitude);
    QFETCH(int, zoom);
    QFETCH(QPointF, tile);
    const QPointF result = WebMercator::tileForCoordinate(latitude, longitude, zoom);
    QVERIFY2(std::abs(result.x() - tile.x()) < 1e-8,
             qPrintable(QString::number(result.x(), 'f', 12)));
    QVERIFY2(std::abs(result.y() - tile.y()) < 1e-8,
             qPrintable(QString::number(result.y(), 'f', 12)));
}

void TestTiles::coordinatesComeBack()
{
    QRandomGenerator random(20261121);
    for (int round = 0; round < 10000; ++round) {
        const double latitude = random.bounded(2 * 85.05) - 85.05;
        const double longitude = random.bounded(360.0) - 180;
        const int zoom = random.bounded(20);
        const QPointF tile = WebMercator::tileForCoordinate(latitude, longitude, zoom);
        QVERIFY(std::abs(WebMercator::latitudeFromTile(tile.y(), zoom) - latitude) < 1e-9);
        QVERIFY(std::abs(WebMercator::longitudeFromTile(tile.x(), zoom) - longitude) < 1e-9);
    }
}

void TestTiles::whatNoMapShowsIsMoved_data()
{
    const double infinite = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    QTest::addColumn<double>("latitude");
    QTest::addColumn<double>("longitude");
    QTest::addColumn<QPointF>("tile");
    QTest::newRow("999") << 999.0 << 999.0 << QPointF(65536, 0);
    QTest::newRow("-999") << -999.0 << -999.0 << QPointF(0, 65536);
    QTest::newRow("infinite") << infinite << infinite << QPointF(65536, 0);
    QTest::newRow("less than everything") << -infinite << -infinite << QPointF(0, 65536);
    QTest::newRow("no numbers") << nan << nan << QPointF(32768, 32768);
    QTest::newRow("poles") << 90.0 << 0.0 << QPointF(32768, 0);
}

void TestTiles::whatNoMapShowsIsMoved()
{
    QFETCH(double, latitude);
    QFETCH(double, longitude);
    QFETCH(QPointF, tile);
    const QPointF result = WebMercator::tileForCoordinate(latitude, longitude, 16);
    QVERIFY(std::abs(result.x() - tile.x()) < 1e-6);
    QVERIFY(std::abs(result.y() - tile.y()) < 1e-6);
}

void TestTiles::longitudesAreWrapped_data()
{
    QTest::addColumn<double>("longitude");
    QTest::addColumn<double>("wrapped");
    QTest::newRow("in range") << 179.5 << 179.5;
    QTest::newRow("east of the date line") << 180.5 << -179.5;
    QTest::newRow("west of it") << -181.0 << 179.0;
    QTest::newRow("more than once around") << 730.0 << 10.0;
}

void TestTiles::longitudesAreWrapped()
{
    QFETCH(double, longitude);
    QFETCH(double, wrapped);
    QCOMPARE(WebMercator::wrappedLongitude(longitude), wrapped);
}

void TestTiles::offsetsInPixels()
{
    // A tile at zoom 2 is 90 degrees wide.
    const QPointF offset = WebMercator::pixelOffset(0, 45, 0, 0, 2);
    QCOMPARE(offset, QPointF(128, 0));
    QVERIFY(WebMercator::pixelOffset(10, 0, 0, 0, 2).y() < 0); // north is up
}

void TestTiles::gridEndsWithTheWorld()
{
    QVERIFY(WebMercator::isInGrid({0, 0}, 0));
    QVERIFY(!WebMercator::isInGrid({1, 0}, 0));
    QVERIFY(!WebMercator::isInGrid({0, 1}, 0));
    QVERIFY(WebMercator::isInGrid({16383, 16383}, 14));
    QVERIFY(!WebMercator::isInGrid({16384, 0}, 14));
    QVERIFY(!WebMercator::isInGrid({-1, 0}, 14));
    QVERIFY(!WebMercator::isInGrid({0, -1}, 14));
    QVERIFY(!WebMercator::isInGrid({0, 16384}, 14));
}

void TestTiles::serverSetting_data()
{
    QTest::addColumn<QString>("setting");
    QTest::addColumn<QString>("base");
    const QString usual = "https://tile.openstreetmap.org";
    QTest::newRow("none") << "" << usual;
    QTest::newRow("http") << "http://127.0.0.1:8080"
                          << "http://127.0.0.1:8080";
    QTest::newRow("folder") << "https://[::1]/tiles/osm/"
                            << "https://[::1]/tiles/osm/";
    QTest::newRow("capitals") << "HTTP://localhost"
                              << "http://localhost";
    for (const char *wrong : {"ftp://127.0.0.1", "file:///etc", "127.0.0.1:8080", "http://",
                              "http:", "//localhost", "http://a b", "http://localhost:99999",
                              "rubbish", "http://localhost/?key=1", "http://localhost/#x"})
        QTest::newRow(wrong) << wrong << usual;
}

void TestTiles::serverSetting()
{
    QFETCH(QString, setting);
    QFETCH(QString, base);
    QCOMPARE(TileServer::baseUrl(setting).toString(), base);
}

void TestTiles::tileUrls()
{
    const auto url = [](const char *base) {
        return TileServer::tileUrl(QUrl(base), 16, {34722, 19060}).toString();
    };
    QCOMPARE(url("https://tile.openstreetmap.org"),
             "https://tile.openstreetmap.org/16/34722/19060.png");
    QCOMPARE(url("http://localhost:80/osm//"), "http://localhost:80/osm/16/34722/19060.png");
}

void TestTiles::publicAddresses_data()
{
    QTest::addColumn<bool>("isPublic");
    for (const char *address : {"127.0.0.1",
                                "127.8.8.8",
                                "0.0.0.0",
                                "10.1.2.3",
                                "172.16.0.1",
                                "172.31.255.255",
                                "192.168.1.1",
                                "100.64.0.1",
                                "100.127.255.255",
                                "169.254.1.1",
                                "224.0.0.1",
                                "255.255.255.255",
                                "::",
                                "::1",
                                "fe80::1",
                                "fec0::1",
                                "fc00::1",
                                "fdff::1",
                                "ff02::1",
                                "::ffff:127.0.0.1",
                                "::ffff:10.0.0.1",
                                "::ffff:192.168.1.1",
                                "::127.0.0.1",
                                "64:ff9b::127.0.0.1",
                                "64:ff9b::192.168.1.1",
                                "64:ff9b:1::c0a8:101",
                                "2001:0:1::1",
                                "2002:c0a8:101::1",
                                "192.0.0.4",
                                "198.19.0.1"})
        QTest::newRow(address) << false;
    for (const char *address :
         {"1.1.1.1", "9.255.255.255", "172.15.255.255", "172.32.0.0", "192.167.255.255",
          "192.169.0.0", "100.63.255.255", "100.128.0.0", "2a00:1450::1", "::ffff:1.1.1.1",
          "64:ff9b::1.1.1.1", "2001:4860::1"})
        QTest::newRow(address) << true;
}

void TestTiles::publicAddresses()
{
    QFETCH(bool, isPublic);
    QCOMPARE(Redirections::isPublic(QHostAddress(QString(QTest::currentDataTag()))), isPublic);
}

void TestTiles::networksOfThisMachineAreNotPublic()
{
    int networks = 0;
    for (const QNetworkInterface &each : QNetworkInterface::allInterfaces()) {
        for (const QNetworkAddressEntry &own : each.addressEntries()) {
            QVERIFY2(!Redirections::isPublic(own.ip()), qPrintable(own.ip().toString()));
            ++networks;
        }
    }
    QVERIFY(networks > 0);
}

void TestTiles::redirections_data()
{
    QTest::addColumn<QString>("server");
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("target");
    QTest::addColumn<bool>("isAllowed");
    const QString tile = "https://8.8.8.8/16/1/2.png";
    QTest::newRow("same server") << tile << tile << "https://8.8.8.8/tile.png" << true;
    QTest::newRow("local server, by https") << "http://localhost:8080/1.png"
                                            << "http://localhost:8080/1.png"
                                            << "https://localhost/1.png" << true;
    QTest::newRow("local server, another port") << "http://localhost:8080/1.png"
                                                << "http://localhost:8080/1.png"
                                                << "http://localhost:631/1.png" << false;
    QTest::newRow("public host") << tile << tile << "https://1.1.1.1/tile.png" << true;
    QTest::newRow("to a safer protocol") << "http://8.8.8.8/1.png"
                                         << "http://8.8.8.8/1.png"
                                         << "https://8.8.8.8/1.png" << true;
    QTest::newRow("to a less safe protocol") << tile << tile << "http://8.8.8.8/1.png" << false;
    QTest::newRow("to another protocol") << tile << tile << "ftp://8.8.8.8/1.png" << false;
    QTest::newRow("to a file") << tile << tile << "file:///etc/passwd" << false;
    QTest::newRow("to the local network") << tile << tile << "https://192.168.1.1/1.png" << false;
    QTest::newRow("from the local network to itself") << "http://192.168.1.1/1.png"
                                                      << "http://192.168.1.1/1.png"
                                                      << "http://192.168.1.1/2.png" << true;
    QTest::newRow("to this machine by its name")
        << tile << tile << "https://localhost/1.png" << false;
    QTest::newRow("back to the local server") << "http://localhost:8080/1.png"
                                              << "http://8.8.8.8/1.png"
                                              << "http://localhost:8080/2.png" << true;
    QTest::newRow("another host, to itself by another address")
        << "https://8.8.8.8/1.png"
        << "https://localhost/1.png"
        << "https://localhost/2.png" << false;
    QTest::newRow("a safer protocol, and back") << "http://8.8.8.8/1.png"
                                                << "https://1.1.1.1/1.png"
                                                << "http://1.1.1.1/1.png" << false;
    QTest::newRow("to this machine in hexadecimal")
        << tile << tile << "https://0x7f.1/1.png" << false;
}

void TestTiles::redirections()
{
    QFETCH(QString, server);
    QFETCH(QString, source);
    QFETCH(QString, target);
    QFETCH(bool, isAllowed);
    std::optional<bool> answer;
    QObject context; // without it, an answer does not come later
    Redirections::check(QUrl(server), QUrl(source), QUrl(target), &context,
                        [&answer](bool allowed) { answer = allowed; });
    QTRY_VERIFY(answer);
    QCOMPARE(*answer, isAllowed);
}

void TestTiles::userAgentNamesAContact()
{
    const QRegularExpression pattern("^Trolleo/\\d+\\.\\d+\\.\\d+ \\([^ @]+@[^ @]+\\)$");
    QVERIFY(pattern.match(HttpTileFetcher::userAgent()).hasMatch());
    QCOMPARE(TileServer::attribution(), QString::fromUtf8("© OpenStreetMap contributors"));
}

static QByteArray chopped(QByteArray bytes, int by)
{
    bytes.chop(by);
    return bytes;
}

void TestTiles::pictures_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<bool>("readable");
    const QByteArray png = TileHost::picture(Qt::red);
    const QByteArray jpeg = TileHost::picture(Qt::red, "jpg");
    QTest::newRow("png") << png << true;
    QTest::newRow("jpeg") << jpeg << true;
    QTest::newRow("1024 pixels") << TileHost::picture(Qt::red, "png", 1024) << true;
    QTest::newRow("1025 pixels") << TileHost::picture(Qt::red, "png", 1025) << false;
    QTest::newRow("nothing") << QByteArray() << false;
    QTest::newRow("page") << QByteArray("<html><body>Welcome</body></html>") << false;
    QTest::newRow("half a png") << png.left(png.size() / 2) << false;
    QTest::newRow("png without its last byte") << chopped(png, 1) << false;
    QTest::newRow("half a jpeg") << jpeg.left(jpeg.size() / 2) << false;
    QTest::newRow("jpeg without its last byte") << chopped(jpeg, 1) << false;
    QTest::newRow("first bytes of a png") << png.left(20) << false;
    QTest::newRow("drawing") << QByteArray(
                                    "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"256\" "
                                    "height=\"256\"><rect width=\"9\" height=\"9\"/></svg>")
                             << false;
    QTest::newRow("bitmap of windows") << TileHost::picture(Qt::red, "bmp") << false;
    QByteArray large = png;
    large.insert(8, QByteArray(int(TileImage::largestBody), 'x'));
    QTest::newRow("too many bytes") << large << false;
}

void TestTiles::pictures()
{
    QFETCH(QByteArray, body);
    QFETCH(bool, readable);
    const QImage image = TileImage::read(body);
    QCOMPARE(!image.isNull(), readable);
    if (readable) {
        QCOMPARE(image.size(), QSize(256, 256));
        QVERIFY(image.pixelColor(255, 255).red() > 250);
    }
}

void TestTiles::pictureOfAnotherSizeFillsTheTile()
{
    QCOMPARE(TileImage::read(TileHost::picture(Qt::blue, "png", 512)).size(), QSize(256, 256));
    QCOMPARE(TileImage::read(TileHost::picture(Qt::blue, "png", 1)).size(), QSize(256, 256));
}

void TestTiles::nothingHugeIsUnpacked()
{
    const int extent = 20000;
    QImage image(extent, extent, QImage::Format_Mono);
    image.fill(0);
    QByteArray bomb;
    QBuffer buffer(&bomb);
    buffer.open(QIODevice::WriteOnly);
    QVERIFY(image.save(&buffer, "png"));
    QVERIFY(bomb.size() < TileImage::largestBody);
    // Qt's own limit would accept it.
    QBuffer input(&bomb);
    QVERIFY(QImageReader(&input).canRead());
    QVERIFY(TileImage::read(bomb).isNull());
}

/// Returns a chunk of a PNG file.
static QByteArray chunk(const QByteArray &name, const QByteArray &data)
{
    const auto number = [](quint32 value) {
        value = qToBigEndian(value);
        return QByteArray(reinterpret_cast<const char *>(&value), sizeof value);
    };
    quint32 checksum = 0xffffffff;
    for (const char byte : name + data) {
        checksum ^= quint8(byte);
        for (int bit = 0; bit < 8; ++bit)
            checksum = checksum >> 1 ^ (checksum & 1 ? 0xedb88320 : 0);
    }
    return number(quint32(data.size())) + name + data + number(~checksum);
}

void TestTiles::packedTextsAreLeftOut()
{
    // Each chunk holds about 8 MB of spaces.
    const QByteArray packed = qCompress(QByteArray(7'900'000, ' '), 9).mid(4);
    QByteArray bomb = TileHost::picture(Qt::red);
    const auto firstChunk = 8 + 25; // after signature and header
    for (int index = 0; index < 100; ++index)
        bomb.insert(firstChunk, chunk("zTXt", "a" + QByteArray(2, 0) + packed));
    QVERIFY(bomb.size() < TileImage::largestBody);
    QElapsedTimer clock;
    clock.start();
    const QImage image = TileImage::read(bomb);
    QVERIFY(!image.isNull());
    QVERIFY(image.textKeys().isEmpty());
    QVERIFY2(clock.elapsed() < 300, qPrintable(QString::number(clock.elapsed())));

    // Transparent pixels stay transparent.
    QImage paletted(4, 4, QImage::Format_Indexed8);
    paletted.setColorTable({qRgba(0, 0, 0, 0), qRgb(255, 0, 0)});
    paletted.fill(0);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    paletted.save(&buffer, "png");
    QCOMPARE(TileImage::read(bytes).pixelColor(0, 0).alpha(), 0);

    // A chunk whose stated length exceeds the file.
    QByteArray broken = TileHost::picture(Qt::red);
    broken[8 + 25] = '\x7f';
    QVERIFY(TileImage::read(broken).isNull());
}

void TestTiles::jpegOfManyScansIsRefused()
{
    // Many empty scans of the first component.
    QByteArray jpeg = TileHost::picture(Qt::red, "jpg");
    const QByteArray scan = QByteArray::fromHex("ffda0008010100003f00");
    for (int index = 0; index < 40; ++index)
        jpeg.insert(jpeg.size() - 2, scan);
    QVERIFY(TileImage::read(jpeg).isNull());
}

STOPPABLE_TEST_GUILESS_MAIN(TestTiles)
#include "tst_tiles.moc"
