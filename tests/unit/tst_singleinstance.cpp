// SPDX-License-Identifier: MIT
#include <QFile>
#include <QLocalSocket>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include "platform/singleinstance.h"

using namespace std::chrono_literals;
using Result = SingleInstance::Result;

/// The lock of a folder, and what the process that has it answers.
class TestSingleInstance : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void onlyOneIsTheFirst();
    void foldersDoNotMeet();
    void missingFolderIsNotLocked();
    void socketOfAKilledProcessIsReplaced();
    void tokenIsHandedOn_data();
    void tokenIsHandedOn();
    void tokenInPartsIsHandedOnOnce();
    void rubbishIsIgnored_data();
    void rubbishIsIgnored();
    void nobodyAnswersNearTheEnd();
    void nothingIsLeftBehind();

private:
    std::unique_ptr<QTemporaryDir> home;
    QString folder;
};

void TestSingleInstance::init()
{
    home = std::make_unique<QTemporaryDir>();
    folder = home->path() + '/';
}

void TestSingleInstance::cleanup()
{
    home.reset();
}

void TestSingleInstance::onlyOneIsTheFirst()
{
    auto first = std::make_unique<SingleInstance>(folder);
    QCOMPARE(first->start({}), Result::First);
    SingleInstance second(folder);
    // The first one cannot answer, because this thread is waiting.
    QCOMPARE(second.start({}, 200ms), Result::Unanswered);
    first.reset();
    QCOMPARE(second.start({}, 0ms), Result::First);
}

void TestSingleInstance::foldersDoNotMeet()
{
    const QTemporaryDir otherHome;
    SingleInstance first(folder);
    SingleInstance other(otherHome.path() + '/');
    QCOMPARE(first.start({}, 0ms), Result::First);
    QCOMPARE(other.start({}, 0ms), Result::First);
}

void TestSingleInstance::missingFolderIsNotLocked()
{
    for (const int round : {1, 2}) {
        Q_UNUSED(round)
        SingleInstance instance("/no/such/folder/");
        QCOMPARE(instance.start({}, 0ms), Result::First);
    }
}

void TestSingleInstance::socketOfAKilledProcessIsReplaced()
{
    QFile left(folder + "trolleo.socket");
    QVERIFY(left.open(QIODevice::WriteOnly));
    left.close();
    SingleInstance first(folder);
    QCOMPARE(first.start({}, 0ms), Result::First);
    QLocalSocket other;
    other.connectToServer(left.fileName());
    QVERIFY(other.waitForConnected(1000));
}

void TestSingleInstance::tokenIsHandedOn_data()
{
    QTest::addColumn<QByteArray>("token");
    QTest::addColumn<QString>("subfolder");
    QTest::newRow("none") << QByteArray() << QString();
    QTest::newRow("one") << QByteArray("4f2a-77_TIME123") << QString();
    QTest::newRow("longest") << QByteArray(4096, 'x') << QString();
    // The address of a socket has room for 107 bytes.
    QTest::newRow("one in a long home") << QByteArray("token") << QString(200, 'h') + '/';
}

void TestSingleInstance::tokenIsHandedOn()
{
    QFETCH(QByteArray, token);
    QFETCH(QString, subfolder);
    folder += subfolder;
    QVERIFY(QDir().mkpath(folder));
    SingleInstance first(folder);
    const QSignalSpy startedAgain(&first, &SingleInstance::startedAgain);
    QCOMPARE(first.start({}), Result::First);
    Result result = Result::First;
    const std::unique_ptr<QThread> process(QThread::create([this, &token, &result] {
        SingleInstance second(folder);
        result = second.start(token);
    }));
    process->start();
    QTRY_VERIFY(process->isFinished());
    QCOMPARE(result, Result::Answered);
    QCOMPARE(startedAgain.size(), 1);
    QCOMPARE(startedAgain.first().first().toString(), QString::fromLatin1(token));
}

void TestSingleInstance::tokenInPartsIsHandedOnOnce()
{
    SingleInstance first(folder);
    const QSignalSpy startedAgain(&first, &SingleInstance::startedAgain);
    QCOMPARE(first.start({}), Result::First);
    QLocalSocket other;
    other.connectToServer(folder + "trolleo.socket");
    other.write("one ");
    QTest::qWait(50);
    QCOMPARE(startedAgain.size(), 0);
    other.write("token\nand more");
    QTRY_COMPARE(startedAgain.size(), 1);
    QCOMPARE(startedAgain.first().first().toString(), QString("one token"));
    QTRY_COMPARE(other.state(), QLocalSocket::UnconnectedState);
    QCOMPARE(other.readAll(), QByteArray("\n"));
    QCOMPARE(startedAgain.size(), 1);
}

void TestSingleInstance::rubbishIsIgnored_data()
{
    QTest::addColumn<QByteArray>("sent");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("no line") << QByteArray("token");
    QTest::newRow("a line without an end") << QByteArray(1024 * 1024, 'x');
}

void TestSingleInstance::rubbishIsIgnored()
{
    QFETCH(QByteArray, sent);
    SingleInstance first(folder);
    const QSignalSpy startedAgain(&first, &SingleInstance::startedAgain);
    QCOMPARE(first.start({}), Result::First);
    {
        QLocalSocket other;
        other.connectToServer(folder + "trolleo.socket");
        other.write(sent);
        if (sent.size() > 4096)
            QTRY_COMPARE_WITH_TIMEOUT(other.state(), QLocalSocket::UnconnectedState, 2000);
        else
            QTest::qWait(50);
    }
    QTest::qWait(50);
    QCOMPARE(startedAgain.size(), 0);
    QCOMPARE(first.findChildren<LocalSocket *>().size(), 0);
}

void TestSingleInstance::nobodyAnswersNearTheEnd()
{
    SingleInstance first(folder);
    QCOMPARE(first.start({}), Result::First);
    first.stopListening();
    SingleInstance second(folder);
    QElapsedTimer clock;
    clock.start();
    QCOMPARE(second.start({}, 300ms), Result::Unanswered);
    QVERIFY(clock.elapsed() >= 300); // it waits for the end
}

void TestSingleInstance::nothingIsLeftBehind()
{
    {
        SingleInstance first(folder);
        QCOMPARE(first.start({}), Result::First);
    }
    QCOMPARE(QDir(folder).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot),
             QStringList());
}

QTEST_GUILESS_MAIN(TestSingleInstance)
#include "tst_singleinstance.moc"
