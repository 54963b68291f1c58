// SPDX-License-Identifier: MIT
#include <QAbstractButton>
#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QSettings>
#include <QSqlDatabase>
#include <QStackedWidget>
#include <QTabWidget>
#include <QtTest>

#include "base/pages.h"
#include "map/mapswidget.h"
#include "map/webmercator.h"
#include "tests/support/records.h"
#include "tests/support/shopdriver.h"
#include "tests/support/testpositionplugin.h"
#include "tests/support/tilehost.h"

Q_IMPORT_PLUGIN(TestPositionPlugin)

static const Records stores{
    store("Bakery").at(55.755833, -33.5, 7),
    store("Dairy"),
};
static const QVariantMap gpsOn{{"GpsEnabled", true}};

class TestCoordinatesPage : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void startsOnTheEditView();
    void showsTheCoordinatesOfTheStore();
    void storeWithoutCoordinatesStartsEmpty();
    void coordinatesOfARefusedStoreAreNotAnothers();
    void newStoreStartsEmpty();
    void viewIsKeptExceptTheMap();
    void tabsConvert();
    void hemispheresSwitch();
    void typedCoordinatesAreSaved_data();
    void typedCoordinatesAreSaved();
    void digitsThatAreNoNumberAreRefused();
    void uselessCoordinatesAreRefused_data();
    void uselessCoordinatesAreRefused();
    void sexagesimalIsConvertedOnlyWhereItShows();
    void whatIsTypedIsNotFromTheGps();
    void backSavesNothing();
    void valueBeyondTheMaskIsKept();
    void hiddenValueIsNotRounded();
    void numberThatDoesNotFitIsRefused();
    void textOfAssistiveTechnologyIsSaved();
    void pastedPairFillsBothFields();
    void secondVisitShowsWhatWasTaken();
    void positionFromTheGps();
    void positionAtHandIsTakenAtOnce();
    void positionIsAwaited();
    void editViewEndsTheWait();
    void refusalDoesNotEndTheWait();
    void refusalForgetsWhatWasTaken();
    void sexagesimalGoesToTheMap();
    void gpsOff();
    void mapStartsAtTheLastPosition();
    void mapStartsAtTheStore();
    void markOnTheMapIsSaved();
    void mapReturnsToItsMark();
    void mapIsCentredByTheGps();
    void mapWaitsForThePosition();

private:
    /// Opens the coordinates page of a store in the list.
    static void open(ShopDriver &shop, int row)
    {
        shop.press("shopsButton");
        shop.press("storesButton");
        shop.tap(row);
        if (shop.page() == PageStoreList) // one tap chooses the store that was edited last
            shop.press("selectButton");
        shop.press("editButton");
        shop.press("coordinatesButton");
        QCOMPARE(shop.page(), PageCoordinates);
    }
    static TestPositionSource *source()
    {
        return TestPositionSource::instance();
    }
    static QString field(const ShopDriver &shop, const char *name)
    {
        return shop.find<QLineEdit>(name)->text();
    }
    static QStringList decimals(const ShopDriver &shop)
    {
        return {field(shop, "latitudeField"), field(shop, "longitudeField")};
    }
    /// Returns degrees, minutes, seconds and hemisphere of "latitude" or "longitude".
    static QStringList sexagesimal(const ShopDriver &shop, const QByteArray &axis)
    {
        return {field(shop, (axis + "Degrees").constData()),
                field(shop, (axis + "Minutes").constData()),
                field(shop, (axis + "Seconds").constData()),
                shop.buttonText((axis + "Hemisphere").constData())};
    }
    static void typeInto(const ShopDriver &shop, const char *name, const QString &text)
    {
        auto *edit = shop.find<QLineEdit>(name);
        edit->setFocus();
        edit->selectAll();
        QTest::keyClick(edit, Qt::Key_Delete);
        QTest::keyClick(edit, Qt::Key_Home);
        QTest::keyClicks(edit, text);
    }
    static void chooseTab(const ShopDriver &shop, int index)
    {
        auto *bar = shop.find<QTabWidget>("coordinatesTabs")->tabBar();
        QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(index).center());
    }
    static QVariantList stored(ShopDriver &shop, int store)
    {
        const auto rows = shop.db->rows(
            QString("select latitude, longitude, altitude from gpscoord where id = %1").arg(store));
        return rows.value(0);
    }
    static float setting(const char *name)
    {
        return QSettings("Vantor", "Trolleo").value(name).toFloat();
    }
};

// The pictures of the map are compiled into a static library.
static void initPictures()
{
    Q_INIT_RESOURCE(pictures);
}

void TestCoordinatesPage::initTestCase()
{
    // The markers need the SVG plugin as well.
    initPictures();
    QVERIFY(!QIcon(":/img/smile.svg").pixmap(20).isNull());
    // Qt's own sources must not be found, since one of them is always available.
    QVERIFY(QSqlDatabase::isDriverAvailable("QSQLITE"));
    QCoreApplication::setLibraryPaths({qEnvironmentVariable("QT_PLUGIN_PATH")});
}

void TestCoordinatesPage::startsOnTheEditView()
{
    ShopDriver shop(stores, gpsOn);
    open(shop, 0);
    QVERIFY(shop.find<QLineEdit>("latitudeField")->isVisible());
    QVERIFY(shop.find<QAbstractButton>("editViewButton")->isChecked());
    QVERIFY(!shop.find<QAbstractButton>("gpsViewButton")->isChecked());
    QVERIFY(!shop.find<QAbstractButton>("mapViewButton")->isChecked());
    QVERIFY(shop.isEnabled("gpsViewButton"));
    auto *tabs = shop.find<QTabWidget>("coordinatesTabs");
    QCOMPARE(tabs->tabText(0), QString::fromUtf8("DD.DD°"));
    QCOMPARE(tabs->tabText(1), QString::fromUtf8("DD°MM'SS''"));
    // Pressing the button of the current view again keeps the view.
    shop.press("editViewButton");
    QVERIFY(shop.find<QAbstractButton>("editViewButton")->isChecked());
}

void TestCoordinatesPage::showsTheCoordinatesOfTheStore()
{
    ShopDriver shop(stores, gpsOn);
    open(shop, 0);
    QCOMPARE(decimals(shop), (QStringList{"55.755833", "-33.5"}));
    QCOMPARE(sexagesimal(shop, "latitude"), (QStringList{"55", "45", "21.00", "N"}));
    QCOMPARE(sexagesimal(shop, "longitude"), (QStringList{"33", "30", "0.00", "W"}));
    QCOMPARE(shop.labelText("gpsStatus"), "Current store Coordinates");
    QCOMPARE(shop.labelText("gpsLatitude"), "55.755833");
    QCOMPARE(shop.labelText("gpsLongitude"), "-33.5");
}

void TestCoordinatesPage::storeWithoutCoordinatesStartsEmpty()
{
    ShopDriver shop(stores, gpsOn);
    open(shop, 0);
    shop.press("backButton");
    shop.press("backButton");
    shop.press("backButton");
    open(shop, 1);
    QCOMPARE(decimals(shop), (QStringList{".", "."}));
    QCOMPARE(sexagesimal(shop, "latitude"), (QStringList{"", "", ".", "N"}));
    QCOMPARE(sexagesimal(shop, "longitude"), (QStringList{"", "", ".", "E"}));
    QCOMPARE(shop.labelText("gpsStatus"), "Coordinates is not Set");
    QCOMPARE(shop.labelText("gpsLatitude"), "");
    QCOMPARE(shop.labelText("gpsLongitude"), "");
}

/// After the largest id no new one is found, and id 1 is tried.
void TestCoordinatesPage::coordinatesOfARefusedStoreAreNotAnothers()
{
    ShopDriver shop({store(1, "Bakery"), store(2147483647, "Dairy")}, gpsOn);
    shop.press("shopsButton");
    shop.press("newButton");
    shop.type("Corner shop");
    shop.press("coordinatesButton");
    typeInto(shop, "latitudeField", "10.5");
    typeInto(shop, "longitudeField", "20.25");
    shop.press("setButton");
    shop.press("saveButton");
    QCOMPARE(shop.page(), PageStores);
    QCOMPARE(stored(shop, 1), QVariantList());
}

void TestCoordinatesPage::newStoreStartsEmpty()
{
    ShopDriver shop(stores, gpsOn);
    open(shop, 0); // the store that was edited last
    shop.press("backButton");
    shop.press("backButton");
    shop.press("newButton");
    shop.press("coordinatesButton");
    QCOMPARE(decimals(shop), (QStringList{".", "."}));
    QCOMPARE(shop.labelText("gpsStatus"), "Coordinates is not Set");
    typeInto(shop, "latitudeField", "10.5");
    typeInto(shop, "longitudeField", "20.25");
    shop.press("setButton");
    shop.type("Tools");
    shop.press("saveButton");
    QCOMPARE(stored(shop, 3), (QVariantList{10.5, 20.25, 0.0}));
    QCOMPARE(stored(shop, 1), (QVariantList{55.755833, -33.5, 7.0}));
    // Only a new store starts with empty fields.
    shop.press("backButton");
    open(shop, 0);
    QCOMPARE(decimals(shop), (QStringList{"55.755833", "-33.5"}));
}

void TestCoordinatesPage::viewIsKeptExceptTheMap()
{
    ShopDriver shop(stores, gpsOn);
    open(shop, 0);
    shop.press("gpsViewButton");
    QVERIFY(shop.find<QAbstractButton>("gpsViewButton")->isChecked());
    QVERIFY(!shop.find<QAbstractButton>("editViewButton")->isChecked());
    shop.press("backButton");
    shop.press("coordinatesButton");
    QVERIFY(shop.find<QAbstractButton>("gpsViewButton")->isChecked());
    QVERIFY(shop.find<QLabel>("gpsStatus")->isVisible());
    shop.press("mapViewButton");
    QVERIFY(shop.find<QAbstractButton>("mapViewButton")->isChecked());
    QVERIFY(shop.map()->isVisible());
    shop.press("backButton");
    shop.press("coordinatesButton");
    QVERIFY(shop.find<QAbstractButton>("editViewButton")->isChecked());
    QVERIFY(!shop.find<QAbstractButton>("mapViewButton")->isChecked());
    QVERIFY(shop.find<QLineEdit>("latitudeField")->isVisible());
}

void TestCoordinatesPage::tabsConvert()
{
    ShopDriver shop(stores, gpsOn);
    open(shop, 0);
    typeInto(shop, "latitudeField", "-33,5");
    typeInto(shop, "longitudeField", "10.1");
    chooseTab(shop, 1);
    QCOMPARE(sexagesimal(shop, "latitude"), (QStringList{"33", "30", "0.00", "S"}));
    QCOMPARE(sexagesimal(shop, "longitude"), (QStringList{"10", "6", "0.00", "E"}));
    typeInto(shop, "longitudeSeconds", "36.00");
    shop.press("longitudeHemisphere");
    chooseTab(shop, 0);
    QCOMPARE(decimals(shop), (QStringList{"-33.500000", "-10.110000"}));
}

void TestCoordinatesPage::hemispheresSwitch()
{
    ShopDriver shop(stores, gpsOn);
    open(shop, 1);
    chooseTab(shop, 1);
    for (const char *expected : {"S", "N", "S"}) {
        shop.press("latitudeHemisphere");
        QCOMPARE(shop.buttonText("latitudeHemisphere"), expected);
    }
    for (const char *expected : {"W", "E", "W"}) {
        shop.press("longitudeHemisphere");
        QCOMPARE(shop.buttonText("longitudeHemisphere"), expected);
    }
}

void TestCoordinatesPage::typedCoordinatesAreSaved_data()
{
    QTest::addColumn<QString>("latitude");
    QTest::addColumn<QString>("longitude");
    QTest::addColumn<QVariantList>("row");
    QTest::newRow("both") << "59.913822"
                          << "10.738741" << QVariantList{59.913822, 10.738741, 0.0};
    QTest::newRow("negative") << "-33.5"
                              << "-70" << QVariantList{-33.5, -70.0, 0.0};
    QTest::newRow("latitude only") << "5"
                                   << "" << QVariantList{5.0, 0.0, 0.0};
    QTest::newRow("pole") << "90"
                          << "0" << QVariantList{90.0, 0.0, 0.0};
}

void TestCoordinatesPage::typedCoordinatesAreSaved()
{
    QFETCH(QString, latitude);
    QFETCH(QString, longitude);
    QFETCH(QVariantList, row);
    ShopDriver shop(stores, gpsOn);
    open(shop, 1);
    typeInto(shop, "latitudeField", latitude);
    typeInto(shop, "longitudeField", longitude);
    shop.press("setButton");
    QCOMPARE(shop.page(), PageStoreEdit);
    QCOMPARE(shop.buttonText("coordinatesButton"), "coords is set (edit...)");
    QCOMPARE(setting("LastLatitude"), float(row.at(0).toDouble()));
    QCOMPARE(setting("LastLongitude"), float(row.at(1).toDouble()));
    // Nothing is in the database before the store is saved.
    QCOMPARE(stored(shop, 2), QVariantList());
    shop.press("saveButton");
    QCOMPARE(stored(shop, 2), row);
}

void TestCoordinatesPage::digitsThatAreNoNumberAreRefused()
{
    ShopDriver shop(stores, gpsOn);
    open(shop, 1);
    shop.type(QString::fromUtf8("1\u00bd2"), "latitudeField");
    shop.type(QString::fromUtf8("\u0663\u00b24"), "longitudeField");
    QCOMPARE(decimals(shop), (QStringList{"12.", "4."}));
    shop.press("setButton");
    shop.press("saveButton");
    QCOMPARE(stored(shop, 2), (QVariantList{12.0, 4.0, 0.0}));
}

void TestCoordinatesPage::uselessCoordinatesAreRefused_data()
{
    const QString empty = "Coordinates is Empty: You can not save zero or empty coordinates. "
                          "Press Cancel instead.";
    const QString range = "Coordinates are out of range: Latitude goes from -90 to 90 degrees, "
                          "longitude from -180 to 180.";
    QTest::addColumn<QString>("latitude");
    QTest::addColumn<QString>("longitude");
    QTest::addColumn<QString>("message");
    QTest::newRow("nothing") << ""
                             << "" << empty;
    QTest::newRow("zero") << "0"
                          << "0.000" << empty;
    QTest::newRow("equal") << "10.5"
                           << "10.5" << empty;
    QTest::newRow("almost equal") << "10.5"
                                  << "10.5001" << empty;
    QTest::newRow("beyond the north pole") << "90.000001"
                                           << "20" << range;
    QTest::newRow("beyond the south pole") << "-99.9"
                                           << "20" << range;
    QTest::newRow("beyond the date line") << "10"
                                          << "181" << range;
    QTest::newRow("999") << "999"
                         << "999" << range;
}

void TestCoordinatesPage::uselessCoordinatesAreRefused()
{
    QFETCH(QString, latitude);
    QFETCH(QString, longitude);
    QFETCH(QString, message);
    ShopDriver shop(stores, gpsOn);
    open(shop, 1);
    typeInto(shop, "latitudeField", latitude);
    typeInto(shop, "longitudeField", longitude);
    const QStringList typed = decimals(shop);
    shop.press("setButton");
    QCOMPARE(shop.message(), message);
    shop.press("messageOkButton");
    QCOMPARE(shop.page(), PageCoordinates);
    QCOMPARE(decimals(shop), typed);
    QVERIFY(!QSettings("Vantor", "Trolleo").contains("LastLatitude"));
    shop.press("backButton");
    QCOMPARE(shop.buttonText("coordinatesButton"), "(set Coordinates)");
    shop.press("saveButton");
    QCOMPARE(stored(shop, 2), QVariantList());
}

void TestCoordinatesPage::sexagesimalIsConvertedOnlyWhereItShows()
{
    ShopDriver shop(stores, gpsOn);
    open(shop, 1);
    chooseTab(shop, 1);
    typeInto(shop, "latitudeDegrees", "7");
    typeInto(shop, "latitudeMinutes", "30");
    typeInto(shop, "longitudeDegrees", "8");
    shop.press("setButton");
    shop.press("saveButton");
    QCOMPARE(stored(shop, 2), (QVariantList{7.5, 8.0, 0.0}));

    // The tab is still selected when the map sets a mark. The mark counts, which is more precise
    // than a hundredth of a second.
    ShopDriver other(
        stores,
        {{"GpsEnabled", true}, {"LastLatitude", 1.2345678F}, {"LastLongitude", 2.3456789F}});
    open(other, 1);
    chooseTab(other, 1);
    other.press("mapViewButton");
    other.chooseInMapMenu(0);
    const float marked = other.labelText("gpsLongitude").toFloat();
    other.press("setButton");
    other.press("saveButton");
    QVERIFY(float(stored(other, 2).value(1).toDouble()) == marked);
}

void TestCoordinatesPage::whatIsTypedIsNotFromTheGps()
{
    ShopDriver shop(stores, gpsOn);
    open(shop, 1);
    typeInto(shop, "latitudeField", "12.5");
    shop.press("gpsViewButton");
    shop.press("setButton");
    QVERIFY(shop.message().startsWith("Coordinates is Empty"));
}

void TestCoordinatesPage::backSavesNothing()
{
    ShopDriver shop(stores, gpsOn);
    open(shop, 0);
    typeInto(shop, "latitudeField", "1.5");
    shop.press("backButton");
    QCOMPARE(shop.page(), PageStoreEdit);
    shop.press("saveButton");
    QCOMPARE(stored(shop, 1), (QVariantList{55.755833, -33.5, 7.0}));
}

void TestCoordinatesPage::valueBeyondTheMaskIsKept()
{
    ShopDriver shop(store("Pier").at(37.5, -122.41942), gpsOn);
    open(shop, 0);
    QCOMPARE(decimals(shop), (QStringList{"37.5", "-122.41942"}));
    QCOMPARE(shop.labelText("gpsLongitude"), "-122.41942");
    QCOMPARE(sexagesimal(shop, "longitude"), (QStringList{"122", "25", "9.91", "W"}));
    typeInto(shop, "latitudeField", "38");
    shop.press("setButton");
    shop.press("saveButton");
    QCOMPARE(stored(shop, 1), (QVariantList{38.0, -122.41942, 0.0}));
    // The other notation keeps it as well.
    shop.press("backButton");
    open(shop, 0);
    chooseTab(shop, 1);
    shop.press("setButton");
    shop.press("saveButton");
    QCOMPARE(stored(shop, 1).value(1), QVariant(-122.41942));
    // Typing replaces it.
    shop.press("backButton");
    open(shop, 0);
    chooseTab(shop, 0);
    typeInto(shop, "longitudeField", "12");
    shop.press("setButton");
    shop.press("saveButton");
    QCOMPARE(stored(shop, 1).value(1), QVariant(12.0));
}

void TestCoordinatesPage::hiddenValueIsNotRounded()
{
    ShopDriver shop(store("Island").at(1.2e-05, 20), gpsOn);
    open(shop, 0);
    chooseTab(shop, 1);
    QCOMPARE(sexagesimal(shop, "latitude"), (QStringList{"0", "0", "0.04", "N"}));
    shop.press("setButton");
    shop.press("saveButton");
    QCOMPARE(stored(shop, 1), (QVariantList{1.2e-05, 20.0, 0.0}));
}

void TestCoordinatesPage::numberThatDoesNotFitIsRefused()
{
    ShopDriver shop(stores, gpsOn);
    open(shop, 1);
    typeInto(shop, "latitudeField", "37.5");
    typeInto(shop, "longitudeField", "-122.25");
    QCOMPARE(decimals(shop), (QStringList{"37.5", "."}));
    QCOMPARE(shop.banner(),
             "This number does not fit. Choose the place on the map, or get it from the GPS.");
    chooseTab(shop, 1);
    typeInto(shop, "longitudeDegrees", "122");
    QCOMPARE(field(shop, "longitudeDegrees"), "");
}

void TestCoordinatesPage::textOfAssistiveTechnologyIsSaved()
{
    ShopDriver shop(stores, gpsOn);
    open(shop, 0);
    QAccessible::queryAccessibleInterface(shop.find<QLineEdit>("latitudeField"))
        ->setText(QAccessible::Value, "50.5");
    shop.press("setButton");
    shop.press("saveButton");
    QCOMPARE(stored(shop, 1), (QVariantList{50.5, -33.5, 0.0}));
}

void TestCoordinatesPage::pastedPairFillsBothFields()
{
    ShopDriver shop(stores, gpsOn);
    open(shop, 1);
    const auto paste = [&](const QString &text) {
        QGuiApplication::clipboard()->setText(text);
        QTest::keySequence(shop.find<QLineEdit>("longitudeField"), QKeySequence::Paste);
    };
    paste("50.125, 14.25");
    QCOMPARE(decimals(shop), (QStringList{"50.125", "14.25"}));
    paste("95, 7"); // is no place
    QCOMPARE(decimals(shop), (QStringList{"50.125", "14.25"}));
    shop.press("setButton");
    shop.press("saveButton");
    QCOMPARE(stored(shop, 2), (QVariantList{50.125, 14.25, 0.0}));
}

void TestCoordinatesPage::secondVisitShowsWhatWasTaken()
{
    ShopDriver shop(stores, gpsOn);
    open(shop, 0);
    typeInto(shop, "latitudeField", "12.345678");
    typeInto(shop, "longitudeField", "-5.5");
    shop.press("setButton");
    shop.press("coordinatesButton");
    QCOMPARE(decimals(shop), (QStringList{"12.345678", "-5.5"}));
    QCOMPARE(shop.labelText("gpsStatus"), "Current store Coordinates");
}

void TestCoordinatesPage::positionFromTheGps()
{
    ShopDriver shop(stores, gpsOn);
    open(shop, 1);
    shop.press("gpsViewButton");
    QCOMPARE(shop.labelText("gpsHeading"), "Getting coords from GPS");
    QCOMPARE(shop.labelText("gpsStatus"), "Current store Coordinates");
    shop.press("getFromGpsButton");
    QCOMPARE(source()->requests, 1);
    QCOMPARE(shop.labelText("gpsStatus"), "Requesting NEW store Coordinates from GPS...");
    shop.press("getFromGpsButton"); // a second press
    source()->deliver(59.913822, 10.738741, 12.5);
    QCOMPARE(shop.labelText("gpsStatus"), "Current store Coordinates UPDATED");
    QCOMPARE(shop.labelText("gpsLatitude"), "59.913822");
    QCOMPARE(shop.labelText("gpsLongitude"), "10.738741");
    QCOMPARE(decimals(shop), (QStringList{"59.913822", "10.738741"}));
    // No further position is taken.
    source()->deliver(1, 2);
    QCOMPARE(shop.labelText("gpsLatitude"), "59.913822");
    shop.press("setButton");
    QCOMPARE(shop.page(), PageStoreEdit);
    QCOMPARE(shop.buttonText("coordinatesButton"), "coords is set (edit...)");
    shop.press("saveButton");
    QCOMPARE(stored(shop, 2), (QVariantList{59.913822, 10.738741, 12.5}));
    QCOMPARE(setting("LastLatitude"), 59.913822F);
}

void TestCoordinatesPage::positionAtHandIsTakenAtOnce()
{
    ShopDriver shop(stores, {{"GpsEnabled", true}, {"GpsAutoStart", true}});
    source()->deliver(3.5, 4.5);
    open(shop, 1);
    shop.press("gpsViewButton");
    shop.press("getFromGpsButton");
    QCOMPARE(source()->requests, 0);
    QCOMPARE(shop.labelText("gpsStatus"), "Current store Coordinates UPDATED");
    QCOMPARE(shop.labelText("gpsLatitude"), "3.5");
}

void TestCoordinatesPage::positionIsAwaited()
{
    ShopDriver shop(stores, gpsOn);
    open(shop, 1);
    shop.press("gpsViewButton");
    shop.press("getFromGpsButton");
    source()->deliver(3.5, 4.5);
    // The next request waits for a new position.
    shop.press("getFromGpsButton");
    QCOMPARE(shop.labelText("gpsStatus"), "Requesting NEW store Coordinates from GPS...");
    QCOMPARE(shop.labelText("gpsLatitude"), "3.5");
    QCOMPARE(source()->requests, 2);
    source()->fail(QGeoPositionInfoSource::UpdateTimeoutError);
    QCOMPARE(source()->requests, 3);
    source()->deliver(5.5, 6.5);
    QCOMPARE(shop.labelText("gpsLatitude"), "5.5");
    source()->fail(QGeoPositionInfoSource::UpdateTimeoutError);
    QCOMPARE(source()->requests, 3);
}

void TestCoordinatesPage::editViewEndsTheWait()
{
    for (const char *view : {"editViewButton", "mapViewButton", "backButton"}) {
        ShopDriver shop(stores, gpsOn);
        open(shop, 1);
        shop.press("gpsViewButton");
        shop.press("getFromGpsButton");
        shop.press(view);
        source()->fail(QGeoPositionInfoSource::UpdateTimeoutError);
        QCOMPARE(source()->requests, 1);
        source()->deliver(3.5, 4.5);
        if (shop.page() == PageStoreEdit)
            shop.press("coordinatesButton");
        QCOMPARE(decimals(shop), (QStringList{".", "."}));
    }
}

void TestCoordinatesPage::refusalDoesNotEndTheWait()
{
    ShopDriver shop(stores, gpsOn);
    open(shop, 1);
    shop.press("gpsViewButton");
    shop.press("getFromGpsButton");
    shop.press("setButton");
    QVERIFY(shop.message().startsWith("Coordinates is Empty"));
    source()->fail(QGeoPositionInfoSource::UpdateTimeoutError);
    QCOMPARE(source()->requests, 2);
    shop.press("messageOkButton");
    QCOMPARE(shop.labelText("gpsStatus"), "Requesting NEW store Coordinates from GPS...");
    source()->deliver(3.5, 4.5);
    QCOMPARE(shop.labelText("gpsLatitude"), "3.5");
}

void TestCoordinatesPage::refusalForgetsWhatWasTaken()
{
    ShopDriver shop(stores, gpsOn);
    open(shop, 1);
    shop.press("gpsViewButton");
    shop.press("getFromGpsButton");
    source()->deliver(3.5, 4.5);
    shop.press("editViewButton");
    typeInto(shop, "latitudeField", "95");
    shop.press("setButton");
    shop.press("messageOkButton");
    shop.press("backButton");
    shop.press("saveButton");
    QCOMPARE(stored(shop, 2), QVariantList());
}

void TestCoordinatesPage::sexagesimalGoesToTheMap()
{
    ShopDriver shop(stores, gpsOn);
    open(shop, 0);
    chooseTab(shop, 1);
    typeInto(shop, "latitudeDegrees", "48");
    shop.press("mapViewButton");
    QCOMPARE(shop.map()->centerLatitude(), 48.755833F);
    QCOMPARE(decimals(shop), (QStringList{"48.755833", "-33.5"}));
}

void TestCoordinatesPage::gpsOff()
{
    ShopDriver shop(stores, {{"GpsEnabled", false}});
    open(shop, 0);
    QVERIFY(!shop.isEnabled("gpsViewButton"));
    QVERIFY(shop.isEnabled("editViewButton"));
    QVERIFY(shop.isEnabled("mapViewButton"));
    QVERIFY(!shop.isEnabled("getFromGpsButton"));
    typeInto(shop, "latitudeField", "12.5");
    shop.press("setButton");
    QCOMPARE(shop.buttonText("coordinatesButton"), "coords is set (edit...)");
    // "Center by GPS" on the map has nothing to wait for, and has no effect.
    shop.press("coordinatesButton");
    shop.press("mapViewButton");
    shop.chooseInMapMenu(2);
    shop.press("setButton");
    QCOMPARE(shop.page(), PageStoreEdit);
}

void TestCoordinatesPage::mapStartsAtTheLastPosition()
{
    TileHost host;
    qputenv("TROLLEO_TILE_SERVER", host.address());
    ShopDriver shop(stores,
                    {{"GpsEnabled", true}, {"LastLatitude", 48.5F}, {"LastLongitude", 9.5F}});
    open(shop, 1);
    QTest::qWait(50);
    QCOMPARE(host.paths, QStringList());
    shop.press("mapViewButton");
    QCOMPARE(shop.map()->centerLatitude(), 48.5F);
    QCOMPARE(shop.map()->centerLongitude(), 9.5F);
    QTRY_VERIFY(host.paths.size() > 8);
    // All of them are around that place, at zoom 16.
    const QPointF tile = WebMercator::tileForCoordinate(48.5, 9.5, 16);
    for (const QString &path : std::as_const(host.paths)) {
        const QStringList parts = path.split('/');
        QCOMPARE(parts.at(1), "16");
        QVERIFY2(std::abs(parts.at(2).toInt() - tile.x()) < 5, qPrintable(path));
    }
    // There is no pin, although the previous store has one.
    QTest::qWait(300);
    const QImage without = shop.map()->grab().toImage();
    shop.press("backButton");
    shop.press("backButton");
    shop.press("backButton");
    open(shop, 0);
    shop.press("mapViewButton");
    QCOMPARE(shop.map()->centerLatitude(), 55.755833F);
    shop.press("backButton");
    shop.press("backButton");
    shop.press("backButton");
    open(shop, 1);
    shop.press("mapViewButton");
    QTRY_COMPARE(shop.map()->grab().toImage(), without);
    qputenv("TROLLEO_TILE_SERVER", "http://127.0.0.1:9");
}

void TestCoordinatesPage::mapStartsAtTheStore()
{
    ShopDriver shop(stores, gpsOn);
    open(shop, 0);
    shop.press("mapViewButton");
    QCOMPARE(shop.map()->centerLatitude(), 55.755833F);
    QCOMPARE(shop.map()->centerLongitude(), -33.5F);
    // Typed coordinates count even before they are set.
    shop.press("editViewButton");
    typeInto(shop, "latitudeField", "12.5");
    shop.press("mapViewButton");
    QCOMPARE(shop.map()->centerLatitude(), 12.5F);
}

void TestCoordinatesPage::markOnTheMapIsSaved()
{
    ShopDriver shop(stores,
                    {{"GpsEnabled", true}, {"LastLatitude", 48.5F}, {"LastLongitude", 9.5F}});
    open(shop, 1);
    shop.press("mapViewButton");
    shop.chooseInMapMenu(0);
    QCOMPARE(shop.labelText("gpsStatus"), "Current store Coordinates UPDATED");
    const float latitude = shop.labelText("gpsLatitude").toFloat();
    const float longitude = shop.labelText("gpsLongitude").toFloat();
    QVERIFY(std::abs(latitude - 48.5F) < 0.0001F);
    QVERIFY(std::abs(longitude - 9.5F) < 0.0001F);
    QCOMPARE(field(shop, "latitudeField").toFloat(), latitude);
    QCOMPARE(sexagesimal(shop, "latitude").first(), "48");
    shop.press("setButton");
    QCOMPARE(shop.page(), PageStoreEdit);
    shop.press("saveButton");
    QCOMPARE(float(stored(shop, 2).value(0).toDouble()), latitude);
    QCOMPARE(float(stored(shop, 2).value(1).toDouble()), longitude);
}

void TestCoordinatesPage::mapReturnsToItsMark()
{
    ShopDriver shop(stores,
                    {{"GpsEnabled", true}, {"LastLatitude", 48.5F}, {"LastLongitude", 9.5F}});
    open(shop, 1);
    shop.press("mapViewButton");
    for (int times = 0; times < 50; ++times)
        QTest::keyClick(shop.map(), Qt::Key_Right);
    shop.chooseInMapMenu(0);
    const float marked = shop.labelText("gpsLongitude").toFloat();
    QVERIFY(marked > 9.51F);
    shop.press("editViewButton");
    shop.press("mapViewButton");
    QVERIFY(std::abs(shop.map()->centerLongitude() - marked) < 0.00001F);
    // A mark counts even without "Set".
    shop.press("backButton");
    shop.press("saveButton");
    QVERIFY(float(stored(shop, 2).value(1).toDouble()) == marked);
}

void TestCoordinatesPage::mapIsCentredByTheGps()
{
    ShopDriver shop(stores, {{"GpsEnabled", true}, {"GpsAutoStart", true}});
    source()->deliver(3.5, 4.5);
    open(shop, 0);
    shop.press("mapViewButton");
    shop.chooseInMapMenu(2);
    QCOMPARE(shop.map()->centerLatitude(), 3.5F);
    QCOMPARE(shop.map()->centerLongitude(), 4.5F);
    QCOMPARE(source()->requests, 0);
    // The next time it waits for a new position.
    shop.chooseInMapMenu(2);
    QCOMPARE(source()->requests, 1);
    source()->deliver(5.5, 6.5);
    QCOMPARE(shop.map()->centerLatitude(), 5.5F);
    source()->deliver(7.5, 8.5);
    QCOMPARE(shop.map()->centerLatitude(), 5.5F);
}

void TestCoordinatesPage::mapWaitsForThePosition()
{
    ShopDriver shop(stores, gpsOn);
    open(shop, 0);
    shop.press("mapViewButton");
    shop.chooseInMapMenu(2);
    QCOMPARE(shop.map()->centerLatitude(), 55.755833F);
    source()->deliver(3.5, 4.5);
    QCOMPARE(shop.map()->centerLatitude(), 3.5F);
    QCOMPARE(shop.map()->centerLongitude(), 4.5F);
    // "Set" takes the contents of the fields, which the position has not changed.
    QCOMPARE(decimals(shop), (QStringList{"55.755833", "-33.5"}));
}

STOPPABLE_TEST_MAIN(TestCoordinatesPage)
#include "tst_coordinatespage.moc"
