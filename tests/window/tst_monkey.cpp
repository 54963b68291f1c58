// SPDX-License-Identifier: MIT
#include <array>
#include <cmath>
#include <limits>

#include <QApplication>
#include <QDesktopServices>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QStackedWidget>
#include <QtPlugin>
#include <QtTest>

#include "base/pages.h"
#include "tests/support/randomrun.h"
#include "tests/support/records.h"
#include "tests/support/shopdriver.h"
#include "tests/support/testpositionplugin.h"
#include "widgets/listrow.h"

Q_IMPORT_PLUGIN(TestPositionPlugin)

namespace {

/// Only subclasses can call receivers().
struct Listeners : QPushButton
{
    using QPushButton::receivers;
};
constexpr int (QObject::*receiversOf)(const char *) const = &Listeners::receivers;

constexpr std::array keys{Qt::Key_Tab,    Qt::Key_Backtab, Qt::Key_Return,    Qt::Key_Escape,
                          Qt::Key_Space,  Qt::Key_Up,      Qt::Key_Down,      Qt::Key_Left,
                          Qt::Key_Right,  Qt::Key_Home,    Qt::Key_End,       Qt::Key_PageUp,
                          Qt::Key_Delete, Qt::Key_Menu,    Qt::Key_Backspace, Qt::Key_PageDown};

constexpr std::array sizes{QSize(800, 480), QSize(480, 800), QSize(360, 720), QSize(600, 600)};

} // namespace

/// Taps, drags, types, turns the window and delivers positions at random. The window must stay
/// consistent.
class TestMonkey : public QObject
{
    Q_OBJECT

private slots:
    void nothingBreaksTheWindow();

private:
    int below(int limit)
    {
        return int(random.bounded(limit));
    }
    QString anyText();
    Records anyDatabase();
    QPoint anyPointOf(const QWidget *widget);

    void step(ShopDriver &shop);
    void tap(ShopDriver &shop);
    void tapButton(ShopDriver &shop);
    void drag(ShopDriver &shop);
    void press(ShopDriver &shop);
    void walk();
    void changeLanguage(ShopDriver &shop);
    static void check(const ShopDriver &shop);

    QRandomGenerator random;
};

QString TestMonkey::anyText()
{
    static const QStringList words{"milk", "a'b", "%1", "Хлеб", "x&y", "<b>", "0", " ", "%2 %3"};
    return words.at(below(int(words.size()))) + QString::number(below(100));
}

/// Returns rows that refer to each other, or to missing rows.
Records TestMonkey::anyDatabase()
{
    Records records;
    for (int id = 1; id <= 12; ++id) {
        records.category(anyText()).store(anyText()).inCategory(below(14));
        records.list(anyText(), below(4)).ofStore(below(14));
        if (below(4) > 0) {
            const double latitude = below(10) > 0 ? 10 + below(100) / 1e3 : 999;
            records.at(latitude, 20 + below(100) / 1e3);
        }
        for (int goods = below(9); goods > 0; --goods) {
            if (below(2) > 0)
                records.checkedGood(anyText(), below(5));
            else
                records.good(anyText(), below(5));
        }
    }
    return records;
}

QPoint TestMonkey::anyPointOf(const QWidget *widget)
{
    return {below(widget->width()), below(widget->height())};
}

void TestMonkey::tap(ShopDriver &shop)
{
    const QWidget *popup = QApplication::activePopupWidget();
    const QWidget *target = popup && below(2) == 0 ? popup : shop.window.get();
    if (below(8) == 0)
        QTest::mouseDClick(target->windowHandle(), Qt::LeftButton, {}, anyPointOf(target));
    else
        QTest::mouseClick(target->windowHandle(), Qt::LeftButton, {}, anyPointOf(target));
}

/// Most points of a page are empty, so buttons are hit on purpose.
void TestMonkey::tapButton(ShopDriver &shop)
{
    QList<QWidget *> targets;
    for (auto *widget : shop.pageWidget()->findChildren<QWidget *>()) {
        if (widget->isVisible() && widget->isEnabled() && widget->focusPolicy() != Qt::NoFocus)
            targets << widget;
    }
    if (targets.isEmpty())
        return;
    const QWidget *target = targets.at(below(int(targets.size())));
    QTest::mouseClick(shop.window->windowHandle(), Qt::LeftButton, {},
                      target->mapTo(shop.window.get(), anyPointOf(target)));
}

void TestMonkey::drag(ShopDriver &shop)
{
    QWindow *window = shop.window->windowHandle();
    QTest::mousePress(window, Qt::LeftButton, {}, anyPointOf(shop.window.get()));
    for (int moves = below(5); moves > 0; --moves)
        QTest::mouseMove(window, anyPointOf(shop.window.get()));
    QTest::mouseRelease(window, Qt::LeftButton, {}, anyPointOf(shop.window.get()));
}

void TestMonkey::press(ShopDriver &shop)
{
    QWidget *target = QApplication::focusWidget() ? QApplication::focusWidget() : shop.pageWidget();
    if (below(3) > 0) {
        QTest::keyClick(target, keys.at(size_t(below(int(keys.size())))));
        return;
    }
    for (const QChar character : anyText())
        QTest::sendKeyEvent(QTest::Click, target, Qt::Key_unknown, QString(character), {});
}

/// Delivers positions near the stores, far from them, and invalid ones; or a timeout.
void TestMonkey::walk()
{
    TestPositionSource *source = TestPositionSource::instance();
    if (!source)
        return;
    constexpr double infinity = std::numeric_limits<double>::infinity();
    switch (below(8)) {
    case 0:
        source->fail(QGeoPositionInfoSource::UpdateTimeoutError);
        break;
    case 1:
        source->deliver(999, 999);
        break;
    case 2:
        source->deliver(std::nan(""), infinity);
        break;
    default:
        source->deliver(10 + below(100) / 1e3, 20 + below(100) / 1e3);
    }
}

void TestMonkey::changeLanguage(ShopDriver &shop)
{
    shop.stack->setCurrentIndex(PageMain);
    shop.press("optionsButton");
    static const QStringList languages{"autoDetectRadio", "englishRadio", "russianRadio"};
    shop.find<QRadioButton>(qPrintable(languages.at(below(3))))->setChecked(true);
    shop.press("okButton");
}

void TestMonkey::step(ShopDriver &shop)
{
    const int what = below(1000);
    if (what < 250)
        tap(shop);
    else if (what < 600)
        tapButton(shop);
    else if (what < 680)
        drag(shop);
    else if (what < 850)
        press(shop);
    else if (what < 980)
        walk();
    else if (what < 996)
        shop.window->resize(sizes.at(size_t(below(int(sizes.size())))));
    else if (what < 998)
        changeLanguage(shop);
    else
        QTest::qWait(below(800));
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    // The exit button closes the window, but there is no event loop that would end.
    if (!shop.window->isVisible())
        shop.window->show();
    shop.stack = qobject_cast<QStackedWidget *>(shop.window->centralWidget());
}

void TestMonkey::check(const ShopDriver &shop)
{
    QCOMPARE(shop.window->findChildren<QStackedWidget *>("pageStack").size(), 1);
    QCOMPARE(shop.stack->count(), PageCount);
    const Page page = shop.page();
    QVERIFY(page >= 0 && page < PageCount);

    for (const char *name : {"saveButton", "confirmationYesButton"}) {
        for (QPushButton *button : shop.stack->findChildren<QPushButton *>(name)) {
            const int count = (button->*receiversOf)(SIGNAL(clicked(bool)));
            if (button->isVisible())
                QCOMPARE(count, 1);
            else
                QVERIFY(count <= 1); // none before its page is first shown
        }
    }

    const QWidget *tracking = shop.stack->widget(PageTracking);
    const bool mayStart = tracking->findChild<QPushButton *>("startButton")->isEnabled();
    const bool mayStop = tracking->findChild<QPushButton *>("stopButton")->isEnabled();
    QVERIFY(mayStart != mayStop);
    QCOMPARE(tracking->findChild<QWidget *>("criteria")->isEnabled(), mayStart);
    if (mayStop) {
        QVERIFY(TestPositionSource::instance());
        QCOMPARE(TestPositionSource::instance()->updating, page != PageReminder);
    } else {
        QVERIFY(page != PageReminder);
    }

    if (page == PageDoShopping) {
        // The checked goods are the last.
        bool anyChecked = false;
        for (int row = 0; row < shop.list()->count(); ++row) {
            const bool isChecked = shop.list()->item(row)->checkState() == Qt::Checked;
            QVERIFY(isChecked || !anyChecked);
            anyChecked = isChecked;
        }
    } else if (page == PageTrackedList) {
        double last = 0;
        for (int row = 0; row < shop.list()->count(); ++row) {
            bool isKnown = false;
            const QString text = shop.list()->item(row)->data(SecondColumnRole).toString();
            const double distance = text.toDouble(&isKnown);
            QVERIFY2(distance >= last || !isKnown, qPrintable(text));
            last = isKnown ? distance : std::numeric_limits<double>::infinity();
        }
    }
}

void TestMonkey::nothingBreaksTheWindow()
{
    const int steps = RandomRun::count("TROLLEO_TEST_STEPS", 2000);
    random.seed(RandomRun::seed());
    std::array<int, PageCount> seen{};

    ShopDriver shop(anyDatabase(), {{"GpsEnabled", true}});
    // While a file is selected, nothing else can be done.
    QTimer closing;
    connect(&closing, &QTimer::timeout, this, [] {
        if (QWidget *dialog = QApplication::activeModalWidget())
            dialog->close();
    });
    closing.start(20);
    for (int done = 0; done < steps; ++done) {
        step(shop);
        check(shop);
        if (QTest::currentTestFailed()) {
            qInfo("in step %d on %s", done, qPrintable(shop.pageWidget()->objectName()));
            return;
        }
        ++seen.at(size_t(shop.page()));
        if (done % 10000 == 9999)
            qInfo("%d steps", done + 1);
    }
    const auto pages = std::count_if(seen.begin(), seen.end(), [](int count) { return count > 0; });
    qInfo("%d pages seen", int(pages));
    QVERIFY(pages > 10);
    QCOMPARE(SecondConnection(shop.home->databaseFile()).column("pragma integrity_check"),
             QVariantList{"ok"});
}

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    RandomRun::takeYourTime("TROLLEO_TEST_STEPS");
    Stoppable<TestMonkey> test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_monkey.moc"
