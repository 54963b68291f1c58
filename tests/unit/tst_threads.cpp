// SPDX-License-Identifier: MIT
#include <QMap>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QtTest>

/// Everything runs on one thread but what could block it: no data is shared that needs a lock. Who
/// makes a thread is seen in what the object files want of the libraries.
class TestThreads : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void onlyTheseMakeThreads_data();
    void onlyTheseMakeThreads();

private:
    /// What each object file of the program leaves to others to define.
    QMap<QString, QStringList> wanted;
};

void TestThreads::initTestCase()
{
    QProcess nm;
    nm.start(NM, {"--print-file-name", "--undefined-only", "--demangle", CORE});
    QVERIFY2(nm.waitForStarted(), "nm cannot be run; its package is binutils");
    QVERIFY(nm.waitForFinished());
    QCOMPARE(nm.exitCode(), 0);
    // .../libtrolleo_core.a:database.cpp.o:                 U QSqlQuery::exec(QString const&)
    static const QRegularExpression line(R"(:([^:/ ]+)\.o: +[Uwv] (.+)$)");
    const QStringList lines = QString::fromUtf8(nm.readAllStandardOutput()).split('\n');
    for (const QString &text : lines) {
        const QRegularExpressionMatch match = line.match(text);
        if (match.hasMatch())
            wanted[match.captured(1)] << match.captured(2);
    }
    // Else none of the others would be seen either.
    QVERIFY(wanted.value("database.cpp").contains("QSqlQuery::exec(QString const&)"));
    QVERIFY(wanted.size() > 40);
}

void TestThreads::onlyTheseMakeThreads_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QSet<QString>>("files");
    // A sound system that hangs must not keep the window.
    const QSet<QString> sound{"alarmsound.cpp"};
    const QSet<QString> none;
    QTest::newRow("starting") << "^QThread::start\\(" << sound;
    QTest::newRow("constructing, subclasses too") << "^QThread::QThread\\(" << sound;
    QTest::newRow("moving") << "^QObject::moveToThread\\(" << sound;
    QTest::newRow("creating") << "^QThread::create" << none;
    QTest::newRow("pools") << "QThreadPool|QRunnable|QtConcurrent|QFuture" << none;
    // With std::async and std::jthread as well.
    QTest::newRow("standard library") << "^std::thread::_M_start_thread" << none;
    QTest::newRow("system") << "^(pthread_create|thrd_create|clone[23]?|v?fork)(@|$)" << none;
}

void TestThreads::onlyTheseMakeThreads()
{
    QFETCH(QString, pattern);
    QFETCH(QSet<QString>, files);
    QSet<QString> found;
    for (auto file = wanted.cbegin(); file != wanted.cend(); ++file) {
        if (!file->filter(QRegularExpression(pattern)).isEmpty())
            found << file.key();
    }
    QCOMPARE(found, files);
}

QTEST_GUILESS_MAIN(TestThreads)
#include "tst_threads.moc"
