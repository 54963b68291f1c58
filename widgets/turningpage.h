// SPDX-License-Identifier: MIT
#pragma once

#include <QAccessible>
#include <QList>
#include <QWidget>

class QBoxLayout;
class QFrame;
class QLayout;
class QScrollArea;

/// The parts of a page that follow the orientation of the window. None of them is owned.
struct TurningBoxes
{
    /// Side by side in landscape, stacked in portrait.
    QList<QBoxLayout *> alongWidth = {};
    /// Stacked in landscape, side by side in portrait.
    QList<QBoxLayout *> acrossWidth = {};
    /// Side by side in both orientations, unless one of them is too wide: then all are stacked.
    QList<QBoxLayout *> sideBySide = {};
    /// Lines between boxes of `alongWidth`.
    QList<QFrame *> separators = {};

    /// Sets the directions of all boxes for landscape (Qt::Horizontal) or portrait (Qt::Vertical).
    /// Returns whether the direction of a box has changed.
    bool turn(Qt::Orientation orientation) const;
};

/// A page that follows the orientation of the window and fits a window that is too small for its
/// texts: boxes without room side by side are stacked, then words without room are smaller, and a
/// page that is still too large scrolls.
/// The accessible name of a page is its title.
class TurningPage : public QWidget
{
    Q_OBJECT

public:
    /// `pageRole` is the accessible role of the page.
    explicit TurningPage(QAccessible::Role pageRole, QWidget *parent = nullptr);

    QAccessible::Role accessibleRole() const;

    /// Lays out the page for a window of that orientation.
    void turn(Qt::Orientation orientation);

    /// Returns whether the page of `widget` is too narrow for its usual texts, also after its boxes
    /// were stacked, so that texts may be smaller.
    static bool isTight(const QWidget *widget);

    /// Gives the focus to firstFocus. A page that scrolls shows its top instead, unless a field to
    /// type in has the focus.
    void open();

    TurningBoxes turningBoxes;
    /// The widget of this page that is to get the focus when the page opens, if any.
    QWidget *firstFocus = nullptr;

protected:
    bool event(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    QLayout *boxes() const;
    void turnBoxes(Qt::Orientation orientation);
    void measureAround(const QBoxLayout *box);
    int neededWidth() const;
    bool isTooWide() const;
    bool isTooHigh() const;
    void setTight(bool mayShrink);
    void turnRow(const QList<QBoxLayout *> &row, Qt::Orientation orientation);
    void stackIfTooWide(const QList<QBoxLayout *> &row);
    void stackWhatIsTooWide();
    void scrollWhatIsTooLarge();
    void showFocused();
    void fit();

    QAccessible::Role role;
    Qt::Orientation windowOrientation = Qt::Horizontal;
    /// Whether texts may be smaller.
    bool tight = false;
    /// Whether the focus has changed since the height of the contents changed last.
    bool focusIsNew = false;
    bool changedUnseen = true;
    /// Null while the page has always had enough room for its contents.
    QScrollArea *area = nullptr;
};
