// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QTimer>

class QWidget;

/// Lets keys, clicks and taps in a window go for a while: what was on its way to another
/// page or program when a page came up must not answer what that asks. A screen reader's actions
/// are no such events and go on.
class InputPause : public QObject
{
    Q_OBJECT

public:
    /// `window` owns it.
    explicit InputPause(QWidget *window);

    /// Begins, or begins anew. It lasts a second and, beyond that, until 300 ms have passed
    /// without a key or tap, and nothing is held down.
    void begin();

    bool eventFilter(QObject *object, QEvent *event) override;

private:
    void endIfQuiet();

    QWidget *window;
    QTimer timer;
    bool isTouched = false;
};
