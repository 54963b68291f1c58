// SPDX-License-Identifier: MIT
#include <unistd.h>

#include <chrono>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QSqlQuery>
#include <QStackedWidget>
#include <QtTest>

#include "app/shopwindow.h"
#include "base/trsettings.h"
#include "platform/informationbox.h"
#include "tests/support/databaselock.h"
#include "tests/support/emulator.h"
#include "tests/support/pagenames.h"
#include "tests/support/records.h"
#include "tests/support/shopdriver.h"
#include "tests/support/testhome.h"

using namespace std::chrono_literals;

namespace {

/// Permissions do not restrict root, so root becomes another user while this object exists.
class WithoutPrivileges
{
public:
    WithoutPrivileges()
    {
        if (self == 0 && seteuid(nobody) != 0)
            stopTest("cannot give up root's privileges");
    }
    ~WithoutPrivileges()
    {
        if (self == 0 && seteuid(self) != 0)
            qFatal("cannot take root's privileges again");
    }
    WithoutPrivileges(const WithoutPrivileges &) = delete;
    WithoutPrivileges &operator=(const WithoutPrivileges &) = delete;

private:
    const uid_t self = geteuid();
    const uid_t nobody = 65534;
};

constexpr auto readable = QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther;
constexpr auto enterable = QFile::ExeOwner | QFile::ExeGroup | QFile::ExeOther;

} // namespace

/// Tests the program with files and folders that it cannot use.
class TestBadWorlds : public QObject
{
    Q_OBJECT

private slots:
    void dataFolderIsAFile();
    void databaseIsAFolder();
    void databaseHasAJournalThatCannotBeRead();
    void databaseIsDamagedBehindALock();
    void anotherBannerDoesNotReplaceTheLast();
    void closingTheWindowWhileTheBannerShowsIsSafe();
    void homeIsReadOnly();
    void homeIsAFile();
    void databaseIsEmpty();
    void databaseIsGarbage_data();
    void databaseIsGarbage();
    void databaseIsTruncated_data();
    void databaseIsTruncated();
    void namesOfAMegabyte();
    void databaseIsReadOnly();
    void databaseIsLockedByAnotherProcess();
    void tablesAreMadeWhenTheLockIsGone();
    void trackingStartsWhenTheLockIsGone();
    void endOfALockInterruptsNobody();
    void tablesAreMadeWhenAnotherProcessHasWritten();
    void lockThatEndsDuringTheStartAltersNothing();
    void databaseHasTheStoresTableOnly();
    void tableNamesAreComparedExactly();
    void databaseVanishesWhileOpen();
    void settingsAreGarbage();

private:
    void expectBannerAndExit();
    void expectExitWithBanner(const QElapsedTimer &sinceStart);
    void expectUsableWindowWithoutBanner(ShopWindow &window);
    QByteArray goodDatabase();
};

/// Checks that a banner reports the error, that the window works meanwhile, and that the program
/// ends with the banner.
void TestBadWorlds::expectBannerAndExit()
{
    QElapsedTimer sinceStart;
    sinceStart.start();
    ShopWindow window;
    QVERIFY(!QSqlDatabase::database(QSqlDatabase::defaultConnection, false).isOpen());
    QCOMPARE(window.findChild<QStackedWidget *>("pageStack")->count(), PageCount);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    const auto *banner = window.findChild<InformationBox *>();
    QVERIFY(banner);
    QVERIFY(banner->isVisible());
    QCOMPARE(banner->text(), "Can't open database");
    QCOMPARE(window.children().last(), banner); // above the pages, which were created later
    expectExitWithBanner(sinceStart);
}

/// Checks that the program ends three seconds after the banner was seen, which was after the start
/// of the clock and just now.
void TestBadWorlds::expectExitWithBanner(const QElapsedTimer &sinceStart)
{
    QElapsedTimer sinceSeen;
    sinceSeen.start();
    bool hung = false;
    QTimer limit;
    limit.callOnTimeout([&hung] {
        hung = true;
        QCoreApplication::exit(1);
    });
    limit.start(10000);
    QCOMPARE(QApplication::exec(), 0);
    QVERIFY(!hung);
    QVERIFY2(sinceStart.elapsed() > 2500, qPrintable(QString::number(sinceStart.elapsed())));
    QVERIFY2(sinceSeen.elapsed() < 4500, qPrintable(QString::number(sinceSeen.elapsed())));
}

void TestBadWorlds::expectUsableWindowWithoutBanner(ShopWindow &window)
{
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QVERIFY(!window.findChild<InformationBox *>());
    QVERIFY(window.findChild<QPushButton *>("shoppingButton")->isVisible());
    for (const char *button : {"shoppingButton", "reminderButton", "shopsButton"})
        QTest::mouseClick(window.findChild<QPushButton *>(button), Qt::LeftButton);
}

/// Returns a database created by the program, with one row.
QByteArray TestBadWorlds::goodDatabase()
{
    const TestHome home;
    {
        const ShopWindow window;
    }
    {
        SecondConnection(home.databaseFile()).add(category("Food"));
    }
    return home.readDatabaseFile();
}

void TestBadWorlds::dataFolderIsAFile()
{
    const TestHome home;
    QFile file(home.dataFolder());
    QVERIFY(file.open(QIODevice::ReadWrite));
    QCOMPARE(file.write("mine"), 4);
    file.flush();
    expectBannerAndExit();
    file.seek(0);
    QCOMPARE(file.readAll(), "mine");
}

void TestBadWorlds::databaseIsAFolder()
{
    const TestHome home;
    QVERIFY(QDir().mkpath(home.databaseFile()));
    expectBannerAndExit();
    QVERIFY(QDir(home.databaseFile()).isEmpty());
}

/// As when a power loss was followed by a mount without writing: what the last program left cannot
/// be taken back. It is not a file without tables.
void TestBadWorlds::databaseHasAJournalThatCannotBeRead()
{
    const TestHome home;
    const QByteArray before = goodDatabase();
    home.writeDatabaseFile(before);
    QVERIFY(QDir().mkpath(home.databaseFile() + "-journal"));
    expectBannerAndExit();
    QCOMPARE(home.readDatabaseFile(), before);
}

void TestBadWorlds::databaseIsDamagedBehindALock()
{
    const TestHome home;
    home.writeDatabaseFile(QByteArray());
    DatabaseLock lock(home);
    ShopWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    home.writeDatabaseFile(QByteArray(5000, '?'));
    QElapsedTimer sinceStart;
    sinceStart.start();
    lock.releaseAfter(0ms);
    expectExitWithBanner(sinceStart);
}

void TestBadWorlds::anotherBannerDoesNotReplaceTheLast()
{
    auto home = std::make_unique<TestHome>();
    home->writeDatabaseFile(QByteArray(5000, '?'));
    QElapsedTimer sinceStart;
    sinceStart.start();
    ShopDriver shop(std::move(home));
    shop.press("shopsButton");
    shop.press("storesButton");
    shop.press("addButton");
    shop.press("coordinatesButton");
    shop.type("-122.25", "longitudeField"); // is refused with advice
    QCOMPARE(shop.banner(), "Can't open database");
    expectExitWithBanner(sinceStart);
}

void TestBadWorlds::closingTheWindowWhileTheBannerShowsIsSafe()
{
    const TestHome home;
    QVERIFY(QDir().mkpath(home.databaseFile()));
    ShopWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QVERIFY(window.findChild<InformationBox *>()->isVisible());
}

void TestBadWorlds::homeIsReadOnly()
{
    const TestHome home;
    const QString parent = QFileInfo(home.path()).path();
    QVERIFY(QFile::setPermissions(parent, readable | enterable | QFile::WriteOwner));
    QVERIFY(QFile::setPermissions(home.path(), readable | enterable));
    {
        const WithoutPrivileges nobody;
        expectBannerAndExit();
    }
    QVERIFY(!QFile::exists(home.dataFolder()));
    QVERIFY(QFile::setPermissions(home.path(), readable | enterable | QFile::WriteOwner));
}

void TestBadWorlds::homeIsAFile()
{
    const TestHome home;
    QFile file(home.path() + "/file");
    QVERIFY(file.open(QIODevice::WriteOnly));
    qputenv("HOME", QFile::encodeName(file.fileName()));
    expectBannerAndExit();
    QVERIFY(QFileInfo(file.fileName()).isFile());
}

void TestBadWorlds::databaseIsEmpty()
{
    const TestHome home;
    home.writeDatabaseFile(QByteArray());
    ShopWindow window;
    expectUsableWindowWithoutBanner(window);
    SecondConnection second(home.databaseFile());
    QCOMPARE(second.tables().size(), 7);
}

void TestBadWorlds::databaseIsGarbage_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("a text") << QByteArray("This is not a database.\n");
    QTest::newRow("zeros") << QByteArray(8192, '\0');
    QTest::newRow("noise") << QByteArray("\x9d\x02\xff\x1b~").repeated(4000);
    QTest::newRow("header only") << QByteArray("SQLite format 3\0", 16);
    QTest::newRow("header and noise")
        << QByteArray("SQLite format 3\0", 16) + QByteArray("\x9d\x02\xff").repeated(4000);
}

void TestBadWorlds::databaseIsGarbage()
{
    QFETCH(QByteArray, content);
    const TestHome home;
    home.writeDatabaseFile(content);
    expectBannerAndExit();
    QCOMPARE(home.readDatabaseFile(), content);
}

void TestBadWorlds::databaseIsTruncated_data()
{
    QTest::addColumn<int>("size");
    for (const int size : {10, 100, 4096, 20000})
        QTest::addRow("%d bytes", size) << size;
}

void TestBadWorlds::databaseIsTruncated()
{
    QFETCH(int, size);
    const QByteArray whole = goodDatabase();
    QVERIFY(whole.size() > size);
    const TestHome home;
    home.writeDatabaseFile(whole.left(size));
    expectBannerAndExit();
    QCOMPARE(home.readDatabaseFile(), whole.left(size));
}

/// Laying out such names would take more than a minute.
void TestBadWorlds::namesOfAMegabyte()
{
    const QString name = QString("Long name ").repeated(100000);
    ShopDriver shop(store(1, name).at(10, 20).inCategory(1).openList(1, name).good(name));
    shop.db->add(Records().category(1, name));
    QElapsedTimer clock;
    clock.start();
    const auto paint = [&shop] {
        shop.pageWidget()->grab();
        QCoreApplication::processEvents();
    };
    shop.press("shoppingButton");
    shop.press("listsButton");
    paint();
    shop.tap(0);
    shop.press("selectButton");
    paint();
    shop.press("goodsButton");
    paint();
    shop.press("okButton");
    shop.press("editButton");
    paint();
    shop.press("backButton");
    shop.press("startButton");
    paint();
    shop.press("okButton");
    shop.press("backButton");
    shop.press("shopsButton");
    shop.press("storesButton");
    paint();
    shop.tap(0);
    shop.press("selectButton");
    paint();
    shop.press("editButton");
    paint();
    const qint64 limit = Emulator::isUsed() ? 300000 : 30000;
    QVERIFY2(clock.elapsed() < limit, qPrintable(QString::number(clock.elapsed())));
}

void TestBadWorlds::databaseIsReadOnly()
{
    const QByteArray content = goodDatabase();
    const TestHome home;
    home.writeDatabaseFile(content);
    for (const QString &folder : {QFileInfo(home.path()).path(), home.path(), home.dataFolder()})
        QVERIFY(QFile::setPermissions(folder, readable | enterable | QFile::WriteOwner));
    QVERIFY(QFile::setPermissions(home.databaseFile(), readable));
    {
        const WithoutPrivileges nobody;
        ShopWindow window;
        expectUsableWindowWithoutBanner(window);
        QSqlQuery query("select name from category");
        QVERIFY(query.first());
        QCOMPARE(query.value(0).toString(), "Food");
        QVERIFY(!query.exec("delete from category"));
    }
    QCOMPARE(home.readDatabaseFile(), content);
}

void TestBadWorlds::databaseIsLockedByAnotherProcess()
{
    const QByteArray content = goodDatabase();
    const TestHome home;
    home.writeDatabaseFile(content);
    DatabaseLock lock(home);

    QElapsedTimer clock;
    clock.start();
    ShopWindow window;
    QVERIFY(window.findChild<InformationBox *>());
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QVERIFY2(clock.elapsed() < 4000, qPrintable(QString::number(clock.elapsed())));
    QVERIFY(window.findChild<InformationBox *>()->isVisible());
    QCOMPARE(window.findChild<InformationBox *>()->text(),
             "Another program is using the lists. Nothing is saved until it has finished.");
    // It remains, although another banner replaces it.
    QTest::qWait(400);
    const QPointer<InformationBox> other = InformationBox::information(&window, "other", 700ms);
    QTest::qWait(400);
    QVERIFY(other);
    QTRY_VERIFY(!other);
    QTRY_VERIFY(window.findChild<InformationBox *>());
    QVERIFY(window.findChild<InformationBox *>()->text().startsWith("Another program"));
    QCOMPARE(home.readDatabaseFile(), content);

    // A lock that is released in time causes only a delay.
    lock.releaseAfter(1s);
    QSqlQuery query;
    QVERIFY(query.exec("insert into category values (2, 'Tools')"));
    QVERIFY(lock.waitUntilReleased());
    SecondConnection second(home.databaseFile());
    QCOMPARE(second.column("select name from category order by id"),
             (QVariantList{"Food", "Tools"}));
    QTRY_VERIFY(!window.findChild<InformationBox *>());
}

void TestBadWorlds::tablesAreMadeWhenTheLockIsGone()
{
    const TestHome home;
    home.writeDatabaseFile(QByteArray());
    DatabaseLock lock(home);
    ShopWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QVERIFY(window.findChild<InformationBox *>()->isVisible());
    lock.releaseAfter(0ms);
    QVERIFY(lock.waitUntilReleased());
    QTRY_VERIFY(!window.findChild<InformationBox *>());
    SecondConnection second(home.databaseFile());
    QCOMPARE(second.tables().size(), 7);
    QSqlQuery query;
    QVERIFY(query.exec("insert into category values (1, 'Food')"));
}

static void letTrackingStartByItself()
{
    qputenv("TROLLEO_GPSD", "127.0.0.1:9"); // none
    TrSettings::instance().setGpsEnabled(true);
    TrSettings::instance().setTrackAutoStart(true);
}

void TestBadWorlds::trackingStartsWhenTheLockIsGone()
{
    const TestHome home;
    home.writeDatabaseFile(goodDatabase());
    {
        SecondConnection second(home.databaseFile());
        QVERIFY(second.run("insert into magazin values (9, 'Bakery', null, null)"));
        QVERIFY(second.run("insert into gpscoord values (9, 10, 20, 0)"));
        QVERIFY(second.run("insert into shoplist values (9, 'Bread', 9, 1)"));
    }
    letTrackingStartByItself();
    DatabaseLock lock(home);
    QElapsedTimer clock;
    clock.start();
    ShopWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QVERIFY2(clock.elapsed() < 4000, qPrintable(QString::number(clock.elapsed())));
    const auto *stack = window.findChild<QStackedWidget *>("pageStack");
    const auto *stop = stack->widget(PageTracking)->findChild<QPushButton *>("stopButton");
    QCOMPARE(stack->currentIndex(), int(PageMain));
    QVERIFY(!stop->isEnabled());
    lock.releaseAfter(0ms);
    QVERIFY(lock.waitUntilReleased());
    QTRY_VERIFY(stop->isEnabled());
    QCOMPARE(stack->currentIndex(), int(PageMain));
}

/// There is nothing to track, and a person types meanwhile.
void TestBadWorlds::endOfALockInterruptsNobody()
{
    const TestHome home;
    home.writeDatabaseFile(goodDatabase());
    letTrackingStartByItself();
    DatabaseLock lock(home);
    ShopWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    auto *stack = window.findChild<QStackedWidget *>("pageStack");
    stack->setCurrentIndex(PageListEdit);
    lock.releaseAfter(0ms);
    QVERIFY(lock.waitUntilReleased());
    QTRY_VERIFY(!window.findChild<InformationBox *>());
    QTest::qWait(100);
    QCOMPARE(stack->currentIndex(), int(PageListEdit));
}

/// The other process only writes, so this one can read.
void TestBadWorlds::tablesAreMadeWhenAnotherProcessHasWritten()
{
    const TestHome home;
    home.writeDatabaseFile(QByteArray());
    SecondConnection second(home.databaseFile());
    QVERIFY(second.run("begin immediate"));
    ShopWindow window;
    QVERIFY(window.findChild<InformationBox *>());
    QCOMPARE(second.tables().size(), 0);
    QVERIFY(second.run("rollback"));
    QTRY_VERIFY(!window.findChild<InformationBox *>());
    QCOMPARE(second.tables().size(), 7);
}

void TestBadWorlds::lockThatEndsDuringTheStartAltersNothing()
{
    const TestHome home;
    home.writeDatabaseFile(QByteArray());
    {
        SecondConnection second(home.databaseFile());
        QVERIFY(second.run("create table magazin (x)"));
    }
    const QByteArray before = home.readDatabaseFile();
    // The start waits a quarter of a second for each of its statements.
    for (const auto time : {300ms, 450ms, 600ms, 900ms}) {
        DatabaseLock lock(home);
        lock.releaseAfter(time);
        {
            const ShopWindow window;
        }
        QVERIFY(lock.waitUntilReleased());
        QCOMPARE(home.readDatabaseFile(), before);
    }
}

void TestBadWorlds::databaseHasTheStoresTableOnly()
{
    const TestHome home;
    home.writeDatabaseFile(QByteArray());
    {
        SecondConnection second(home.databaseFile());
        QVERIFY(second.run("create table magazin (x)"));
    }
    const QByteArray before = home.readDatabaseFile();
    {
        ShopWindow window;
        expectUsableWindowWithoutBanner(window);
    }
    QCOMPARE(home.readDatabaseFile(), before);
}

void TestBadWorlds::tableNamesAreComparedExactly()
{
    const TestHome home;
    home.writeDatabaseFile(QByteArray());
    {
        SecondConnection second(home.databaseFile());
        QVERIFY(second.run("create table MAGAZIN (x)"));
    }
    ShopWindow window;
    expectUsableWindowWithoutBanner(window);
    SecondConnection second(home.databaseFile());
    QCOMPARE(second.tables(), (QStringList{"MAGAZIN", "category", "gpscoord", "purchase", "purref",
                                           "reminders", "shoplist"}));
}

void TestBadWorlds::databaseVanishesWhileOpen()
{
    const TestHome home;
    ShopWindow window;
    QVERIFY(QFile::remove(home.databaseFile()));
    expectUsableWindowWithoutBanner(window);
}

void TestBadWorlds::settingsAreGarbage()
{
    const TestHome home;
    QDir().mkpath(QFileInfo(home.settingsFile()).path());
    QFile file(home.settingsFile());
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("\x00\xff[General\nLanguageId=@Rect(1)\nGpsEnabled=perhaps\n"
               "SoundFileName=@Invalid()\n%%%=;\n");
    file.close();
    ShopWindow window;
    expectUsableWindowWithoutBanner(window);
    QCOMPARE(window.windowTitle(), "Trolleo");
}

STOPPABLE_TEST_MAIN(TestBadWorlds)
#include "tst_badworlds.moc"
