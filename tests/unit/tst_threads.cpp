// SPDX-License-Identifier: MIT
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QtTest>

/// Everything runs on one thread, so no data needs a lock.
class TestThreads : public QObject
{
    Q_OBJECT

private slots:
    void noneIsStarted_data();
    void noneIsStarted();
};

void TestThreads::noneIsStarted_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("example");
    QTest::newRow("threads, subclasses too") << "new QThread|QThread \\w+[;{(]|public QThread|"
                                                "QThread::create|QThread>\\("
                                             << "std::make_unique<QThread>(this)";
    QTest::newRow("moving") << "moveToThread"
                            << "moveToThread(thread)";
    QTest::newRow("pools") << "QThreadPool|QRunnable|QtConcurrent|QFuture|QPromise"
                           << "QtConcurrent::run";
    QTest::newRow("standard library") << "std::(j?thread|async)\\b"
                                      << "std::jthread";
    QTest::newRow("system")
        << "\\b(pthread_create|thrd_create|clone[23]?|v?fork)\\([^)]|\\bv?fork\\("
        << "::vfork()";
}

void TestThreads::noneIsStarted()
{
    QFETCH(QString, pattern);
    QFETCH(QString, example);
    const QRegularExpression start(pattern);
    QVERIFY(example.contains(start));
    const QDir sources(TROLLEO_SOURCES);
    QStringList found;
    int read = 0;
    for (const char *folder : {"app", "base", "data", "gps", "lists", "map", "network", "platform",
                               "stores", "tracking", "widgets"}) {
        for (QDirIterator each(sources.filePath(folder), {"*.cpp", "*.h"}, QDir::Files);
             each.hasNext(); ++read) {
            QFile file(each.next());
            QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(file.fileName()));
            if (QString::fromUtf8(file.readAll()).contains(start))
                found << sources.relativeFilePath(file.fileName());
        }
    }
    QVERIFY(read > 80); // otherwise the sources were not read
    QCOMPARE(found, QStringList());
}

QTEST_GUILESS_MAIN(TestThreads)
#include "tst_threads.moc"
