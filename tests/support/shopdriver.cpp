// SPDX-License-Identifier: MIT
#include "tests/support/shopdriver.h"
#include "tests/support/records.h"

#include <tuple>
#include <utility>

#include <QAbstractButton>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QScrollArea>
#include <QSettings>
#include <QStackedWidget>
#include <QStyleHints>
#include <QTabWidget>
#include <QtTest>

#include "base/pages.h"
#include "map/mapswidget.h"
#include "platform/informationbox.h"
#include "widgets/touchstyle.h"

ShopDriver::ShopDriver(const Caller &by)
    : ShopDriver(Records(), {}, by)
{}

ShopDriver::ShopDriver(const Records &records, const QVariantMap &settings, const Caller &by)
    : home(std::make_unique<TestHome>())
{
    // A missing file starts no alarm, unless a test needs one.
    if (!settings.isEmpty())
        QSettings("Vantor", "Trolleo").setValue("SoundFileName", home->path() + "/no sound.wav");
    for (auto setting = settings.cbegin(); setting != settings.cend(); ++setting)
        QSettings("Vantor", "Trolleo").setValue(setting.key(), setting.value());
    if (!records.isEmpty()) {
        const Window first; // creates the tables
        SecondConnection(home->databaseFile()).add(records, by);
    }
    start(by);
}

ShopDriver::ShopDriver(std::unique_ptr<TestHome> made, const Caller &by)
    : home(std::move(made))
{
    start(by);
}

void ShopDriver::restart(const Caller &by)
{
    window.reset();
    start(by);
}

void ShopDriver::start(const Caller &by)
{
    // As the program does.
    if (!qobject_cast<TouchStyle *>(QApplication::style()))
        TouchStyle::applyUnlessChosen(false);
    window = std::make_unique<Window>();
    stack = window->findChild<QStackedWidget *>("pageStack");
    db = std::make_unique<SecondConnection>(home->databaseFile());
    if (!finger)
        finger.reset(QTest::createTouchDevice());
    window->show();
    if (!QTest::qWaitForWindowExposed(window.get()))
        stopTest("the window does not show", by);
}

Page ShopDriver::page() const
{
    return Page(stack->currentIndex());
}

QWidget *ShopDriver::pageWidget() const
{
    return stack->currentWidget();
}

QPoint ShopDriver::inWindow(const QWidget *widget, const QPoint &position) const
{
    return widget->mapTo(window.get(), position);
}

bool ShopDriver::has(const char *name) const
{
    return pageWidget()->findChild<QWidget *>(name) != nullptr;
}

QAbstractButton *ShopDriver::visibleButton(const char *name, const Caller &by) const
{
    auto *button = find<QAbstractButton>(name, by);
    if (!button->isVisible())
        stopTest(QString(name) + " is hidden on " + pageWidget()->objectName(), by);
    return button;
}

void ShopDriver::waitForReminder() const
{
    constexpr int pause = 1100; // milliseconds for which the reminder ignores input
    if (page() == PageReminder)
        QTest::qWait(pause);
}

void ShopDriver::pressByScreenReader(const char *button, const Caller &by) const
{
    auto *widget = visibleButton(button, by);
    QAccessible::queryAccessibleInterface(widget)->actionInterface()->doAction(
        QAccessibleActionInterface::pressAction());
    // Qt shows the button pressed for a moment, and acts when it is released.
    const QPointer<QAbstractButton> pressed(widget);
    std::ignore = QTest::qWaitFor([&] { return !pressed || !pressed->isDown(); });
}

void ShopDriver::press(const char *button, const Caller &by) const
{
    QCoreApplication::processEvents(); // lays out a page that has just been shown
    auto *widget = visibleButton(button, by);
    if (auto *area = pageWidget()->findChild<QScrollArea *>(); area && area->isAncestorOf(widget))
        area->ensureWidgetVisible(widget);
    waitForReminder();
    QTest::mouseClick(window->windowHandle(), Qt::LeftButton, {},
                      inWindow(widget, widget->rect().center()));
}

void ShopDriver::touch(const QPoint &position) const
{
    QTest::touchEvent(window->windowHandle(), finger.get()).press(0, position);
    QTest::touchEvent(window->windowHandle(), finger.get()).release(0, position);
}

void ShopDriver::drag(const QPoint &from, const QPoint &to) const
{
    constexpr int steps = 10;
    QTest::touchEvent(window->windowHandle(), finger.get()).press(0, from);
    for (int step = 1; step <= steps; ++step) {
        QTest::touchEvent(window->windowHandle(), finger.get())
            .move(0, from + (to - from) * step / steps);
    }
    QTest::qWait(100); // longer than two ticks of the scroller, so that nothing glides
    QTest::touchEvent(window->windowHandle(), finger.get()).release(0, to);
    QTest::qWait(50); // until the scroller has seen that
}

bool ShopDriver::doubleTap(const char *button, int next, const Caller &by)
{
    for (const int shown : {next, stack->currentIndex()}) {
        stack->setCurrentIndex(shown);
        QCoreApplication::processEvents();
    }
    const auto *widget = find<QAbstractButton>(button, by);
    const QRect area(inWindow(widget, QPoint(0, 0)), widget->size());
    for (const auto *other : stack->widget(next)->findChildren<QAbstractButton *>()) {
        const QRect common = area & QRect(inWindow(other, QPoint(0, 0)), other->size());
        if (common.isEmpty() || !other->isEnabled())
            continue;
        // The touches have the times at which they are made here. If the first one takes long, for
        // example because it builds all pages, the second one would be too late for a double tap.
        QStyleHints *hints = QGuiApplication::styleHints();
        const int interval = hints->mouseDoubleClickInterval();
        hints->setMouseDoubleClickInterval(60000);
        touch(common.center());
        // No finger hits the very same point twice.
        touch(common.center() + QPoint(1, 1));
        QCoreApplication::processEvents();
        hints->setMouseDoubleClickInterval(interval);
        stack = window->findChild<QStackedWidget *>("pageStack");
        return true;
    }
    return false;
}

void ShopDriver::changeLanguage(const char *radio, const Caller &by)
{
    const QPointer<QStackedWidget> before = stack;
    for (const char *button : {"optionsButton", radio, "okButton"})
        press(button, by);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    if (before)
        stopTest("the pages stay", by);
    stack = window->findChild<QStackedWidget *>("pageStack");
}

void ShopDriver::startShopping(const Caller &by) const
{
    press("shoppingButton", by);
    press("listsButton", by);
    tap(0, by);
    press("selectButton", by);
    press("startButton", by);
    if (page() != PageDoShopping)
        stopTest("no goods, but " + pageWidget()->objectName(), by);
}

bool ShopDriver::isEnabled(const char *button, const Caller &by) const
{
    return find<QAbstractButton>(button, by)->isEnabled();
}

QString ShopDriver::buttonText(const char *button, const Caller &by) const
{
    return find<QAbstractButton>(button, by)->text();
}

QString ShopDriver::labelText(const char *label, const Caller &by) const
{
    return find<QLabel>(label, by)->text();
}

void ShopDriver::type(const QString &text, const char *field, const Caller &by) const
{
    auto *edit = find<QLineEdit>(field, by);
    edit->setFocus();
    edit->selectAll();
    QTest::keyClick(edit, Qt::Key_Delete);
    for (const QChar character : text)
        QTest::sendKeyEvent(QTest::Click, edit, Qt::Key_unknown, QString(character), {});
}

QListWidget *ShopDriver::list(const Caller &by) const
{
    auto *list = pageWidget()->findChild<QListWidget *>();
    if (!list)
        stopTest("no list on " + pageWidget()->objectName(), by);
    return list;
}

/// In coordinates of the list's viewport.
QRect ShopDriver::rowArea(int row, const Caller &by) const
{
    const QListWidgetItem *item = list(by)->item(row);
    if (!item)
        stopTest(QString("no row %1 on %2").arg(row).arg(pageWidget()->objectName()), by);
    return list()->visualItemRect(item);
}

void ShopDriver::tap(int row, const Caller &by) const
{
    QCoreApplication::processEvents();
    list(by)->scrollToItem(list()->item(row));
    QTest::mouseClick(window->windowHandle(), Qt::LeftButton, {},
                      inWindow(list()->viewport(), rowArea(row, by).center()));
}

void ShopDriver::doubleTap(int row, const Caller &by) const
{
    QCoreApplication::processEvents();
    QTest::mouseDClick(window->windowHandle(), Qt::LeftButton, {},
                       inWindow(list(by)->viewport(), rowArea(row, by).center()));
}

QStringList ShopDriver::rows(const Caller &by) const
{
    QStringList result;
    for (int row = 0; row < list(by)->count(); ++row) {
        const QListWidgetItem *item = list()->item(row);
        QString text = item->text();
        if (item->data(Qt::UserRole + 1).isValid())
            text += '|' + item->data(Qt::UserRole + 1).toString();
        if (item->data(Qt::CheckStateRole).toInt() == Qt::Checked)
            text += '*';
        result << text;
    }
    return result;
}

MapsWidget *ShopDriver::map(const Caller &by) const
{
    auto *map = pageWidget()->findChild<MapsWidget *>();
    if (!map)
        stopTest("no map on " + pageWidget()->objectName(), by);
    return map;
}

void ShopDriver::chooseInMapMenu(int entry, const Caller &by) const
{
    QCoreApplication::processEvents();
    QTest::mouseClick(window->windowHandle(), Qt::LeftButton, {},
                      inWindow(map(by), map()->rect().center()));
    if (!QTest::qWaitFor([this] { return map()->findChild<QMenu *>(); }))
        stopTest("the map has no menu", by);
    const QPointer<QMenu> menu = map()->findChild<QMenu *>();
    QTest::mouseClick(menu->windowHandle(), Qt::LeftButton, {},
                      menu->actionGeometry(menu->actions().at(entry)).center());
    if (!QTest::qWaitFor([&menu] { return menu.isNull(); }))
        stopTest("the menu stays", by);
}

QString ShopDriver::message() const
{
    if (page() == PageConfirmation)
        return labelText("confirmationTitle") + ": " + labelText("confirmationText");
    if (page() == PageMessage)
        return labelText("messageTitle") + ": " + labelText("messageText");
    return "no message on " + pageWidget()->objectName();
}

QString ShopDriver::banner() const
{
    const auto *box = window->findChild<InformationBox *>();
    return box && box->isVisible() ? box->text() : QString();
}

void forEveryView(QStackedWidget *pages, const std::function<void(const QWidget *page)> &check)
{
    for (int index = 0; index < pages->count(); ++index) {
        pages->setCurrentIndex(index);
        QWidget *page = pages->widget(index);
        auto *tabs = page->findChild<QTabWidget *>();
        QCoreApplication::processEvents();
        check(page);
        for (QStackedWidget *views : page->findChildren<QStackedWidget *>()) {
            for (int view = 0; view < views->count(); ++view) {
                views->setCurrentIndex(view);
                QCoreApplication::processEvents();
                check(page);
            }
            // Tabs are visible only in the second view, which contains them.
            views->setCurrentIndex(tabs ? 1 : 0);
        }
        for (int tab = 0; tabs && tab < tabs->count(); ++tab) {
            tabs->setCurrentIndex(tab);
            QCoreApplication::processEvents();
            check(page);
        }
    }
}
