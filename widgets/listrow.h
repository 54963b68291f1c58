// SPDX-License-Identifier: MIT
#pragma once

#include <QListWidgetItem>
#include <QString>

/// The data roles of the rows of all lists, in addition to Qt::DisplayRole. Qt::CheckStateRole is 0
/// for unchecked and 2 for checked.
enum RowRole : int {
    RowIdRole = Qt::UserRole,            ///< the id of the record, 0 if it is not stored yet
    SecondColumnRole = Qt::UserRole + 1, ///< an amount, a distance, or the name of a record
    CheckableRole = Qt::UserRole + 2,    ///< whether the row has a check mark
    ShownSecondRole = Qt::UserRole + 3,  ///< how the second column is drawn and spoken
};

/// A row of a list, with the name and the id of a record. Only the program sets the check mark; the
/// view does not let the user change it. Screen readers speak all texts of the row and whether it
/// is checked.
class ListRow : public QListWidgetItem
{
public:
    ListRow(const QString &name, int id, const QVariant &second = {});

    /// Sets the texts without notifying the view, and returns whether they differ from those
    /// before. The caller must notify the view, which is faster for many rows at once.
    bool setTexts(const QString &name, const QVariant &second);

    QVariant data(int role) const override;
    void setData(int role, const QVariant &value) override;

private:
    // The data of every row. Members are much faster than the storage of the base class.
    QString rowName;
    const int recordId;
    QVariant secondColumn;
};

int rowId(const QListWidgetItem &row);
