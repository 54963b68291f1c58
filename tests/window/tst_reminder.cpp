// SPDX-License-Identifier: MIT
#include <atomic>
#include <chrono>
#include <cmath>
#include <stop_token>
#include <thread>

#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QStackedWidget>
#include <QtTest>

#include "base/pages.h"
#include "gps/trshopgps.h"
#include "tests/support/databaselock.h"
#include "tests/support/emulator.h"
#include "tests/support/mutesoundserver.h"
#include "tests/support/processes.h"
#include "tests/support/randomrun.h"
#include "tests/support/records.h"
#include "tests/support/shopdriver.h"
#include "tests/support/testpositionplugin.h"

using namespace std::chrono_literals;

Q_IMPORT_PLUGIN(TestPositionPlugin)

/// Three stores one kilometre apart on a meridian. Bakery has three lists, two of them open.
static const Records threeStores{
    store(3, "Bakery")
        .at(10.01, 20)
        .openList("Bread")
        .good("Rye", 2)
        .list("Cakes", ListFinished)
        .checkedGood("Tart")
        .list("Buns", ListPartlyChecked)
        .good("Plain", 6),
    store("Dairy").at(10.02, 20).list("Milk", ListPartlyChecked).good("Butter"),
    store("Tools").at(10.03, 20).openList("Nails"),
};
static const QVariantMap gpsOn{{"GpsEnabled", true}};
static const QVariantMap gpsAlwaysOn{{"GpsEnabled", true}, {"GpsAutoStart", true}};

class TestReminder : public QObject
{
    Q_OBJECT

public:
    static void initMain()
    {
        RandomRun::takeYourTime("TROLLEO_TEST_ACCIDENTS");
    }

private slots:
    void farAwayNothingHappens();
    void nearAStoreTheReminderShows();
    void reminderTextHasTwoDecimals();
    void thresholdIsExact();
    void reminderFromAnyPage();
    void nameThatLooksLikeMarkup();
    void positionsDuringTheReminderChangeNothing();
    void nextStore();
    void nextStoreSkipsTheOneThatIsStillNearest();
    void nextStoreOnTheLastOneEndsTracking();
    void skippedStoreIsBackAtTheNextStart();
    void stopTracking();
    void stopTrackingWithGpsAutostart();
    void nextStoreOnTheLastOneWithGpsAutostart();
    void startShopping();
    void startShoppingByStoreAndByCategory_data();
    void startShoppingByStoreAndByCategory();
    void startShoppingWithGpsAutostart();
    void startShoppingWhenTheListIsGone();
    void afterShoppingTheFinishedListRingsNoMore();
    void whatWasCheckedCountsWhenAReminderTakesOver_data();
    void whatWasCheckedCountsWhenAReminderTakesOver();
    void storesPageIsKeptFresh();
    void otherPagesAreLeftAlone();
    void storeThatIsNoPlaceNeverRings();
    void minimizedWindowComesBack();
    void noButtonHasTheFocus();
    void whatIsOnItsWayAnswersNothing();
    void pressThatIsUnderWay();
    void touchThatIsUnderWay();
    void windowThatComesToTheFrontLate();
    void menusClose();
    void keysAnswerLater();
    void startForgetsThePosition();
    void alarmNeverDelaysTheReminder();
    void alarmRingsWhileTheDatabaseIsLocked();
    void hundredThousandPositionsTakeNoMemory();

private:
    static TestPositionSource *source()
    {
        return TestPositionSource::instance();
    }
    static void track(ShopDriver &shop)
    {
        shop.press("reminderButton");
        shop.press("startButton");
        QVERIFY(shop.isEnabled("stopButton"));
        source()->calls.clear();
    }
    /// Moves to 167 metres before Bakery.
    static void remind(ShopDriver &shop)
    {
        track(shop);
        source()->deliver(10.0085, 20);
        QCOMPARE(shop.page(), PageReminder);
        QVERIFY(shop.labelText("reminderStore").startsWith("Bakery (at 166."));
        source()->calls.clear();
    }
    static bool isTracking(ShopDriver &shop)
    {
        return shop.window->findChild<QWidget *>("trackingPage")
            ->findChild<QWidget *>("stopButton")
            ->isEnabled();
    }
};

void TestReminder::farAwayNothingHappens()
{
    ShopDriver shop(threeStores, gpsOn);
    track(shop);
    source()->deliver(10, 20);
    QCOMPARE(shop.page(), PageTracking);
    QCOMPARE(source()->calls, QStringList());
    // Near the store, but tracking is off.
    shop.press("stopButton");
    source()->deliver(10.01, 20);
    QCOMPARE(shop.page(), PageTracking);
}

void TestReminder::nearAStoreTheReminderShows()
{
    ShopDriver shop(threeStores, gpsOn);
    track(shop);
    source()->deliver(10, 20);
    source()->deliver(10.0085, 20);
    QCOMPARE(shop.page(), PageReminder);
    QCOMPARE(shop.labelText("reminderHeading"), "You have a Shopping List for this Store:");
    QVERIFY(shop.labelText("reminderStore").startsWith("Bakery (at 166."));
    // The source is stopped until the user has answered; tracking continues.
    QCOMPARE(source()->calls, QStringList{"stop"});
    QVERIFY(isTracking(shop));
}

void TestReminder::reminderTextHasTwoDecimals()
{
    ShopDriver shop(threeStores, gpsOn);
    track(shop);
    source()->deliver(10.008351, 20);
    const float meters = TrShopGps::distanceBetween(10.008351F, 20, 10.01F, 20);
    QVERIFY(meters > 183 && meters < 184);
    QCOMPARE(shop.labelText("reminderStore"),
             QString("Bakery (at %1 meters)").arg(double(meters), 0, 'f', 2));
}

void TestReminder::thresholdIsExact()
{
    // A place exactly 250.0 m from the intersection of equator and prime meridian, in single
    // precision, which resolves far less than a metre there; and the next nearer one.
    float latitude = 0;
    float longitude = 0;
    const auto meters = [&] {
        return TrShopGps::distanceBetween(0, 0, latitude, longitude);
    };
    for (int step = 1; step < 1000 && meters() != 250.0F; ++step) {
        longitude = float(step) * 1e-6F;
        latitude = 0.00224F;
        while (meters() < 250.0F)
            latitude = std::nextafter(latitude, 1.0F);
    }
    QVERIFY(meters() == 250.0F); // Qt's comparison would be fuzzy
    const float just = latitude;
    while (meters() == 250.0F)
        latitude = std::nextafter(latitude, 0.0F);
    const float nearer = latitude;

    const auto text = [](float degrees) {
        return QString::number(double(degrees), 'g', 17);
    };
    ShopDriver shop(store("Bakery").at(double(just), double(longitude)).openList("Bread"), gpsOn);
    track(shop);
    source()->deliver(0, 0);
    QCOMPARE(shop.page(), PageTracking);
    shop.press("stopButton");
    shop.db->run(QString("update gpscoord set latitude = %1").arg(text(nearer)));
    shop.press("startButton");
    source()->deliver(0, 0);
    QCOMPARE(shop.page(), PageReminder);
    QCOMPARE(shop.labelText("reminderStore"), "Bakery (at 250.00 meters)");
    // At 249.99 m, the distance that is shown.
    shop.press("stopButton");
    shop.db->run(QString("update gpscoord set latitude = %1").arg(text(just * 249.99F / 250)));
    shop.press("startButton");
    source()->deliver(0, 0);
    QCOMPARE(shop.labelText("reminderStore"), "Bakery (at 249.99 meters)");
}

void TestReminder::reminderFromAnyPage()
{
    for (int page = 0; page < PageCount; ++page) {
        ShopDriver shop(threeStores, gpsOn);
        track(shop);
        if (page == PageReminder)
            continue;
        shop.stack->setCurrentIndex(page);
        source()->deliver(10.0085, 20);
        QCOMPARE(shop.page(), PageReminder);
        QVERIFY(shop.labelText("reminderStore").startsWith("Bakery (at 166."));
    }
}

void TestReminder::nameThatLooksLikeMarkup()
{
    ShopDriver shop(threeStores, gpsOn);
    shop.db->run("update magazin set name = '<b>%1&%2</b>' where id = 3");
    track(shop);
    source()->deliver(10.0085, 20);
    QVERIFY2(shop.labelText("reminderStore").startsWith("<b>%1&%2</b> (at 166."),
             qPrintable(shop.labelText("reminderStore")));
    QCOMPARE(shop.find<QLabel>("reminderStore")->textFormat(), Qt::PlainText);
}

void TestReminder::positionsDuringTheReminderChangeNothing()
{
    ShopDriver shop(threeStores, gpsOn);
    remind(shop);
    const QString text = shop.labelText("reminderStore");
    source()->deliver(10.02, 20);
    QCOMPARE(shop.labelText("reminderStore"), text);
    QCOMPARE(shop.page(), PageReminder);
    QCOMPARE(source()->calls, QStringList());
    // Order and distances are those of the reminder: the next store is reported with the next
    // position.
    shop.press("nextButton");
    QCOMPARE(shop.page(), PageTracking);
    // It is still the last known position.
    shop.press("viewButton");
    QCOMPARE(shop.rows().first(), "Dairy|0.000000");
    shop.press("okButton");
    source()->deliver(10.02, 20);
    QVERIFY(shop.labelText("reminderStore").startsWith("Dairy (at 0."));
}

void TestReminder::nextStore()
{
    ShopDriver shop(threeStores, gpsOn);
    remind(shop);
    shop.press("nextButton");
    QCOMPARE(shop.page(), PageTracking);
    QVERIFY(isTracking(shop));
    QCOMPARE(source()->calls, (QStringList{"start", "interval 3000"}));
    shop.press("viewButton");
    QCOMPARE(shop.rows().size(), 2);
    QVERIFY(shop.rows().first().startsWith("Dairy|"));
}

void TestReminder::nextStoreSkipsTheOneThatIsStillNearest()
{
    ShopDriver shop(threeStores, gpsOn);
    remind(shop);
    shop.press("nextButton");
    for (const double latitude : {10.0085, 10.01, 10.011}) {
        source()->deliver(latitude, 20);
        QCOMPARE(shop.page(), PageTracking);
    }
    source()->deliver(10.019, 20);
    QVERIFY(shop.labelText("reminderStore").startsWith("Dairy (at 11"));
    shop.press("nextButton");
    source()->deliver(10.01, 20);
    QCOMPARE(shop.page(), PageTracking);
    source()->deliver(10.031, 20);
    QVERIFY(shop.labelText("reminderStore").startsWith("Tools (at 11"));
}

void TestReminder::nextStoreOnTheLastOneEndsTracking()
{
    ShopDriver shop(threeStores, gpsOn);
    shop.db->run("update shoplist set state = 3 where magazinid > 3");
    remind(shop);
    shop.press("nextButton");
    QCOMPARE(shop.page(), PageTracking);
    QVERIFY(!isTracking(shop));
    QCOMPARE(source()->calls, QStringList{"stop"});
    source()->deliver(10.01, 20);
    QCOMPARE(shop.page(), PageTracking);
}

void TestReminder::skippedStoreIsBackAtTheNextStart()
{
    ShopDriver shop(threeStores, gpsOn);
    remind(shop);
    shop.press("nextButton");
    shop.press("stopButton");
    shop.press("startButton");
    source()->deliver(10.01, 20);
    QVERIFY(shop.labelText("reminderStore").startsWith("Bakery (at 0."));
}

void TestReminder::stopTracking()
{
    ShopDriver shop(threeStores, gpsOn);
    remind(shop);
    shop.press("stopButton");
    QCOMPARE(shop.page(), PageTracking);
    QVERIFY(!isTracking(shop));
    QVERIFY(!source()->updating);
    source()->deliver(10.01, 20);
    QCOMPARE(shop.page(), PageTracking);
}

void TestReminder::stopTrackingWithGpsAutostart()
{
    ShopDriver shop(threeStores, gpsAlwaysOn);
    remind(shop);
    QVERIFY(!source()->updating);
    shop.press("stopButton");
    QVERIFY(!isTracking(shop));
    QVERIFY(source()->updating); // paused by the reminder, and started again
}

void TestReminder::nextStoreOnTheLastOneWithGpsAutostart()
{
    ShopDriver shop(threeStores, gpsAlwaysOn);
    shop.db->run("update shoplist set state = 3 where magazinid > 3");
    remind(shop);
    shop.press("nextButton");
    QVERIFY(!isTracking(shop));
    QVERIFY(source()->updating);
}

void TestReminder::startShopping()
{
    ShopDriver shop(threeStores, gpsOn);
    remind(shop);
    shop.press("startShoppingButton");
    QCOMPARE(shop.page(), PageDoShopping);
    // The goods of all lists of the store, with checked ones last.
    QCOMPARE(shop.rows(), (QStringList{"Rye|2", "Plain|6", "Tart|1*"}));
    QCOMPARE(shop.labelText("title"), "Bread");
    QVERIFY(!isTracking(shop));
    QCOMPARE(source()->calls, QStringList{"stop"});

    shop.tap(0);
    shop.tap(0);
    QCOMPARE(shop.db->column("select checkstate from purchase where id = 1"), QVariantList{1});
    shop.press("okButton");
    QCOMPARE(shop.page(), PageShopping);
    QCOMPARE(shop.labelText("listName"), "Bread");
    QCOMPARE(shop.labelText("storeName"), "Bakery");
    QCOMPARE(shop.labelText("listState"), "Finished (checked)");
    QVERIFY(shop.isEnabled("editButton"));
    QVERIFY(shop.isEnabled("goodsButton"));
    // Only that list: the next shopping is for it alone.
    shop.press("startButton");
    QCOMPARE(shop.rows(), QStringList{"Rye|2*"});
    shop.press("okButton");
    shop.press("backButton");
    shop.press("shopsButton");
    QCOMPARE(shop.labelText("storeName"), "Bakery");
}

void TestReminder::startShoppingByStoreAndByCategory_data()
{
    QTest::addColumn<QByteArray>("radio");
    QTest::addColumn<QByteArray>("button");
    QTest::newRow("by store") << QByteArray("byStoreRadio") << QByteArray("storeButton");
    QTest::newRow("by category") << QByteArray("byCategoryRadio") << QByteArray("categoryButton");
}

void TestReminder::startShoppingByStoreAndByCategory()
{
    QFETCH(QByteArray, radio);
    QFETCH(QByteArray, button);
    ShopDriver shop({threeStores, category(7, "Food"),
                     sql("update magazin set categoryid = 7 where id in (3, 4)")},
                    gpsOn);
    shop.press("reminderButton");
    shop.press(radio.constData());
    shop.press(button.constData());
    shop.tap(0);
    shop.press("selectButton");
    shop.press("startButton");
    source()->deliver(10.0085, 20);
    QVERIFY(shop.labelText("reminderStore").startsWith("Bakery (at 166."));
    shop.press("startShoppingButton");
    QCOMPARE(shop.labelText("title"), "Bread");
    QCOMPARE(shop.rows(), (QStringList{"Rye|2", "Plain|6", "Tart|1*"}));
    shop.press("okButton");
    QCOMPARE(shop.labelText("listName"), "Bread");
    shop.press("backButton");
    shop.press("shopsButton");
    QCOMPARE(shop.labelText("storeName"), "Bakery");
}

void TestReminder::startShoppingWithGpsAutostart()
{
    ShopDriver shop(threeStores, gpsAlwaysOn);
    remind(shop);
    shop.press("startShoppingButton");
    QCOMPARE(shop.page(), PageDoShopping);
    QVERIFY(!isTracking(shop));
    QVERIFY(source()->updating);
}

void TestReminder::startShoppingWhenTheListIsGone()
{
    ShopDriver shop(threeStores, gpsOn);
    track(shop);
    shop.db->run("delete from shoplist where magazinid = 3");
    shop.db->run("delete from purchase where shoplistid in (1, 2, 3)");
    source()->deliver(10.01, 20);
    shop.press("startShoppingButton");
    QCOMPARE(shop.page(), PageDoShopping);
    QCOMPARE(shop.labelText("title"), "Bread");
    QCOMPARE(shop.rows(), QStringList());
    shop.press("okButton");
    QCOMPARE(shop.page(), PageShopping);
}

void TestReminder::afterShoppingTheFinishedListRingsNoMore()
{
    ShopDriver shop(threeStores, gpsOn);
    shop.db->run("update shoplist set state = 3 where id = 3");
    remind(shop);
    shop.press("startShoppingButton");
    shop.tap(0);
    shop.tap(0);
    shop.press("okButton");
    shop.press("backButton");
    track(shop);
    source()->deliver(10.01, 20);
    QCOMPARE(shop.page(), PageTracking);
}

void TestReminder::whatWasCheckedCountsWhenAReminderTakesOver_data()
{
    QTest::addColumn<bool>("readsHelp");
    QTest::newRow("shopping") << false;
    QTest::newRow("reading the help") << true;
}

void TestReminder::whatWasCheckedCountsWhenAReminderTakesOver()
{
    QFETCH(bool, readsHelp);
    ShopDriver shop(threeStores, gpsOn);
    track(shop);
    shop.press("backButton");
    shop.press("shoppingButton");
    shop.press("listsButton");
    shop.list()->setCurrentItem(shop.list()->findItems("Milk", Qt::MatchExactly).first());
    shop.press("selectButton");
    shop.press("startButton");
    QCOMPARE(shop.rows(), QStringList{"Butter|1"});
    shop.tap(0);
    shop.tap(0);
    if (readsHelp)
        shop.press("helpButton");
    source()->deliver(10.0085, 20);
    QCOMPARE(shop.page(), PageReminder);
    // Otherwise Dairy would ring at the next start, although there is nothing left to buy.
    QCOMPARE(shop.db->column("select state from shoplist where id = 4"), QVariantList{3});
}

void TestReminder::storesPageIsKeptFresh()
{
    ShopDriver shop(threeStores, gpsOn);
    track(shop);
    shop.press("backButton");
    shop.press("shopsButton");
    shop.press("storesButton");
    shop.tap(2);
    shop.press("selectButton");
    QCOMPARE(shop.labelText("storeDistance"), "(calculating)");
    source()->deliver(10, 20);
    QVERIFY(shop.labelText("storeDistance").startsWith("3335.8"));
    shop.db->run("update magazin set name = 'Iron' where id = 5");
    source()->deliver(10.005, 20);
    QVERIFY(shop.labelText("storeDistance").startsWith("2779.8"));
    QCOMPARE(shop.labelText("storeName"), "Iron");
    QCOMPARE(shop.page(), PageStores);
    source()->deliver(10.01, 20);
    QCOMPARE(shop.page(), PageReminder);
}

void TestReminder::otherPagesAreLeftAlone()
{
    ShopDriver shop(threeStores, gpsOn);
    track(shop);
    shop.press("backButton");
    shop.press("shopsButton");
    shop.press("newButton");
    shop.type("Fi");
    source()->deliver(10, 20);
    QCOMPARE(shop.page(), PageStoreEdit);
    QCOMPARE(shop.find<QLineEdit>("nameField")->text(), "Fi");
    QVERIFY(shop.find<QLineEdit>("nameField")->hasFocus());
}

void TestReminder::storeThatIsNoPlaceNeverRings()
{
    ShopDriver shop(threeStores, gpsOn);
    const QString update = "update gpscoord set latitude = %1, longitude = %2 where id = 3";
    for (const auto &place : {QPair<QString, QString>{"999", "20"},
                              {"90.01", "20"},
                              {"10", "180.01"},
                              {"1e999", "20"},
                              {"10", "-1e999"}}) {
        QVERIFY(shop.db->run(update.arg(place.first, place.second)));
        track(shop);
        source()->deliver(10, 20);
        QVERIFY2(shop.page() == PageTracking, qPrintable(place.first + ' ' + place.second));
        source()->deliver(10.0195, 20);
        QVERIFY(shop.labelText("reminderStore").startsWith("Dairy"));
        shop.press("stopButton");
        shop.press("backButton");
    }
}

void TestReminder::minimizedWindowComesBack()
{
    ShopDriver shop(threeStores, gpsOn);
    track(shop);
    shop.window->showMinimized();
    QTRY_VERIFY(shop.window->isMinimized());
    source()->deliver(10.0085, 20);
    QTRY_VERIFY(!shop.window->isMinimized());
    QVERIFY(shop.window->isVisible());
    shop.press("stopButton");
    shop.press("startButton");
    shop.window->showMaximized();
    shop.window->setWindowState(shop.window->windowState() | Qt::WindowMinimized);
    source()->deliver(10.0085, 20);
    QTRY_VERIFY(!shop.window->isMinimized());
    QVERIFY(shop.window->isMaximized());
}

void TestReminder::noButtonHasTheFocus()
{
    ShopDriver shop(threeStores, gpsOn);
    remind(shop);
    QCOMPARE(shop.window->focusWidget(), shop.pageWidget());
    QCOMPARE(shop.pageWidget()->accessibleName().section(" (", 0, 0),
             "You have a Shopping List for this Store: Bakery");
}

/// Types and taps at random around the moment of the reminder.
void TestReminder::whatIsOnItsWayAnswersNothing()
{
    const int times = RandomRun::count("TROLLEO_TEST_ACCIDENTS", 8);
    constexpr int inputs = 1000;
    constexpr int before = 300;
    QRandomGenerator random(RandomRun::seed());
    const QList<Qt::Key> keys{Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter,  Qt::Key_Tab,
                              Qt::Key_A,     Qt::Key_N,      Qt::Key_Escape, Qt::Key_Down,
                              Qt::Key_Menu,  Qt::Key_F10,    Qt::Key_Left,   Qt::Key_Backspace};
    int answered = 0;
    for (int time = 0; time < times; ++time) {
        ShopDriver shop(threeStores, gpsOn);
        track(shop);
        shop.press("backButton");
        shop.press("shoppingButton");
        shop.press("listsButton");
        shop.press("createButton");
        auto *field = shop.find<QLineEdit>("nameField");
        field->setFocus();
        QWindow *surface = shop.window->windowHandle();
        QElapsedTimer clock;
        for (int input = 0; input < inputs; ++input) {
            if (input == before) {
                source()->deliver(10.0085, 20);
                clock.start();
            }
            // Before the reminder only keys in a field are used, since a tap could do something
            // else.
            if (input < before)
                QTest::keyClick(surface, random.bounded(4) == 0 ? Qt::Key_Space : Qt::Key_X);
            else if (random.bounded(3) == 0)
                QTest::mouseClick(surface, Qt::LeftButton, {},
                                  QPoint(random.bounded(shop.window->width()),
                                         random.bounded(shop.window->height())));
            else
                QTest::keyClick(surface, keys.at(random.bounded(keys.size())),
                                random.bounded(5) == 0 ? Qt::AltModifier : Qt::NoModifier);
            // Until the end of the second, and beyond.
            while (input > before && clock.elapsed() < (input - before) * 1700 / (inputs - before))
                QTest::qWait(1);
        }
        QTest::qWait(100);
        answered += shop.page() != PageReminder;
        QVERIFY(isTracking(shop));
        QVERIFY(field->text().contains('x'));
        QCOMPARE(shop.db->column("select count(*) from shoplist"), QVariantList{5});
        shop.press("nextButton"); // a deliberate press
        QCOMPARE(shop.page(), PageTracking);
    }
    qInfo("%d reminders, %d keys and taps around each; answered by accident: %d", times, inputs,
          answered);
    QCOMPARE(answered, 0);
}

void TestReminder::pressThatIsUnderWay()
{
    ShopDriver shop(threeStores, gpsOn);
    track(shop);
    const QPoint place = shop.find<QWidget>("stopButton")->mapTo(shop.window.get(), QPoint(20, 20));
    QWindow *surface = shop.window->windowHandle();
    QTest::mousePress(surface, Qt::LeftButton, {}, place);
    source()->deliver(10.0085, 20);
    QTest::qWait(1500);
    QTest::mouseRelease(surface, Qt::LeftButton, {}, place);
    QTest::mouseClick(surface, Qt::LeftButton, {}, QPoint(shop.window->width() / 2, place.y()));
    QTest::qWait(100);
    QCOMPARE(shop.page(), PageReminder);
    QVERIFY(isTracking(shop));
    shop.press("stopButton");
    QCOMPARE(shop.page(), PageTracking);
    QVERIFY(!isTracking(shop));
    // The button that was pressed and not released has no effect any more.
    shop.press("startButton");
    QVERIFY(isTracking(shop));
}

void TestReminder::touchThatIsUnderWay()
{
    const std::unique_ptr<QPointingDevice> finger(QTest::createTouchDevice());
    ShopDriver shop(threeStores, gpsOn);
    track(shop);
    QWindow *surface = shop.window->windowHandle();
    const auto centerOf = [&](const char *button) {
        auto *widget = shop.find<QWidget>(button);
        return widget->mapTo(shop.window.get(), widget->rect().center());
    };
    const QPoint stop = centerOf("stopButton");
    QTest::touchEvent(surface, finger.get()).press(0, stop);
    source()->deliver(10.0085, 20);
    const QPoint next = centerOf("nextButton");
    QTest::touchEvent(surface, finger.get()).move(0, next);
    QTest::qWait(1200);
    QTest::touchEvent(surface, finger.get()).release(0, next);
    QCOMPARE(shop.page(), PageReminder);
    QVERIFY(isTracking(shop));
    // A touch that begins too early has no effect either, however late it ends.
    QTest::touchEvent(surface, finger.get()).press(0, next);
    QTest::qWait(600);
    QTest::touchEvent(surface, finger.get()).release(0, next);
    QTest::qWait(100);
    QCOMPARE(shop.page(), PageReminder);
    QTest::qWait(400);
    QTest::touchEvent(surface, finger.get()).press(0, next);
    QTest::touchEvent(surface, finger.get()).release(0, next);
    QTRY_COMPARE(shop.page(), PageTracking);
}

void TestReminder::windowThatComesToTheFrontLate()
{
    ShopDriver shop(threeStores, gpsOn);
    remind(shop);
    shop.waitForReminder();
    QWidget other; // the window that the user uses meanwhile
    other.show();
    other.activateWindow();
    QTRY_VERIFY(QApplication::activeWindow() == &other);
    other.close(); // a Wayland window cannot activate itself
    shop.window->activateWindow();
    QTRY_VERIFY(QApplication::activeWindow() == shop.window.get());
    auto *next = shop.find<QWidget>("nextButton");
    const QPoint place = next->mapTo(shop.window.get(), next->rect().center());
    QTest::mouseClick(shop.window->windowHandle(), Qt::LeftButton, {}, place);
    QTest::qWait(100);
    QCOMPARE(shop.page(), PageReminder);
    shop.press("nextButton");
    QCOMPARE(shop.page(), PageTracking);
}

void TestReminder::menusClose()
{
    ShopDriver shop(threeStores, gpsOn);
    track(shop);
    shop.press("backButton");
    shop.press("shoppingButton");
    shop.press("listsButton");
    shop.press("createButton");
    auto *field = shop.find<QLineEdit>("nameField");
    QContextMenuEvent wish(QContextMenuEvent::Keyboard, QPoint(5, 5),
                           field->mapToGlobal(QPoint(5, 5)));
    QCoreApplication::sendEvent(field, &wish);
    QTRY_VERIFY(QApplication::activePopupWidget());
    source()->deliver(10.0085, 20);
    QVERIFY(!QApplication::activePopupWidget());
    shop.press("nextButton");
    QCOMPARE(shop.page(), PageTracking);
}

void TestReminder::keysAnswerLater()
{
    ShopDriver shop(threeStores, gpsOn);
    remind(shop);
    QWindow *surface = shop.window->windowHandle();
    shop.waitForReminder();
    QTest::keyClick(surface, Qt::Key_Space); // nothing has the focus
    QTest::keyClick(surface, Qt::Key_Return);
    QCOMPARE(shop.page(), PageReminder);
    QTest::keyClick(surface, Qt::Key_Tab);
    QCOMPARE(shop.window->focusWidget(), shop.find<QWidget>("nextButton"));
    QTest::keyClick(surface, Qt::Key_Space);
    QCOMPARE(shop.page(), PageTracking);
}

void TestReminder::startForgetsThePosition()
{
    // The map view must also show and ring for the current position, not the previous one.
    ShopDriver shop(threeStores, gpsAlwaysOn);
    source()->deliver(10.01, 20);
    track(shop);
    shop.press("viewButton");
    QCOMPARE(shop.page(), PageWaiting);
    source()->deliver(11, 20);
    QCOMPARE(shop.page(), PageTrackedList);
    shop.press("mapViewButton");
    source()->deliver(11, 20);
    QCOMPARE(shop.page(), PageTrackedList);
}

void TestReminder::alarmNeverDelaysTheReminder()
{
    SKIP_WITHOUT_PLAYER();
    // The audible result is tested with a sound server. This one never answers, also not for a file
    // that is not a sound. A missing file and a folder start no alarm.
    MuteSoundServer server;
    QVERIFY(server.listen());
    for (const char *file : {"/bin/sh", "/no such file.wav", "/"}) {
        ShopDriver shop(threeStores, {{"GpsEnabled", true}, {"SoundFileName", file}});
        track(shop);
        QElapsedTimer clock;
        clock.start();
        source()->deliver(10.0085, 20);
        QVERIFY(clock.elapsed() < 2000); // it must not hang
        QCOMPARE(shop.page(), PageReminder);
        QTRY_COMPARE(childrenNamed("trolleo-alarm").size(), QFileInfo(file).isFile() ? 1 : 0);
        shop.press("stopButton");
        QCOMPARE(shop.page(), PageTracking);
        QTRY_COMPARE(childrenNamed("trolleo-alarm").size(), 0);
    }
}

/// The alarm does not wait for the database, although the program stores what was bought.
void TestReminder::alarmRingsWhileTheDatabaseIsLocked()
{
    SKIP_WITHOUT_PLAYER();
    MuteSoundServer server;
    QVERIFY(server.listen());
    ShopDriver shop(threeStores, {{"GpsEnabled", true}, {"SoundFileName", "/bin/sh"}});
    shop.press("reminderButton");
    shop.press("startButton");
    shop.press("backButton");
    shop.startShopping();
    DatabaseLock lock(*shop.home);
    lock.releaseAfter(2s);
    QElapsedTimer clock;
    clock.start();
    std::atomic<qint64> rang = -1;
    std::jthread watcher([&](const std::stop_token &end) {
        while (!end.stop_requested() && rang < 0) {
            if (!childrenNamed("trolleo-alarm").isEmpty())
                rang = clock.elapsed();
            std::this_thread::sleep_for(10ms);
        }
    });
    source()->deliver(10.0085, 20);
    const qint64 shown = clock.elapsed();
    watcher.request_stop();
    watcher.join();
    QVERIFY(lock.waitUntilReleased());
    QCOMPARE(shop.page(), PageReminder);
    QVERIFY2(shown > 1500, qPrintable(QString::number(shown))); // it was locked indeed
    QVERIFY2(rang >= 0 && rang < 1500, qPrintable(QString::number(rang)));
}

static qint64 residentKib()
{
    QFile file("/proc/self/status");
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.simplified().split(' ').at(1).toLongLong();
    }
    return -1;
}

void TestReminder::hundredThousandPositionsTakeNoMemory()
{
#ifdef __SANITIZE_ADDRESS__
    QSKIP("the sanitizer keeps what was freed");
#endif
    Records records = threeStores;
    for (int id = 10; id < 107; ++id)
        records.store(id, QString("Store %1").arg(id)).at(11 + id * 0.001, 21).openList(id, "List");
    ShopDriver shop(records, gpsOn);
    track(shop);
    shop.press("viewButton");
    const auto walk = [&](int positions) {
        for (int step = 0; step < positions; ++step)
            source()->deliver(10.0 + step % 1000 * 1e-6, 20.5);
    };
    walk(1);
    QCOMPARE(shop.page(), PageTrackedList);
    QCOMPARE(shop.rows().size(), 100);
    walk(20); // the visible list is filled again each time
    shop.press("okButton");
    walk(1000);
    QCoreApplication::processEvents();
    const qint64 before = residentKib();
    walk(100'000);
    const qint64 grown = residentKib() - before;
    qInfo("100,000 positions, 100 stores: %lld KiB more", static_cast<long long>(grown));
    QVERIFY(before > 0);
    QVERIFY2(grown < 512, qPrintable(QString::number(grown)));
    QCOMPARE(shop.page(), PageTracking);
}

STOPPABLE_TEST_MAIN(TestReminder)
#include "tst_reminder.moc"
