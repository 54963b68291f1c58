// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QObject>

class QWidget;

/// Functions for the contrast between a text and its background.
namespace Contrast {

/// The minimum contrast ratio of a text, from the Web Content Accessibility Guidelines 2.1,
/// criterion 1.4.3.
inline constexpr double least = 4.5;

/// Returns the contrast ratio of two opaque colours, from 1 to 21, as defined by these guidelines.
double ratio(const QColor &one, const QColor &other);

/// Returns `text`, made lighter or darker as far as necessary to be readable on `ground`.
QColor readable(const QColor &text, const QColor &ground);

} // namespace Contrast

/// Makes selected texts and links in a window readable if the palette of the desktop does not. All
/// other colours stay those of the desktop.
class ReadableTexts : public QObject
{
    Q_OBJECT

public:
    /// `readableWindow` owns the object.
    explicit ReadableTexts(QWidget *readableWindow);

    bool eventFilter(QObject *object, QEvent *event) override;

private:
    void apply();

    QWidget *window;
};
