// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>
#include <QLabel>
#include <QString>

/// Pictures that are loaded when they are first shown, because most of them are on pages that the
/// user may not open for days.
namespace Pictures {

/// Returns the picture at `path`, a resource path or a file. It is loaded when it is first drawn,
/// and only once for all icons with this path.
QIcon icon(const QString &path);

} // namespace Pictures

/// A centred label for a picture.
class PictureLabel : public QLabel
{
    Q_OBJECT

public:
    explicit PictureLabel(QWidget *parent = nullptr);

    /// Shows the picture at `path` within `extent` x `extent` device-independent pixels, keeping
    /// its aspect ratio. The pixmap has the size in device pixels of the label's screen, so it is
    /// not scaled when it is painted.
    void setPicture(const QString &path, int extent);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void showEvent(QShowEvent *event) override;

private:
    void draw();

    QString picture;
    int pictureExtent = 0;
    /// Device pixel ratio of the current pixmap; 0 if it must be drawn.
    qreal drawnFor = 0;
};
