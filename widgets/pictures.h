// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>
#include <QLabel>
#include <QString>

/// Pictures cost nothing until they are seen. Most of the program's are on pages that a person may
/// not come to for days.
namespace Pictures {

/// The picture at `path`, a resource path or file. It is read when it is first drawn, and once for
/// all that show it.
QIcon icon(const QString &path);

} // namespace Pictures

/// A centred label for a picture.
class PictureLabel : public QLabel
{
    Q_OBJECT

public:
    explicit PictureLabel(QWidget *parent = nullptr);

    /// Shows the picture at `path` within `extent` x `extent` device-independent pixels, keeping
    /// its aspect ratio. It is drawn for just that size on the label's screen, so nothing is left
    /// to be scaled.
    void setPicture(const QString &path, int extent);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void showEvent(QShowEvent *event) override;

private:
    void draw();

    QString picture;
    int pictureExtent = 0;
    /// Device pixel ratio of the pixmap that is there; 0 when it is to be drawn.
    qreal drawnFor = 0;
};
