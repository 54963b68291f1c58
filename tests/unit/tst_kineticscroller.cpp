// SPDX-License-Identifier: MIT
#include <QLabel>
#include <QListWidget>
#include <QMouseEvent>
#include <QProcess>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>
#include <QtTest>

#include "tests/support/emulator.h"
#include "widgets/TrKineticScroller.h"

namespace {

constexpr int contentHeight = 20000;
constexpr int middle = 10000;
constexpr int movesBeforeScrolling = 5;
const QString missingAreaArgument = QStringLiteral("--missing-area");

/// A scroll area in its own window, with a scroller and a simulated finger.
struct Flickable
{
    explicit Flickable(QAbstractScrollArea *scrollArea)
        : area(scrollArea)
    {
        scroller = new TrKineticScroller(scrollArea);
        scroller->enableKineticScrollFor(scrollArea);
        timer = scroller->findChild<QTimer *>();
        ticks = std::make_unique<QSignalSpy>(timer, &QTimer::timeout);
        area->resize(300, 400);
        area->show();
        QVERIFY(QTest::qWaitForWindowExposed(scrollArea));
        bar()->setValue(middle);
        QCOMPARE(bar()->value(), middle);
    }

    QScrollBar *bar() const
    {
        return area->verticalScrollBar();
    }
    QPoint at(int y) const
    {
        return area->viewport()->mapTo(area.get(), QPoint(100, y));
    }

    void press(int y)
    {
        QTest::mousePress(area->windowHandle(), Qt::LeftButton, {}, at(y));
    }
    void release(int y)
    {
        QTest::mouseRelease(area->windowHandle(), Qt::LeftButton, {}, at(y));
    }
    void move(int y)
    {
        QTest::mouseMove(area->windowHandle(), at(y));
    }

    /// Presses at `y` and moves just often enough that the next move scrolls. The moves are around
    /// `y` and end there.
    void beginDrag(int y)
    {
        press(y);
        for (const int shake : {1, 2, 1, 2, 0})
            move(y + shake);
    }

    /// Moves to `y` and waits until the scroller has sampled it.
    bool moveAndTick(int y)
    {
        ticks->clear();
        move(y);
        return !ticks->isEmpty() || ticks->wait();
    }

    std::unique_ptr<QAbstractScrollArea> area;
    std::unique_ptr<QSignalSpy> ticks;
    TrKineticScroller *scroller = nullptr;
    QTimer *timer = nullptr;
};

QScrollArea *tallArea()
{
    auto *content = new QLabel("tall");
    content->setTextInteractionFlags(Qt::NoTextInteraction);
    content->setMinimumHeight(contentHeight);
    auto *area = new QScrollArea;
    area->setWidget(content);
    area->setWidgetResizable(true);
    return area;
}

QListWidget *tallList()
{
    auto *list = new QListWidget;
    list->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    for (int row = 0; row < 2000; ++row)
        list->addItem(QString::number(row));
    return list;
}

} // namespace

class TestKineticScroller : public QObject
{
    Q_OBJECT

private slots:
    void contentsFollowTheFingerFromTheSixthMove_data();
    void contentsFollowTheFingerFromTheSixthMove();
    void shakyTapIsAClick();
    void flickGlidesSlowerEveryTick_data();
    void flickGlidesSlowerEveryTick();
    void ticksComeEvery30Milliseconds();
    void fastDragStaysUnderTheFinger();
    void touchStopsTheGlideAtOnce();
    void glideEndsWithTheContents();
    void pausedFingerDoesNotGlide();
    void firstDragAfterATapScrolls();
    void secondPressOfADoubleClickDrags();
    void hoveringScrollsNothing();
    void timerRunsOnlyWhileDraggingOrGliding();
    void hidingEndsTheDrag();
    void secondAreaIsWatchedInsteadOfTheFirst();
    void areaMayDieFirst();
#ifndef QT_NO_DEBUG
    void missingAreaIsAProgrammingError();
#endif
};

void TestKineticScroller::contentsFollowTheFingerFromTheSixthMove_data()
{
    QTest::addColumn<bool>("list");
    QTest::newRow("scroll area") << false;
    QTest::newRow("list") << true;
}

void TestKineticScroller::contentsFollowTheFingerFromTheSixthMove()
{
    QFETCH(bool, list);
    Flickable f(list ? static_cast<QAbstractScrollArea *>(tallList()) : tallArea());
    f.press(200);
    for (int count = 1; count <= movesBeforeScrolling; ++count) {
        f.move(200 - 2 * count);
        QCOMPARE(f.bar()->value(), middle);
        // A move that reaches the area twice must not count twice.
        QCOMPARE(f.scroller->isMoving(), count == movesBeforeScrolling);
    }
    f.move(180);
    QCOMPARE(f.bar()->value(), middle + 20);
    f.move(250);
    QCOMPARE(f.bar()->value(), middle - 50);
}

void TestKineticScroller::shakyTapIsAClick()
{
    Flickable f(tallList());
    auto *list = static_cast<QListWidget *>(f.area.get());
    QSignalSpy clicked(list, &QListWidget::itemClicked);
    f.press(200);
    f.move(201);
    f.move(199);
    f.move(200);
    QVERIFY(!f.scroller->isMoving());
    f.release(200);
    QCOMPARE(clicked.count(), 1);
    QCOMPARE(f.bar()->value(), middle);
    QVERIFY(!f.timer->isActive());
}

void TestKineticScroller::flickGlidesSlowerEveryTick_data()
{
    QTest::addColumn<int>("speed");
    QTest::addColumn<int>("firstStep");
    QTest::newRow("40 down") << 40 << 29;
    QTest::newRow("40 up") << -40 << -29;
    QTest::newRow("31 down") << 31 << 29;
    QTest::newRow("30 down") << 30 << 29;
    QTest::newRow("10 down") << 10 << 9;
    QTest::newRow("10 up") << -10 << -9;
    QTest::newRow("1 down") << 1 << 0;
}

void TestKineticScroller::flickGlidesSlowerEveryTick()
{
    QFETCH(int, speed);
    QFETCH(int, firstStep);
    Flickable f(tallArea());
    f.beginDrag(200);
    QVERIFY(f.moveAndTick(200 + speed));
    QCOMPARE(f.bar()->value(), middle - speed);
    QList<int> values{f.bar()->value()};
    connect(f.bar(), &QScrollBar::valueChanged, f.bar(), [&](int value) { values << value; });
    f.release(200 + speed);
    QTRY_VERIFY(!f.scroller->isMoving());
    QVERIFY(!f.timer->isActive());

    QList<int> expected{middle - speed};
    for (int step = firstStep; step != 0; step -= speed / std::abs(speed))
        expected << expected.last() - step;
    QCOMPARE(values, expected);
}

void TestKineticScroller::ticksComeEvery30Milliseconds()
{
    Flickable f(tallArea());
    f.beginDrag(200);
    QVERIFY(f.timer->isActive());
    QCOMPARE(f.timer->intervalAsDuration(), std::chrono::milliseconds(30));
}

void TestKineticScroller::fastDragStaysUnderTheFinger()
{
    Flickable f(tallArea());
    f.beginDrag(10);
    f.move(310);
    QCOMPARE(f.bar()->value(), middle - 300);
}

void TestKineticScroller::touchStopsTheGlideAtOnce()
{
    Flickable f(tallArea());
    f.beginDrag(200);
    QVERIFY(f.moveAndTick(240));
    f.release(240);
    QVERIFY(f.ticks->wait());
    QVERIFY(f.scroller->isMoving());
    f.press(100);
    QVERIFY(!f.scroller->isMoving());
    QVERIFY(!f.timer->isActive());
    const int stopped = f.bar()->value();
    f.release(100);
    QVERIFY(!f.ticks->wait(100));
    QCOMPARE(f.bar()->value(), stopped);
}

void TestKineticScroller::glideEndsWithTheContents()
{
    Flickable f(tallArea());
    // On a slow machine two ticks can follow the last move, and the finger seems to pause.
    for (int attempt = 0; attempt < 10 && !f.scroller->isMoving(); ++attempt) {
        f.bar()->setValue(f.bar()->maximum() - 20);
        f.press(200);
        for (int y = 199; y >= 190; --y)
            f.move(y);
        QVERIFY(f.moveAndTick(120)); // fast, and past the end
        f.release(120);
        QCOMPARE(f.bar()->value(), f.bar()->maximum());
    }
    QVERIFY(f.scroller->isMoving());
    f.ticks->clear();
    QVERIFY(f.ticks->wait());
    QVERIFY(!f.scroller->isMoving());
}

void TestKineticScroller::pausedFingerDoesNotGlide()
{
    Flickable f(tallArea());
    f.beginDrag(200);
    QVERIFY(f.moveAndTick(240));
    QVERIFY(f.ticks->wait());
    f.release(240);
    const int start = f.bar()->value();
    QVERIFY(f.ticks->wait());
    QVERIFY(!f.scroller->isMoving());
    QCOMPARE(f.bar()->value(), start);
}

void TestKineticScroller::firstDragAfterATapScrolls()
{
    Flickable f(tallArea());
    f.press(50);
    f.release(50);
    f.beginDrag(200);
    QVERIFY(f.moveAndTick(220));
    QCOMPARE(f.bar()->value(), middle - 20);
    f.release(220);
    QVERIFY(f.ticks->wait());
    QCOMPARE(f.bar()->value(), middle - 20 - 19);
}

void TestKineticScroller::secondPressOfADoubleClickDrags()
{
    Flickable f(tallArea());
    f.press(200);
    f.release(200);
    // Clicks of the test library are never quick enough for a double click.
    const QPointF position(100, 200);
    QMouseEvent second(QEvent::MouseButtonDblClick, position,
                       f.area->viewport()->mapToGlobal(position), Qt::LeftButton, Qt::LeftButton,
                       Qt::NoModifier);
    QCoreApplication::sendEvent(f.area->viewport(), &second);
    for (int y = 201; y <= 206; ++y) {
        const QPointF moved(100, y);
        QMouseEvent move(QEvent::MouseMove, moved, f.area->viewport()->mapToGlobal(moved),
                         Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(f.area->viewport(), &move);
    }
    QCOMPARE(f.bar()->value(), middle - 6);
    f.release(206);
}

void TestKineticScroller::hoveringScrollsNothing()
{
    Flickable f(tallList());
    f.area->viewport()->setMouseTracking(true);
    for (int y = 100; y < 200; y += 10) {
        f.move(y);
        QVERIFY(!f.scroller->isMoving());
    }
    QCOMPARE(f.bar()->value(), middle);
}

void TestKineticScroller::timerRunsOnlyWhileDraggingOrGliding()
{
    Flickable f(tallArea());
    QVERIFY(!f.timer->isActive());
    f.press(200);
    QVERIFY(!f.timer->isActive());
    f.release(200);
    QVERIFY(!f.timer->isActive());
    f.beginDrag(200);
    QVERIFY(f.timer->isActive());
    f.release(200);
    QTRY_VERIFY(!f.timer->isActive());
}

void TestKineticScroller::hidingEndsTheDrag()
{
    Flickable f(tallArea());
    f.beginDrag(200);
    f.move(220);
    f.area->hide();
    QVERIFY(!f.scroller->isMoving());
    QVERIFY(!f.timer->isActive());
    QTest::mouseRelease(f.area->windowHandle(), Qt::LeftButton, {}, f.at(220));
}

void TestKineticScroller::secondAreaIsWatchedInsteadOfTheFirst()
{
    Flickable f(tallArea());
    std::unique_ptr<QScrollArea> second(tallArea());
    f.beginDrag(200);
    f.scroller->enableKineticScrollFor(second.get());
    QVERIFY(!f.scroller->isMoving());
    QVERIFY(!f.timer->isActive());
    f.release(200);
    f.beginDrag(200);
    f.move(260);
    QCOMPARE(f.bar()->value(), middle);
    QVERIFY(!f.scroller->isMoving());
    f.release(260);

    second->resize(300, 400);
    second->show();
    QVERIFY(QTest::qWaitForWindowExposed(second.get()));
    second->verticalScrollBar()->setValue(middle);
    QTest::mousePress(second->windowHandle(), Qt::LeftButton, {}, QPoint(50, 200));
    for (int y = 201; y <= 206; ++y)
        QTest::mouseMove(second->windowHandle(), QPoint(50, y));
    QCOMPARE(second->verticalScrollBar()->value(), middle - 6);
    QTest::mouseRelease(second->windowHandle(), Qt::LeftButton, {}, QPoint(50, 206));
}

void TestKineticScroller::areaMayDieFirst()
{
    TrKineticScroller scroller;
    auto *timer = scroller.findChild<QTimer *>();
    {
        std::unique_ptr<QScrollArea> area(tallArea());
        scroller.enableKineticScrollFor(area.get());
        area->show();
        QVERIFY(QTest::qWaitForWindowExposed(area.get()));
        QTest::mousePress(area->windowHandle(), Qt::LeftButton, {}, QPoint(50, 200));
        for (int y = 201; y <= 206; ++y)
            QTest::mouseMove(area->windowHandle(), QPoint(50, y));
        QVERIFY(scroller.isMoving());
    }
    QTRY_VERIFY(!timer->isActive());
    std::unique_ptr<QScrollArea> next(tallArea());
    scroller.enableKineticScrollFor(next.get());
}

#ifndef QT_NO_DEBUG
void TestKineticScroller::missingAreaIsAProgrammingError()
{
    // An assertion ends the process, so this runs in a separate process.
    QProcess process;
    Emulator::startSelf(process, {missingAreaArgument});
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitStatus(), QProcess::CrashExit);
    const QByteArray said = process.readAllStandardError();
    QVERIFY2(said.contains("kinetic scroller"), said.constData());
    QVERIFY2(said.contains("missing scroll area"), said.constData());
}
#endif

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    if (QCoreApplication::arguments().contains(missingAreaArgument)) {
        TrKineticScroller().enableKineticScrollFor(nullptr);
        return 0;
    }
    TestKineticScroller test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_kineticscroller.moc"
