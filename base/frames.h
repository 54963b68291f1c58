// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

class PictureLabel;
class QBoxLayout;
class QFormLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QWidget;
class TouchList;
class TurningPage;

/// What all pages with one list have in common: a header with picture, title, help and back, the
/// list, and a box with buttons.
struct ListFrame
{
    QBoxLayout *header = nullptr;
    PictureLabel *picture = nullptr;
    QLabel *title = nullptr;
    QPushButton *help = nullptr;
    QPushButton *back = nullptr;
    TouchList *list = nullptr;
    QBoxLayout *buttons = nullptr;
};

/// What all pages beside a toolbar have in common: the toolbar with picture, help and back, and a
/// box of contents.
struct ToolbarFrame
{
    QBoxLayout *toolbar = nullptr;
    PictureLabel *picture = nullptr;
    QPushButton *help = nullptr;
    QPushButton *back = nullptr;
    /// Side by side in landscape, stacked in portrait.
    QBoxLayout *contents = nullptr;
};

/// What all pages for editing have in common: a toolbar, fields, and "Save" and "Delete".
struct EditFrame : ToolbarFrame
{
    QFormLayout *fields = nullptr;
    QPushButton *save = nullptr;
    QPushButton *remove = nullptr;
};

/// The functions lay out `page`, which owns what they make. Escape presses "back".
namespace Frames {

/// Extent of the pictures of a list page's header and of its help and back buttons.
inline constexpr int listPictureExtent = 48;
inline constexpr int listToolExtent = 40;

ListFrame makeListFrame(TurningPage *page, const QString &picture, const QString &title);
ToolbarFrame makeToolbarFrame(TurningPage *page);
EditFrame makeEditFrame(TurningPage *page);

/// Adds a form with captions and fields to `contents`, of which it takes what is free.
QFormLayout *addFields(QBoxLayout *contents);

/// Lets the Escape key press `button` while `page` shows.
void pressOnEscape(QWidget *page, QPushButton *button);

/// Lets Tab go from one of `widgets` to the next.
void setTabOrder(const QList<QWidget *> &widgets);

/// `name` without the half of an emoji that a cut may have left at its end.
QString withoutHalfEmoji(QString name);

/// Characters of a name, at most.
inline constexpr int longestName = 25;

/// A field for a name of up to 25 characters; Enter presses `save`.
QLineEdit *nameField(const QString &objectName, QPushButton *save);

} // namespace Frames
