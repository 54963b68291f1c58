// SPDX-License-Identifier: MIT
#include <atomic>
#include <memory>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <QSqlError>
#include <QThread>
#include <QtTest>

#include "data/database.h"
#include "data/statements.h"
#include "tests/support/testhome.h"

using namespace std::chrono_literals;

static int syncs = 0;

/// Counts how often SQLite waits for the disk. The program's own symbols come before those of the C
/// library.
extern "C" int fdatasync(int file)
{
    ++syncs;
    return static_cast<int>(::syscall(SYS_fdatasync, file));
}

static std::atomic<bool> isSlow = false;

/// SQLite looks for a journal when a statement begins, unless it has the lock already. The pause
/// gives others time to use the file.
extern "C" int stat64(const char *path, struct stat64 *status)
{
    constexpr unsigned long pause = 20; // milliseconds
    if (isSlow && QByteArrayView(path).endsWith("-journal"))
        QThread::msleep(pause);
    return ::fstatat64(AT_FDCWD, path, status, 0);
}

static QList<QLatin1StringView> statements()
{
    using namespace Statements;
    return {
        newCategoryId,
        insertCategory,
        updateCategory,
        deleteCategory,
        allCategories,
        categoryName,
        categoryIdByName,
        allStores,
        store,
        storeName,
        newStoreId,
        insertStore,
        updateStore,
        deleteStore,
        clearStoreCategory,
        insertCoordinates,
        deleteCoordinates,
        coordinates,
        allLists,
        list,
        listName,
        newListId,
        insertList,
        updateList,
        resetListState,
        updateListState,
        deleteList,
        goodsOfList,
        goodIdsOfList,
        newGoodId,
        insertGood,
        updateGood,
        deleteGood,
        uncheckGoodsOfList,
        deleteGoodsOfList,
        updateGoodCheckState,
        checkStatesOfList,
        uncheckedGoodsOfList,
        checkedGoodsOfList,
        uncheckedGoodsOfStore,
        checkedGoodsOfStore,
        trackedStore,
        trackedStoresOfCategory,
        trackedStores,
        noTrackedStores,
    };
}

/// Runs every test on an open, empty database.
class TestDatabase : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void folderAndFile();
    void firstStartWaitsForTheDiskOnce();
    void allTablesAreMadeOrNone();
    void refusedAttemptLeavesTheFileToOthers();
    void tablesHaveExactlyTheirColumns();
    void connectionIsTheDefaultOne();
    void newIds_data();
    void newIds();
    void newIdOfAMissingTableIsOne();
    void valuesArePastedOneAfterTheOther();
    void quoteMakesAStatementFailSilently();
    void twoStatementsInOneTextFailWhole();
    void tablesAreMadeToTheLetter();
    void everyStatementIsUnderstood();
    void closingRemovesTheConnection();

private:
    std::unique_ptr<TestHome> home;
    QSqlDatabase database;
};

void TestDatabase::init()
{
    syncs = 0;
    home = std::make_unique<TestHome>();
    Database::prepareFolder();
    database = Database::open(Database::filePath());
    Database::createMissingTables(database);
}

void TestDatabase::cleanup()
{
    Database::close(database);
    home.reset();
}

void TestDatabase::folderAndFile()
{
    QCOMPARE(Database::folder(), home->path() + "/.trolleo/");
    QCOMPARE(Database::filePath(), home->path() + "/.trolleo/trolleo.db");
    QVERIFY(QFile::exists(home->databaseFile()));
}

void TestDatabase::firstStartWaitsForTheDiskOnce()
{
    // init() has made the tables. One statement waits for its journal, twice, for the folder and
    // for the file.
    constexpr int ofOneStatement = 4;
    QCOMPARE(syncs, ofOneStatement);
    // What is changed later is on the disk at once.
    syncs = 0;
    Database::run(Statements::insertCategory, 1, QString("Food"));
    QCOMPARE(syncs, ofOneStatement);
}

/// Reads `file` as soon as it has a table, and goes on reading until `ends`.
static void readBetweenTables(const QString &file, const std::atomic<bool> &ends)
{
    {
        auto reader = QSqlDatabase::addDatabase("QSQLITE", "neighbour");
        reader.setDatabaseName(file);
        reader.setConnectOptions("QSQLITE_BUSY_TIMEOUT=0");
        reader.open();
        // Looking for a table would lock the file.
        while (!ends && QFileInfo(file).size() == 0)
            QThread::yieldCurrentThread();
        reader.transaction();
        while (!ends)
            reader.tables();
        reader.rollback();
    }
    QSqlDatabase::removeDatabase("neighbour");
}

/// A table that is missing because of a lock would be missing for good.
void TestDatabase::allTablesAreMadeOrNone()
{
    const auto tableCount = [this] {
        return database.tables().size();
    };
    const QString file = home->path() + "/contended.db";
    for (int round = 0; round < 5; ++round) {
        Database::close(database);
        QFile::remove(file);
        database = Database::open(file);
        std::atomic<bool> ends = false;
        const std::unique_ptr<QThread> neighbour(
            QThread::create([&file, &ends] { readBetweenTables(file, ends); }));
        neighbour->start();
        isSlow = true;
        const Database::Tables tables = Database::createMissingTables(database, 0ms);
        isSlow = false;
        ends = true;
        QVERIFY(neighbour->wait());
        QCOMPARE(tableCount(), tables == Database::Tables::Locked ? 0 : 7);
        QCOMPARE(Database::createMissingTables(database), Database::Tables::Complete);
        QCOMPARE(tableCount(), 7);
    }
}

void TestDatabase::refusedAttemptLeavesTheFileToOthers()
{
    const QString file = home->path() + "/shared.db";
    Database::close(database);
    database = Database::open(file);
    SecondConnection other(file);
    for (const QString table : {"diary", "letters"}) { // in an empty file, and in one with a table
        QVERIFY(other.run("begin"));
        QVERIFY(other.run("select * from sqlite_master"));
        QCOMPARE(Database::createMissingTables(database, 0ms), Database::Tables::Locked);
        QVERIFY(other.run("create table " + table + " (day int)"));
        QVERIFY(other.run("commit"));
    }
    QCOMPARE(Database::createMissingTables(database, 0ms), Database::Tables::Complete);
    QCOMPARE(other.tables().size(), 9);
}

void TestDatabase::tablesHaveExactlyTheirColumns()
{
    SecondConnection second(home->databaseFile());
    const QStringList tables{"category", "gpscoord",  "magazin", "purchase",
                             "purref",   "reminders", "shoplist"};
    QCOMPARE(second.tables(), tables);
    const QHash<QString, QStringList> columns{
        {"category", {"id INT", "name varchar(20)"}},
        {"magazin", {"id INT", "name varchar(50)", "categoryid INT", "gpsid INT"}},
        {"shoplist", {"id INT", "name varchar(20)", "magazinid INT", "state INT"}},
        {"purchase",
         {"id INT", "name varchar(20)", "shoplistid INT", "amount INT", "checkstate INT"}},
        {"purref", {"id INT", "name varchar(20)", "int categoryid"}},
        {"gpscoord", {"id INT", "latitude float", "longitude float", "altitude float"}},
        {"reminders", {"id INT", "name varchar(20)", "alarm datetime"}},
    };
    for (const QString &table : tables) {
        QStringList found = second.columnsOf(table);
        // How SQLite itself writes the types depends on its version.
        for (QString &column : found)
            column.replace(" int", " INT").replace(" FLOAT", " float");
        QCOMPARE(found, columns.value(table));
    }
    // The tables were created in this order.
    QCOMPARE(second.column("select name from sqlite_master where type = 'table' order by rowid"),
             (QVariantList{"category", "magazin", "shoplist", "purchase", "purref", "gpscoord",
                           "reminders"}));
}

void TestDatabase::connectionIsTheDefaultOne()
{
    QCOMPARE(database.connectionName(), QString(QSqlDatabase::defaultConnection));
    QCOMPARE(database.driverName(), "QSQLITE");
}

void TestDatabase::newIds_data()
{
    QTest::addColumn<QString>("statement");
    QTest::addColumn<QString>("insert");
    QTest::addColumn<QString>("table");
    QTest::newRow("category") << QString(Statements::newCategoryId)
                              << QString(Statements::insertCategory) << "category";
    QTest::newRow("magazin") << QString(Statements::newStoreId) << QString(Statements::insertStore)
                             << "magazin";
    QTest::newRow("shoplist") << QString(Statements::newListId) << QString(Statements::insertList)
                              << "shoplist";
    QTest::newRow("purchase") << QString(Statements::newGoodId) << QString(Statements::insertGood)
                              << "purchase";
}

void TestDatabase::newIds()
{
    QFETCH(QString, statement);
    QFETCH(QString, insert);
    QFETCH(QString, table);
    const QByteArray newIdText = statement.toLatin1();
    const auto addRow = [&] {
        const int id = Database::newId(QLatin1StringView(newIdText));
        Database::execute(insert.arg(id).arg("name").arg(0).arg(0));
        return id;
    };
    QCOMPARE(addRow(), 1);
    QCOMPARE(addRow(), 2);
    QCOMPARE(addRow(), 3);

    SecondConnection second(home->databaseFile());
    QVERIFY(second.run(QString("delete from %1 where id = 3").arg(table)));
    QCOMPARE(addRow(), 3);
    QVERIFY(second.run(QString("delete from %1 where id = 1").arg(table)));
    QCOMPARE(addRow(), 4);
    QVERIFY(second.run(QString("delete from %1").arg(table)));
    QVERIFY(second.run(QString("insert into %1 (id) values (-7)").arg(table)));
    QCOMPARE(addRow(), 1);
}

void TestDatabase::newIdOfAMissingTableIsOne()
{
    SecondConnection second(home->databaseFile());
    QVERIFY(second.run("drop table category"));
    QCOMPARE(Database::newId(Statements::newCategoryId), 1);
}

void TestDatabase::valuesArePastedOneAfterTheOther()
{
    Database::run(Statements::insertCategory, 1, QString("a\\b \"c\" 100%"));
    Database::run(Statements::insertList, 1, QString("a%3"), 7, 0);
    SecondConnection second(home->databaseFile());
    QCOMPARE(second.rows("select * from category"), (QList<QVariantList>{{1, "a\\b \"c\" 100%"}}));
    // The %3 within the name is replaced like a placeholder of the statement.
    QCOMPARE(second.rows("select * from shoplist"), (QList<QVariantList>{{1, "a7", 7, 0}}));
}

void TestDatabase::quoteMakesAStatementFailSilently()
{
    Database::run(Statements::insertList, 1, QString("Joe's"), 0, 0);
    Database::run(Statements::insertGood, 1, QString("Joe's"), 1, 1);
    SecondConnection second(home->databaseFile());
    QCOMPARE(second.column("select count(*) from shoplist"), QVariantList{0});
    QCOMPARE(second.column("select count(*) from purchase"), QVariantList{0});
    Database::run(Statements::insertList, 1, QString("It''s"), 0, 0);
    QCOMPARE(second.column("select name from shoplist"), QVariantList{"It's"});
}

void TestDatabase::twoStatementsInOneTextFailWhole()
{
    Database::run(Statements::insertCategory, 1, QString("a"));
    Database::run(Statements::insertCategory, 2, QString("b'); delete from category; --"));
    SecondConnection second(home->databaseFile());
    QCOMPARE(second.column("select name from category"), QVariantList{"a"});
}

void TestDatabase::tablesAreMadeToTheLetter()
{
    // Existing files have exactly these texts, so even a changed space changes the product.
    SecondConnection second(home->databaseFile());
    QCOMPARE(
        second.column("select sql from sqlite_master where type = 'table' order by rowid"),
        (QVariantList{
            "CREATE TABLE category (id int primary key, name varchar(20))",
            "CREATE TABLE magazin (id int primary key, name varchar(50), categoryid int, gpsid "
            "int)",
            "CREATE TABLE shoplist (id int primary key, name varchar(20),magazinid int, state int)",
            "CREATE TABLE purchase (id int primary key, name varchar(20),shoplistid int, amount "
            "int, checkstate int)",
            "CREATE TABLE purref (id int primary key, name varchar(20),int categoryid)",
            "CREATE TABLE gpscoord (id int primary key, latitude float,longitude float, altitude "
            "float)",
            "CREATE TABLE reminders (id int primary key, name varchar(20), alarm datetime)",
        }));
}

void TestDatabase::everyStatementIsUnderstood()
{
    for (const QLatin1StringView statement : statements()) {
        QString text(statement);
        for (int value = 1; text.contains('%'); ++value)
            text = text.arg(value);
        const QSqlQuery query = Database::execute(text);
        QVERIFY2(query.lastError().type() == QSqlError::NoError, qPrintable(text));
    }
}

void TestDatabase::closingRemovesTheConnection()
{
    Database::close(database);
    QVERIFY(!database.isValid());
    QCOMPARE(QSqlDatabase::connectionNames(), QStringList());
    database = Database::open(Database::filePath());
}

STOPPABLE_TEST_GUILESS_MAIN(TestDatabase)
#include "tst_database.moc"
