// SPDX-License-Identifier: MIT
#pragma once

#include <QCheckBox>
#include <QRadioButton>

#include "widgets/wrappingbutton.h"

/// A check box or radio button that reacts to presses anywhere in its rectangle, not only on the
/// indicator and text.
template <typename Button, QStyle::ControlElement element>
class RowButton : public WrappingButton<Button, element>
{
public:
    RowButton(const QString &objectName, const QString &text)
        : WrappingButton<Button, element>(text)
    {
        this->setObjectName(objectName);
        // The button may be narrower than its size hint.
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
