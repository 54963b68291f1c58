// SPDX-License-Identifier: MIT
#pragma once

#include <initializer_list>

#include <QList>
#include <QString>
#include <QStringList>

#include "lists/liststate.h"

/// Describes the contents of the database before a test:
///
///     const Records records{
///         category(1, "Food"),
///         store(3, "Bakery").inCategory(1).at(10.01, 20).openList("Bread").good("Rye", 2),
///         list("Weekend", ListEmpty),
///     };
///
/// A list belongs to the store before it in the same line, or to none; a good is on the list before
/// it. An id that does not matter can be omitted; it is then the largest id before it of that kind,
/// plus one.
class Records
{
public:
    Records() = default;
    Records(std::initializer_list<Records> parts);

    Records &category(const QString &name);
    Records &category(int id, const QString &name);

    Records &store(const QString &name);
    Records &store(int id, const QString &name);
    /// Sets the category of the preceding store.
    Records &inCategory(int id);
    Records &at(double latitude, double longitude, double altitude = 0);

    /// `state` is any number, since files may contain unknown states.
    Records &list(const QString &name, int state);
    Records &list(int id, const QString &name, int state);
    Records &openList(const QString &name);
    Records &openList(int id, const QString &name);
    /// Applies to the preceding list. The store need not exist.
    Records &ofStore(int id);

    Records &good(const QString &name, int amount = 1);
    Records &good(int id, const QString &name, int amount = 1);
    Records &checkedGood(const QString &name, int amount = 1);
    Records &checkedGood(int id, const QString &name, int amount = 1);
    /// Applies to the preceding good. The list need not exist.
    Records &onList(int id);

    /// Adds a statement for records that cannot be described otherwise. It runs after the preceding
    /// records.
    Records &sql(const QString &statement);

    bool isEmpty() const;
    /// Returns the statements that create the records in a database with the tables.
    QStringList statements() const;

private:
    struct Row
    {
        QString table;      // empty: the value is a complete statement
        QStringList values; // a null value is replaced by an id
        qsizetype parent = -1;
    };

    Records &add(qsizetype &last, const Row &row);
    Records &setInLast(qsizetype last, int column, int value);

    QList<Row> rows;
    // Index of the last record of each kind; -1 if there is none.
    qsizetype lastCategory = -1;
    qsizetype lastStore = -1;
    qsizetype lastList = -1;
    qsizetype lastGood = -1;
};

/// These functions start a line.
Records category(const QString &name);
Records category(int id, const QString &name);
Records store(const QString &name);
Records store(int id, const QString &name);
Records list(const QString &name, int state);
Records list(int id, const QString &name, int state);
Records openList(const QString &name);
Records openList(int id, const QString &name);
Records sql(const QString &statement);
