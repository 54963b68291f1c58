// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <initializer_list>
#include <optional>

#include <QHash>
#include <QLatin1StringView>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>

/// The SQLite file that holds all persistent data, and the functions that run statements on it.
///
/// Statements are literal texts into which values are inserted. Nothing is escaped: a name with a
/// single quote makes its statement fail, or affect more than intended. Names are trusted, because
/// only the owner of the file enters them. A failing statement has no effect and is not reported.
/// There are no transactions: every statement commits by itself.
namespace Database {

/// Returns the folder of the database file, in the home folder, with a trailing slash.
QString folder();

/// Returns the full path of the database file.
QString filePath();

/// Creates folder() if it does not exist. A failure is noticed when the database is opened.
void prepareFolder();

/// Opens `file` as the default connection and creates it if it does not exist. The returned handle
/// is not open if the file cannot be opened.
QSqlDatabase open(const QString &file);

enum class Tables {
    Complete,   ///< or as complete as they will become
    Locked,     ///< another process has locked the file
    Unreadable, ///< not open, not a database, cut short, or damaged where the tables are listed
};

/// Creates all tables if the table of stores does not exist. Only that table is checked: a file
/// that has it is not changed, even if another table is missing. A file that is locked or
/// unreadable is not changed either; for a lock to end each statement waits for at most `wait`. If
/// the program is killed meanwhile, or the disk is full, the tables created so far remain. In a new
/// file only the last of these statements waits for the disk, for all of them, so a loss of power
/// meanwhile can leave a file that cannot be read.
Tables createMissingTables(const QSqlDatabase &database,
                           std::chrono::milliseconds wait = std::chrono::milliseconds(250));

/// As long as this object exists, statements wait for at most the given time for another process
/// that has locked the file. Otherwise they wait for five seconds.
class ShorterWait
{
public:
    explicit ShorterWait(std::chrono::milliseconds wait);
    ~ShorterWait();
    ShorterWait(const ShorterWait &) = delete;
    ShorterWait &operator=(const ShorterWait &) = delete;
};

/// Closes `database`, resets it and removes its connection.
void close(QSqlDatabase &database);

/// Runs `statement` unchanged on the default connection.
QSqlQuery execute(const QString &statement);

inline QString asText(const QString &value)
{
    return value;
}

inline QString asText(int value)
{
    return QString::number(value, 10);
}

/// Fractions are not accepted: the caller formats them with the digits that the column needs, and
/// passes the text.
template <typename Other>
QString asText(const Other &value) = delete;

/// Runs `statement` with its placeholders %1, %2, ... replaced by `values`, one after the other. If
/// a name itself contains a later placeholder, the next value replaces that, too.
template <typename... Values>
QSqlQuery run(QLatin1StringView statement, const Values &...values)
{
    QString text(statement);
    for (const QString &value : std::initializer_list<QString>{asText(values)...})
        text = text.arg(value);
    return execute(text);
}

/// Returns the index of the column `name` in `query`. Use it when reading many rows: QSqlQuery
/// searches for the name at every access by name.
int column(const QSqlQuery &query, QLatin1StringView name);

/// Returns the integer in `column` of the current row. QVariant::toInt() would convert SQLite's
/// 64-bit integers by way of the meta-type system, which is a twentieth of the time that many rows
/// take.
int integer(const QSqlQuery &query, int column);

/// Returns the name of the record `id`, read by `statement`, or nothing if there is no such record.
std::optional<QString> name(QLatin1StringView statement, int id);

/// Looks up the names of many records. The first few are read one by one; if there are more, all
/// names are read at once, because a statement takes much longer than a row.
class Names
{
public:
    /// `nameStatement` returns the name of a record, `allStatement` all records.
    Names(QLatin1StringView nameStatement, QLatin1StringView allStatement);

    /// Returns the name of the record `id`, or nothing if there is no such record.
    std::optional<QString> of(int id);

private:
    QLatin1StringView oneName;
    QLatin1StringView allRecords;
    QHash<int, std::optional<QString>> known;
    bool areAllKnown = false;
};

/// Returns the id for a new row, at least 1. `statement` returns the largest id plus one as "ad".
int newId(QLatin1StringView statement);

} // namespace Database
