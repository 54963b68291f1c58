// SPDX-License-Identifier: MIT
#include <cmath>

#include <QAbstractButton>
#include <QAccessible>
#include <QIcon>
#include <QScrollBar>
#include <QSqlDatabase>
#include <QStackedWidget>
#include <QtTest>

#include "base/pages.h"
#include "map/mapswidget.h"
#include "map/webmercator.h"
#include "tests/support/records.h"
#include "tests/support/shopdriver.h"
#include "tests/support/testpositionplugin.h"
#include "tests/support/tilehost.h"
#include "widgets/listrow.h"

Q_IMPORT_PLUGIN(TestPositionPlugin)

static const Records threeStores{
    store("Bakery").at(10.01, 20).openList("Bread"),
    store("Dairy").at(10.02, 20).openList("Milk"),
    store("Tools").at(10.03, 20).openList("Nails"),
};
static const QVariantMap gpsOn{{"GpsEnabled", true}};

class TestTrackedViews : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void startsWithTheList();
    void mapAndBackKeepsTheList();
    void mapShowsPositionAndNearestStore();
    void mapWithoutAPositionStaysWhereItIs();
    void viewIsKept();
    void withGpsOffThereIsNoMap();
    void distancesAreToldAsPeopleSayThem_data();
    void distancesAreToldAsPeopleSayThem();
    void everyPositionMovesTheMap();
    void reminderOnDistancesOfBefore();
    void nextStoreMovesTheMap();
    void menuOfTheMap();
    void listStaysWhereItWasScrolled();
    void chosenStoreStaysChosen();
    void noTilesOfTheStartPlace();
    void standingStillPaintsNothing_data();
    void standingStillPaintsNothing();

private:
    static TestPositionSource *source()
    {
        return TestPositionSource::instance();
    }
    /// Shows the tracked stores from that latitude.
    static void view(ShopDriver &shop, double latitude)
    {
        shop.press("reminderButton");
        shop.press("viewButton");
        QCOMPARE(shop.page(), PageWaiting);
        source()->deliver(latitude, 20);
        QCOMPARE(shop.page(), PageTrackedList);
    }
    /// Tracks all stores, and shows them.
    static void track(ShopDriver &shop, double latitude)
    {
        shop.press("reminderButton");
        shop.press("startButton");
        source()->deliver(latitude, 20);
        shop.press("viewButton");
        QCOMPARE(shop.page(), PageTrackedList);
    }
    static MapsWidget *map(const ShopDriver &shop)
    {
        return shop.window->findChild<QWidget *>("trackedListPage")->findChild<MapsWidget *>();
    }
    static bool isChecked(const ShopDriver &shop, const char *button)
    {
        return shop.find<QAbstractButton>(button)->isChecked();
    }
    /// Returns whether something is painted in the square that ends at a point of the map.
    static bool isMarked(const ShopDriver &shop, const QPoint &tip, int extent)
    {
        const QImage image = map(shop)->grab().toImage();
        int differing = 0;
        for (int y = tip.y() - extent; y < tip.y(); ++y)
            for (int x = tip.x() - extent; x < tip.x(); ++x)
                differing += image.pixelColor(x, y) != QColor(Qt::lightGray);
        return differing > 50;
    }
    /// Returns the position of a place on the map.
    static QPoint onMap(const ShopDriver &shop, double latitude, double longitude)
    {
        QCoreApplication::processEvents(); // lays out the map
        const MapsWidget *widget = map(shop);
        return QPoint(widget->width() / 2, widget->height() / 2) +
               WebMercator::pixelOffset(latitude, longitude, widget->centerLatitude(),
                                        widget->centerLongitude(), 14)
                   .toPoint();
    }
};

// The pictures of the map are compiled into a static library.
static void initPictures()
{
    Q_INIT_RESOURCE(pictures);
}

void TestTrackedViews::initTestCase()
{
    // The markers need the SVG plugin as well.
    initPictures();
    QVERIFY(!QIcon(":/img/smile.svg").pixmap(20).isNull());
    // Qt's own sources must not be found, since one of them is always available.
    QVERIFY(QSqlDatabase::isDriverAvailable("QSQLITE"));
    QCoreApplication::setLibraryPaths({qEnvironmentVariable("QT_PLUGIN_PATH")});
}

void TestTrackedViews::startsWithTheList()
{
    ShopDriver shop(threeStores, gpsOn);
    view(shop, 10);
    QVERIFY(isChecked(shop, "listViewButton"));
    QVERIFY(!isChecked(shop, "mapViewButton"));
    QVERIFY(shop.isEnabled("mapViewButton"));
    QVERIFY(shop.list()->isVisible());
    QVERIFY(!map(shop)->isVisible());
    shop.press("listViewButton");
    QVERIFY(isChecked(shop, "listViewButton"));
}

void TestTrackedViews::mapAndBackKeepsTheList()
{
    ShopDriver shop(threeStores, gpsOn);
    view(shop, 10);
    const QStringList rows = shop.rows();
    QCOMPARE(rows.size(), 3);
    shop.press("mapViewButton");
    QVERIFY(!isChecked(shop, "listViewButton"));
    QVERIFY(isChecked(shop, "mapViewButton"));
    QVERIFY(map(shop)->isVisible());
    QTRY_VERIFY(map(shop)->hasFocus());
    shop.press("listViewButton");
    QVERIFY(isChecked(shop, "listViewButton"));
    QVERIFY(!isChecked(shop, "mapViewButton"));
    QVERIFY(shop.list()->isVisible());
    QCOMPARE(shop.rows(), rows);
}

void TestTrackedViews::mapShowsPositionAndNearestStore()
{
    ShopDriver shop(threeStores, gpsOn);
    shop.window->resize(480, 800); // so that the map shows the next store as well
    view(shop, 10.0085);
    shop.press("mapViewButton");
    QCOMPARE(map(shop)->centerLatitude(), 10.0085F);
    QCOMPARE(map(shop)->centerLongitude(), 20.0F);
    QVERIFY(isMarked(shop, onMap(shop, 10.0085, 20), 20));
    QVERIFY(isMarked(shop, onMap(shop, 10.01, 20), 30));
    QVERIFY(!isMarked(shop, onMap(shop, 10.02, 20), 30));
}

void TestTrackedViews::mapWithoutAPositionStaysWhereItIs()
{
    ShopDriver shop(threeStores, gpsOn);
    const float start = map(shop)->centerLatitude();
    QCOMPARE(start, 59.913822F);
    shop.press("reminderButton");
    shop.press("viewButton");
    shop.press("waitingCancelButton");
    QCOMPARE(map(shop)->centerLatitude(), start);
}

void TestTrackedViews::viewIsKept()
{
    ShopDriver shop(threeStores, gpsOn);
    view(shop, 10.005);
    shop.press("mapViewButton");
    shop.press("okButton");
    QCOMPARE(shop.page(), PageTracking);
    shop.press("viewButton");
    source()->deliver(10.006, 20);
    QCOMPARE(shop.page(), PageTrackedList);
    QVERIFY(map(shop)->isVisible());
    QVERIFY(isChecked(shop, "mapViewButton"));
    QVERIFY(!isChecked(shop, "listViewButton"));
    // It shows the new position.
    QCOMPARE(map(shop)->centerLatitude(), 10.006F);
    shop.press("listViewButton");
    QVERIFY(shop.rows().first().startsWith("Bakery|44"));
}

void TestTrackedViews::withGpsOffThereIsNoMap()
{
    ShopDriver shop(threeStores, {{"GpsEnabled", false}});
    shop.press("reminderButton");
    shop.press("viewButton");
    QCOMPARE(shop.page(), PageTrackedList);
    QVERIFY(!shop.isEnabled("mapViewButton"));
    QVERIFY(shop.list()->isVisible());
    QCOMPARE(shop.rows(), (QStringList{"Bakery|unknown", "Dairy|unknown", "Tools|unknown"}));
}

void TestTrackedViews::distancesAreToldAsPeopleSayThem_data()
{
    // One meter is 1 / 111195 degrees of latitude.
    QTest::addColumn<double>("meters");
    QTest::addColumn<QString>("english");
    QTest::addColumn<QString>("russian");
    QTest::newRow("near") << 253.4 << "253 m"
                          << "253 м";
    QTest::newRow("almost a kilometer") << 999.4 << "999 m"
                                        << "999 м";
    QTest::newRow("rounded to a kilometer") << 999.6 << "1.0 km"
                                            << "1,0 км";
    QTest::newRow("some kilometers") << 1640.0 << "1.6 km"
                                     << "1,6 км";
    QTest::newRow("rounded to a hundred") << 99960.0 << "100 km"
                                          << "100 км";
    QTest::newRow("far") << 345600.0 << "346 km"
                         << "346 км";
}

void TestTrackedViews::distancesAreToldAsPeopleSayThem()
{
    QFETCH(double, meters);
    QFETCH(QString, english);
    QFETCH(QString, russian);
    ShopDriver shop(store("Bakery").at(0, 20).openList("Bread"), {{"GpsEnabled", true}});
    for (const QString &distance : {english, russian}) {
        shop.press("reminderButton");
        shop.press("viewButton");
        if (shop.page() == PageWaiting)
            source()->deliver(meters / 111195.0, 20);
        QCOMPARE(shop.page(), PageTrackedList);
        const QModelIndex row = shop.list()->model()->index(0, 0);
        QVERIFY(std::abs(row.data(SecondColumnRole).toDouble() - meters) < meters * 1e-3);
        QAccessibleInterface *list = QAccessible::queryAccessibleInterface(shop.list());
        QCOMPARE(list->child(0)->text(QAccessible::Name), "Bakery, " + distance);
        // The number of six decimals takes more room.
        const QImage shown = shop.list()->grab().toImage();
        static_cast<ListRow *>(shop.list()->item(0))->setTexts("Bakery", distance);
        QCOMPARE(shop.list()->grab().toImage(), shown);
        shop.press("backButton");
        shop.press("backButton");
        if (distance == english)
            shop.changeLanguage("russianRadio");
    }
}

void TestTrackedViews::everyPositionMovesTheMap()
{
    ShopDriver shop(threeStores, gpsOn);
    track(shop, 10.004);
    shop.press("mapViewButton");
    for (const double latitude : {10.0045, 10.005, 10.0055}) {
        source()->deliver(latitude, 20.001);
        QCOMPARE(map(shop)->centerLatitude(), float(latitude));
        QCOMPARE(map(shop)->centerLongitude(), 20.001F);
        QVERIFY(isMarked(shop, onMap(shop, latitude, 20.001), 20));
    }
}

void TestTrackedViews::reminderOnDistancesOfBefore()
{
    ShopDriver shop(threeStores, gpsOn);
    track(shop, 10.005);
    shop.press("mapViewButton");
    // The distances are still those at 550 m.
    source()->deliver(10.0099, 20);
    QCOMPARE(shop.page(), PageTrackedList);
    shop.press("listViewButton");
    QVERIFY(shop.rows().first().startsWith("Bakery|55"));
    source()->deliver(10.0099, 20);
    QCOMPARE(shop.page(), PageReminder);
    QVERIFY(shop.labelText("reminderStore").startsWith("Bakery (at 11."));

    // A reminder can also result from distances that were computed before.
    ShopDriver other(threeStores, gpsOn);
    track(other, 10.005);
    other.press("mapViewButton");
    other.press("okButton");
    source()->deliver(10.0095, 20);
    QCOMPARE(other.page(), PageReminder);
    other.press("nextButton");
    other.press("viewButton");
    QVERIFY(map(other)->isVisible());
}

void TestTrackedViews::nextStoreMovesTheMap()
{
    ShopDriver shop(threeStores, gpsOn);
    track(shop, 10.005);
    shop.press("mapViewButton");
    shop.press("okButton");
    source()->deliver(10.0095, 20);
    QCOMPARE(shop.page(), PageReminder);
    shop.press("nextButton");
    QCOMPARE(shop.page(), PageTracking);
    QCOMPARE(map(shop)->centerLatitude(), 10.02F);
    // In list view the map stays where it is.
    ShopDriver other(threeStores, gpsOn);
    track(other, 10.005);
    const float before = map(other)->centerLatitude();
    source()->deliver(10.0095, 20);
    other.press("nextButton");
    QCOMPARE(map(other)->centerLatitude(), before);
}

void TestTrackedViews::menuOfTheMap()
{
    ShopDriver shop(threeStores, gpsOn);
    view(shop, 10.005);
    shop.press("mapViewButton");
    shop.chooseInMapMenu(0);
    QCOMPARE(map(shop)->centerLatitude(), 10.01F);
    shop.chooseInMapMenu(2);
    QCOMPARE(map(shop)->centerLatitude(), 10.005F);
}

/// Twenty stores, one north of the other.
static Records manyStores()
{
    Records records;
    for (int id = 1; id <= 20; ++id)
        records.store(QString("Store %1").arg(id)).at(10.0 + 0.01 * id, 20).openList("List");
    return records;
}

void TestTrackedViews::listStaysWhereItWasScrolled()
{
    ShopDriver shop(manyStores(), gpsOn);
    track(shop, 10);
    QCoreApplication::processEvents();
    QScrollBar *bar = shop.list()->verticalScrollBar();
    QVERIFY(bar->maximum() > 100);
    bar->setValue(77);
    source()->deliver(10.0001, 20);
    QCOMPARE(bar->value(), 77);
    QCoreApplication::processEvents();
    QCOMPARE(bar->value(), 77);
    QCOMPARE(shop.list()->currentRow(), -1);
}

void TestTrackedViews::chosenStoreStaysChosen()
{
    ShopDriver shop(threeStores, gpsOn);
    track(shop, 10.0144);
    QVERIFY(shop.rows().first().startsWith("Bakery"));
    shop.list()->setCurrentRow(0);
    source()->deliver(10.0156, 20); // now nearer to the other
    QVERIFY(shop.rows().first().startsWith("Dairy"));
    QCOMPARE(shop.list()->currentRow(), 1);
    source()->deliver(10.0156, 20);
    QCOMPARE(shop.list()->currentRow(), 1);
}

void TestTrackedViews::noTilesOfTheStartPlace()
{
    TileHost host;
    qputenv("TROLLEO_TILE_SERVER", host.address());
    ShopDriver shop(threeStores, gpsOn);
    shop.window->resize(480, 800); // turns the window, which shows every page for a moment
    QTest::qWait(50);
    view(shop, 10.005);
    QTest::qWait(50);
    QCOMPARE(host.paths, QStringList());
    shop.press("mapViewButton");
    QTRY_VERIFY(host.paths.size() > 8);
    const QPointF tile = WebMercator::tileForCoordinate(10.005, 20, 14);
    for (const QString &path : std::as_const(host.paths)) {
        QVERIFY(path.startsWith("/14/"));
        QVERIFY2(std::abs(path.split('/').at(2).toInt() - tile.x()) < 5, qPrintable(path));
    }
    QCOMPARE(host.mostWaiting, 1);
    qputenv("TROLLEO_TILE_SERVER", "http://127.0.0.1:9");
}

namespace {

/// Counts the paint events of a widget.
class PaintCounter : public QObject
{
public:
    explicit PaintCounter(QWidget *widget)
    {
        widget->installEventFilter(this);
    }
    bool eventFilter(QObject * /*object*/, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            ++paints;
        return false;
    }

    int paints = 0;
};

} // namespace

void TestTrackedViews::standingStillPaintsNothing_data()
{
    QTest::addColumn<bool>("onTheMap");
    QTest::newRow("list") << false;
    QTest::newRow("map") << true;
}

void TestTrackedViews::standingStillPaintsNothing()
{
    QFETCH(bool, onTheMap);
    ShopDriver shop(threeStores, gpsOn);
    track(shop, 10.005);
    if (onTheMap)
        shop.press("mapViewButton");
    source()->deliver(10.005, 20);
    QTest::qWait(300);
    PaintCounter counter(onTheMap ? static_cast<QWidget *>(map(shop)) : shop.list()->viewport());
    for (int position = 0; position < 5; ++position) {
        source()->deliver(10.005, 20);
        QTest::qWait(30);
    }
    QCOMPARE(counter.paints, 0);
    source()->deliver(10.0051, 20);
    QTRY_VERIFY(counter.paints > 0);
}

STOPPABLE_TEST_MAIN(TestTrackedViews)
#include "tst_trackedviews.moc"
