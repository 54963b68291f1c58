// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractButton>
#include <QStyleOptionButton>
#include <QStylePainter>

/// How buttons break their texts.
namespace TextBreaking {

/// `text` with newlines between words, so that no line is wider than `width` unless a word is.
QString broken(const QString &text, const QFontMetrics &metrics, int width);

/// Width of the widest word of `text`.
int widestWord(const QString &text, const QFontMetrics &metrics);

/// Size of `text`, whose newlines count.
QSize size(const QString &text, const QFontMetrics &metrics);

} // namespace TextBreaking

/// A push button, check box or radio button that breaks its text between words where there is no
/// room for it in one line, and becomes higher for it. One that has only a picture draws it
/// smaller, down to what a finger needs. `element` is what the style draws.
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

    /// The text as it is broken for the width that the button has.
    QString brokenText() const
    {
        // Picture, indicator and margins.
        const int around = Button::sizeHint().width() - lineSize().width();
        return TextBreaking::broken(this->text(), this->fontMetrics(), this->width() - around);
    }

    /// Of the whole button with the text as it is broken now.
    int heightOfLines = 0;
};
