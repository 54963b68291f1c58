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

/// The real window in a separate home, used as a user does: by the visible widgets of the current
/// page. If a widget is missing, the test fails in the line of the call, and stops.
class ShopDriver
{
public:
    /// The window, with functions that no page offers: to simulate a missing position source, and,
    /// for a benchmark, to build its pages only.
    class Window : public ShopWindow
    {
    public:
        using ShopWindow::buildUserInterface;
        using ShopWindow::gpsAvailable;
    };

    explicit ShopDriver(const Caller &by = Caller::here());
    /// Starts the program with these records in the database and these settings.
    explicit ShopDriver(const Records &records, const QVariantMap &settings = {},
                        const Caller &by = Caller::here());
    /// Starts the program in the given home without changing it.
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

    /// Clicks a button of the current page with the mouse. On the reminder it waits until input is
    /// accepted.
    void press(const char *button, const Caller &by = Caller::here()) const;
    /// Presses a button like a screen reader, which the reminder accepts at once.
    void pressByScreenReader(const char *button, const Caller &by = Caller::here()) const;
    /// If the reminder is shown, waits until it accepts input.
    void waitForReminder() const;
    /// Taps a point of the window with a finger.
    void touch(const QPoint &position) const;
    /// Drags with a finger from a point of the window to another one, and lifts it there at rest.
    void drag(const QPoint &from, const QPoint &to) const;
    /// Double taps a button with a finger, at a place where the page `next`, of the same size, has
    /// a button too. Returns false if there is no such place. The pages of the window may have been
    /// rebuilt afterwards.
    bool doubleTap(const char *button, int next, const Caller &by = Caller::here());
    /// Goes from the main page to the options, selects a language and returns. The pages of the
    /// window are rebuilt.
    void changeLanguage(const char *radio, const Caller &by = Caller::here());
    /// Goes from the main page to the goods of the first list.
    void startShopping(const Caller &by = Caller::here()) const;
    bool isEnabled(const char *button, const Caller &by = Caller::here()) const;
    QString buttonText(const char *button, const Caller &by = Caller::here()) const;
    QString labelText(const char *label, const Caller &by = Caller::here()) const;

    /// Replaces the contents of the field by typing.
    void type(const QString &text, const char *field = "nameField",
              const Caller &by = Caller::here()) const;

    QListWidget *list(const Caller &by = Caller::here()) const;
    /// Taps a row of the page's list.
    void tap(int row, const Caller &by = Caller::here()) const;
    void doubleTap(int row, const Caller &by = Caller::here()) const;
    /// Returns rows as "name" or "name|second column", checked ones with a trailing "*".
    QStringList rows(const Caller &by = Caller::here()) const;

    /// Returns the page's map.
    MapsWidget *map(const Caller &by = Caller::here()) const;
    /// Taps the middle of the page's map and chooses the entry with that index; separators are
    /// counted.
    void chooseInMapMenu(int entry, const Caller &by = Caller::here()) const;

    /// Returns the title of the current message or question, with its text.
    QString message() const;
    /// Returns the text of the banner, or an empty text if none is shown.
    QString banner() const;

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

/// Shows every page, once for each of its views and tabs, and calls `check`.
void forEveryView(QStackedWidget *pages, const std::function<void(const QWidget *page)> &check);
