// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>

#include <QElapsedTimer>
#include <QGeoPositionInfoSource>
#include <QSignalSpy>
#include <QtTest>

#include "gps/trshopgps.h"
#include "platform/messagebus.h"
#include "platform/positionsource.h"
#include "tests/support/madeupgpsd.h"
#include "tests/support/privatebus.h"

using namespace std::chrono_literals;

static constexpr int soon = 5000; // milliseconds

static double latitudeOf(const QSignalSpy &positions)
{
    return positions.last().first().value<QGeoPositionInfo>().coordinate().latitude();
}

/// A bus with a location service, a gpsd, and the source that uses them.
struct World
{
    explicit World(const PositionSource::Patience &patience = {500ms, 60s})
        : source(gpsd.address(), bus, patience)
    {}

    PrivateBus daemon;
    MadeUpGeoClue geoClue{daemon.address()};
    MadeUpGpsd gpsd;
    MessageBus bus{daemon.address()};
    PositionSource source;
    QSignalSpy positions{&source, &QGeoPositionInfoSource::positionUpdated};
    QSignalSpy rough{&source, &PositionSource::roughPositionUpdated};
    QSignalSpy refusals{&source, &PositionSource::locationRefused};
    QSignalSpy missing{&source, &PositionSource::positionMissing};
};

class TestPositionSource : public QObject
{
    Q_OBJECT

private slots:
    void withoutTheModule(); // before another function loads it
    void pluginIsAskedBeforeQtsOwn();
    void gpsdComesFirst();
    void geoClueRunsWhileGpsdIsSilent();
    void geoClueIsAskedForTheMostExact();
    void geoClueAtOnceWhenNobodyListens();
    void sameTimestampIsTheSamePosition();
    void wrongClocksDoNotMatter();
    void keptPositionIsNotReported();
    void correctedPositionIsNoticed();
    void roughPositionsAreToldApart();
    void refusalIsTold();
    void switchedOffWhileItRuns();
    void missingIsToldOnce();
    void silentGeoClueIsAskedAnew();
    void requestIsServedOnce();
    void requestThatIsCancelled();
    void requestThatTimesOut();
    void stoppingUpdatesKeepsARequest();
    void otherTypesThanPromised_data();
    void otherTypesThanPromised();
    void silentBusBlocksNothing();
    void busThatComesBack();
    void comingAndGoing();
};

void TestPositionSource::withoutTheModule()
{
    const QStringList paths = QCoreApplication::libraryPaths();
    QCoreApplication::setLibraryPaths({});
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^Module trolleo-network: "));
    World world({60s, 60s});
    for (const int count : {1, 2}) {
        world.source.startUpdates();
        QTRY_VERIFY_WITH_TIMEOUT(world.geoClue.isStarted(), soon);
        world.geoClue.locate(50, 14, count);
        QTRY_COMPARE_WITH_TIMEOUT(world.positions.count(), count, soon);
        world.source.stopUpdates();
        QTRY_VERIFY_WITH_TIMEOUT(!world.geoClue.isStarted(), soon);
    }
    QCoreApplication::setLibraryPaths(paths);
    world.source.startUpdates();
    QTRY_VERIFY_WITH_TIMEOUT(world.gpsd.isConnected(), soon);
}

void TestPositionSource::pluginIsAskedBeforeQtsOwn()
{
    const TrShopGps gps; // links the plugin into the program
    QElapsedTimer clock;
    clock.start();
    const std::unique_ptr<QGeoPositionInfoSource> source(
        QGeoPositionInfoSource::createDefaultSource(nullptr));
    QVERIFY(qobject_cast<PositionSource *>(source.get()));
    QVERIFY(clock.elapsed() < 1000);
}

void TestPositionSource::gpsdComesFirst()
{
    World world({2000ms, 60s});
    world.source.startUpdates();
    QTRY_COMPARE_WITH_TIMEOUT(world.gpsd.polls(), 1, soon);
    for (int second = 1; second < 4; ++second) {
        world.gpsd.tell(second, 10 + second);
        QTRY_COMPARE_WITH_TIMEOUT(world.positions.count(), second, soon);
        QCOMPARE(latitudeOf(world.positions), 10 + second);
        if (second == 1)
            QVERIFY(world.geoClue.heard.isEmpty());
    }
    world.source.stopUpdates();
    QTRY_VERIFY_WITH_TIMEOUT(!world.gpsd.isConnected(), soon);
}

void TestPositionSource::geoClueRunsWhileGpsdIsSilent()
{
    World world;
    world.source.startUpdates();
    QTRY_VERIFY_WITH_TIMEOUT(world.geoClue.isStarted(), soon);
    world.geoClue.locate(50, 14, 1);
    QTRY_COMPARE_WITH_TIMEOUT(world.positions.count(), 1, soon);
    QCOMPARE(latitudeOf(world.positions), 50);
    // gpsd delivers again.
    world.gpsd.tell(1, 10.5);
    QTRY_COMPARE_WITH_TIMEOUT(world.positions.count(), 2, soon);
    QCOMPARE(latitudeOf(world.positions), 10.5);
    QTRY_VERIFY_WITH_TIMEOUT(!world.geoClue.isStarted(), soon);
    // gpsd stops delivering again.
    QTRY_VERIFY_WITH_TIMEOUT(world.geoClue.isStarted(), soon);
    world.source.stopUpdates();
    QTRY_VERIFY_WITH_TIMEOUT(!world.geoClue.isStarted(), soon);
}

void TestPositionSource::geoClueIsAskedForTheMostExact()
{
    World world;
    world.source.startUpdates();
    QTRY_VERIFY_WITH_TIMEOUT(world.geoClue.isStarted(), soon);
    QCOMPARE(world.geoClue.properties.value("DesktopId"), "trolleo");
    QCOMPARE(world.geoClue.properties.value("RequestedAccuracyLevel"), QVariant(8U));
}

void TestPositionSource::geoClueAtOnceWhenNobodyListens()
{
    const PrivateBus daemon;
    MadeUpGeoClue geoClue(daemon.address());
    MessageBus bus(daemon.address());
    PositionSource source({.host = "127.0.0.1", .port = 9}, bus, {});
    QElapsedTimer clock;
    clock.start();
    source.startUpdates();
    QTRY_VERIFY_WITH_TIMEOUT(geoClue.isStarted(), soon);
    QVERIFY2(clock.elapsed() < 3000, qPrintable(QString::number(clock.elapsed())));
}

void TestPositionSource::sameTimestampIsTheSamePosition()
{
    World world;
    world.source.startUpdates();
    QTRY_VERIFY_WITH_TIMEOUT(world.geoClue.isStarted(), soon);
    world.geoClue.locate(50, 14, 1);
    QTRY_COMPARE_WITH_TIMEOUT(world.positions.count(), 1, soon);
    world.source.stopUpdates();
    QTRY_VERIFY_WITH_TIMEOUT(!world.geoClue.isStarted(), soon);
    world.source.startUpdates();
    QTRY_VERIFY_WITH_TIMEOUT(world.geoClue.isStarted(), soon);
    world.geoClue.locate(50, 14, 1); // the service does this for a new client
    QTest::qWait(300);
    QCOMPARE(world.positions.count(), 1);
    world.geoClue.locate(50, 14, 2);
    QTRY_COMPARE_WITH_TIMEOUT(world.positions.count(), 2, soon);
}

void TestPositionSource::wrongClocksDoNotMatter()
{
    World world;
    world.source.startUpdates();
    QTRY_VERIFY_WITH_TIMEOUT(world.geoClue.isStarted(), soon);
    int count = 0;
    for (const int second : {0, 1000000, -1000000, 1, 500000000}) {
        world.geoClue.locate(50, 14, second);
        ++count;
        QTRY_COMPARE_WITH_TIMEOUT(world.positions.count(), count, soon);
    }
}

void TestPositionSource::keptPositionIsNotReported()
{
    World world;
    for (const int kept : {-60, 60}) {
        world.source.startUpdates();
        QTRY_VERIFY_WITH_TIMEOUT(world.geoClue.isStarted(), soon);
        world.geoClue.locate(50, 14, kept);
        QTest::qWait(300);
        QVERIFY(world.positions.isEmpty());
        // It is new, although by its receiver's clock it is as far away.
        world.geoClue.locate(51, 14, kept + 1);
        QTRY_COMPARE_WITH_TIMEOUT(world.positions.count(), 1, soon);
        QCOMPARE(latitudeOf(world.positions), 51);
        world.source.stopUpdates();
        QTRY_VERIFY_WITH_TIMEOUT(!world.geoClue.isStarted(), soon);
        world.positions.clear();
    }
    world.source.startUpdates();
    QTRY_VERIFY_WITH_TIMEOUT(world.geoClue.isStarted(), soon);
    world.geoClue.locate(52, 14, -10);
    QTRY_COMPARE_WITH_TIMEOUT(world.positions.count(), 1, soon);
}

void TestPositionSource::correctedPositionIsNoticed()
{
    World world;
    world.source.startUpdates();
    QTRY_VERIFY_WITH_TIMEOUT(world.geoClue.isStarted(), soon);
    world.geoClue.locate(50, 14, 1, 25000);
    QTRY_COMPARE_WITH_TIMEOUT(world.rough.count(), 1, soon);
    world.geoClue.correct(51, 14, 2);
    QTRY_COMPARE_WITH_TIMEOUT(world.positions.count(), 1, soon);
    QCOMPARE(latitudeOf(world.positions), 51);
    // Nothing else happens while the service is silent.
    const auto reads = world.geoClue.calls("GetAll").size();
    QTest::qWait(soon);
    QCOMPARE(world.geoClue.calls("GetAll").size(), reads);
}

void TestPositionSource::roughPositionsAreToldApart()
{
    World world;
    world.source.startUpdates();
    QTRY_VERIFY_WITH_TIMEOUT(world.geoClue.isStarted(), soon);
    world.geoClue.locate(50, 14, 1, 25000);
    QTRY_COMPARE_WITH_TIMEOUT(world.rough.count(), 1, soon);
    world.geoClue.locate(50, 14, 2, 250.01);
    QTRY_COMPARE_WITH_TIMEOUT(world.rough.count(), 2, soon);
    QCOMPARE(world.positions.count(), 0);
    QVERIFY(!world.source.lastKnownPosition(false).isValid());
    world.geoClue.locate(50, 14, 3, 250);
    QTRY_COMPARE_WITH_TIMEOUT(world.positions.count(), 1, soon);
    QCOMPARE(world.rough.count(), 2);
    // A receiver with too few satellites is as inaccurate, and does not stop GeoClue.
    world.gpsd.tell(1, 10.5, 20, "\"eph\":1000.0");
    QTRY_COMPARE_WITH_TIMEOUT(world.rough.count(), 3, soon);
    QTest::qWait(200);
    QVERIFY(world.geoClue.isStarted());
    QCOMPARE(world.positions.count(), 1);
}

void TestPositionSource::refusalIsTold()
{
    World world;
    world.geoClue.refuses = true;
    world.source.startUpdates();
    QTRY_COMPARE_WITH_TIMEOUT(world.refusals.count(), 1, soon);
    QCOMPARE(world.source.error(), QGeoPositionInfoSource::AccessError);
    world.geoClue.refuses = false; // location is switched on
    QTRY_VERIFY_WITH_TIMEOUT(world.geoClue.isStarted(), 8000);
    world.geoClue.locate(50, 14, 1);
    QTRY_COMPARE_WITH_TIMEOUT(world.positions.count(), 1, soon);
}

void TestPositionSource::switchedOffWhileItRuns()
{
    World world;
    world.source.startUpdates();
    QTRY_VERIFY_WITH_TIMEOUT(world.geoClue.isStarted(), soon);
    const auto change = [&](bool active) {
        world.geoClue.emitSignal(
            "/org/freedesktop/GeoClue2/Client/1", "org.freedesktop.DBus.Properties",
            "PropertiesChanged",
            {"org.freedesktop.GeoClue2.Client", QVariantMap{{"Active", active}}, QStringList()});
    };
    change(true);
    change(false);
    QTRY_COMPARE_WITH_TIMEOUT(world.refusals.count(), 1, soon);
    change(true);
    world.geoClue.locate(50, 14, 1); // it continues by itself
    QTRY_COMPARE_WITH_TIMEOUT(world.positions.count(), 1, soon);
}

void TestPositionSource::missingIsToldOnce()
{
    World world({300ms, 1500ms});
    world.source.startUpdates();
    QTRY_COMPARE_WITH_TIMEOUT(world.missing.count(), 1, soon);
    QCOMPARE(world.source.error(), QGeoPositionInfoSource::UpdateTimeoutError);
    QTest::qWait(2500);
    QCOMPARE(world.missing.count(), 1);
    QVERIFY(world.geoClue.isStarted());
    world.geoClue.locate(50, 14, 1);
    QTRY_COMPARE_WITH_TIMEOUT(world.positions.count(), 1, soon);
    QTRY_COMPARE_WITH_TIMEOUT(world.missing.count(), 2, soon);
    world.source.stopUpdates();
    QTest::qWait(2000);
    QCOMPARE(world.missing.count(), 2);
}

/// The real one withholds positions that are older than the last one.
void TestPositionSource::silentGeoClueIsAskedAnew()
{
    World world({300ms, 1500ms});
    const auto clients = [&world] {
        return world.geoClue.calls("GetClient").size();
    };
    world.source.startUpdates();
    QTRY_VERIFY_WITH_TIMEOUT(world.geoClue.isStarted(), soon);
    // Its receiver may still be searching.
    QTRY_COMPARE_WITH_TIMEOUT(world.missing.count(), 1, soon);
    QTest::qWait(2000);
    QCOMPARE(clients(), 1);
    for (const int asked : {2, 3}) {
        world.geoClue.locate(50, 14, -3600 * asked); // as if the clock had been set back
        QTRY_COMPARE_WITH_TIMEOUT(clients(), asked, soon);
        QTRY_VERIFY_WITH_TIMEOUT(world.geoClue.isStarted(), soon);
    }
    QVERIFY(world.positions.isEmpty());
    QCOMPARE(world.missing.count(), 1);
    world.geoClue.locate(50, 14, 0);
    QTRY_COMPARE_WITH_TIMEOUT(world.positions.count(), 1, soon);
}

void TestPositionSource::requestIsServedOnce()
{
    World world;
    world.source.requestUpdate(0);
    QTRY_VERIFY_WITH_TIMEOUT(world.geoClue.isStarted(), soon);
    world.geoClue.locate(50, 14, 1);
    QTRY_COMPARE_WITH_TIMEOUT(world.positions.count(), 1, soon);
    QTRY_VERIFY_WITH_TIMEOUT(!world.geoClue.isStarted() && !world.gpsd.isConnected(), soon);
    world.source.requestUpdate(0);
    // gpsd delivered nothing the last time, so GeoClue starts without waiting for it.
    QTRY_VERIFY_WITH_TIMEOUT(world.gpsd.isConnected() && world.geoClue.isStarted(), 400);
}

void TestPositionSource::requestThatIsCancelled()
{
    World world;
    world.source.requestUpdate(0);
    QTRY_VERIFY_WITH_TIMEOUT(world.gpsd.isConnected(), soon);
    world.source.cancelRequest();
    QTRY_VERIFY_WITH_TIMEOUT(!world.gpsd.isConnected(), soon);
    world.source.startUpdates();
    world.source.requestUpdate(0);
    world.source.cancelRequest();
    QTRY_VERIFY_WITH_TIMEOUT(world.gpsd.isConnected(), soon); // updates continue
}

void TestPositionSource::requestThatTimesOut()
{
    World world;
    QSignalSpy errors(&world.source, &QGeoPositionInfoSource::errorOccurred);
    QElapsedTimer clock;
    clock.start();
    world.source.requestUpdate(1000);
    QTRY_VERIFY_WITH_TIMEOUT(world.gpsd.isConnected(), soon);
    QTest::qWait(700);
    world.source.requestUpdate(1000); // does not prolong the request
    QTRY_COMPARE_WITH_TIMEOUT(errors.count(), 1, soon);
    QVERIFY2(clock.elapsed() < 1500, qPrintable(QString::number(clock.elapsed())));
    QCOMPARE(errors.first().first().value<QGeoPositionInfoSource::Error>(),
             QGeoPositionInfoSource::UpdateTimeoutError);
    QTRY_VERIFY_WITH_TIMEOUT(!world.gpsd.isConnected(), soon);
}

void TestPositionSource::stoppingUpdatesKeepsARequest()
{
    World world;
    world.source.startUpdates();
    world.source.requestUpdate(0);
    QTRY_COMPARE_WITH_TIMEOUT(world.gpsd.polls(), 1, soon);
    world.source.stopUpdates();
    world.gpsd.tell(1, 10.5);
    QTRY_COMPARE_WITH_TIMEOUT(world.positions.count(), 1, soon);
    QTRY_VERIFY_WITH_TIMEOUT(!world.gpsd.isConnected(), soon);
}

void TestPositionSource::otherTypesThanPromised_data()
{
    QTest::addColumn<QString>("method");
    QTest::addColumn<QVariant>("answer");
    const QVariant texts(QStringList(1000, "text"));
    for (const char *method : {"GetClient", "Set", "Start", "GetAll"})
        QTest::newRow(method) << method << texts;
    QTest::newRow("a location of texts")
        << "GetAll" << QVariant(QVariantMap{{"Latitude", "50"}, {"Longitude", "14"}});
    QTest::newRow("a time that is a number")
        << "GetAll"
        << QVariant(QVariantMap{{"Latitude", 50.0}, {"Longitude", 14.0}, {"Timestamp", 7U}});
}

void TestPositionSource::otherTypesThanPromised()
{
    QFETCH(QString, method);
    QFETCH(QVariant, answer);
    World world;
    const auto right = world.geoClue.answers[method];
    world.geoClue.answers[method] = [answer](const QDBusMessage &message) {
        return message.createReply(answer);
    };
    world.source.startUpdates();
    QTRY_VERIFY_WITH_TIMEOUT(!world.geoClue.calls("GetClient").isEmpty(), soon);
    QTest::qWait(200);
    world.geoClue.locate(50, 14, 1);
    QTest::qWait(200);
    if (method != "Set") // the calls after "Set" are sent without waiting for its reply
        QCOMPARE(world.positions.count(), 0);
    // With correct answers it is used again.
    world.geoClue.answers[method] = right;
    int second = 1;
    QTRY_VERIFY_WITH_TIMEOUT((world.geoClue.locate(50, 14, ++second), !world.positions.isEmpty()),
                             8000);
}

void TestPositionSource::silentBusBlocksNothing()
{
    const PrivateBus daemon;
    daemon.freeze();
    MadeUpGpsd gpsd;
    MessageBus bus(daemon.address());
    PositionSource source(gpsd.address(), bus, {100ms, 60s});
    QSignalSpy positions(&source, &QGeoPositionInfoSource::positionUpdated);
    qint64 longest = 0;
    QElapsedTimer clock;
    QTimer heart;
    connect(&heart, &QTimer::timeout, this, [&] { longest = qMax(longest, clock.restart()); });
    clock.start();
    heart.start(10);
    source.startUpdates();
    QTRY_COMPARE_WITH_TIMEOUT(gpsd.polls(), 1, soon);
    QTest::qWait(1000);
    gpsd.tell(1, 10.5);
    QTRY_COMPARE_WITH_TIMEOUT(positions.count(), 1, soon);
    QVERIFY2(longest < 1000, qPrintable(QString::number(longest)));
}

void TestPositionSource::busThatComesBack()
{
    const PrivateBus daemon;
    MadeUpGeoClue geoClue(daemon.address());
    daemon.freeze();
    MessageBus bus(daemon.address());
    PositionSource source({.host = "127.0.0.1", .port = 9}, bus, {});
    QSignalSpy positions(&source, &QGeoPositionInfoSource::positionUpdated);
    source.startUpdates();
    QTest::qWait(1000);
    daemon.thaw();
    QTRY_VERIFY_WITH_TIMEOUT(geoClue.isStarted(), 12000);
    geoClue.locate(50, 14, 1);
    QTRY_COMPARE_WITH_TIMEOUT(positions.count(), 1, soon);
}

/// One order in which both services change their state. Each goes through all four states.
class Order : public QObject
{
public:
    enum State { Absent, Silent, Useless, Delivering };

    Order(const std::array<State, 4> &statesOfGpsd, const std::array<State, 4> &statesOfGeoClue)
        : gpsdStates(statesOfGpsd)
        , geoClueStates(statesOfGeoClue)
        , geoClue(std::make_unique<MadeUpGeoClue>(daemon.address()))
        , portIsHeld(gpsdPort.bind(QHostAddress::LocalHost, 0, QAbstractSocket::ReuseAddressHint))
        , gpsd(std::make_unique<MadeUpGpsd>(gpsdPort.localPort()))
        , bus(daemon.address())
        , source(gpsd->address(), bus, {})
    {
        if (!portIsHeld)
            stopTest("no port", Caller::here());
        connect(&source, &QGeoPositionInfoSource::positionUpdated, this, [this] {
            if (longestWait < clock.elapsed() && waits)
                longestWait = clock.elapsed();
            waits = false;
        });
        connect(&pace, &QTimer::timeout, this, &Order::deliver);
        enter(0);
        pace.start(1000);
        source.startUpdates();
    }

    void enter(std::size_t phase)
    {
        gpsdState = gpsdStates[phase];
        geoClueState = geoClueStates[phase];
        if (gpsdState == Absent) {
            gpsd.reset();
        } else {
            if (!gpsd)
                gpsd = std::make_unique<MadeUpGpsd>(gpsdPort.localPort());
            gpsd->answers = gpsdState != Silent;
            gpsd->answer = MadeUpGpsd::poll({}); // useless: without a receiver
        }
        const bool wasAbsent = geoClueWasAbsent;
        geoClueWasAbsent = geoClueState == Absent;
        if (geoClueWasAbsent || (!wasAbsent && geoClueState == Useless))
            geoClue->leave();
        geoClue->isSilent = geoClueState == Silent;
        geoClue->refuses = geoClueState == Useless;
        if (!geoClueWasAbsent && (wasAbsent || geoClueState == Useless))
            geoClue->comeBack();
        waits = gpsdState == Delivering || geoClueState == Delivering;
        clock.start();
    }
    /// Returns whether a position has arrived, or none can be expected.
    bool isServed() const
    {
        return !waits;
    }

    qint64 longestWait = 0; // milliseconds

private:
    void deliver()
    {
        ++second;
        if (gpsd && gpsdState == Delivering)
            gpsd->tell(second, 10);
        if (geoClueState == Delivering)
            geoClue->locate(50, 14, second);
    }

    std::array<State, 4> gpsdStates;
    std::array<State, 4> geoClueStates;
    State gpsdState = Delivering;
    State geoClueState = Delivering;
    bool geoClueWasAbsent = false;
    PrivateBus daemon;
    std::unique_ptr<MadeUpGeoClue> geoClue;
    /// Never listens: it keeps the port of a gpsd that is absent from other programs and tests.
    QTcpSocket gpsdPort;
    bool portIsHeld;
    std::unique_ptr<MadeUpGpsd> gpsd;
    MessageBus bus;
    PositionSource source;
    QTimer pace;
    int second = 0;
    bool waits = false;
    QElapsedTimer clock;
};

void TestPositionSource::comingAndGoing()
{
    constexpr qint64 longest = 40000; // milliseconds
    std::vector<std::unique_ptr<Order>> orders;
    QStringList names;
    std::array<Order::State, 4> states{Order::Absent, Order::Silent, Order::Useless,
                                       Order::Delivering};
    do {
        std::array<Order::State, 4> reversed = states;
        std::ranges::reverse(reversed);
        orders.push_back(std::make_unique<Order>(states, reversed));
        QString name;
        for (const Order::State state : states)
            name += "ASUD"[state];
        names << name;
    } while (std::ranges::next_permutation(states).found);
    QCOMPARE(orders.size(), 24U);
    // All orders run in parallel, since each takes some time.
    for (std::size_t phase = 0; phase < states.size(); ++phase) {
        if (phase > 0) {
            QTest::qWait(12000); // long enough that the missing service is noticed
            for (const auto &order : orders)
                order->enter(phase);
        }
        QTRY_VERIFY_WITH_TIMEOUT(std::ranges::all_of(orders, &Order::isServed), int(longest));
    }
    QTextStream out(stdout);
    out << "gpsd goes through (A absent, S silent, U without a receiver, D delivering), GeoClue "
           "backwards\norder   longest wait for a position, s\n";
    for (std::size_t index = 0; index < orders.size(); ++index) {
        out << names.at(qsizetype(index)) << "    "
            << QString::number(double(orders[index]->longestWait) / 1000, 'f', 1) << '\n';
        QVERIFY(orders[index]->longestWait < longest);
    }
}

STOPPABLE_TEST_GUILESS_MAIN(TestPositionSource)
#include "tst_positionsource.moc"
