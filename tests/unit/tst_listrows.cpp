// SPDX-License-Identifier: MIT
#include <QListWidget>
#include <QPainter>
#include <QtTest>

#include "lists/liststate.h"
#include "widgets/listrow.h"
#include "widgets/trlistdelegate.h"

/// Tests how rows of lists are drawn, and the rule for the state of a list. Drawings are compared
/// by pixels, at device pixel ratios 1 and 2.
class TestListRows : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        Q_INIT_RESOURCE(pictures);
    }

    void stateOfAList_data();
    void stateOfAList();
    void rowsAreOneHeight();
    void everyRowButTheFirstHasALineAbove_data()
    {
        ratios();
    }
    void everyRowButTheFirstHasALineAbove();
    void checkedRowIsStruckOut_data()
    {
        ratios();
    }
    void checkedRowIsStruckOut();
    void checkMarksDiffer_data()
    {
        ratios();
    }
    void checkMarksDiffer();
    void narrowAmountIsRightAligned_data()
    {
        ratios();
    }
    void narrowAmountIsRightAligned();
    void wideAmountIsLeftAlignedAndClipped_data()
    {
        ratios();
    }
    void wideAmountIsLeftAlignedAndClipped();
    void longNameEndsBeforeTheSecondColumn_data()
    {
        ratios();
    }
    void longNameEndsBeforeTheSecondColumn();
    void rowIsDrawnWhereItIsAndNowhereElse();
    void widthOfTheAmountIsThatOfThePlainFont();
    void secondColumnIsItalicAndSmaller();
    void plainRowStartsAtTheLeftEdge_data()
    {
        ratios();
    }
    void plainRowStartsAtTheLeftEdge();
    void selectedRowHasTheHighlightColours_data()
    {
        ratios();
    }
    void selectedRowHasTheHighlightColours();
    void painterIsLeftAsItWas();
    void metaObject();

private:
    static void ratios()
    {
        QTest::addColumn<int>("ratio");
        QTest::newRow("1") << 1;
        QTest::newRow("2") << 2;
    }
    QImage drawn(int row, int ratio, bool selected = false);
    static QRect ink(const QImage &image, const QRect &within,
                     const QColor &background = Qt::white);
    QStyleOptionViewItem option(bool selected) const;

    QListWidget list;
    TrListDelegate delegate;
    const QSize size{300, 40};
};

QStyleOptionViewItem TestListRows::option(bool selected) const
{
    QStyleOptionViewItem result;
    result.rect = QRect(QPoint(0, 0), size);
    result.font = QFont("DejaVu Sans", 16);
    result.fontMetrics = QFontMetrics(result.font);
    result.palette.setColor(QPalette::WindowText, Qt::black);
    result.palette.setColor(QPalette::Highlight, Qt::blue);
    result.palette.setColor(QPalette::HighlightedText, Qt::yellow);
    result.state = QStyle::State_Enabled;
    if (selected)
        result.state |= QStyle::State_Selected;
    return result;
}

/// Returns a row drawn by the delegate on white.
QImage TestListRows::drawn(int row, int ratio, bool selected)
{
    QImage image(size * ratio, QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::white);
    QPainter painter(&image);
    delegate.paint(&painter, option(selected), list.model()->index(row, 0));
    return image;
}

/// Returns the bounding rectangle of the drawing in `within`, in device-independent pixels.
QRect TestListRows::ink(const QImage &image, const QRect &within, const QColor &background)
{
    const int ratio = int(image.devicePixelRatio());
    QRect found;
    for (int y = within.top() * ratio; y < (within.bottom() + 1) * ratio; ++y)
        for (int x = within.left() * ratio; x < (within.right() + 1) * ratio; ++x)
            if (image.pixelColor(x, y) != background)
                found |= QRect(x / ratio, y / ratio, 1, 1);
    return found;
}

void TestListRows::stateOfAList_data()
{
    QTest::addColumn<QList<bool>>("checkMarks");
    QTest::addColumn<int>("state");
    QTest::newRow("none at all") << QList<bool>{} << 1;
    QTest::newRow("one unchecked") << QList<bool>{false} << 1;
    QTest::newRow("all unchecked") << QList<bool>{false, false} << 1;
    QTest::newRow("checked first") << QList<bool>{true, false} << 2;
    QTest::newRow("checked last") << QList<bool>{false, false, true} << 2;
    QTest::newRow("one checked") << QList<bool>{true} << 3;
    QTest::newRow("all checked") << QList<bool>{true, true, true} << 3;
}

void TestListRows::stateOfAList()
{
    QFETCH(QList<bool>, checkMarks);
    QFETCH(int, state);
    QCOMPARE(int(stateOfList(checkMarks)), state);
}

void TestListRows::rowsAreOneHeight()
{
    list.clear();
    list.addItem(new ListRow("a", 1));
    const QStyleOptionViewItem style = option(false);
    QCOMPARE(delegate.sizeHint(style, list.model()->index(0, 0)),
             QSize(300, style.fontMetrics.height() + 9));
}

void TestListRows::everyRowButTheFirstHasALineAbove()
{
    QFETCH(int, ratio);
    list.clear();
    list.addItem(new ListRow("a", 1));
    list.addItem(new ListRow("b", 2));
    list.addItem(new ListRow("c", 3));
    const QRect top(QPoint(0, 0), QSize(size.width(), 1));
    QVERIFY(ink(drawn(0, ratio), top).isEmpty());
    QCOMPARE(ink(drawn(1, ratio), top), top);
    QCOMPARE(ink(drawn(2, ratio), top), top);
}

void TestListRows::checkedRowIsStruckOut()
{
    QFETCH(int, ratio);
    list.clear();
    auto *row = new ListRow("i i", 1); // plain text, so no line crosses it
    row->setData(SecondColumnRole, QString("i i"));
    row->setData(CheckableRole, 1);
    row->setData(Qt::CheckStateRole, 0);
    list.addItem(row);
    const QImage plain = drawn(0, ratio);
    row->setData(Qt::CheckStateRole, 2);
    const QImage struck = drawn(0, ratio);

    // The line crosses name and amount, so there is ink between the letters in one pixel row.
    const auto fullLines = [&](const QImage &image, const QRect &text) {
        int lines = 0;
        for (int y = text.top() * ratio; y <= text.bottom() * ratio; ++y) {
            int inked = 0;
            for (int x = text.left() * ratio; x <= text.right() * ratio; ++x)
                inked += qGray(image.pixel(x, y)) < 128;
            lines += inked >= text.width() * ratio - 2 * ratio;
        }
        return lines;
    };
    const QRect beside(size.height() + 2, 2, 160, size.height() - 4);
    const QRect third(202, 2, 98, size.height() - 4);
    for (const QRect &column : {beside, third}) {
        QCOMPARE(fullLines(plain, ink(plain, column)), 0);
        QVERIFY(fullLines(struck, ink(struck, column)) > 0);
    }
    row->setData(Qt::CheckStateRole, 0);
    QCOMPARE(drawn(0, ratio), plain);
}

void TestListRows::checkMarksDiffer()
{
    QFETCH(int, ratio);
    list.clear();
    auto *row = new ListRow("", 1);
    row->setData(CheckableRole, 1);
    list.addItem(row);
    const QRect square(0, 0, size.height(), size.height());
    for (const int state : {0, 2}) {
        row->setData(Qt::CheckStateRole, state);
        QImage expected(size * ratio, QImage::Format_RGB32);
        expected.setDevicePixelRatio(ratio);
        expected.fill(Qt::white);
        QPainter painter(&expected);
        painter.drawPixmap(square,
                           QIcon(state == 2 ? ":/img/check-aqua.svg" : ":/img/uncheck-aqua.svg")
                               .pixmap(square.size(), ratio));
        painter.end();
        QCOMPARE(drawn(0, ratio), expected);
    }
}

void TestListRows::narrowAmountIsRightAligned()
{
    QFETCH(int, ratio);
    list.clear();
    auto *row = new ListRow("", 1);
    row->setData(SecondColumnRole, 12);
    list.addItem(row);
    const QRect amount = ink(drawn(0, ratio), QRect(QPoint(0, 0), size));
    QVERIFY2(amount.right() >= size.width() - 4, qPrintable(QString::number(amount.right())));
    QVERIFY(amount.left() >= size.width() * 2 / 3 + 2);
}

void TestListRows::wideAmountIsLeftAlignedAndClipped()
{
    QFETCH(int, ratio);
    list.clear();
    auto *row = new ListRow("", 1);
    row->setData(SecondColumnRole, QString("a store with a very long name"));
    list.addItem(row);
    const QRect second = ink(drawn(0, ratio), QRect(QPoint(0, 0), size));
    QVERIFY(second.left() >= 202);
    QVERIFY(second.left() <= 206);
    QVERIFY(second.right() >= size.width() - 6);
}

void TestListRows::rowIsDrawnWhereItIsAndNowhereElse()
{
    list.clear();
    auto *row = new ListRow(QString("W").repeated(40), 1);
    row->setData(SecondColumnRole, QString("W").repeated(40));
    row->setData(CheckableRole, 1);
    row->setData(Qt::CheckStateRole, 2);
    list.addItem(new ListRow("first", 2));
    list.addItem(row);
    QImage image(400, 140, QImage::Format_RGB32);
    image.fill(Qt::white);
    QStyleOptionViewItem moved = option(false);
    moved.rect.translate(50, 50);
    {
        QPainter painter(&image);
        delegate.paint(&painter, moved, list.model()->index(1, 0));
    }
    const QRect drawing = ink(image, image.rect());
    QVERIFY(moved.rect.contains(drawing));
    QCOMPARE(drawing.top(), moved.rect.top());
    QCOMPARE(drawing.left(), moved.rect.left());
    QVERIFY(drawing.right() > moved.rect.right() - 6);
}

void TestListRows::widthOfTheAmountIsThatOfThePlainFont()
{
    // A text that exceeds the third of the row in the row's font is wide, even if it fits in the
    // smaller font in which it is drawn.
    const QStyleOptionViewItem style = option(false);
    QFont drawnFont = style.font;
    drawnFont.setItalic(true);
    drawnFont.setPointSize(drawnFont.pointSize() - 1);
    const int third = size.width() / 3;
    QString text;
    for (const char letter : {'a', 'e', 'm', 'n', 'o', 'w'}) {
        text.clear();
        while (style.fontMetrics.horizontalAdvance(text) < third)
            text += QLatin1Char(letter);
        if (QFontMetrics(drawnFont).horizontalAdvance(text) < third)
            break;
    }
    QVERIFY(QFontMetrics(drawnFont).horizontalAdvance(text) < third);
    list.clear();
    auto *row = new ListRow("", 1);
    row->setData(SecondColumnRole, text);
    list.addItem(row);
    QVERIFY(ink(drawn(0, 1), QRect(QPoint(0, 0), size)).left() <= 206);
    row->setData(SecondColumnRole, text.chopped(1));
    QVERIFY(ink(drawn(0, 1), QRect(QPoint(0, 0), size)).right() >= size.width() - 6);
}

void TestListRows::longNameEndsBeforeTheSecondColumn()
{
    QFETCH(int, ratio);
    list.clear();
    auto *row = new ListRow(QString("i").repeated(100), 1);
    list.addItem(row);
    // Up to the last letter for which there is room, and the ellipsis.
    const auto right = [&] {
        return ink(drawn(0, ratio), QRect(QPoint(0, 0), size)).right();
    };
    QVERIFY(right() > size.width() - 20);
    QVERIFY(right() < size.width());
    row->setData(SecondColumnRole, QString(QChar::Nbsp)); // takes its column and is blank
    QVERIFY(right() > size.width() - 132);
    QVERIFY(right() <= size.width() - 112);
}

void TestListRows::secondColumnIsItalicAndSmaller()
{
    list.clear();
    auto *row = new ListRow("", 1);
    row->setData(SecondColumnRole, QString("8 kg"));
    list.addItem(row);
    QImage expected(size, QImage::Format_RGB32);
    expected.fill(Qt::white);
    QPainter painter(&expected);
    painter.setRenderHint(QPainter::TextAntialiasing);
    QFont font = option(false).font;
    font.setItalic(true);
    font.setPointSize(font.pointSize() - 1);
    painter.setFont(font);
    painter.setPen(Qt::black);
    QTextOption alignment(Qt::AlignRight | Qt::AlignVCenter);
    painter.drawText(QRectF(202, 0, 98, size.height()), "8 kg", alignment);
    painter.end();
    QCOMPARE(drawn(0, 1), expected);
}

void TestListRows::plainRowStartsAtTheLeftEdge()
{
    QFETCH(int, ratio);
    list.clear();
    auto *row = new ListRow("HHH", 1);
    list.addItem(row);
    QVERIFY(ink(drawn(0, ratio), QRect(QPoint(0, 0), size)).left() <= 3);
    row->setData(Qt::CheckStateRole, 2); // without the mark's own role there is no mark
    QVERIFY(ink(drawn(0, ratio), QRect(QPoint(0, 0), size)).left() <= 3);
    row->setData(CheckableRole, 1);
    const QRect beside(size.height(), 0, size.width() - size.height(), size.height());
    QVERIFY(ink(drawn(0, ratio), beside).left() >= size.height() + 2);
}

void TestListRows::selectedRowHasTheHighlightColours()
{
    QFETCH(int, ratio);
    list.clear();
    list.addItem(new ListRow("a", 1));
    list.addItem(new ListRow("HHH", 2));
    const QImage image = drawn(1, ratio, true);
    QCOMPARE(image.pixelColor(image.width() - 1, image.height() / 2), QColor(Qt::blue));
    QCOMPARE(image.pixelColor(image.width() - 1, 0), QColor(Qt::blue)); // above the line
    bool yellow = false;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            yellow = yellow || image.pixelColor(x, y) == QColor(Qt::yellow);
    QVERIFY(yellow);
}

void TestListRows::painterIsLeftAsItWas()
{
    list.clear();
    auto *row = new ListRow("a", 1);
    row->setData(SecondColumnRole, 1);
    list.addItem(row);
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setPen(Qt::red);
    const QFont font = painter.font();
    delegate.paint(&painter, option(true), list.model()->index(0, 0));
    QCOMPARE(painter.pen().color(), QColor(Qt::red));
    QCOMPARE(painter.font(), font);
}

void TestListRows::metaObject()
{
    QVERIFY(TrListDelegate::staticMetaObject.indexOfSignal("itemClicked(QModelIndex)") >= 0);
    QVERIFY(TrListDelegate::staticMetaObject.indexOfSlot("closeAndCommitEditor()") >= 0);
}

QTEST_MAIN(TestListRows)
#include "tst_listrows.moc"
