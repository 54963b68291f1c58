// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

#include <QListWidget>
#include <QPointingDevice>
#include <QString>
#include <QVariantMap>

#include "app/shopwindow.h"
#include "tests/support/pagenames.h"
#include "tests/support/records.h"
#include "tests/support/stoppable.h"
#include "tests/support/testhome.h"

class MapsWidget;
class QAbstractButton;
class QStackedWidget;

/// All pages with a help button.
inline constexpr Page pagesWithHelp[] = {
    PageMain,       PageShopping,  PageTracking,      PageStores,
    PageItemsList,  PageListEdit,  PageShoppingLists, PageItemEdit,
    PageStoreList,  PageStoreEdit, PageCategoryList,  PageCategoryEdit,
    PageDoShopping, PageOptions,   PageTrackedList,   PageCoordinates};

/// The real window in a home of its own, used as a person uses it: by what is to be seen on the
/// page that shows. A test that wants what is not there fails where it does, and stops.
class ShopDriver
{
public:
    /// The window, with what no page offers: to be without any position source, and, for a
    /// benchmark, to build its pages and do nothing else.
    class Window : public ShopWindow
    {
    public:
        using ShopWindow::buildUserInterface;
        using ShopWindow::gpsAvailable;
    };

    explicit ShopDriver(const Caller &by = Caller::here());
    /// Starts the program on a database with these records, with these settings stored.
    explicit ShopDriver(const Records &records, const QVariantMap &settings = {},
                        const Caller &by = Caller::here());
    /// Starts the program in a home that is as it is.
    explicit ShopDriver(std::unique_ptr<TestHome> made, const Caller &by = Caller::here());

    /// Ends the program and starts it again.
    void restart(const Caller &by = Caller::here());

    Page page() const;
    QWidget *pageWidget() const;
    template <typename Widget>
    Widget *find(const char *name, const Caller &by = Caller::here()) const
    {
        auto *widget = pageWidget()->findChild<Widget *>(name);
        if (!widget)
            stopTest("no " + QString(name) + " on " + pageWidget()->objectName(), by);
        return widget;
    }
    bool has(const char *name) const;

    /// Presses a button of the page that shows, with the mouse; one of the reminder when it
    /// listens.
    void press(const char *button, const Caller &by = Caller::here()) const;
    /// Presses a button as a screen reader does, which the reminder hears at once.
    void pressByScreenReader(const char *button, const Caller &by = Caller::here()) const;
    /// Waits as someone who reads what the reminder says, if that shows.
    void waitForReminder() const;
    /// Taps a point of the window with a finger.
    void touch(const QPoint &position) const;
    /// Double taps with a finger a button where the page `next`, as large as this one, has a button
    /// too; false when there is no such place. The window's pages may be others afterwards.
    bool doubleTap(const char *button, int next, const Caller &by = Caller::here());
    /// Goes from the main page to the options, and back with another language. The window's pages
    /// are others afterwards.
    void changeLanguage(const char *radio, const Caller &by = Caller::here());
    bool isEnabled(const char *button, const Caller &by = Caller::here()) const;
    QString buttonText(const char *button, const Caller &by = Caller::here()) const;
    QString labelText(const char *label, const Caller &by = Caller::here()) const;

    /// Replaces what stands in the field by keys.
    void type(const QString &text, const char *field = "nameField",
              const Caller &by = Caller::here()) const;

    QListWidget *list(const Caller &by = Caller::here()) const;
    /// Taps a row of the page's list.
    void tap(int row, const Caller &by = Caller::here()) const;
    void doubleTap(int row, const Caller &by = Caller::here()) const;
    /// Rows as "name" or "name|second column", checked ones with a trailing "*".
    QStringList rows(const Caller &by = Caller::here()) const;

    /// The page's map.
    MapsWidget *map(const Caller &by = Caller::here()) const;
    /// Taps the middle of the page's map and chooses from its menu; a separator counts as well.
    void chooseInMapMenu(int entry, const Caller &by = Caller::here()) const;

    /// The title of the message or question that shows, with its text.
    QString message() const;

    std::unique_ptr<TestHome> home;
    std::unique_ptr<Window> window;
    std::unique_ptr<SecondConnection> db;
    QStackedWidget *stack = nullptr;

private:
    void start(const Caller &by);
    QAbstractButton *visibleButton(const char *name, const Caller &by) const;
    QRect rowArea(int row, const Caller &by) const;
    QPoint inWindow(const QWidget *widget, const QPoint &position) const;

    std::unique_ptr<QPointingDevice> finger;
};

/// Shows every page, those with views and tabs once for each of them, and lets `check` look.
void forEveryView(QStackedWidget *pages, const std::function<void(const QWidget *page)> &check);
