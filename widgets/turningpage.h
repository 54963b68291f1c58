// SPDX-License-Identifier: MIT
#pragma once

#include <QAccessible>
#include <QList>
#include <QWidget>

class QBoxLayout;
class QFrame;
class QLayout;
class QScrollArea;

/// The parts of one page that turn with the window. None of them is owned.
struct TurningBoxes
{
    /// Side by side in landscape, stacked in portrait.
    QList<QBoxLayout *> alongWidth;
    /// Stacked in landscape, side by side in portrait.
    QList<QBoxLayout *> acrossWidth;
    /// Lines between boxes of `alongWidth`.
    QList<QFrame *> separators;

    /// Lays everything out for a window that is wider than high (Qt::Horizontal) or not
    /// (Qt::Vertical). Returns whether a box was laid out otherwise before.
    bool turn(Qt::Orientation orientation) const;
};

/// A page whose boxes turn with the window, and which keeps within a window that is small for its
/// texts: what has no room side by side is stacked, and what is still too large scrolls. Its
/// accessible name is its title.
class TurningPage : public QWidget
{
    Q_OBJECT

public:
    /// `pageRole` is what a screen reader takes the page for.
    explicit TurningPage(QAccessible::Role pageRole, QWidget *parent = nullptr);

    QAccessible::Role accessibleRole() const;

    /// Lays the page out for a window of that orientation.
    void turn(Qt::Orientation orientation);

    TurningBoxes turningBoxes;

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
    void stackWhatIsTooWide();
    void scrollWhatIsTooLarge();
    void showFocused();
    void fit();

    QAccessible::Role role;
    Qt::Orientation windowOrientation = Qt::Horizontal;
    /// The contents have not changed their size since something got the focus.
    bool focusIsNew = false;
    bool changedUnseen = true;
    /// There is none on a page that has always had the room it needs.
    QScrollArea *area = nullptr;
};
