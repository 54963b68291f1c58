// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QPushButton>
#include <QStackedWidget>
#include <QtTest>

#include "base/pages.h"
#include "tests/support/pagenames.h"
#include "tests/support/records.h"
#include "tests/support/shopdriver.h"
#include "tests/support/testpositionplugin.h"

Q_IMPORT_PLUGIN(TestPositionPlugin)

/// The focus and the Enter key, on the pages as a person reaches them.
class TestKeys : public QObject
{
    Q_OBJECT

private slots:
    void hubsOpenOnTheirMainAction();
    void runningTrackingOpensOnItsEnd();
    void listsOpenOnTheList();
    void questionOpensOnNo();
    void messageOpensOnItsButton();
    void enterPressesAnyButton();
    void heldEnterStopsAtTheNextPage();

private:
    static QString focus()
    {
        return QApplication::focusWidget() ? QApplication::focusWidget()->objectName() : QString();
    }
    static void enter(const ShopDriver &shop)
    {
        QTest::keyClick(shop.window->windowHandle(), Qt::Key_Return);
    }
    static const Records &records()
    {
        static const Records all =
            store("Bakery").at(10.01, 20).openList(1, "Bread").good("Rye").good("Rolls");
        return all;
    }
};

void TestKeys::hubsOpenOnTheirMainAction()
{
    ShopDriver shop(records());
    QCOMPARE(focus(), "shoppingButton");
    enter(shop);
    QCOMPARE(shop.page(), PageShopping);
    QCOMPARE(focus(), "startButton");
    shop.press("backButton");
    QCOMPARE(focus(), "shoppingButton");
    shop.press("shopsButton");
    QCOMPARE(focus(), "storesButton");
    enter(shop);
    QCOMPARE(shop.page(), PageStoreList);
    // The pages that are built anew open alike.
    shop.press("backButton");
    shop.press("backButton");
    shop.changeLanguage("russianRadio");
    QCOMPARE(focus(), "shoppingButton");
}

void TestKeys::runningTrackingOpensOnItsEnd()
{
    ShopDriver shop(records(), {{"GpsEnabled", true}});
    shop.press("reminderButton");
    QCOMPARE(focus(), "startButton");
    enter(shop);
    QVERIFY(shop.isEnabled("stopButton"));
    shop.press("backButton");
    shop.press("reminderButton");
    QCOMPARE(focus(), "stopButton");
    shop.press("viewButton");
    if (shop.page() == PageWaiting) {
        QCOMPARE(focus(), "waitingCancelButton");
        TestPositionSource::instance()->deliver(10.02, 20);
    }
    QCOMPARE(shop.page(), PageTrackedList);
    QCOMPARE(QApplication::focusWidget(), shop.list());
}

void TestKeys::listsOpenOnTheList()
{
    ShopDriver shop(records());
    shop.press("shoppingButton");
    shop.press("listsButton");
    QCOMPARE(shop.page(), PageShoppingLists);
    QCOMPARE(QApplication::focusWidget(), shop.list());
    // Keys alone choose the list, and check a good.
    QTest::keyClick(shop.window->windowHandle(), Qt::Key_Down);
    enter(shop);
    QCOMPARE(shop.page(), PageShopping);
    shop.press("goodsButton");
    QCOMPARE(QApplication::focusWidget(), shop.list());
    shop.press("okButton");
    shop.press("startButton");
    QCOMPARE(shop.page(), PageDoShopping);
    QCOMPARE(QApplication::focusWidget(), shop.list());
    QTest::keyClick(shop.window->windowHandle(), Qt::Key_Down);
    enter(shop);
    QCOMPARE(shop.db->column("select count(*) from purchase where checkstate = 1"),
             QVariantList{1});
}

void TestKeys::questionOpensOnNo()
{
    ShopDriver shop(records());
    shop.press("shoppingButton");
    shop.press("listsButton");
    shop.tap(0);
    shop.press("selectButton");
    shop.press("editButton");
    shop.press("deleteButton");
    QCOMPARE(shop.page(), PageConfirmation);
    QCOMPARE(focus(), "confirmationNoButton");
    enter(shop);
    QCOMPARE(shop.page(), PageListEdit);
    QCOMPARE(shop.db->column("select name from shoplist"), QVariantList{"Bread"});
}

void TestKeys::messageOpensOnItsButton()
{
    ShopDriver shop;
    shop.press("helpButton");
    QCOMPARE(shop.page(), PageMessage);
    QCOMPARE(focus(), "messageOkButton");
    enter(shop);
    QCOMPARE(shop.page(), PageMain);
}

void TestKeys::enterPressesAnyButton()
{
    ShopDriver shop(records());
    for (int page = 0; page < shop.stack->count(); ++page) {
        for (QPushButton *button : shop.stack->widget(page)->findChildren<QPushButton *>())
            QVERIFY2(button->autoDefault(), qPrintable(button->objectName()));
    }
    shop.press("optionsButton");
    shop.find<QPushButton>("cancelButton")->setFocus();
    enter(shop);
    QCOMPARE(shop.page(), PageMain);
}

void TestKeys::heldEnterStopsAtTheNextPage()
{
    ShopDriver shop(records());
    QWindow *surface = shop.window->windowHandle();
    QTest::simulateEvent(surface, true, Qt::Key_Return, {}, "\r", false);
    QCOMPARE(shop.page(), PageShopping);
    QCOMPARE(focus(), "startButton");
    for (int repeats = 0; repeats < 3; ++repeats)
        QTest::simulateEvent(surface, true, Qt::Key_Return, {}, "\r", true);
    QCOMPARE(shop.page(), PageShopping);
    QTest::simulateEvent(surface, false, Qt::Key_Return, {}, "\r", false);
    enter(shop);
    QVERIFY(shop.page() != PageShopping);
}

STOPPABLE_TEST_MAIN(TestKeys)
#include "tst_keys.moc"
