// SPDX-License-Identifier: MIT
#include <QAbstractButton>
#include <QContextMenuEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QStackedWidget>
#include <QTabBar>
#include <QTextDocument>
#include <QtTest>

#include "base/pages.h"
#include "map/mapswidget.h"
#include "tests/support/records.h"
#include "tests/support/shopdriver.h"
#include "widgets/namebutton.h"

/// Tests whether the pages fit their window, in both languages. Runs once for each of several text
/// sizes, which the platform's screen reports.
class TestFitting : public QObject
{
    Q_OBJECT

private slots:
    void textIsScaled();
    void nothingIsCut_data();
    void nothingIsCut();
    void buttonsAreStackedBeforeTextsShrink();
    void everythingIsInReach_data();
    void everythingIsInReach();
    void focusStaysWhenThePageBeginsToScroll();
    void selectionStaysWhenThePageBeginsToScroll();
    void scrolledPageBeginsAtItsTop();
    void keyboardBelowAddsNoHorizontalBar();
    void fieldToTypeInIsSeen();
    void longWordsOfAMessageSettle();
    void longNameOnAPageThatScrolls();
};

/// Counts the resize events of a widget.
class ResizeCounter : public QObject
{
public:
    explicit ResizeCounter(QWidget *widget)
        : QObject(widget)
    {
        widget->installEventFilter(this);
    }
    bool eventFilter(QObject * /*object*/, QEvent *event) override
    {
        count += event->type() == QEvent::Resize ? 1 : 0;
        if (count > most)
            qFatal("the widget is resized again and again");
        return false;
    }

    static constexpr int most = 100;
    int count = 0;
};

static double fontScale()
{
    constexpr double usual = 96; // dots per inch
    return QGuiApplication::primaryScreen()->logicalDotsPerInchY() / usual;
}

void TestFitting::textIsScaled()
{
    QCOMPARE(100 * fontScale(), qEnvironmentVariable("TEXT_PERCENT").toDouble());
    const ShopDriver shop;
    QCOMPARE(shop.pageWidget()->fontInfo().pixelSize(),
             qRound(22 * fontScale() * 96 / 72)); // points
}

static int leastWidth(const QWidget *widget)
{
    return widget->minimumWidth() > 0 ? widget->minimumWidth() : widget->minimumSizeHint().width();
}

/// Fails if a text of `page` is cut off. Scrolling areas may continue below.
static void checkNothingIsCut(const QWidget *page)
{
    // A text that wraps differently needs another height, and so may the widgets around it.
    for (int round = 0; round < 3; ++round)
        QCoreApplication::processEvents();
    const QWidget *window = page->window();
    // At the normal text size, a page shows everything without scrolling.
    if (fontScale() == 1)
        QVERIFY2(!page->findChild<QScrollArea *>("pageArea"), qPrintable(page->objectName()));
    for (const QWidget *widget : page->findChildren<QWidget *>()) {
        const auto *label = qobject_cast<const QLabel *>(widget);
        const auto *button = qobject_cast<const QAbstractButton *>(widget);
        const auto *bar = qobject_cast<const QTabBar *>(widget);
        const auto *name = qobject_cast<const NameButton *>(widget);
        if (!widget->isVisible() || widget->objectName().startsWith("qt_") ||
            !(label || button || bar))
            continue;
        const QString what = page->objectName() + ": " +
                             (label    ? label->text()
                              : button ? button->text()
                                       : widget->objectName());
        if (label && label->wordWrap())
            QVERIFY2(label->height() >= label->heightForWidth(label->width()), qPrintable(what));
        else if (label || ((bar || name) && fontScale() == 1)) // larger ones have a smaller font
            QVERIFY2(widget->sizeHint().width() <= widget->width(), qPrintable(what));
        // A button that wraps its text must get the height of its lines.
        if (button)
            QVERIFY2(widget->sizeHint().height() <= widget->height(), qPrintable(what));
        if (!label)
            QVERIFY2(leastWidth(widget) <= widget->width(), qPrintable(what));

        const QScrollArea *scrolled = nullptr;
        for (const QWidget *above = widget; above && !scrolled; above = above->parentWidget())
            scrolled = qobject_cast<const QScrollArea *>(above);
        const QWidget *frame = scrolled ? scrolled->viewport() : window;
        const QRect place(widget->mapTo(frame, QPoint(0, 0)), widget->size());
        QVERIFY2(place.left() >= 0 && place.right() < frame->width(), qPrintable(what));
        if (!scrolled)
            QVERIFY2(place.top() >= 0 && place.bottom() < frame->height(), qPrintable(what));
    }
}

void TestFitting::nothingIsCut_data()
{
    QTest::addColumn<int>("language");
    QTest::addColumn<QSize>("size");
    for (const auto &[name, language] : {std::pair("English", 1), std::pair("Russian", 2)}) {
        QTest::addRow("%s, landscape", name) << language << QSize(800, 480);
        QTest::addRow("%s, portrait", name) << language << QSize(480, 800);
        if (fontScale() < 2)
            QTest::addRow("%s, narrow phone", name) << language << QSize(360, 720);
    }
}

void TestFitting::nothingIsCut()
{
    QFETCH(int, language);
    QFETCH(QSize, size);
    ShopDriver shop(
        {category(1, "Food"), store("Bakery").inCategory(1).at(10.01, 20).openList("Bread")},
        {{"LanguageId", language}, {"GpsEnabled", true}});
    shop.window->resize(size);
    QCoreApplication::processEvents();
    forEveryView(shop.stack, [&](const QWidget *page) {
        QCOMPARE(shop.window->size(), size);
        checkNothingIsCut(page);
    });
    const auto press = [&shop](const char *button) {
        shop.press(button);
        QCoreApplication::processEvents();
        checkNothingIsCut(shop.pageWidget());
    };
    // Every help, and About.
    for (const Page page : pagesWithHelp) {
        shop.stack->setCurrentIndex(page);
        press("helpButton");
    }
    shop.stack->setCurrentIndex(PageMain);
    press("aboutButton");
    // Pages with values, a question and messages.
    press("messageOkButton");
    press("shoppingButton");
    press("listsButton");
    shop.tap(0);
    press("selectButton");
    press("editButton");
    press("deleteButton");
    QCOMPARE(shop.page(), PageConfirmation);
    press("confirmationNoButton");
    shop.stack->setCurrentIndex(PageMain);
    press("shopsButton");
    press("storesButton");
    shop.tap(0);
    press("selectButton");
    press("editButton");
    press("coordinatesButton");
    // The menus of the maps.
    for (auto *map : shop.window->findChildren<MapsWidget *>()) {
        QContextMenuEvent event(QContextMenuEvent::Keyboard, {}, {});
        QCoreApplication::sendEvent(map, &event);
        const auto *menu = map->findChild<QMenu *>();
        QVERIFY(menu);
        QVERIFY(menu->width() <= size.width());
    }
}

void TestFitting::buttonsAreStackedBeforeTextsShrink()
{
    ShopDriver shop({}, {{"LanguageId", 1}});
    shop.window->resize(360, 720);
    shop.press("shopsButton");
    shop.press("newButton");
    QCoreApplication::processEvents();
    const QRect save = shop.find<QPushButton>("saveButton")->geometry();
    const QRect remove = shop.find<QPushButton>("deleteButton")->geometry();
    QCOMPARE(remove.left(), save.left());
    QVERIFY(remove.top() > save.bottom());
}

void TestFitting::everythingIsInReach_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("landscape") << QSize(800, 480);
    if (fontScale() > 1)
        return;
    QTest::newRow("narrow phone") << QSize(360, 720);
    QTest::newRow("corner of a desktop") << QSize(480, 300);
}

static QList<const QWidget *> tabStops(const QWidget *page)
{
    QList<const QWidget *> stops;
    for (const QWidget *widget : page->findChildren<QWidget *>()) {
        const auto *radio = qobject_cast<const QRadioButton *>(widget);
        // The others are reached by the arrow keys.
        if (widget->isVisible() && widget->isEnabled() && !widget->focusProxy() &&
            (widget->focusPolicy() & Qt::TabFocus) != 0 && (!radio || radio->isChecked()))
            stops << widget;
    }
    return stops;
}

/// Tests that the Tab key reaches every control of a page, and that the control is visible as far
/// as the window is large enough.
void TestFitting::everythingIsInReach()
{
    QFETCH(QSize, size);
    ShopDriver shop({}, {{"LanguageId", 2}, {"GpsEnabled", true}});
    shop.window->resize(size);
    QVERIFY(QTest::qWaitForWindowActive(shop.window.get()));
    forEveryView(shop.stack, [&](const QWidget *page) {
        QCOMPARE(shop.window->size(), size);
        QList<const QWidget *> missing = tabStops(page);
        QVERIFY2(!missing.isEmpty(), qPrintable(page->objectName()));
        const auto *area = page->findChild<QScrollArea *>("pageArea");
        const QSize room = area ? area->viewport()->size() : page->size();
        for (qsizetype tab = 2 * missing.size(); tab > 0; --tab) {
            QTest::keyClick(shop.window->windowHandle(), Qt::Key_Tab);
            const QWidget *widget = QApplication::focusWidget();
            QVERIFY(widget);
            missing.removeOne(widget);
            if (qobject_cast<const QScrollArea *>(widget))
                continue; // its contents are visible, not the widget itself
            const QSize seen = widget->visibleRegion().boundingRect().size();
            const QSize expected = widget->size().boundedTo(room);
            QVERIFY2(seen.width() >= expected.width() && seen.height() >= expected.height(),
                     qPrintable(QString("%1 %2: %3x%4 of %5x%6")
                                    .arg(page->objectName(), widget->objectName())
                                    .arg(seen.width())
                                    .arg(seen.height())
                                    .arg(expected.width())
                                    .arg(expected.height())));
        }
        for (const QWidget *widget : missing)
            QFAIL(qPrintable(page->objectName() + ' ' + widget->objectName()));
    });
}

void TestFitting::focusStaysWhenThePageBeginsToScroll()
{
    ShopDriver shop;
    shop.window->resize(1600, 960);
    QCoreApplication::processEvents();
    shop.press("shopsButton");
    shop.press("newButton");
    shop.type("Bak");
    auto *field = shop.find<QLineEdit>("nameField");
    QVERIFY(!shop.has("pageArea"));
    shop.window->resize(300, 250);
    QTRY_VERIFY(shop.has("pageArea"));
    QTRY_VERIFY(field->isVisible());
    QCOMPARE(QApplication::focusWidget(), field);
    for (const char key : {'e', 'r', 'y'})
        QTest::keyClick(shop.window->windowHandle(), key);
    QCOMPARE(field->text(), "Bakery");
    QTest::keyClick(shop.window->windowHandle(), Qt::Key_Return);
    QCOMPARE(shop.db->column("select name from magazin"), QVariantList{"Bakery"});
}

void TestFitting::selectionStaysWhenThePageBeginsToScroll()
{
    ShopDriver shop;
    shop.window->resize(1600, 960);
    QCoreApplication::processEvents();
    shop.press("shopsButton");
    shop.press("newButton");
    shop.type("Brownbread");
    auto *field = shop.find<QLineEdit>("nameField");
    field->setSelection(2, 4);
    shop.window->resize(800, 200);
    QTRY_VERIFY(shop.has("pageArea"));
    QTRY_VERIFY(field->isVisible());
    QCOMPARE(field->selectedText(), "ownb");
}

void TestFitting::scrolledPageBeginsAtItsTop()
{
    ShopDriver shop({}, {{"GpsEnabled", true}});
    shop.stack->setCurrentIndex(PageTracking);
    shop.window->resize(400, 240);
    QTRY_VERIFY(shop.has("pageArea"));
    auto *bar = shop.find<QScrollArea>("pageArea")->verticalScrollBar();
    QTRY_VERIFY(bar->maximum() > 0);
    bar->setValue(bar->maximum());
    shop.stack->setCurrentIndex(PageMain);
    shop.stack->setCurrentIndex(PageTracking);
    QCoreApplication::processEvents();
    QCOMPARE(bar->value(), 0);
}

void TestFitting::keyboardBelowAddsNoHorizontalBar()
{
    constexpr int height = 250; // what an on-screen keyboard leaves
    ShopDriver shop({}, {{"GpsEnabled", true}});
    int scrolled = 0;
    forEveryView(shop.stack, [&](const QWidget *page) {
        shop.window->resize(480, height);
        QCoreApplication::processEvents();
        const auto *area = page->findChild<QScrollArea *>("pageArea");
        if (!area)
            return;
        // There is just room for the page, but not for a vertical bar beside it.
        shop.window->resize(area->widget()->minimumSizeHint().width() + 5, height);
        QCoreApplication::processEvents();
        if (area->widget()->minimumSizeHint().width() > page->width())
            return; // it is laid out otherwise in this size
        ++scrolled;
        QVERIFY2(!area->horizontalScrollBar()->isVisible(), qPrintable(page->objectName()));
    });
    QVERIFY(scrolled > 5);
}

void TestFitting::fieldToTypeInIsSeen()
{
    ShopDriver shop;
    shop.stack->setCurrentIndex(PageStores);
    shop.window->resize(400, 240);
    for (int visit = 0; visit < 2; ++visit) {
        QTRY_VERIFY(shop.isEnabled("newButton"));
        shop.stack->currentWidget()->findChild<QPushButton *>("newButton")->setFocus();
        QTest::keyClick(shop.window->windowHandle(), Qt::Key_Space);
        QCOMPARE(shop.page(), PageStoreEdit);
        QCoreApplication::processEvents();
        const auto *field = shop.find<QLineEdit>("nameField");
        QVERIFY(field->hasFocus());
        QCOMPARE(field->visibleRegion().boundingRect().height(), field->height());
        QTest::keyClick(shop.window->windowHandle(), Qt::Key_Escape);
    }
}

void TestFitting::longWordsOfAMessageSettle()
{
    ShopDriver shop({}, {{"LanguageId", 2}});
    shop.press("aboutButton");
    auto *text = shop.find<QLabel>("messageText");
    ResizeCounter resizes(text);
    // At some heights the text fits only in a smaller font, or without its scroll bar.
    for (int height = 700; height < 1300; height += 8) {
        resizes.count = 0;
        shop.window->resize(qRound(300 * fontScale()), height);
        QCoreApplication::processEvents();
    }
    // No word ends beyond the text.
    QTextDocument words;
    words.setDefaultFont(text->font());
    words.setDocumentMargin(0);
    words.setHtml(text->text());
    words.setTextWidth(0);
    QVERIFY2(words.idealWidth() <= text->width() - text->indent(),
             qPrintable(QString("%1 in %2").arg(words.idealWidth()).arg(text->width())));
}

void TestFitting::longNameOnAPageThatScrolls()
{
    ShopDriver shop(
        {store("A").openList("One"), store("Wholemeal bakery of the old town").openList("Two")});
    // There is little room above a keyboard.
    shop.window->resize(fontScale() < 2 ? QSize(360, 300) : QSize(480, 450));
    shop.press("shoppingButton");
    for (int row = 0; row < 2; ++row) {
        shop.press("listsButton");
        shop.tap(row);
        shop.press("selectButton");
        shop.press("editButton");
        QCoreApplication::processEvents();
        const auto *area = shop.find<QScrollArea>("pageArea");
        QVERIFY2(!area->horizontalScrollBar()->isVisible(), qPrintable(QString::number(row)));
        shop.press("backButton");
    }
}

STOPPABLE_TEST_MAIN(TestFitting)
#include "tst_fitting.moc"
