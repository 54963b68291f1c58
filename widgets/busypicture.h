// SPDX-License-Identifier: MIT
#pragma once

#include <QBasicTimer>

#include "widgets/pictures.h"

/// A picture with an arc that runs around it as long as it is visible, to show that the program is
/// waiting for something. Where the desktop wants no animation, the arc rests.
class BusyPicture : public PictureLabel
{
    Q_OBJECT

public:
    explicit BusyPicture(QWidget *parent = nullptr);

    /// Returns the size of the picture with the arc.
    QSize sizeHint() const override;

protected:
    void hideEvent(QHideEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void timerEvent(QTimerEvent *event) override;

private:
    QBasicTimer timer;
    /// Degrees, clockwise from the top.
    int angle = 0;
};
