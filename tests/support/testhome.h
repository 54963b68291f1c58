// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include <QSqlDatabase>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QVariantList>

#include "tests/support/stoppable.h"

class Records;

/// A temporary, empty home for the data folder and the settings. It exists as long as this object.
class TestHome
{
public:
    /// `name` is the last part of the home's path.
    explicit TestHome(const QString &name = QStringLiteral("home"));
    /// A home that another process has created and removes.
    struct OfAnother
    {
        QString path;
    };
    explicit TestHome(const OfAnother &other);
    ~TestHome();
    TestHome(const TestHome &) = delete;
    TestHome &operator=(const TestHome &) = delete;

    QString path() const;
    QString dataFolder() const;
    QString databaseFile() const;
    QString settingsFile() const;

    /// Creates the data folder with `content` as the database file.
    void writeDatabaseFile(const QByteArray &content, const Caller &by = Caller::here()) const;
    QByteArray readDatabaseFile() const;

private:
    void enter();

    std::unique_ptr<QTemporaryDir> folder;
    QString home;
    QByteArray earlierHome;
};

/// Accesses a database file over a separate connection.
class SecondConnection
{
public:
    explicit SecondConnection(const QString &file);
    ~SecondConnection();
    SecondConnection(const SecondConnection &) = delete;
    SecondConnection &operator=(const SecondConnection &) = delete;

    /// Adds all records in one transaction.
    void add(const Records &records, const Caller &by = Caller::here());
    /// Runs `statement`; returns false if it fails.
    bool run(const QString &statement);
    /// Returns the rows of `statement`.
    QList<QVariantList> rows(const QString &statement);
    /// Returns the first column of the rows of `statement`.
    QVariantList column(const QString &statement);
    QStringList tables();
    QStringList columnsOf(const QString &table);

private:
    QString name;
    QSqlDatabase database;
};
