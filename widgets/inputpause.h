// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QTimer>

class QWidget;

/// Lets keys, clicks and taps in a window go for a while: what was on its way to another page or
/// program when a page came up must not answer what that asks. A screen reader's actions are no
/// such events and go on.
class InputPause : public QObject
{
    Q_OBJECT

public:
    /// `window` owns it.
    explicit InputPause(QWidget *pausedWindow);

    /// Begins, or begins anew, and ends when `page` does not show any more; it begins again
    /// whenever the window becomes active while `page` shows, since it may come to the front late.
    /// A pause lasts a second and, beyond that, until 300 ms have passed without a key or tap, and
    /// nothing is held down.
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
