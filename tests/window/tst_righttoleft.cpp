// SPDX-License-Identifier: MIT
#include <QTranslator>
#include <QtTest>

#include "tests/support/shopdriver.h"

/// Tests the program on a system that writes from right to left. There is no translation for it, so
/// its pages are English.
class TestRightToLeft : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void englishIsNotMirrored();
};

void TestRightToLeft::initTestCase()
{
    QCOMPARE(QLocale::system().name(), "ar_EG");
    // Qt takes the direction from its translation, which must be installed for this test.
    QTranslator translator;
    QVERIFY(translator.load("qt_ar", QLibraryInfo::path(QLibraryInfo::TranslationsPath)));
}

void TestRightToLeft::englishIsNotMirrored()
{
    const ShopDriver shop;
    QCOMPARE(shop.buttonText("shoppingButton"), "Shopping");
    QCOMPARE(shop.window->layoutDirection(), Qt::LeftToRight);
}

STOPPABLE_TEST_MAIN(TestRightToLeft)
#include "tst_righttoleft.moc"
