// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QObject>

class QWidget;

/// How well a text can be read on its ground.
namespace Contrast {

/// What a text needs, after the Web Content Accessibility Guidelines 2.1, criterion 1.4.3.
inline constexpr double least = 4.5;

/// The contrast ratio of two opaque colours, from 1 to 21, after the same guidelines.
double ratio(const QColor &one, const QColor &other);

/// `text`, as far lighter or darker as `ground` demands.
QColor readable(const QColor &text, const QColor &ground);

} // namespace Contrast

/// Keeps readable in a window what desktops' palettes are wont to make hard to read: selected texts
/// and links. All other colours stay the desktop's, and these do when they can be read.
class ReadableTexts : public QObject
{
    Q_OBJECT

public:
    /// `readableWindow` owns it.
    explicit ReadableTexts(QWidget *readableWindow);

    bool eventFilter(QObject *object, QEvent *event) override;

private:
    void apply();

    QWidget *window;
};
