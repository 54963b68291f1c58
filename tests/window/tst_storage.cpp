// SPDX-License-Identifier: MIT
#include <sys/mount.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <sched.h>

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QPushButton>
#include <QtPlugin>
#include <QtTest>

#include "base/pages.h"
#include "tests/support/databaselock.h"
#include "tests/support/records.h"
#include "tests/support/shopdriver.h"
#include "widgets/listrow.h"

// Without a position source stores have no coordinates.
Q_IMPORT_PLUGIN(TestPositionPlugin)

using namespace std::chrono_literals;

namespace {

/// The reason why this process cannot mount anything; empty if it can.
QByteArray whyNoMounts = "nobody has asked the kernel";

bool writeTo(const char *file, const QByteArray &text)
{
    QFile target(file);
    return target.open(QIODevice::WriteOnly) && target.write(text) == text.size() && target.flush();
}

/// Gives this process separate mounts, which are invisible to others and end with it. Must be
/// called before any thread is started.
void takeOwnMounts()
{
    const auto user = getuid();
    const auto group = getgid();
    const auto failed = [](const char *what) {
        whyNoMounts = QByteArray(what) + ": " + std::strerror(errno);
    };
    if (unshare(user == 0 ? CLONE_NEWNS : CLONE_NEWUSER | CLONE_NEWNS) != 0)
        return failed("the kernel gives no mounts of their own to a test");
    if (user != 0) {
        if (!writeTo("/proc/self/setgroups", "deny") ||
            !writeTo("/proc/self/uid_map", "0 " + QByteArray::number(user) + " 1") ||
            !writeTo("/proc/self/gid_map", "0 " + QByteArray::number(group) + " 1"))
            return failed("the kernel gives no user of its own to a test");
    }
    if (mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
        return failed("the kernel does not keep the test's mounts from others");
    whyNoMounts.clear();
}

/// A file system of a given size, mounted on a folder while this object exists.
class SmallDisk
{
public:
    SmallDisk(const QString &folder, int kibibytes)
        : path(QFile::encodeName(folder))
    {
        QDir().mkpath(folder);
        const QByteArray size = "size=" + QByteArray::number(kibibytes) + 'k';
        if (mount("tmpfs", path.constData(), "tmpfs", 0, size.constData()) != 0)
            stopTest(QString("cannot mount: ") + std::strerror(errno));
    }
    ~SmallDisk()
    {
        setWritable();
        umount2(path.constData(), MNT_DETACH);
    }
    SmallDisk(const SmallDisk &) = delete;
    SmallDisk &operator=(const SmallDisk &) = delete;

    /// Fills it with a file, except for that many pages of 4 KiB.
    void fill(int pagesLeft = 0)
    {
        QFile filler(fillerName());
        if (!filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
            stopTest("there is no room for even a name");
        const QByteArray page(pageSize, 'x');
        while (filler.write(page) == page.size())
            continue;
        filler.resize(filler.size() / pageSize * pageSize - pagesLeft * pageSize);
    }
    void empty()
    {
        if (!QFile::remove(fillerName()))
            stopTest("the filler stays");
    }
    /// The kernel does not make a file system read-only while a file is open for writing, as the
    /// program's is. Therefore a read-only view of the folder is mounted over it: a writing
    /// statement must open its journal first, and finds the folder read-only.
    void setReadOnly()
    {
        const char *folder = path.constData();
        if (mount(folder, folder, nullptr, MS_BIND, nullptr) != 0 ||
            mount(nullptr, folder, nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY, nullptr) != 0)
            stopTest(QString("cannot be made read-only: ") + std::strerror(errno));
        isReadOnly = true;
    }
    void setWritable()
    {
        if (isReadOnly && umount2(path.constData(), MNT_DETACH) != 0)
            qFatal("stays read-only: %s", std::strerror(errno));
        isReadOnly = false;
    }

private:
    QString fillerName() const
    {
        return QFile::decodeName(path) + "/filler";
    }

    static constexpr int pageSize = 4096;
    const QByteArray path;
    bool isReadOnly = false;
};

} // namespace

/// Storage fails while the program runs. The program neither notices nor reports it: it continues,
/// changes nothing that it cannot change completely, and saves again as soon as it can.
class TestStorage : public QObject
{
    Q_OBJECT

private slots:
    void diskIsFull_data();
    void diskIsFull();
    void diskIsFullAtTheFirstStart_data();
    void diskIsFullAtTheFirstStart();
    void diskBecomesReadOnly();
    void databaseIsDeleted();
    void databaseIsReplacedByAnother_data();
    void databaseIsReplacedByAnother();
    void databaseIsReplacedByGarbage_data();
    void databaseIsReplacedByGarbage();
    void databaseIsTruncated_data();
    void databaseIsTruncated();
    void databaseIsLockedWhileSaving();
    void databaseIsLockedWhileSavingGoods();
    void goodsThatCouldNotBeReadAreNotDeleted();

private:
    QString newName();
    void useEverything(ShopDriver &shop);
    void expectEverythingIsSaved(ShopDriver &shop);
    static QString integrity(const ShopDriver &shop);
    static void openCategories(const ShopDriver &shop);
    static void replace(const QString &file, const QByteArray &content, bool inPlace);

    int names = 0;
    QString lastCategory;
    QString lastList;
    QString lastGood;
};

QString TestStorage::newName()
{
    return QString("Name %1").arg(++names);
}

QString TestStorage::integrity(const ShopDriver &shop)
{
    SecondConnection connection(shop.home->databaseFile());
    QStringList lines;
    for (const QVariant &line : connection.column("pragma integrity_check"))
        lines << line.toString();
    return lines.join('\n');
}

void TestStorage::openCategories(const ShopDriver &shop)
{
    shop.press("shopsButton");
    shop.press("newButton");
    shop.press("categoryButton");
    QCOMPARE(shop.page(), PageCategoryList);
}

/// Replaces a file as a whole, as by renaming another one, or its contents in place.
void TestStorage::replace(const QString &file, const QByteArray &content, bool inPlace)
{
    QFile written(inPlace ? file : file + ".new");
    QVERIFY(written.open(QIODevice::WriteOnly));
    QCOMPARE(written.write(content), content.size());
    written.close();
    if (!inPlace)
        QCOMPARE(std::rename(QFile::encodeName(written.fileName()), QFile::encodeName(file)), 0);
}

/// Goes from the main page and back, with a new category, store and list with goods that are saved
/// and checked. The pages follow each other whether or not the statements have an effect.
void TestStorage::useEverything(ShopDriver &shop)
{
    QElapsedTimer clock;
    clock.start();
    QCOMPARE(shop.page(), PageMain);
    openCategories(shop);
    lastCategory = newName();
    shop.press("addButton");
    shop.type(lastCategory);
    shop.press("saveButton");
    QCOMPARE(shop.page(), PageCategoryList);
    QCOMPARE(shop.rows().last(), lastCategory);
    shop.press("backButton");
    shop.type(newName());
    shop.press("saveButton");
    QCOMPARE(shop.page(), PageStores);
    shop.press("backButton");

    shop.press("shoppingButton");
    shop.press("listsButton");
    shop.press("createButton");
    lastList = newName();
    shop.type(lastList);
    shop.press("saveButton");
    QCOMPARE(shop.page(), PageMessage);
    shop.press("messageOkButton");
    for (const int good : {1, 2}) {
        lastGood = newName();
        shop.press("addButton");
        shop.type(lastGood);
        shop.press("saveButton");
        QCOMPARE(shop.rows().size(), good);
    }
    shop.press("okButton");
    QCOMPARE(shop.page(), PageShoppingLists);
    QCOMPARE(shop.rows().last(), lastList);
    shop.press("selectButton");
    QCOMPARE(shop.page(), PageShopping);
    shop.press("startButton");
    QCOMPARE(shop.page(), PageDoShopping);
    // Goods that were not stored are not there.
    for (int good = 0; good < shop.list()->count(); ++good) {
        shop.tap(0);
        shop.press("checkButton");
    }
    shop.press("okButton");
    QCOMPARE(shop.page(), PageShopping);
    shop.press("backButton");
    QCOMPARE(shop.page(), PageMain);
    QVERIFY2(clock.elapsed() < 10000, qPrintable(QString::number(clock.elapsed())));
}

void TestStorage::expectEverythingIsSaved(ShopDriver &shop)
{
    useEverything(shop);
    SecondConnection connection(shop.home->databaseFile());
    const auto count = [&connection](const QString &from) {
        return connection.column("select count(*) from " + from).value(0);
    };
    QCOMPARE(count(QString("category where name = '%1'").arg(lastCategory)), QVariant(1));
    QCOMPARE(count(QString("shoplist where name = '%1' and state = 3").arg(lastList)), QVariant(1));
    QCOMPARE(count(QString("purchase p join shoplist l on p.shoplistid = l.id "
                           "where l.name = '%1' and p.checkstate = 1")
                       .arg(lastList)),
             QVariant(2));
    QCOMPARE(integrity(shop), "ok");
}

void TestStorage::diskIsFull_data()
{
    QTest::addColumn<int>("pagesLeft");
    for (const int pages : {0, 1, 2, 3, 4, 5, 6, 8})
        QTest::addRow("%d pages left", pages) << pages;
}

void TestStorage::diskIsFull()
{
    QFETCH(int, pagesLeft);
    if (!whyNoMounts.isEmpty())
        QSKIP(whyNoMounts.constData());
    const TestHome home;
    SmallDisk disk(home.dataFolder(), 512);
    ShopDriver shop(std::make_unique<TestHome>(TestHome::OfAnother{home.path()}));
    expectEverythingIsSaved(shop);
    const auto goods = shop.db->rows("select * from purchase order by id");
    QCOMPARE(goods.size(), 2);

    disk.fill(pagesLeft);
    for (int round = 0; round < 2; ++round) {
        useEverything(shop);
        if (QTest::currentTestFailed())
            return;
        QCOMPARE(integrity(shop), "ok");
        QCOMPARE(shop.db->rows("select * from purchase where id <= 2 order by id"), goods);
    }
    if (pagesLeft == 0) // otherwise the disk may not have been full
        QCOMPARE(shop.db->rows("select * from purchase"), goods);
    disk.empty();
    expectEverythingIsSaved(shop);
}

void TestStorage::diskIsFullAtTheFirstStart_data()
{
    QTest::addColumn<int>("pagesLeft");
    for (const int pages : {0, 1, 2, 4, 6, 7, 8, 10, 12, 14, 16, 17, 18})
        QTest::addRow("%d pages left", pages) << pages;
}

/// Each table commits by itself, so there may be room for some of them. Once the table of stores
/// exists, the others are never created.
void TestStorage::diskIsFullAtTheFirstStart()
{
    QFETCH(int, pagesLeft);
    if (!whyNoMounts.isEmpty())
        QSKIP(whyNoMounts.constData());
    const TestHome home;
    SmallDisk disk(home.dataFolder(), 512);
    disk.fill(pagesLeft);
    ShopDriver shop(std::make_unique<TestHome>(TestHome::OfAnother{home.path()}));
    const QStringList tables = shop.db->tables();
    QCOMPARE(integrity(shop), "ok");
    disk.empty();
    shop.restart();
    if (tables.contains("magazin"))
        QCOMPARE(shop.db->tables(), tables);
    else
        expectEverythingIsSaved(shop);
}

void TestStorage::diskBecomesReadOnly()
{
    if (!whyNoMounts.isEmpty())
        QSKIP(whyNoMounts.constData());
    const TestHome home;
    SmallDisk disk(home.dataFolder(), 512);
    ShopDriver shop(std::make_unique<TestHome>(TestHome::OfAnother{home.path()}));
    for (int round = 0; round < 2; ++round) {
        expectEverythingIsSaved(shop);
        if (QTest::currentTestFailed())
            return;
        const QByteArray content = shop.home->readDatabaseFile();
        disk.setReadOnly();
        useEverything(shop);
        if (QTest::currentTestFailed())
            return;
        QCOMPARE(shop.home->readDatabaseFile(), content);
        disk.setWritable();
        QCOMPARE(shop.home->readDatabaseFile(), content);
    }
    expectEverythingIsSaved(shop);
}

void TestStorage::databaseIsDeleted()
{
    ShopDriver shop;
    useEverything(shop);
    QVERIFY(QFile::remove(shop.home->databaseFile()));
    useEverything(shop);
    if (QTest::currentTestFailed())
        return;
    shop.restart();
    expectEverythingIsSaved(shop);
    QCOMPARE(shop.db->column("select count(*) from category"), QVariantList{1});
}

void TestStorage::databaseIsReplacedByAnother_data()
{
    QTest::addColumn<bool>("inPlace");
    QTest::newRow("a file moved to its name") << false;
    QTest::newRow("other contents") << true;
}

void TestStorage::databaseIsReplacedByAnother()
{
    QFETCH(bool, inPlace);
    QByteArray another;
    {
        const ShopDriver shop(
            {category(1000, "Another"), openList(1000, "Another list").good(1000, "Another good")});
        another = shop.home->readDatabaseFile();
    }
    ShopDriver shop;
    expectEverythingIsSaved(shop);
    replace(shop.home->databaseFile(), another, inPlace);
    useEverything(shop);
    if (QTest::currentTestFailed())
        return;
    shop.restart();
    QCOMPARE(integrity(shop), "ok");
    QCOMPARE(shop.db->column("select name from category where id = 1000"), QVariantList{"Another"});
    QCOMPARE(shop.db->column("select name from purchase where id = 1000"),
             QVariantList{"Another good"});
    expectEverythingIsSaved(shop);
}

void TestStorage::databaseIsReplacedByGarbage_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("inPlace");
    const QByteArray noise = QByteArray("\x9d\x02\xff\x1b~").repeated(20000);
    const QByteArray header("SQLite format 3\0", 16);
    for (const bool inPlace : {false, true}) {
        const char *how = inPlace ? "contents" : "a file";
        QTest::addRow("%s: noise", how) << noise << inPlace;
        QTest::addRow("%s: zeros", how) << QByteArray(65536, '\0') << inPlace;
        QTest::addRow("%s: header and noise", how) << header + noise << inPlace;
    }
}

void TestStorage::databaseIsReplacedByGarbage()
{
    QFETCH(QByteArray, content);
    QFETCH(bool, inPlace);
    ShopDriver shop;
    useEverything(shop);
    replace(shop.home->databaseFile(), content, inPlace);
    for (int start = 0; start < 2; ++start) {
        useEverything(shop);
        if (QTest::currentTestFailed())
            return;
        QVERIFY(shop.home->readDatabaseFile() == content);
        shop.restart();
    }
    // After the user has removed the file, the program works.
    shop.window.reset();
    QVERIFY(QFile::remove(shop.home->databaseFile()));
    shop.restart();
    expectEverythingIsSaved(shop);
}

void TestStorage::databaseIsTruncated_data()
{
    QTest::addColumn<int>("size");
    for (const int size : {0, 16, 100, 4095, 4096, 8192, 20000})
        QTest::addRow("%d bytes", size) << size;
}

void TestStorage::databaseIsTruncated()
{
    QFETCH(int, size);
    ShopDriver shop;
    useEverything(shop);
    const QByteArray whole = shop.home->readDatabaseFile();
    QVERIFY(whole.size() > size);
    QVERIFY(QFile::resize(shop.home->databaseFile(), size));
    useEverything(shop);
    if (QTest::currentTestFailed())
        return;
    shop.restart();
    useEverything(shop);
    if (size != 0) { // the same as no file
        shop.window.reset();
        QVERIFY(QFile::remove(shop.home->databaseFile()));
        shop.restart();
    }
    expectEverythingIsSaved(shop);
}

void TestStorage::databaseIsLockedWhileSaving()
{
    ShopDriver shop;
    expectEverythingIsSaved(shop);
    openCategories(shop);
    shop.tap(0);
    if (shop.page() == PageCategoryList)
        shop.tap(0);
    QCOMPARE(shop.page(), PageCategoryEdit);
    shop.type("In vain");
    DatabaseLock lock(*shop.home);
    lock.releaseAfter(10s);

    QElapsedTimer clock;
    clock.start();
    shop.press("saveButton"); // one statement
    QVERIFY2(clock.elapsed() > 4500 && clock.elapsed() < 7000,
             qPrintable(QString::number(clock.elapsed())));
    QCOMPARE(shop.page(), PageCategoryList);
    QVERIFY(lock.waitUntilReleased());
    QCOMPARE(shop.db->column("select name from category"), QVariantList{lastCategory});

    // What is saved again is stored.
    shop.tap(0);
    if (shop.page() == PageCategoryList)
        shop.tap(0);
    shop.type("Not in vain");
    shop.press("saveButton");
    QCOMPARE(shop.db->column("select name from category"), QVariantList{"Not in vain"});
    for (const Page page : {PageStoreEdit, PageStores, PageMain}) {
        shop.press("backButton");
        QCOMPARE(shop.page(), page);
    }
    expectEverythingIsSaved(shop);
}

/// Each statement waits by itself, and those after the release of the lock have an effect.
void TestStorage::databaseIsLockedWhileSavingGoods()
{
    ShopDriver shop(list("Weekend", ListPartlyChecked).good("Milk", 2).checkedGood("Bread"));
    shop.press("shoppingButton");
    shop.press("listsButton");
    shop.tap(0);
    shop.press("selectButton");
    shop.press("goodsButton");
    shop.press("addButton");
    shop.type("Butter");
    shop.press("saveButton");
    DatabaseLock lock(*shop.home);
    lock.releaseAfter(3s);
    QElapsedTimer clock;
    clock.start();
    shop.press("okButton");
    QVERIFY2(clock.elapsed() > 2500 && clock.elapsed() < 8000,
             qPrintable(QString::number(clock.elapsed())));
    QVERIFY(lock.waitUntilReleased());
    QCOMPARE(shop.page(), PageShopping);
    QCOMPARE(
        shop.db->rows("select * from purchase order by id"),
        (QList<QVariantList>{{1, "Milk", 1, 2, 0}, {2, "Bread", 1, 1, 1}, {3, "Butter", 1, 1, 0}}));
    QCOMPARE(integrity(shop), "ok");
}

/// A page without goods, because they could not be read, must not delete the stored ones.
void TestStorage::goodsThatCouldNotBeReadAreNotDeleted()
{
    ShopDriver shop(list("Weekend", ListPartlyChecked).good("Milk", 2).checkedGood("Bread"));
    shop.press("shoppingButton");
    shop.press("listsButton");
    shop.tap(0);
    shop.press("selectButton");
    DatabaseLock lock(*shop.home);
    lock.releaseAfter(11s); // the query of the title waits as well
    shop.press("goodsButton");
    QCOMPARE(shop.page(), PageItemsList);
    QCOMPARE(shop.rows(), QStringList());
    QVERIFY(lock.waitUntilReleased());
    shop.press("addButton");
    shop.type("Butter");
    shop.press("saveButton");
    shop.press("okButton");
    QCOMPARE(shop.page(), PageShopping);
    QCOMPARE(
        shop.db->rows("select * from purchase order by id"),
        (QList<QVariantList>{{1, "Milk", 1, 2, 0}, {2, "Bread", 1, 1, 1}, {3, "Butter", 1, 1, 0}}));

    // Once the goods can be read, the user can delete them.
    shop.press("goodsButton");
    QCOMPARE(shop.rows(), (QStringList{"Milk|2", "Bread|1", "Butter|1"}));
    shop.list()->setCurrentRow(0);
    QTest::keyClick(shop.list(), Qt::Key_Return);
    shop.press("deleteButton");
    shop.press("confirmationYesButton");
    shop.press("okButton");
    QCOMPARE(shop.db->column("select name from purchase order by id"),
             (QVariantList{"Bread", "Butter"}));
}

int main(int argc, char **argv)
{
    takeOwnMounts();
    QApplication application(argc, argv);
    Stoppable<TestStorage> test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_storage.moc"
