// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractButton>
#include <QStyleOptionButton>
#include <QStylePainter>

/// Functions that break the texts of buttons. Sizes are in device-independent pixels.
namespace TextBreaking {

/// Returns `text` with newlines between words. A line is wider than `width` only if a single word
/// is.
QString broken(const QString &text, const QFontMetrics &metrics, int width);

/// Returns the width of the widest word of `text`.
int widestWord(const QString &text, const QFontMetrics &metrics);

/// Returns the part of a name that a widget shows. Foreign files can have names of any length,
/// which would take Qt minutes to lay out.
QString shownPart(const QString &name);

/// Returns the size of `text`, which may have several lines.
QSize size(const QString &text, const QFontMetrics &metrics);

} // namespace TextBreaking

/// A push button, check box or radio button that breaks a text without room in one line between
/// words, and becomes higher. A button without text can be smaller than its picture, which is then
/// drawn smaller, down to 40 pixels. `element` is the control element that the style draws.
template <typename Button, QStyle::ControlElement element>
class WrappingButton : public Button
{
public:
    using Button::Button;

    QSize sizeHint() const override
    {
        const QSize hint = Button::sizeHint();
        return {hint.width(), qMax(hint.height(), heightOfLines)};
    }

    QSize minimumSizeHint() const override
    {
        const QSize hint = sizeHint();
        if (this->text().isEmpty())
            return hint - this->iconSize() + this->iconSize().boundedTo(leastIcon);
        const int word = TextBreaking::widestWord(this->text(), this->fontMetrics());
        return {hint.width() - lineSize().width() + word, hint.height()};
    }

protected:
    void resizeEvent(QResizeEvent *event) override
    {
        Button::resizeEvent(event);
        const QSize lines = TextBreaking::size(brokenText(), this->fontMetrics());
        const int icon = this->icon().isNull() ? 0 : this->iconSize().height();
        const int around = Button::sizeHint().height() - qMax(icon, lineSize().height());
        const int needed = around + qMax(icon, lines.height());
        if (needed != heightOfLines) {
            heightOfLines = needed;
            this->updateGeometry();
        }
    }

    void paintEvent(QPaintEvent * /*event*/) override
    {
        QStyleOptionButton option;
        this->initStyleOption(&option);
        option.text = brokenText();
        if (option.text.isEmpty()) {
            const QSize room = this->size() - (Button::sizeHint() - this->iconSize());
            option.iconSize = this->iconSize().boundedTo(room.expandedTo(leastIcon));
        }
        QStylePainter(this).drawControl(element, option);
    }

private:
    static constexpr QSize leastIcon{40, 40}; // device-independent pixels

    QSize lineSize() const
    {
        return TextBreaking::size(this->text(), this->fontMetrics());
    }

    /// Returns the text, broken for the current width of the button.
    QString brokenText() const
    {
        // The width of picture, indicator and margins.
        const int around = Button::sizeHint().width() - lineSize().width();
        return TextBreaking::broken(this->text(), this->fontMetrics(), this->width() - around);
    }

    /// The height of the button that the broken text needs, in device-independent pixels.
    int heightOfLines = 0;
};
