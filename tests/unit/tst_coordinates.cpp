// SPDX-License-Identifier: MIT
#include <cmath>
#include <limits>

#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QRandomGenerator>
#include <QtTest>

#include "gps/coordinates.h"
#include "widgets/maskedfield.h"

class TestCoordinates : public QObject
{
    Q_OBJECT

private slots:
    void anglesAreTakenApart_data();
    void anglesAreTakenApart();
    void anglesArePutTogether_data();
    void anglesArePutTogether();
    void nothingIsOffByMoreThanHalfADigit();
    void texts();
    void placesOnEarth_data();
    void placesOnEarth();
    void equalCoordinates_data();
    void equalCoordinates();
    void fieldShowsWhatItsMaskHolds_data();
    void fieldShowsWhatItsMaskHolds();
    void whatIsTypedCounts();
    void commaIsAPoint();
    void commaOfAnInputMethodIsAPoint();
    void composedTextThatIsRefusedLeavesTheField();
    void typingStartsAtTheFirstPlace();
    void refusedKeysChangeNothing();
    void signIsPutToDigits();
    void typingAfterTabReplaces();
    void numbersArePastedWhole_data();
    void numbersArePastedWhole();
    void pairsAreNotPastedIntoOneField_data();
    void pairsAreNotPastedIntoOneField();
    void tooManyDigitsAreRefused_data();
    void tooManyDigitsAreRefused();
    void restOfRefusedNumberIsIgnored();
    void modifierKeysDoNotEndARefusal();
    void typingGoesOnInAnActiveWindow();
    void textOfAssistiveTechnologyCounts();
    void gapsAreClosedWhenTheFieldIsLeft();
    void nothingIsUndone();
};

void TestCoordinates::anglesAreTakenApart_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<bool>("isNegative");
    QTest::addColumn<QStringList>("parts");
    const auto add = [](const char *name, double value, bool isNegative, const char *degrees,
                        const char *minutes, const char *seconds) {
        QTest::newRow(name) << value << isNegative << QStringList{degrees, minutes, seconds};
    };
    add("rounded seconds", 55.755833, false, "55", "45", "21.00");
    add("south", -33.5, true, "33", "30", "0.00");
    add("zero", 0, false, "0", "0", "0.00");
    add("less than a second", 0.0001, false, "0", "0", "0.36");
    add("less than zero", -0.0001, true, "0", "0", "0.36");
    add("no more than six minutes", 10.1, false, "10", "6", "0.00");
    add("nor less", 10.7, false, "10", "42", "0.00");
    add("almost the next minute", 10.999999, false, "10", "59", "60.00");
    add("almost ten", 9.999999999999, false, "9", "59", "60.00");
    add("far west", -122.41942, true, "122", "25", "9.91");
}

void TestCoordinates::anglesAreTakenApart()
{
    QFETCH(double, value);
    QFETCH(bool, isNegative);
    QFETCH(QStringList, parts);
    const Coordinates::Sexagesimal angle = Coordinates::toSexagesimal(value);
    QCOMPARE(angle.isNegative, isNegative);
    QCOMPARE((QStringList{angle.degrees, angle.minutes, angle.seconds}), parts);
}

void TestCoordinates::anglesArePutTogether_data()
{
    QTest::addColumn<QStringList>("parts");
    QTest::addColumn<bool>("isNegative");
    QTest::addColumn<QString>("decimal");
    QTest::newRow("rounded") << QStringList{"55", "45", "21.00"} << false << "55.755833";
    QTest::newRow("south") << QStringList{"33", "30", "0.00"} << true << "-33.500000";
    QTest::newRow("degrees only") << QStringList{"7", "", ""} << false << "7.000000";
    QTest::newRow("minutes only") << QStringList{"", "30", ""} << true << "-0.500000";
    QTest::newRow("seconds only") << QStringList{"", "", "36"} << false << "0.010000";
    QTest::newRow("nothing, south") << QStringList{"", "", "."} << true << "0.000000";
    QTest::newRow("more than a minute") << QStringList{"1", "99", "99.99"} << false << "2.677775";
}

void TestCoordinates::anglesArePutTogether()
{
    QFETCH(QStringList, parts);
    QFETCH(bool, isNegative);
    QFETCH(QString, decimal);
    QCOMPARE(Coordinates::decimalText(
                 Coordinates::fromSexagesimal({isNegative, parts.at(0), parts.at(1), parts.at(2)})),
             decimal);
}

void TestCoordinates::nothingIsOffByMoreThanHalfADigit()
{
    QRandomGenerator random(20261121);
    const double halfASecondDigit = 0.005 / 3600;
    const double halfADecimal = 0.0000005;
    const double noise = 1e-11;
    for (int round = 0; round < 100000; ++round) {
        double value = random.bounded(360.0) - 180;
        if (round % 3 == 0) // values that fields with six decimals can hold
            value = std::round(value * 1e6) / 1e6;
        if (round % 5 == 0) // whole minutes
            value = std::round(value * 60) / 60;
        const Coordinates::Sexagesimal angle = Coordinates::toSexagesimal(value);
        QVERIFY(angle.minutes.toInt() >= 0 && angle.minutes.toInt() < 60);
        QVERIFY(angle.seconds.toDouble() >= 0 && angle.seconds.toDouble() <= 60);
        QVERIFY(!angle.seconds.startsWith('-'));
        const double back = Coordinates::fromSexagesimal(angle);
        QVERIFY2(std::abs(back - value) <= halfASecondDigit + noise,
                 qPrintable(QString::number(value, 'f', 12)));
        QVERIFY(std::abs(Coordinates::decimalText(back).toDouble() - back) <= halfADecimal + noise);
    }
}

void TestCoordinates::texts()
{
    QCOMPARE(Coordinates::text(59.913822F), "59.913822");
    QCOMPARE(Coordinates::text(-0.5F), "-0.5");
    QCOMPARE(Coordinates::text(20), "20");
    QCOMPARE(Coordinates::text(0.000012F), "1.2e-05");
    QCOMPARE(Coordinates::number("12.5"), 12.5);
    QCOMPARE(Coordinates::number("."), 0.0);
    QCOMPARE(Coordinates::number("rubbish"), 0.0);
}

void TestCoordinates::placesOnEarth_data()
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    QTest::addColumn<double>("latitude");
    QTest::addColumn<double>("longitude");
    QTest::addColumn<bool>("isPlace");
    QTest::newRow("corner") << 90.0 << -180.0 << true;
    QTest::newRow("beyond the pole") << -90.000001 << 0.0 << false;
    QTest::newRow("beyond the date line") << 0.0 << 180.000001 << false;
    QTest::newRow("no numbers") << nan << nan << false;
    QTest::newRow("infinite") << 0.0 << std::numeric_limits<double>::infinity() << false;
}

void TestCoordinates::placesOnEarth()
{
    QFETCH(double, latitude);
    QFETCH(double, longitude);
    QFETCH(bool, isPlace);
    QCOMPARE(Coordinates::isPlace(latitude, longitude), isPlace);
}

void TestCoordinates::equalCoordinates_data()
{
    QTest::addColumn<float>("latitude");
    QTest::addColumn<float>("longitude");
    QTest::addColumn<bool>("areEqual");
    QTest::newRow("nothing") << 0.0F << 0.0F << true;
    QTest::newRow("the same") << 10.5F << 10.5F << true;
    // (10.5 + 1) / 100,000 is 0.000115.
    QTest::newRow("almost the same") << 10.5F << 10.5001F << true;
    QTest::newRow("not quite") << 10.5F << 10.5002F << false;
    QTest::newRow("almost nothing") << 0.000005F << -0.000004F << true;
    QTest::newRow("little") << 0.00002F << 0.0F << false;
    QTest::newRow("other sign") << 10.5F << -10.5F << false;
}

void TestCoordinates::equalCoordinates()
{
    QFETCH(float, latitude);
    QFETCH(float, longitude);
    QFETCH(bool, areEqual);
    QCOMPARE(Coordinates::areEqual(latitude, longitude), areEqual);
}

void TestCoordinates::fieldShowsWhatItsMaskHolds_data()
{
    QTest::addColumn<QString>("mask");
    QTest::addColumn<QString>("given");
    QTest::addColumn<QString>("shown");
    const QString decimal = "#00.000000";
    QTest::newRow("decimal") << decimal << "55.755833"
                             << "55.755833";
    QTest::newRow("negative") << decimal << "-33.5"
                              << "-33.5";
    QTest::newRow("one digit") << decimal << "5.25"
                               << "5.25";
    QTest::newRow("negative digit") << decimal << "-5.25"
                                    << "-5.25";
    QTest::newRow("whole") << decimal << "20"
                           << "20.";
    QTest::newRow("three digits") << decimal << "122.41942"
                                  << "122.41942";
    QTest::newRow("too far west") << decimal << "-122.41942"
                                  << "-122.41942";
    QTest::newRow("999 and more") << decimal << "1234.5"
                                  << "1234.5";
    QTest::newRow("tiny") << decimal << "1.2e-05"
                          << "1.2e-05";
    QTest::newRow("tiny, with more digits") << decimal << "1.2345678e-05"
                                            << "1.2345678e-05";
    QTest::newRow("more decimals") << decimal << "2.3522219"
                                   << "2.352222";
    QTest::newRow("more decimals, carried") << decimal << "9.9999999"
                                            << "10.000000";
    QTest::newRow("rubbish") << decimal << "rubbish"
                             << ".";
    QTest::newRow("not a number") << decimal << "nan"
                                  << ".";
    QTest::newRow("nothing") << decimal << ""
                             << ".";
    QTest::newRow("degrees") << "00"
                             << "7"
                             << "7";
    QTest::newRow("too many degrees") << "00"
                                      << "137"
                                      << "137";
    QTest::newRow("seconds") << "00.00"
                             << "5.10"
                             << "5.10";
    QTest::newRow("sixty seconds") << "00.00"
                                   << "60.00"
                                   << "60.00";
}

void TestCoordinates::fieldShowsWhatItsMaskHolds()
{
    QFETCH(QString, mask);
    QFETCH(QString, given);
    QFETCH(QString, shown);
    MaskedField field(mask);
    field.setValue("11");
    field.setValue(given);
    QCOMPARE(field.text(), shown);
    QCOMPARE(field.value(), given.isEmpty() ? shown : given);
    // Digits end at the point of the mask.
    const auto point = field.displayText().indexOf('.');
    if (mask.contains('.') && !field.exceedsMask())
        QCOMPARE(point, mask.indexOf('.'));
}

void TestCoordinates::whatIsTypedCounts()
{
    MaskedField field("#00.000000");
    field.setValue("-122.41942");
    QTest::keyClicks(&field, "-12.5"); // from the first position
    QCOMPARE(field.value(), "-12.5");
    // A part of the number that the mask cannot hold would be another one.
    field.setValue("-122.41942");
    QTest::keyClick(&field, Qt::Key_Backspace);
    QCOMPARE(field.value(), ".");
    field.setValue("-122.41942");
    field.setSelection(0, 4);
    QTest::keySequence(&field, QKeySequence::Cut);
    QCOMPARE(field.value(), ".");
    QCOMPARE(QGuiApplication::clipboard()->text(), "-122");
    // Also if nothing remains in the field.
    field.setValue("-122.41942");
    QTest::keyClick(&field, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(&field, "7");
    QTest::keyClick(&field, Qt::Key_Backspace);
    QCOMPARE(field.value(), ".");
}

void TestCoordinates::commaIsAPoint()
{
    MaskedField field("#00.000000");
    QTest::keyClick(&field, Qt::Key_Home);
    QTest::keyClicks(&field, "5,25");
    QCOMPARE(field.text(), "5.25");
}

void TestCoordinates::commaOfAnInputMethodIsAPoint()
{
    MaskedField field("#00.000000");
    QTest::keyClick(&field, Qt::Key_Home);
    for (const char *key : {"5", ",", "2"}) {
        QInputMethodEvent event;
        event.setCommitString(key);
        QCoreApplication::sendEvent(&field, &event);
    }
    QCOMPARE(field.text(), "5.2");
}

void TestCoordinates::composedTextThatIsRefusedLeavesTheField()
{
    MaskedField field("#00.000000");
    field.setValue("5.25");
    const QImage before = field.grab().toImage();
    const QString digit(u'\u0663'); // a three in another script
    QInputMethodEvent composing(digit, {});
    QCoreApplication::sendEvent(&field, &composing);
    QVERIFY(field.grab().toImage() != before);
    QInputMethodEvent composed;
    composed.setCommitString(digit);
    QCoreApplication::sendEvent(&field, &composed);
    QCOMPARE(field.value(), "5.25");
    QCOMPARE(field.grab().toImage(), before);
}

void TestCoordinates::typingStartsAtTheFirstPlace()
{
    MaskedField field("#00.000000");
    field.resize(300, 40);
    field.show();
    QTest::mouseClick(&field, Qt::LeftButton, {}, QPoint(150, 20));
    QTest::keyClicks(&field, "55.5");
    QCOMPARE(field.text(), "55.5");
}

void TestCoordinates::refusedKeysChangeNothing()
{
    MaskedField field("#00.000000");
    field.setValue("-122.41942");
    for (const Qt::Key key : {Qt::Key_Home, Qt::Key_End, Qt::Key_Left, Qt::Key_Shift})
        QTest::keyClick(&field, key);
    QTest::keySequence(&field, QKeySequence::Copy);
    QTest::keyClicks(&field, "x ");
    QCOMPARE(field.value(), "-122.41942");
    field.setValue("2.3522219");
    QTest::keyClicks(&field, "x");
    QCOMPARE(field.value(), "2.3522219");
}

void TestCoordinates::signIsPutToDigits()
{
    MaskedField field("#00.000000");
    QTest::keyClick(&field, Qt::Key_Home);
    QTest::keyClicks(&field, "33.5");
    QTest::keyClick(&field, Qt::Key_Home);
    QTest::keyClicks(&field, "-");
    QCOMPARE(field.value(), "-33.5");
    QTest::keyClicks(&field, "-");
    QCOMPARE(field.value(), "-33.5");
    QTest::keyClicks(&field, "+");
    QCOMPARE(field.value(), "33.5");
    // A number of three digits leaves no room for a sign.
    field.setValue("122.5");
    QTest::keyClicks(&field, "-");
    QCOMPARE(field.value(), "122.5");
    // Like any key, it replaces the selection.
    field.selectAll();
    QTest::keyClicks(&field, "-7");
    QCOMPARE(field.value(), "-7.");
}

void TestCoordinates::typingAfterTabReplaces()
{
    QWidget window;
    auto *first = new MaskedField("#00.000000", &window);
    auto *second = new MaskedField("#00.000000", &window);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    first->setFocus();
    second->setValue("10.738741");
    QTest::keyClick(first, Qt::Key_Tab);
    QVERIFY(second->hasFocus());
    QTest::keyClicks(second, "1.5");
    QCOMPARE(second->value(), "1.5");
}

void TestCoordinates::numbersArePastedWhole_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("value");
    QTest::newRow("point") << "10.738741"
                           << "10.738741";
    QTest::newRow("comma and blanks") << " -10,738741\n"
                                      << "-10.738741";
    QTest::newRow("more than there is room for") << "-122.41942"
                                                 << "-122.41942";
    QTest::newRow("no degrees") << "1234.5"
                                << "7.5";
    const QString dashed = QString(u'\u2212') + "10.5";
    QTest::newRow("typographical minus") << dashed << "-10.5";
    QTest::newRow("Arabic digits") << QString::fromUtf16(u"\u0661\u0662.\u0665") << "12.5";
    QTest::newRow("no number") << "10.5 N"
                               << "7.5";
    QTest::newRow("nothing") << ""
                             << "7.5";
}

void TestCoordinates::numbersArePastedWhole()
{
    QFETCH(QString, text);
    QFETCH(QString, value);
    MaskedField field("#00.000000");
    field.setValue("7.5");
    QGuiApplication::clipboard()->setText(text);
    QTest::keySequence(&field, QKeySequence::Paste);
    QCOMPARE(field.value(), value);
    QCOMPARE(field.text(), value);
}

void TestCoordinates::pairsAreNotPastedIntoOneField_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("pair");
    const QStringList pair{"50.1001", "14.19888"};
    QTest::newRow("comma and blank") << "50.1001, 14.19888" << pair;
    QTest::newRow("comma") << " 50.1001,14.19888\n" << pair;
    QTest::newRow("semicolon") << "50.1001;14.19888" << pair;
    QTest::newRow("blank") << "50.1001 14.19888" << pair;
    QTest::newRow("decimal commas") << "50,1001; 14,19888" << pair;
    QTest::newRow("only commas") << "50,1001, 14,19888" << pair;
    QTest::newRow("whole numbers") << "50, 14" << QStringList{"50", "14"};
    QTest::newRow("west") << "37.5, -122.41942" << QStringList{"37.5", "-122.41942"};
    QTest::newRow("three numbers") << "50.1001, 14.19888, 7" << QStringList();
    QTest::newRow("words") << "fifty, fourteen" << QStringList();
}

void TestCoordinates::pairsAreNotPastedIntoOneField()
{
    QFETCH(QString, text);
    QFETCH(QStringList, pair);
    MaskedField field("#00.000000");
    field.setValue("7.5");
    const QSignalSpy pasted(&field, &MaskedField::pairPasted);
    QGuiApplication::clipboard()->setText(text);
    QTest::keySequence(&field, QKeySequence::Paste);
    QStringList numbers;
    if (!pasted.isEmpty())
        numbers = {pasted.first().at(0).toString(), pasted.first().at(1).toString()};
    QCOMPARE(numbers, pair);
    QCOMPARE(field.value(), "7.5");
}

void TestCoordinates::tooManyDigitsAreRefused_data()
{
    QTest::addColumn<QString>("mask");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<bool>("isRefused");
    QTest::newRow("far west") << "#00.000000"
                              << "-122" << true;
    QTest::newRow("four digits") << "#00.000000"
                                 << "1225" << true;
    QTest::newRow("two digits") << "#00.000000"
                                << "-12.2" << false;
    QTest::newRow("three digits") << "#00.000000"
                                  << "122.2" << false;
    QTest::newRow("degrees") << "00"
                             << "122" << true;
    QTest::newRow("two degrees") << "00"
                                 << "12" << false;
}

void TestCoordinates::tooManyDigitsAreRefused()
{
    QFETCH(QString, mask);
    QFETCH(QString, typed);
    QFETCH(bool, isRefused);
    MaskedField field(mask);
    const QSignalSpy refused(&field, &MaskedField::tooManyDigits);
    QTest::keyClick(&field, Qt::Key_Home);
    QTest::keyClicks(&field, typed);
    QCOMPARE(!refused.isEmpty(), isRefused);
    if (!isRefused)
        QCOMPARE(field.value().toDouble(), typed.toDouble());
}

void TestCoordinates::restOfRefusedNumberIsIgnored()
{
    MaskedField field("#00.000000");
    connect(&field, &MaskedField::tooManyDigits, &field, &MaskedField::refuse);
    QTest::keyClick(&field, Qt::Key_Home);
    QTest::keyClicks(&field, "-122.25");
    QCOMPARE(field.value(), ".");
    // A sign begins another number.
    QTest::keyClicks(&field, "-12.25");
    QCOMPARE(field.value(), "-12.25");
    // So does any number after a pause, or after another key.
    QTest::keyClick(&field, Qt::Key_Home);
    field.setValue(QString());
    QTest::keyClicks(&field, "1234");
    QCOMPARE(field.value(), ".");
    QTest::qWait(2100);
    QTest::keyClicks(&field, "7");
    QCOMPARE(field.value(), "7.");
    field.setValue(QString());
    QTest::keyClicks(&field, "1234");
    QTest::keyClick(&field, Qt::Key_Backspace);
    QTest::keyClicks(&field, "8");
    QCOMPARE(field.value(), "8.");
}

void TestCoordinates::modifierKeysDoNotEndARefusal()
{
    MaskedField field("#00.000000");
    connect(&field, &MaskedField::tooManyDigits, &field, &MaskedField::refuse);
    QTest::keyClick(&field, Qt::Key_Home);
    QTest::keyClicks(&field, "-122");
    QTest::keyClick(&field, Qt::Key_Shift);
    QTest::keyClicks(&field, ".25");
    QCOMPARE(field.value(), ".");
}

void TestCoordinates::typingGoesOnInAnActiveWindow()
{
    QWidget window;
    auto *field = new MaskedField("#00.000000", &window);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    field->setFocus();
    field->setCursorPosition(0);
    QTest::keyClicks(field, "5");
    QFocusEvent out(QEvent::FocusOut, Qt::ActiveWindowFocusReason);
    QCoreApplication::sendEvent(field, &out);
    QFocusEvent in(QEvent::FocusIn, Qt::ActiveWindowFocusReason);
    QCoreApplication::sendEvent(field, &in);
    QTest::keyClicks(field, "2.5");
    QCOMPARE(field->value(), "52.5");
}

void TestCoordinates::textOfAssistiveTechnologyCounts()
{
    MaskedField field("#00.000000");
    QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(&field);
    field.setValue("2.3522219");
    accessible->setText(QAccessible::Value, "50.5");
    QCOMPARE(field.value(), "50.5");
    QCOMPARE(field.displayText().indexOf('.'), 3);
    field.setValue("-122.41942");
    accessible->setText(QAccessible::Value, "7");
    QCOMPARE(field.value(), "7");
    accessible->setText(QAccessible::Value, QString(u'\u0663'));
    QCOMPARE(field.value(), "3.");
    accessible->setText(QAccessible::Value, "");
    QCOMPARE(field.value(), ".");
}

void TestCoordinates::gapsAreClosedWhenTheFieldIsLeft()
{
    QWidget window;
    auto *first = new MaskedField("#00.000000", &window);
    auto *second = new QLineEdit(&window);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    first->setFocus();
    first->setCursorPosition(0);
    QTest::keyClicks(first, "50.1001");
    QCOMPARE(first->displayText().left(4), "50 .");
    second->setFocus();
    QCOMPARE(first->displayText().left(4), " 50.");
    QCOMPARE(first->value(), "50.1001");
}

void TestCoordinates::nothingIsUndone()
{
    MaskedField field("#00.000000");
    field.setValue("55.5");
    field.setValue("");
    QTest::keySequence(&field, QKeySequence::Undo);
    QCOMPARE(field.value(), ".");
}

QTEST_MAIN(TestCoordinates)
#include "tst_coordinates.moc"
