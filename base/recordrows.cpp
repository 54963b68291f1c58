// SPDX-License-Identifier: MIT
#include "base/recordrows.h"

#include <algorithm>

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
        rows << new ListRow(query.value(nameColumn).toString(), query.value(idColumn).toInt(),
                            second ? second(query) : QVariant());
    }
    return rows;
}

QListWidgetItem *rowOfRecord(const QList<QListWidgetItem *> &rows, int id,
                             QListWidgetItem *otherwise)
{
    const auto found = std::find_if(rows.crbegin(), rows.crend(),
                                    [id](const QListWidgetItem *row) { return rowId(*row) == id; });
    return found == rows.crend() ? otherwise : *found;
}
