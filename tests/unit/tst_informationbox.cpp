// SPDX-License-Identifier: MIT
#include <QAccessible>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>

#include "platform/informationbox.h"

using namespace std::chrono_literals;

class TestInformationBox : public QObject
{
    Q_OBJECT

private slots:
    void goesAfterItsTime();
    void itsTimeStartsWhenItIsSeen();
    void lettingClicksThrough();
    void newOneReplacesTheOneShowing();
    void staysOnTopOfWhatComesLater();
    void isReadableInBothOrientations_data();
    void isReadableInBothOrientations();
    void isAnnounced();
    void leavesTheFocusAlone();
};

namespace {

struct Window : QWidget
{
    Window()
    {
        resize(800, 480);
    }

    void showNow()
    {
        show();
        QVERIFY(QTest::qWaitForWindowExposed(this));
    }

    InformationBox *banner() const
    {
        return findChild<InformationBox *>();
    }
};

} // namespace

void TestInformationBox::goesAfterItsTime()
{
    Window window;
    window.showNow();
    QElapsedTimer clock;
    clock.start();
    InformationBox *box = InformationBox::information(&window, "text", 300ms);
    QVERIFY(box->isVisible());
    QCOMPARE(box->text(), "text");
    QSignalSpy gone(box, &InformationBox::gone);
    QTRY_VERIFY(!window.banner());
    QVERIFY2(clock.elapsed() >= 285, qPrintable(QString::number(clock.elapsed())));
    QCOMPARE(gone.count(), 1);
}

void TestInformationBox::itsTimeStartsWhenItIsSeen()
{
    Window window;
    InformationBox *box = InformationBox::information(&window, "text", 500ms);
    QElapsedTimer clock;
    clock.start();
    QSignalSpy gone(box, &InformationBox::gone);
    QVERIFY(!gone.wait(700));
    window.showNow();
    clock.restart();
    QVERIFY(gone.wait());
    QVERIFY2(clock.elapsed() > 300, qPrintable(QString::number(clock.elapsed())));
}

void TestInformationBox::lettingClicksThrough()
{
    Window window;
    QPushButton button("press", &window);
    button.setGeometry(window.rect());
    QSignalSpy clicked(&button, &QPushButton::clicked);
    window.showNow();
    InformationBox *box = InformationBox::information(&window, "text", 3000ms);
    QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, box->geometry().center());
    QCOMPARE(clicked.count(), 1);
}

void TestInformationBox::newOneReplacesTheOneShowing()
{
    Window window;
    window.showNow();
    const QPointer<InformationBox> first = InformationBox::information(&window, "first", 60000ms);
    QSignalSpy firstGone(first, &InformationBox::gone);
    const QPointer<InformationBox> second = InformationBox::information(&window, "second", 60000ms);
    QCOMPARE(firstGone.count(), 1);
    QVERIFY(!first->isVisible());
    QVERIFY(second->isVisible());
    QTRY_VERIFY(!first);
    QCOMPARE(window.banner(), second);
    QCOMPARE(second->text(), "second");
}

void TestInformationBox::staysOnTopOfWhatComesLater()
{
    Window window;
    InformationBox *box = InformationBox::information(&window, "text", 3000ms);
    QWidget later(&window);
    later.setGeometry(window.rect());
    window.showNow();
    QWidget latest(&window);
    latest.setGeometry(window.rect());
    latest.show();
    QCOMPARE(window.children().last(), box);
}

void TestInformationBox::isReadableInBothOrientations_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("short") << "Can't open database";
    QTest::newRow("long") << QString("Не удалось открыть базу данных ").repeated(4);
}

void TestInformationBox::isReadableInBothOrientations()
{
    QFETCH(QString, text);
    Window window;
    window.showNow();
    InformationBox *box = InformationBox::information(&window, text, 3000ms);
    for (const QSize &size : {QSize(800, 480), QSize(480, 800), QSize(800, 480)}) {
        window.resize(size);
        QTRY_COMPARE(window.size(), size);
        QVERIFY(window.rect().contains(box->geometry()));
        QVERIFY(box->height() >= box->heightForWidth(box->width()));
        QVERIFY(qAbs(box->geometry().center().x() - window.rect().center().x()) <= 1);
    }
}

void TestInformationBox::isAnnounced()
{
    // This platform has no accessibility bus, so the system tests check the announcement.
    Window window;
    window.showNow();
    InformationBox *box = InformationBox::information(&window, "text", 3000ms);
    QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(box);
    QVERIFY(accessible);
    QCOMPARE(accessible->role(), QAccessible::Notification);
    QCOMPARE(accessible->text(QAccessible::Name), "text");
}

void TestInformationBox::leavesTheFocusAlone()
{
    Window window;
    QPushButton button("press", &window);
    window.showNow();
    window.activateWindow();
    button.setFocus();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QTRY_VERIFY(button.hasFocus());
    InformationBox::information(&window, "text", 50ms);
    QVERIFY(button.hasFocus());
    QTRY_VERIFY(!window.banner());
    QVERIFY(button.hasFocus());
}

QTEST_MAIN(TestInformationBox)
#include "tst_informationbox.moc"
