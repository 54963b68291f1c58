// SPDX-License-Identifier: MIT
#include "widgets/listrow.h"

#include <QCoreApplication>
#include <QListWidget>
#include <QStringList>

using namespace Qt::StringLiterals;

ListRow::ListRow(const QString &name, int id, const QVariant &second)
    : rowName(name)
    , recordId(id)
    , secondColumn(second)
{
    setFlags(Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren);
}

bool ListRow::setTexts(const QString &name, const QVariant &second)
{
    const bool differs = name != rowName || second != secondColumn;
    rowName = name;
    secondColumn = second;
    return differs;
}

QVariant ListRow::data(int role) const
{
    if (role == Qt::DisplayRole)
        return rowName;
    if (role == RowIdRole)
        return recordId;
    if (role == SecondColumnRole || role == ShownSecondRole)
        return secondColumn;
    if (role != Qt::AccessibleTextRole)
        return QListWidgetItem::data(role);
    QStringList parts{rowName};
    const QString second = data(ShownSecondRole).toString();
    if (!second.isEmpty())
        parts << second;
    if (data(CheckableRole).toBool()) {
        parts << (checkState() == Qt::Checked
                      ? QCoreApplication::translate("ShopWindow", "checked")
                      : QCoreApplication::translate("ShopWindow", "unchecked"));
    }
    return parts.join(", "_L1);
}

void ListRow::setData(int role, const QVariant &value)
{
    if (role == Qt::DisplayRole) {
        rowName = value.toString();
    } else if (role == SecondColumnRole) {
        secondColumn = value;
    } else {
        QListWidgetItem::setData(role, value);
        return;
    }
    if (const QListWidget *list = listWidget()) {
        const QModelIndex index = list->indexFromItem(this);
        emit list->model()->dataChanged(index, index, {role});
    }
}

int rowId(const QListWidgetItem &row)
{
    return row.data(RowIdRole).toInt();
}
