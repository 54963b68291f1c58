// SPDX-License-Identifier: MIT
#include <QRandomGenerator>
#include <QStyleHints>
#include <QtTest>

#include "base/pages.h"
#include "tests/support/records.h"
#include "tests/support/shopdriver.h"
#include "tests/support/testpositionplugin.h"

Q_IMPORT_PLUGIN(TestPositionPlugin)

class TestDoShopping : public QObject
{
    Q_OBJECT

private slots:
    void uncheckedGoodsComeFirst();
    void checkedGoodMovesToTheTopOfTheCheckedOnes();
    void uncheckedGoodMovesBelowTheLastUncheckedOne();
    void everyToggleIsStoredAtOnce();
    void buttonsActOnTheCurrentGoodOnly();
    void buttonsWithoutACurrentGoodDoNothing();
    void tapsOnDifferentRowsCheckNothing();
    void tapBeforeLeavingIsForgotten();
    void quickDoubleTapActsOnce();
    void sixTapsAreFiveToggles();
    void enterToggles();
    void secondTapIsExplainedOnce();
    void leavingRecomputesTheState_data();
    void leavingRecomputesTheState();
    void uncheckingAGoodReopensAFinishedList();
    void fromAReminderAllListsOfTheStoreAreShopped();
    void backIsOk();
    void withoutAListOneIsChosenFirst();
    void pendingStartIsForgottenOnTheMainPage();
    void selectingAfterAStartOnlySelects();
    void rowsAreReadOut();
    void spaceChecksNothing();
    void randomTogglesMatchAModel();
};

/// Goods A, B, C and so on with the amounts 1, 2, 3; the last ones are checked. There is another
/// list.
static Records listOf(int goods, int checked = 0)
{
    Records records{openList("Weekend"), openList("zzz").good(1000, "elsewhere")};
    for (int id = 1; id <= goods; ++id) {
        const QChar name('A' + (id - 1) % 26);
        Records &withGood =
            id > goods - checked ? records.checkedGood(id, name, id) : records.good(id, name, id);
        withGood.onList(1);
    }
    return records;
}

void TestDoShopping::uncheckedGoodsComeFirst()
{
    ShopDriver shop(listOf(4).sql("update purchase set checkstate = 1 where id in (1, 3)"));
    shop.startShopping();
    QCOMPARE(shop.rows(), (QStringList{"B|2", "D|4", "A|1*", "C|3*"}));
    QCOMPARE(shop.labelText("title"), "Weekend");
    for (int row = 0; row < 4; ++row)
        QCOMPARE(shop.list()->item(row)->data(Qt::UserRole + 2), QVariant(1));
}

void TestDoShopping::checkedGoodMovesToTheTopOfTheCheckedOnes()
{
    ShopDriver shop(listOf(3));
    shop.startShopping();
    shop.tap(1);
    QCOMPARE(shop.rows(), (QStringList{"A|1", "B|2", "C|3"}));
    shop.tap(1);
    QCOMPARE(shop.rows(), (QStringList{"A|1", "C|3", "B|2*"}));
    QCOMPARE(shop.list()->currentRow(), 1);
    // C moved up under the finger: one tap checks it.
    shop.tap(1);
    QCOMPARE(shop.rows(), (QStringList{"A|1", "C|3*", "B|2*"}));
    QCOMPARE(shop.list()->currentRow(), 1);
}

void TestDoShopping::uncheckedGoodMovesBelowTheLastUncheckedOne()
{
    ShopDriver shop(listOf(5, 3));
    shop.startShopping();
    QCOMPARE(shop.rows(), (QStringList{"A|1", "B|2", "C|3*", "D|4*", "E|5*"}));
    shop.tap(4);
    shop.tap(4);
    QCOMPARE(shop.rows(), (QStringList{"A|1", "B|2", "E|5", "C|3*", "D|4*"}));
    QCOMPARE(shop.list()->currentRow(), 2);
    shop.tap(2); // the good itself stays selected and remembered
    QCOMPARE(shop.rows(), (QStringList{"A|1", "B|2", "E|5*", "C|3*", "D|4*"}));
}

void TestDoShopping::everyToggleIsStoredAtOnce()
{
    ShopDriver shop(listOf(3));
    shop.startShopping();
    shop.tap(1);
    shop.tap(1);
    QCOMPARE(shop.db->column("select checkstate from purchase order by id"),
             (QVariantList{0, 1, 0, 0}));
    shop.list()->setCurrentRow(2);
    shop.press("uncheckButton");
    QCOMPARE(shop.db->column("select checkstate from purchase order by id"),
             (QVariantList{0, 0, 0, 0}));
}

void TestDoShopping::buttonsActOnTheCurrentGoodOnly()
{
    ShopDriver shop(listOf(3, 1));
    shop.startShopping();
    shop.list()->setCurrentRow(2);
    shop.press("checkButton");
    QCOMPARE(shop.rows(), (QStringList{"A|1", "B|2", "C|3*"}));
    shop.list()->setCurrentRow(0);
    shop.press("uncheckButton");
    QCOMPARE(shop.rows(), (QStringList{"A|1", "B|2", "C|3*"}));
    shop.press("checkButton");
    QCOMPARE(shop.rows(), (QStringList{"B|2", "A|1*", "C|3*"}));
    shop.list()->setCurrentRow(2);
    shop.press("uncheckButton");
    QCOMPARE(shop.rows(), (QStringList{"B|2", "C|3", "A|1*"}));
}

void TestDoShopping::buttonsWithoutACurrentGoodDoNothing()
{
    ShopDriver shop(listOf(2, 1));
    shop.startShopping();
    QCOMPARE(shop.list()->currentRow(), -1);
    shop.press("checkButton");
    shop.press("uncheckButton");
    QCOMPARE(shop.rows(), (QStringList{"A|1", "B|2*"}));
}

void TestDoShopping::tapsOnDifferentRowsCheckNothing()
{
    ShopDriver shop(listOf(3));
    shop.startShopping();
    for (const int row : {0, 1, 2, 0}) {
        shop.tap(row);
        QCOMPARE(shop.list()->currentRow(), row);
        QCOMPARE(shop.rows(), (QStringList{"A|1", "B|2", "C|3"}));
    }
}

void TestDoShopping::tapBeforeLeavingIsForgotten()
{
    ShopDriver shop(listOf(3));
    shop.startShopping();
    shop.tap(1);
    shop.press("okButton");
    shop.press("startButton");
    shop.tap(1);
    QCOMPARE(shop.rows(), (QStringList{"A|1", "B|2", "C|3"}));
    shop.tap(1);
    QCOMPARE(shop.rows(), (QStringList{"A|1", "C|3", "B|2*"}));
}

void TestDoShopping::quickDoubleTapActsOnce()
{
    ShopDriver shop(listOf(3));
    shop.startShopping();
    shop.doubleTap(0);
    QCOMPARE(shop.rows(), (QStringList{"B|2", "C|3", "A|1*"}));
    // B is remembered now. The first tap checks it; the second one is not for C.
    shop.doubleTap(0);
    QCOMPARE(shop.rows(), (QStringList{"C|3", "B|2*", "A|1*"}));
}

void TestDoShopping::sixTapsAreFiveToggles()
{
    ShopDriver shop(listOf(3));
    shop.startShopping();
    const QPoint first = shop.list()->viewport()->mapTo(shop.window.get(), QPoint(100, 10));
    const QList<QStringList> after{{"A|1", "B|2", "C|3"},   {"B|2", "C|3", "A|1*"},
                                   {"C|3", "B|2*", "A|1*"}, {"C|3*", "B|2*", "A|1*"},
                                   {"C|3", "B|2*", "A|1*"}, {"C|3*", "B|2*", "A|1*"}};
    for (const QStringList &rows : after) {
        shop.touch(first);
        QCOMPARE(shop.rows(), rows);
        QTest::qWait(QGuiApplication::styleHints()->mouseDoubleClickInterval() + 30);
    }
}

void TestDoShopping::enterToggles()
{
    ShopDriver shop(listOf(3));
    shop.startShopping();
    shop.tap(2);
    QTest::keyClick(shop.list(), Qt::Key_Return);
    QCOMPARE(shop.rows(), (QStringList{"A|1", "B|2", "C|3*"}));
}

void TestDoShopping::secondTapIsExplainedOnce()
{
    constexpr int later = 4000; // milliseconds
    ShopDriver shop(store("Bakery").openList(1, "Bread").good("Rye").good("Rolls"));
    shop.press("shoppingButton");
    shop.press("listsButton");
    shop.tap(0);
    QTRY_COMPARE_WITH_TIMEOUT(shop.banner(), "Tap it again to choose it", later);
    shop.tap(0);
    shop.press("startButton");
    QCOMPARE(shop.page(), PageDoShopping);
    shop.tap(0);
    QTRY_COMPARE_WITH_TIMEOUT(shop.banner(), "Tap it again to check it off", later);
    QTRY_COMPARE_WITH_TIMEOUT(shop.banner(), QString(), later);
    // Not again on this page.
    shop.tap(1);
    QTest::qWait(2500);
    QCOMPARE(shop.banner(), QString());
    // Who taps twice on a page knows it.
    ShopDriver other(store("Bakery").openList(1, "Bread").good("Rye").good("Rolls"));
    other.press("shoppingButton");
    other.press("listsButton");
    other.tap(0);
    other.tap(0);
    other.press("listsButton");
    other.tap(0);
    QTest::qWait(2500);
    QCOMPARE(other.banner(), QString());
}

void TestDoShopping::leavingRecomputesTheState_data()
{
    QTest::addColumn<int>("goods");
    QTest::addColumn<int>("checked");
    QTest::addColumn<int>("state");
    QTest::addColumn<QString>("text");
    QTest::newRow("no goods") << 0 << 0 << 1 << "Active (unchecked)";
    QTest::newRow("none checked") << 3 << 0 << 1 << "Active (unchecked)";
    QTest::newRow("some checked") << 3 << 1 << 2 << "Active (partial checked)";
    QTest::newRow("all checked") << 3 << 3 << 3 << "Finished (checked)";
}

void TestDoShopping::leavingRecomputesTheState()
{
    QFETCH(int, goods);
    QFETCH(int, checked);
    QFETCH(int, state);
    QFETCH(QString, text);
    ShopDriver shop(listOf(goods, checked).sql("update shoplist set state = 0"));
    shop.startShopping();
    QCOMPARE(shop.db->column("select state from shoplist where id = 1"), QVariantList{0});
    shop.press("okButton");
    QCOMPARE(shop.page(), PageShopping);
    QCOMPARE(shop.labelText("listState"), text);
    QCOMPARE(shop.db->column("select state from shoplist order by id"), (QVariantList{state, 0}));
}

void TestDoShopping::uncheckingAGoodReopensAFinishedList()
{
    ShopDriver shop(listOf(2));
    shop.startShopping();
    for (int good = 0; good < 2; ++good) {
        shop.list()->setCurrentRow(0);
        shop.press("checkButton");
    }
    shop.press("okButton");
    QCOMPARE(shop.db->column("select state from shoplist where id = 1"), QVariantList{3});
    shop.press("startButton");
    shop.list()->setCurrentRow(0);
    shop.press("uncheckButton");
    shop.press("okButton");
    QCOMPARE(shop.db->column("select state from shoplist where id = 1"), QVariantList{2});
    QCOMPARE(shop.labelText("listState"), "Active (partial checked)");
}

void TestDoShopping::fromAReminderAllListsOfTheStoreAreShopped()
{
    ShopDriver shop({store(5, "Bakery")
                         .at(10.01, 20)
                         .openList("Weekend")
                         .good("Bread")
                         .openList("Party")
                         .good("Cake")
                         .checkedGood("Rolls"),
                     openList("Elsewhere").ofStore(6).good("Nails")},
                    {{"GpsEnabled", true}});
    shop.press("reminderButton");
    shop.press("startButton");
    TestPositionSource::instance()->deliver(10.01, 20);
    shop.press("startShoppingButton");
    QCOMPARE(shop.rows(), (QStringList{"Bread|1", "Cake|1", "Rolls|1*"}));
    shop.list()->setCurrentRow(1);
    shop.press("checkButton");
    shop.list()->setCurrentRow(0);
    shop.press("checkButton");
    shop.press("okButton");
    // Only the state of the active list is recomputed.
    QCOMPARE(shop.db->column("select state from shoplist order by id"), (QVariantList{3, 1, 1}));
    // The next start is for the active list again.
    shop.press("startButton");
    QCOMPARE(shop.rows(), (QStringList{"Bread|1*"}));
}

void TestDoShopping::backIsOk()
{
    ShopDriver shop(listOf(2, 2));
    shop.startShopping();
    shop.press("backButton");
    QCOMPARE(shop.page(), PageShopping);
    QCOMPARE(shop.db->column("select state from shoplist where id = 1"), QVariantList{3});
}

void TestDoShopping::withoutAListOneIsChosenFirst()
{
    ShopDriver shop(listOf(2));
    shop.press("shoppingButton");
    shop.press("startButton");
    QCOMPARE(shop.message(), "No Shop List selected: Please select Shop List or create a New One");
    shop.press("messageOkButton");
    QCOMPARE(shop.page(), PageShoppingLists);
    QCOMPARE(shop.rows(), (QStringList{"Weekend", "zzz"}));
    shop.tap(0);
    shop.press("selectButton");
    QCOMPARE(shop.page(), PageDoShopping);
    QCOMPARE(shop.rows(), (QStringList{"A|1", "B|2"}));
}

void TestDoShopping::pendingStartIsForgottenOnTheMainPage()
{
    ShopDriver shop(listOf(2));
    shop.press("shoppingButton");
    shop.press("startButton");
    shop.press("messageOkButton");
    shop.press("backButton");
    shop.press("backButton");
    shop.press("shoppingButton");
    shop.press("listsButton");
    shop.tap(0);
    shop.press("selectButton");
    QCOMPARE(shop.page(), PageShopping);
}

void TestDoShopping::selectingAfterAStartOnlySelects()
{
    ShopDriver shop(listOf(2));
    shop.press("shoppingButton");
    shop.press("startButton");
    shop.press("messageOkButton");
    shop.tap(0);
    shop.press("selectButton");
    shop.press("okButton");
    shop.press("listsButton");
    shop.tap(1);
    shop.press("selectButton");
    QCOMPARE(shop.page(), PageShopping);
    QCOMPARE(shop.labelText("listName"), "zzz");
}

void TestDoShopping::rowsAreReadOut()
{
    ShopDriver shop(listOf(2, 1));
    shop.startShopping();
    const auto *model = shop.list()->model();
    QCOMPARE(model->index(0, 0).data(Qt::AccessibleTextRole).toString(), "A, 1, unchecked");
    QCOMPARE(model->index(1, 0).data(Qt::AccessibleTextRole).toString(), "B, 2, checked");
}

void TestDoShopping::spaceChecksNothing()
{
    ShopDriver shop(listOf(2));
    shop.startShopping();
    shop.tap(0);
    QTest::keyClick(shop.list(), Qt::Key_Space);
    QCOMPARE(shop.rows(), (QStringList{"A|1", "B|2"}));
    QVERIFY(!(shop.list()->item(0)->flags() & Qt::ItemIsUserCheckable));
}

void TestDoShopping::randomTogglesMatchAModel()
{
    struct Good
    {
        int id;
        bool checked;
    };
    QRandomGenerator random(42);
    int toggles = 0;
    while (toggles < 2000) {
        const int count = random.bounded(1, 61);
        ShopDriver shop(listOf(count, random.bounded(count + 1)));
        shop.startShopping();
        QList<Good> model;
        for (int row = 0; row < count; ++row)
            model << Good{shop.list()->item(row)->data(Qt::UserRole).toInt(),
                          shop.list()->item(row)->checkState() == Qt::Checked};
        int remembered = 0;
        for (int step = 0; step < 100; ++step) {
            // Sometimes the remembered row, so that one tap toggles it.
            int row = random.bounded(count);
            if (random.bounded(2) == 0 && shop.list()->currentRow() >= 0)
                row = shop.list()->currentRow();
            const Good tapped = model.at(row);
            shop.tap(row);
            int current = row;
            if (tapped.id == remembered) {
                model.removeAt(row);
                const auto firstChecked = std::find_if(
                    model.cbegin(), model.cend(), [](const Good &good) { return good.checked; });
                const int place = int(firstChecked - model.cbegin());
                model.insert(place, Good{tapped.id, !tapped.checked});
                current = tapped.checked ? place : row;
                ++toggles;
            }
            remembered = model.at(current).id;
            QCOMPARE(shop.list()->currentRow(), current);
            QVariantList checkedInFile;
            for (int index = 0; index < count; ++index) {
                const QListWidgetItem *item = shop.list()->item(index);
                QCOMPARE(item->data(Qt::UserRole).toInt(), model.at(index).id);
                QCOMPARE(item->checkState() == Qt::Checked, model.at(index).checked);
                if (model.at(index).checked)
                    checkedInFile << model.at(index).id;
            }
            std::sort(checkedInFile.begin(), checkedInFile.end(),
                      [](const QVariant &a, const QVariant &b) { return a.toInt() < b.toInt(); });
            QCOMPARE(shop.db->column("select id from purchase where checkstate = 1 order by id"),
                     checkedInFile);
        }
    }
}

STOPPABLE_TEST_MAIN(TestDoShopping)
#include "tst_doshopping.moc"
