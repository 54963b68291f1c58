// SPDX-License-Identifier: MIT
#pragma once

#include <QListWidget>
#include <QPersistentModelIndex>

#include "widgets/doubletap.h"

class QPainter;
class TrKineticScroller;

/// A list for fingers: it flicks, a single tap never activates a row whatever the desktop's style
/// says, and no row becomes current unless the person or the program chose it. A row is chosen, and
/// clicked, when a tap on it ends; the finger that drags the rows chooses none.
class TouchList : public QListWidget
{
    Q_OBJECT

public:
    explicit TouchList(QWidget *parent = nullptr);

    /// Whether an itemClicked() that comes now, of `row`, is the second tap on the same record. The
    /// first one puts the record's id into `lastTapped`.
    static bool wasTappedAgain(const QListWidgetItem &row, int &lastTapped);

    /// Shows `rows` instead of those that are there; owns them from now on. With many rows this
    /// takes much less time than adding each.
    void showRows(const QList<QListWidgetItem *> &rows);

    /// Moves a row to where `to` is once it is gone from where it was. With many rows this takes
    /// much less time than taking it out and putting it in. Whether a row is current afterwards is
    /// open.
    void moveRow(int from, int to);

    /// Makes `row` the current one, or none for -1, and scrolls nowhere.
    void chooseInPlace(int row);

    /// What the list shows while it has no rows: `picture`, a resource path, and `text`, which says
    /// what to do.
    void setPlaceholder(const QString &picture, const QString &text);

    QModelIndex indexAt(const QPoint &position) const override;
    /// Without the margins at the sides, which the selection reaches into.
    QRect visualRect(const QModelIndex &index) const override;

    /// Room for some rows of some words.
    QSize minimumSizeHint() const override;

    /// To be called while a click is handled that made another row come under the finger: should
    /// the click turn out to be the first tap of a double tap, its second is ignored.
    void ignoreDoubleTap();

protected:
    void dataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                     const QList<int> &roles) override;
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;
    void focusInEvent(QFocusEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void selectionChanged(const QItemSelection &selected,
                          const QItemSelection &deselected) override;
    void showEvent(QShowEvent *event) override;

private:
    void paintPlaceholder(QPainter &painter) const;

    TrKineticScroller *scroller;
    QString placeholderPicture;
    QString placeholderText;
    bool staysInPlace = false;
    bool scrollWhenShown = false;
    /// Of the last press that was not ignored.
    TapPress press;
    /// The row moved away from under this one.
    TapPress movingPress;
    /// Where the finger is down; invalid when it is up, or its tap is ignored.
    QPersistentModelIndex pressedRow;
};
