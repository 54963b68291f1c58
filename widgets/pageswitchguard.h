// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

class QStackedWidget;

/// Keeps the second press of a double click from the page that its first click brought up: two
/// quick taps on a row that opens a page must not press a button of that page.
class PageSwitchGuard : public QObject
{
    Q_OBJECT

public:
    /// Guards the pages of `guarded`, which owns the guard and has its window already.
    explicit PageSwitchGuard(QStackedWidget *guarded);

    bool eventFilter(QObject *object, QEvent *event) override;

private:
    QStackedWidget *stack;
    /// None at first: a double click whose press went to the pages before these is not for them.
    int pageAtPress = -1;
    int pageAtEarlierPress = -1;
};
