// SPDX-License-Identifier: MIT
#pragma once

#include <initializer_list>
#include <optional>

#include <QLatin1StringView>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>

/// The one SQLite file that holds all lasting data, and how statements are run on it.
///
/// Statements are literal texts into which values are pasted; nothing is escaped, so a name with a
/// single quote makes its statement fail, or reach further than meant. The names are trusted: the
/// only one who types them is the owner of the file. A failing statement has no effect and is not
/// reported, and there are no transactions: every statement commits by itself.
namespace Database {

/// The folder of the database file, in the home folder; ends with a slash.
QString folder();

/// The full path of the database file.
QString filePath();

/// Creates folder() when it is missing. A failure shows when the database is opened.
void prepareFolder();

/// Opens `file`, made when missing, as the default connection. The returned handle is not open when
/// the file cannot be opened.
QSqlDatabase open(const QString &file);

/// Creates all tables when there is no table of stores. That table alone decides: a file that has
/// it is left as it is, even where another table is missing. So is a file that cannot be looked
/// into because another process has locked it. Killed meanwhile, or without room for all tables, it
/// leaves those that were made.
void createMissingTables(const QSqlDatabase &database);

/// Closes `database`, resets it and removes its connection.
void close(QSqlDatabase &database);

/// Runs `statement` as it stands on the default connection.
QSqlQuery execute(const QString &statement);

inline QString asText(const QString &value)
{
    return value;
}

inline QString asText(int value)
{
    return QString::number(value, 10);
}

/// A fraction has to be written with the digits that its column is to hold, and is then a text.
template <typename Other>
QString asText(const Other &value) = delete;

/// Runs `statement` with its placeholders %1, %2, ... replaced by `values`, one after the other:
/// a name that itself contains a later placeholder is altered by the value that follows.
template <typename... Values>
QSqlQuery run(QLatin1StringView statement, const Values &...values)
{
    QString text(statement);
    for (const QString &value : std::initializer_list<QString>{asText(values)...})
        text = text.arg(value);
    return execute(text);
}

/// Where the column `name` stands in each row of `query`; for reading many rows, since QSqlQuery
/// looks a name up anew whenever it is asked for a value by name.
int column(const QSqlQuery &query, QLatin1StringView name);

/// The name of the record `id`, by `statement`; nothing when there is no such record.
std::optional<QString> name(QLatin1StringView statement, int id);

/// The id for a new row: `statement` gives the largest id plus one as "ad"; at least 1.
int newId(QLatin1StringView statement);

} // namespace Database
