// SPDX-License-Identifier: MIT
#pragma once

#include <QCheckBox>
#include <QRadioButton>

/// A check box or radio button that fills a row of its page and is pressed anywhere in it, not on
/// its text alone.
template <typename Button>
class RowButton : public Button
{
public:
    RowButton(const QString &objectName, const QString &text)
        : Button(text)
    {
        this->setObjectName(objectName);
    }

protected:
    bool hitButton(const QPoint &position) const override
    {
        return this->rect().contains(position);
    }
};

using RowCheckBox = RowButton<QCheckBox>;
using RowRadioButton = RowButton<QRadioButton>;
