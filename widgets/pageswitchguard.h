// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>

#include "widgets/doubletap.h"

class QMouseEvent;
class QStackedWidget;
class QWidget;

/// Ignores the second tap of a double tap if the first tap has opened another page: two quick taps
/// on a row that opens a page must not press a button of that page.
class PageSwitchGuard : public QObject
{
    Q_OBJECT

public:
    /// `guardedWindow` owns the object.
    explicit PageSwitchGuard(QWidget *guardedWindow);

    /// Guards the pages of `pages` instead of those of the previous stack.
    void guard(QStackedWidget *pages);

    bool eventFilter(QObject *object, QEvent *event) override;

private:
    bool isIgnored(const QMouseEvent &event);

    QWidget *window;
    QPointer<QStackedWidget> stack;
    TapPress press;
    /// The page at the last press. It is only compared, because it may have been deleted.
    const QWidget *pageAtPress = nullptr;
    /// Whether the mouse button is down in a tap that is ignored.
    bool ignoring = false;
};
