// SPDX-License-Identifier: MIT
#include <QAccessible>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QPushButton>
#include <QRandomGenerator>
#include <QSpinBox>
#include <QtTest>

#include "base/pages.h"
#include "tests/support/emulator.h"
#include "tests/support/records.h"
#include "tests/support/shopdriver.h"

class TestItems : public QObject
{
    Q_OBJECT

private slots:
    void goodsAreListedWithTheirAmounts();
    void nothingIsStoredBeforeOk();
    void newGoodsGetConsecutiveIds();
    void idsOfNewRowsStayZero();
    void amountStartsAtOneAndIsNeverLess();
    void editingKeepsTheCheckMark();
    void addingAnUncheckedGoodMakesAFinishedListPartial();
    void emptyListIsUnchecked();
    void tapTwiceEdits();
    void quickDoubleTapEditsOnce();
    void deleteIsForGoodsThatAreThere();
    void emptyNameIsRefused();
    void quoteIsSkippedAndTheOthersAreStored();
    void namesAndStatements_data();
    void namesAndStatements();
    void strangeAmounts();
    void emptyListTellsItsHint();
    void knownGoodsAreSuggested();
    void suggestionIsPutIntoTheField();
    void suggestionIsReachedByKeys();
    void suggestionsTakeLittleTime();
    void tenThousandGoods();
    void randomEditingMatchesAModel();

private:
    static void openGoods(ShopDriver &shop)
    {
        shop.press("shoppingButton");
        shop.press("listsButton");
        shop.tap(0);
        shop.press("selectButton");
        shop.press("goodsButton");
        QCOMPARE(shop.page(), PageItemsList);
    }
    static void add(ShopDriver &shop, const QString &name, int amount = 1)
    {
        shop.press("addButton");
        shop.type(name);
        shop.find<QSpinBox>("amountField")->setValue(amount);
        shop.press("saveButton");
    }
    static void open(ShopDriver &shop, int row)
    {
        shop.list()->setCurrentRow(row);
        QTest::keyClick(shop.list(), Qt::Key_Return);
        QCOMPARE(shop.page(), PageItemEdit);
    }
    static QList<QVariantList> goods(ShopDriver &shop)
    {
        return shop.db->rows("select id, name, shoplistid, amount, checkstate from purchase "
                             "order by id");
    }
};

static const Records oneList =
    list("Weekend", ListPartlyChecked).good("Milk", 2).checkedGood("Bread").good("Other").onList(2);

void TestItems::goodsAreListedWithTheirAmounts()
{
    ShopDriver shop(oneList);
    openGoods(shop);
    QCOMPARE(shop.labelText("title"), "Weekend");
    QCOMPARE(shop.rows(), (QStringList{"Milk|2", "Bread|1"}));
}

void TestItems::nothingIsStoredBeforeOk()
{
    ShopDriver shop(oneList);
    const QList<QVariantList> before = goods(shop);
    openGoods(shop);
    add(shop, "Eggs", 12);
    open(shop, 0);
    shop.type("Oat milk");
    shop.press("saveButton");
    open(shop, 1);
    shop.press("deleteButton");
    QCOMPARE(shop.message(), "Deleting List Item: Are You really want to delete item 'Bread' ?");
    shop.press("confirmationYesButton");
    QCOMPARE(shop.rows(), (QStringList{"Oat milk|2", "Eggs|12"}));
    QCOMPARE(goods(shop), before);
    shop.press("backButton");
    QCOMPARE(shop.page(), PageShopping);
    QCOMPARE(goods(shop), before);
    shop.press("goodsButton");
    QCOMPARE(shop.rows(), (QStringList{"Milk|2", "Bread|1"}));
}

void TestItems::newGoodsGetConsecutiveIds()
{
    ShopDriver shop(oneList);
    openGoods(shop);
    add(shop, "Eggs", 12);
    add(shop, "Salt");
    shop.press("okButton");
    QCOMPARE(shop.page(), PageShopping);
    QCOMPARE(goods(shop), (QList<QVariantList>{{1, "Milk", 1, 2, 0},
                                               {2, "Bread", 1, 1, 1},
                                               {3, "Other", 2, 1, 0},
                                               {4, "Eggs", 1, 12, 0},
                                               {5, "Salt", 1, 1, 0}}));
}

void TestItems::idsOfNewRowsStayZero()
{
    ShopDriver shop(oneList);
    openGoods(shop);
    add(shop, "Eggs");
    const auto *list = shop.list();
    shop.press("okButton");
    QCOMPARE(list->item(2)->data(Qt::UserRole).toInt(), 0);
}

void TestItems::amountStartsAtOneAndIsNeverLess()
{
    ShopDriver shop(oneList);
    openGoods(shop);
    open(shop, 0);
    QCOMPARE(shop.find<QSpinBox>("amountField")->value(), 2);
    shop.press("backButton");
    shop.press("addButton");
    auto *amount = shop.find<QSpinBox>("amountField");
    QCOMPARE(amount->value(), 1);
    QCOMPARE(amount->minimum(), 1);
    QCOMPARE(amount->maximum(), 99);
    QTest::keyClick(amount, Qt::Key_Down);
    QCOMPARE(amount->value(), 1);
    shop.press("lessButton");
    QCOMPARE(amount->value(), 1);
    shop.press("moreButton");
    QCOMPARE(amount->value(), 2);
    QCOMPARE(shop.find<QLineEdit>("nameField")->text(), "");
}

void TestItems::editingKeepsTheCheckMark()
{
    ShopDriver shop(oneList);
    openGoods(shop);
    open(shop, 1);
    shop.type("Rye bread");
    shop.find<QSpinBox>("amountField")->setValue(3);
    shop.press("saveButton");
    shop.press("okButton");
    QCOMPARE(goods(shop).at(1), (QVariantList{2, "Rye bread", 1, 3, 1}));
}

void TestItems::addingAnUncheckedGoodMakesAFinishedListPartial()
{
    ShopDriver shop(
        {oneList, sql("update purchase set checkstate = 1"), sql("update shoplist set state = 3")});
    openGoods(shop);
    add(shop, "Eggs");
    shop.press("okButton");
    QCOMPARE(shop.db->column("select state from shoplist"), QVariantList{2});
    QCOMPARE(shop.labelText("listState"), "Active (partial checked)");
}

void TestItems::emptyListIsUnchecked()
{
    ShopDriver shop(oneList);
    openGoods(shop);
    for (int count = 0; count < 2; ++count) {
        open(shop, 0);
        shop.press("deleteButton");
        shop.press("confirmationYesButton");
    }
    shop.press("okButton");
    QCOMPARE(goods(shop), (QList<QVariantList>{{3, "Other", 2, 1, 0}}));
    QCOMPARE(shop.db->column("select state from shoplist"), QVariantList{1});
    QCOMPARE(shop.labelText("listState"), "Active (unchecked)");
}

void TestItems::tapTwiceEdits()
{
    ShopDriver shop(oneList);
    openGoods(shop);
    shop.tap(0);
    shop.tap(1);
    shop.tap(0);
    QCOMPARE(shop.page(), PageItemsList);
    QTRY_COMPARE(shop.banner(), "Tap it again to edit it");
    shop.tap(0);
    QCOMPARE(shop.page(), PageItemEdit);
    shop.press("backButton");
    // Goods that are not stored yet share one id, so a second tap on any of them opens it.
    add(shop, "Eggs");
    add(shop, "Salt");
    shop.tap(2);
    QCOMPARE(shop.page(), PageItemsList);
    shop.tap(3);
    QCOMPARE(shop.page(), PageItemEdit);
    QCOMPARE(shop.find<QLineEdit>("nameField")->text(), "Salt");
}

void TestItems::quickDoubleTapEditsOnce()
{
    ShopDriver shop(oneList);
    openGoods(shop);
    shop.doubleTap(1);
    QCOMPARE(shop.page(), PageItemEdit);
    shop.press("backButton");
    shop.doubleTap(1);
    QCOMPARE(shop.page(), PageItemEdit);
}

void TestItems::deleteIsForGoodsThatAreThere()
{
    ShopDriver shop(oneList);
    openGoods(shop);
    shop.press("addButton");
    QVERIFY(!shop.isEnabled("deleteButton"));
    shop.press("backButton");
    open(shop, 0);
    QVERIFY(shop.isEnabled("deleteButton"));
    shop.press("deleteButton");
    shop.press("confirmationNoButton");
    QCOMPARE(shop.page(), PageItemEdit);
}

void TestItems::emptyNameIsRefused()
{
    ShopDriver shop(oneList);
    openGoods(shop);
    for (const bool editing : {false, true}) {
        if (editing)
            open(shop, 0);
        else
            shop.press("addButton");
        shop.type("");
        shop.press("saveButton");
        QCOMPARE(shop.message(), "Name field is Empty: Please fill the Name field");
        shop.press("messageOkButton");
        QCOMPARE(shop.page(), PageItemEdit);
        shop.press("backButton");
        QCOMPARE(shop.rows(), (QStringList{"Milk|2", "Bread|1"}));
    }
}

void TestItems::quoteIsSkippedAndTheOthersAreStored()
{
    ShopDriver shop(oneList);
    openGoods(shop);
    add(shop, "Joe's jam");
    add(shop, "Salt");
    shop.press("okButton");
    // The good that was not stored has used no id.
    QCOMPARE(shop.db->rows("select id, name from purchase where shoplistid = 1 order by id"),
             (QList<QVariantList>{{1, "Milk"}, {2, "Bread"}, {4, "Salt"}}));
}

void TestItems::namesAndStatements_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("stored"); // null: nothing is stored
    const QList<std::pair<QString, QString>> rows{
        {"100%", "100%"},
        {"a%3", "a1"},
        {"%4", "7"},
        {"%1", QString()},
        {"Joe's", QString()},
        {"It''s", "It's"},
        {"back\\slash", "back\\slash"},
        {" 🥛 ", " 🥛 "},
        {"חלב", "חלב"},
    };
    for (const auto &[name, stored] : rows)
        QTest::newRow(qPrintable(name)) << name << stored;
}

void TestItems::namesAndStatements()
{
    QFETCH(QString, name);
    QFETCH(QString, stored);
    ShopDriver shop(oneList);
    openGoods(shop);
    shop.press("addButton");
    shop.find<QLineEdit>("nameField")->insert(name);
    shop.find<QSpinBox>("amountField")->setValue(7);
    shop.press("saveButton");
    QCOMPARE(shop.rows().last(), name + "|7");
    shop.press("okButton");
    QVariantList expected{"Milk", "Bread"};
    if (!stored.isNull())
        expected << stored;
    QCOMPARE(shop.db->column("select name from purchase where shoplistid = 1 order by id"),
             expected);
    QCOMPARE(shop.db->column("select name from purchase where id = 3"), QVariantList{"Other"});
}

void TestItems::emptyListTellsItsHint()
{
    ShopDriver shop(store("Bakery").openList("Bread"));
    openGoods(shop);
    const auto told = [&shop] {
        QCoreApplication::processEvents();
        return QAccessible::queryAccessibleInterface(shop.list())->text(QAccessible::Description);
    };
    QCOMPARE(told(), "No goods yet. Press + to add one.");
    shop.press("addButton");
    shop.type("Rye");
    shop.press("saveButton");
    QCOMPARE(shop.list()->count(), 1);
    QCOMPARE(told(), QString());
}

static QStringList suggestions(const ShopDriver &shop)
{
    QStringList words;
    for (const char *name : {"suggestion0", "suggestion1", "suggestion2"}) {
        const auto *button = shop.find<QPushButton>(name);
        if (button->isVisible())
            words << button->text();
    }
    return words;
}

void TestItems::knownGoodsAreSuggested()
{
    ShopDriver shop(
        {store("Bakery").openList("Bread").good("Rolls").good("Rye").good("Milk"),
         store("Dairy").openList("Cheese").good("Rye").good("rum").good("Rabbit").good("R&D")});
    openGoods(shop);
    shop.press("addButton");
    QCOMPARE(suggestions(shop), QStringList());
    const int height = shop.find<QWidget>("suggestions")->height();
    const QPoint below = shop.find<QSpinBox>("amountField")->mapTo(shop.window.get(), QPoint());
    // The most frequent one comes first, and there are no more than three.
    shop.type("r");
    QCOMPARE(suggestions(shop), (QStringList{"Rye", "R&D", "Rabbit"}));
    shop.type("ru");
    QCOMPARE(suggestions(shop), QStringList{"rum"});
    // Nothing moves.
    QCOMPARE(shop.find<QWidget>("suggestions")->height(), height);
    QCOMPARE(shop.find<QSpinBox>("amountField")->mapTo(shop.window.get(), QPoint()), below);
    shop.type("rum");
    QCOMPARE(suggestions(shop), QStringList());
    shop.type("");
    QCOMPARE(suggestions(shop), QStringList());
}

void TestItems::suggestionIsPutIntoTheField()
{
    ShopDriver shop(store("Bakery").openList("Bread").good("Rye"));
    openGoods(shop);
    shop.press("addButton");
    shop.type("r");
    auto *button = shop.find<QPushButton>("suggestion0");
    shop.touch(button->mapTo(shop.window.get(), button->rect().center()));
    QCOMPARE(shop.find<QLineEdit>("nameField")->text(), "Rye");
    QVERIFY(shop.find<QLineEdit>("nameField")->hasFocus());
    QCOMPARE(suggestions(shop), QStringList());
    shop.press("saveButton");
    shop.press("okButton");
    QCOMPARE(goods(shop).size(), 2);
    QCOMPARE(shop.db->column("select count(*) from purchase where name = 'Rye'"), QVariantList{2});
}

void TestItems::suggestionIsReachedByKeys()
{
    ShopDriver shop(store("Bakery").openList("Bread").good("Rye").good("Rice"));
    openGoods(shop);
    shop.press("addButton");
    const auto *field = shop.find<QLineEdit>("nameField");
    shop.type("r");
    for (const char *name : {"suggestion0", "suggestion1", "amountField"}) {
        QTest::keyClick(shop.window->focusWidget(), Qt::Key_Tab);
        QVERIFY2(shop.find<QWidget>(name)->hasFocus(), name);
    }
    for (int step = 0; step < 2; ++step)
        QTest::keyClick(shop.window->focusWidget(), Qt::Key_Backtab);
    QTest::keyClick(shop.window->focusWidget(), Qt::Key_Return);
    QCOMPARE(field->text(), "Rice");
    QVERIFY(field->hasFocus());
    QCOMPARE(shop.page(), PageItemEdit);
}

void TestItems::suggestionsTakeLittleTime()
{
    if (Emulator::isUsed())
        QSKIP("An emulator is slower than the limit.");
    ShopDriver shop(store("Bakery").openList("Bread"));
    QVERIFY(
        shop.db->run("with recursive n(i) as (select 1 union all select i + 1 from n where "
                     "i < 300000) insert into purchase select i, 'Good ' || i, 2, 1, 0 from n"));
    QVERIFY(shop.db->run("insert into shoplist values (2, 'Stock', 0, 1)"));
    openGoods(shop);
    QElapsedTimer clock;
    clock.start();
    shop.press("addButton");
    // Reading all of them takes longer.
    QVERIFY2(clock.elapsed() < 200, qPrintable(QString::number(clock.elapsed())));
    QCOMPARE(shop.page(), PageItemEdit);
}

void TestItems::tenThousandGoods()
{
    Records records = openList("Weekend");
    for (int id = 1; id <= 10000; ++id)
        records.good(QString("good %1").arg(id));
    ShopDriver shop(records);
    QElapsedTimer clock;
    clock.start();
    openGoods(shop);
    QCOMPARE(shop.list()->count(), 10000);
    QVERIFY(shop.list()->findChildren<QWidget *>().size() < 20);
    shop.press("backButton");
    shop.press("startButton");
    QCOMPARE(shop.list()->count(), 10000);
    for (int good = 0; good < 20; ++good) {
        shop.list()->setCurrentRow(5000);
        shop.press("checkButton");
    }
    QCOMPARE(shop.db->column("select count(*) from purchase where checkstate = 1"),
             QVariantList{20});
    QVERIFY2(clock.elapsed() < 10000, qPrintable(QString::number(clock.elapsed())));
}

void TestItems::strangeAmounts()
{
    ShopDriver shop(openList("Weekend")
                        .good("none", 0)
                        .sql("insert into purchase values (2, 'null', 1, null, 0)")
                        .good(3, "many", 100)
                        .sql("insert into purchase values (4, 'text', 1, 'some', null)"));
    openGoods(shop);
    QCOMPARE(shop.rows(), (QStringList{"none|0", "null|0", "many|100", "text|0"}));
    open(shop, 2);
    QCOMPARE(shop.find<QSpinBox>("amountField")->value(), 99);
    shop.press("backButton");
    shop.press("okButton");
    // Every good is stored as it is shown.
    QCOMPARE(shop.db->column("select amount from purchase order by id"),
             (QVariantList{0, 0, 100, 0}));
}

void TestItems::randomEditingMatchesAModel()
{
    struct Good
    {
        int id;
        QString name;
        int amount;
    };
    QRandomGenerator random(20261121);
    ShopDriver shop(list("Weekend", ListEmpty));
    QList<Good> stored;
    openGoods(shop);
    QList<Good> shown;
    for (int step = 0; step < 400; ++step) {
        const int action = random.bounded(10);
        const QString name = QString("good %1").arg(step);
        const int amount = random.bounded(1, 100);
        if (action < 4) {
            add(shop, name, amount);
            shown << Good{0, name, amount};
        } else if (action < 6 && !shown.isEmpty()) {
            const int row = random.bounded(int(shown.size()));
            open(shop, row);
            shop.type(name);
            shop.find<QSpinBox>("amountField")->setValue(amount);
            shop.press("saveButton");
            shown[row].name = name;
            shown[row].amount = amount;
        } else if (action < 8 && !shown.isEmpty()) {
            const int row = random.bounded(int(shown.size()));
            open(shop, row);
            shop.press("deleteButton");
            shop.press("confirmationYesButton");
            shown.removeAt(row);
        } else if (action == 8) {
            shop.press("okButton");
            int largest = 0;
            for (const Good &good : shown)
                largest = qMax(largest, good.id);
            for (Good &good : shown) {
                if (good.id == 0)
                    good.id = ++largest;
            }
            stored = shown;
            shop.press("goodsButton");
        } else {
            shop.press("backButton");
            shop.press("goodsButton");
            shown = stored;
        }
        QStringList expected;
        for (const Good &good : shown)
            expected << QString("%1|%2").arg(good.name).arg(good.amount);
        QCOMPARE(shop.rows(), expected);
        QList<QVariantList> rows;
        for (const Good &good : stored)
            rows << QVariantList{good.id, good.name, 1, good.amount, 0};
        QCOMPARE(goods(shop), rows);
    }
}

STOPPABLE_TEST_MAIN(TestItems)
#include "tst_items.moc"
