// SPDX-License-Identifier: MIT
#include <QAbstractButton>
#include <QLabel>
#include <QMenu>
#include <QRegularExpression>
#include <QScrollArea>
#include <QSettings>
#include <QStackedWidget>
#include <QTabBar>
#include <QTabWidget>
#include <QtTest>

#include "app/pages.h"
#include "map/mapswidget.h"
#include "tests/support/shopdriver.h"

// Translations are installed resources; scripts/test installs before it tests.

class TestLanguages : public QObject
{
    Q_OBJECT

private slots:
    void storedLanguageDecides_data();
    void storedLanguageDecides();
    void languageChangesEveryText();
    void oldLanguageGoes();
    void nothingIsCut_data();
    void nothingIsCut();
};

static const QRegularExpression cyrillic("[а-яА-ЯёЁ]");
static constexpr Page pagesWithHelp[] = {
    PageMain,       PageShopping,  PageTracking,      PageStores,
    PageItemsList,  PageListEdit,  PageShoppingLists, PageItemEdit,
    PageStoreList,  PageStoreEdit, PageCategoryList,  PageCategoryEdit,
    PageDoShopping, PageOptions,   PageTrackedList,   PageCoordinates};

void TestLanguages::storedLanguageDecides_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<QString>("text");
    QTest::newRow("English") << QVariant(1) << "Shopping";
    QTest::newRow("Russian") << QVariant(2) << "Покупки";
    QTest::newRow("unknown") << QVariant(7) << "Shopping";
    QTest::newRow("rubbish") << QVariant("rubbish") << "Shopping";
}

void TestLanguages::storedLanguageDecides()
{
    QFETCH(QVariant, stored);
    QFETCH(QString, text);
    ShopDriver shop({}, {{"LanguageId", stored}});
    QCOMPARE(shop.buttonText("shoppingButton"), text);
}

/// What a person sees or a screen reader says on a page, but for what reads the same in Russian.
static QStringList textsOf(const QWidget *page)
{
    QStringList texts;
    for (const QWidget *widget : page->findChildren<QWidget *>()) {
        texts << widget->accessibleName() << widget->accessibleDescription();
        if (const auto *label = qobject_cast<const QLabel *>(widget))
            texts << label->text();
        else if (const auto *button = qobject_cast<const QAbstractButton *>(widget))
            texts << button->text();
        else if (const auto *bar = qobject_cast<const QTabBar *>(widget))
            texts << bar->tabText(0) << bar->tabText(1);
    }
    static const QRegularExpression word("[A-Za-z]{2}");
    static const QStringList same{"OK", "GPS", "no sound.wav"};
    texts.removeIf([](const QString &text) {
        return !text.contains(word) || same.contains(text) || text.startsWith("qt_");
    });
    return texts;
}

/// Opens every help, and About, and looks whether it is in that language.
static void checkHelps(const ShopDriver &shop, bool isRussian)
{
    const auto check = [&shop, isRussian](int page, const char *button) {
        shop.stack->setCurrentIndex(page);
        shop.press(button);
        QCOMPARE(shop.labelText("messageTitle").contains(cyrillic), isRussian);
        QString text = shop.labelText("messageText");
        static const QRegularExpression tags("<[^>]*>");
        text.remove(tags);
        QVERIFY2(text.contains(cyrillic) == isRussian, qPrintable(text));
        static const QRegularExpression english("\\b(the|this|You|and|is|of)\\b");
        QVERIFY2(text.contains(english) != isRussian, qPrintable(text));
    };
    for (const int page : pagesWithHelp)
        check(page, "helpButton");
    check(PageMain, "aboutButton");
}

void TestLanguages::languageChangesEveryText()
{
    ShopDriver shop({}, {{"LanguageId", 1}});
    checkHelps(shop, false);
    forEveryView(shop.stack, [](const QWidget *page) {
        for (const QString &text : textsOf(page))
            QVERIFY2(!text.contains(cyrillic), qPrintable(text));
    });
    for (const int round : {0, 1, 2}) {
        const bool toRussian = round % 2 == 0;
        shop.stack->setCurrentIndex(PageMain);
        shop.press("optionsButton");
        shop.press(toRussian ? "russianRadio" : "englishRadio");
        shop.press("okButton");
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        shop.stack = shop.window->findChild<QStackedWidget *>("pageStack");
        forEveryView(shop.stack, [toRussian](const QWidget *page) {
            for (const QString &text : textsOf(page))
                QVERIFY2(text.contains(cyrillic) == toRussian, qPrintable(text));
        });
        checkHelps(shop, toRussian);
    }
}

void TestLanguages::oldLanguageGoes()
{
    // There is no translation for the locale of this test, so nothing hides an old one.
    ShopDriver shop({}, {{"LanguageId", 2}});
    QCOMPARE(shop.buttonText("shoppingButton"), "Покупки");
    shop.press("optionsButton");
    shop.press("autoDetectRadio");
    shop.press("okButton");
    shop.stack = shop.window->findChild<QStackedWidget *>("pageStack");
    QCOMPARE(shop.buttonText("shoppingButton"), "Shopping");
}

void TestLanguages::nothingIsCut_data()
{
    QTest::addColumn<int>("language");
    QTest::addColumn<QSize>("size");
    for (const auto &[name, language] : {std::pair("English", 1), std::pair("Russian", 2)}) {
        QTest::addRow("%s, landscape", name) << language << QSize(800, 480);
        QTest::addRow("%s, portrait", name) << language << QSize(480, 800);
    }
}

/// Fails if a text of `page` is not to be seen whole; what scrolls may go on below.
static void checkNothingIsCut(const QWidget *page)
{
    const QWidget *window = page->window();
    const QSize needed = page->minimumSizeHint();
    QVERIFY2(needed.width() <= window->width() && needed.height() <= window->height(),
             qPrintable(QString("%1 needs %2 x %3")
                            .arg(page->objectName())
                            .arg(needed.width())
                            .arg(needed.height())));
    for (const QWidget *widget : page->findChildren<QWidget *>()) {
        const auto *label = qobject_cast<const QLabel *>(widget);
        const auto *button = qobject_cast<const QAbstractButton *>(widget);
        const auto *bar = qobject_cast<const QTabBar *>(widget);
        if (!widget->isVisible() || widget->objectName().startsWith("qt_") ||
            !(label || button || bar))
            continue;
        const QString what = page->objectName() + ": " +
                             (label    ? label->text()
                              : button ? button->text()
                                       : widget->objectName());
        if (label && label->wordWrap())
            QVERIFY2(label->height() >= label->heightForWidth(label->width()), qPrintable(what));
        else
            QVERIFY2(widget->sizeHint().width() <= widget->width(), qPrintable(what));
        QVERIFY2(widget->minimumSizeHint().width() <= widget->width(), qPrintable(what));

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

void TestLanguages::nothingIsCut()
{
    QFETCH(int, language);
    QFETCH(QSize, size);
    ShopDriver shop({"insert into category values (1, 'Food')",
                     "insert into magazin values (1, 'Bakery', 1, null)",
                     "insert into gpscoord values (1, 10.01, 20, 0)",
                     "insert into shoplist values (1, 'Bread', 1, 1)"},
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
        checkNothingIsCut(shop.page());
    };
    // Every help, and About.
    for (const int page : pagesWithHelp) {
        shop.stack->setCurrentIndex(page);
        press("helpButton");
    }
    shop.stack->setCurrentIndex(PageMain);
    press("aboutButton");
    // Values that are shown, a question, messages.
    press("messageOkButton");
    press("shoppingButton");
    press("listsButton");
    shop.tap(0);
    press("selectButton");
    press("editButton");
    press("deleteButton");
    QCOMPARE(shop.pageIndex(), int(PageConfirmation));
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
        QVERIFY(menu->width() <= 480);
    }
}

QTEST_MAIN(TestLanguages)
#include "tst_languages.moc"
