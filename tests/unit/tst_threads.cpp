// SPDX-License-Identifier: MIT
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QtTest>

/// Everything runs on one thread, except what could block it, so no shared data needs a lock.
class TestThreads : public QObject
{
    Q_OBJECT

private slots:
    void onlyTheSoundHasAThread_data();
    void onlyTheSoundHasAThread();
};

void TestThreads::onlyTheSoundHasAThread_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QStringList>("files");
    // A sound system that hangs must not block the window.
    const QStringList sound{"platform/alarmsound.cpp"};
    const QStringList none;
    QTest::newRow("threads, subclasses too") << "new QThread|QThread \\w+[;{(]|public QThread|"
                                                "QThread::create|QThread>\\("
                                             << sound;
    QTest::newRow("moving") << "moveToThread" << sound;
    QTest::newRow("pools") << "QThreadPool|QRunnable|QtConcurrent|QFuture|QPromise" << none;
    QTest::newRow("standard library") << "std::(j?thread|async)\\b" << none;
    QTest::newRow("system")
        << "\\b(pthread_create|thrd_create|clone[23]?|v?fork)\\([^)]|\\bv?fork\\(" << none;
}

void TestThreads::onlyTheSoundHasAThread()
{
    QFETCH(QString, pattern);
    QFETCH(QStringList, files);
    const QDir sources(TROLLEO_SOURCES);
    QStringList found;
    int read = 0;
    for (const char *folder : {"app", "base", "data", "gps", "lists", "map", "network", "platform",
                               "stores", "tracking", "widgets"}) {
        for (QDirIterator each(sources.filePath(folder), {"*.cpp", "*.h"}, QDir::Files);
             each.hasNext(); ++read) {
            QFile file(each.next());
            QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(file.fileName()));
            if (QString::fromUtf8(file.readAll()).contains(QRegularExpression(pattern)))
                found << sources.relativeFilePath(file.fileName());
        }
    }
    QVERIFY(read > 80); // otherwise the sources were not read
    found.sort();
    QCOMPARE(found, files);
}

QTEST_GUILESS_MAIN(TestThreads)
#include "tst_threads.moc"
