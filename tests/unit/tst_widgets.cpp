// SPDX-License-Identifier: MIT
#include <QAccessible>
#include <QBoxLayout>
#include <QLabel>
#include <QMainWindow>
#include <QProxyStyle>
#include <QScrollBar>
#include <QSignalSpy>
#include <QStyleHints>
#include <QtTest>

#include "widgets/controls.h"
#include "widgets/namebutton.h"
#include "widgets/pagestack.h"
#include "widgets/pictures.h"
#include "widgets/touchlist.h"
#include "widgets/TrKineticScroller.h"
#include "widgets/turningpage.h"
#include "widgets/wraplabel.h"

class TestWidgets : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        Q_INIT_RESOURCE(pictures);
    }

    void pictureButtonIsNamed();
    void picturesAreSharp_data();
    void picturesAreSharp();
    void hiddenPagesAreNotMeasured();
    void nameButtonDrawsAnAmpersand();
    void nameButtonElidesANameThatIsTooLong();
    void wrapLabelBreaksBetweenWords();
    void wrapLabelBreaksAWordThatIsTooWide();
    void wrapLabelShrinksForAWordThatIsALittleTooWide();
    void wrapLabelBreaksAtNewlines();
    void wrapLabelDrawsWhereItsAlignmentSays();
    void wrapLabelTakesMarkupAsText();
    void turningBoxesTurn();

    void listIsNeverActivatedByOneTap();
    void focusMakesNoRowCurrent();
    void rowMadeCurrentIsScrolledIntoView();
    void rowMadeCurrentUnseenIsInViewWhenShown();
    void tappingARowMovesNothing();
    void quickDoubleTapIsTwoTaps();
    void secondOfTwoQuickTapsCanBeIgnored_data();
    void secondOfTwoQuickTapsCanBeIgnored();
    void quickTapElsewhereIsNotIgnored();
    void draggingChoosesNoRow();
    void shakyTapIsATap_data();
    void shakyTapIsATap();
    void fingerThatWentAwayTapsNothing();
    void touchThatStopsAGlideIsNoTap();
};

void TestWidgets::pictureButtonIsNamed()
{
    const std::unique_ptr<QPushButton> button(
        Controls::pictureButton("helpButton", ":/img/question.png", 52, "Help"));
    QCOMPARE(button->objectName(), "helpButton");
    QCOMPARE(button->text(), QString());
    QCOMPARE(button->accessibleName(), "Help");
    QCOMPARE(button->iconSize(), QSize(52, 52));
    QVERIFY(!button->icon().isNull());
}

void TestWidgets::picturesAreSharp_data()
{
    QTest::addColumn<QString>("picture");
    QTest::newRow("svg") << ":/img/warning_r.svg";
    QTest::newRow("png") << ":/img/info.png";
}

void TestWidgets::picturesAreSharp()
{
    QFETCH(QString, picture);
    PictureLabel label;
    label.setPicture(picture, 60);
    QVERIFY(label.pixmap().isNull()); // not visible yet
    QCOMPARE(label.sizeHint(), QSize(60, 60));
    label.show();
    QCOMPARE(label.pixmap().deviceIndependentSize(), QSizeF(60, 60));
    // Nearest-neighbour scaling from the file's size would leave no half-transparent edges.
    const QImage image = label.pixmap().toImage();
    QSet<int> alphas;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            alphas << qAlpha(image.pixel(x, y));
    QVERIFY2(alphas.size() > 8, qPrintable(QString::number(alphas.size())));
}

namespace {

/// Counts how often its size is asked for.
class MeasuredPage : public QWidget
{
public:
    QSize sizeHint() const override
    {
        ++count;
        return {10000, 10000};
    }
    QSize minimumSizeHint() const override
    {
        return sizeHint();
    }

    mutable int count = 0;
};

} // namespace

void TestWidgets::hiddenPagesAreNotMeasured()
{
    QMainWindow window;
    auto *stack = new PageStack;
    QList<MeasuredPage *> pages{new MeasuredPage, new MeasuredPage};
    for (MeasuredPage *page : pages)
        stack->addWidget(page);
    window.setCentralWidget(stack);
    window.resize(300, 200);
    window.show();
    QCOMPARE(window.size(), QSize(300, 200));
    QCOMPARE(pages.at(0)->size(), stack->size());
    QCOMPARE(pages.at(1)->count, 0);
    stack->setCurrentIndex(1);
    QCOMPARE(pages.at(1)->size(), stack->size());
}

void TestWidgets::nameButtonDrawsAnAmpersand()
{
    NameButton button;
    button.setName("M&S");
    QCOMPARE(button.text(), "M&S");
    QVERIFY(button.shortcut().isEmpty());
    QCOMPARE(QAccessible::queryAccessibleInterface(&button)->text(QAccessible::Name), "M&S");

    QPushButton escaped("M&&S");
    QPushButton shortcut("M&S");
    const QSize size(120, 40);
    for (QPushButton *each : {static_cast<QPushButton *>(&button), &escaped, &shortcut})
        each->resize(size);
    QCOMPARE(button.grab().toImage(), escaped.grab().toImage());
    QVERIFY(button.grab().toImage() != shortcut.grab().toImage());
    QCOMPARE(button.sizeHint(), escaped.sizeHint());
}

void TestWidgets::nameButtonElidesANameThatIsTooLong()
{
    NameButton button;
    button.setName(QString("W").repeated(25));
    const int width = button.sizeHint().width() / 2;
    QVERIFY(button.minimumSizeHint().width() < width);
    button.resize(width, button.sizeHint().height());
    QPushButton elided;
    elided.setText(button.fontMetrics().elidedText(
        button.text(), Qt::ElideRight,
        width -
            (button.sizeHint().width() - button.fontMetrics().horizontalAdvance(button.text()))));
    elided.resize(button.size());
    QVERIFY(elided.text().endsWith(QChar(0x2026)));
    QCOMPARE(button.grab().toImage(), elided.grab().toImage());
}

namespace {

/// Returns the columns in which `label` draws something, from the left.
QList<int> inkColumns(QLabel &label)
{
    const QImage image = label.grab().toImage();
    QList<int> columns;
    for (int x = 0; x < image.width(); ++x) {
        for (int y = 0; y < image.height(); ++y) {
            if (image.pixel(x, y) != image.pixel(0, 0)) {
                columns << x;
                break;
            }
        }
    }
    return columns;
}

} // namespace

void TestWidgets::wrapLabelBreaksBetweenWords()
{
    WrapLabel label;
    label.setText("first second");
    const int line = label.fontMetrics().height();
    const int oneLine = label.fontMetrics().horizontalAdvance("first second") + 2;
    QVERIFY(label.heightForWidth(oneLine) < 2 * line);
    // Too narrow for both words: the second word moves to the next line as a whole, and there is no
    // third line.
    const int oneWord = label.fontMetrics().horizontalAdvance("second") + 2;
    QCOMPARE(label.heightForWidth(oneLine - 10), label.heightForWidth(oneWord));
    QVERIFY(label.heightForWidth(oneWord) < 3 * line);
}

void TestWidgets::wrapLabelBreaksAWordThatIsTooWide()
{
    WrapLabel label;
    const QString name = QString("W").repeated(25);
    label.setText(name);
    const int width = label.fontMetrics().horizontalAdvance(name) / 3 + 10;
    QVERIFY(label.minimumSizeHint().width() < width);
    QVERIFY(label.heightForWidth(width) >= 3 * label.fontMetrics().height());
    label.resize(width, label.heightForWidth(width));
    QVERIFY(inkColumns(label).last() < width - 1); // nothing is cut off
}

void TestWidgets::wrapLabelShrinksForAWordThatIsALittleTooWide()
{
    WrapLabel label;
    const QString word = QString("W").repeated(10);
    label.setText(word);
    const int width = label.fontMetrics().horizontalAdvance(word);
    QVERIFY(label.heightForWidth(width * 4 / 5) <= label.fontMetrics().height());
    label.resize(width * 4 / 5, label.heightForWidth(width * 4 / 5));
    QVERIFY(inkColumns(label).last() < width * 4 / 5 - 1);
    QVERIFY(label.heightForWidth(width / 2) > label.fontMetrics().height());
}

void TestWidgets::wrapLabelBreaksAtNewlines()
{
    WrapLabel label;
    label.setText("one\ntwo\nthree");
    QVERIFY(label.heightForWidth(500) >= 3 * label.fontMetrics().height());
    QCOMPARE(label.text(), "one\ntwo\nthree");
}

void TestWidgets::wrapLabelDrawsWhereItsAlignmentSays()
{
    WrapLabel label;
    label.setText("x");
    label.resize(200, 40);
    label.setAlignment(Qt::AlignCenter);
    QVERIFY(qAbs(inkColumns(label).first() - 100) < 15);
    label.setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    QVERIFY(inkColumns(label).first() < 15);
}

void TestWidgets::wrapLabelTakesMarkupAsText()
{
    WrapLabel label;
    label.setText("<b>x</b>");
    QCOMPARE(label.textFormat(), Qt::PlainText);
    label.resize(200, 40);
    const int drawn = inkColumns(label).last() - inkColumns(label).first();
    QVERIFY(drawn > label.fontMetrics().horizontalAdvance("b>x</b"));
}

void TestWidgets::turningBoxesTurn()
{
    QBoxLayout along(QBoxLayout::LeftToRight);
    QBoxLayout across(QBoxLayout::TopToBottom);
    QBoxLayout stacked(QBoxLayout::TopToBottom);
    QFrame line;
    const TurningBoxes boxes{.alongWidth = {&along},
                             .acrossWidth = {&across},
                             .sideBySide = {&stacked},
                             .separators = {&line}};
    boxes.turn(Qt::Vertical);
    QCOMPARE(stacked.direction(), QBoxLayout::LeftToRight);
    QCOMPARE(along.direction(), QBoxLayout::TopToBottom);
    QCOMPARE(across.direction(), QBoxLayout::LeftToRight);
    QCOMPARE(line.frameShape(), QFrame::HLine);
    boxes.turn(Qt::Horizontal);
    QCOMPARE(along.direction(), QBoxLayout::LeftToRight);
    QCOMPARE(across.direction(), QBoxLayout::TopToBottom);
    QCOMPARE(line.frameShape(), QFrame::VLine);
}

namespace {

struct ShownList
{
    explicit ShownList(int rows)
    {
        for (int row = 0; row < rows; ++row)
            list.addItem(QString::number(row));
        list.resize(300, 200);
        list.show();
        QVERIFY(QTest::qWaitForWindowExposed(&list));
    }

    QPoint at(int row)
    {
        return list.viewport()->mapTo(&list, list.visualItemRect(list.item(row)).center());
    }

    TouchList list;
};

} // namespace

namespace {

/// A desktop style that activates rows on a single click.
class SingleClickStyle : public QProxyStyle
{
public:
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *returnData) const override
    {
        if (hint == SH_ItemView_ActivateItemOnSingleClick)
            return 1;
        return QProxyStyle::styleHint(hint, option, widget, returnData);
    }
};

} // namespace

void TestWidgets::listIsNeverActivatedByOneTap()
{
    QApplication::setStyle(new SingleClickStyle);
    {
        ShownList shown(3);
        QSignalSpy activated(&shown.list, &QListWidget::itemActivated);
        QSignalSpy clicked(&shown.list, &QListWidget::itemClicked);
        QTest::mouseClick(shown.list.windowHandle(), Qt::LeftButton, {}, shown.at(1));
        QCOMPARE(clicked.count(), 1);
        QCOMPARE(activated.count(), 0);
    }
    QApplication::setStyle("Fusion");
}

void TestWidgets::focusMakesNoRowCurrent()
{
    ShownList shown(100);
    auto *bar = shown.list.verticalScrollBar();
    bar->setValue(50);
    QSignalSpy current(&shown.list, &QListWidget::currentRowChanged);
    shown.list.clearFocus();
    shown.list.setFocus();
    shown.list.activateWindow();
    QTRY_VERIFY(shown.list.hasFocus());
    QCOMPARE(shown.list.currentRow(), -1);
    QCOMPARE(current.count(), 0);
    QCOMPARE(bar->value(), 50);
    QTest::keyClick(&shown.list, Qt::Key_Down);
    QCOMPARE(shown.list.currentRow(), 0);
    shown.list.clearFocus();
    shown.list.setFocus();
    QCOMPARE(shown.list.currentRow(), 0);
}

void TestWidgets::rowMadeCurrentIsScrolledIntoView()
{
    ShownList shown(100);
    shown.list.setCurrentRow(80);
    QVERIFY(shown.list.viewport()->rect().contains(shown.list.visualItemRect(shown.list.item(80))));
    for (int row = 80; row < 95; ++row)
        QTest::keyClick(&shown.list, Qt::Key_Down);
    QCOMPARE(shown.list.currentRow(), 95);
    QVERIFY(shown.list.viewport()->rect().contains(shown.list.visualItemRect(shown.list.item(95))));
}

void TestWidgets::rowMadeCurrentUnseenIsInViewWhenShown()
{
    ShownList shown(100);
    shown.list.hide();
    shown.list.setCurrentRow(80);
    shown.list.show();
    QVERIFY(QTest::qWaitForWindowExposed(&shown.list));
    QVERIFY(shown.list.viewport()->rect().contains(shown.list.visualItemRect(shown.list.item(80))));
}

void TestWidgets::tappingARowMovesNothing()
{
    ShownList shown(100);
    shown.list.verticalScrollBar()->setValue(5);
    const QRect half = shown.list.visualItemRect(shown.list.item(0));
    QVERIFY(half.top() < 0);
    const QPoint point =
        shown.list.viewport()->mapTo(&shown.list, half.bottomLeft() + QPoint(20, -1));
    QTest::mousePress(shown.list.windowHandle(), Qt::LeftButton, {}, point);
    QCOMPARE(shown.list.currentRow(), -1); // it may become a drag
    QTest::mouseRelease(shown.list.windowHandle(), Qt::LeftButton, {}, point);
    QCOMPARE(shown.list.currentRow(), 0);
    QCOMPARE(shown.list.verticalScrollBar()->value(), 5);
}

void TestWidgets::quickDoubleTapIsTwoTaps()
{
    ShownList shown(3);
    QSignalSpy clicked(&shown.list, &QListWidget::itemClicked);
    QSignalSpy activated(&shown.list, &QListWidget::itemActivated);
    QTest::mouseDClick(shown.list.windowHandle(), Qt::LeftButton, {}, shown.at(1));
    QCOMPARE(clicked.count(), 2);
    QCOMPARE(activated.count(), 0);
    QTest::keyClick(&shown.list, Qt::Key_Return);
    QCOMPARE(activated.count(), 1);
}

namespace {

/// A finger on a window.
class Finger
{
public:
    explicit Finger(QWindow *touchedWindow)
        : window(touchedWindow)
        , device(QTest::createTouchDevice())
    {}
    void press(const QPoint &position)
    {
        QTest::touchEvent(window, device.get()).press(0, position);
    }
    void move(const QPoint &position)
    {
        QTest::touchEvent(window, device.get()).move(0, position);
    }
    void release(const QPoint &position)
    {
        QTest::touchEvent(window, device.get()).release(0, position);
    }
    void tap(const QPoint &position)
    {
        press(position);
        release(position);
    }

private:
    QWindow *window;
    std::unique_ptr<QPointingDevice> device;
};

/// Longer than between the two taps of a double tap.
int unhurried()
{
    return QGuiApplication::styleHints()->mouseDoubleClickInterval() + 50;
}

} // namespace

void TestWidgets::secondOfTwoQuickTapsCanBeIgnored_data()
{
    QTest::addColumn<QPoint>("beside");
    QTest::newRow("same point") << QPoint(0, 0);
    QTest::newRow("a pixel beside it") << QPoint(1, 1);
}

void TestWidgets::secondOfTwoQuickTapsCanBeIgnored()
{
    QFETCH(QPoint, beside);
    ShownList shown(3);
    QSignalSpy clicked(&shown.list, &QListWidget::itemClicked);
    connect(&shown.list, &QListWidget::itemClicked, &shown.list, &TouchList::ignoreDoubleTap);
    Finger finger(shown.list.windowHandle());
    finger.tap(shown.at(1));
    finger.tap(shown.at(1) + beside);
    QCOMPARE(clicked.count(), 1);
    for (int tap = 2; tap <= 4; ++tap) {
        QTest::qWait(unhurried());
        finger.tap(shown.at(1));
        QCOMPARE(clicked.count(), tap);
    }
}

void TestWidgets::quickTapElsewhereIsNotIgnored()
{
    ShownList shown(3);
    QSignalSpy clicked(&shown.list, &QListWidget::itemClicked);
    connect(&shown.list, &QListWidget::itemClicked, &shown.list, &TouchList::ignoreDoubleTap);
    Finger finger(shown.list.windowHandle());
    finger.tap(shown.at(0));
    finger.tap(shown.at(2));
    QCOMPARE(clicked.count(), 2);
}

void TestWidgets::draggingChoosesNoRow()
{
    ShownList shown(100);
    QSignalSpy clicked(&shown.list, &QListWidget::itemClicked);
    QSignalSpy current(&shown.list, &QListWidget::currentRowChanged);
    Finger finger(shown.list.windowHandle());
    const QPoint start = shown.at(5);
    finger.press(start);
    for (int dy = 1; dy <= 30; ++dy)
        finger.move(start - QPoint(0, dy));
    QVERIFY(shown.list.verticalScrollBar()->value() > 0);
    finger.release(start - QPoint(0, 30));
    const auto *scroller = shown.list.findChild<TrKineticScroller *>();
    QTRY_VERIFY(!scroller->isMoving());
    QCOMPARE(current.count(), 0);
    QCOMPARE(clicked.count(), 0);
    QCOMPARE(shown.list.selectedItems().size(), 0);
    finger.tap(start);
    QCOMPARE(clicked.count(), 1);
    QCOMPARE(current.count(), 1);
}

void TestWidgets::shakyTapIsATap_data()
{
    QTest::addColumn<int>("rows");
    QTest::newRow("nothing to scroll") << 3;
    QTest::newRow("longer than the list") << 100;
}

void TestWidgets::shakyTapIsATap()
{
    QFETCH(int, rows);
    ShownList shown(rows);
    QSignalSpy clicked(&shown.list, &QListWidget::itemClicked);
    Finger finger(shown.list.windowHandle());
    const QPoint start = shown.at(1);
    finger.press(start);
    for (const int dy : {1, -1, 2, 1, -2, 1, 0, 0, 1, 0})
        finger.move(start + QPoint(dy, dy));
    finger.release(start);
    QCOMPARE(clicked.count(), 1);
    QCOMPARE(shown.list.currentRow(), 1);
}

void TestWidgets::fingerThatWentAwayTapsNothing()
{
    ShownList shown(3);
    QSignalSpy clicked(&shown.list, &QListWidget::itemClicked);
    Finger finger(shown.list.windowHandle());
    finger.press(shown.at(1));
    finger.move(shown.at(1) + QPoint(QApplication::startDragDistance() + 1, 0));
    finger.move(shown.at(1));
    finger.release(shown.at(1));
    QCOMPARE(clicked.count(), 0);
    QCOMPARE(shown.list.currentRow(), -1);
}

void TestWidgets::touchThatStopsAGlideIsNoTap()
{
    ShownList shown(500);
    QSignalSpy clicked(&shown.list, &QListWidget::itemClicked);
    const auto *scroller = shown.list.findChild<TrKineticScroller *>();
    QSignalSpy ticks(scroller->findChild<QTimer *>(), &QTimer::timeout);
    const QPoint start(100, 180);
    QTest::mousePress(shown.list.windowHandle(), Qt::LeftButton, {}, start);
    for (int dy = 1; dy <= 10; ++dy)
        QTest::mouseMove(shown.list.windowHandle(), start - QPoint(0, dy));
    ticks.clear();
    QTest::mouseMove(shown.list.windowHandle(), start - QPoint(0, 60));
    QVERIFY(!ticks.isEmpty() || ticks.wait());
    QTest::mouseRelease(shown.list.windowHandle(), Qt::LeftButton, {}, start - QPoint(0, 60));
    QVERIFY(scroller->isMoving());
    QTest::mouseClick(shown.list.windowHandle(), Qt::LeftButton, {}, QPoint(100, 100));
    QCOMPARE(clicked.count(), 0);
    QCOMPARE(shown.list.currentRow(), -1);
    QTest::mouseClick(shown.list.windowHandle(), Qt::LeftButton, {}, QPoint(100, 100));
    QCOMPARE(clicked.count(), 1);
}

QTEST_MAIN(TestWidgets)
#include "tst_widgets.moc"
