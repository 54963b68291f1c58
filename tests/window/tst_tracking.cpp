// SPDX-License-Identifier: MIT
#include <QLabel>
#include <QRadioButton>
#include <QStackedWidget>
#include <QtTest>

#include "base/pages.h"
#include "tests/support/records.h"
#include "tests/support/shopdriver.h"
#include "tests/support/testpositionplugin.h"

Q_IMPORT_PLUGIN(TestPositionPlugin)

/// Two categories and four stores: Bakery has two open lists, Dairy one, Tools only closed ones,
/// and Market an open list but no coordinates.
static const Records fourStores{
    category(1, "Food"),
    category(2, "Hardware"),
    store(3, "Bakery")
        .inCategory(1)
        .at(10.01, 20)
        .openList("Bread")
        .list("Cakes", ListPartlyChecked),
    store("Dairy").at(10.02, 20).list("Milk", ListPartlyChecked),
    store("Tools")
        .inCategory(2)
        .at(10.03, 20)
        .list("Nails", ListFinished)
        .list("Nothing", ListEmpty),
    store("Market").inCategory(1).openList("Weekend"),
};
static const QVariantMap gpsOn{{"GpsEnabled", true}};
static const QString noStores = "Tracking Warning: There are no stores matching selected criteria "
                                "with active shopping lists.";

class TestTracking : public QObject
{
    Q_OBJECT

private slots:
    void cleanup()
    {
        TestPositionPlugin::offersSource = true;
    }
    void pageAtFirst();
    void noPositionSource();
    void gpsIsNotEnabled();
    void nothingMatches();
    void startAndStop();
    void stopWithGpsAutostart();
    void switchingGpsOffStops();
    void criteriaWhileTracking();
    void byStoreWithNoStorePicked();
    void criterionByStore();
    void criterionByCategory();
    void captionOfTheLastCriterion();
    void onlyOpenListsWithCoordinates();
    void noCriterion();
    void storesEquallyFar();
    void choicesAreNamedAsTheyAreNow();
    void choicesWhileTrackingNameWhatIsTracked();
    void backLeadsToTheMainPage();
    void trackedAreNotLookedForAnew();
    void trackingStartsByItself();
    void trackingStartsByItselfWithoutStores();
    void trackingStartsByItselfWithGpsOff();
    void pagesBuiltAnewTellTheTruth();
    void viewWithGpsOff();
    void viewWaitsForAPosition();
    void viewWaitsWhileTracking();
    void viewThatNobodyWaitsForAnyMore();
    void viewWhenNothingMatches();
    void viewOfBrokenRecords();

private:
    static TestPositionSource *source()
    {
        return TestPositionSource::instance();
    }
    static void openTracking(ShopDriver &shop)
    {
        shop.press("reminderButton");
        QCOMPARE(shop.page(), PageTracking);
    }
    static void choose(ShopDriver &shop, const char *radio)
    {
        shop.press(radio);
        QVERIFY(shop.find<QRadioButton>(radio)->isChecked());
    }
    static void pick(ShopDriver &shop, const char *button, int row)
    {
        shop.press(button);
        shop.tap(row);
        shop.press("selectButton");
        QCOMPARE(shop.page(), PageTracking);
    }
    static bool isTracking(ShopDriver &shop)
    {
        const bool tracking = shop.isEnabled("stopButton");
        if (shop.isEnabled("startButton") == tracking ||
            shop.find<QWidget>("criteria")->isEnabled() == tracking)
            stopTest("the buttons do not agree");
        return tracking;
    }
    /// Returns the rows of "View tracked" without a position.
    static QStringList view(ShopDriver &shop)
    {
        shop.press("viewButton");
        if (shop.page() == PageTracking)
            return {"nothing"};
        QStringList names = shop.rows();
        shop.press("okButton");
        return names.replaceInStrings("|unknown", "");
    }
    template <typename Widget>
    static Widget *hidden(ShopDriver &shop, const char *name)
    {
        return shop.window->findChild<Widget *>(name);
    }
};

void TestTracking::pageAtFirst()
{
    ShopDriver shop(fourStores, gpsOn);
    openTracking(shop);
    QVERIFY(!isTracking(shop));
    QVERIFY(shop.find<QRadioButton>("allStoresRadio")->isChecked());
    QVERIFY(!shop.isEnabled("categoryButton"));
    QVERIFY(!shop.isEnabled("storeButton"));
    QVERIFY(shop.isEnabled("viewButton"));
    QCOMPARE(shop.buttonText("categoryButton"), "(click to select)");
    QCOMPARE(shop.buttonText("storeButton"), "(click to select)");
    // One criterion at a time, with its button.
    choose(shop, "byCategoryRadio");
    QVERIFY(shop.isEnabled("categoryButton"));
    QVERIFY(!shop.isEnabled("storeButton"));
    choose(shop, "byStoreRadio");
    QVERIFY(!shop.isEnabled("categoryButton"));
    QVERIFY(shop.isEnabled("storeButton"));
    QVERIFY(!shop.find<QRadioButton>("byCategoryRadio")->isChecked());
    choose(shop, "allStoresRadio");
    QVERIFY(!shop.isEnabled("storeButton"));
    QCOMPARE(source()->calls, QStringList());
}

void TestTracking::noPositionSource()
{
    ShopDriver shop(fourStores, gpsOn);
    shop.window->gpsAvailable = false;
    openTracking(shop);
    shop.press("startButton");
    QCOMPARE(shop.page(), PageTracking);
    QVERIFY(!isTracking(shop));
    QCOMPARE(source()->calls, QStringList());
    // The message is on a page that is not shown.
    QCOMPARE(hidden<QLabel>(shop, "messageTitle")->text(), "No GPS available");
    QCOMPARE(hidden<QLabel>(shop, "messageText")->text(),
             "GPS tracking can not be started, cause no GPS available on this device.");
}

void TestTracking::gpsIsNotEnabled()
{
    const int before = TestPositionSource::made();
    ShopDriver shop(fourStores, {{"GpsEnabled", false}});
    openTracking(shop);
    shop.press("startButton");
    QCOMPARE(shop.page(), PageTracking);
    QVERIFY(!isTracking(shop));
    QCOMPARE(TestPositionSource::made(), before);
    QCOMPARE(hidden<QLabel>(shop, "messageTitle")->text(), "GPS is not Enabled");
    QCOMPARE(hidden<QLabel>(shop, "messageText")->text(),
             "GPS tracking can not be started, cause GPS is Diasabled.  You can enable GPS usage "
             "in the Option at the Main page.");
}

void TestTracking::nothingMatches()
{
    ShopDriver shop(store("Bakery").at(10, 20).list("Bread", ListFinished), gpsOn);
    openTracking(shop);
    shop.press("startButton");
    QCOMPARE(shop.message(), noStores);
    shop.press("messageOkButton");
    QCOMPARE(shop.page(), PageTracking);
    QVERIFY(!isTracking(shop));
    QCOMPARE(source()->calls, QStringList());
}

void TestTracking::startAndStop()
{
    ShopDriver shop(fourStores, gpsOn);
    openTracking(shop);
    shop.press("startButton");
    QCOMPARE(shop.page(), PageTracking);
    QVERIFY(isTracking(shop));
    QCOMPARE(source()->calls, (QStringList{"start", "interval 3000"}));
    source()->calls.clear();
    shop.press("stopButton");
    QCOMPARE(shop.page(), PageTracking);
    QVERIFY(!isTracking(shop));
    QCOMPARE(source()->calls, QStringList{"stop"});
    // Once more.
    shop.press("startButton");
    QVERIFY(isTracking(shop));
    QVERIFY(source()->updating);
}

void TestTracking::stopWithGpsAutostart()
{
    ShopDriver shop(fourStores, {{"GpsEnabled", true}, {"GpsAutoStart", true}});
    QCOMPARE(source()->calls, (QStringList{"start", "interval 3000"}));
    openTracking(shop);
    shop.press("startButton");
    shop.press("stopButton");
    QVERIFY(!isTracking(shop));
    QVERIFY(source()->updating);
    QVERIFY(!source()->calls.contains("stop"));
}

void TestTracking::switchingGpsOffStops()
{
    ShopDriver shop(fourStores, gpsOn);
    openTracking(shop);
    shop.press("startButton");
    QVERIFY(source()->updating);
    shop.press("backButton");
    shop.press("optionsButton");
    shop.press("enableGpsBox");
    shop.press("okButton");
    // As after any "OK" of the options.
    QCOMPARE(shop.page(), PageMain);
    // Tracking must not seem active when there are no positions.
    shop.press("reminderButton");
    QVERIFY(!isTracking(shop));
    QVERIFY(!source()->updating);
}

void TestTracking::criteriaWhileTracking()
{
    ShopDriver shop(fourStores, gpsOn);
    openTracking(shop);
    choose(shop, "byStoreRadio");
    pick(shop, "storeButton", 0);
    shop.press("startButton");
    QVERIFY(isTracking(shop));
    for (const char *control :
         {"allStoresRadio", "byCategoryRadio", "byStoreRadio", "categoryButton", "storeButton"}) {
        QVERIFY2(!shop.isEnabled(control), control);
        shop.press(control);
        QCOMPARE(shop.page(), PageTracking);
    }
    shop.press("stopButton");
    QVERIFY(shop.find<QRadioButton>("byStoreRadio")->isChecked());
    QVERIFY(shop.isEnabled("storeButton"));
    QVERIFY(!shop.isEnabled("categoryButton"));
    QVERIFY(shop.isEnabled("allStoresRadio"));
}

void TestTracking::byStoreWithNoStorePicked()
{
    ShopDriver shop(fourStores, gpsOn);
    openTracking(shop);
    choose(shop, "byStoreRadio");
    shop.press("startButton");
    QCOMPARE(shop.message(), noStores);
}

void TestTracking::criterionByStore()
{
    ShopDriver shop(fourStores, {{"GpsEnabled", false}});
    openTracking(shop);
    choose(shop, "byStoreRadio");
    pick(shop, "storeButton", 0);
    QCOMPARE(shop.buttonText("storeButton"), "Bakery");
    // Two open lists, one entry.
    shop.press("viewButton");
    QCOMPARE(shop.rows(), QStringList{"Bakery|unknown"});
    QCOMPARE(shop.labelText("title"), "Store: Bakery");
    shop.press("backButton");
    QCOMPARE(shop.page(), PageTracking);
    pick(shop, "storeButton", 3);
    QCOMPARE(view(shop), QStringList{"nothing"});
}

void TestTracking::criterionByCategory()
{
    ShopDriver shop(fourStores, {{"GpsEnabled", false}});
    openTracking(shop);
    choose(shop, "byCategoryRadio");
    pick(shop, "categoryButton", 0);
    QCOMPARE(shop.buttonText("categoryButton"), "Food");
    shop.press("viewButton");
    QCOMPARE(shop.rows(), QStringList{"Bakery|unknown"});
    QCOMPARE(shop.labelText("title"), "By category: Food");
}

void TestTracking::captionOfTheLastCriterion()
{
    ShopDriver shop(fourStores, {{"GpsEnabled", false}});
    openTracking(shop);
    choose(shop, "byCategoryRadio");
    pick(shop, "categoryButton", 1);
    QCOMPARE(view(shop), QStringList{"nothing"});
    // For all stores the title is not changed; it was set by a category without a match.
    choose(shop, "allStoresRadio");
    shop.press("viewButton");
    QCOMPARE(shop.labelText("title"), "By category: Hardware");
    shop.press("okButton");
    // A store without a match does not set it.
    choose(shop, "byStoreRadio");
    pick(shop, "storeButton", 3);
    QCOMPARE(view(shop), QStringList{"nothing"});
    choose(shop, "allStoresRadio");
    shop.press("viewButton");
    QCOMPARE(shop.labelText("title"), "By category: Hardware");
}

void TestTracking::onlyOpenListsWithCoordinates()
{
    ShopDriver shop(fourStores, {{"GpsEnabled", false}});
    openTracking(shop);
    QCOMPARE(view(shop), (QStringList{"Bakery", "Dairy"}));
    for (const int state : {-1, 0, 3, 4, 12}) {
        shop.db->run(QString("update shoplist set state = %1 where magazinid = 4").arg(state));
        QCOMPARE(view(shop), QStringList{"Bakery"});
    }
    shop.db->run("update shoplist set state = null where magazinid = 4");
    QCOMPARE(view(shop), QStringList{"Bakery"});
    for (const int state : {1, 2}) {
        shop.db->run(QString("update shoplist set state = %1 where magazinid = 4").arg(state));
        QCOMPARE(view(shop), (QStringList{"Bakery", "Dairy"}));
    }
    shop.db->run("insert into gpscoord values (6, 10.04, 20, 0)");
    QCOMPARE(view(shop), (QStringList{"Bakery", "Dairy", "Market"}));
}

void TestTracking::noCriterion()
{
    ShopDriver shop(fourStores, gpsOn);
    openTracking(shop);
    // Auto-exclusive buttons cannot be unchecked by the user.
    auto *all = shop.find<QRadioButton>("allStoresRadio");
    all->setAutoExclusive(false);
    all->setChecked(false);
    QCOMPARE(view(shop), QStringList{"nothing"});
    shop.press("startButton");
    QCOMPARE(shop.message(), noStores);
}

void TestTracking::storesEquallyFar()
{
    ShopDriver shop(fourStores, gpsOn);
    shop.db->run("update gpscoord set latitude = 10.01 where id = 4");
    openTracking(shop);
    shop.press("startButton");
    source()->deliver(10, 20);
    shop.press("viewButton");
    QStringList rows = shop.rows();
    rows.sort();
    QCOMPARE(rows.size(), 2);
    QVERIFY(rows.first().startsWith("Bakery|"));
    QVERIFY(rows.last().startsWith("Dairy|"));
    QCOMPARE(rows.first().section('|', 1), rows.last().section('|', 1));
}

void TestTracking::choicesAreNamedAsTheyAreNow()
{
    ShopDriver shop(fourStores, gpsOn);
    openTracking(shop);
    choose(shop, "byStoreRadio");
    pick(shop, "storeButton", 0);
    shop.press("backButton");
    // Another page changes the current store.
    shop.press("shopsButton");
    shop.press("storesButton");
    shop.tap(1);
    shop.press("selectButton");
    shop.press("backButton");
    openTracking(shop);
    QCOMPARE(shop.buttonText("storeButton"), "Dairy");
    shop.press("viewButton");
    source()->deliver(10, 20);
    QCOMPARE(shop.labelText("title"), "Store: Dairy");
    shop.press("okButton");

    choose(shop, "byCategoryRadio");
    pick(shop, "categoryButton", 0);
    QCOMPARE(shop.buttonText("categoryButton"), "Food");
    // Renamed on the selection page, where the row is still remembered, and left without a choice.
    shop.press("categoryButton");
    shop.tap(0);
    QCOMPARE(shop.page(), PageCategoryEdit);
    shop.type("Groceries");
    shop.press("saveButton");
    shop.press("backButton");
    QCOMPARE(shop.page(), PageTracking);
    QCOMPARE(shop.buttonText("categoryButton"), "Groceries");
    // Deleted on the selection page.
    shop.press("categoryButton");
    shop.tap(0);
    shop.press("deleteButton");
    shop.press("confirmationYesButton");
    shop.press("backButton");
    QCOMPARE(shop.buttonText("categoryButton"), "(click to select)");
}

void TestTracking::choicesWhileTrackingNameWhatIsTracked()
{
    ShopDriver shop(fourStores, gpsOn);
    openTracking(shop);
    choose(shop, "byStoreRadio");
    pick(shop, "storeButton", 0);
    shop.press("startButton");
    shop.press("backButton");
    shop.press("shopsButton");
    shop.press("storesButton");
    shop.tap(1);
    shop.press("selectButton");
    shop.press("backButton");
    openTracking(shop);
    QCOMPARE(shop.buttonText("storeButton"), "Bakery");
    // The next start would use the current store.
    shop.press("stopButton");
    QCOMPARE(shop.buttonText("storeButton"), "Dairy");
}

void TestTracking::backLeadsToTheMainPage()
{
    ShopDriver shop(fourStores, gpsOn);
    openTracking(shop);
    shop.press("backButton");
    QCOMPARE(shop.page(), PageMain);
}

void TestTracking::trackedAreNotLookedForAnew()
{
    ShopDriver shop(fourStores, gpsOn);
    openTracking(shop);
    shop.press("startButton");
    shop.db->run("update shoplist set state = 3");
    source()->deliver(10, 20);
    shop.press("viewButton");
    QCOMPARE(shop.rows().size(), 2);
    shop.press("okButton");
    shop.press("stopButton");
    shop.press("startButton");
    QCOMPARE(shop.message(), noStores);
}

void TestTracking::trackingStartsByItself()
{
    ShopDriver shop(fourStores,
                    {{"GpsEnabled", true}, {"GpsAutoStart", true}, {"TrackAutoStart", true}});
    QCOMPARE(shop.page(), PageMain);
    QVERIFY(source()->updating);
    openTracking(shop);
    QVERIFY(isTracking(shop));
    QVERIFY(shop.find<QRadioButton>("allStoresRadio")->isChecked());
    shop.press("backButton");
    source()->deliver(10.01, 20);
    QCOMPARE(shop.page(), PageReminder);
}

void TestTracking::trackingStartsByItselfWithoutStores()
{
    const ShopDriver shop(category("Food"), {{"GpsEnabled", true}, {"TrackAutoStart", true}});
    QCOMPARE(shop.message(), noStores);
    shop.press("messageOkButton");
    QCOMPARE(shop.page(), PageTracking);
}

void TestTracking::trackingStartsByItselfWithGpsOff()
{
    ShopDriver shop(fourStores, {{"GpsEnabled", false}, {"TrackAutoStart", true}});
    QCOMPARE(shop.page(), PageTracking);
    QVERIFY(!isTracking(shop));
}

void TestTracking::pagesBuiltAnewTellTheTruth()
{
    ShopDriver shop(fourStores, gpsOn);
    openTracking(shop);
    choose(shop, "byStoreRadio");
    pick(shop, "storeButton", 0);
    shop.press("startButton");
    const auto rebuild = [&shop](const char *language) {
        shop.press("backButton");
        shop.changeLanguage(language);
        openTracking(shop);
    };
    rebuild("englishRadio");
    QVERIFY(isTracking(shop));
    QVERIFY(shop.find<QRadioButton>("byStoreRadio")->isChecked());
    QCOMPARE(shop.buttonText("storeButton"), "Bakery");
    shop.press("stopButton");
    QVERIFY(shop.isEnabled("storeButton"));
    rebuild("russianRadio");
    QVERIFY(!isTracking(shop));
    QVERIFY(shop.isEnabled("storeButton"));
    choose(shop, "byCategoryRadio");
    rebuild("englishRadio");
    QVERIFY(shop.find<QRadioButton>("byCategoryRadio")->isChecked());
}

void TestTracking::viewWithGpsOff()
{
    ShopDriver shop(fourStores, {{"GpsEnabled", false}});
    openTracking(shop);
    shop.press("viewButton");
    QCOMPARE(shop.page(), PageTrackedList);
    QCOMPARE(shop.rows(), (QStringList{"Bakery|unknown", "Dairy|unknown"}));
    QCOMPARE(shop.list()->item(0)->data(Qt::UserRole), QVariant(0));
    shop.press("okButton");
    QCOMPARE(shop.page(), PageTracking);
}

void TestTracking::viewWaitsForAPosition()
{
    ShopDriver shop(fourStores, gpsOn);
    openTracking(shop);
    for (int time = 1; time <= 2; ++time) {
        shop.press("viewButton");
        QCOMPARE(shop.page(), PageWaiting);
        QCOMPARE(source()->requests, time);
        source()->deliver(10.04, 20);
        QCOMPARE(shop.page(), PageTrackedList);
        QCOMPARE(shop.rows().size(), 2);
        QVERIFY2(shop.rows().first().startsWith("Dairy|2223.8"), qPrintable(shop.rows().first()));
        QVERIFY2(shop.rows().last().startsWith("Bakery|3335.8"), qPrintable(shop.rows().last()));
        QCOMPARE(shop.rows().first().section('.', 1).size(), 6);
        shop.press("okButton");
        // It waited for one position only.
        source()->deliver(10.04, 20);
        QCOMPARE(shop.page(), PageTracking);
        // The next view has a position, until tracking stops.
        shop.press("viewButton");
        QCOMPARE(shop.page(), PageTrackedList);
        shop.press("okButton");
        shop.press("startButton");
        shop.press("stopButton");
    }
}

void TestTracking::viewWaitsWhileTracking()
{
    ShopDriver shop(fourStores, gpsOn);
    openTracking(shop);
    shop.press("startButton");
    shop.press("viewButton");
    QCOMPARE(shop.page(), PageWaiting);
    source()->deliver(10.04, 20);
    QCOMPARE(shop.page(), PageTrackedList);
    QVERIFY(shop.rows().first().startsWith("Dairy|2223.8"));
    // From now on every position refreshes it.
    source()->deliver(10, 20);
    QCOMPARE(shop.page(), PageTrackedList);
    QVERIFY(shop.rows().first().startsWith("Bakery|1111.9"));
    // A position that is near enough ends the view.
    source()->deliver(10.01, 20);
    QCOMPARE(shop.page(), PageReminder);
}

void TestTracking::viewThatNobodyWaitsForAnyMore()
{
    ShopDriver shop(fourStores, gpsOn);
    openTracking(shop);
    shop.press("viewButton");
    shop.press("waitingCancelButton");
    QCOMPARE(shop.page(), PageTracking);
    source()->deliver(10, 20);
    QCOMPARE(shop.page(), PageTracking);
    // A wait that a reminder has ended does not return either.
    shop.press("startButton");
    source()->deliver(10, 20);
    shop.press("stopButton");
    shop.press("startButton");
    shop.press("viewButton");
    QCOMPARE(shop.page(), PageWaiting);
    source()->deliver(10.01, 20);
    QCOMPARE(shop.page(), PageReminder);
    shop.press("stopButton");
    source()->deliver(10, 20);
    QCOMPARE(shop.page(), PageTracking);
}

void TestTracking::viewWhenNothingMatches()
{
    ShopDriver shop(category("Food"), gpsOn);
    openTracking(shop);
    shop.press("viewButton");
    QCOMPARE(shop.page(), PageTracking);
    QCOMPARE(source()->calls, QStringList());
}

void TestTracking::viewOfBrokenRecords()
{
    ShopDriver shop({store(1, "Nowhere").at(999, 20),
                     sql("insert into shoplist values (1, null, 1, 1)"),
                     store(2, "Null").openList(2, "List"),
                     sql("insert into gpscoord values (2, null, null, null)"),
                     store(3, "Words").openList(3, "List"),
                     sql("insert into gpscoord values (3, 'ten', 'twenty', 0)")},
                    gpsOn);
    openTracking(shop);
    shop.press("viewButton");
    source()->deliver(0, 1);
    // A text that is not a number is read as 0, and invalid coordinates are farther than
    // everything.
    QStringList rows = shop.rows();
    QCOMPARE(rows.size(), 3);
    QCOMPARE(rows.last(), "Nowhere|unknown");
    QVERIFY(rows.at(0).section('|', 1).startsWith("111195."));
    QVERIFY(rows.at(1).section('|', 1).startsWith("111195."));
}

STOPPABLE_TEST_MAIN(TestTracking)
#include "tst_tracking.moc"
