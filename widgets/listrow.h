// SPDX-License-Identifier: MIT
#pragma once

#include <QListWidgetItem>
#include <QString>

/// What the rows of all lists carry beside their text. Qt::CheckStateRole is 0 or 2.
enum RowRole : int {
    RowIdRole = Qt::UserRole,            ///< the record's id, 0 for a record not stored yet
    SecondColumnRole = Qt::UserRole + 1, ///< an amount, a store's or a category's name
    CheckableRole = Qt::UserRole + 2,    ///< whether the row has a check mark
};

/// A row of a list: the name of something that has an id. The view lets nobody check it: a check
/// mark is the program's to set. A screen reader reads all that the row shows.
class ListRow : public QListWidgetItem
{
public:
    ListRow(const QString &name, int id, const QVariant &second = {});

    /// Without telling the view, for many rows at once: whoever calls this tells it of all of them.
    void setTexts(const QString &name, const QVariant &second);

    QVariant data(int role) const override;
    void setData(int role, const QVariant &value) override;

private:
    // What every row has; the base class takes much longer to keep it.
    QString rowName;
    const int recordId;
    QVariant secondColumn;
};

int rowId(const QListWidgetItem &row);
