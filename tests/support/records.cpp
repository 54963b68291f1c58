// SPDX-License-Identifier: MIT
#include "tests/support/records.h"

#include <algorithm>

#include <QHash>
#include <QLocale>

constinit static const QString counted; // an id
constinit static const QString ofParent;

static QString quoted(QString text)
{
    return '\'' + text.replace('\'', "''") + '\'';
}

static QString number(double value)
{
    return QString::number(value, 'g', QLocale::FloatingPointShortest);
}

Records::Records(std::initializer_list<Records> parts)
{
    for (const Records &part : parts) {
        const qsizetype before = rows.size();
        for (Row row : part.rows) {
            if (row.parent >= 0)
                row.parent += before;
            rows << row;
        }
    }
}

Records &Records::category(const QString &name)
{
    return add(lastCategory, {"category", {counted, quoted(name)}});
}

Records &Records::category(int id, const QString &name)
{
    return add(lastCategory, {"category", {QString::number(id), quoted(name)}});
}

Records &Records::store(const QString &name)
{
    return add(lastStore, {"magazin", {counted, quoted(name), "null", "null"}});
}

Records &Records::store(int id, const QString &name)
{
    store(name);
    return setInLast(lastStore, 0, id);
}

Records &Records::inCategory(int id)
{
    return setInLast(lastStore, 2, id);
}

Records &Records::at(double latitude, double longitude, double altitude)
{
    rows << Row{
        "gpscoord", {ofParent, number(latitude), number(longitude), number(altitude)}, lastStore};
    return *this;
}

Records &Records::list(const QString &name, int state)
{
    return add(lastList,
               {"shoplist", {counted, quoted(name), ofParent, QString::number(state)}, lastStore});
}

Records &Records::list(int id, const QString &name, int state)
{
    list(name, state);
    return setInLast(lastList, 0, id);
}

Records &Records::openList(const QString &name)
{
    return list(name, ListUnchecked);
}

Records &Records::openList(int id, const QString &name)
{
    return list(id, name, ListUnchecked);
}

Records &Records::ofStore(int id)
{
    return setInLast(lastList, 2, id);
}

Records &Records::good(const QString &name, int amount)
{
    return add(
        lastGood,
        {"purchase", {counted, quoted(name), ofParent, QString::number(amount), "0"}, lastList});
}

Records &Records::good(int id, const QString &name, int amount)
{
    good(name, amount);
    return setInLast(lastGood, 0, id);
}

Records &Records::checkedGood(const QString &name, int amount)
{
    good(name, amount);
    return setInLast(lastGood, 4, 1);
}

Records &Records::checkedGood(int id, const QString &name, int amount)
{
    checkedGood(name, amount);
    return setInLast(lastGood, 0, id);
}

Records &Records::onList(int id)
{
    return setInLast(lastGood, 2, id);
}

Records &Records::sql(const QString &statement)
{
    rows << Row{{}, {statement}};
    return *this;
}

bool Records::isEmpty() const
{
    return rows.isEmpty();
}

QStringList Records::statements() const
{
    QStringList result;
    QHash<QString, int> largest;
    QStringList ids;
    for (const Row &row : rows) {
        QStringList values = row.values;
        const bool isSql = row.table.isEmpty();
        if (values.first().isNull() && row.table != "gpscoord")
            values.first() = QString::number(largest[row.table] + 1);
        for (QString &value : values) {
            if (value.isNull())
                value = row.parent < 0 ? QString('0') : ids.at(row.parent);
        }
        ids << values.first();
        if (!isSql)
            largest[row.table] = std::max(largest[row.table], values.first().toInt());
        const QString text = values.join(", ");
        result << (isSql ? text : "insert into " + row.table + " values (" + text + ')');
    }
    return result;
}

Records &Records::add(qsizetype &last, const Row &row)
{
    last = rows.size();
    rows << row;
    return *this;
}

Records &Records::setInLast(qsizetype last, int column, int value)
{
    rows[last].values[column] = QString::number(value);
    return *this;
}

Records category(const QString &name)
{
    return Records().category(name);
}

Records category(int id, const QString &name)
{
    return Records().category(id, name);
}

Records store(const QString &name)
{
    return Records().store(name);
}

Records store(int id, const QString &name)
{
    return Records().store(id, name);
}

Records list(const QString &name, int state)
{
    return Records().list(name, state);
}

Records list(int id, const QString &name, int state)
{
    return Records().list(id, name, state);
}

Records openList(const QString &name)
{
    return Records().openList(name);
}

Records openList(int id, const QString &name)
{
    return Records().openList(id, name);
}

Records sql(const QString &statement)
{
    return Records().sql(statement);
}
