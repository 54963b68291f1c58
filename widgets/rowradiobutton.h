// SPDX-License-Identifier: MIT
#pragma once

#include <QRadioButton>

/// A radio button that fills a row of its page and is pressed anywhere in it, not on its text
/// alone.
class RowRadioButton : public QRadioButton
{
    Q_OBJECT

public:
    using QRadioButton::QRadioButton;

protected:
    bool hitButton(const QPoint &position) const override
    {
        return rect().contains(position);
    }
};
