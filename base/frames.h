// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

class PictureLabel;
class QBoxLayout;
class QLabel;
class QLayout;
class QLineEdit;
class QPushButton;
class QVBoxLayout;
class QWidget;
class TouchList;
class TurningPage;

/// The parts that all pages with one list share: a header with picture, title, help and back, the
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

/// The parts that all pages with a toolbar share: the toolbar with picture, help and back, and a
/// box for contents.
struct ToolbarFrame
{
    QBoxLayout *toolbar = nullptr;
    PictureLabel *picture = nullptr;
    QPushButton *help = nullptr;
    QPushButton *back = nullptr;
    /// Side by side in landscape, stacked in portrait.
    QBoxLayout *contents = nullptr;
};

/// The parts that all edit pages share: a toolbar, fields, "Save" and "Delete".
struct EditFrame : ToolbarFrame
{
    QVBoxLayout *fields = nullptr;
    QPushButton *save = nullptr;
    QPushButton *remove = nullptr;
};

/// Functions that lay out a page. The page owns the created widgets and layouts. Escape presses
/// "back".
namespace Frames {

/// Sizes in pixels of the picture in the header of a list page, and of its help and back buttons.
inline constexpr int listPictureExtent = 48;
inline constexpr int listToolExtent = 40;

ListFrame makeListFrame(TurningPage *page, const QString &picture, const QString &title);
ToolbarFrame makeToolbarFrame(TurningPage *page);
EditFrame makeEditFrame(TurningPage *page);

/// Adds a sheet to `contents`, which takes what room is free, and returns the layout on it.
QVBoxLayout *addSheet(QBoxLayout *contents);

/// Adds a sheet for captions and fields to `contents`.
QVBoxLayout *addFields(QBoxLayout *contents);

/// Adds `field` below `caption`; `row` is what has the field, if not the field alone.
void addField(QVBoxLayout *fields, const QString &caption, QWidget *field);
void addField(QVBoxLayout *fields, const QString &caption, QWidget *field, QLayout *row);

/// Adds `buttons` to the contents of `frame`, one above the other.
void addButtons(TurningPage *page, const ToolbarFrame &frame, const QList<QPushButton *> &buttons);

/// Makes the Escape key press `button` while `page` is visible.
void pressOnEscape(QWidget *page, QPushButton *button);

/// Makes the Tab key move through `widgets` in this order.
void setTabOrder(const QList<QWidget *> &widgets);

/// Returns `name` without a trailing high surrogate, which remains if an emoji was cut in half.
QString withoutHalfEmoji(QString name);

/// Maximum number of characters of a name.
inline constexpr int longestName = 25;

/// Creates a field for a name of up to `longestName` characters. Enter presses `save`.
QLineEdit *nameField(const QString &objectName, QPushButton *save);

} // namespace Frames
