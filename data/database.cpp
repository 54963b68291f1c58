// SPDX-License-Identifier: MIT
#include "data/database.h"

#include <chrono>
#include <optional>
#include <utility>

#include <QDir>
#include <QSqlError>
#include <QSqlRecord>

#include "data/statements.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds waitForStatement = 5s;

/// SQLite's codes of errors.
enum { NoError = 0, NoSuchTable = 1, Busy = 5 };

int codeOf(const QSqlError &error)
{
    constexpr int primaryCode = 0xff; // the other bits of an error code hold details
    return error.nativeErrorCode().toInt() & primaryCode;
}

bool hasStoresTable(const QSqlDatabase &database)
{
    return database.tables(QSql::Tables).contains("magazin"_L1);
}

/// Changes a setting of the connection as long as this object exists.
class Temporarily
{
public:
    Temporarily(QLatin1StringView statement, QLatin1StringView undoingStatement)
        : undoing(undoingStatement)
    {
        Database::execute(statement);
    }
    ~Temporarily()
    {
        Database::execute(undoing);
    }
    Temporarily(const Temporarily &) = delete;
    Temporarily &operator=(const Temporarily &) = delete;

private:
    QLatin1StringView undoing;
};

} // namespace

QString Database::folder()
{
    return QDir::homePath() + u"/.trolleo/"_s;
}

QString Database::filePath()
{
    return folder() + u"trolleo.db"_s;
}

void Database::prepareFolder()
{
    const QDir dataFolder(folder());
    if (!dataFolder.exists())
        dataFolder.mkpath(folder());
}

QSqlDatabase Database::open(const QString &file)
{
    QSqlDatabase database = QSqlDatabase::addDatabase(u"QSQLITE"_s);
    database.setDatabaseName(file);
    database.open();
    return database;
}

Database::Tables Database::createMissingTables(const QSqlDatabase &database,
                                               std::chrono::milliseconds wait)
{
    if (!database.isOpen())
        return Tables::Unreadable;
    const ShorterWait shorter(wait); // a locked file must not delay the window
    if (hasStoresTable(database)) {
        // If an earlier attempt found the file locked, it could not set this either.
        execute(Statements::waitForDisk);
        return Tables::Complete;
    }
    // A file that cannot be read seems to have no tables.
    const int code = codeOf(run(Statements::noTrackedStores).lastError());
    if (code == Busy)
        return Tables::Locked;
    if (code != NoError && code != NoSuchTable)
        return Tables::Unreadable;
    if (!hasStoresTable(database)) {
        QSqlQuery query{QString(), QSqlDatabase()};
        std::optional<Temporarily> noWait;
        if (database.tables(QSql::Tables).isEmpty()) // there is nothing to lose
            noWait.emplace(Statements::doNotWaitForDisk, Statements::waitForDisk);
        // Another process must not come between them, because the next attempt would not create the
        // rest of the tables.
        std::optional<Temporarily> lock(std::in_place, Statements::keepLock,
                                        Statements::releaseLock);
        for (const QLatin1StringView &statement : Statements::createTables) {
            // On flash memory, seven waits would delay the first window of all by half a second.
            // The last statement waits for what all of them have written.
            if (&statement == &Statements::createTables.back()) {
                noWait.reset();
                lock.reset();
            }
            query.exec(statement);
            // Another process may write while this one can read.
            if (codeOf(query.lastError()) == Busy) {
                lock.reset();
                hasStoresTable(database); // releases what the refused statement has locked
                return Tables::Locked;
            }
        }
    }
    return Tables::Complete;
}

Database::ShorterWait::ShorterWait(std::chrono::milliseconds wait)
{
    run(Statements::setBusyTimeout, static_cast<int>(wait.count()));
}

Database::ShorterWait::~ShorterWait()
{
    run(Statements::setBusyTimeout, static_cast<int>(waitForStatement.count()));
}

void Database::close(QSqlDatabase &database)
{
    const QString connection = database.connectionName();
    if (database.isOpen())
        database.close();
    database = QSqlDatabase();
    QSqlDatabase::removeDatabase(connection);
}

QSqlQuery Database::execute(const QString &statement)
{
    QSqlQuery query{QString(), QSqlDatabase()};
    query.setForwardOnly(true); // otherwise the query caches every row that is read
    query.exec(statement);
    return query;
}

int Database::column(const QSqlQuery &query, QLatin1StringView name)
{
    return query.record().indexOf(name);
}

int Database::integer(const QSqlQuery &query, int column)
{
    return static_cast<int>(query.value(column).toLongLong());
}

std::optional<QString> Database::name(QLatin1StringView statement, int id)
{
    QSqlQuery query = run(statement, id);
    if (!query.first())
        return std::nullopt;
    return query.value(u"name"_s).toString();
}

Database::Names::Names(QLatin1StringView nameStatement, QLatin1StringView allStatement)
    : oneName(nameStatement)
    , allRecords(allStatement)
{}

std::optional<QString> Database::Names::of(int id)
{
    constexpr int fewNames = 20;
    if (const auto found = known.constFind(id); found != known.cend())
        return *found;
    if (known.size() < fewNames)
        return *known.insert(id, name(oneName, id));
    if (!areAllKnown) {
        areAllKnown = true;
        QSqlQuery query = run(allRecords);
        const int idColumn = column(query, "id"_L1);
        const int nameColumn = column(query, "name"_L1);
        while (query.next())
            known.insert(integer(query, idColumn), query.value(nameColumn).toString());
    }
    return known.value(id);
}

int Database::newId(QLatin1StringView statement)
{
    QSqlQuery query = run(statement);
    if (!query.first())
        return 1;
    return qMax(query.value(u"ad"_s).toInt(), 1);
}
