// SPDX-License-Identifier: MIT
#include <chrono>

#include <QAbstractButton>
#include <QFile>
#include <QGuiApplication>
#include <QListWidget>
#include <QScrollBar>
#include <QtTest>

#include "base/pages.h"
#include "map/mapswidget.h"
#include "tests/support/records.h"
#include "tests/support/shopdriver.h"
#include "tests/support/testpositionplugin.h"

Q_IMPORT_PLUGIN(TestPositionPlugin)

using namespace std::chrono_literals;

/// The gestures of a finger on a touch screen of the compositor, so that every event takes the way
/// that it takes on a phone. The window fills the screen.
class TestTouch : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void twoTapsAct_data();
    void twoTapsAct();
    void unhurriedTapsAllCount();
    void quickTapsDoNotReachTheNextPage();
    void shakyTapIsATap();
    void longTapIsATap();
    void dragScrollsAndChoosesNothing_data();
    void dragScrollsAndChoosesNothing();
    void flickGlidesAndTouchStopsIt();
    void secondFingerDoesNothing();
    void buttonIsPressedByATap();
    void mapFollowsTheFinger();
    void tapOnTheMapOpensItsMenu();
    // The last one, because Weston then sends further touches to the same window.
    void cancelledTouchIsNoTap();

private:
    void send(const QByteArray &line);
    void down(const QPoint &position, int finger = 0);
    void move(const QPoint &position, int finger = 0);
    void up(int finger = 0);
    void tap(const QPoint &position);
    void drag(const QPoint &from, const QPoint &to, std::chrono::milliseconds rest);
    static QPoint rowCenter(const ShopDriver &shop, int row);
    static QPoint center(const ShopDriver &shop, const QWidget *widget);
    static void openList(ShopDriver &shop, Page page);

    QFile screen;
};

static Records records()
{
    Records all = category(1, "Food");
    for (int number = 1; number <= 60; ++number) {
        const QString name = QString("%1").arg(number, 2, 10, QChar('0'));
        all = all.store("Store " + name).inCategory(1).at(10 + number / 100.0, 20);
    }
    return all;
}

void TestTouch::initTestCase()
{
    if (!qEnvironmentVariableIsSet("TROLLEO_TOUCH"))
        QSKIP("needs the touch screen of tests/support/under-wayland --touch");
    screen.setFileName(qEnvironmentVariable("TROLLEO_TOUCH"));
    QVERIFY(screen.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
}

void TestTouch::send(const QByteArray &line)
{
    screen.write(line + '\n');
    QTest::qWait(8); // about the time between two reports of a touch screen
}

static QByteArray at(int finger, const QPoint &position)
{
    return QByteArray::number(finger) + ' ' + QByteArray::number(position.x()) + ' ' +
           QByteArray::number(position.y());
}

void TestTouch::down(const QPoint &position, int finger)
{
    send("d " + at(finger, position));
}

void TestTouch::move(const QPoint &position, int finger)
{
    send("m " + at(finger, position));
}

void TestTouch::up(int finger)
{
    send("u " + QByteArray::number(finger));
}

void TestTouch::tap(const QPoint &position)
{
    down(position);
    QTest::qWait(60);
    up();
    QTest::qWait(40);
}

/// Moves the finger in 20 steps, and lifts it after it has rested for a time.
void TestTouch::drag(const QPoint &from, const QPoint &to, std::chrono::milliseconds rest)
{
    constexpr int steps = 20;
    down(from);
    for (int step = 1; step <= steps; ++step)
        move(from + (to - from) * step / steps);
    QTest::qWait(int(rest.count()));
    up();
}

QPoint TestTouch::center(const ShopDriver &shop, const QWidget *widget)
{
    return widget->mapTo(shop.window.get(), widget->rect().center());
}

QPoint TestTouch::rowCenter(const ShopDriver &shop, int row)
{
    const QListWidget *list = shop.list();
    return list->viewport()->mapTo(shop.window.get(),
                                   list->visualItemRect(list->item(row)).center());
}

/// Opens a page with a list of 60 rows.
void TestTouch::openList(ShopDriver &shop, Page page)
{
    // Every store has a list, and the first list has a good for each store.
    QVERIFY(shop.db->run("insert into shoplist select id, name, id, 1 from magazin"));
    QVERIFY(shop.db->run("insert into purchase select id, name, 1, 1, 0 from magazin"));
    QVERIFY(shop.db->run("insert into category select id, name from magazin where id > 1"));
    if (page == PageStoreList) {
        shop.press("shopsButton");
        shop.press("storesButton");
    } else if (page == PageCategoryList) {
        shop.press("shopsButton");
        shop.press("newButton");
        shop.press("categoryButton");
    } else if (page == PageTrackedList) {
        shop.press("reminderButton");
        shop.press("viewButton");
        TestPositionSource::instance()->deliver(5, 20);
    } else {
        shop.press("shoppingButton");
        shop.press("listsButton");
        if (page != PageShoppingLists) {
            shop.list()->setCurrentRow(0);
            shop.press("selectButton");
            shop.press(page == PageItemsList ? "goodsButton" : "startButton");
        }
    }
    QCOMPARE(shop.page(), page);
    QTRY_COMPARE(shop.window->size(), QGuiApplication::primaryScreen()->size());
    QTRY_COMPARE(shop.list()->count(), 60);
    QTest::qWait(500); // longer than what is ignored after a change of the page
}

void TestTouch::twoTapsAct_data()
{
    QTest::addColumn<Page>("page");
    QTest::addColumn<Page>("next");
    QTest::newRow("lists") << PageShoppingLists << PageShopping;
    QTest::newRow("goods") << PageItemsList << PageItemEdit;
    QTest::newRow("shopping") << PageDoShopping << PageDoShopping;
    QTest::newRow("stores") << PageStoreList << PageStores;
    QTest::newRow("categories") << PageCategoryList << PageCategoryEdit;
}

void TestTouch::twoTapsAct()
{
    QFETCH(Page, page);
    QFETCH(Page, next);
    ShopDriver shop(records(), {{"GpsEnabled", true}});
    openList(shop, page);
    const QPoint place = rowCenter(shop, 2);
    tap(place);
    QTRY_COMPARE(shop.list()->currentRow(), 2);
    QCOMPARE(shop.page(), page);
    QTest::qWait(450);
    tap(place + QPoint(3, 2));
    QTRY_COMPARE(shop.page(), next);
    if (page == PageDoShopping) {
        QTRY_COMPARE(shop.db->column("select id from purchase where checkstate = 1"),
                     QVariantList{3});
    }
}

void TestTouch::unhurriedTapsAllCount()
{
    for (const auto &[pace, count] : {std::pair(450ms, 6), std::pair(1500ms, 3)}) {
        ShopDriver shop(records());
        openList(shop, PageDoShopping);
        const QPoint place = rowCenter(shop, 0);
        for (int taps = 0; taps < count; ++taps) {
            tap(place);
            QTest::qWait(int(pace.count()) - 100);
        }
        // The first one only chooses the row.
        QTRY_COMPARE(shop.db->column("select count(*) from purchase where checkstate = 1"),
                     QVariantList{count - 1});
    }
}

void TestTouch::quickTapsDoNotReachTheNextPage()
{
    ShopDriver shop(records());
    openList(shop, PageShoppingLists);
    shop.press("backButton");
    QTest::qWait(500);
    // On the next page there is a row at this place.
    const QPoint place = center(shop, shop.find<QAbstractButton>("listsButton"));
    tap(place);
    down(place + QPoint(2, 1));
    up();
    QTest::qWait(100);
    QCOMPARE(shop.page(), PageShoppingLists);
    QCOMPARE(shop.list()->currentRow(), -1);
}

void TestTouch::shakyTapIsATap()
{
    ShopDriver shop(records());
    openList(shop, PageDoShopping);
    const QPoint place = rowCenter(shop, 3);
    down(place);
    for (const QPoint &shake : {QPoint(1, 0), QPoint(2, 1), QPoint(1, 2), QPoint(0, 1),
                                QPoint(-1, 1), QPoint(1, 1), QPoint(2, 0)})
        move(place + shake);
    up();
    QTRY_COMPARE(shop.list()->currentRow(), 3);
}

void TestTouch::longTapIsATap()
{
    ShopDriver shop(records());
    openList(shop, PageDoShopping);
    down(rowCenter(shop, 3));
    QTest::qWait(1200);
    QCOMPARE(shop.list()->currentRow(), -1);
    up();
    QTRY_COMPARE(shop.list()->currentRow(), 3);
}

void TestTouch::dragScrollsAndChoosesNothing_data()
{
    QTest::addColumn<Page>("page");
    for (const Page page : {PageShoppingLists, PageItemsList, PageDoShopping, PageStoreList,
                            PageCategoryList, PageTrackedList})
        QTest::addRow("page %d", int(page)) << page;
}

void TestTouch::dragScrollsAndChoosesNothing()
{
    QFETCH(Page, page);
    ShopDriver shop(records(), {{"GpsEnabled", true}});
    openList(shop, page);
    QScrollBar *bar = shop.list()->verticalScrollBar();
    QVERIFY(bar->maximum() > 300);
    const int row = shop.list()->currentRow();
    const QPoint from = rowCenter(shop, 6);
    drag(from, from - QPoint(0, 200), 200ms);
    QTRY_COMPARE(bar->value(), 200);
    QTest::qWait(200);
    QCOMPARE(bar->value(), 200);
    QCOMPARE(shop.list()->currentRow(), row);
    QCOMPARE(shop.page(), page);
}

void TestTouch::flickGlidesAndTouchStopsIt()
{
    ShopDriver shop(records());
    openList(shop, PageStoreList);
    QScrollBar *bar = shop.list()->verticalScrollBar();
    const QPoint from = rowCenter(shop, 8);
    // On a busy machine the finger may seem to rest before it is lifted.
    bool glides = false;
    for (int flick = 0; flick < 10 && !glides; ++flick) {
        bar->setValue(0);
        drag(from, from - QPoint(0, 240), 0ms);
        QTest::qWait(60);
        glides = bar->value() > 245;
    }
    QVERIFY(glides);
    down(from);
    QTest::qWait(60);
    const int stopped = bar->value();
    QVERIFY(stopped < bar->maximum());
    up();
    QTest::qWait(200);
    QCOMPARE(bar->value(), stopped);
    QCOMPARE(shop.list()->currentRow(), -1);
}

void TestTouch::secondFingerDoesNothing()
{
    ShopDriver shop(records());
    openList(shop, PageDoShopping);
    down(rowCenter(shop, 1), 0);
    down(rowCenter(shop, 4), 1);
    up(1);
    up(0);
    QTRY_COMPARE(shop.list()->currentRow(), 1);
    QCOMPARE(shop.db->column("select count(*) from purchase where checkstate = 1"),
             QVariantList{0});
}

void TestTouch::buttonIsPressedByATap()
{
    ShopDriver shop;
    QTRY_COMPARE(shop.window->size(), QGuiApplication::primaryScreen()->size());
    QTest::qWait(100);
    tap(center(shop, shop.find<QAbstractButton>("shopsButton")));
    QTRY_COMPARE(shop.page(), PageStores);
}

static void openMap(ShopDriver &shop)
{
    shop.press("shopsButton");
    shop.press("newButton");
    shop.press("coordinatesButton");
    shop.press("mapViewButton");
    QTRY_COMPARE(shop.window->size(), QGuiApplication::primaryScreen()->size());
    QTest::qWait(500);
}

void TestTouch::mapFollowsTheFinger()
{
    ShopDriver shop({}, {{"LastLatitude", 48.5F}, {"LastLongitude", 9.5F}});
    openMap(shop);
    const QPoint middle = center(shop, shop.map());
    const float longitude = shop.map()->centerLongitude();
    drag(middle, middle - QPoint(150, 0), 50ms);
    QTRY_VERIFY(shop.map()->centerLongitude() > longitude);
    const float moved = shop.map()->centerLongitude();
    QTest::qWait(300);
    QCOMPARE(shop.map()->centerLongitude(), moved); // nothing glides
    QVERIFY(!QApplication::activePopupWidget());
}

void TestTouch::tapOnTheMapOpensItsMenu()
{
    ShopDriver shop({}, {{"LastLatitude", 48.5F}, {"LastLongitude", 9.5F}});
    openMap(shop);
    tap(center(shop, shop.map()));
    QTRY_VERIFY(QApplication::activePopupWidget());
    QApplication::activePopupWidget()->close();
}

void TestTouch::cancelledTouchIsNoTap()
{
    ShopDriver shop(records());
    openList(shop, PageDoShopping);
    down(rowCenter(shop, 1));
    send("c");
    QTest::qWait(100);
    QCOMPARE(shop.list()->currentRow(), -1);
    // The next tap counts.
    tap(rowCenter(shop, 2));
    QTRY_COMPARE(shop.list()->currentRow(), 2);
    shop.press("okButton");
    QTest::qWait(500);
    const QPoint place = center(shop, shop.find<QAbstractButton>("listsButton"));
    down(place);
    send("c");
    QTest::qWait(100);
    QCOMPARE(shop.page(), PageShopping);
    tap(place);
    QTRY_COMPARE(shop.page(), PageShoppingLists);
}

STOPPABLE_TEST_MAIN(TestTouch)
#include "tst_touch.moc"
