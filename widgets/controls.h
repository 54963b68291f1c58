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
class QVBoxLayout;
class QWidget;

/// The small pieces that pages are made of. What the functions return has no parent yet; the
/// layout it is put into gives it one.
namespace Controls {

/// Extents of pictures, in device-independent pixels.
inline constexpr int logoExtent = 52;
inline constexpr int pictureExtent = 60;

/// Distances, in device-independent pixels: beside a separator, which is as wide, so that panes are
/// 12 apart; between stacked buttons; between the tools of a header.
inline constexpr int besideSeparator = 4;
inline constexpr int stackGap = 8;
inline constexpr int toolGap = 8;
inline constexpr int captionGap = 4;
inline constexpr int paneGap = 12;
/// Of what stands on a sheet: with the frame of the sheet, 14 at the sides and 12 above and below.
inline constexpr QMargins sheetMargins(8, 6, 8, 6);

/// Names of properties, of which the style takes note: the widget is a caption; the text of a
/// button begins at its left, as in a stack of buttons; the button leads on to another page, or is
/// the main action of its page.
inline constexpr const char *captionProperty = "caption";
inline constexpr const char *leadingProperty = "leading";
inline constexpr const char *leadsOnProperty = "leadsOn";
inline constexpr const char *mainProperty = "main";

/// Sets the distance of a page's panes from the page's edges, and from the separators between them.
void setPageSpacing(QBoxLayout *box);

/// Sets the distance between panes that no separator parts.
void setPaneSpacing(QBoxLayout *box);

/// A sheet, which holds what is read or filled in on a page. Its layout is to be made by
/// layOutSheet().
QFrame *sheet();

/// A vertical layout for what stands on `sheet`.
QVBoxLayout *layOutSheet(QFrame *sheet);

/// A label that says what stands beside or below it.
QLabel *caption(const QString &text);

/// Lets `widget` write in bold.
void setBold(QWidget *widget);

/// Makes `button` the main action of its page.
void setMain(QPushButton *button);

/// Adds `buttons` to `box`, one above the other at the bottom of the room there is.
void addStack(QBoxLayout *box, const QList<QPushButton *> &buttons);

/// A button that shows only `picture`, a resource path; `name` is what a screen reader says.
QPushButton *pictureButton(const QString &objectName, const QString &picture, int extent,
                           const QString &name);

/// A picture button that can be checked, for a view.
QPushButton *viewButton(const QString &objectName, const QString &picture, int extent,
                        const QString &name);

/// A button that shows `text` beside `picture`, a resource path.
QPushButton *textButton(const QString &objectName, const QString &picture, int extent,
                        const QString &text);

/// A large button that leads on to another page.
QPushButton *door(const QString &objectName, const QString &picture, int extent,
                  const QString &text);

/// The resource path of the picture that the functions above gave `button`, else nothing.
QString pictureOf(const QAbstractButton *button);

/// A centred label for a picture.
PictureLabel *pictureLabel(const QString &objectName);

/// A label for a value: plain text that wraps.
QLabel *valueLabel(const QString &objectName);

/// A sunken line; `shape` is QFrame::HLine or QFrame::VLine.
QFrame *separator(QFrame::Shape shape);

} // namespace Controls
