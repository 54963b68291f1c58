// SPDX-License-Identifier: MIT
#pragma once

#include <QFrame>
#include <QString>

class PictureLabel;
class QAbstractButton;
class QBoxLayout;
class QLabel;
class QPushButton;
class QWidget;

/// The small pieces that pages are made of. What the functions return has no parent yet; the
/// layout it is put into gives it one.
namespace Controls {

/// Extents of pictures, in device-independent pixels.
inline constexpr int logoExtent = 52;
inline constexpr int pictureExtent = 60;

/// Sets the one distance between things on a page, and to its edges. Boxes within `box` follow it.
void setPageSpacing(QBoxLayout *box);

/// A button that shows only `picture`, a resource path; `name` is what a screen reader says.
QPushButton *pictureButton(const QString &objectName, const QString &picture, int extent,
                           const QString &name);

/// A picture button that can be checked, for a view.
QPushButton *viewButton(const QString &objectName, const QString &picture, int extent,
                        const QString &name);

/// A button that shows `text` beside `picture`, a resource path.
QPushButton *textButton(const QString &objectName, const QString &picture, int extent,
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
