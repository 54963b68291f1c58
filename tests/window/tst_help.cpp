// SPDX-License-Identifier: MIT
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QMap>
#include <QPushButton>
#include <QRegularExpression>
#include <QScrollArea>
#include <QScrollBar>
#include <QStackedWidget>
#include <QtTest>

#include "base/pages.h"
#include "tests/support/records.h"
#include "tests/support/shopdriver.h"

class TestHelp : public QObject
{
    Q_OBJECT

private slots:
    void everyPageHasItsHelp_data();
    void everyPageHasItsHelp();
    void helpNamesEveryButton_data()
    {
        everyPageHasItsHelp_data();
    }
    void helpNamesEveryButton();
    void helpTellsOfButtonsWithoutAPicture();
    void mainPageIsTheModel();
    void about();
    void keysOfTheTranslations_data();
    void keysOfTheTranslations();
    void okClearsTheText();
    void helpOfTheCoordinatesLeadsBackToThem();

private:
    static QString textOf(ShopDriver &shop, Page page)
    {
        shop.stack->setCurrentIndex(page);
        shop.press("helpButton");
        return shop.labelText("messageText");
    }
    static QImage drawing(const QIcon &icon)
    {
        return icon.pixmap(48).toImage();
    }
};

void TestHelp::everyPageHasItsHelp_data()
{
    QTest::addColumn<Page>("page");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("begin");
    const auto add = [](Page page, const char *title, const char *begin) {
        QTest::newRow(title) << page << title << begin;
    };
    add(PageMain, "Main Page", "You are on a Main Page of the App.");
    add(PageShopping, "Shoppings", "You are on a Shopping Page.");
    add(PageTracking, "Reminders (GPS tracking)", "You are on a Reminders page.");
    add(PageStores, "Stores", "You are on a Stores Page.");
    add(PageItemsList, "Items List", "You are on an Items List Page.");
    add(PageListEdit, "Shopping List Edit", "You are on a Shopping List Edit Page.");
    add(PageShoppingLists, "Shopping Lists", "You are on a Shopping Lists Page.");
    add(PageItemEdit, "Item Add/Edit",
        "Here You can edit item's parameters. Or You can delete current Item from the List. ");
    add(PageStoreList, "Stores List", "Here You can select Store, or add a New One.");
    add(PageStoreEdit, "Store Add/Edit", "Here You can edit selected Store properties.");
    add(PageCategoryList, "Category List",
        "Here You can manage Categories (select one or Add a New one).");
    add(PageCategoryEdit, "Add/Edit Category",
        "Here You can edit Category properties. Or You can Delete current category.");
    add(PageDoShopping, "Do Shopping",
        "Here You can check/uncheck bought goods. When You check one of the items it will be moved "
        "below last unchecked item. Also remember that even one unchecked item makes the list to "
        "be still active - i.e. this list still can be used in a reminders.");
    add(PageOptions, "Options",
        "Here You can Enable/Disable GPS, change AutoStart settings, select Sound and Language");
    add(PageTrackedList, "Tracking",
        "Here You can vew tracked Stores, sorted by distance from current location. ");
    add(PageCoordinates, "Coords input",
        "Here You can set GPS coordinates for store. There are 3 ways:");
}

void TestHelp::everyPageHasItsHelp()
{
    QFETCH(Page, page);
    QFETCH(QString, title);
    QFETCH(QString, begin);
    ShopDriver shop;
    const QString text = textOf(shop, page);
    QCOMPARE(shop.page(), PageMessage);
    QCOMPARE(shop.labelText("messageTitle"), title);
    QVERIFY2(text.startsWith(begin + "<br>"), qPrintable(text));
    QCOMPARE(drawing(QIcon(shop.find<QLabel>("messageIcon")->pixmap(Qt::ReturnByValue))),
             drawing(QIcon(QIcon(":/img/question.png").pixmap(60))));
    QCOMPARE(text.count("<b>"), text.count("</b>"));
    shop.press("messageOkButton");
    QCOMPARE(shop.page(), page);
}

void TestHelp::helpNamesEveryButton()
{
    QFETCH(Page, page);
    ShopDriver shop;
    const QString text = textOf(shop, page);
    shop.press("messageOkButton");
    QCoreApplication::processEvents(); // the page has its layout
    QList<const QPushButton *> unnamed;
    for (const QPushButton *button : shop.pageWidget()->findChildren<QPushButton *>()) {
        // The help of the main page is the model for all others, and does not mention its exit
        // button.
        if (!button->icon().isNull() && button->objectName() != "exitButton")
            unnamed << button;
    }
    QVERIFY(!unnamed.isEmpty());
    static const QRegularExpression image("<img src=\":/img/([^\"]+)\" width=24 height=24> - ");
    for (const QString &section : text.split("<b>")) {
        QPoint last(-1, -1);
        for (auto match = image.globalMatch(section); match.hasNext();) {
            const QString name = match.next().captured(1);
            const QImage picture = drawing(QIcon(":/img/" + name));
            const auto button =
                std::find_if(unnamed.cbegin(), unnamed.cend(), [&picture](const auto *candidate) {
                    return drawing(candidate->icon()) == picture;
                });
            QVERIFY2(button != unnamed.cend(), qPrintable(name));
            // In the order of the page, downwards or to the right; some buttons are in a hidden
            // view.
            if ((*button)->isVisible()) {
                const QPoint place = (*button)->mapTo(shop.pageWidget(), QPoint(0, 0));
                QVERIFY2(place.x() > last.x() || place.y() > last.y(), qPrintable(name));
                last = place;
            }
            unnamed.removeOne(*button);
        }
    }
    for (const QPushButton *button : unnamed)
        QFAIL(qPrintable(button->objectName()));
}

void TestHelp::helpTellsOfButtonsWithoutAPicture()
{
    const QMap<QString, QString> words{
        {"trackingPage/categoryButton", "Stores of one Category, press the button below"},
        {"trackingPage/storeButton", "one Store, press the button below"},
        {"listEditPage/storeButton", "Press the button with the Store"},
        {"listEditPage/resetButton", "Reset makes all goods of the List unchecked"},
        {"itemEditPage/lessButton", "Minus and plus"},
        {"itemEditPage/moreButton", "Minus and plus"},
        {"storeEditPage/categoryButton", "Press the button with the Category"},
        {"storeEditPage/coordinatesButton", "the one with the GPS"},
        {"optionsPage/soundButton", "Press the button with the file name"},
        {"coordinatesPage/latitudeHemisphere", "N/S"},
        {"coordinatesPage/longitudeHemisphere", "E/W"},
    };
    ShopDriver shop;
    QStringList found;
    for (int index = 0; index < PageCount; ++index) {
        const QWidget *page = shop.stack->widget(index);
        for (const QPushButton *button : page->findChildren<QPushButton *>()) {
            // A suggestion is hidden until something is typed.
            if (!button->icon().isNull() || button->isHidden())
                continue;
            found << page->objectName() + '/' + button->objectName();
            QVERIFY2(words.contains(found.last()), qPrintable(found.last()));
            QVERIFY2(textOf(shop, Page(index)).contains(words[found.last()]),
                     qPrintable(found.last()));
        }
    }
    QCOMPARE(found.size(), words.size());
}

void TestHelp::mainPageIsTheModel()
{
    ShopDriver shop;
    const auto button = [](const char *picture, const char *text) {
        return QString("<img src=\":/img/%1\" width=24 height=24> - %2<br>").arg(picture, text);
    };
    QCOMPARE(textOf(shop, PageMain),
             "You are on a Main Page of the App.<br><br><b>Main buttons here:</b><br>" +
                 button("shopping-cart.svg", "Shopping page, shopping Lists management;") +
                 button("reminder.svg", "Reminders over GPS tracking of closest to You Stores;") +
                 button("market.png", "Stores management page.") +
                 "<br><b>Toolbar buttons:</b><br>" + button("tools.svg", "Options page;") +
                 button("question.png", "this page;") + button("info.png", "About page."));
}

void TestHelp::about()
{
    ShopDriver shop;
    shop.press("aboutButton");
    QCOMPARE(shop.labelText("messageTitle"), "About Trolleo");
    QCOMPARE(drawing(QIcon(shop.find<QLabel>("messageIcon")->pixmap(Qt::ReturnByValue))),
             drawing(QIcon(QIcon(":/img/info.png").pixmap(60))));
    const QString text = shop.labelText("messageText");
    const QStringList lines = text.split("<br>");
    QCOMPARE(lines.at(0), "<b>Trolleo</b>");
    QCOMPARE(lines.at(1),
             "This program is intended to help a User not forget about all the planned "
             "shoppings and make shopping process itself more handy.");
    QCOMPARE(lines.at(2), "Program version: 1.1.0 for Maemo 5");
    QCOMPARE(lines.at(3), "Developed with: Qt 4.6.3");
    const QRegularExpression link(
        "^Send reports to: <a href=\"mailto:([^@\"]+@[^@\"]+)\">\\1</a>$");
    // In a narrow window the address wraps at zero-width spaces.
    QVERIFY(link.match(QString(lines.at(4)).remove(QChar(0x200b))).hasMatch());
    QVERIFY(lines.at(5).contains(QString("Qt ") + qVersion()));
    QVERIFY(lines.at(5).contains("MIT"));
    QVERIFY(lines.at(5).contains("OpenStreetMap"));
    shop.press("messageOkButton");
    QCOMPARE(shop.page(), PageMain);
}

void TestHelp::keysOfTheTranslations_data()
{
    QTest::addColumn<Page>("page");
    QTest::addColumn<QString>("words");
    const auto add = [](Page page, const char *words) {
        QTest::newRow(words) << page << words;
    };
    // Misspellings must remain.
    add(PageTrackedList, "vew");
    add(PageCoordinates, "enetered");
    add(PageShoppingLists, "previuos");
    add(PageShoppingLists, "bouded");
    add(PageTracking, "critaria sortde");
    add(PageOptions, "defualt");
    add(PageOptions, "Interface languge:");
    add(PageTrackedList, "Buttons at the bottom bottom:");
    // Values that the program uses.
    add(PageTracking, "250 meters or less");
    add(PageTrackedList, "List updates every 3 seconds");
    add(PageTrackedList, "this view is available only when GPS is active");
    add(PageDoShopping, "moved below last unchecked item");
    add(PageListEdit, "caption can not be empty");
    add(PageOptions, "Selected translation will be loaded right after You exit the Options.");
}

void TestHelp::keysOfTheTranslations()
{
    QFETCH(Page, page);
    QFETCH(QString, words);
    ShopDriver shop;
    QVERIFY(textOf(shop, page).contains(words));
}

void TestHelp::okClearsTheText()
{
    ShopDriver shop;
    textOf(shop, PageOptions);
    auto *bar = shop.pageWidget()->findChild<QScrollArea *>()->verticalScrollBar();
    bar->setValue(bar->maximum());
    QVERIFY(bar->value() > 0);
    shop.press("messageOkButton");
    QCOMPARE(shop.stack->widget(PageMessage)->findChild<QLabel *>("messageText")->text(), "");
    textOf(shop, PageStores);
    QCOMPARE(bar->value(), 0);
}

void TestHelp::helpOfTheCoordinatesLeadsBackToThem()
{
    ShopDriver shop(store("Bakery"));
    shop.press("shopsButton");
    shop.press("storesButton");
    shop.tap(0);
    shop.press("selectButton");
    shop.press("editButton");
    shop.press("coordinatesButton");
    auto *field = shop.find<QLineEdit>("latitudeField");
    field->setFocus();
    QTest::keyClick(field, Qt::Key_Home);
    QTest::keyClicks(field, "12.5");
    shop.press("helpButton");
    QCOMPARE(shop.labelText("messageTitle"), "Coords input");
    shop.press("messageOkButton");
    QCOMPARE(shop.page(), PageCoordinates);
    QCOMPARE(field->text(), "12.5");
}

STOPPABLE_TEST_MAIN(TestHelp)
#include "tst_help.moc"
