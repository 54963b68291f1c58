// SPDX-License-Identifier: MIT
#include <QClipboard>
#include <QGuiApplication>
#include <QLineEdit>
#include <QtTest>

#include "base/pages.h"
#include "tests/support/records.h"
#include "tests/support/shopdriver.h"
#include "widgets/TrKineticScroller.h"

/// Tests the shopping page, the selection of a list, and editing a list.
class TestLists : public QObject
{
    Q_OBJECT

private slots:
    void nothingIsActiveAtStart();
    void activeListIsShown();
    void storeThatIsGoneOrMissingIsUnknown();
    void states_data();
    void states();
    void listIsFilledInOrderWithStores();
    void everyOfManyListsShowsItsStore();
    void selectWithoutARowWarns();
    void tapTwiceOpens();
    void quickDoubleTapOpensOnce();
    void dragIsNoSecondTap_data();
    void dragIsNoSecondTap();
    void enterOpens();
    void creating();
    void newListHasNoGoodsOfARefusedOne();
    void listThatIsRefusedLeavesOthersAlone();
    void creatingWithAStore();
    void newListIsLastUntilFilledAgain();
    void pickerLeavesTheStoreWhenLeft();
    void updating();
    void unknownStoreReachesNoRow();
    void resetUnchecksAllGoods();
    void resetIsForCheckedListsOnly_data();
    void resetIsForCheckedListsOnly();
    void deletingRemovesTheGoodsFirst();
    void deletingCanBeDeclined();
    void emptyNameIsRefused();
    void namesAreUpTo25Characters();
    void namesAndStatements_data();
    void namesAndStatements();
    void newNameCanReachOtherRows();
    void newNameThatIsTwoStatementsDoesNothing();
    void strangeRecords();
    void tenThousandLists();

private:
    static void openLists(ShopDriver &shop)
    {
        shop.press("shoppingButton");
        shop.press("listsButton");
        QCOMPARE(shop.page(), PageShoppingLists);
    }
    static void activate(ShopDriver &shop, int row)
    {
        openLists(shop);
        shop.tap(row);
        shop.press("selectButton");
        QCOMPARE(shop.page(), PageShopping);
    }
    static QStringList values(ShopDriver &shop)
    {
        return {shop.labelText("listName"), shop.labelText("storeName"),
                shop.labelText("listState")};
    }
};

static const Records twoLists{
    store(4, "Bakery").list("Weekend", ListPartlyChecked).good("Milk", 2).checkedGood("Bread"),
    list("Party", ListEmpty).good("Balloons", 50),
};

void TestLists::nothingIsActiveAtStart()
{
    ShopDriver shop;
    shop.press("shoppingButton");
    QCOMPARE(shop.page(), PageShopping);
    QCOMPARE(shop.labelText("listName"), "");
    QVERIFY(!shop.isEnabled("editButton"));
    QVERIFY(!shop.isEnabled("goodsButton"));
    for (const char *button : {"startButton", "listsButton", "backButton", "helpButton"})
        QVERIFY2(shop.isEnabled(button), button);
}

void TestLists::activeListIsShown()
{
    ShopDriver shop(twoLists);
    activate(shop, 1);
    QCOMPARE(values(shop), (QStringList{"Weekend", "Bakery", "Active (partial checked)"}));
    QVERIFY(shop.isEnabled("editButton"));
    QVERIFY(shop.isEnabled("goodsButton"));
}

void TestLists::storeThatIsGoneOrMissingIsUnknown()
{
    ShopDriver shop(twoLists);
    QVERIFY(shop.db->run("delete from magazin"));
    activate(shop, 1);
    QCOMPARE(shop.labelText("storeName"), "(unknown)");
    shop.press("listsButton");
    QCOMPARE(shop.rows(), (QStringList{"Party", "Weekend"}));
    shop.tap(0);
    shop.press("selectButton");
    QCOMPARE(values(shop), (QStringList{"Party", "(unknown)", "Empty"}));
}

void TestLists::states_data()
{
    QTest::addColumn<QString>("state");
    QTest::addColumn<QString>("text");
    QTest::newRow("0") << "0"
                       << "Empty";
    QTest::newRow("1") << "1"
                       << "Active (unchecked)";
    QTest::newRow("2") << "2"
                       << "Active (partial checked)";
    QTest::newRow("3") << "3"
                       << "Finished (checked)";
    QTest::newRow("7") << "7"
                       << "unknown";
    QTest::newRow("-1") << "-1"
                        << "unknown";
}

void TestLists::states()
{
    QFETCH(QString, state);
    QFETCH(QString, text);
    ShopDriver shop(sql(QString("insert into shoplist values (1, 'a', 0, %1)").arg(state)));
    activate(shop, 0);
    QCOMPARE(shop.labelText("listState"), text);
}

void TestLists::listIsFilledInOrderWithStores()
{
    ShopDriver shop(
        {twoLists, list("advent", ListEmpty).ofStore(4), list("Zoo", ListEmpty).ofStore(99)});
    openLists(shop);
    QCOMPARE(shop.rows(), (QStringList{"Party", "Weekend|Bakery", "Zoo", "advent|Bakery"}));
}

/// Names of stores are read in different ways for few and for many stores.
void TestLists::everyOfManyListsShowsItsStore()
{
    Records records;
    QStringList rows;
    for (int id = 101; id <= 160; ++id) {
        // Every fifth store is gone. Two lists of a store follow each other.
        if (id % 5 != 0)
            records.store(id, QString("store %1").arg(id));
        for (const QString part : {"a", "b"}) {
            const QString name = QString("list %1%2").arg(id).arg(part);
            records.openList(name).ofStore(id);
            rows << (id % 5 != 0 ? QString("%1|store %2").arg(name).arg(id) : name);
        }
    }
    records.openList("list none").ofStore(0);
    ShopDriver shop(records);
    openLists(shop);
    QCOMPARE(shop.rows(), rows << "list none");
}

void TestLists::selectWithoutARowWarns()
{
    ShopDriver shop(twoLists);
    openLists(shop);
    shop.press("selectButton");
    QCOMPARE(shop.message(), "Not selected: Please select one of the items in a list");
    shop.press("messageOkButton");
    QCOMPARE(shop.page(), PageShoppingLists);
}

void TestLists::tapTwiceOpens()
{
    ShopDriver shop(twoLists);
    openLists(shop);
    shop.tap(0);
    shop.tap(1);
    QCOMPARE(shop.page(), PageShoppingLists);
    shop.tap(1);
    QCOMPARE(shop.page(), PageShopping);
    QCOMPARE(shop.labelText("listName"), "Weekend");
    // Filling the list forgets the tap.
    shop.press("listsButton");
    shop.tap(1);
    QCOMPARE(shop.page(), PageShoppingLists);
}

void TestLists::quickDoubleTapOpensOnce()
{
    ShopDriver shop(twoLists);
    openLists(shop);
    shop.doubleTap(0);
    QCOMPARE(shop.page(), PageShopping);
    QCOMPARE(shop.labelText("listName"), "Party");
    shop.press("listsButton");
    shop.tap(0);
    shop.doubleTap(0);
    QCOMPARE(shop.page(), PageShopping);
}

void TestLists::dragIsNoSecondTap_data()
{
    QTest::addColumn<QStringList>("way"); // empty: the first row is tapped
    QTest::addColumn<Page>("page");
    QTest::newRow("lists") << QStringList{"shoppingButton", "listsButton"} << PageShoppingLists;
    QTest::newRow("goods") << QStringList{"shoppingButton", "listsButton", "", "selectButton",
                                          "goodsButton"}
                           << PageItemsList;
    QTest::newRow("shopping") << QStringList{"shoppingButton", "listsButton", "", "selectButton",
                                             "startButton"}
                              << PageDoShopping;
    QTest::newRow("stores") << QStringList{"shopsButton", "storesButton"} << PageStoreList;
    QTest::newRow("categories") << QStringList{"shopsButton", "newButton", "categoryButton"}
                                << PageCategoryList;
}

void TestLists::dragIsNoSecondTap()
{
    QFETCH(QStringList, way);
    QFETCH(Page, page);
    ShopDriver shop({twoLists, category("Food")});
    for (const QString &step : way) {
        if (step.isEmpty())
            shop.tap(0);
        else
            shop.press(qPrintable(step));
    }
    QCOMPARE(shop.page(), page);
    shop.tap(0);
    const auto state = [&shop] {
        const bool hasList = shop.pageWidget()->findChild<QListWidget *>();
        return shop.pageWidget()->objectName() + (hasList ? shop.rows().join(' ') : QString());
    };
    const QString before = state();

    QWindow *window = shop.window->windowHandle();
    const QListWidget *list = shop.list();
    const QPoint start =
        list->viewport()->mapTo(shop.window.get(), list->visualItemRect(list->item(0)).center());
    QTest::mousePress(window, Qt::LeftButton, {}, start);
    const int dragged = QApplication::startDragDistance() + 1; // within the row
    for (int dy = 1; dy <= dragged; ++dy)
        QTest::mouseMove(window, start - QPoint(0, dy));
    QTest::mouseRelease(window, Qt::LeftButton, {}, start - QPoint(0, dragged));
    QCOMPARE(state(), before);
    const auto *scroller = list->findChild<TrKineticScroller *>();
    QTRY_VERIFY(!scroller->isMoving());
    // The tap before the drag still counts.
    shop.tap(0);
    QVERIFY(state() != before);
}

void TestLists::enterOpens()
{
    ShopDriver shop(twoLists);
    openLists(shop);
    shop.tap(0);
    QTest::keyClick(shop.list(), Qt::Key_Return);
    QCOMPARE(shop.page(), PageShopping);
    QCOMPARE(shop.labelText("listName"), "Party");
}

void TestLists::creating()
{
    ShopDriver shop(twoLists);
    openLists(shop);
    shop.press("createButton");
    QCOMPARE(shop.page(), PageListEdit);
    QCOMPARE(shop.labelText("listState"), "Empty");
    QCOMPARE(shop.buttonText("storeButton"), "");
    QVERIFY(!shop.isEnabled("deleteButton"));
    QVERIFY(!shop.isEnabled("resetButton"));
    shop.type("Camping");
    shop.press("saveButton");
    QCOMPARE(shop.message(), "List Created: Shopping List created. But it is empty for now. "
                             "Fill it with shopping Items.");
    QCOMPARE(shop.db->rows("select * from shoplist where id = 3"),
             (QList<QVariantList>{{3, "Camping", 0, 0}}));
    shop.press("messageOkButton");
    QCOMPARE(shop.page(), PageItemsList);
    QCOMPARE(shop.labelText("title"), "Camping");
    QCOMPARE(shop.list()->count(), 0);
    // It is already the active list, so its goods are stored.
    shop.press("addButton");
    shop.type("Tent");
    shop.press("saveButton");
    shop.press("okButton");
    QCOMPARE(shop.db->column("select shoplistid from purchase where name = 'Tent'"),
             QVariantList{3});
    QCOMPARE(shop.page(), PageShoppingLists);
    QCOMPARE(shop.rows(), (QStringList{"Party", "Weekend|Bakery", "Camping"}));
    QCOMPARE(shop.list()->currentRow(), 2);
    shop.press("selectButton");
    QCOMPARE(values(shop), (QStringList{"Camping", "(unknown)", "Active (unchecked)"}));
}

/// A row that is refused leaves its goods. They must not become those of the next list.
void TestLists::newListHasNoGoodsOfARefusedOne()
{
    ShopDriver shop(twoLists);
    openLists(shop);
    shop.press("createButton");
    shop.find<QLineEdit>("nameField")->insert("Mum's");
    shop.press("saveButton");
    shop.press("messageOkButton");
    shop.press("addButton");
    shop.type("Tent");
    shop.press("saveButton");
    shop.press("okButton");
    QCOMPARE(shop.db->column("select name from purchase where shoplistid = 3"),
             QVariantList{"Tent"});
    QCOMPARE(shop.db->column("select id from shoplist where id = 3"), QVariantList());
    shop.press("createButton");
    shop.type("Camping");
    shop.press("saveButton");
    QCOMPARE(shop.db->column("select name from shoplist where id = 3"), QVariantList{"Camping"});
    QCOMPARE(shop.db->column("select name from purchase where shoplistid = 3"), QVariantList());
    QCOMPARE(shop.db->column("select count(*) from purchase"), QVariantList{3});
}

/// After the largest id no new one is found, and id 1 is tried.
void TestLists::listThatIsRefusedLeavesOthersAlone()
{
    ShopDriver shop({openList(1, "Weekend").good("Milk"), openList(2147483647, "Party")});
    openLists(shop);
    shop.press("createButton");
    shop.type("Camping");
    shop.press("saveButton");
    QCOMPARE(shop.db->column("select name from shoplist order by id"),
             (QVariantList{"Weekend", "Party"}));
    QCOMPARE(shop.db->column("select name from purchase"), QVariantList{"Milk"});
    // The goods of the list whose id was tried are not shown, so they must not be deleted.
    shop.press("messageOkButton");
    QCOMPARE(shop.page(), PageItemsList);
    QVERIFY(shop.rows().isEmpty());
    shop.press("addButton");
    shop.type("Tent");
    shop.press("saveButton");
    shop.press("okButton");
    QVERIFY(shop.db->column("select name from purchase").contains("Milk"));
}

void TestLists::creatingWithAStore()
{
    ShopDriver shop(twoLists);
    openLists(shop);
    shop.press("createButton");
    shop.type("Camping");
    shop.press("storeButton");
    QCOMPARE(shop.page(), PageStoreList);
    QCOMPARE(shop.list()->currentRow(), -1);
    shop.tap(0);
    shop.press("selectButton");
    QCOMPARE(shop.page(), PageListEdit);
    QCOMPARE(shop.buttonText("storeButton"), "Bakery");
    shop.press("saveButton");
    shop.press("messageOkButton");
    shop.press("backButton");
    QCOMPARE(shop.page(), PageShoppingLists); // back from the goods of a new list
    QCOMPARE(shop.rows().last(), "Camping|Bakery");
    QCOMPARE(shop.db->rows("select * from shoplist where id = 3"),
             (QList<QVariantList>{{3, "Camping", 4, 0}}));
}

void TestLists::newListIsLastUntilFilledAgain()
{
    ShopDriver shop(twoLists);
    openLists(shop);
    shop.press("createButton");
    shop.type("Alps");
    shop.press("saveButton");
    shop.press("messageOkButton");
    shop.press("backButton");
    QCOMPARE(shop.rows(), (QStringList{"Party", "Weekend|Bakery", "Alps"}));
    shop.press("backButton");
    shop.press("listsButton");
    QCOMPARE(shop.rows(), (QStringList{"Alps", "Party", "Weekend|Bakery"}));
}

void TestLists::pickerLeavesTheStoreWhenLeft()
{
    ShopDriver shop(twoLists);
    activate(shop, 1);
    shop.press("editButton");
    shop.press("storeButton");
    QCOMPARE(shop.list()->currentRow(), 0);
    shop.press("addButton");
    shop.type("Dairy");
    shop.press("saveButton");
    QCOMPARE(shop.page(), PageStoreList);
    shop.press("backButton");
    QCOMPARE(shop.page(), PageListEdit);
    QCOMPARE(shop.buttonText("storeButton"), "Bakery");
    shop.press("saveButton");
    QCOMPARE(shop.db->rows("select magazinid from shoplist where id = 1"),
             (QList<QVariantList>{{4}}));
}

void TestLists::updating()
{
    ShopDriver shop(twoLists);
    activate(shop, 0);
    shop.press("editButton");
    QCOMPARE(shop.find<QLineEdit>("nameField")->text(), "Party");
    QVERIFY(shop.isEnabled("deleteButton"));
    shop.type("Feast");
    shop.press("storeButton");
    shop.tap(0);
    shop.press("selectButton");
    // The state in the file is not changed, whatever it is.
    QVERIFY(shop.db->run("update shoplist set state = 3 where id = 2"));
    shop.press("saveButton");
    QCOMPARE(shop.page(), PageShopping);
    QCOMPARE(values(shop), (QStringList{"Feast", "Bakery", "Finished (checked)"}));
    QCOMPARE(shop.db->rows("select * from shoplist where id = 2"),
             (QList<QVariantList>{{2, "Feast", 4, 3}}));
}

void TestLists::unknownStoreReachesNoRow()
{
    ShopDriver shop(openList("a").ofStore(77));
    activate(shop, 0);
    shop.press("editButton");
    shop.press("saveButton");
    shop.press("listsButton");
    QCOMPARE(shop.rows(), QStringList("a"));
    QCOMPARE(shop.db->rows("select * from shoplist"), (QList<QVariantList>{{1, "a", 77, 1}}));
}

void TestLists::resetUnchecksAllGoods()
{
    ShopDriver shop({twoLists, sql("update purchase set checkstate = 1"),
                     sql("update shoplist set state = 3 where id = 1")});
    activate(shop, 1);
    shop.press("editButton");
    QCOMPARE(shop.labelText("listState"), "Finished (checked)");
    shop.press("resetButton");
    QCOMPARE(shop.page(), PageListEdit);
    QCOMPARE(shop.labelText("listState"), "Active (unchecked)");
    QVERIFY(!shop.isEnabled("resetButton"));
    QCOMPARE(shop.db->column("select checkstate from purchase order by id"),
             (QVariantList{0, 0, 1}));
    QCOMPARE(shop.db->column("select state from shoplist order by id"), (QVariantList{1, 0}));
}

void TestLists::resetIsForCheckedListsOnly_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<bool>("enabled");
    for (int state = 0; state <= 4; ++state)
        QTest::addRow("state %d", state) << state << (state == 2 || state == 3);
}

void TestLists::resetIsForCheckedListsOnly()
{
    QFETCH(int, state);
    QFETCH(bool, enabled);
    ShopDriver shop(list(1, "a", state));
    activate(shop, 0);
    shop.press("editButton");
    QCOMPARE(shop.isEnabled("resetButton"), enabled);
    if (enabled) {
        // Also without any goods.
        shop.press("resetButton");
        QCOMPARE(shop.db->column("select state from shoplist"), QVariantList{1});
    }
}

void TestLists::deletingRemovesTheGoodsFirst()
{
    // Records the remaining goods when a list is deleted.
    ShopDriver shop({twoLists, sql("create table seen (goods int)"),
                     sql("create trigger seen before delete on shoplist begin insert into seen "
                         "select count(*) from purchase where shoplistid = old.id; end")});
    activate(shop, 1);
    shop.press("editButton");
    shop.type("another name");
    shop.press("deleteButton");
    QCOMPARE(shop.message(), "Deleting Shopping List: Are You really want to delete list named "
                             "'another name' ?");
    shop.press("confirmationYesButton");
    QCOMPARE(shop.page(), PageShopping);
    QCOMPARE(shop.labelText("listName"), "");
    QVERIFY(!shop.isEnabled("editButton"));
    QVERIFY(!shop.isEnabled("goodsButton"));
    QCOMPARE(shop.db->column("select id from shoplist"), QVariantList{2});
    QCOMPARE(shop.db->column("select id from purchase"), QVariantList{3});
    QCOMPARE(shop.db->column("select goods from seen"), QVariantList{0});
    shop.press("startButton");
    QCOMPARE(shop.message(), "No Shop List selected: Please select Shop List or create a New One");
}

void TestLists::deletingCanBeDeclined()
{
    ShopDriver shop(twoLists);
    activate(shop, 1);
    shop.press("editButton");
    shop.press("deleteButton");
    shop.press("confirmationNoButton");
    QCOMPARE(shop.page(), PageListEdit);
    shop.press("deleteButton");
    QTest::keyClick(shop.window->windowHandle(), Qt::Key_Escape);
    QCOMPARE(shop.page(), PageListEdit);
    QCOMPARE(shop.db->column("select count(*) from shoplist"), QVariantList{2});
}

void TestLists::emptyNameIsRefused()
{
    ShopDriver shop(twoLists);
    activate(shop, 1);
    shop.press("editButton");
    shop.type("");
    shop.press("saveButton");
    QCOMPARE(shop.message(), "Name field is Empty: Please fill the Name field");
    shop.press("messageOkButton");
    QCOMPARE(shop.page(), PageListEdit);
    QCOMPARE(shop.buttonText("storeButton"), "Bakery");
    shop.press("backButton");
    shop.press("listsButton");
    shop.press("createButton");
    shop.press("saveButton");
    QCOMPARE(shop.message(), "Name field is Empty: Please fill the Name field");
    QCOMPARE(shop.db->column("select count(*) from shoplist"), QVariantList{2});
}

void TestLists::namesAreUpTo25Characters()
{
    ShopDriver shop;
    openLists(shop);
    shop.press("createButton");
    shop.type(QString("я").repeated(26));
    shop.press("saveButton");
    QCOMPARE(shop.db->column("select name from shoplist"), QVariantList{QString("я").repeated(25)});
}

void TestLists::namesAndStatements_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("stored"); // null: nothing is stored
    const QList<std::pair<QString, QString>> rows{
        {"100%", "100%"},
        {"a%3", "a0"},
        {"a%4", "a0"},
        {"%1", QString()},
        {"%2", QString()},
        {"Joe's", QString()},
        {"It''s", "It's"},
        {"\"quoted\"", "\"quoted\""},
        {"back\\slash", "back\\slash"},
        {"  blanks  ", "  blanks  "},
        {QString("n").repeated(24) + "🛒", QString("n").repeated(24)}, // no half of an emoji
        {"🛒🥛", "🛒🥛"},
        {"חלב ולחם", "חלב ולחם"},
        {"a;b--c", "a;b--c"},
        {"two\nlines", "two\nlines"},
    };
    for (const auto &[name, stored] : rows)
        QTest::newRow(qPrintable(name)) << name << stored;
}

void TestLists::namesAndStatements()
{
    QFETCH(QString, name);
    QFETCH(QString, stored);
    ShopDriver shop(list("other", ListEmpty));
    openLists(shop);
    shop.press("createButton");
    // Pasted, because it cannot be typed.
    QGuiApplication::clipboard()->setText(name);
    shop.find<QLineEdit>("nameField")->paste();
    shop.press("saveButton");
    shop.press("messageOkButton");
    QVariantList expected{"other"};
    if (!stored.isNull())
        expected << stored;
    QCOMPARE(shop.db->column("select name from shoplist order by id"), expected);
}

void TestLists::newNameCanReachOtherRows()
{
    ShopDriver shop(twoLists);
    activate(shop, 1);
    shop.press("editButton");
    shop.type("x' --");
    shop.press("saveButton");
    QCOMPARE(shop.db->column("select name from shoplist order by id"), (QVariantList{"x", "x"}));
}

void TestLists::newNameThatIsTwoStatementsDoesNothing()
{
    ShopDriver shop(twoLists);
    activate(shop, 1);
    shop.press("editButton");
    shop.type("a'; drop table t; --");
    shop.press("saveButton");
    QCOMPARE(shop.db->column("select name from shoplist order by id"),
             (QVariantList{"Weekend", "Party"}));
}

void TestLists::strangeRecords()
{
    ShopDriver shop({list(2147483647, "top", ListPartlyChecked).ofStore(2147483647),
                     sql("insert into shoplist values (-5, 'below', -1, null)"),
                     openList(7, "same"), openList(8, "same"),
                     sql("insert into shoplist values (9, null, null, 'text')")});
    openLists(shop);
    QCOMPARE(shop.list()->count(), 5);
    for (int row = 0; row < 5; ++row) {
        shop.list()->setCurrentRow(row);
        shop.press("selectButton");
        shop.press("goodsButton");
        shop.press("backButton");
        shop.press("listsButton");
    }
    shop.press("createButton");
    shop.type("next");
    shop.press("saveButton");
    // The largest id plus one overflows, so the new id is 1.
    QCOMPARE(shop.db->column("select id from shoplist where name = 'next'"), QVariantList{1});
}

void TestLists::tenThousandLists()
{
    Records records;
    for (int id = 1; id <= 10000; ++id)
        records.openList(QString("list %1").arg(id));
    ShopDriver shop(records);
    QElapsedTimer clock;
    clock.start();
    openLists(shop);
    QCOMPARE(shop.list()->count(), 10000);
    QVERIFY2(clock.elapsed() < 5000, qPrintable(QString::number(clock.elapsed())));
    QVERIFY(shop.list()->findChildren<QWidget *>().size() < 20);
}

STOPPABLE_TEST_MAIN(TestLists)
#include "tst_lists.moc"
