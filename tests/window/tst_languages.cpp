// SPDX-License-Identifier: MIT
#include <QAbstractButton>
#include <QLabel>
#include <QRegularExpression>
#include <QSettings>
#include <QStackedWidget>
#include <QTabBar>
#include <QTabWidget>
#include <QtTest>

#include "base/pages.h"
#include "tests/support/shopdriver.h"

// Translations are installed resources; scripts/test installs them before it runs the tests.

class TestLanguages : public QObject
{
    Q_OBJECT

private slots:
    void storedLanguageDecides_data();
    void storedLanguageDecides();
    void languageChangesEveryText();
    void oldLanguageGoes();
};

static const QRegularExpression cyrillic("[а-яА-ЯёЁ]");

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

/// Returns the visible and accessible texts of a page, without those that are the same in Russian.
static QStringList textsOf(const QWidget *page)
{
    QStringList texts{page->accessibleName()};
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

/// Opens every help, and About, and checks their language.
static void checkHelps(const ShopDriver &shop, bool isRussian)
{
    const auto check = [&shop, isRussian](Page page, const char *button) {
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
    for (const Page page : pagesWithHelp)
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
    // There is no translation for the locale of this test that could hide an old text.
    ShopDriver shop({}, {{"LanguageId", 2}});
    QCOMPARE(shop.buttonText("shoppingButton"), "Покупки");
    shop.press("optionsButton");
    shop.press("autoDetectRadio");
    shop.press("okButton");
    shop.stack = shop.window->findChild<QStackedWidget *>("pageStack");
    QCOMPARE(shop.buttonText("shoppingButton"), "Shopping");
}

STOPPABLE_TEST_MAIN(TestLanguages)
#include "tst_languages.moc"
