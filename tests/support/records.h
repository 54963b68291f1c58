// SPDX-License-Identifier: MIT
#pragma once

#include <initializer_list>

#include <QList>
#include <QString>
#include <QStringList>

#include "lists/liststate.h"

/// What is in the database before a test, as one would tell it:
///
///     const Records records{
///         category(1, "Food"),
///         store(3, "Bakery").inCategory(1).at(10.01, 20).openList("Bread").good("Rye", 2),
///         list("Weekend", ListEmpty),
///     };
///
/// A list is of the store before it in its line, or of none; a good is on the list before it. An id
/// that does not matter can be left out: it is one more than the largest before it of its kind.
class Records
{
public:
    Records() = default;
    Records(std::initializer_list<Records> parts);

    Records &category(const QString &name);
    Records &category(int id, const QString &name);

    Records &store(const QString &name);
    Records &store(int id, const QString &name);
    /// Of the store before it.
    Records &inCategory(int id);
    Records &at(double latitude, double longitude, double altitude = 0);

    /// `state` is any number, since files may have states that are not known.
    Records &list(const QString &name, int state);
    Records &list(int id, const QString &name, int state);
    Records &openList(const QString &name);
    Records &openList(int id, const QString &name);
    /// Of the list before it, whose store is this one, which need not exist.
    Records &ofStore(int id);

    Records &good(const QString &name, int amount = 1);
    Records &good(int id, const QString &name, int amount = 1);
    Records &checkedGood(const QString &name, int amount = 1);
    Records &checkedGood(int id, const QString &name, int amount = 1);
    /// Of the good before it, whose list is this one, which need not exist.
    Records &onList(int id);

    /// What is too odd to be told otherwise; it is run after what stands before it.
    Records &sql(const QString &statement);

    bool isEmpty() const;
    /// What makes it, in a database that has the tables.
    QStringList statements() const;

private:
    struct Row
    {
        QString table;      // none: the value is a statement
        QStringList values; // a null one is to be found out
        qsizetype parent = -1;
    };

    Records &add(qsizetype &last, const Row &row);
    Records &setInLast(qsizetype last, int column, int value);

    QList<Row> rows;
    // Where the last of each stands; -1 when there is none.
    qsizetype lastCategory = -1;
    qsizetype lastStore = -1;
    qsizetype lastList = -1;
    qsizetype lastGood = -1;
};

/// The first of a line.
Records category(const QString &name);
Records category(int id, const QString &name);
Records store(const QString &name);
Records store(int id, const QString &name);
Records list(const QString &name, int state);
Records list(int id, const QString &name, int state);
Records openList(const QString &name);
Records openList(int id, const QString &name);
Records sql(const QString &statement);
