// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include <QList>
#include <QSqlQuery>
#include <QVariant>

class QListWidgetItem;

/// Returns a row for each record of `query`, which must have the columns "id" and "name". `second`
/// returns the text of the second column for the current record of the query. The second column is
/// empty without `second`, or if `second` returns an empty value. The caller owns the rows.
QList<QListWidgetItem *>
recordRows(QSqlQuery &query, const std::function<QVariant(const QSqlQuery &query)> &second = {});

/// Returns the last of `rows` whose record has the id, or `otherwise` if there is none.
QListWidgetItem *rowOfRecord(const QList<QListWidgetItem *> &rows, int id,
                             QListWidgetItem *otherwise = nullptr);
