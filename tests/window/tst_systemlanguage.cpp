// SPDX-License-Identifier: MIT
#include <QStackedWidget>
#include <QtTest>

#include "base/pages.h"
#include "tests/support/shopdriver.h"

/// Tests the program on a Russian system. Translations are installed resources, as for the other
/// languages.
class TestSystemLanguage : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void speaksAsTheSystemDoes_data();
    void speaksAsTheSystemDoes();
    void systemsLanguageIsChosen();
};

void TestSystemLanguage::initTestCase()
{
    QCOMPARE(QLocale::system().name(), "ru_RU");
}

void TestSystemLanguage::speaksAsTheSystemDoes_data()
{
    QTest::addColumn<QVariantMap>("settings");
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing stored") << QVariantMap() << "Покупки";
    QTest::newRow("the system's") << QVariantMap{{"LanguageId", 0}} << "Покупки";
    QTest::newRow("English") << QVariantMap{{"LanguageId", 1}} << "Shopping";
}

void TestSystemLanguage::speaksAsTheSystemDoes()
{
    QFETCH(QVariantMap, settings);
    QFETCH(QString, text);
    const ShopDriver shop({}, settings);
    QCOMPARE(shop.buttonText("shoppingButton"), text);
}

void TestSystemLanguage::systemsLanguageIsChosen()
{
    ShopDriver shop({}, {{"LanguageId", 1}});
    shop.press("optionsButton");
    shop.press("autoDetectRadio");
    shop.press("okButton");
    shop.stack = shop.window->findChild<QStackedWidget *>("pageStack");
    QCOMPARE(shop.page(), PageMain);
    QCOMPARE(shop.buttonText("shoppingButton"), "Покупки");
}

STOPPABLE_TEST_MAIN(TestSystemLanguage)
#include "tst_systemlanguage.moc"
