// SPDX-License-Identifier: MIT
#pragma once

#include <QStackedWidget>

/// A stack of pages that fit themselves to any size. A plain QStackedWidget would ask all its pages
/// for their sizes when it is shown, although only one is seen, and a page that still has the
/// layout of the old orientation would prevent the window from being rotated.
class PageStack : public QStackedWidget
{
    Q_OBJECT

public:
    using QStackedWidget::QStackedWidget;

    QSize sizeHint() const override
    {
        return {1, 1};
    }
    QSize minimumSizeHint() const override
    {
        return {1, 1};
    }
};
