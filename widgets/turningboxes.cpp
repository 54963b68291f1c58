// SPDX-License-Identifier: MIT
#include "widgets/turningboxes.h"

#include <QBoxLayout>
#include <QFrame>

void TurningBoxes::turn(Qt::Orientation orientation) const
{
    const bool landscape = orientation == Qt::Horizontal;
    for (QBoxLayout *box : alongWidth)
        box->setDirection(landscape ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
    for (QBoxLayout *box : acrossWidth)
        box->setDirection(landscape ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    for (QFrame *line : separators)
        line->setFrameShape(landscape ? QFrame::VLine : QFrame::HLine);
}
