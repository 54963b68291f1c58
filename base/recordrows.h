// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include <QList>
#include <QSqlQuery>
#include <QVariant>

class QListWidgetItem;

/// A row for each record that `query` gives, which has the columns "id" and "name". `second` says
/// what stands in the second column of the record that the query is at; without it, or where it
/// says nothing, that is empty. The caller owns the rows.
QList<QListWidgetItem *>
recordRows(QSqlQuery &query, const std::function<QVariant(const QSqlQuery &query)> &second = {});

/// The last of `rows` whose record has the id; `otherwise` when there is none.
QListWidgetItem *rowOfRecord(const QList<QListWidgetItem *> &rows, int id,
                             QListWidgetItem *otherwise = nullptr);
