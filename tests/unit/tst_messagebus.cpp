// SPDX-License-Identifier: MIT
#include <QElapsedTimer>
#include <QLocalServer>
#include <QLocalSocket>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include "platform/messagebus.h"
#include "tests/support/privatebus.h"

static constexpr int soon = 5000; // milliseconds

class TestMessageBus : public QObject
{
    Q_OBJECT

private slots:
    void resultsOfTheExpectedSignature();
    void errorsAndOtherSignaturesFail();
    void callsWaitForTheBus();
    void nobodyWaitsWhoIsGone();
    void signalsOfTheExpectedSignature();
    void addressesWithoutASocket_data();
    void addressesWithoutASocket();
    void serverThatIsNoBus_data();
    void serverThatIsNoBus();
    void connectionThatEnds();
};

static const MessageBus::Call ask{"org.trolleo.Test", "/org/trolleo/Test", "org.trolleo.Test",
                                  "Ask"};

/// A service that answers "Ask" with 7.
struct Service : MadeUpService
{
    explicit Service(const QString &busAddress)
        : MadeUpService(busAddress, "org.trolleo.Test", "/org/trolleo/Test")
    {
        answers["Ask"] = [](const QDBusMessage &message) {
            return message.createReply(7U);
        };
        answers["Refuse"] = [](const QDBusMessage &message) {
            return message.createErrorReply(QDBusError::AccessDenied, "no");
        };
    }
};

void TestMessageBus::resultsOfTheExpectedSignature()
{
    const PrivateBus daemon;
    const Service service(daemon.address());
    MessageBus bus(daemon.address());
    QVariantList taken;
    bus.call(this, ask, "u", [&](const QVariantList &results) { taken = results; });
    QTRY_COMPARE_WITH_TIMEOUT(taken, QVariantList{7U}, soon);
}

void TestMessageBus::errorsAndOtherSignaturesFail()
{
    const PrivateBus daemon;
    const Service service(daemon.address());
    MessageBus bus(daemon.address());
    QStringList errors;
    const auto done = [&](const QVariantList &) {
        errors << "none";
    };
    const auto failed = [&](const QString &error) {
        errors << error;
    };
    bus.call(this, ask, "s", done, failed);
    QTRY_COMPARE_WITH_TIMEOUT(errors, QStringList{"org.freedesktop.DBus.Error.InvalidSignature"},
                              soon);
    MessageBus::Call refused = ask;
    refused.method = "Refuse";
    bus.call(this, refused, "u", done, failed);
    QTRY_COMPARE_WITH_TIMEOUT(errors.size(), 2, soon);
    QCOMPARE(errors.last(), "org.freedesktop.DBus.Error.AccessDenied");
    MessageBus::Call nobody = ask;
    nobody.service = "org.trolleo.Nobody";
    bus.call(this, nobody, "u", done, failed);
    QTRY_COMPARE_WITH_TIMEOUT(errors.size(), 3, soon);
    MessageBus::Call unanswered = ask;
    unanswered.method = "Wait";
    unanswered.timeout = std::chrono::milliseconds(300);
    bus.call(this, unanswered, "u", done, failed);
    QTRY_COMPARE_WITH_TIMEOUT(errors.size(), 4, soon);
    QCOMPARE(errors.last(), "org.freedesktop.DBus.Error.NoReply");
}

void TestMessageBus::callsWaitForTheBus()
{
    const PrivateBus daemon;
    const Service service(daemon.address());
    daemon.freeze();
    MessageBus bus(daemon.address());
    int answers = 0;
    QElapsedTimer clock;
    clock.start();
    for (int count = 0; count < 3; ++count)
        bus.call(this, ask, "u", [&](const QVariantList &) { ++answers; });
    QVERIFY(clock.elapsed() < 500);
    QTest::qWait(500);
    QCOMPARE(answers, 0);
    daemon.thaw();
    QTRY_COMPARE_WITH_TIMEOUT(answers, 3, soon);
}

void TestMessageBus::nobodyWaitsWhoIsGone()
{
    const PrivateBus daemon;
    const Service service(daemon.address());
    MessageBus bus(daemon.address());
    int answers = 0;
    const auto count = [&](const QVariantList &) {
        ++answers;
    };
    auto context = std::make_unique<QObject>();
    bus.call(context.get(), ask, "u", count); // before the bus is connected
    context.reset();
    bus.call(this, ask, "u", count);
    QTRY_COMPARE_WITH_TIMEOUT(answers, 1, soon);
    context = std::make_unique<QObject>();
    bus.call(context.get(), ask, "u", count);
    context.reset();
    bus.call(this, ask, "u", count);
    QTRY_COMPARE_WITH_TIMEOUT(answers, 2, soon);
    QCOMPARE(service.calls("Ask").size(), 3);
}

/// Counts received signals.
class Counter : public QObject
{
    Q_OBJECT

public slots:
    void take(uint)
    {
        ++count;
    }

public:
    int count = 0;
};

void TestMessageBus::signalsOfTheExpectedSignature()
{
    const PrivateBus daemon;
    const Service service(daemon.address());
    MessageBus bus(daemon.address());
    bool isReady = false;
    bus.whenReady(this, [&] { isReady = true; });
    QTRY_VERIFY_WITH_TIMEOUT(isReady, soon);
    Counter counter;
    bus.connectSignal({{}, ask.path, ask.interface, "Changed", "u"}, &counter, SLOT(take(uint)));
    const auto tell = [&](const QVariant &value) {
        service.emitSignal(ask.path, ask.interface, "Changed", {value});
    };
    QTRY_VERIFY_WITH_TIMEOUT((tell(1U), counter.count > 0), soon);
    QTest::qWait(100);
    counter.count = 0;
    tell("text");
    tell(QStringList{"a", "b"});
    tell(2U);
    QTRY_COMPARE_WITH_TIMEOUT(counter.count, 1, soon);
}

void TestMessageBus::addressesWithoutASocket_data()
{
    QTest::addColumn<QString>("address");
    for (const char *address : {"", "nonsense", "unix:", "unix:path=", "unix:path=/nonexistent",
                                "tcp:host=127.0.0.1", "unixexec:path=/bin/false",
                                "unix:guid=1;tcp:", "unix:path=%zz", "unix:abstract=none", ";;;"})
        QTest::newRow(address) << address;
}

void TestMessageBus::addressesWithoutASocket()
{
    QFETCH(QString, address);
    MessageBus bus(address);
    bool isReady = false;
    QElapsedTimer clock;
    clock.start();
    bus.whenReady(this, [&] { isReady = true; });
    bus.send(ask);
    QVERIFY(clock.elapsed() < 500);
    QTest::qWait(100);
    QVERIFY(!isReady);
}

void TestMessageBus::serverThatIsNoBus_data()
{
    QTest::addColumn<QByteArray>("words");
    QTest::newRow("says nothing") << QByteArray();
    QTest::newRow("talks without end") << QByteArray(1 << 20, 'x');
    QTest::newRow("speaks another protocol") << QByteArray("HTTP/1.1 400 Bad Request\r\n\r\n");
    QTest::newRow("accepts, and then says nothing") << QByteArray("OK 1234\r\n");
    QTest::newRow("accepts, and then talks nonsense") << QByteArray("OK 1234\r\nnonsense");
    QTest::newRow("refuses") << QByteArray("REJECTED EXTERNAL\r\n");
}

void TestMessageBus::serverThatIsNoBus()
{
    QFETCH(QByteArray, words);
    const QTemporaryDir folder;
    QLocalServer server;
    QVERIFY(server.listen(folder.filePath("bus")));
    connect(&server, &QLocalServer::newConnection, this, [&] {
        QLocalSocket *client = server.nextPendingConnection();
        connect(client, &QLocalSocket::readyRead, client, [client, words] {
            client->readAll();
            client->write(words);
            client->flush();
        });
    });
    MessageBus bus("unix:path=" + folder.filePath("bus"));
    bool isReady = false;
    bus.whenReady(this, [&] { isReady = true; });
    QTest::qWait(1000);
    QVERIFY(!isReady);
}

void TestMessageBus::connectionThatEnds()
{
    auto daemon = std::make_unique<PrivateBus>();
    MessageBus bus(daemon->address());
    QSignalSpy lost(&bus, &MessageBus::lost);
    bool isReady = false;
    bus.whenReady(this, [&] { isReady = true; });
    QTRY_VERIFY_WITH_TIMEOUT(isReady, soon);
    daemon.reset();
    QTRY_COMPARE_WITH_TIMEOUT(lost.count(), 1, soon);
    isReady = false;
    bus.whenReady(this, [&] { isReady = true; });
    QTest::qWait(200);
    QVERIFY(!isReady);
}

STOPPABLE_TEST_GUILESS_MAIN(TestMessageBus)
#include "tst_messagebus.moc"
