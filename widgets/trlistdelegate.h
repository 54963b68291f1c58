// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>
#include <QStyledItemDelegate>

/// Draws the rows of all lists: a name, an optional second column in the right third, a line
/// between rows, and a check mark if the row has one. The text of a checked row is struck out. The
/// data roles are those of RowRole.
class TrListDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit TrListDelegate(QObject *parent = nullptr);
    ~TrListDelegate() override;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

signals:
    void itemClicked(QModelIndex index);

public slots:
    void closeAndCommitEditor();

private:
    QIcon checked;
    QIcon unchecked;
};
