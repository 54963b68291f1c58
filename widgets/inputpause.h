// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QTimer>

class QWidget;

/// Discards keys, clicks and taps in a window for a while, because input that was meant for another
/// page or program must not answer a page that has just opened. Actions of a screen reader are not
/// such events and still work.
class InputPause : public QObject
{
    Q_OBJECT

public:
    /// `pausedWindow` owns the object.
    explicit InputPause(QWidget *pausedWindow);

    /// Starts a pause, or starts it again. A pause lasts at least a second, until 300 ms have
    /// passed without input and nothing is held down. It also ends when `page` is hidden. A new
    /// pause starts whenever the window becomes active while `page` is visible, because the window
    /// may come to the front late.
    void begin(QWidget *page);

    bool eventFilter(QObject *object, QEvent *event) override;

private:
    void restart();
    void endIfQuiet();
    void end();

    QWidget *window;
    QPointer<QWidget> shownPage;
    QTimer timer;
    QElapsedTimer sinceInput;
    bool isPausing = false;
    bool isTouched = false;
    int heldKeys = 0;
};
