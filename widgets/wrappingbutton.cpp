// SPDX-License-Identifier: MIT
#include "widgets/wrappingbutton.h"

#include <algorithm>

#include <QFontInfo>
#include <QFontMetrics>
#include <QStringList>
#include <QtMath>

#include "widgets/turningpage.h"

QString TextBreaking::broken(const QString &text, const QFontMetrics &metrics, int width)
{
    QStringList lines;
    for (const QString &word : text.split(u' ')) {
        const QString longer = lines.isEmpty() ? word : lines.last() + u' ' + word;
        if (!lines.isEmpty() && size(longer, metrics).width() <= width)
            lines.last() = longer;
        else
            lines << word;
    }
    return lines.join(u'\n');
}

int TextBreaking::widestWord(const QString &text, const QFontMetrics &metrics)
{
    int widest = 0;
    for (const QString &word : text.split(u' '))
        widest = qMax(widest, size(word, metrics).width());
    return widest;
}

int TextBreaking::requiredWidth(const QWidget *widget, int width)
{
    return TurningPage::isTight(widget) ? qCeil(smallest * width) : width;
}

QFont TextBreaking::fitting(const QFont &font, int word, int width)
{
    if (word <= width)
        return font;
    QFont smaller = font;
    const qreal scale = std::max(smallest, static_cast<qreal>(width) / word);
    smaller.setPixelSize(static_cast<int>(QFontInfo(font).pixelSize() * scale));
    return smaller;
}

QString TextBreaking::shownPart(const QString &name)
{
    constexpr qsizetype mostShown = 1000; // more than fits on the page of a phone
    if (name.size() <= mostShown)
        return name;
    const bool splitsEmoji = name.at(mostShown - 1).isHighSurrogate();
    return name.first(splitsEmoji ? mostShown - 1 : mostShown) + QChar(0x2026);
}

QSize TextBreaking::size(const QString &text, const QFontMetrics &metrics)
{
    return metrics.size(Qt::TextShowMnemonic, text);
}
