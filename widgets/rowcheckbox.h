// SPDX-License-Identifier: MIT
#pragma once

#include <QCheckBox>

/// A check box that fills a row of its page and is pressed anywhere in it, not on its text alone.
class RowCheckBox : public QCheckBox
{
    Q_OBJECT

public:
    using QCheckBox::QCheckBox;

protected:
    bool hitButton(const QPoint &position) const override
    {
        return rect().contains(position);
    }
};
