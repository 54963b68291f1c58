// SPDX-License-Identifier: MIT
#include "widgets/contrast.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <QEvent>
#include <QGuiApplication>
#include <QPalette>
#include <QWidget>

namespace {

/// Returns the relative luminance, see https://www.w3.org/TR/WCAG21/#dfn-relative-luminance.
double luminance(const QColor &color)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

/// Returns a mixture of two colours. `part`, from 0 to 1, is the share of `other`.
QColor mixed(const QColor &one, const QColor &other, double part)
{
    const auto mix = [part](float from, float to) {
        return from + static_cast<float>(part) * (to - from);
    };
    return QColor::fromRgbF(mix(one.redF(), other.redF()), mix(one.greenF(), other.greenF()),
                            mix(one.blueF(), other.blueF()));
}

} // namespace

double Contrast::ratio(const QColor &one, const QColor &other)
{
    constexpr double flare = 0.05;
    const double first = luminance(one) + flare;
    const double second = luminance(other) + flare;
    return std::max(first, second) / std::min(first, second);
}

QColor Contrast::readable(const QColor &text, const QColor &ground)
{
    const QColor extreme =
        ratio(Qt::white, ground) > ratio(Qt::black, ground) ? Qt::white : Qt::black;
    constexpr int steps = 20;
    for (int step = 0; step < steps; ++step) {
        const QColor color = mixed(text, extreme, double(step) / steps);
        if (ratio(color, ground) >= least)
            return color;
    }
    return extreme;
}

ReadableTexts::ReadableTexts(QWidget *readableWindow)
    : QObject(readableWindow)
    , window(readableWindow)
{
    window->installEventFilter(this);
    apply();
}

bool ReadableTexts::eventFilter(QObject *object, QEvent *event)
{
    // The colours of the desktop have changed, for example from light to dark.
    if (object == window && event->type() == QEvent::ApplicationPaletteChange)
        apply();
    return false;
}

void ReadableTexts::apply()
{
    const QPalette desktop = QGuiApplication::palette();
    QPalette readable;
    for (const auto group : {QPalette::Active, QPalette::Inactive}) {
        for (const auto &[text, ground] :
             {std::pair(QPalette::HighlightedText, QPalette::Highlight),
              std::pair(QPalette::Link, QPalette::Window)}) {
            readable.setColor(
                group, text,
                Contrast::readable(desktop.color(group, text), desktop.color(group, ground)));
        }
    }
    window->setPalette(readable);
}
