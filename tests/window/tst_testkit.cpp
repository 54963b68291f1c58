// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QProcess>
#include <QtTest>

#include "tests/support/emulator.h"
#include "tests/support/records.h"
#include "tests/support/shopdriver.h"
#include "tests/support/stoppable.h"

/// Fails on purpose, in a separate process: each function once, in the line after `line`.
class Failing : public QObject
{
    Q_OBJECT

private slots:
    void pressesWhatIsNotThere()
    {
        const ShopDriver shop;
        line();
        shop.press("saveButton");
        qInfo("went on");
    }
    void readsWhatIsNotThere()
    {
        const ShopDriver shop;
        line();
        std::ignore = shop.rows();
        qInfo("went on");
    }
    void tapsARowBeyondTheLast()
    {
        const ShopDriver shop(openList("Weekend"));
        shop.press("shoppingButton");
        shop.press("listsButton");
        shop.tap(0);
        line();
        shop.tap(1);
        qInfo("went on");
    }
    void wantsARowThatCannotBe()
    {
        line();
        const ShopDriver shop(sql("insert into nothing values (1)"));
        qInfo("went on");
    }
    void isStoppedInASlot()
    {
        // As when a timer presses a button while a file is selected.
        const ShopDriver shop;
        QTimer::singleShot(0, this, [&shop] {
            line();
            shop.press("saveButton");
        });
        QTest::qWait(50);
        qInfo("went on");
    }
    void failsInOneRow_data()
    {
        QTest::addColumn<QByteArray>("button");
        for (const char *button : {"shoppingButton", "saveButton", "optionsButton"})
            QTest::newRow(button) << QByteArray(button);
    }
    void failsInOneRow()
    {
        QFETCH(QByteArray, button);
        const ShopDriver shop;
        if (button == "saveButton")
            line();
        shop.press(button);
        qInfo("pressed %s", button.constData());
    }
    void comparesAPageThatIsAnother()
    {
        const ShopDriver shop;
        QCOMPARE(shop.page(), PageReminder);
    }
    void last()
    {
        const ShopDriver shop;
        shop.press("shoppingButton");
        qInfo("pressed");
    }

private:
    static void line(const Caller &by = Caller::here())
    {
        qInfo("line %d", by.line + 1);
    }
};

/// Tests the helpers: a function whose helper does not find its widget fails in the line of the
/// call and stops; the other functions run.
class TestTestKit : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void failureNamesTheLine_data();
    void failureNamesTheLine();
    void otherRowsRun();
    void functionsAfterItRun();
    void pagesAreToldByTheirNames();

private:
    QStringList linesOf(const QString &function) const;

    QStringList said;
};

void TestTestKit::initTestCase()
{
    QProcess child;
    child.setProcessChannelMode(QProcess::MergedChannels);
    Emulator::startSelf(child, {"fail"});
    QVERIFY(child.waitForFinished(300000)); // the time limit of any test
    QCOMPARE(child.exitStatus(), QProcess::NormalExit);
    QCOMPARE(child.exitCode(), 7); // the number of failed functions
    said = QString::fromUtf8(child.readAll()).split('\n');
}

/// Returns the output of a function and its rows, with the lines that name the location.
QStringList TestTestKit::linesOf(const QString &function) const
{
    QStringList result;
    bool isOfIt = false;
    for (const QString &line : said) {
        if (!line.startsWith(' '))
            isOfIt = line.contains("Failing::" + function + '(');
        if (isOfIt)
            result << line;
    }
    return result;
}

void TestTestKit::failureNamesTheLine_data()
{
    QTest::addColumn<QString>("why");
    QTest::newRow("pressesWhatIsNotThere") << "no saveButton on mainPage";
    QTest::newRow("readsWhatIsNotThere") << "no list on mainPage";
    QTest::newRow("tapsARowBeyondTheLast") << "no row 1 on shoppingListsPage";
    QTest::newRow("wantsARowThatCannotBe") << "cannot run insert into nothing values (1)";
    QTest::newRow("isStoppedInASlot") << "no saveButton on mainPage";
    QTest::newRow("failsInOneRow") << "no saveButton on mainPage";
}

void TestTestKit::failureNamesTheLine()
{
    QFETCH(QString, why);
    const QStringList lines = linesOf(QTest::currentDataTag());
    const QString text = lines.join('\n');
    const QStringList where = lines.filter(") line ");
    QCOMPARE(where.size(), 1);
    const QString number = where.first().section(' ', -1);
    const QStringList failures = lines.filter(QRegularExpression("^FAIL! "));
    QVERIFY2(failures.size() == 1 && failures.first().endsWith(why), qPrintable(text));
    const QStringList places = lines.filter("Loc: ");
    QVERIFY2(places.size() == 1 && places.first().endsWith("tst_testkit.cpp(" + number + ")]"),
             qPrintable(text));
    QVERIFY2(!text.contains("went on"), qPrintable(text));
}

void TestTestKit::otherRowsRun()
{
    const QStringList lines = linesOf("failsInOneRow");
    QCOMPARE(lines.filter("pressed").size(), 2);
    QVERIFY(lines.filter("pressed saveButton").isEmpty());
    QCOMPARE(lines.filter(QRegularExpression("^PASS ")).size(), 2);
}

void TestTestKit::functionsAfterItRun()
{
    const QStringList lines = linesOf("last");
    QCOMPARE(lines.filter("pressed").size(), 1);
    QCOMPARE(lines.filter(QRegularExpression("^PASS ")).size(), 1);
}

void TestTestKit::pagesAreToldByTheirNames()
{
    const QString text = linesOf("comparesAPageThatIsAnother").join('\n');
    QVERIFY2(text.contains(": PageMain\n"), qPrintable(text));
    QVERIFY2(text.contains(": PageReminder\n"), qPrintable(text));
}

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    if (QCoreApplication::arguments().contains("fail")) {
        Stoppable<Failing> test;
        return QTest::qExec(&test);
    }
    Stoppable<TestTestKit> test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_testkit.moc"
