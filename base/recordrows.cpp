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
        rows << new ListRow(query.value(nameColumn).toString(), query.value(idColumn).toInt(),
                            second ? second(query) : QVariant());
    }
    return rows;
}

QListWidgetItem *rowOfRecord(const QList<QListWidgetItem *> &rows, int id,
                             QListWidgetItem *otherwise)
{
    // From the end: of two rows with the same id, the last one counts.
    for (auto row = rows.crbegin(); row != rows.crend(); ++row) {
        if (rowId(**row) == id)
            return *row;
    }
    return otherwise;
}
