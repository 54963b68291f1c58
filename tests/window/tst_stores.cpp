// SPDX-License-Identifier: MIT
#include <QLineEdit>
#include <QStackedWidget>
#include <QStyleHints>
#include <QtTest>

#include "base/pages.h"
#include "gps/trshopgps.h"
#include "tests/support/records.h"
#include "tests/support/shopdriver.h"
#include "tests/support/testpositionplugin.h"

Q_IMPORT_PLUGIN(TestPositionPlugin)

class TestStores : public QObject
{
    Q_OBJECT

private slots:
    void doubleTapThatOpensAPagePressesNothingThere();
    void unhurriedTapsOnOneSpotAllCount();
    void nothingIsSelectedAtStart();
    void newStoreWithoutAnything();
    void newStoreFromTheStoresPageIsShown();
    void newStoreFromTheListIsAppended();
    void storeAddedInThePickerIsNotChosenByGoingBack();
    void categoryIsFoundByItsName();
    void categoryThatIsGone();
    void distanceTexts();
    void distanceOfAStoreWithoutCoordinates();
    void distanceIsAskedForOncePerFill();
    void distanceIsToTheStoreThatShows();
    void distanceIsToTheStoreThatShowsWhateverIsEdited();
    void storeThatIsNotInTheListIsNotPreselected();
    void withGpsAStoreWithoutCoordinatesAsksForNothing();
    void coordinatesButtonAfterPagesAreBuiltAnew();
    void withoutAPositionSource();
    void newCoordinatesReplaceTheRow();
    void coordinatesButtonTexts();
    void coordinatesButtonNeverTellsOfAnotherStore();
    void editing();
    void deletingLeavesTheLists();
    void listPreselectsTheCurrentStore();
    void tapTwiceChooses();
    void tapAfterEditingChoosesAtOnce();
    void quickDoubleTapChooses();
    void emptyNameIsRefused();
    void newStoreHasNoCoordinatesOfARefusedOne();
    void storeThatIsRefusedLeavesOthersAlone();
    void everyOfManyStoresShowsItsCategory();
    void namesAndStatements_data();
    void namesAndStatements();
    void quoteInACategoryFindsNone();
    void strangeRecords();
    void storeThatIsGoneLeavesTheValues();
    void coordinatesPageLeadsBack();

private:
    static void openStoreList(ShopDriver &shop)
    {
        if (shop.page() == PageMain)
            shop.press("shopsButton");
        shop.press("storesButton");
        QCOMPARE(shop.page(), PageStoreList);
    }
    static void choose(ShopDriver &shop, int row)
    {
        openStoreList(shop);
        shop.tap(row);
        shop.press("selectButton");
        QCOMPARE(shop.page(), PageStores);
    }
    static QStringList values(ShopDriver &shop)
    {
        return {shop.labelText("storeName"), shop.labelText("storeCategory"),
                shop.labelText("storeDistance")};
    }
};

static const Records threeStores{
    category(1, "Food"),
    store("Bakery").inCategory(1),
    store("Dairy"),
    store(5, "Tools").inCategory(9).at(59.9, 10.7, 12.5),
};

void TestStores::doubleTapThatOpensAPagePressesNothingThere()
{
    ShopDriver shop;
    QVERIFY(shop.doubleTap("shopsButton", PageStores));
    QCOMPARE(shop.page(), PageStores);
    // The next tap is for the page that is shown.
    shop.press("newButton");
    QCOMPARE(shop.page(), PageStoreEdit);
}

void TestStores::unhurriedTapsOnOneSpotAllCount()
{
    ShopDriver shop;
    const auto *button = shop.find<QWidget>("shopsButton");
    const QPoint spot = button->mapTo(shop.window.get(), button->rect().center());
    shop.touch(spot);
    QCOMPARE(shop.page(), PageStores);
    const auto *other = shop.pageWidget()->findChild<QWidget *>("newButton");
    const QPoint there = other->mapTo(shop.window.get(), other->rect().center());
    // The touch after this one is at the very same point, half a second later.
    shop.touch(there);
    QCOMPARE(shop.page(), PageStoreEdit);
    shop.press("backButton");
    QTest::qWait(QGuiApplication::styleHints()->mouseDoubleClickInterval() + 50);
    shop.touch(there);
    QCOMPARE(shop.page(), PageStoreEdit);
}

void TestStores::nothingIsSelectedAtStart()
{
    ShopDriver shop;
    shop.press("shopsButton");
    QCOMPARE(values(shop), (QStringList{"(not selected)", "(not selected)", "(not selected)"}));
    QVERIFY(!shop.isEnabled("editButton"));
}

void TestStores::newStoreWithoutAnything()
{
    ShopDriver shop;
    shop.press("shopsButton");
    shop.press("newButton");
    QVERIFY(!shop.isEnabled("deleteButton"));
    QCOMPARE(shop.buttonText("categoryButton"), "(click to select)");
    QCOMPARE(shop.buttonText("coordinatesButton"), "(set Coordinates)");
    shop.type("Corner shop");
    shop.press("saveButton");
    QCOMPARE(shop.db->rows("select id, name, categoryid is null, gpsid is null from magazin"),
             (QList<QVariantList>{{1, "Corner shop", 1, 1}}));
    QCOMPARE(shop.db->rows("select * from gpscoord"), QList<QVariantList>());
    QCOMPARE(values(shop), (QStringList{"Corner shop", "(not selected)", "(no Coordinates set)"}));
}

void TestStores::newStoreFromTheStoresPageIsShown()
{
    ShopDriver shop(threeStores);
    shop.press("shopsButton");
    shop.press("newButton");
    shop.type("Fish");
    shop.press("categoryButton");
    shop.press("selectButton");
    shop.press("saveButton");
    QCOMPARE(shop.page(), PageStores);
    QCOMPARE(values(shop), (QStringList{"Fish", "Food", "(no Coordinates set)"}));
    QVERIFY(shop.isEnabled("editButton"));
    QCOMPARE(shop.db->rows("select id, categoryid from magazin where name = 'Fish'"),
             (QList<QVariantList>{{6, 1}}));
}

void TestStores::newStoreFromTheListIsAppended()
{
    ShopDriver shop(threeStores);
    openStoreList(shop);
    QCOMPARE(shop.rows(), (QStringList{"Bakery|Food", "Dairy", "Tools"}));
    shop.press("addButton");
    shop.type("Aprons");
    shop.press("categoryButton");
    shop.press("selectButton");
    shop.press("saveButton");
    QCOMPARE(shop.page(), PageStoreList);
    QCOMPARE(shop.rows(), (QStringList{"Bakery|Food", "Dairy", "Tools", "Aprons|Food"}));
}

void TestStores::storeAddedInThePickerIsNotChosenByGoingBack()
{
    ShopDriver shop(threeStores);
    choose(shop, 1);
    shop.press("storesButton");
    shop.press("addButton");
    shop.type("Aprons");
    shop.press("saveButton");
    shop.press("backButton");
    QCOMPARE(shop.labelText("storeName"), "Dairy");
    shop.press("editButton");
    QCOMPARE(shop.find<QLineEdit>("nameField")->text(), "Dairy");
}

void TestStores::categoryIsFoundByItsName()
{
    ShopDriver shop({category("Same"), category("Same")});
    shop.press("shopsButton");
    shop.press("newButton");
    shop.type("Corner shop");
    shop.press("categoryButton");
    shop.tap(1);
    shop.press("selectButton");
    shop.press("saveButton");
    QCOMPARE(shop.db->column("select categoryid from magazin"), QVariantList{1});
}

void TestStores::categoryThatIsGone()
{
    ShopDriver shop(threeStores);
    choose(shop, 2);
    QCOMPARE(shop.labelText("storeCategory"), "(not selected)");
    shop.press("editButton");
    QCOMPARE(shop.buttonText("categoryButton"), "(click to select)");
}

void TestStores::distanceTexts()
{
    ShopDriver shop(threeStores);
    choose(shop, 2);
    QCOMPARE(shop.labelText("storeDistance"), "(GPS disabled)");
    shop.window->gpsAcquired(10.7, 59.901, 0);
    shop.press("backButton");
    shop.press("shopsButton");
    const float meters = TrShopGps::distanceBetween(59.901F, 10.7F, 59.9F, 10.7F);
    QVERIFY(meters > 111 && meters < 112);
    QCOMPARE(shop.labelText("storeDistance"), QString("%1 meters").arg(double(meters), 0, 'f', 2));
}

void TestStores::distanceOfAStoreWithoutCoordinates()
{
    ShopDriver shop(threeStores);
    choose(shop, 1);
    QCOMPARE(shop.labelText("storeDistance"), "(no Coordinates set)");
    shop.window->gpsAcquired(10.7, 59.901, 0);
    shop.press("backButton");
    shop.press("shopsButton");
    QCOMPARE(shop.labelText("storeDistance"), "(no Coordinates set)");
}

void TestStores::distanceIsAskedForOncePerFill()
{
    ShopDriver shop(threeStores, {{"GpsEnabled", true}});
    const auto *source = TestPositionSource::instance();
    QVERIFY(source);
    choose(shop, 2);
    QCOMPARE(shop.labelText("storeDistance"), "(calculating)");
    QCOMPARE(source->requests, 1);
    shop.press("backButton");
    shop.press("shopsButton");
    QCOMPARE(source->requests, 2);
    TestPositionSource::instance()->deliver(59.9, 10.7);
    QCOMPARE(shop.labelText("storeDistance"), "0.00 meters");
    // It is shown once; the next position has no effect.
    TestPositionSource::instance()->deliver(59.901, 10.7);
    QCOMPARE(shop.labelText("storeDistance"), "0.00 meters");
    choose(shop, 1);
    QCOMPARE(shop.labelText("storeDistance"), "(no Coordinates set)");
    QCOMPARE(source->requests, 2);
}

void TestStores::newCoordinatesReplaceTheRow()
{
    ShopDriver shop(threeStores);
    choose(shop, 2);
    shop.press("editButton");
    shop.window->mapMarkUpdated(55.7558321, -37.25);
    shop.press("saveButton");
    QCOMPARE(shop.db->rows("select id, latitude, longitude, altitude from gpscoord"),
             (QList<QVariantList>{{5, 55.755833, -37.25, 0.0}}));
    shop.press("newButton");
    shop.type("Fish");
    shop.window->mapMarkUpdated(1, 2);
    shop.press("saveButton");
    QCOMPARE(shop.db->rows("select id, latitude, longitude, altitude from gpscoord where id = 6"),
             (QList<QVariantList>{{6, 1.0, 2.0, 0.0}}));
    // The coordinates taken for one store are not used for the next one.
    shop.press("newButton");
    shop.type("Meat");
    shop.press("saveButton");
    QCOMPARE(shop.db->rows("select * from gpscoord where id = 7"), QList<QVariantList>());
}

void TestStores::distanceIsToTheStoreThatShows()
{
    ShopDriver shop({threeStores, sql("insert into gpscoord values (1, 0, 0, 0)")});
    shop.window->gpsAcquired(0, 0, 0);
    choose(shop, 0);
    QCOMPARE(shop.labelText("storeDistance"), "0.00 meters");
    choose(shop, 2);
    QVERIFY(shop.labelText("storeDistance") != "0.00 meters");
}

void TestStores::distanceIsToTheStoreThatShowsWhateverIsEdited()
{
    ShopDriver shop(threeStores, {{"GpsEnabled", true}});
    choose(shop, 2);
    QCOMPARE(shop.labelText("storeDistance"), "(calculating)");
    shop.press("editButton");
    shop.window->mapMarkUpdated(1, 2);
    TestPositionSource::instance()->deliver(59.9, 10.7);
    shop.press("backButton");
    QCOMPARE(shop.labelText("storeDistance"), "0.00 meters");
}

void TestStores::storeThatIsNotInTheListIsNotPreselected()
{
    ShopDriver shop(threeStores);
    choose(shop, 1);
    QVERIFY(shop.db->run("delete from magazin where id = 2"));
    shop.press("storesButton");
    QCOMPARE(shop.list()->currentRow(), -1);
    shop.press("selectButton");
    QCOMPARE(shop.message(), "Not selected: Please select one of the items in a list");
}

void TestStores::withGpsAStoreWithoutCoordinatesAsksForNothing()
{
    ShopDriver shop(threeStores, {{"GpsEnabled", true}});
    choose(shop, 1);
    QCOMPARE(shop.labelText("storeDistance"), "(no Coordinates set)");
    QCOMPARE(TestPositionSource::instance()->requests, 0);
    TestPositionSource::instance()->deliver(59.9, 10.7);
    QCOMPARE(shop.labelText("storeDistance"), "(no Coordinates set)");
}

void TestStores::coordinatesButtonAfterPagesAreBuiltAnew()
{
    ShopDriver shop(threeStores, {{"GpsEnabled", true}});
    choose(shop, 2);
    shop.press("editButton");
    shop.press("backButton");
    shop.press("backButton");
    shop.changeLanguage("englishRadio");
    shop.press("shopsButton");
    shop.press("editButton");
    QCOMPARE(shop.buttonText("coordinatesButton"), "(set Coordinates)");
}

void TestStores::withoutAPositionSource()
{
    ShopDriver shop(threeStores);
    shop.window->gpsAvailable = false;
    choose(shop, 2);
    QCOMPARE(shop.labelText("storeDistance"), "(GPS is not Available)");
    shop.press("editButton");
    QCOMPARE(shop.buttonText("coordinatesButton"), "(GPS is not Available)");
    QVERIFY(!shop.isEnabled("coordinatesButton"));
    shop.window->mapMarkUpdated(1, 2);
    shop.press("saveButton");
    QCOMPARE(shop.db->rows("select latitude, longitude, altitude from gpscoord"),
             (QList<QVariantList>{{59.9, 10.7, 12.5}}));
    shop.press("newButton");
    QCOMPARE(shop.buttonText("coordinatesButton"), "(GPS is not Available)");
    QVERIFY(!shop.isEnabled("coordinatesButton"));
    shop.type("Fish");
    shop.window->mapMarkUpdated(1, 2);
    shop.press("saveButton");
    QCOMPARE(shop.db->column("select id from gpscoord"), QVariantList{5});
}

void TestStores::coordinatesButtonTexts()
{
    ShopDriver shop(threeStores);
    choose(shop, 2);
    shop.press("editButton");
    QCOMPARE(shop.buttonText("coordinatesButton"), "coords is set (edit...)");
    QVERIFY(shop.isEnabled("coordinatesButton"));
    shop.press("backButton");
    choose(shop, 0);
    shop.press("editButton");
    QCOMPARE(shop.buttonText("coordinatesButton"), "(enter GPS)");
}

void TestStores::coordinatesButtonNeverTellsOfAnotherStore()
{
    ShopDriver shop(threeStores, {{"GpsEnabled", true}});
    choose(shop, 2);
    shop.press("editButton");
    QCOMPARE(shop.buttonText("coordinatesButton"), "(set Coordinates)");
    shop.press("coordinatesButton");
    shop.press("gpsViewButton");
    shop.press("getFromGpsButton");
    TestPositionSource::instance()->deliver(59.9, 10.7);
    shop.press("setButton");
    QCOMPARE(shop.buttonText("coordinatesButton"), "coords is set (edit...)");
    shop.press("backButton");
    shop.press("editButton");
    QCOMPARE(shop.buttonText("coordinatesButton"), "coords is set (edit...)");
    shop.press("backButton");
    choose(shop, 0);
    shop.press("editButton");
    QCOMPARE(shop.buttonText("coordinatesButton"), "(set Coordinates)");
}

void TestStores::editing()
{
    ShopDriver shop(threeStores);
    choose(shop, 2);
    shop.press("editButton");
    QVERIFY(shop.isEnabled("deleteButton"));
    QCOMPARE(shop.find<QLineEdit>("nameField")->text(), "Tools");
    shop.type("Better tools");
    shop.press("categoryButton");
    shop.press("selectButton");
    shop.press("saveButton");
    QCOMPARE(shop.page(), PageStores);
    QCOMPARE(shop.labelText("storeName"), "Better tools");
    QCOMPARE(shop.labelText("storeCategory"), "Food");
    QCOMPARE(shop.db->rows("select name, categoryid, gpsid is null from magazin where id = 5"),
             (QList<QVariantList>{{"Better tools", 1, 1}}));
    // Coordinates that were not edited remain.
    QCOMPARE(shop.db->rows("select * from gpscoord"), (QList<QVariantList>{{5, 59.9, 10.7, 12.5}}));
}

void TestStores::deletingLeavesTheLists()
{
    ShopDriver shop({threeStores, openList("Weekend").ofStore(5)});
    choose(shop, 2);
    shop.press("editButton");
    shop.press("deleteButton");
    QCOMPARE(shop.message(), "Deleting Store: Are You really want to delete store named 'Tools' ?");
    shop.press("confirmationYesButton");
    QCOMPARE(values(shop), (QStringList{"(not selected)", "(not selected)", "(not selected)"}));
    QVERIFY(!shop.isEnabled("editButton"));
    QCOMPARE(shop.db->column("select id from magazin order by id"), (QVariantList{1, 2}));
    QCOMPARE(shop.db->rows("select * from gpscoord"), QList<QVariantList>());
    QCOMPARE(shop.db->rows("select * from shoplist"), (QList<QVariantList>{{1, "Weekend", 5, 1}}));
}

void TestStores::listPreselectsTheCurrentStore()
{
    ShopDriver shop(threeStores);
    openStoreList(shop);
    QCOMPARE(shop.list()->currentRow(), -1);
    shop.press("selectButton");
    QCOMPARE(shop.message(), "Not selected: Please select one of the items in a list");
    shop.press("messageOkButton");
    QCOMPARE(shop.page(), PageStoreList);
    shop.tap(1);
    shop.press("selectButton");
    shop.press("storesButton");
    QCOMPARE(shop.list()->currentRow(), 1);
}

void TestStores::tapTwiceChooses()
{
    ShopDriver shop(threeStores);
    openStoreList(shop);
    shop.tap(0);
    shop.tap(1);
    QCOMPARE(shop.page(), PageStoreList);
    shop.tap(1);
    QCOMPARE(shop.page(), PageStores);
    QCOMPARE(shop.labelText("storeName"), "Dairy");
}

void TestStores::tapAfterEditingChoosesAtOnce()
{
    ShopDriver shop(threeStores);
    choose(shop, 1);
    shop.press("editButton");
    shop.press("backButton");
    shop.press("storesButton");
    shop.tap(1);
    QCOMPARE(shop.page(), PageStores);
}

void TestStores::quickDoubleTapChooses()
{
    ShopDriver shop(threeStores);
    openStoreList(shop);
    shop.doubleTap(2);
    QCOMPARE(shop.page(), PageStores);
    QCOMPARE(shop.labelText("storeName"), "Tools");
    // The row is remembered: its first tap chooses the store, and the second one must not press a
    // button at the same place on the next page.
    shop.press("storesButton");
    shop.doubleTap(2);
    QCOMPARE(shop.page(), PageStores);
}

void TestStores::emptyNameIsRefused()
{
    ShopDriver shop;
    shop.press("shopsButton");
    shop.press("newButton");
    shop.press("saveButton");
    QCOMPARE(shop.message(), "Name field is Empty: Please fill the Name field");
    shop.press("messageOkButton");
    QCOMPARE(shop.page(), PageStoreEdit);
    QCOMPARE(shop.db->column("select id from magazin"), QVariantList());
}

void TestStores::namesAndStatements_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("added");   // null: nothing is added
    QTest::addColumn<QString>("updated"); // null: nothing is updated
    QTest::newRow("percent") << "100%"
                             << "100%"
                             << "100%";
    QTest::newRow("%1") << "%1" << QString() << QString();
    QTest::newRow("%2") << "%2" << QString() << "null";
    QTest::newRow("a%3") << "a%3"
                         << "anull"
                         << "anull";
    QTest::newRow("a%4") << "a%4"
                         << "anull"
                         << "a1";
    QTest::newRow("quote") << "Joe's" << QString() << QString();
    QTest::newRow("two quotes") << "It''s"
                                << "It's"
                                << "It's";
    QTest::newRow("emoji") << "🥐"
                           << "🥐"
                           << "🥐";
}

/// Coordinates of a store that is not there, as earlier versions left them when the row of a store
/// was refused.
void TestStores::newStoreHasNoCoordinatesOfARefusedOne()
{
    ShopDriver shop(Records().sql("insert into gpscoord values (1, 10.1, 20.2, 0)"));
    shop.press("shopsButton");
    shop.press("newButton");
    shop.type("Corner shop");
    shop.press("saveButton");
    QCOMPARE(shop.db->column("select id from magazin"), QVariantList{1});
    QCOMPARE(shop.db->rows("select * from gpscoord"), QList<QVariantList>());
    QCOMPARE(values(shop), (QStringList{"Corner shop", "(not selected)", "(no Coordinates set)"}));
}

/// After the largest id no new one is found, and id 1 is tried.
void TestStores::storeThatIsRefusedLeavesOthersAlone()
{
    ShopDriver shop({store(1, "Bakery").at(10.1, 20.2), store(2147483647, "Dairy")});
    shop.press("shopsButton");
    shop.press("newButton");
    shop.type("Corner shop");
    shop.press("saveButton");
    QCOMPARE(shop.db->column("select name from magazin order by id"),
             (QVariantList{"Bakery", "Dairy"}));
    QCOMPARE(shop.db->rows("select id, latitude from gpscoord"), (QList<QVariantList>{{1, 10.1}}));
}

/// Names of categories are read in different ways for few and for many categories.
void TestStores::everyOfManyStoresShowsItsCategory()
{
    Records records;
    QStringList rows;
    for (int id = 101; id <= 160; ++id) {
        // Every fifth category is gone.
        if (id % 5 != 0)
            records.category(id, QString("category %1").arg(id));
        const QString name = QString("store %1").arg(id);
        records.store(1000 + id, name).inCategory(id);
        rows << (id % 5 != 0 ? QString("%1|category %2").arg(name).arg(id) : name);
    }
    ShopDriver shop(records);
    shop.press("shopsButton");
    shop.press("storesButton");
    QCOMPARE(shop.rows(), rows);
}

void TestStores::namesAndStatements()
{
    QFETCH(QString, name);
    QFETCH(QString, added);
    QFETCH(QString, updated);
    ShopDriver shop({store("Bakery"), store("Dairy")});
    choose(shop, 0);
    shop.press("editButton");
    shop.find<QLineEdit>("nameField")->selectAll();
    shop.find<QLineEdit>("nameField")->insert(name);
    shop.press("saveButton");
    QVariantList expected{updated.isNull() ? QString("Bakery") : updated, "Dairy"};
    QCOMPARE(shop.db->column("select name from magazin order by id"), expected);
    shop.press("newButton");
    shop.find<QLineEdit>("nameField")->insert(name);
    shop.press("saveButton");
    if (!added.isNull())
        expected << added;
    QCOMPARE(shop.db->column("select name from magazin order by id"), expected);
}

void TestStores::quoteInACategoryFindsNone()
{
    ShopDriver shop(category("Joe's"));
    shop.press("shopsButton");
    shop.press("newButton");
    shop.type("Corner shop");
    shop.press("categoryButton");
    shop.press("selectButton");
    QCOMPARE(shop.buttonText("categoryButton"), "Joe's");
    shop.press("saveButton");
    QCOMPARE(shop.db->rows("select name, categoryid is null from magazin"),
             (QList<QVariantList>{{"Corner shop", 1}}));
}

void TestStores::strangeRecords()
{
    ShopDriver shop({category(2147483647, "top"), store(2147483647, "same").inCategory(2147483647),
                     sql("insert into magazin values (3, 'same', -1, 7)"),
                     sql("insert into magazin values (4, null, null, null)"),
                     sql("insert into gpscoord values (3, 999, -999, null)")});
    openStoreList(shop);
    QCOMPARE(shop.list()->count(), 3);
    shop.press("backButton");
    shop.window->gpsAcquired(10, 20, 0);
    for (int row = 0; row < 3; ++row) {
        choose(shop, row);
        shop.press("editButton");
        shop.press("saveButton");
        QCOMPARE(shop.message(), row == 0 ? "Name field is Empty: Please fill the Name field"
                                          : QString("no message on storesPage"));
        if (row == 0) {
            shop.press("messageOkButton");
            shop.press("backButton");
        }
    }
    shop.press("newButton");
    shop.type("next");
    shop.press("saveButton");
    QCOMPARE(shop.db->column("select id from magazin where name = 'next'"), QVariantList{1});
}

void TestStores::storeThatIsGoneLeavesTheValues()
{
    ShopDriver shop(threeStores);
    choose(shop, 0);
    QVERIFY(shop.db->run("delete from magazin"));
    shop.press("backButton");
    shop.press("shopsButton");
    QCOMPARE(shop.labelText("storeName"), "Bakery");
}

void TestStores::coordinatesPageLeadsBack()
{
    ShopDriver shop;
    shop.press("shopsButton");
    shop.press("newButton");
    shop.type("half typed");
    shop.press("coordinatesButton");
    QCOMPARE(shop.page(), PageCoordinates);
    shop.press("backButton");
    QCOMPARE(shop.page(), PageStoreEdit);
    QCOMPARE(shop.find<QLineEdit>("nameField")->text(), "half typed");
}

STOPPABLE_TEST_MAIN(TestStores)
#include "tst_stores.moc"
