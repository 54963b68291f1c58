// SPDX-License-Identifier: MIT
#pragma once

#include <QFrame>
#include <QList>
#include <QMargins>
#include <QString>

class PictureLabel;
class QAbstractButton;
class QBoxLayout;
class QLabel;
class QPushButton;
class QScrollArea;
class QVBoxLayout;
class QWidget;

/// Functions that create the controls of pages. The returned widgets have no parent until they are
/// added to a layout.
namespace Controls {

/// Sizes of pictures, in device-independent pixels.
inline constexpr int logoExtent = 52;
inline constexpr int pictureExtent = 60;

/// TouchStyle draws the picture of a door of the main page above its text if the door is narrower.
/// In device-independent pixels.
inline constexpr int leastDoorBeside = 400;

/// Distances, in device-independent pixels. besideSeparator is the distance on each side of a
/// separator and also its width, so that panes are 12 apart. stackGap is the distance between
/// stacked buttons, toolGap that between the tools of a header.
inline constexpr int besideSeparator = 4;
inline constexpr int stackGap = 8;
inline constexpr int toolGap = 8;
inline constexpr int captionGap = 4;
inline constexpr int paneGap = 12;
/// The margins of a sheet. With the frame that TouchStyle gives a sheet, the distances are 14 at
/// the sides and 12 above and below.
inline constexpr QMargins sheetMargins(8, 6, 8, 6);

/// Names of properties that TouchStyle reads: the widget is a caption; the button is in a stack, so
/// its text starts at the left; the button opens another page; the button is the main action of its
/// page.
inline constexpr const char *captionProperty = "caption";
inline constexpr const char *leadingProperty = "leading";
inline constexpr const char *leadsOnProperty = "leadsOn";
inline constexpr const char *mainProperty = "main";

/// Sets the distances of panes from the edges of the page and from the separators between them.
void setPageSpacing(QBoxLayout *box);

/// Sets the distances of panes from the edges of the page and, without separators, from each other.
void setPaneSpacing(QBoxLayout *box);

/// Creates a sheet, the background of texts and fields on a page. layOutSheet() creates its layout.
QFrame *sheet();

/// Creates the vertical layout of `sheet`, which owns it.
QVBoxLayout *layOutSheet(QFrame *sheet);

/// Creates a label for the control beside or below it.
QLabel *caption(const QString &text);

/// Sets a bold font on `widget`.
void setBold(QWidget *widget);

/// Makes `button` the main action of its page.
void setMain(QPushButton *button);

/// Adds `buttons` to `box`, at the bottom and in this order.
void addStack(QBoxLayout *box, const QList<QPushButton *> &buttons);

/// Creates a button that shows only `picture`, a resource path. Screen readers speak `name`.
QPushButton *pictureButton(const QString &objectName, const QString &picture, int extent,
                           const QString &name);

/// Creates a checkable picture button, which selects a view.
QPushButton *viewButton(const QString &objectName, const QString &picture, int extent,
                        const QString &name);

/// Creates a button that shows `text` beside `picture`, a resource path.
QPushButton *textButton(const QString &objectName, const QString &picture, int extent,
                        const QString &text);

/// Creates a large button that opens another page.
QPushButton *door(const QString &objectName, const QString &picture, int extent,
                  const QString &text);

/// Returns the resource path of the picture of a button that the functions above have created, or
/// an empty string for other buttons.
QString pictureOf(const QAbstractButton *button);

/// Creates a centred label for a picture.
PictureLabel *pictureLabel(const QString &objectName);

/// Creates a label for a value, as plain text that wraps.
QLabel *valueLabel(const QString &objectName);

/// Creates a scroll area, which owns `contents`, resizes them, and has the background of a sheet.
QScrollArea *scrollArea(QWidget *contents);

/// Creates a sunken line. `shape` is QFrame::HLine or QFrame::VLine.
QFrame *separator(QFrame::Shape shape);

} // namespace Controls
