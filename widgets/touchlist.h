// SPDX-License-Identifier: MIT
#pragma once

#include <QListWidget>
#include <QPersistentModelIndex>

#include "widgets/doubletap.h"

class QPainter;
class TrKineticScroller;

/// A list for touch screens with kinetic scrolling. A single tap never activates a row, whatever
/// the style says, and a row becomes current only if the user or the program selects it. A row is
/// selected and clicked when a tap on it ends. Dragging selects no row.
class TouchList : public QListWidget
{
    Q_OBJECT

public:
    explicit TouchList(QWidget *parent = nullptr);

    /// To be called for itemClicked() of `row`. Returns whether this is the second tap on the same
    /// record. Sets `lastTapped` to the id of the record.
    static bool wasTappedAgain(const QListWidgetItem &row, int &lastTapped);

    /// Replaces all rows by `rows` and takes ownership of them. With many rows this is much faster
    /// than adding each of them.
    void showRows(const QList<QListWidgetItem *> &rows);

    /// Moves the row `from` to the index `to`, which is counted without the row, and sets its check
    /// mark. With many rows this is much faster than takeItem(), setCheckState() and insertItem().
    /// Afterwards any row, or none, may be current.
    void moveRow(int from, int to, Qt::CheckState checkState);

    /// Makes `row` the current row without scrolling. -1 clears the current row.
    void chooseInPlace(int row);

    /// Sets what an empty list shows: `picture`, a resource path, and `text`, which tells the user
    /// what to do.
    void setPlaceholder(const QString &picture, const QString &text);

    QModelIndex indexAt(const QPoint &position) const override;
    /// Returns the rectangle without the margins at the sides, which only the selection covers.
    QRect visualRect(const QModelIndex &index) const override;

    /// Returns a size with room for a few rows with a few words.
    QSize minimumSizeHint() const override;

    /// To be called while handling a click that has moved another row under the finger. If the
    /// click is the first tap of a double tap, the second tap is ignored.
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
    void tellPlaceholder();

    TrKineticScroller *scroller;
    QString placeholderPicture;
    QString placeholderText;
    bool staysInPlace = false;
    bool scrollWhenShown = false;
    /// The last press that was not ignored.
    TapPress press;
    /// The last press whose click has moved another row under the finger.
    TapPress movingPress;
    /// The row at the press; invalid if the finger is up, or its tap is ignored.
    QPersistentModelIndex pressedRow;
};
