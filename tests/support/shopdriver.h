// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

#include <QListWidget>
#include <QString>
#include <QVariantMap>

#include "app/shopwindow.h"
#include "tests/support/records.h"
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
/// page that shows.
class ShopDriver
{
public:
    /// The window, with what no page offers yet.
    class Window : public ShopWindow
    {
    public:
        using ShopWindow::buildUserInterface;
        using ShopWindow::gpsAvailable;
        using ShopWindow::shoppingFromReminder;
    };

    ShopDriver();
    /// Starts the program on a database with these records, with these settings stored.
    explicit ShopDriver(const Records &records, const QVariantMap &settings = {});
    /// Starts the program in a home that is as it is.
    explicit ShopDriver(std::unique_ptr<TestHome> made);

    /// Ends the program and starts it again.
    void restart();

    QWidget *page() const;
    int pageIndex() const;
    template <typename Widget>
    Widget *find(const char *name) const
    {
        return page()->findChild<Widget *>(name);
    }

    /// Presses a button of the page that shows, with the mouse; one of the reminder when it
    /// listens.
    void press(const char *button) const;
    /// Presses a button as a screen reader does, which the reminder hears at once.
    void pressByScreenReader(const char *button) const;
    /// Waits as someone who reads what the reminder says, if that shows.
    void waitForReminder() const;
    /// Double taps a button where the page `next`, as large as this one, has a button too; false
    /// when there is no such place. The window's pages may be others afterwards.
    bool doubleTap(const char *button, int next);
    bool isEnabled(const char *button) const;
    QString buttonText(const char *button) const;
    QString labelText(const char *label) const;

    /// Replaces what stands in the field by keys.
    void type(const QString &text, const char *field = "nameField") const;

    QListWidget *list() const;
    /// Taps a row of the page's list.
    void tap(int row) const;
    void doubleTap(int row) const;
    /// Rows as "name" or "name|second column", checked ones with a trailing "*".
    QStringList rows() const;

    /// The page's map.
    MapsWidget *map() const;
    /// Taps the middle of the page's map and chooses from its menu; a separator counts as well.
    void chooseInMapMenu(int entry) const;

    /// The title of the message or question that shows, with its text.
    QString message() const;

    std::unique_ptr<TestHome> home;
    std::unique_ptr<Window> window;
    std::unique_ptr<SecondConnection> db;
    QStackedWidget *stack = nullptr;

private:
    void start();
    QPoint inWindow(const QWidget *widget, const QPoint &position) const;
};

/// Shows every page, those with views and tabs once for each of them, and lets `check` look.
void forEveryView(QStackedWidget *pages, const std::function<void(const QWidget *page)> &check);
