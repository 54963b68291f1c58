// SPDX-License-Identifier: MIT
#include "lists/listrow.h"

#include <QCoreApplication>
#include <QStringList>

using namespace Qt::StringLiterals;

ListRow::ListRow(const QString &name, int id)
    : QListWidgetItem(name)
{
    setData(RowIdRole, id);
    setFlags(Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren);
}

QVariant ListRow::data(int role) const
{
    if (role != Qt::AccessibleTextRole)
        return QListWidgetItem::data(role);
    QStringList parts{text()};
    const QString second = data(SecondColumnRole).toString();
    if (!second.isEmpty())
        parts << second;
    if (data(CheckableRole).toBool()) {
        parts << (checkState() == Qt::Checked
                      ? QCoreApplication::translate("ShopWindow", "checked")
                      : QCoreApplication::translate("ShopWindow", "unchecked"));
    }
    return parts.join(", "_L1);
}

int rowId(const QListWidgetItem &row)
{
    return row.data(RowIdRole).toInt();
}
