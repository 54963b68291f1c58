// SPDX-License-Identifier: MIT
#pragma once

#include <QCheckBox>
#include <QRadioButton>

#include "widgets/wrappingbutton.h"

/// A check box or radio button that fills a row of its page and is pressed anywhere in it, not on
/// its text alone.
template <typename Button, QStyle::ControlElement element>
class RowButton : public WrappingButton<Button, element>
{
public:
    RowButton(const QString &objectName, const QString &text)
        : WrappingButton<Button, element>(text)
    {
        this->setObjectName(objectName);
        // It may be narrower than its hint.
        this->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    }

protected:
    bool hitButton(const QPoint &position) const override
    {
        return this->rect().contains(position);
    }
};

using RowCheckBox = RowButton<QCheckBox, QStyle::CE_CheckBox>;
using RowRadioButton = RowButton<QRadioButton, QStyle::CE_RadioButton>;
