// SPDX-License-Identifier: MIT
#include <QLineEdit>
#include <QtTest>

#include "base/pages.h"
#include "tests/support/records.h"
#include "tests/support/shopdriver.h"

/// Tests the category pages, opened like a user does: by the category button of a new store.
class TestCategories : public QObject
{
    Q_OBJECT

private slots:
    void emptyTable();
    void idsOfNewCategories();
    void newCategoryIsLastUntilTheListIsFilledAgain();
    void tappingTwiceInSuccessionEdits();
    void quickDoubleTapEdits();
    void lastTapIsRememberedBetweenVisits();
    void renaming();
    void deletingClearsTheStoreWithTheSameId();
    void deletingCanBeDeclined();
    void namesAreUpTo25Characters();
    void emptyNameIsRefused();
    void quoteIsNotStored();
    void choiceGoesToTheStore();
    void lastChoiceIsPreselected();
    void backChoosesNothing();
    void enterSavesAndEscapeGoesBack();

private:
    static void openCategories(ShopDriver &shop)
    {
        shop.press("shopsButton");
        shop.press("newButton");
        shop.press("categoryButton");
        QCOMPARE(shop.page(), PageCategoryList);
    }
    static void addCategory(ShopDriver &shop, const QString &name)
    {
        shop.press("addButton");
        shop.type(name);
        shop.press("saveButton");
    }
};

void TestCategories::emptyTable()
{
    ShopDriver shop;
    openCategories(shop);
    QCOMPARE(shop.list()->count(), 0);
    QCOMPARE(shop.list()->currentRow(), -1);
    shop.press("selectButton");
    QCOMPARE(shop.message(), "Not selected: Please select one of the items in a list");
    shop.press("messageOkButton");
    QCOMPARE(shop.page(), PageCategoryList);
}

void TestCategories::idsOfNewCategories()
{
    ShopDriver shop;
    openCategories(shop);
    addCategory(shop, "Food");
    QCOMPARE(shop.db->rows("select * from category"), (QList<QVariantList>{{1, "Food"}}));
    shop.db->add(category(7, "Tools"));
    addCategory(shop, "Toys");
    QCOMPARE(shop.db->column("select id from category where name = 'Toys'"), QVariantList{8});
}

void TestCategories::newCategoryIsLastUntilTheListIsFilledAgain()
{
    ShopDriver shop({category("b"), category("B")});
    openCategories(shop);
    QCOMPARE(shop.rows(), (QStringList{"B", "b"})); // upper case first
    addCategory(shop, "a");
    QCOMPARE(shop.page(), PageCategoryList);
    QCOMPARE(shop.rows(), (QStringList{"B", "b", "a"}));
    QCOMPARE(shop.list()->currentRow(), 2);
    shop.press("backButton");
    shop.press("categoryButton");
    QCOMPARE(shop.rows(), (QStringList{"B", "a", "b"}));
}

void TestCategories::tappingTwiceInSuccessionEdits()
{
    ShopDriver shop({category("a"), category("b")});
    openCategories(shop);
    shop.tap(0);
    shop.tap(1);
    shop.tap(0);
    QCOMPARE(shop.page(), PageCategoryList);
    QTRY_COMPARE(shop.banner(), "Tap it again to edit it");
    shop.tap(0);
    QCOMPARE(shop.page(), PageCategoryEdit);
    QCOMPARE(shop.find<QLineEdit>("nameField")->text(), "a");
    QVERIFY(shop.isEnabled("deleteButton"));
}

void TestCategories::quickDoubleTapEdits()
{
    ShopDriver shop({category("a"), category("b")});
    openCategories(shop);
    shop.doubleTap(1);
    QCOMPARE(shop.page(), PageCategoryEdit);
    shop.press("backButton");
    // On the row that was tapped before, the first tap opens the page; the second one must not
    // press a button there.
    shop.doubleTap(1);
    QCOMPARE(shop.page(), PageCategoryEdit);
}

void TestCategories::lastTapIsRememberedBetweenVisits()
{
    ShopDriver shop({category("a"), category("b")});
    openCategories(shop);
    shop.tap(1);
    shop.press("backButton");
    shop.press("categoryButton");
    shop.tap(1);
    QCOMPARE(shop.page(), PageCategoryEdit);
}

void TestCategories::renaming()
{
    ShopDriver shop({category("a"), category("b")});
    openCategories(shop);
    shop.doubleTap(0);
    shop.type("z");
    shop.press("saveButton");
    QCOMPARE(shop.rows(), (QStringList{"z", "b"}));
    QCOMPARE(shop.db->column("select name from category order by id"), (QVariantList{"z", "b"}));
}

void TestCategories::deletingClearsTheStoreWithTheSameId()
{
    ShopDriver shop({category(3, "a"), category(4, "b"), store(3, "store three").inCategory(4),
                     store(5, "store five").inCategory(3)});
    openCategories(shop);
    shop.doubleTap(0);
    shop.press("deleteButton");
    QCOMPARE(shop.message(), "Deleting Category: Are You really want to delete category 'a' ?");
    shop.press("confirmationYesButton");
    QCOMPARE(shop.page(), PageCategoryList);
    QCOMPARE(shop.rows(), QStringList("b"));
    QCOMPARE(shop.db->column("select id from category"), QVariantList{4});
    QCOMPARE(shop.db->rows("select id, coalesce(categoryid, 'null') from magazin order by id"),
             (QList<QVariantList>{{3, "null"}, {5, 3}}));
}

void TestCategories::deletingCanBeDeclined()
{
    ShopDriver shop(category("a"));
    openCategories(shop);
    shop.doubleTap(0);
    shop.press("deleteButton");
    shop.press("confirmationNoButton");
    QCOMPARE(shop.page(), PageCategoryEdit);
    QCOMPARE(shop.db->column("select name from category"), QVariantList{"a"});
}

void TestCategories::namesAreUpTo25Characters()
{
    ShopDriver shop;
    openCategories(shop);
    addCategory(shop, QString("n").repeated(26));
    QCOMPARE(shop.db->column("select name from category"), QVariantList{QString("n").repeated(25)});
}

void TestCategories::emptyNameIsRefused()
{
    ShopDriver shop(category("a"));
    openCategories(shop);
    for (const bool editing : {false, true}) {
        if (editing)
            shop.doubleTap(0);
        else
            shop.press("addButton");
        QCOMPARE(shop.isEnabled("deleteButton"), editing);
        shop.type("");
        shop.press("saveButton");
        QCOMPARE(shop.message(), "Name field is Empty: Please fill the Name field");
        shop.press("messageOkButton");
        QCOMPARE(shop.page(), PageCategoryEdit);
        shop.press("backButton");
    }
    QCOMPARE(shop.db->column("select name from category"), QVariantList{"a"});
}

void TestCategories::quoteIsNotStored()
{
    ShopDriver shop;
    openCategories(shop);
    addCategory(shop, "Joe's");
    // The page continues as if the statement had worked.
    QCOMPARE(shop.rows(), QStringList("Joe's"));
    QCOMPARE(shop.db->column("select name from category"), QVariantList());
}

void TestCategories::choiceGoesToTheStore()
{
    ShopDriver shop({category("a"), category("b & c")});
    openCategories(shop);
    QCOMPARE(shop.list()->currentRow(), 0);
    shop.tap(1);
    shop.press("selectButton");
    QCOMPARE(shop.page(), PageStoreEdit);
    QCOMPARE(shop.buttonText("categoryButton"), "b & c");
}

void TestCategories::lastChoiceIsPreselected()
{
    ShopDriver shop({category("a"), category("b")});
    openCategories(shop);
    shop.tap(1);
    shop.press("selectButton");
    shop.press("categoryButton");
    QCOMPARE(shop.list()->currentRow(), 1);
    QVERIFY(shop.db->run("delete from category where id = 2"));
    shop.press("backButton");
    shop.press("categoryButton");
    QCOMPARE(shop.list()->currentRow(), 0);
}

void TestCategories::backChoosesNothing()
{
    ShopDriver shop(category("a"));
    openCategories(shop);
    shop.press("backButton");
    QCOMPARE(shop.page(), PageStoreEdit);
    QCOMPARE(shop.buttonText("categoryButton"), "(click to select)");
}

void TestCategories::enterSavesAndEscapeGoesBack()
{
    ShopDriver shop;
    openCategories(shop);
    shop.press("addButton");
    QVERIFY(shop.find<QLineEdit>("nameField")->hasFocus());
    shop.type("Food");
    QTest::keyClick(shop.window->windowHandle(), Qt::Key_Return);
    QCOMPARE(shop.page(), PageCategoryList);
    QCOMPARE(shop.db->column("select name from category"), QVariantList{"Food"});
    shop.press("addButton");
    shop.type("dropped");
    QTest::keyClick(shop.window->windowHandle(), Qt::Key_Escape);
    QCOMPARE(shop.page(), PageCategoryList);
    QTest::keyClick(shop.window->windowHandle(), Qt::Key_Escape);
    QCOMPARE(shop.page(), PageStoreEdit);
    QCOMPARE(shop.db->column("select name from category"), QVariantList{"Food"});
}

STOPPABLE_TEST_MAIN(TestCategories)
#include "tst_categories.moc"
