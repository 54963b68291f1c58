// SPDX-License-Identifier: MIT
#include <QAbstractButton>
#include <QBoxLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QPainter>
#include <QPushButton>
#include <QSpinBox>
#include <QStackedWidget>
#include <QStyleOptionTab>
#include <QTabBar>
#include <QTabWidget>
#include <QtTest>

#include "tests/support/records.h"
#include "tests/support/shopdriver.h"
#include "widgets/contrast.h"
#include "widgets/controls.h"
#include "widgets/namebutton.h"
#include "widgets/touchlist.h"
#include "widgets/touchstyle.h"
#include "widgets/turningpage.h"

/// Tests the program's own style on all pages. With the environment variable TROLLEO_PICTURES set
/// to a folder, it also leaves a picture of each page there.
class TestLook : public QObject
{
    Q_OBJECT

private slots:
    void chosenStyleWins();
    void paletteIsLightOrDarkAsTheDesktopIs();
    void everyTargetIsLargeEnough_data();
    void everyTargetIsLargeEnough();
    void pageHasOneMainActionAtMost();
    void namesStayInTheirButtons();
    void fingerInAGapMeansARow();
    void rowsAreAFingerHigh();
    void emptyListSaysWhatToDo();
    void lowEmptyListShowsItsTextOnly();
    void sentencesOfAnEmptyListHaveTheirLines();
    void buttonIsDrawnPressed();
    void disabledPictureIsNotStrongerThanItsText_data();
    void disabledPictureIsNotStrongerThanItsText();
    void firstTabContinuesTheEdgeOfTheSheet();
    void wholeWordsAreDrawnOnATightPage();
    void narrowTabDrawsItsWholeText();
    void focusShowsForKeysOnly();
};

static const Records town{
    category(1, "Food"),
    store(1, "Sunrise Bakery")
        .inCategory(1)
        .at(10.01, 20)
        .openList("Breakfast")
        .good("Rye bread", 2)
        .good("Wholemeal bread, sliced", 3)
        .checkedGood("Butter"),
    store(2, "Green Grocer").inCategory(1).at(10.02, 20).openList("Weekend and other days"),
};

static void useOurStyle(const QColor &desktop)
{
    auto *style = new TouchStyle;
    QPalette palette(desktop);
    style->polish(palette); // as Qt does with the palette of a desktop
    QApplication::setStyle(style);
    QApplication::setPalette(palette);
}

void TestLook::chosenStyleWins()
{
    QApplication::setStyle("Fusion");
    TouchStyle::applyUnlessChosen(true);
    QVERIFY(!qobject_cast<TouchStyle *>(QApplication::style()));
    qputenv("QT_STYLE_OVERRIDE", "Fusion");
    TouchStyle::applyUnlessChosen(false);
    QVERIFY(!qobject_cast<TouchStyle *>(QApplication::style()));
    qunsetenv("QT_STYLE_OVERRIDE");
    QVERIFY(!qobject_cast<TouchStyle *>(QApplication::style()));
    TouchStyle::applyUnlessChosen(false);
    QVERIFY(qobject_cast<TouchStyle *>(QApplication::style()));
}

void TestLook::paletteIsLightOrDarkAsTheDesktopIs()
{
    TouchStyle style;
    for (const auto &[desktop, sheet] : {std::pair(QColor(239, 239, 239), QColor(0xFFFFFF)),
                                         std::pair(QColor(53, 53, 53), QColor(0x1B222B))}) {
        QPalette palette(desktop);
        style.polish(palette);
        QCOMPARE(palette.color(QPalette::Base), sheet);
        // Text on what it stands on, and disabled text on its fill.
        for (const auto &[text, ground] :
             {std::pair(QPalette::WindowText, QPalette::Window),
              std::pair(QPalette::Text, QPalette::Base),
              std::pair(QPalette::ButtonText, QPalette::Button),
              std::pair(QPalette::ButtonText, QPalette::Midlight),
              std::pair(QPalette::BrightText, QPalette::Dark),
              std::pair(QPalette::BrightText, QPalette::Shadow),
              std::pair(QPalette::PlaceholderText, QPalette::Base),
              std::pair(QPalette::PlaceholderText, QPalette::Window),
              std::pair(QPalette::HighlightedText, QPalette::Highlight),
              std::pair(QPalette::Link, QPalette::Base)})
            QVERIFY(Contrast::ratio(palette.color(text), palette.color(ground)) >= 4.5);
        QVERIFY(Contrast::ratio(palette.color(QPalette::Disabled, QPalette::ButtonText),
                                palette.color(QPalette::Disabled, QPalette::Button)) >= 3);
        QVERIFY(Contrast::ratio(palette.color(QPalette::Mid), palette.color(QPalette::Base)) >= 3);
    }
}

void TestLook::everyTargetIsLargeEnough_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("languageId");
    QTest::addColumn<QColor>("desktop");
    for (const auto &[name, desktop] :
         {std::pair("light", QColor(239, 239, 239)), std::pair("dark", QColor(53, 53, 53))}) {
        for (const auto &[language, id] : {std::pair("en", 1), std::pair("ru", 2)}) {
            for (const QSize &size : {QSize(480, 800), QSize(800, 480), QSize(360, 720)})
                QTest::addRow("%dx%d-%s-%s", size.width(), size.height(), name, language)
                    << size << id << desktop;
        }
    }
}

void TestLook::everyTargetIsLargeEnough()
{
    QFETCH(QSize, size);
    QFETCH(int, languageId);
    QFETCH(QColor, desktop);
    useOurStyle(desktop);
    ShopDriver shop(town, {{"GpsEnabled", true}, {"LanguageId", languageId}});
    shop.window->resize(size);
    QCoreApplication::processEvents();
    const QString pictures = qEnvironmentVariable("TROLLEO_PICTURES");
    int number = 0;
    int targets = 0;
    forEveryView(shop.stack, [&](const QWidget *page) {
        for (const QWidget *widget : page->findChildren<QWidget *>()) {
            const bool isTarget = qobject_cast<const QAbstractButton *>(widget) ||
                                  qobject_cast<const QLineEdit *>(widget) ||
                                  qobject_cast<const QSpinBox *>(widget);
            // The field within a spin box belongs to it.
            if (!isTarget || !widget->isVisible() || widget->focusProxy() ||
                widget->objectName().startsWith("Scroll"))
                continue;
            QVERIFY2(widget->height() >= 48 && widget->width() >= 45,
                     qPrintable(QString("%1 %2: %3x%4")
                                    .arg(page->objectName(), widget->objectName())
                                    .arg(widget->width())
                                    .arg(widget->height())));
            ++targets;
        }
        for (const QTabBar *tabs : page->findChildren<QTabBar *>()) {
            for (int tab = 0; tabs->isVisible() && tab < tabs->count(); ++tab)
                QVERIFY2(tabs->tabRect(tab).height() >= 48, qPrintable(tabs->tabText(tab)));
        }
        if (!pictures.isEmpty())
            shop.window->grab().save(QString("%1/%2-%3-%4.png")
                                         .arg(pictures, QTest::currentDataTag())
                                         .arg(++number, 2, 10, QChar('0'))
                                         .arg(page->objectName()));
    });
    QVERIFY2(targets > 80, qPrintable(QString::number(targets)));
}

void TestLook::pageHasOneMainActionAtMost()
{
    ShopDriver shop(town, {{"GpsEnabled", true}});
    forEveryView(shop.stack, [](const QWidget *page) {
        int enabled = 0;
        for (const auto *button : page->findChildren<QPushButton *>())
            enabled += button->property(Controls::mainProperty).toBool() && button->isEnabled();
        QVERIFY2(enabled <= 1, qPrintable(page->objectName()));
    });
    shop.stack->setCurrentIndex(PageTracking);
    QVERIFY(shop.find<QPushButton>("startButton")->property(Controls::mainProperty).toBool());
}

void TestLook::namesStayInTheirButtons()
{
    useOurStyle(Qt::white);
    ShopDriver shop({category(1, QString("W").repeated(25)),
                     store(1, QString("M").repeated(25)).inCategory(1)});
    shop.window->resize(360, 720);
    shop.press("shopsButton");
    shop.press("storesButton");
    shop.tap(0);
    shop.press("selectButton");
    shop.press("editButton");
    const auto *button = shop.find<QPushButton>("categoryButton");
    const QImage picture = const_cast<QPushButton *>(button)->grab().toImage();
    // Between the name and the arrow the sheet is to be seen over the whole height.
    const QColor sheet = QApplication::palette().color(QPalette::Base);
    bool isFree = false;
    for (int x = button->width() - 34; x < button->width() - 20 && !isFree; ++x) {
        isFree = true;
        for (int y = 6; y < button->height() - 6; ++y)
            isFree = isFree && picture.pixelColor(x, y) == sheet;
    }
    QVERIFY(isFree);
    QVERIFY(shop.window->width() <= 360);
}

void TestLook::fingerInAGapMeansARow()
{
    useOurStyle(Qt::white);
    ShopDriver shop(town);
    shop.press("shopsButton");
    shop.press("storesButton");
    const QListWidget *list = shop.list();
    const int from = list->visualItemRect(list->item(0)).top();
    const int to = list->visualItemRect(list->item(1)).bottom();
    for (int y = from; y <= to; ++y)
        for (const int x : {0, 60, list->viewport()->width() - 1})
            QVERIFY2(list->itemAt(x, y), qPrintable(QString("%1, %2").arg(x).arg(y)));
    // And nothing is a row far below the last one.
    QVERIFY(!list->itemAt(60, to + 20));
}

void TestLook::rowsAreAFingerHigh()
{
    useOurStyle(Qt::white);
    ShopDriver shop(town);
    shop.press("shopsButton");
    shop.press("storesButton");
    const QListWidget *list = shop.list();
    QVERIFY(list->visualItemRect(list->item(1)).top() - list->visualItemRect(list->item(0)).top() >=
            TouchStyle::leastTarget);
}

void TestLook::emptyListSaysWhatToDo()
{
    useOurStyle(Qt::white);
    ShopDriver shop(town);
    const auto isBlank = [&shop] {
        const QImage picture = shop.list()->viewport()->grab().toImage();
        for (int y = picture.height() / 2; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x) {
                if (picture.pixel(x, y) != picture.pixel(0, picture.height() - 1))
                    return false;
            }
        return true;
    };
    shop.stack->setCurrentIndex(PageStoreList);
    QCoreApplication::processEvents();
    QVERIFY(!isBlank());
    shop.stack->setCurrentIndex(PageStores);
    shop.press("storesButton");
    QVERIFY(isBlank()); // its two rows are above the middle
}

void TestLook::lowEmptyListShowsItsTextOnly()
{
    ShopDriver shop;
    shop.stack->setCurrentIndex(PageStoreList);
    auto *list = static_cast<TouchList *>(shop.list());
    for (const auto &[height, picture] : {std::pair(400, true), std::pair(100, false)}) {
        list->setFixedHeight(height);
        QCoreApplication::processEvents();
        list->setPlaceholder(":/img/plus.svg", "words");
        const QImage with = list->viewport()->grab().toImage();
        list->setPlaceholder(QString(), "words");
        QCOMPARE(list->viewport()->grab().toImage() != with, picture);
    }
}

void TestLook::sentencesOfAnEmptyListHaveTheirLines()
{
    TouchList list;
    const auto drawn = [&list](int width, const QString &text) {
        list.resize(width, 400);
        list.setPlaceholder(":/img/edit.svg", text);
        return list.grab().toImage();
    };
    const QString oneLine = "No goods yet. Press + to add one.";
    const QString twoLines = "No goods yet.\nPress + to add one.";
    QCOMPARE(drawn(200, oneLine), drawn(200, twoLines));
    QVERIFY(drawn(800, oneLine) != drawn(800, twoLines));
}

void TestLook::buttonIsDrawnPressed()
{
    useOurStyle(Qt::white);
    ShopDriver shop;
    shop.press("shopsButton");
    auto *button = shop.find<QPushButton>("newButton");
    const QPoint corner(button->width() - 20, button->height() / 2);
    const QPalette palette = QApplication::palette();
    QCOMPARE(button->grab().toImage().pixelColor(corner), palette.color(QPalette::Button));
    button->setDown(true);
    QCOMPARE(button->grab().toImage().pixelColor(corner), palette.color(QPalette::Midlight));
    button->setDown(false);
    const auto *edit = shop.find<QPushButton>("editButton");
    QCOMPARE(const_cast<QPushButton *>(edit)->grab().toImage().pixelColor(QPoint(20, 4)),
             palette.color(QPalette::Disabled, QPalette::Button));
}

void TestLook::disabledPictureIsNotStrongerThanItsText_data()
{
    QTest::addColumn<QColor>("desktop");
    QTest::newRow("light") << QColor(Qt::white);
    QTest::newRow("dark") << QColor(53, 53, 53);
}

void TestLook::disabledPictureIsNotStrongerThanItsText()
{
    QFETCH(QColor, desktop);
    useOurStyle(desktop);
    ShopDriver shop;
    shop.press("shopsButton");
    auto *button = shop.find<QPushButton>("editButton");
    QVERIFY(!button->isEnabled());
    const QColor fill = QApplication::palette().color(QPalette::Disabled, QPalette::Button);
    const QColor text = QApplication::palette().color(QPalette::Disabled, QPalette::ButtonText);
    button->setText(" "); // only the picture is drawn
    const QImage drawn = button->grab().toImage();
    const QRect inside = drawn.rect().adjusted(20, 2, -20, -2);
    double strongest = 1;
    for (int x = inside.left(); x <= inside.right(); ++x)
        for (int y = inside.top(); y <= inside.bottom(); ++y)
            strongest = std::max(strongest, Contrast::ratio(drawn.pixelColor(x, y), fill));
    QVERIFY2(strongest > 1.5, qPrintable(QString::number(strongest)));
    QVERIFY2(strongest <= Contrast::ratio(text, fill) + 0.1,
             qPrintable(QString::number(strongest)));
}

void TestLook::firstTabContinuesTheEdgeOfTheSheet()
{
    useOurStyle(Qt::white);
    ShopDriver shop;
    shop.press("shopsButton");
    shop.press("newButton");
    shop.press("coordinatesButton");
    shop.press("editViewButton");
    auto *tabs = shop.find<QTabWidget>("coordinatesTabs");
    QCOMPARE(tabs->currentIndex(), 0);
    const QColor sheet = QApplication::palette().color(QPalette::Base);
    const int top = tabs->tabBar()->geometry().bottom() + 1;
    QCOMPARE(tabs->grab().toImage().pixelColor(0, top), sheet);
    tabs->setCurrentIndex(1);
    QVERIFY(tabs->grab().toImage().pixelColor(0, top) != sheet);
}

void TestLook::wholeWordsAreDrawnOnATightPage()
{
    useOurStyle(Qt::white);
    QWidget window;
    auto *page = new TurningPage(QAccessible::Pane, &window);
    QFont large = page->font();
    large.setPointSize(22);
    page->setFont(large);
    auto *box = new QVBoxLayout(page);
    QPushButton *button = Controls::textButton("button", QString(), 0, QString());
    auto *name = new NameButton;
    box->addWidget(button);
    box->addWidget(name);
    window.show();
    const int wordWidth = page->fontMetrics().horizontalAdvance("Unforgettable1");
    // A name has an arrow.
    for (QPushButton *shown : {button, static_cast<QPushButton *>(name)}) {
        page->resize(wordWidth * (shown == name ? 95 : 75) / 100, 200);
        const auto drawn = [&](const QString &word) {
            button->setText(word);
            name->setName(word);
            QCoreApplication::processEvents();
            return shown->grab().toImage();
        };
        // All digits have the same width.
        const QImage one = drawn("Unforgettable1");
        QVERIFY(TurningPage::isTight(shown));
        QVERIFY2(drawn("Unforgettable7") != one, shown->metaObject()->className());
    }
}

void TestLook::narrowTabDrawsItsWholeText()
{
    useOurStyle(Qt::white);
    QStyleOptionTab tab;
    tab.text = "Unforgettable";
    tab.palette = QApplication::palette();
    const int width = QFontMetrics(QApplication::font()).horizontalAdvance(tab.text) * 8 / 10;
    tab.rect = QRect(0, 0, width, 60);
    QImage drawn(tab.rect.size(), QImage::Format_RGB32);
    drawn.fill(Qt::white);
    QPainter painter(&drawn);
    painter.setFont(QApplication::font());
    QApplication::style()->drawControl(QStyle::CE_TabBarTabLabel, &tab, &painter);
    painter.end();
    const auto isEmpty = [&drawn](int x) {
        for (int y = 0; y < drawn.height(); ++y) {
            if (drawn.pixel(x, y) != 0xffffffff)
                return false;
        }
        return true;
    };
    QVERIFY(!isEmpty(width / 2));
    QVERIFY(isEmpty(0) && isEmpty(width - 1));
}

void TestLook::focusShowsForKeysOnly()
{
    useOurStyle(Qt::white);
    ShopDriver shop;
    QVERIFY(QTest::qWaitForWindowActive(shop.window.get()));
    shop.press("shopsButton");
    auto *button = shop.find<QPushButton>("newButton");
    shop.touch(button->mapTo(shop.window.get(), button->rect().center()));
    shop.press("backButton");
    // The page that came up has given the focus to one of its buttons.
    auto *focused = qobject_cast<QPushButton *>(QApplication::focusWidget());
    QVERIFY(focused);
    const QColor ink = QApplication::palette().color(QPalette::WindowText);
    QVERIFY(focused->grab().toImage().pixelColor(focused->width() / 2, 1) != ink);
    const QPoint edge(button->width() / 2, 1);
    button->setFocus();
    QTest::keyClick(shop.window->windowHandle(), Qt::Key_Tab);
    QTest::keyClick(shop.window->windowHandle(), Qt::Key_Backtab, Qt::ShiftModifier);
    QTRY_VERIFY(button->hasFocus());
    QCOMPARE(button->grab().toImage().pixelColor(edge), ink);
}

STOPPABLE_TEST_MAIN(TestLook)
#include "tst_look.moc"
