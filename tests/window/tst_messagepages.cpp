// SPDX-License-Identifier: MIT
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QStackedWidget>
#include <QtTest>

#include "app/shopwindow.h"
#include "tests/support/pagenames.h"
#include "tests/support/testhome.h"
#include "widgets/TrKineticScroller.h"

namespace {

/// A window that shows messages. Its message and question pages are still empty.
class SpeakingWindow : public ShopWindow
{
public:
    using ShopWindow::askQuestion;
    using ShopWindow::showMessage;
    using ShopWindow::showWaiting;

    void ask(const QString &text, void (SpeakingWindow::*slot)(), int returnPage)
    {
        askQuestion("Deleting", text, static_cast<void (ShopWindow::*)()>(slot), returnPage);
    }

    void firstConfirmed()
    {
        confirmed << "first";
    }
    void secondConfirmed()
    {
        confirmed << "second";
    }
    void positionCame()
    {
        ++positions;
    }

    QStringList confirmed;
    int positions = 0;
};

} // namespace

class TestMessagePages : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void messageShowsWhatItIsGiven();
    void okLeadsBackAndClearsTheText();
    void longTextStartsAtItsTopEachTime();
    void longTextIsFlicked();
    void picturesInTheTextAreCrisp();
    void messageTextTakesNoClicks();
    void yesRunsTheConfirmingSlotOnly();
    void secondQuestionsYesRunsOnlyTheSecondSlot();
    void noLeadsBackAndRunsNothing();
    void namesInAQuestionAreNoMarkup();
    void waitingPageReturnsToItsOpener();
    void secondWaitReturnsToTheSameOpener();
    void cancelledWaitLeavesNobodyWaiting();
    void cancellingAfterThePositionCameStillReturns();
    void waitingPictureMoves();
    void keyboardAnswers();
    void fontsDifferByOnePoint();

private:
    void click(const char *button)
    {
        QTest::mouseClick(find<QPushButton>(button), Qt::LeftButton);
    }
    template <typename Widget>
    Widget *find(const char *name) const
    {
        return window->findChild<Widget *>(name);
    }
    Page page() const
    {
        return Page(stack->currentIndex());
    }

    std::unique_ptr<TestHome> home;
    std::unique_ptr<SpeakingWindow> window;
    QStackedWidget *stack = nullptr;
};

static QString longText()
{
    return QString("One of many lines of a long help text.<br>").repeated(100);
}

void TestMessagePages::init()
{
    home = std::make_unique<TestHome>();
    window = std::make_unique<SpeakingWindow>();
    stack = find<QStackedWidget>("pageStack");
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window.get()));
}

void TestMessagePages::cleanup()
{
    window.reset();
    home.reset();
}

void TestMessagePages::messageShowsWhatItIsGiven()
{
    window->showMessage("Title", "Some <b>text</b>", ":/img/warning_r.svg", PageStores);
    QCOMPARE(page(), PageMessage);
    QCOMPARE(find<QLabel>("messageTitle")->text(), "Title");
    QCOMPARE(find<QLabel>("messageText")->text(), "Some <b>text</b>");
    QCOMPARE(find<QLabel>("messageText")->textFormat(), Qt::RichText);
    const QPixmap warning = find<QLabel>("messageIcon")->pixmap();
    QCOMPARE(warning.deviceIndependentSize(), QSizeF(60, 60));
    window->showMessage("Title", "Text", ":/img/info.png", PageStores);
    const QImage info = find<QLabel>("messageIcon")->pixmap().toImage();
    QVERIFY(info != warning.toImage());
    window->showMessage("Title", "Text", QString(), PageStores);
    QCOMPARE(find<QLabel>("messageIcon")->pixmap().toImage(), info);
}

void TestMessagePages::okLeadsBackAndClearsTheText()
{
    window->showMessage("Title", "Text", ":/img/info.png", PageStores);
    click("messageOkButton");
    QCOMPARE(page(), PageStores);
    QCOMPARE(find<QLabel>("messageText")->text(), QString());
}

void TestMessagePages::longTextStartsAtItsTopEachTime()
{
    auto *bar = find<QScrollArea>("messageArea")->verticalScrollBar();
    for (int time = 0; time < 2; ++time) {
        window->showMessage("Title", longText(), ":/img/info.png", PageMain);
        QTRY_VERIFY(bar->maximum() > 1000);
        QCOMPARE(bar->value(), 0);
        bar->setValue(bar->maximum() / 2);
        click("messageOkButton");
    }
    window->showMessage("Title", longText(), ":/img/info.png", PageMain);
    QTRY_VERIFY(bar->maximum() > 1000);
    bar->setValue(500);
    // Also if one message follows another without leaving the page.
    window->showMessage("Title", longText(), ":/img/info.png", PageMain);
    QCOMPARE(bar->value(), 0);
}

void TestMessagePages::longTextIsFlicked()
{
    auto *area = find<QScrollArea>("messageArea");
    const auto *scroller = area->findChild<TrKineticScroller *>();
    QVERIFY(scroller);
    window->showMessage("Title", longText(), ":/img/info.png", PageMain);
    QTRY_VERIFY(area->verticalScrollBar()->maximum() > 1000);

    const QPoint start = area->mapTo(window.get(), QPoint(300, 200));
    QTest::mousePress(window->windowHandle(), Qt::LeftButton, {}, start);
    for (int dy = 2; dy <= 100; dy += 2)
        QTest::mouseMove(window->windowHandle(), start - QPoint(0, dy));
    QCOMPARE(area->verticalScrollBar()->value(), 100);
    QVERIFY(scroller->isMoving());
    // Let the scroller see the finger move between two ticks, then release it.
    QSignalSpy ticks(scroller->findChild<QTimer *>(), &QTimer::timeout);
    QTest::mouseMove(window->windowHandle(), start - QPoint(0, 120));
    QVERIFY(!ticks.isEmpty() || ticks.wait());
    QTest::mouseRelease(window->windowHandle(), Qt::LeftButton, {}, start - QPoint(0, 120));
    QTRY_VERIFY(!scroller->isMoving());
    QVERIFY(area->verticalScrollBar()->value() > 120);
    QCOMPARE(page(), PageMessage);
}

void TestMessagePages::picturesInTheTextAreCrisp()
{
    const QString picture = ":/img/warning_r.svg";
    window->showMessage("Title", QString("<img src=\"%1\" width=24 height=24>").arg(picture),
                        ":/img/info.png", PageMain);
    auto *text = find<QLabel>("messageText");
    QTRY_COMPARE(text->width(), find<QScrollArea>("messageArea")->viewport()->width());
    const QImage seen = text->grab().toImage();
    QImage crisp(24, 24, seen.format());
    crisp.fill(seen.pixel(0, 0));
    QPainter(&crisp).drawPixmap(0, 0, QIcon(picture).pixmap(24, 24));
    bool found = false;
    for (int y = 0; y + 24 <= seen.height() && !found; ++y)
        for (int x = 0; x < 60 && !found; ++x)
            found = seen.copy(x, y, 24, 24) == crisp;
    QVERIFY(found);
}

void TestMessagePages::messageTextTakesNoClicks()
{
    QCOMPARE(find<QLabel>("messageText")->textInteractionFlags(), Qt::NoTextInteraction);
    QVERIFY(find<QLabel>("messageText")->wordWrap());
    QCOMPARE(find<QLabel>("messageText")->indent(), 10);
}

void TestMessagePages::yesRunsTheConfirmingSlotOnly()
{
    stack->setCurrentIndex(PageStoreEdit);
    window->ask("Sure?", &SpeakingWindow::firstConfirmed, PageStoreEdit);
    QCOMPARE(page(), PageConfirmation);
    QCOMPARE(find<QLabel>("confirmationTitle")->text(), "Deleting");
    QCOMPARE(find<QLabel>("confirmationText")->text(), "Sure?");
    click("confirmationYesButton");
    QCOMPARE(window->confirmed, QStringList("first"));
    // The slot decides which page follows.
    QCOMPARE(page(), PageConfirmation);
}

void TestMessagePages::secondQuestionsYesRunsOnlyTheSecondSlot()
{
    window->ask("First?", &SpeakingWindow::firstConfirmed, PageListEdit);
    window->ask("Second?", &SpeakingWindow::secondConfirmed, PageItemEdit);
    QCOMPARE(find<QLabel>("confirmationText")->text(), "Second?");
    click("confirmationYesButton");
    QCOMPARE(window->confirmed, QStringList("second"));
    click("confirmationNoButton");
    QCOMPARE(page(), PageItemEdit);

    window->ask("Second?", &SpeakingWindow::secondConfirmed, PageItemEdit);
    click("confirmationNoButton");
    window->ask("First?", &SpeakingWindow::firstConfirmed, PageListEdit);
    click("confirmationYesButton");
    QCOMPARE(window->confirmed, (QStringList{"second", "first"}));
}

void TestMessagePages::noLeadsBackAndRunsNothing()
{
    for (const Page opener : {PageStoreEdit, PageListEdit, PageItemEdit, PageCategoryEdit}) {
        window->ask("Sure?", &SpeakingWindow::firstConfirmed, opener);
        click("confirmationNoButton");
        QCOMPARE(page(), opener);
    }
    QCOMPARE(window->confirmed, QStringList());
    // "No" and the message page's "OK" share a slot, which clears the message.
    window->showMessage("Title", "Text", ":/img/info.png", PageMain);
    window->ask("Sure?", &SpeakingWindow::firstConfirmed, PageMain);
    click("confirmationNoButton");
    QCOMPARE(find<QLabel>("messageText")->text(), QString());
}

void TestMessagePages::namesInAQuestionAreNoMarkup()
{
    const QString text = "Delete store named '<b>A</b> & B' ?";
    window->ask(text, &SpeakingWindow::firstConfirmed, PageStoreEdit);
    QCOMPARE(find<QLabel>("confirmationText")->text(), text);
    QCOMPARE(find<QLabel>("confirmationText")->textFormat(), Qt::PlainText);
    QCOMPARE(find<QLabel>("confirmationTitle")->textFormat(), Qt::PlainText);
}

void TestMessagePages::waitingPageReturnsToItsOpener()
{
    for (const Page opener : {PageTracking, PageCoordinates}) {
        stack->setCurrentIndex(opener);
        window->showWaiting();
        QCOMPARE(page(), PageWaiting);
        click("waitingCancelButton");
        QCOMPARE(page(), opener);
    }
    QCOMPARE(find<QLabel>("waitingTitle")->text(), "Update in Progress");
    QCOMPARE(find<QLabel>("waitingText")->text(),
             "Requesting GPS coordinates. Please wait. You can cancel GPS requesting.");
    QCOMPARE(find<QPushButton>("waitingCancelButton")->text(), "Cancel");
}

void TestMessagePages::secondWaitReturnsToTheSameOpener()
{
    stack->setCurrentIndex(PageTracking);
    window->showWaiting();
    window->showWaiting();
    click("waitingCancelButton");
    QCOMPARE(page(), PageTracking);
}

void TestMessagePages::cancelledWaitLeavesNobodyWaiting()
{
    stack->setCurrentIndex(PageTracking);
    connect(window.get(), &ShopWindow::requestedGpsUpdate, window.get(),
            &SpeakingWindow::positionCame);
    window->showWaiting();
    emit window->requestedGpsUpdate();
    QCOMPARE(window->positions, 1);
    click("waitingCancelButton");
    emit window->requestedGpsUpdate();
    QCOMPARE(window->positions, 1);
}

void TestMessagePages::cancellingAfterThePositionCameStillReturns()
{
    stack->setCurrentIndex(PageTracking);
    window->showWaiting();
    window->gpsAcquired(10.0, 20.0, 30.0);
    emit window->requestedGpsUpdate();
    click("waitingCancelButton");
    QCOMPARE(page(), PageTracking);
}

void TestMessagePages::waitingPictureMoves()
{
    auto *picture = window->findChild<QLabel *>("waitingIcon");
    window->findChild<QStackedWidget *>("pageStack")->setCurrentIndex(PageWaiting);
    const QImage first = picture->grab().toImage();
    QTRY_VERIFY(picture->grab().toImage() != first);
    window->findChild<QStackedWidget *>("pageStack")->setCurrentIndex(PageMain);
    const QImage last = picture->grab().toImage();
    QTest::qWait(300);
    QCOMPARE(picture->grab().toImage(), last);
}

void TestMessagePages::keyboardAnswers()
{
    window->activateWindow();
    window->ask("Sure?", &SpeakingWindow::firstConfirmed, PageStoreEdit);
    find<QPushButton>("confirmationYesButton")->setFocus();
    QTest::keyClick(find<QPushButton>("confirmationYesButton"), Qt::Key_Space);
    QCOMPARE(window->confirmed, QStringList("first"));
    QTest::keyClick(find<QPushButton>("confirmationNoButton"), Qt::Key_Space);
    QCOMPARE(page(), PageStoreEdit);
}

void TestMessagePages::fontsDifferByOnePoint()
{
    QCOMPARE(find<QLabel>("messageText")->font().pointSize(), 21);
    QCOMPARE(find<QLabel>("messageTitle")->font().pointSize(), 22);
    QCOMPARE(find<QLabel>("confirmationText")->font().pointSize(), 23);
    QCOMPARE(find<QLabel>("waitingText")->font().pointSize(), 23);
}

STOPPABLE_TEST_MAIN(TestMessagePages)
#include "tst_messagepages.moc"
