// SPDX-License-Identifier: MIT
#include <QAbstractButton>
#include <QContextMenuEvent>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QStackedWidget>
#include <QtTest>

#include "base/pages.h"
#include "map/mapswidget.h"
#include "platform/informationbox.h"
#include "tests/support/records.h"
#include "tests/support/shopdriver.h"
#include "widgets/contrast.h"
#include "widgets/controls.h"
#include "widgets/touchstyle.h"

/// Tests whether texts are legible, by measuring the contrast in pictures of the pages.
class TestContrast : public QObject
{
    Q_OBJECT

private slots:
    void ratioOfColors_data();
    void ratioOfColors();
    void readableColors();
    void everyTextCanBeRead_data();
    void everyTextCanBeRead();
    void colorsFollowTheDesktop();
};

static QPalette lightPalette()
{
    return QPalette(QColor(239, 239, 239));
}

static QPalette darkPalette()
{
    QPalette palette(QColor(53, 53, 53));
    palette.setColor(QPalette::Base, QColor(35, 35, 35));
    palette.setColor(QPalette::AlternateBase, QColor(45, 45, 45));
    palette.setColor(QPalette::Highlight, QColor(42, 130, 218));
    palette.setColor(QPalette::Link, QColor(0, 0, 255)); // Qt's default link colour
    return palette;
}

/// Returns the contrast between the most frequent colour, which is the background, and the colour
/// that differs most from it.
static double contrastIn(const QImage &picture)
{
    QHash<QRgb, int> count;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            ++count[picture.pixel(x, y)];
    QRgb ground = 0;
    for (auto color = count.cbegin(); color != count.cend(); ++color) {
        if (color.value() > count.value(ground))
            ground = color.key();
    }
    double best = 1;
    for (auto color = count.cbegin(); color != count.cend(); ++color)
        best = qMax(best, Contrast::ratio(ground, color.key()));
    return best;
}

/// Returns the part of a widget with its text, without borders and pictures.
static QRect textOf(const QWidget *widget, const QString &text)
{
    if (qobject_cast<const QLabel *>(widget))
        return widget->rect();
    constexpr int border = 4;
    QRect inside = widget->rect().adjusted(border, border, -border, -border);
    const auto *button = qobject_cast<const QPushButton *>(widget);
    if (button && !button->icon().isNull() && !text.isEmpty()) {
        // The picture stands left of the text. Both are in the middle or, in a stack, at the left.
        const int width = button->fontMetrics().horizontalAdvance(text);
        const int whole = button->iconSize().width() + border + width;
        const bool isLeading = button->property(Controls::leadingProperty).toBool() ||
                               button->property(Controls::leadsOnProperty).toBool();
        if (isLeading && qobject_cast<TouchStyle *>(QApplication::style())) {
            inside.setLeft(2 * border + qMax(button->iconSize().width(), Controls::pictureExtent));
            inside.setWidth(width);
        } else {
            inside.setLeft(inside.center().x() + whole / 2 - width + border);
            inside.setWidth(width - border);
        }
    }
    return inside;
}

void TestContrast::ratioOfColors_data()
{
    QTest::addColumn<QColor>("one");
    QTest::addColumn<QColor>("other");
    QTest::addColumn<double>("ratio");
    QTest::newRow("black and white") << QColor(Qt::black) << QColor(Qt::white) << 21.0;
    QTest::newRow("the same") << QColor(Qt::red) << QColor(Qt::red) << 1.0;
    // The greys that just pass and just fail on white.
    QTest::newRow("passes") << QColor("#767676") << QColor(Qt::white) << 4.54;
    QTest::newRow("fails") << QColor("#777777") << QColor(Qt::white) << 4.48;
    QTest::newRow("blue on white") << QColor("#0000ff") << QColor(Qt::white) << 8.59;
}

void TestContrast::ratioOfColors()
{
    QFETCH(QColor, one);
    QFETCH(QColor, other);
    QFETCH(double, ratio);
    QVERIFY(qAbs(Contrast::ratio(one, other) - ratio) < 0.01);
    QCOMPARE(Contrast::ratio(other, one), Contrast::ratio(one, other));
}

void TestContrast::readableColors()
{
    QCOMPARE(Contrast::readable(Qt::black, Qt::white), QColor(Qt::black));
    QCOMPARE(Contrast::readable(QColor("#767676"), Qt::white), QColor("#767676"));
    for (const char *ground : {"#000000", "#308cc6", "#777777", "#ffffff", "#353535"}) {
        for (const char *text : {"#000000", "#ffffff", "#0000ff", "#777777"}) {
            const QColor color = Contrast::readable(QColor(text), QColor(ground));
            QVERIFY(Contrast::ratio(color, QColor(ground)) >= 4.5);
        }
    }
}

void TestContrast::everyTextCanBeRead_data()
{
    QTest::addColumn<QPalette>("desktop");
    QTest::addColumn<bool>("isOurStyle");
    QTest::newRow("light") << lightPalette() << true;
    QTest::newRow("dark") << darkPalette() << true;
    QTest::newRow("light, style chosen by the person") << lightPalette() << false;
    QTest::newRow("dark, style chosen by the person") << darkPalette() << false;
}

void TestContrast::everyTextCanBeRead()
{
    QFETCH(QPalette, desktop);
    QFETCH(bool, isOurStyle);
    if (isOurStyle) {
        auto *style = new TouchStyle;
        style->polish(desktop); // as Qt does with the palette of a desktop
        QApplication::setStyle(style);
    } else {
        qputenv("QT_STYLE_OVERRIDE", "Fusion");
        QApplication::setStyle("Fusion");
    }
    const auto unchosen = qScopeGuard([] { qunsetenv("QT_STYLE_OVERRIDE"); });
    QApplication::setPalette(desktop);
    ShopDriver shop({store("Bakery").inCategory(0).openList("Bread"),
                     store("Butcher").inCategory(0).openList("Meat")},
                    {{"GpsEnabled", true}});
    int texts = 0;
    const auto check = [&texts](const QWidget *page) {
        const QImage picture = const_cast<QWidget *>(page)->grab().toImage();
        for (const QWidget *widget : page->findChildren<QWidget *>()) {
            const auto *label = qobject_cast<const QLabel *>(widget);
            const auto *button = qobject_cast<const QAbstractButton *>(widget);
            const auto *field = qobject_cast<const QLineEdit *>(widget);
            const QString text = label    ? label->text()
                                 : button ? button->text()
                                 : field  ? field->text()
                                          : QString();
            // Disabled texts are grey on purpose.
            if (text.trimmed().isEmpty() || !widget->isEnabled())
                continue;
            const QRect seen = textOf(widget, text) & widget->visibleRegion().boundingRect();
            if (seen.height() < widget->fontMetrics().height() / 2)
                continue; // scrolled away, or in a hidden view
            const QRect place = seen.translated(widget->mapTo(page, QPoint()));
            const double contrast = contrastIn(picture.copy(place & page->rect()));
            QVERIFY2(contrast >= 4.5,
                     qPrintable(QString("%1 of %2, %3: %4")
                                    .arg(widget->objectName(), page->objectName(), text)
                                    .arg(contrast)));
            ++texts;
        }
    };
    forEveryView(shop.stack, check);
    shop.stack->setCurrentIndex(PageMain);
    shop.press("aboutButton");
    check(shop.pageWidget());
    shop.press("messageOkButton");
    shop.press("shopsButton");
    shop.press("newButton");
    shop.type("Baker");
    check(shop.pageWidget());
    shop.find<QLineEdit>("nameField")->selectAll();
    check(shop.pageWidget());
    QVERIFY2(texts > 100, qPrintable(QString::number(texts)));

    // A selected row and others.
    shop.press("backButton");
    shop.press("storesButton");
    shop.tap(1);
    for (int row = 0; row < shop.list()->count(); ++row) {
        const QImage picture = shop.list()->viewport()->grab().toImage();
        const QRect place = shop.list()->visualItemRect(shop.list()->item(row));
        QVERIFY(contrastIn(picture.copy(place)) >= 4.5);
    }

    // The map's menu, with a selected entry.
    shop.stack->setCurrentIndex(PageTrackedList);
    shop.press("mapViewButton");
    QContextMenuEvent menuKey(QContextMenuEvent::Keyboard, {}, {});
    QCoreApplication::sendEvent(shop.map(), &menuKey);
    auto *menu = shop.map()->findChild<QMenu *>();
    QVERIFY(menu);
    menu->setActiveAction(menu->actions().at(0));
    for (const int entry : {0, 2}) {
        constexpr int border = 3;
        const QRect place = menu->actionGeometry(menu->actions().at(entry));
        const QImage picture =
            menu->grab(place.adjusted(border, border, -border, -border)).toImage();
        const double contrast = contrastIn(picture);
        QVERIFY2(contrast >= 4.5, qPrintable(QString::number(contrast)));
    }
    menu->close();

    // A link within a text, which is blue, and a banner.
    QVERIFY(Contrast::ratio(shop.window->palette().color(QPalette::Link),
                            shop.window->palette().color(QPalette::Window)) >= 4.5);
    auto *banner = InformationBox::information(shop.window.get(), "text", std::chrono::seconds(9));
    QVERIFY(contrastIn(banner->grab().toImage()) >= 4.5);
}

void TestContrast::colorsFollowTheDesktop()
{
    QApplication::setPalette(lightPalette());
    ShopDriver shop;
    const QColor before = shop.pageWidget()->palette().color(QPalette::Link);
    QApplication::setPalette(darkPalette());
    QTRY_COMPARE(shop.pageWidget()->palette().color(QPalette::Window), QColor(53, 53, 53));
    const QColor after = shop.pageWidget()->palette().color(QPalette::Link);
    QVERIFY(after != before);
    QVERIFY(Contrast::ratio(after, QColor(53, 53, 53)) >= 4.5);
}

STOPPABLE_TEST_MAIN(TestContrast)
#include "tst_contrast.moc"
