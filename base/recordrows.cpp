// SPDX-License-Identifier: MIT
#include "base/recordrows.h"

#include "data/database.h"
#include "widgets/listrow.h"

using namespace Qt::StringLiterals;

QList<QListWidgetItem *> recordRows(QSqlQuery &query,
                                    const std::function<QVariant(const QSqlQuery &query)> &second)
{
    const int nameColumn = Database::column(query, "name"_L1);
    const int idColumn = Database::column(query, "id"_L1);
    QList<QListWidgetItem *> rows;
    while (query.next()) {
        rows << new ListRow(query.value(nameColumn).toString(), Database::integer(query, idColumn),
                            second ? second(query) : QVariant());
    }
    return rows;
}

QListWidgetItem *rowOfRecord(const QList<QListWidgetItem *> &rows, int id,
                             QListWidgetItem *otherwise)
{
    QListWidgetItem *found = otherwise;
    for (QListWidgetItem *row : rows) {
        if (rowId(*row) == id)
            found = row; // of several rows with this id, the last one
    }
    return found;
}
