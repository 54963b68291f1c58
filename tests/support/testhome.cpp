// SPDX-License-Identifier: MIT
#include "tests/support/testhome.h"

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QUuid>

#include "tests/support/records.h"

TestHome::TestHome(const QString &name)
    : folder(std::make_unique<QTemporaryDir>())
    , home(folder->filePath(name))
    , earlierHome(qgetenv("HOME"))
{
    QDir().mkpath(home);
    enter();
}

TestHome::TestHome(const OfAnother &other)
    : home(other.path)
    , earlierHome(qgetenv("HOME"))
{
    enter();
}

void TestHome::enter()
{
    qputenv("HOME", QFile::encodeName(home));
    qputenv("XDG_CACHE_HOME", QFile::encodeName(home + "/.cache"));
    // Tests must not contact a tile server on the internet.
    if (!qEnvironmentVariableIsSet("TROLLEO_TILE_SERVER"))
        qputenv("TROLLEO_TILE_SERVER", "http://127.0.0.1:9");
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, home + "/.config");
}

TestHome::~TestHome()
{
    qputenv("HOME", earlierHome);
}

QString TestHome::path() const
{
    return home;
}

QString TestHome::dataFolder() const
{
    return home + "/.trolleo";
}

QString TestHome::databaseFile() const
{
    return dataFolder() + "/trolleo.db";
}

QString TestHome::settingsFile() const
{
    return home + "/.config/Vantor/Trolleo.conf";
}

void TestHome::writeDatabaseFile(const QByteArray &content, const Caller &by) const
{
    QDir().mkpath(dataFolder());
    QFile file(databaseFile());
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        stopTest("cannot write " + file.fileName(), by);
}

QByteArray TestHome::readDatabaseFile() const
{
    QFile file(databaseFile());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

SecondConnection::SecondConnection(const QString &file)
    : name(QUuid::createUuid().toString())
    , database(QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name))
{
    database.setDatabaseName(file);
    database.open();
}

SecondConnection::~SecondConnection()
{
    database.close();
    database = QSqlDatabase();
    QSqlDatabase::removeDatabase(name);
}

void SecondConnection::add(const Records &records, const Caller &by)
{
    // One commit for all, since each waits for the disk.
    database.transaction();
    for (const QString &statement : records.statements()) {
        if (!run(statement))
            stopTest("cannot run " + statement, by);
    }
    database.commit();
}

bool SecondConnection::run(const QString &statement)
{
    return QSqlQuery(database).exec(statement);
}

QList<QVariantList> SecondConnection::rows(const QString &statement)
{
    QSqlQuery query(database);
    query.exec(statement);
    QList<QVariantList> result;
    while (query.next()) {
        QVariantList row;
        for (int column = 0; column < query.record().count(); ++column)
            row << query.value(column);
        result << row;
    }
    return result;
}

QVariantList SecondConnection::column(const QString &statement)
{
    QVariantList result;
    for (const QVariantList &row : rows(statement))
        result << row.value(0);
    return result;
}

QStringList SecondConnection::tables()
{
    QStringList result;
    for (const QVariant &table :
         column("select name from sqlite_master where type = 'table' order by name"))
        result << table.toString();
    return result;
}

QStringList SecondConnection::columnsOf(const QString &table)
{
    QStringList result;
    for (const QVariantList &row : rows(QStringLiteral("pragma table_info(%1)").arg(table)))
        result << row.value(1).toString() + ' ' + row.value(2).toString();
    return result;
}
