// SPDX-License-Identifier: MIT
#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTemporaryFile>
#include <QtTest>

#include <unistd.h>

#include "network/gpsdclient.h"
#include "tests/support/madeupgpsd.h"

static const QByteArray watch = "?WATCH={\"enable\":true};\n";

class TestGpsdClient : public QObject
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
    void answers_data();
    void answers();
    void whatIsTold();
    void pollsWhileWanted();
    void nothingHappensWhileNothingIsWanted();
    void onlyNewTimesAreTold_data();
    void onlyNewTimesAreTold();
    void twoReceivers();
    void rubbishIsSurvived();
    void connectionThatEndsIsMadeAnew();
    void pausesGrow();
    void startingAnewAtOnce();
    void silentGpsdIsLeft();
    void lateGreeting();
    void wantedNoMoreWhileTold();

private:
    static constexpr int soon = 5000; // milliseconds
};

void TestGpsdClient::address_data()
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

void TestGpsdClient::address()
{
    QFETCH(QByteArray, value);
    if (!value.isNull())
        qputenv("TROLLEO_GPSD", value);
    const GpsdAddress gpsd = GpsdAddress::fromEnvironment();
    QTEST(gpsd.host, "host");
    QTEST(int(gpsd.port), "port");
}

void TestGpsdClient::refusedAddressIsToldOnce()
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

void TestGpsdClient::answers_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<int>("fixes"); // -1: not an answer
    const QByteArray good =
        MadeUpGpsd::receiver("/dev/a", MadeUpGpsd::time(1), QGeoCoordinate(10, 20, 30));
    const auto with = [&good](const char *from, const char *to) {
        return MadeUpGpsd::poll({QByteArray(good).replace(from, to)});
    };
    QTest::newRow("one receiver") << MadeUpGpsd::poll({good}) << 1;
    QTest::newRow("two receivers") << MadeUpGpsd::poll({good, good}) << 2;
    QTest::newRow("no receiver") << MadeUpGpsd::poll({}) << 0;
    QTest::newRow("more than anyone has") << MadeUpGpsd::poll(QByteArrayList(1000, good)) << 64;
    QTest::newRow("no fix") << with("\"mode\":3", "\"mode\":1") << 0;
    QTest::newRow("an unknown mode") << with("\"mode\":3", "\"mode\":4") << 0;
    QTest::newRow("a mode that is a text") << with("\"mode\":3", "\"mode\":\"3\"") << 0;
    QTest::newRow("no mode") << with("\"mode\":3,", "") << 0;
    QTest::newRow("no latitude") << with("\"lat\":", "\"lot\":") << 0;
    QTest::newRow("a latitude that is a text") << with("10.000000000", "\"10\"") << 0;
    QTest::newRow("a latitude of 999") << with("10.000000000", "999") << 0;
    QTest::newRow("a longitude of -181") << with("20.000000000", "-181") << 0;
    QTest::newRow("an endless longitude") << with("20.000000000", "1e400") << -1;
    QTest::newRow("no time") << with("\"time\":\"", "\"emit\":\"") << 1;
    QTest::newRow("a receiver that is a number") << MadeUpGpsd::poll({"7", good}) << 1;
    QTest::newRow("receivers that are none")
        << QByteArray(R"({"class":"POLL","tpv":{"lat":1}})") << 0;
    QTest::newRow("receivers missing") << QByteArray(R"({"class":"POLL"})") << 0;
    QTest::newRow("another class") << QByteArray(R"({"class":"DEVICES","devices":[]})") << -1;
    QTest::newRow("cut") << MadeUpGpsd::poll({good}).chopped(20) << -1;
    QTest::newRow("a list") << QByteArray("[1, 2]") << -1;
    QTest::newRow("deep") << QByteArray(60000, '[') << -1;
    QTest::newRow("empty") << QByteArray() << -1;
    QTest::newRow("a sentence") << QByteArray("$GPRMC,100001.00,V,,,,,,,211126,,,N") << -1;
}

void TestGpsdClient::answers()
{
    QFETCH(QByteArray, line);
    const auto read = GpsdFix::fromPoll(line);
    QTEST(read ? int(read->size()) : -1, "fixes");
    if (!read)
        return;
    for (const GpsdFix &fix : *read)
        QVERIFY(fix.position.isValid());
}

void TestGpsdClient::whatIsTold()
{
    const auto only = [](const QByteArray &receiver) {
        return GpsdFix::fromPoll(MadeUpGpsd::poll({receiver})).value().constFirst();
    };
    const QGeoCoordinate place(-33.5, 151.25, 12.5);
    const GpsdFix whole =
        only(MadeUpGpsd::receiver("/dev/a", "2026-11-21T10:00:05.250Z", place, "\"eph\":17.1"));
    QCOMPARE(whole.device, "/dev/a");
    QCOMPARE(whole.stamp, "2026-11-21T10:00:05.250Z");
    QCOMPARE(whole.position.coordinate(), place);
    QCOMPARE(whole.position.timestamp().toMSecsSinceEpoch(), 1795255205250);
    QCOMPARE(whole.position.attribute(QGeoPositionInfo::HorizontalAccuracy), 17.1);
    const GpsdFix flat = only(MadeUpGpsd::receiver("/dev/a", "", QGeoCoordinate(-33.5, 151.25)));
    QVERIFY(qIsNaN(flat.position.coordinate().altitude()));
    QVERIFY(flat.position.timestamp().isValid());
    QVERIFY(!flat.position.hasAttribute(QGeoPositionInfo::HorizontalAccuracy));
    // The format of releases before 3.20.
    QCOMPARE(
        only(R"({"device":"a","mode":3,"lat":1,"lon":2,"alt":3})").position.coordinate().altitude(),
        3);
}

/// Counts positions, and stores the latitude of the last one.
class Listener
{
public:
    explicit Listener(GpsdClient &client)
        : positions(&client, &GpsdClient::positioned)
    {}
    int count() const
    {
        return int(positions.count());
    }
    double latitude() const
    {
        return positions.isEmpty()
                   ? 0
                   : positions.last().first().value<QGeoPositionInfo>().coordinate().latitude();
    }

private:
    QSignalSpy positions;
};

void TestGpsdClient::pollsWhileWanted()
{
    MadeUpGpsd gpsd;
    GpsdClient client(gpsd.address());
    const Listener heard(client);
    gpsd.tell(1, 10.5);
    QElapsedTimer clock;
    clock.start();
    client.setWanted(true);
    QTRY_COMPARE_WITH_TIMEOUT(gpsd.heard, watch + "?POLL;\n", soon);
    QTest::qWait(300);
    QCOMPARE(heard.count(), 0); // it was known before
    gpsd.tell(2, 10.6);
    QTRY_COMPARE_WITH_TIMEOUT(heard.count(), 1, soon);
    QCOMPARE(heard.latitude(), 10.6);
    QVERIFY2(clock.elapsed() < 2000, qPrintable(QString::number(clock.elapsed())));
    gpsd.tell(3, 10.7);
    QTRY_COMPARE_WITH_TIMEOUT(heard.count(), 2, soon);
    const qint64 second = clock.elapsed();
    QVERIFY2(second > 3500 && second < 5000, qPrintable(QString::number(second)));
    QCOMPARE(gpsd.polls(), 3);
    client.setWanted(false);
    QTRY_VERIFY_WITH_TIMEOUT(!gpsd.isConnected(), soon);
}

void TestGpsdClient::nothingHappensWhileNothingIsWanted()
{
    MadeUpGpsd gpsd;
    GpsdClient client(gpsd.address());
    QTest::qWait(100);
    QCOMPARE(gpsd.connections, 0);
    client.setWanted(true);
    QTRY_VERIFY_WITH_TIMEOUT(gpsd.isConnected(), soon);
    client.setWanted(false);
    QTRY_VERIFY_WITH_TIMEOUT(!gpsd.isConnected(), soon);
    QTest::qWait(1500); // longer than the first pause
    QCOMPARE(gpsd.connections, 1);
}

void TestGpsdClient::onlyNewTimesAreTold_data()
{
    QTest::addColumn<QByteArray>("first");
    QTest::addColumn<QByteArray>("second");
    QTest::addColumn<bool>("isNew");
    const auto there = [](const QByteArray &time, double latitude) {
        return MadeUpGpsd::poll(
            {MadeUpGpsd::receiver("/dev/a", time, QGeoCoordinate(latitude, 20))});
    };
    const QByteArray now = MadeUpGpsd::time(100);
    QTest::newRow("later") << there(now, 10) << there(MadeUpGpsd::time(101), 10) << true;
    QTest::newRow("the same") << there(now, 10) << there(now, 10.5) << false;
    QTest::newRow("clock set back") << there(now, 10) << there(MadeUpGpsd::time(1), 10) << true;
    QTest::newRow("years ahead before")
        << there("2048-01-01T00:00:00.000Z", 10) << there(now, 10) << true;
    QTest::newRow("no time, moved") << there("", 10) << there("", 10.5) << true;
    QTest::newRow("no time, the same") << there("", 10) << there("", 10) << false;
    QTest::newRow("no receiver before") << MadeUpGpsd::poll({}) << there(now, 10) << true;
    QTest::newRow("no receiver now") << there(now, 10) << MadeUpGpsd::poll({}) << false;
}

void TestGpsdClient::onlyNewTimesAreTold()
{
    QFETCH(QByteArray, first);
    QFETCH(QByteArray, second);
    QFETCH(bool, isNew);
    MadeUpGpsd gpsd;
    GpsdClient client(gpsd.address());
    const Listener heard(client);
    gpsd.answer = first;
    client.setWanted(true);
    QTRY_COMPARE_WITH_TIMEOUT(gpsd.polls(), 1, soon);
    QTest::qWait(50);
    gpsd.answer = second;
    QTRY_COMPARE_WITH_TIMEOUT(gpsd.polls(), 2, soon);
    QTest::qWait(50);
    QCOMPARE(heard.count(), int(isNew));
}

void TestGpsdClient::twoReceivers()
{
    const auto both = [](int first, int second) {
        return MadeUpGpsd::poll(
            {MadeUpGpsd::receiver("/dev/a", MadeUpGpsd::time(first), QGeoCoordinate(10.1, 20),
                                  "\"eph\":30.0"),
             MadeUpGpsd::receiver("/dev/b", MadeUpGpsd::time(second), QGeoCoordinate(10.2, 20),
                                  "\"eph\":5.0"),
             MadeUpGpsd::receiver("/dev/c", MadeUpGpsd::time(second), QGeoCoordinate(10.3, 20))});
    };
    MadeUpGpsd gpsd;
    GpsdClient client(gpsd.address());
    const Listener heard(client);
    gpsd.answer = both(2, 1); // their clocks differ
    client.setWanted(true);
    QTRY_COMPARE_WITH_TIMEOUT(gpsd.polls(), 1, soon);
    gpsd.answer = both(3, 2);
    QTRY_COMPARE_WITH_TIMEOUT(heard.count(), 1, soon);
    QCOMPARE(heard.latitude(), 10.2); // the most accurate
    gpsd.answer = both(6, 2);
    QTRY_COMPARE_WITH_TIMEOUT(heard.count(), 2, soon);
    QCOMPARE(heard.latitude(), 10.1); // the others have reported nothing new
}

void TestGpsdClient::rubbishIsSurvived()
{
    MadeUpGpsd gpsd;
    GpsdClient client(gpsd.address());
    QSignalSpy lost(&client, &GpsdClient::connectionLost);
    const Listener heard(client);
    client.setWanted(true);
    QTRY_COMPARE_WITH_TIMEOUT(gpsd.polls(), 1, soon);
    QByteArray noise(1 << 20, Qt::Uninitialized);
    QRandomGenerator random(1);
    random.fillRange(reinterpret_cast<quint32 *>(noise.data()), noise.size() / 4);
    gpsd.say(noise + "\r\n");
    // A text without line end, and then empty lines.
    gpsd.say(QByteArray(1 << 20, '{') + "\r\n");
    gpsd.say(QByteArray(1 << 16, '\n'));
    gpsd.say(QByteArray("{\"class\":\"POLL\"\r\n").repeated(1 << 12));
    gpsd.say(QByteArray("{}\n").repeated(1 << 15));
    // The end of a line that is too long is ignored as well.
    QByteArray longLine(100000, ' ');
    gpsd.say(longLine);
    QTest::qWait(50);
    gpsd.tell(3, 10.1);
    gpsd.say(gpsd.answer);
    QTest::qWait(50);
    QCOMPARE(heard.count(), 0);
    gpsd.tell(4, 10.6);
    QTRY_COMPARE_WITH_TIMEOUT(heard.count(), 1, soon);
    QCOMPARE(heard.latitude(), 10.6);
    QCOMPARE(lost.count(), 0);
    gpsd.say(MadeUpGpsd::greeting.repeated(100));
    QTest::qWait(50);
    QCOMPARE(gpsd.heard.count("WATCH"), 1);
}

void TestGpsdClient::connectionThatEndsIsMadeAnew()
{
    auto gpsd = std::make_unique<MadeUpGpsd>();
    const quint16 port = gpsd->serverPort();
    GpsdClient client(gpsd->address());
    QSignalSpy lost(&client, &GpsdClient::connectionLost);
    const Listener heard(client);
    client.setWanted(true);
    QTRY_COMPARE_WITH_TIMEOUT(gpsd->polls(), 1, soon);
    gpsd->tell(100, 10.5);
    QTRY_COMPARE_WITH_TIMEOUT(heard.count(), 1, soon);
    gpsd.reset();
    // The end of the connection, and the failed attempt a second later.
    QTRY_COMPARE_WITH_TIMEOUT(lost.count(), 2, soon);
    gpsd = std::make_unique<MadeUpGpsd>(port);
    gpsd->tell(100, 10.6); // known before
    QTRY_COMPARE_WITH_TIMEOUT(gpsd->polls(), 1, soon);
    gpsd->tell(99, 10.7); // its clock is behind the previous one
    QTRY_COMPARE_WITH_TIMEOUT(heard.count(), 2, soon);
    QCOMPARE(heard.latitude(), 10.7);
}

void TestGpsdClient::pausesGrow()
{
    GpsdAddress nobody;
    {
        const MadeUpGpsd gpsd;
        nobody = gpsd.address();
    }
    GpsdClient client(nobody);
    QElapsedTimer clock;
    clock.start();
    QList<qint64> lost;
    connect(&client, &GpsdClient::connectionLost, this, [&] { lost << clock.elapsed(); });
    client.setWanted(true);
    QTRY_COMPARE_WITH_TIMEOUT(lost.size(), 4, 10000);
    for (const auto &[index, seconds] : {std::pair(1, 1), std::pair(2, 2), std::pair(3, 4)}) {
        const qint64 pause = lost.at(index) - lost.at(index - 1);
        QVERIFY2(qAbs(pause - seconds * 1000) < 500, qPrintable(QString::number(pause)));
    }
    client.setWanted(false);
    QList<int> pauses;
    for (auto pause = std::chrono::seconds(1); pauses.size() < 8;
         pause = GpsdClient::pauseAfter(pause))
        pauses << int(pause.count());
    QCOMPARE(pauses, (QList<int>{1, 2, 4, 8, 16, 25, 25, 25}));
}

void TestGpsdClient::startingAnewAtOnce()
{
    MadeUpGpsd gpsd;
    GpsdClient client(gpsd.address());
    QSignalSpy lost(&client, &GpsdClient::connectionLost);
    const Listener heard(client);
    client.setWanted(true);
    QTRY_COMPARE_WITH_TIMEOUT(gpsd.heard.count("WATCH"), 1, soon);
    // Late signals of the first connection must not end the second one.
    client.setWanted(false);
    client.setWanted(true);
    QTRY_COMPARE_WITH_TIMEOUT(gpsd.connections, 2, soon);
    QTRY_COMPARE_WITH_TIMEOUT(gpsd.heard.count("WATCH"), 2, soon);
    gpsd.tell(1, 10.5);
    QTRY_COMPARE_WITH_TIMEOUT(heard.count(), 1, soon);
    QCOMPARE(lost.count(), 0);
}

void TestGpsdClient::silentGpsdIsLeft()
{
    MadeUpGpsd gpsd;
    GpsdClient client(gpsd.address());
    QSignalSpy lost(&client, &GpsdClient::connectionLost);
    client.setWanted(true);
    QTRY_COMPARE_WITH_TIMEOUT(gpsd.polls(), 1, soon);
    gpsd.answers = false;
    // Lines that are not answers do not prolong the connection.
    QTimer chatter;
    connect(&chatter, &QTimer::timeout, this, [&] {
        if (gpsd.isConnected())
            gpsd.say("{\"class\":\"DEVICE\"}\r\n");
    });
    chatter.start(500);
    QTRY_COMPARE_WITH_TIMEOUT(lost.count(), 1, 13000);
    QTRY_COMPARE_WITH_TIMEOUT(gpsd.connections, 2, soon);
}

void TestGpsdClient::lateGreeting()
{
    // Behaves like a socket-activated gpsd without a device.
    MadeUpGpsd gpsd;
    gpsd.greets = false;
    GpsdClient client(gpsd.address());
    QSignalSpy lost(&client, &GpsdClient::connectionLost);
    const Listener heard(client);
    client.setWanted(true);
    QTRY_VERIFY_WITH_TIMEOUT(gpsd.isConnected(), soon);
    QTest::qWait(6000);
    gpsd.say(MadeUpGpsd::greeting);
    QTRY_COMPARE_WITH_TIMEOUT(gpsd.polls(), 1, soon);
    gpsd.tell(1, 10.5);
    QTRY_COMPARE_WITH_TIMEOUT(heard.count(), 1, soon);
    QCOMPARE(lost.count(), 0);
}

void TestGpsdClient::wantedNoMoreWhileTold()
{
    MadeUpGpsd gpsd;
    GpsdClient client(gpsd.address());
    int told = 0;
    connect(&client, &GpsdClient::positioned, this, [&] {
        ++told;
        client.setWanted(false);
    });
    client.setWanted(true);
    QTRY_COMPARE_WITH_TIMEOUT(gpsd.polls(), 1, soon);
    QTest::qWait(50);
    QByteArray several;
    for (const int second : {1, 2, 3}) {
        gpsd.tell(second, 10.5);
        several += gpsd.answer;
    }
    gpsd.say(several); // all at once
    QTRY_COMPARE_WITH_TIMEOUT(told, 1, soon);
    QTRY_VERIFY_WITH_TIMEOUT(!gpsd.isConnected(), soon);
    QCOMPARE(told, 1);
}

STOPPABLE_TEST_GUILESS_MAIN(TestGpsdClient)
#include "tst_gpsdclient.moc"
