// SPDX-License-Identifier: MIT
#include <memory>

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QPainter>
#include <QPointingDevice>
#include <QPushButton>
#include <QSignalSpy>
#include <QTcpSocket>
#include <QtTest>
#include <QVBoxLayout>

#include "map/mapswidget.h"
#include "map/webmercator.h"
#include "tests/support/testhome.h"
#include "tests/support/tilehost.h"

static void initPictures()
{
    Q_INIT_RESOURCE(pictures);
}

/// A map that records what it paints, and has a magnifier.
class Map : public MapsWidget
{
public:
    using MapsWidget::magnifierPos;
    using MapsWidget::zoomed;

    QRegion painted;

protected:
    void paintEvent(QPaintEvent *event) override
    {
        painted += event->region();
        MapsWidget::paintEvent(event);
    }
};

class TestMapsWidget : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        initPictures();
        device.reset(QTest::createTouchDevice());
    }
    void init();
    void cleanup();

    void clickBeforeThePointerEverMoved();
    void pressHeldOpensTheMenu();
    void shortTapOpensTheMenu();
    void pressThatHardlyMovesOpensTheMenu();
    void pressThatMovesDrags_data();
    void pressThatMovesDrags();
    void moveThatWaitsWhileTheProgramIsBusyDrags();
    void holdWhileTheProgramIsBusyOpensTheMenu();
    void newPressStartsAnew();
    void otherButtonsDoNothing();
    void fingerDoesWhatTheMouseDoes();
    void releaseOfTheOpeningPressChoosesNothing();
    void clickWhereTheFingerWasChooses();
    void menuOfTheEntryOfCoordinates();
    void menuOfTracking();
    void menuByKeyboard();
    void menuGoesWithTheMap();
    void tapTimerGoesWithTheMap();
    void setCoordsInTheMiddleIsTheCentre();
    void setCoordsElsewhere();
    void keysMoveTheView_data();
    void keysMoveTheView();
    void magnifier();
    void modesLookAtDifferentZooms();
    void tilesAreFetchedWhileSomebodySeesIt();
    void noTilesOfThePlaceBefore();
    void focusComesWithTheMap();
    void onlyWhatChangedIsPainted();
    void attributionIsLegible_data();
    void attributionIsLegible();
    void nightModePaintsTheSame();

private:
    QMenu *menu() const
    {
        return map->findChild<QMenu *>();
    }
    static QStringList entries(const QMenu *menu);
    /// Returns how far the centre has moved since the map was shown, in pixels.
    QPoint moved() const;
    void press(const QPoint &position, Qt::MouseButton button = Qt::LeftButton) const;
    void move(const QPoint &position, Qt::MouseButton button = Qt::LeftButton) const;

    static constexpr int zoom = 16;
    static constexpr qsizetype tilesOfView = 9;
    const QPoint middle{200, 150};
    std::unique_ptr<QPointingDevice> device;
    std::unique_ptr<TestHome> home;
    std::unique_ptr<TileHost> host;
    std::unique_ptr<Map> map;
    QPointF before;
};

void TestMapsWidget::init()
{
    home = std::make_unique<TestHome>();
    host = std::make_unique<TileHost>();
    qputenv("TROLLEO_TILE_SERVER", host->address());
    map = std::make_unique<Map>();
    map->setTrackingMode(false);
    map->resize(400, 300);
    map->setCenter(10, 20);
    map->show();
    QVERIFY(QTest::qWaitForWindowExposed(map.get()));
    QTRY_COMPARE(host->paths.size(), tilesOfView); // no more follow
    before = WebMercator::tileForCoordinate(10, 20, zoom);
}

void TestMapsWidget::cleanup()
{
    map.reset();
    host.reset();
    home.reset();
}

QStringList TestMapsWidget::entries(const QMenu *menu)
{
    QStringList result;
    for (const QAction *action : menu->actions())
        result << (action->isSeparator() ? "---" : action->text());
    return result;
}

QPoint TestMapsWidget::moved() const
{
    const QPointF now =
        WebMercator::tileForCoordinate(map->centerLatitude(), map->centerLongitude(), zoom);
    return ((now - before) * WebMercator::tileExtent).toPoint();
}

void TestMapsWidget::press(const QPoint &position, Qt::MouseButton button) const
{
    QTest::mousePress(map->windowHandle(), button, {}, position);
}

/// The button is held.
void TestMapsWidget::move(const QPoint &position, Qt::MouseButton button) const
{
    QMouseEvent event(QEvent::MouseMove, position, map->mapToGlobal(position), Qt::NoButton, button,
                      Qt::NoModifier);
    QCoreApplication::sendEvent(map.get(), &event);
}

/// The first test, because no other test must have moved the pointer.
void TestMapsWidget::clickBeforeThePointerEverMoved()
{
    QSignalSpy marked(map.get(), &MapsWidget::markUpdated);
    QContextMenuEvent event(QContextMenuEvent::Keyboard, {}, map->mapToGlobal(QPoint()));
    QCoreApplication::sendEvent(map.get(), &event);
    QVERIFY(menu());
    QVERIFY(QTest::qWaitForWindowExposed(menu()));
    QTest::mouseClick(menu()->windowHandle(), Qt::LeftButton, {},
                      menu()->actionGeometry(menu()->actions().constFirst()).center());
    QTRY_VERIFY(!menu());
    QCOMPARE(marked.count(), 1);
}

void TestMapsWidget::pressHeldOpensTheMenu()
{
    QElapsedTimer clock;
    clock.start();
    press({120, 80});
    QTRY_VERIFY(menu());
    QVERIFY2(clock.elapsed() >= 701 && clock.elapsed() < 1400,
             qPrintable(QString::number(clock.elapsed())));
    QVERIFY(menu()->isVisible());
    QCOMPARE(menu()->pos(), map->mapToGlobal(QPoint(120, 80)));
    QCOMPARE(moved(), QPoint());
}

void TestMapsWidget::shortTapOpensTheMenu()
{
    QElapsedTimer clock;
    clock.start();
    QTest::mouseClick(map->windowHandle(), Qt::LeftButton, {}, middle);
    QTRY_VERIFY(menu());
    QVERIFY(clock.elapsed() >= 701 && clock.elapsed() < 1400);
    // It opens only once.
    menu()->close();
    QTRY_VERIFY(!menu());
    QTest::qWait(800);
    QVERIFY(!menu());
}

void TestMapsWidget::pressThatHardlyMovesOpensTheMenu()
{
    press(middle);
    for (const QPoint &by : {QPoint(9, 0), QPoint(-9, 9), QPoint(0, -9)})
        move(middle + by);
    QCOMPARE(moved(), QPoint());
    QTRY_VERIFY(menu());
    QCOMPARE(menu()->pos(), map->mapToGlobal(middle));
}

void TestMapsWidget::pressThatMovesDrags_data()
{
    QTest::addColumn<QPoint>("by");
    QTest::newRow("right") << QPoint(10, 0);
    QTest::newRow("left") << QPoint(-10, 0);
    QTest::newRow("down") << QPoint(0, 10);
    QTest::newRow("up") << QPoint(0, -10);
    QTest::newRow("far") << QPoint(120, -90);
}

void TestMapsWidget::pressThatMovesDrags()
{
    QFETCH(QPoint, by);
    press(middle);
    move(middle + by);
    // The map moves with the finger, so its centre moves the other way.
    QCOMPARE(moved(), -by);
    // From then on every pixel counts, even back to the start.
    move(middle + by + QPoint(1, 1));
    QCOMPARE(moved(), -by - QPoint(1, 1));
    move(middle);
    QCOMPARE(moved(), QPoint());
    QTest::mouseRelease(map->windowHandle(), Qt::LeftButton, {}, middle);
    QTest::qWait(800);
    QVERIFY(!menu());
}

void TestMapsWidget::moveThatWaitsWhileTheProgramIsBusyDrags()
{
    press(middle);
    // Events that arrive while the program is busy are handled after the timers that are due by
    // then.
    QTimer::singleShot(750, Qt::PreciseTimer, map.get(), [this] { move(middle + QPoint(50, 0)); });
    QTest::qSleep(900);
    QTRY_COMPARE(moved(), QPoint(-50, 0));
    QTest::qWait(800);
    QVERIFY(!menu());
}

void TestMapsWidget::holdWhileTheProgramIsBusyOpensTheMenu()
{
    press(middle);
    QTest::qSleep(900);
    QTRY_VERIFY_WITH_TIMEOUT(menu(), 500);
    QCOMPARE(menu()->pos(), map->mapToGlobal(middle));
}

void TestMapsWidget::newPressStartsAnew()
{
    QElapsedTimer clock;
    clock.start();
    press(middle);
    QTest::mouseRelease(map->windowHandle(), Qt::LeftButton, {}, middle);
    QTest::qWait(400);
    press({20, 20});
    QTRY_VERIFY(menu());
    QVERIFY(clock.elapsed() >= 1101);
    QCOMPARE(menu()->pos(), map->mapToGlobal(QPoint(20, 20)));
}

void TestMapsWidget::otherButtonsDoNothing()
{
    press(middle, Qt::RightButton);
    move(middle + QPoint(50, 50), Qt::RightButton);
    QTest::qWait(800);
    QVERIFY(!menu());
    QCOMPARE(moved(), QPoint());
}

void TestMapsWidget::fingerDoesWhatTheMouseDoes()
{
    QTest::touchEvent(map->windowHandle(), device.get()).press(1, middle);
    QTest::touchEvent(map->windowHandle(), device.get()).move(1, middle + QPoint(40, 20));
    QTRY_COMPARE(moved(), QPoint(-40, -20));
    QTest::touchEvent(map->windowHandle(), device.get()).release(1, middle + QPoint(40, 20));
    QTest::touchEvent(map->windowHandle(), device.get()).press(2, middle);
    QTest::touchEvent(map->windowHandle(), device.get()).release(2, middle);
    QTRY_VERIFY(menu());
}

void TestMapsWidget::releaseOfTheOpeningPressChoosesNothing()
{
    QSignalSpy marked(map.get(), &MapsWidget::markUpdated);
    press(middle);
    QTRY_VERIFY(menu());
    // The finger is above an entry when it is released.
    const QPoint entry = menu()->actionGeometry(menu()->actions().constFirst()).center();
    QTest::mouseRelease(menu()->windowHandle(), Qt::LeftButton, {}, entry);
    QTest::qWait(50);
    QVERIFY(menu() && menu()->isVisible());
    QCOMPARE(marked.count(), 0);
    QTest::mouseClick(menu()->windowHandle(), Qt::LeftButton, {}, entry);
    QTRY_COMPARE(marked.count(), 1);
    QTRY_VERIFY(!menu());
}

void TestMapsWidget::clickWhereTheFingerWasChooses()
{
    QSignalSpy marked(map.get(), &MapsWidget::markUpdated);
    QTest::mouseClick(map->windowHandle(), Qt::LeftButton, {}, middle);
    QTRY_VERIFY(menu());
    const QPoint entry = menu()->actionGeometry(menu()->actions().constFirst()).topLeft();
    QTest::mouseClick(menu()->windowHandle(), Qt::LeftButton, {}, entry + QPoint(1, 1));
    QTRY_VERIFY(!menu());
    QCOMPARE(marked.count(), 1);
}

void TestMapsWidget::menuOfTheEntryOfCoordinates()
{
    QSignalSpy byGps(map.get(), &MapsWidget::centerByGps);
    QTest::mouseClick(map->windowHandle(), Qt::LeftButton, {}, middle);
    QTRY_VERIFY(menu());
    QCOMPARE(entries(menu()), (QStringList{"Set Coords", "---", "Center by GPS"}));
    // Large enough for a finger.
    map->setFont(QFont());
    QVERIFY(menu()->font().pointSize() >= map->font().pointSize());
    QTest::mouseClick(menu()->windowHandle(), Qt::LeftButton, {},
                      menu()->actionGeometry(menu()->actions().constLast()).center());
    QTRY_COMPARE(byGps.count(), 1);
}

void TestMapsWidget::menuOfTracking()
{
    map->setTrackingMode(true);
    QSignalSpy byStore(map.get(), &MapsWidget::centerByStore);
    QSignalSpy byGps(map.get(), &MapsWidget::centerByGps);
    for (int entry : {0, 2}) {
        QTest::mouseClick(map->windowHandle(), Qt::LeftButton, {}, middle);
        QTRY_VERIFY(menu());
        QCOMPARE(entries(menu()), (QStringList{"Goto Store", "---", "Goto Current GPS"}));
        QTest::mouseClick(menu()->windowHandle(), Qt::LeftButton, {},
                          menu()->actionGeometry(menu()->actions().at(entry)).center());
        QTRY_VERIFY(!menu());
    }
    QCOMPARE(byStore.count(), 1);
    QCOMPARE(byGps.count(), 1);
}

void TestMapsWidget::menuByKeyboard()
{
    QSignalSpy marked(map.get(), &MapsWidget::markUpdated);
    // A press elsewhere does not move the mark.
    press({10, 10});
    QTest::mouseRelease(map->windowHandle(), Qt::LeftButton, {}, {10, 10});
    QContextMenuEvent event(QContextMenuEvent::Keyboard, {}, map->mapToGlobal(QPoint()));
    QCoreApplication::sendEvent(map.get(), &event);
    QVERIFY(menu());
    QTest::keyClick(menu(), Qt::Key_Down);
    QTest::keyClick(menu(), Qt::Key_Return);
    QTRY_COMPARE(marked.count(), 1);
    QCOMPARE(marked.first(),
             (QVariantList{qreal(map->centerLatitude()), qreal(map->centerLongitude())}));
    QTest::qWait(800);
    QVERIFY(!menu());
}

void TestMapsWidget::menuGoesWithTheMap()
{
    press(middle);
    QTRY_VERIFY(menu());
    map->hide();
    QTRY_VERIFY(!menu());
    // Deleting the map also deletes its menu.
    map->show();
    press(middle);
    QTRY_VERIFY(menu());
    const QPointer<QMenu> opened = menu();
    map.reset();
    QVERIFY(!opened);
}

void TestMapsWidget::tapTimerGoesWithTheMap()
{
    press(middle);
    map->hide();
    QTest::qWait(800);
    QVERIFY(!menu());
}

void TestMapsWidget::setCoordsInTheMiddleIsTheCentre()
{
    map->setCenter(59.913822F, 10.738741F);
    QSignalSpy marked(map.get(), &MapsWidget::markUpdated);
    QTest::mouseClick(map->windowHandle(), Qt::LeftButton, {}, middle);
    QTRY_VERIFY(menu());
    menu()->actions().constFirst()->trigger();
    QCOMPARE(marked.count(), 1);
    QCOMPARE(marked.first(), (QVariantList{qreal(59.913822F), qreal(10.738741F)}));
}

void TestMapsWidget::setCoordsElsewhere()
{
    QSignalSpy marked(map.get(), &MapsWidget::markUpdated);
    QTest::mouseClick(map->windowHandle(), Qt::LeftButton, {}, middle + QPoint(64, -32));
    QTRY_VERIFY(menu());
    menu()->actions().constFirst()->trigger();
    QCOMPARE(marked.first().at(0).toFloat(),
             float(WebMercator::latitudeFromTile(before.y() - 0.125, zoom)));
    QCOMPARE(marked.first().at(1).toFloat(),
             float(WebMercator::longitudeFromTile(before.x() + 0.25, zoom)));
    // The tip of the pin is at that point.
    const QImage image = map->grab().toImage();
    int differing = 0;
    for (int y = 118 - 30; y < 118; ++y)
        for (int x = 264 - 30; x < 264; ++x)
            differing += image.pixel(x, y) != image.pixel(264 + 5, 118 + 5);
    QVERIFY(differing > 50);
}

void TestMapsWidget::keysMoveTheView_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<QPoint>("by");
    QTest::newRow("left") << Qt::Key_Left << QPoint(-20, 0);
    QTest::newRow("right") << Qt::Key_Right << QPoint(20, 0);
    QTest::newRow("up") << Qt::Key_Up << QPoint(0, -20);
    QTest::newRow("down") << Qt::Key_Down << QPoint(0, 20);
    QTest::newRow("another") << Qt::Key_Z << QPoint();
}

void TestMapsWidget::keysMoveTheView()
{
    QFETCH(Qt::Key, key);
    QFETCH(QPoint, by);
    QTest::keyClick(map->windowHandle(), key);
    QCOMPARE(moved(), by);
}

void TestMapsWidget::magnifier()
{
    const QImage plain = map->grab().toImage();
    for (const Qt::Key end : {Qt::Key_Z, Qt::Key_Select}) {
        map->zoomed = true;
        map->magnifierPos = middle;
        QVERIFY(map->grab().toImage() != plain);
        QTest::keyClick(map.get(), Qt::Key_Left);
        QCOMPARE(map->magnifierPos, middle + QPoint(-15, 0));
        QTest::keyClick(map.get(), Qt::Key_Down);
        QCOMPARE(map->magnifierPos, middle + QPoint(-15, 15));
        QTest::keyClick(map.get(), Qt::Key_Right);
        QTest::keyClick(map.get(), Qt::Key_Up);
        QCOMPARE(map->magnifierPos, middle);
        QTest::keyClick(map.get(), end);
        QVERIFY(!map->zoomed);
    }
    map->zoomed = true;
    press(middle);
    move(middle + QPoint(50, 40));
    QCOMPARE(map->magnifierPos, middle + QPoint(50, 40));
    QCOMPARE(moved(), QPoint());
    QTest::qWait(800);
    QVERIFY(!menu());
    QTest::mouseRelease(map->windowHandle(), Qt::LeftButton, {}, middle);
    QVERIFY(!map->zoomed);
}

void TestMapsWidget::modesLookAtDifferentZooms()
{
    QVERIFY(host->paths.constLast().startsWith("/16/"));
    map->setTrackingMode(true);
    QTRY_VERIFY(host->paths.constLast().startsWith("/14/"));
}

void TestMapsWidget::tilesAreFetchedWhileSomebodySeesIt()
{
    const auto count = host->paths.size();
    map->hide();
    map->setCenter(30, 40);
    map->resize(500, 400);
    // Turning the window shows every page for a moment.
    map->setAttribute(Qt::WA_DontShowOnScreen);
    map->show();
    map->hide();
    map->setAttribute(Qt::WA_DontShowOnScreen, false);
    QTest::qWait(100);
    QCOMPARE(host->paths.size(), count);
    map->show();
    QTRY_VERIFY(host->paths.size() > count);
}

void TestMapsWidget::noTilesOfThePlaceBefore()
{
    map->hide();
    host->paths.clear();
    map->show();
    map->setCenter(30, 40); // right after it is shown
    QTRY_VERIFY(host->paths.size() >= 9);
    const QPointF place = WebMercator::tileForCoordinate(30, 40, zoom);
    for (const QString &path : std::as_const(host->paths))
        QVERIFY2(std::abs(path.split('/').at(2).toInt() - place.x()) < 4, qPrintable(path));
}

void TestMapsWidget::focusComesWithTheMap()
{
    QWidget window;
    auto *box = new QVBoxLayout(&window);
    auto *button = new QPushButton;
    auto *other = new MapsWidget;
    other->hide();
    box->addWidget(button);
    box->addWidget(other);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    button->setFocus();
    other->show();
    QTRY_VERIFY(other->hasFocus());
    // This must not happen for a map that is never visible.
    other->hide();
    button->setFocus();
    other->show();
    other->hide();
    QTest::qWait(50);
    QVERIFY(button->hasFocus());
}

void TestMapsWidget::onlyWhatChangedIsPainted()
{
    QPointer<QTcpSocket> held;
    QString path;
    host->answer = [&](QTcpSocket *socket, const QString &asked) {
        held = socket;
        path = asked;
    };
    press(middle);
    move(middle - QPoint(600, 0)); // new columns, the rightmost beyond the view
    QTRY_VERIFY(held);
    QTest::qWait(50);
    map->painted = {};
    // Tiles beyond the view are not painted.
    for (int sent = 0; sent < 9 && map->painted.isEmpty(); ++sent) {
        QTRY_VERIFY(held);
        host->sendTile(std::exchange(held, nullptr), path);
        QTest::qWait(50);
    }
    QVERIFY(!map->painted.isEmpty());
    const QRect tile = map->painted.boundingRect();
    QVERIFY2(tile.width() <= 256 && tile.height() <= 256, qPrintable(path));
}

void TestMapsWidget::attributionIsLegible_data()
{
    QTest::addColumn<QColor>("tiles");
    QTest::addColumn<Qt::LayoutDirection>("direction");
    QTest::newRow("dark") << QColor(Qt::black) << Qt::LeftToRight;
    QTest::newRow("light") << QColor(Qt::white) << Qt::LeftToRight;
    QTest::newRow("red") << QColor(Qt::red) << Qt::LeftToRight;
    QTest::newRow("from right to left") << QColor(Qt::black) << Qt::RightToLeft;
}

void TestMapsWidget::attributionIsLegible()
{
    QFETCH(QColor, tiles);
    QFETCH(Qt::LayoutDirection, direction);
    const auto usual = QGuiApplication::layoutDirection();
    const auto restore = qScopeGuard([usual] { QGuiApplication::setLayoutDirection(usual); });
    QGuiApplication::setLayoutDirection(direction);
    host->answer = [this, &tiles](QTcpSocket *socket, const QString &) {
        host->finish(socket, TileHost::response(TileHost::picture(tiles)));
    };
    map->setCenter(30, 40);
    QTRY_COMPARE(map->grab().toImage().pixelColor(200, 20), tiles);
    const QImage image = map->grab().toImage();
    // At the lower left: dark letters on a light background, on any tile.
    int dark = 0;
    int light = 0;
    for (int y = 286; y < 299; ++y) {
        for (int x = 4; x < 150; ++x) {
            const int value = image.pixelColor(x, y).lightness();
            dark += value < 90;
            light += value > 180 || (tiles == QColor(Qt::red) && value > 150);
        }
    }
    QVERIFY2(dark > 150, qPrintable(QString::number(dark)));
    QVERIFY2(light > 800, qPrintable(QString::number(light)));
}

void TestMapsWidget::nightModePaintsTheSame()
{
    const QImage day = map->grab().toImage();
    map->toggleNightMode();
    QCOMPARE(map->grab().toImage(), day);
}

STOPPABLE_TEST_MAIN(TestMapsWidget)
#include "tst_mapswidget.moc"
