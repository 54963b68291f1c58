// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>

#include "widgets/doubletap.h"

class QMouseEvent;
class QStackedWidget;
class QWidget;

/// Keeps the second tap of a quick double tap from the page that its first tap brought up: two
/// quick taps on a row that opens a page must not press a button of that page.
class PageSwitchGuard : public QObject
{
    Q_OBJECT

public:
    /// `guardedWindow` owns it.
    explicit PageSwitchGuard(QWidget *guardedWindow);

    /// Guards the pages of `pages` from now on.
    void guard(QStackedWidget *pages);

    bool eventFilter(QObject *object, QEvent *event) override;

private:
    bool isIgnored(const QMouseEvent &event);

    QWidget *window;
    QPointer<QStackedWidget> stack;
    TapPress press;
    /// The page that had the last press; not to be used, for it may be gone.
    const QWidget *pageAtPress = nullptr;
    /// The button is down in a tap that is ignored.
    bool ignoring = false;
};
