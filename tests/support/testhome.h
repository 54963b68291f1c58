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

/// A home of its own, empty, for as long as it lives: the data folder and the settings go there.
class TestHome
{
public:
    /// `name` is the last part of the home's path.
    explicit TestHome(const QString &name = QStringLiteral("home"));
    /// A home that another process has made, which removes it.
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

    /// Makes the data folder with `content` as the database file.
    void writeDatabaseFile(const QByteArray &content, const Caller &by = Caller::here()) const;
    QByteArray readDatabaseFile() const;

private:
    void enter();

    std::unique_ptr<QTemporaryDir> folder;
    QString home;
    QByteArray earlierHome;
};

/// Looks into a database file from outside, over a connection of its own.
class SecondConnection
{
public:
    explicit SecondConnection(const QString &file);
    ~SecondConnection();
    SecondConnection(const SecondConnection &) = delete;
    SecondConnection &operator=(const SecondConnection &) = delete;

    /// Adds these, all or none.
    void add(const Records &records, const Caller &by = Caller::here());
    /// Runs `statement`; false when it fails.
    bool run(const QString &statement);
    /// The rows `statement` yields.
    QList<QVariantList> rows(const QString &statement);
    /// The first column of what `statement` yields.
    QVariantList column(const QString &statement);
    QStringList tables();
    QStringList columnsOf(const QString &table);

private:
    QString name;
    QSqlDatabase database;
};
