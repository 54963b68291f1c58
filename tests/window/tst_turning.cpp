// SPDX-License-Identifier: MIT
#include <utility>

#include <malloc.h>

#include <QBoxLayout>
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QStackedWidget>
#include <QtTest>

#include "app/shopwindow.h"
#include "tests/support/emulator.h"
#include "tests/support/pagenames.h"
#include "tests/support/shopdriver.h"
#include "tests/support/testhome.h"
#include "widgets/wraplabel.h"

namespace {

constexpr QSize landscape(800, 480);
constexpr QSize portrait(480, 800);

/// Counts how often each page is shown.
class ShowCounter : public QObject
{
public:
    explicit ShowCounter(QStackedWidget *stack)
    {
        for (int index = 0; index < stack->count(); ++index)
            stack->widget(index)->installEventFilter(this);
    }

    QHash<QObject *, int> shown;

protected:
    bool eventFilter(QObject *object, QEvent *event) override
    {
        if (event->type() == QEvent::Show)
            ++shown[object];
        return false;
    }
};

} // namespace

class TestTurning : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void mainPageTurns_data();
    void mainPageTurns();
    void threeLargeButtonsStayStacked();
    void messagePagesNeverTurn();
    void everyHiddenPageIsLaidOutAnew_data();
    void everyHiddenPageIsLaidOutAnew();
    void pagesBuiltAnewAreTurnedAndLaidOut_data();
    void pagesBuiltAnewAreTurnedAndLaidOut();
    void pagesAreLeftAloneWithinAnOrientation();
    void everyPageFitsBothOrientations();
    void controlsAreLargeEnoughForAFinger();
    void focusSelectionAndCursorSurvive();
    void turningFiveHundredTimesLeaksNothing_data();
    void turningFiveHundredTimesLeaksNothing();

private:
    void resizeTo(const QSize &size);
    qsizetype objectCount() const;
    QBoxLayout *box() const;
    template <typename Widget>
    Widget *find(const char *name) const
    {
        return window->findChild<Widget *>(name);
    }

    std::unique_ptr<TestHome> home;
    std::unique_ptr<ShopWindow> window;
    QStackedWidget *stack = nullptr;
};

void TestTurning::init()
{
    home = std::make_unique<TestHome>();
    window = std::make_unique<ShopWindow>();
    stack = find<QStackedWidget>("pageStack");
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    QCOMPARE(window->size(), landscape);
}

void TestTurning::cleanup()
{
    window.reset();
    home.reset();
}

void TestTurning::resizeTo(const QSize &size)
{
    window->resize(size);
    QTRY_COMPARE(window->size(), size);
}

/// Returns the number of objects of the window, without those that are about to be deleted.
qsizetype TestTurning::objectCount() const
{
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return window->findChildren<QObject *>().size();
}

QBoxLayout *TestTurning::box() const
{
    return qobject_cast<QBoxLayout *>(find<QWidget>("mainPage")->layout());
}

void TestTurning::mainPageTurns_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<bool>("isLandscape");
    QTest::newRow("landscape") << landscape << true;
    QTest::newRow("portrait") << portrait << false;
    QTest::newRow("square") << QSize(600, 600) << false;
    QTest::newRow("a pixel wider than high") << QSize(601, 600) << true;
    QTest::newRow("a pixel higher than wide") << QSize(600, 601) << false;
}

void TestTurning::mainPageTurns()
{
    QFETCH(QSize, size);
    QFETCH(bool, isLandscape);
    // Change from the other orientation.
    resizeTo(isLandscape ? portrait : landscape);
    resizeTo(size);

    QCOMPARE(box()->direction(), isLandscape ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
    const auto *toolbar = qobject_cast<QBoxLayout *>(box()->itemAt(0)->layout());
    QVERIFY(toolbar);
    QCOMPARE(toolbar->direction(), isLandscape ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    const auto *line = qobject_cast<QFrame *>(box()->itemAt(1)->widget());
    QVERIFY(line);
    QCOMPARE(line->frameShape(), isLandscape ? QFrame::VLine : QFrame::HLine);
    QCOMPARE(line->frameShadow(), QFrame::Sunken);
    QCOMPARE(box()->stretch(2), 1);

    // The visible result: the toolbar beside the three buttons, or above them.
    const auto *exit = find<QWidget>("exitButton");
    const auto *shopping = find<QWidget>("shoppingButton");
    if (isLandscape)
        QTRY_VERIFY(exit->geometry().right() < shopping->geometry().left());
    else
        QTRY_VERIFY(exit->geometry().bottom() < shopping->geometry().top());
}

void TestTurning::threeLargeButtonsStayStacked()
{
    for (const QSize &size : {landscape, portrait}) {
        resizeTo(size);
        QTRY_COMPARE(box()->geometry(), stack->rect());
        const QRect shopping = find<QWidget>("shoppingButton")->geometry();
        const QRect reminder = find<QWidget>("reminderButton")->geometry();
        const QRect shops = find<QWidget>("shopsButton")->geometry();
        QCOMPARE(reminder.top(), shopping.bottom() + 1);
        QCOMPARE(shops.top(), reminder.bottom() + 1);
        QVERIFY(qAbs(shopping.height() - shops.height()) <= 1);
        QCOMPARE(shopping.width(), shops.width());
    }
}

void TestTurning::messagePagesNeverTurn()
{
    for (const QSize &size : {portrait, landscape}) {
        resizeTo(size);
        for (const char *name : {"messagePage", "waitingPage", "confirmationPage"})
            QCOMPARE(qobject_cast<QBoxLayout *>(find<QWidget>(name)->layout())->direction(),
                     QBoxLayout::TopToBottom);
    }
}

void TestTurning::everyHiddenPageIsLaidOutAnew_data()
{
    QTest::addColumn<Page>("current");
    QTest::newRow("main page in use") << PageMain;
    QTest::newRow("confirmation page in use") << PageConfirmation;
    QTest::newRow("last page in use") << PageCoordinates;
}

void TestTurning::everyHiddenPageIsLaidOutAnew()
{
    QFETCH(Page, current);
    stack->setCurrentIndex(current);
    ShowCounter counter(stack);
    QSignalSpy switched(stack, &QStackedWidget::currentChanged);
    resizeTo(portrait);

    QCOMPARE(Page(stack->currentIndex()), current);
    QVERIFY(stack->currentWidget()->isVisible());
    QCOMPARE(switched.count(), 0);
    for (int index = 0; index < stack->count(); ++index) {
        QWidget *page = stack->widget(index);
        QCOMPARE(counter.shown.value(page), index == current ? 0 : 1);
        QCOMPARE(page->isVisible(), index == current);
        QCOMPARE(page->size(), stack->size());
        if (page->layout())
            QTRY_VERIFY2(page->layout()->geometry() == page->rect(),
                         qPrintable(page->objectName()));
    }
}

void TestTurning::pagesBuiltAnewAreTurnedAndLaidOut_data()
{
    QTest::addColumn<bool>("maximized");
    QTest::newRow("portrait") << false;
    QTest::newRow("maximized") << true;
}

void TestTurning::pagesBuiltAnewAreTurnedAndLaidOut()
{
    QFETCH(bool, maximized);
    if (maximized)
        window->showMaximized();
    else
        resizeTo(portrait);
    QCoreApplication::processEvents();
    const QPointer<QStackedWidget> earlier = stack;

    for (const char *button : {"optionsButton", "englishRadio", "okButton"})
        stack->currentWidget()->findChild<QAbstractButton *>(button)->click();
    stack = qobject_cast<QStackedWidget *>(window->centralWidget());
    QVERIFY(stack != earlier);
    QCOMPARE(stack->count(), PageCount);
    QCOMPARE(Page(stack->currentIndex()), PageMain);
    QCOMPARE(stack->size(), window->size());
    for (int index = 0; index < stack->count(); ++index)
        QCOMPARE(stack->widget(index)->size(), stack->size());
    const auto *layout = qobject_cast<QBoxLayout *>(stack->widget(PageMain)->layout());
    QCOMPARE(layout->direction(), QBoxLayout::TopToBottom); // the screen of this platform is square
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!earlier);
}

void TestTurning::pagesAreLeftAloneWithinAnOrientation()
{
    ShowCounter counter(stack);
    resizeTo(QSize(780, 470));
    resizeTo(QSize(600, 400));
    QVERIFY(counter.shown.isEmpty());
    QCOMPARE(find<QWidget>("mainPage")->size(), stack->size());
}

void TestTurning::everyPageFitsBothOrientations()
{
    find<QLabel>("confirmationTitle")->setText("Deleting Shopping List");
    find<QLabel>("confirmationText")
        ->setText(QString("Are You really want to delete list named '%1' ?")
                      .arg(QString("W").repeated(25)));
    for (const QSize &size : {landscape, portrait}) {
        resizeTo(size);
        forEveryView(stack, [&](const QWidget *page) {
            const QSize needed = page->minimumSizeHint();
            QVERIFY2(needed.width() <= size.width() && needed.height() <= size.height(),
                     qPrintable(QString("%1 needs %2 x %3")
                                    .arg(page->objectName())
                                    .arg(needed.width())
                                    .arg(needed.height())));
            // A wrapping label needs the height for its width, whatever its minimum size is.
            for (const WrapLabel *label : page->findChildren<WrapLabel *>())
                QVERIFY2(!label->isVisible() ||
                             label->height() >= label->heightForWidth(label->width()),
                         qPrintable(label->text()));
            for (const QWidget *child : page->findChildren<QWidget *>(Qt::FindDirectChildrenOnly)) {
                if (!child->isVisible())
                    continue;
                QVERIFY2(page->rect().contains(child->geometry()), qPrintable(child->objectName()));
            }
        });
    }
}

void TestTurning::controlsAreLargeEnoughForAFinger()
{
    const int smallest = 34; // pixels, 9 mm at 96 dpi
    for (const QSize &size : {landscape, portrait}) {
        resizeTo(size);
        forEveryView(stack, [&](const QWidget *page) {
            for (const char *type : {"QPushButton", "QLineEdit", "QSpinBox", "QTabBar"}) {
                for (const QWidget *control : page->findChildren<QWidget *>()) {
                    if (!control->inherits(type) || !control->isVisible() ||
                        control->objectName().startsWith("qt_"))
                        continue;
                    QVERIFY2(control->height() >= smallest && control->width() >= smallest,
                             qPrintable(control->objectName()));
                }
            }
        });
    }
}

void TestTurning::focusSelectionAndCursorSurvive()
{
    auto *field = stack->widget(PageStoreEdit)->findChild<QLineEdit *>("nameField");
    stack->setCurrentIndex(PageStoreEdit);
    field->setText("half typed");
    window->activateWindow();
    field->setFocus();
    QTRY_VERIFY(field->hasFocus());
    field->setSelection(2, 4);
    QSignalSpy finished(field, &QLineEdit::editingFinished);
    QSignalSpy focusMoved(qApp, &QApplication::focusChanged);

    resizeTo(portrait);
    resizeTo(landscape);
    QVERIFY(field->hasFocus());
    QCOMPARE(field->selectedText(), "lf t");
    QCOMPARE(field->cursorPosition(), 6);
    QCOMPARE(field->text(), "half typed");
    QCOMPARE(finished.count(), 0);
    QCOMPARE(focusMoved.count(), 0);
}

void TestTurning::turningFiveHundredTimesLeaksNothing_data()
{
    QTest::addColumn<int>("current");
    for (int index = 0; index < PageCount; ++index)
        QTest::addRow("page %d", index) << index;
}

void TestTurning::turningFiveHundredTimesLeaksNothing()
{
    QFETCH(int, current);
    if (Emulator::isUsed() && current % 5 > 0)
        QSKIP("An emulator takes a minute for each page, so it turns every fifth one.");
    stack->setCurrentIndex(current);
    // Objects that Qt creates when they are first needed exist after one turn.
    resizeTo(portrait);
    resizeTo(landscape);
    const qsizetype objects = objectCount();
    // A leak grows in every series of turns: one layout item a turn takes 5 KiB or more. Qt's
    // caches also grow at first, but not for ever.
    constexpr int stretch = 50;
    constexpr qint64 leak = 2048;
    auto memory = static_cast<qint64>(mallinfo2().uordblks);
    qint64 growth = 0;
    for (int turn = 1; turn <= 5 * stretch || (growth >= leak && turn <= 40 * stretch); ++turn) {
        for (const QSize &size : {portrait, landscape}) {
            window->resize(size);
            QCoreApplication::processEvents();
            QCOMPARE(stack->currentIndex(), current);
        }
        if (turn % stretch == 0) {
            const auto earlier = std::exchange(memory, static_cast<qint64>(mallinfo2().uordblks));
            growth = memory - earlier;
        }
    }
    QCOMPARE(window->size(), landscape);
    QCOMPARE(objectCount(), objects);
    QVERIFY2(growth < leak, qPrintable(QString("%1 bytes").arg(growth)));
    QCOMPARE(box()->direction(), QBoxLayout::LeftToRight);
}

STOPPABLE_TEST_MAIN(TestTurning)
#include "tst_turning.moc"
