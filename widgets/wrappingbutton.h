// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractButton>
#include <QFontMetrics>
#include <QStyleOptionButton>
#include <QStylePainter>

/// Functions that fit texts into buttons and labels. Sizes are in device-independent pixels.
namespace TextBreaking {

/// The least size of a text whose words are too wide, in parts of the size of its font.
constexpr qreal smallest = 0.6;

/// Returns the width that `widget` requires for words that are `width` wide in its font: less if
/// its page is too narrow.
int requiredWidth(const QWidget *widget, int width);

/// Returns `text` with newlines between words. A line is wider than `width` only if a single word
/// is.
QString broken(const QString &text, const QFontMetrics &metrics, int width);

/// Returns the width of the widest word of `text`.
int widestWord(const QString &text, const QFontMetrics &metrics);

/// Returns `font`, or a smaller one in which a word of the width `word` is at most as wide as
/// `width`, unless it would be below the least size.
QFont fitting(const QFont &font, int word, int width);

/// Returns the part of a name that a widget shows. Foreign files can have names of any length,
/// which would take Qt minutes to lay out.
QString shownPart(const QString &name);

/// Returns the size of `text`, which may have several lines.
QSize size(const QString &text, const QFontMetrics &metrics);

} // namespace TextBreaking

/// A push button, check box or radio button that breaks a text without room in one line between
/// words, and becomes higher. If a single word has no room, the text is smaller. A button without
/// text can be smaller than its picture, which is then
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
        return {aroundText() + leastTextWidth(), hint.height()};
    }

protected:
    int leastTextWidth() const
    {
        const int word = TextBreaking::widestWord(this->text(), this->fontMetrics());
        return TextBreaking::requiredWidth(this, word);
    }

    /// Returns the width of picture, indicator and margins beside the text.
    virtual int aroundText() const
    {
        return Button::sizeHint().width() - lineSize().width();
    }

    void resizeEvent(QResizeEvent *event) override
    {
        Button::resizeEvent(event);
        // In the usual font: a smaller one needs no more lines. If its height counted, a narrower
        // button could be lower, and a page might need its scroll bar only while that is hidden.
        const QFontMetrics metrics = this->fontMetrics();
        const QSize lines = TextBreaking::size(brokenText(metrics), metrics);
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
        const QFont font = drawnFont();
        option.fontMetrics = QFontMetrics(font);
        option.text = brokenText(option.fontMetrics);
        if (option.text.isEmpty()) {
            const QSize room = this->size() - (Button::sizeHint() - this->iconSize());
            option.iconSize = this->iconSize().boundedTo(room.expandedTo(leastIcon));
        }
        QStylePainter painter(this);
        painter.setFont(font);
        painter.drawControl(element, option);
    }

private:
    static constexpr QSize leastIcon{40, 40}; // device-independent pixels

    QSize lineSize() const
    {
        return TextBreaking::size(this->text(), this->fontMetrics());
    }

    int roomForText() const
    {
        return this->width() - aroundText();
    }

    /// Returns the font in which every word has room, if it is not below the least size.
    QFont drawnFont() const
    {
        const int room = roomForText();
        if (lineSize().width() <= room)
            return this->font();
        const int word = TextBreaking::widestWord(this->text(), this->fontMetrics());
        return TextBreaking::fitting(this->font(), word, room);
    }

    /// Returns the text, broken for the current width of the button.
    QString brokenText(const QFontMetrics &metrics) const
    {
        return TextBreaking::broken(this->text(), metrics, roomForText());
    }

    /// The height of the button that the broken text needs, in device-independent pixels.
    int heightOfLines = 0;
};
