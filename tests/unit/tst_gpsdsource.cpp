// SPDX-License-Identifier: MIT
#include <QElapsedTimer>
#include <QGeoPositionInfoSource>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QtTest>

#include "gps/trshopgps.h"
#include "platform/gpsdsource.h"

static const QByteArray greeting =
    R"({"class":"VERSION","release":"3.22","rev":"3.22","proto_major":3,"proto_minor":14})"
    "\r\n";

/// Stands in for gpsd where the real one cannot be made to misbehave.
class MadeUpGpsd : public QTcpServer
{
public:
    explicit MadeUpGpsd(quint16 port = 0)
    {
        if (!listen(QHostAddress::LocalHost, port))
            qFatal("cannot listen");
        connect(this, &QTcpServer::newConnection, this, [this] {
            client = nextPendingConnection();
            ++connections;
            if (greets)
                client->write(greeting);
            connect(client, &QTcpSocket::readyRead, this,
                    [this, from = client] { heard += from->readAll(); });
        });
    }

    GpsdAddress address() const
    {
        return {.host = "127.0.0.1", .port = serverPort()};
    }
    QByteArray environment() const
    {
        return "127.0.0.1:" + QByteArray::number(serverPort());
    }
    bool isConnected() const
    {
        return client && client->state() == QAbstractSocket::ConnectedState;
    }
    void say(const QByteArray &text)
    {
        client->write(text);
        client->flush();
    }

    QPointer<QTcpSocket> client;
    QByteArray heard;
    int connections = 0;
    bool greets = true;
};

static QByteArray sentence(const QByteArray &body)
{
    char checksum = 0;
    for (const char character : body)
        checksum = char(checksum ^ character);
    return '$' + body + '*' + QByteArray(1, checksum).toHex().toUpper() + "\r\n";
}

/// A fix at ten degrees and so many minutes north.
static QByteArray fix(int second, int minute)
{
    const QByteArray time = QByteArray::number(100000 + second) + ".00";
    const QByteArray place =
        "10" + QByteArray::number(minute).rightJustified(2, '0') + ".000,N,02000.000,E";
    return sentence("GPGGA," + time + ',' + place + ",1,08,0.9,12.5,M,39.0,M,,") +
           sentence("GPRMC," + time + ",A," + place + ",2.7,0.0,211126,,,A");
}

/// The same sentences with the checksums they have to have.
static QByteArray withChecksums(const QByteArray &sentences)
{
    QByteArray result;
    for (const QByteArray &line : sentences.trimmed().split('\n'))
        result += sentence(line.mid(1, line.indexOf('*') - 1));
    return result;
}

class TestGpsdSource : public QObject
{
    Q_OBJECT

private slots:
    void cleanup()
    {
        qunsetenv("TROLLEO_GPSD");
    }
    void address_data();
    void address();
    void refusedAddressIsToldOnce();
    void nobodyListens();
    void serverThatDoesNotGreet();
    void serverThatIsNoGpsd();
    void hostThatDoesNotExist();
    void pluginIsAskedBeforeTheToolkitsOwn();
    void positionsComeWhileUpdatesRun();
    void nothingHappensWhileNothingIsWanted();
    void requestIsServedOnceAndDisconnects();
    void requestThatTimesOutDisconnects();
    void stoppingUpdatesKeepsARequest();
    void rubbishIsSurvived();
    void connectionThatEndsIsMadeAnew();
    void pausesGrow();
    void startingAnewAtOnce();
    void silentGpsdIsAskedForASign();
    void noFixIsNoPosition();
    void clockThatWasWrong_data();
    void clockThatWasWrong();
    void greetingsAreAnsweredOnce();
    void requestWhileOneIsPending();
    void damagedWalks_data();
    void damagedWalks();

private:
    static constexpr int soon = 3000; // milliseconds
};

void TestGpsdSource::address_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QString>("host");
    QTest::addColumn<int>("port");
    QTest::newRow("unset") << QByteArray() << "127.0.0.1" << 2947;
    QTest::newRow("empty") << QByteArray("") << "127.0.0.1" << 2947;
    QTest::newRow("name") << QByteArray("car.local:3000") << "car.local" << 3000;
    QTest::newRow("address") << QByteArray("192.168.1.2:1") << "192.168.1.2" << 1;
    QTest::newRow("IPv6") << QByteArray("[::1]:65535") << "::1" << 65535;
    for (const char *refused :
         {"localhost", "localhost:", ":2947", "2947", "localhost:0", "localhost:65536",
          "localhost:-1", "localhost:x", "localhost:29 47", "me@localhost:2947", "a:b:1",
          "gpsd://localhost:2947", "localhost:2947/", "localhost:2947?x", "local host:2947"})
        QTest::newRow(refused) << QByteArray(refused) << "127.0.0.1" << 2947;
}

void TestGpsdSource::address()
{
    QFETCH(QByteArray, value);
    if (!value.isNull())
        qputenv("TROLLEO_GPSD", value);
    const GpsdAddress gpsd = GpsdAddress::fromEnvironment();
    QTEST(gpsd.host, "host");
    QTEST(int(gpsd.port), "port");
}

void TestGpsdSource::refusedAddressIsToldOnce()
{
    qputenv("TROLLEO_GPSD", "nonsense");
    std::fflush(stderr);
    const int earlier = dup(STDERR_FILENO);
    QTemporaryFile file;
    QVERIFY(file.open());
    dup2(file.handle(), STDERR_FILENO);
    GpsdAddress::fromEnvironment();
    std::fflush(stderr);
    dup2(earlier, STDERR_FILENO);
    close(earlier);
    file.seek(0);
    QCOMPARE(file.readAll(),
             "trolleo: TROLLEO_GPSD is not host:port, 127.0.0.1:2947 is used instead: nonsense\n");
}

/// Asks for a source as the toolkit does; null in time when there is none.
static QGeoPositionInfoSource *probe(QObject *parent)
{
    QElapsedTimer clock;
    clock.start();
    QGeoPositionInfoSource *source = GpsdPlugin().positionInfoSource(parent, {});
    if (clock.elapsed() >= 200)
        qFatal("it took %lld ms", static_cast<long long>(clock.elapsed()));
    return source;
}

void TestGpsdSource::nobodyListens()
{
    quint16 port = 0;
    {
        const MadeUpGpsd gpsd;
        port = gpsd.serverPort();
    }
    qputenv("TROLLEO_GPSD", "127.0.0.1:" + QByteArray::number(port));
    QVERIFY(!probe(this));
}

void TestGpsdSource::serverThatDoesNotGreet()
{
    const MadeUpGpsd gpsd; // its event loop does not run while it is asked
    qputenv("TROLLEO_GPSD", gpsd.environment());
    QVERIFY(!probe(this));
}

/// Answers one client in a thread, with its own words, while the test is busy asking.
class OneAnswer
{
public:
    explicit OneAnswer(const QByteArray &words)
        : thread(QThread::create([this, words] {
            QTcpServer server;
            server.listen(QHostAddress::LocalHost);
            port = server.serverPort();
            ready.release();
            if (!server.waitForNewConnection(soon))
                return;
            QTcpSocket *client = server.nextPendingConnection();
            for (const char character : words) { // in as many pieces as there can be
                client->write(&character, 1);
                if (!client->waitForBytesWritten())
                    return; // it has heard enough
            }
            client->waitForReadyRead(soon);
        }))
    {
        thread->start();
        ready.acquire();
        qputenv("TROLLEO_GPSD", "127.0.0.1:" + QByteArray::number(port));
    }
    ~OneAnswer()
    {
        thread->wait();
    }

private:
    static constexpr int soon = 3000;
    QSemaphore ready;
    quint16 port = 0;
    std::unique_ptr<QThread> thread;
};

void TestGpsdSource::serverThatIsNoGpsd()
{
    {
        const OneAnswer webServer("HTTP/1.1 400 Bad Request\r\n\r\n");
        QVERIFY(!probe(this));
    }
    const OneAnswer gpsd(greeting);
    const std::unique_ptr<QGeoPositionInfoSource> source(probe(nullptr));
    QVERIFY(qobject_cast<GpsdSource *>(source.get()));
}

void TestGpsdSource::hostThatDoesNotExist()
{
    qputenv("TROLLEO_GPSD", QByteArray(64, 'a') + ":2947"); // longer than a name can be
    QVERIFY(!probe(this));
}

void TestGpsdSource::pluginIsAskedBeforeTheToolkitsOwn()
{
    const OneAnswer gpsd(greeting);
    const std::unique_ptr<QGeoPositionInfoSource> source(
        QGeoPositionInfoSource::createDefaultSource(nullptr));
    QVERIFY(qobject_cast<GpsdSource *>(source.get()));
}

void TestGpsdSource::positionsComeWhileUpdatesRun()
{
    MadeUpGpsd gpsd;
    GpsdSource source(gpsd.address());
    QSignalSpy positions(&source, &QGeoPositionInfoSource::positionUpdated);
    source.startUpdates();
    QTRY_COMPARE_WITH_TIMEOUT(gpsd.heard, "?WATCH={\"enable\":true,\"nmea\":true};\n", soon);
    gpsd.say("{\"class\":\"DEVICES\",\"devices\":[]}\r\n" + fix(1, 30));
    QTRY_COMPARE_WITH_TIMEOUT(positions.count(), 1, soon);
    const auto first = positions.first().first().value<QGeoPositionInfo>();
    QVERIFY(first.isValid());
    QCOMPARE(first.coordinate().latitude(), 10.5);
    QCOMPARE(first.coordinate().longitude(), 20.0);
    QCOMPARE(first.coordinate().altitude(), 12.5);
    gpsd.say(fix(2, 36));
    QTRY_COMPARE_WITH_TIMEOUT(positions.count(), 2, soon);

    source.stopUpdates();
    QTRY_VERIFY_WITH_TIMEOUT(!gpsd.isConnected(), soon);
    source.startUpdates();
    QTRY_VERIFY_WITH_TIMEOUT(gpsd.isConnected(), soon);
    QCOMPARE(gpsd.connections, 2);
    gpsd.say(fix(3, 42));
    QTRY_COMPARE_WITH_TIMEOUT(positions.count(), 3, soon);
}

void TestGpsdSource::nothingHappensWhileNothingIsWanted()
{
    MadeUpGpsd gpsd;
    GpsdSource source(gpsd.address());
    QTest::qWait(100);
    QCOMPARE(gpsd.connections, 0);
    source.startUpdates();
    QTRY_VERIFY_WITH_TIMEOUT(gpsd.isConnected(), soon);
    source.stopUpdates();
    QTRY_VERIFY_WITH_TIMEOUT(!gpsd.isConnected(), soon);
    QTest::qWait(1500); // longer than the first pause
    QCOMPARE(gpsd.connections, 1);
}

void TestGpsdSource::requestIsServedOnceAndDisconnects()
{
    MadeUpGpsd gpsd;
    GpsdSource source(gpsd.address());
    QSignalSpy positions(&source, &QGeoPositionInfoSource::positionUpdated);
    source.requestUpdate(0);
    QTRY_VERIFY_WITH_TIMEOUT(!gpsd.heard.isEmpty(), soon);
    gpsd.say(fix(1, 30) + fix(2, 36));
    QTRY_COMPARE_WITH_TIMEOUT(positions.count(), 1, soon);
    QTRY_VERIFY_WITH_TIMEOUT(!gpsd.isConnected(), soon);
    QCOMPARE(positions.count(), 1);
    source.requestUpdate(0);
    QTRY_VERIFY_WITH_TIMEOUT(gpsd.isConnected(), soon);
}

void TestGpsdSource::requestThatTimesOutDisconnects()
{
    MadeUpGpsd gpsd;
    GpsdSource source(gpsd.address());
    QSignalSpy errors(&source, &QGeoPositionInfoSource::errorOccurred);
    source.requestUpdate(300);
    QTRY_VERIFY_WITH_TIMEOUT(gpsd.isConnected(), soon);
    QTRY_COMPARE_WITH_TIMEOUT(errors.count(), 1, soon);
    QCOMPARE(errors.first().first().value<QGeoPositionInfoSource::Error>(),
             QGeoPositionInfoSource::UpdateTimeoutError);
    QTRY_VERIFY_WITH_TIMEOUT(!gpsd.isConnected(), soon);
}

void TestGpsdSource::stoppingUpdatesKeepsARequest()
{
    MadeUpGpsd gpsd;
    GpsdSource source(gpsd.address());
    QSignalSpy positions(&source, &QGeoPositionInfoSource::positionUpdated);
    source.startUpdates();
    source.requestUpdate(0);
    QTRY_VERIFY_WITH_TIMEOUT(!gpsd.heard.isEmpty(), soon);
    source.stopUpdates();
    QTest::qWait(50);
    QVERIFY(gpsd.isConnected());
    gpsd.say(fix(1, 30));
    QTRY_COMPARE_WITH_TIMEOUT(positions.count(), 1, soon);
    QTRY_VERIFY_WITH_TIMEOUT(!gpsd.isConnected(), soon);
}

void TestGpsdSource::rubbishIsSurvived()
{
    MadeUpGpsd gpsd;
    GpsdSource source(gpsd.address());
    QSignalSpy positions(&source, &QGeoPositionInfoSource::positionUpdated);
    source.startUpdates();
    QTRY_VERIFY_WITH_TIMEOUT(!gpsd.heard.isEmpty(), soon);
    QByteArray noise(1 << 20, Qt::Uninitialized);
    QRandomGenerator random(1);
    random.fillRange(reinterpret_cast<quint32 *>(noise.data()), noise.size() / 4);
    gpsd.say(noise + "\r\n");
    // Without a single line end, and with lines of nothing else.
    gpsd.say(QByteArray(1 << 20, '$') + "\r\n");
    gpsd.say(QByteArray(1 << 16, '\n'));
    gpsd.say(QByteArray("$\r\n").repeated(1 << 15));
    gpsd.say("{\"class\":\"VERSION\"" + QByteArray(5000, ' ') + "}\r\n");
    gpsd.say(fix(1, 30).insert(10, "\r\n"));
    gpsd.say(fix(2, 36));
    QTRY_VERIFY_WITH_TIMEOUT(!positions.isEmpty(), soon);
    for (const QList<QVariant> &position : positions)
        QVERIFY(position.first().value<QGeoPositionInfo>().coordinate().latitude() > 10.4);
    QCOMPARE(gpsd.connections, 1);
}

void TestGpsdSource::connectionThatEndsIsMadeAnew()
{
    auto gpsd = std::make_unique<MadeUpGpsd>();
    const quint16 port = gpsd->serverPort();
    GpsdSource source(gpsd->address());
    QSignalSpy positions(&source, &QGeoPositionInfoSource::positionUpdated);
    QSignalSpy errors(&source, &QGeoPositionInfoSource::errorOccurred);
    source.startUpdates();
    QTRY_VERIFY_WITH_TIMEOUT(!gpsd->heard.isEmpty(), soon);
    gpsd->say(fix(1, 30) + "$GPRMC,1000"); // and the rest never comes
    QTRY_COMPARE_WITH_TIMEOUT(positions.count(), 1, soon);
    QCOMPARE(errors.count(), 0);

    gpsd.reset();
    // The end of the connection and the failing attempt after a second.
    QTRY_COMPARE_WITH_TIMEOUT(errors.count(), 2, soon);
    for (const QList<QVariant> &error : errors)
        QCOMPARE(error.first().value<QGeoPositionInfoSource::Error>(),
                 QGeoPositionInfoSource::UpdateTimeoutError);
    gpsd = std::make_unique<MadeUpGpsd>(port);
    QTRY_VERIFY_WITH_TIMEOUT(!gpsd->heard.isEmpty(), 5000);
    gpsd->say(fix(0, 42)); // with a clock that is behind the one before
    QTRY_COMPARE_WITH_TIMEOUT(positions.count(), 2, soon);
    QCOMPARE(positions.last().first().value<QGeoPositionInfo>().coordinate().latitude(), 10.7);
}

void TestGpsdSource::pausesGrow()
{
    GpsdAddress nobody;
    {
        const MadeUpGpsd gpsd;
        nobody = gpsd.address();
    }
    GpsdStream stream(nobody);
    QElapsedTimer clock;
    clock.start();
    QList<qint64> lost;
    connect(&stream, &GpsdStream::connectionLost, this, [&] { lost << clock.elapsed(); });
    stream.setWanted(true);
    QTRY_COMPARE_WITH_TIMEOUT(lost.size(), 4, 10000);
    for (const auto &[index, seconds] : {std::pair(1, 1), std::pair(2, 2), std::pair(3, 4)}) {
        const qint64 pause = lost.at(index) - lost.at(index - 1);
        QVERIFY2(qAbs(pause - seconds * 1000) < 300, qPrintable(QString::number(pause)));
    }
    stream.setWanted(false);
    // The longest leaves gpsd five seconds of the thirty within which positions come again.
    QList<int> pauses;
    for (auto pause = std::chrono::seconds(1); pauses.size() < 8;
         pause = GpsdStream::pauseAfter(pause))
        pauses << int(pause.count());
    QCOMPARE(pauses, (QList<int>{1, 2, 4, 8, 16, 25, 25, 25}));
}

void TestGpsdSource::startingAnewAtOnce()
{
    MadeUpGpsd gpsd;
    GpsdSource source(gpsd.address());
    QSignalSpy errors(&source, &QGeoPositionInfoSource::errorOccurred);
    QSignalSpy positions(&source, &QGeoPositionInfoSource::positionUpdated);
    source.startUpdates();
    QTRY_VERIFY_WITH_TIMEOUT(gpsd.heard.count("WATCH") == 1, soon);
    // What is told late of the first connection must not end the second.
    source.stopUpdates();
    source.startUpdates();
    QTRY_COMPARE_WITH_TIMEOUT(gpsd.connections, 2, soon);
    QTRY_VERIFY_WITH_TIMEOUT(gpsd.heard.count("WATCH") == 2, soon);
    gpsd.say(fix(1, 30));
    QTRY_COMPARE_WITH_TIMEOUT(positions.count(), 1, soon);
    QCOMPARE(errors.count(), 0);
}

void TestGpsdSource::silentGpsdIsAskedForASign()
{
    MadeUpGpsd gpsd;
    GpsdStream stream(gpsd.address());
    QSignalSpy lost(&stream, &GpsdStream::connectionLost);
    stream.setWanted(true);
    QTRY_VERIFY_WITH_TIMEOUT(gpsd.heard.contains("WATCH"), soon);
    QTRY_VERIFY_WITH_TIMEOUT(gpsd.heard.contains("?VERSION;\n"), 7000);
    // A receiver without a fix is silent; gpsd is not.
    gpsd.say(greeting);
    QTRY_COMPARE_WITH_TIMEOUT(gpsd.heard.count("?VERSION;\n"), 2, 7000);
    QCOMPARE(lost.count(), 0);
    // No sign: it is as good as gone.
    QTRY_COMPARE_WITH_TIMEOUT(lost.count(), 1, 7000);
    QTRY_COMPARE_WITH_TIMEOUT(gpsd.connections, 2, soon);
}

void TestGpsdSource::noFixIsNoPosition()
{
    MadeUpGpsd gpsd;
    qputenv("TROLLEO_GPSD", gpsd.environment());
    GpsdSource source(gpsd.address());
    QSignalSpy positions(&source, &QGeoPositionInfoSource::positionUpdated);
    source.startUpdates();
    QTRY_VERIFY_WITH_TIMEOUT(!gpsd.heard.isEmpty(), soon);
    gpsd.say(sentence("GPRMC,100001.00,V,,,,,,,211126,,,N") +
             sentence("GPGGA,100001.00,,,,,0,00,99.9,,M,,M,,"));
    gpsd.say(fix(2, 36));
    QTRY_VERIFY_WITH_TIMEOUT(!positions.isEmpty(), soon);
    for (const QList<QVariant> &position : positions)
        QVERIFY(position.first().value<QGeoPositionInfo>().isValid());
    // Only places, no dates: nobody can tell when that was.
    positions.clear();
    gpsd.say('$' + fix(3, 42).split('$').at(1));
    gpsd.say('$' + fix(4, 42).split('$').at(1));
    gpsd.say(fix(5, 48));
    QTRY_VERIFY_WITH_TIMEOUT(!positions.isEmpty(), soon);
    QVERIFY(positions.first().first().value<QGeoPositionInfo>().isValid());
}

void TestGpsdSource::clockThatWasWrong_data()
{
    QTest::addColumn<QByteArray>("before");
    const QByteArray place = "1030.000,N,02000.000,E";
    QTest::newRow("without a fix, late in the day")
        << sentence("GPGGA,235947.00,,,,,0,00,99.9,,M,,M,,") +
               sentence("GPRMC,235947.00,V,,,,,,,,,,N");
    QTest::newRow("without a fix, years ahead") << sentence("GPRMC,000001.00,V,,,,,,,070136,,,N");
    QTest::newRow("with a fix, later that day")
        << sentence("GPRMC,170000.00,A," + place + ",2.7,0.0,211126,,,A") +
               sentence("GPRMC,170001.00,A," + place + ",2.7,0.0,211126,,,A");
    QTest::newRow("with a fix, years ahead")
        << sentence("GPRMC,000001.00,A," + place + ",2.7,0.0,070136,,,A") +
               sentence("GPRMC,000002.00,A," + place + ",2.7,0.0,070136,,,A");
}

void TestGpsdSource::clockThatWasWrong()
{
    QFETCH(QByteArray, before);
    MadeUpGpsd gpsd;
    GpsdSource source(gpsd.address());
    QSignalSpy positions(&source, &QGeoPositionInfoSource::positionUpdated);
    source.startUpdates();
    QTRY_VERIFY_WITH_TIMEOUT(!gpsd.heard.isEmpty(), soon);
    gpsd.say(before);
    QTest::qWait(100);
    const auto isThere = [&positions] {
        return !positions.isEmpty() &&
               positions.last().first().value<QGeoPositionInfo>().coordinate().latitude() == 10.6;
    };
    for (int second = 1; second < 20 && !isThere(); ++second) {
        gpsd.say(fix(second, 36));
        QTest::qWait(50);
    }
    QVERIFY(isThere());
}

void TestGpsdSource::greetingsAreAnsweredOnce()
{
    MadeUpGpsd gpsd;
    GpsdStream stream(gpsd.address());
    stream.setWanted(true);
    QTRY_VERIFY_WITH_TIMEOUT(!gpsd.heard.isEmpty(), soon);
    gpsd.say(greeting.repeated(100));
    QTest::qWait(100);
    QCOMPARE(gpsd.heard.count("WATCH"), 1);
}

void TestGpsdSource::requestWhileOneIsPending()
{
    MadeUpGpsd gpsd;
    GpsdSource source(gpsd.address());
    QSignalSpy errors(&source, &QGeoPositionInfoSource::errorOccurred);
    QElapsedTimer clock;
    clock.start();
    source.requestUpdate(1000);
    QTRY_VERIFY_WITH_TIMEOUT(gpsd.isConnected(), soon);
    QTest::qWait(800);
    source.requestUpdate(1000); // does not prolong it
    QTRY_COMPARE_WITH_TIMEOUT(errors.count(), 1, soon);
    QVERIFY2(clock.elapsed() < 1500, qPrintable(QString::number(clock.elapsed())));
    QTRY_VERIFY_WITH_TIMEOUT(!gpsd.isConnected(), 300);
}

void TestGpsdSource::damagedWalks_data()
{
    QTest::addColumn<QByteArray>("walk");
    QTest::addColumn<QByteArray>("last");
    for (const char *name :
         {"straight-past", "bad-checksums", "without-fix", "cut-in-the-middle", "out-of-range"}) {
        QFile file(QString(TROLLEO_SOURCES "/tests/data/walks/%1.nmea").arg(name));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray walk = file.readAll();
        QTest::newRow(name) << walk << walk.trimmed().split('\n').last();
    }
    const QByteArray good = fix(7, 36).trimmed().split('\n').last();
    QTest::newRow("cut into the next sentence")
        << fix(5, 48).chopped(9) + fix(6, 48).chopped(30) + fix(7, 36) << good;
    QByteArray midnight;
    for (const char *moment : {"235958", "235959", "000000", "000001", "000002", "000003"}) {
        const QByteArray date = moment[0] == '2' ? "211126" : "221126";
        midnight += fix(7, 36).replace("100007", moment).replace("211126", date);
    }
    midnight = withChecksums(midnight);
    QTest::newRow("over midnight") << midnight << midnight.trimmed().split('\n').last();
    QByteArray unended = fix(5, 48);
    QTest::newRow("no line ends") << unended.replace("\r\n", "") + "\r\n" + fix(7, 36) << good;
}

void TestGpsdSource::damagedWalks()
{
    QFETCH(QByteArray, walk);
    QFETCH(QByteArray, last);
    MadeUpGpsd gpsd;
    GpsdSource source(gpsd.address());
    QSignalSpy positions(&source, &QGeoPositionInfoSource::positionUpdated);
    source.startUpdates();
    QTRY_VERIFY_WITH_TIMEOUT(!gpsd.heard.isEmpty(), soon);
    // In pieces that end anywhere.
    for (qsizetype begin = 0; begin < walk.size(); begin += 1000)
        gpsd.say(walk.mid(begin, 1000));
    const auto time = [&last] {
        return last.mid(7, 6);
    };
    QTRY_VERIFY_WITH_TIMEOUT(!positions.isEmpty() && positions.last()
                                                             .first()
                                                             .value<QGeoPositionInfo>()
                                                             .timestamp()
                                                             .toString("hhmmss")
                                                             .toLatin1() == time(),
                             soon);
    for (const QList<QVariant> &position : positions) {
        const auto info = position.first().value<QGeoPositionInfo>();
        if (info.isValid())
            QVERIFY(
                walk.contains("RMC," + info.timestamp().toString("hhmmss").toLatin1() + ".00,A"));
    }
}

QTEST_MAIN(TestGpsdSource)
#include "tst_gpsdsource.moc"
