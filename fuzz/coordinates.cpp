// SPDX-License-Identifier: MIT
// Coordinates as texts. Each line of an input is one text. It is parsed as a number and as the
// parts of an angle, and it is set and typed in a field: the first line with the mask of decimal
// degrees, the second with that of degrees and minutes, the third with that of seconds, and so on.
// These characters stand for keys:
//
//     <  >    cursor left, right
//     [  ]    cursor to the first position, to the last
//     ~  ^    Backspace, Delete
//     @       selects all
//     V       pastes the line
#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <memory>

#include <QClipboard>
#include <QGeoCoordinate>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QRegularExpression>

#include "fuzz/support.h"
#include "gps/coordinates.h"
#include "widgets/maskedfield.h"

using namespace Qt::StringLiterals;
using FuzzSupport::require;

namespace {

constexpr double secondsPerDegree = 3600;
constexpr double largestDegrees = 1e6;

/// A field as in the program, and the numbers that fit: such a number, typed from the first
/// position, is then the value of the field.
struct Field
{
    std::unique_ptr<MaskedField> widget;
    QRegularExpression fitting;
    int decimals;
};

Field makeField(const QString &mask, const QString &fitting, int decimals)
{
    return {.widget = std::make_unique<MaskedField>(mask),
            .fitting = QRegularExpression(QRegularExpression::anchoredPattern(fitting)),
            .decimals = decimals};
}

void requireNumber(const QString &text, double number)
{
    bool isNumber = false;
    const double read = text.toDouble(&isNumber);
    require(Coordinates::number(text) == read || std::isnan(read), "a text is its number");
    require(isNumber || Coordinates::number(text) == 0 || std::isinf(number),
            "what is no number counts as 0");
}

void requireAngle(double degrees)
{
    const Coordinates::Sexagesimal angle = Coordinates::toSexagesimal(degrees);
    const double back = Coordinates::fromSexagesimal(angle);
    if (!std::isfinite(degrees) || std::abs(degrees) > largestDegrees)
        return;
    const double minutes = angle.minutes.toDouble();
    const double seconds = angle.seconds.toDouble();
    require(minutes >= 0 && minutes < 60, "minutes are less than a degree");
    require(seconds >= 0 && seconds <= 60, "seconds are no more than a minute");
    const double rounding = 0.005 / secondsPerDegree + 1e-9;
    require(std::abs(back - degrees) <= rounding,
            "degrees, minutes and seconds are the same angle");
    const double decimal = Coordinates::decimalText(degrees).toDouble();
    require(std::abs(decimal - degrees) <= 0.5e-6 + 1e-9, "decimals are the same angle");
}

void requireText(float degrees)
{
    const QString text = Coordinates::text(degrees);
    if (!std::isfinite(degrees) || std::abs(degrees) < std::numeric_limits<float>::min())
        return;
    const double back = text.toDouble();
    require(std::abs(back - degrees) <= std::abs(degrees) * 1e-7, "a text is the same angle");
}

void requirePlace(double latitude, double longitude)
{
    require(Coordinates::isPlace(latitude, longitude) ==
                QGeoCoordinate(latitude, longitude).isValid(),
            "a place is one to Qt as well");
    const auto first = static_cast<float>(std::clamp(latitude, -largestDegrees, largestDegrees));
    const auto second = static_cast<float>(std::clamp(longitude, -largestDegrees, largestDegrees));
    require(Coordinates::areEqual(first, second) == Coordinates::areEqual(second, first),
            "the order of what is equal does not count");
    require(std::isnan(first) || Coordinates::areEqual(first, first), "what is the same is equal");
}

/// Interprets the bytes of `line` as numbers, so that any bit pattern can occur.
void requireRaw(const QByteArray &line)
{
    std::array<double, 2> numbers{};
    std::array<float, 2> singles{};
    std::memcpy(numbers.data(), line.constData(),
                std::min(sizeof numbers, static_cast<std::size_t>(line.size())));
    std::memcpy(singles.data(), line.constData(),
                std::min(sizeof singles, static_cast<std::size_t>(line.size())));
    requireAngle(numbers.front());
    requirePlace(numbers.front(), numbers.back());
    requireText(singles.front());
}

void press(QWidget &widget, int key, Qt::KeyboardModifiers modifiers = {}, const QString &text = {})
{
    QKeyEvent down(QEvent::KeyPress, key, modifiers, text);
    QCoreApplication::sendEvent(&widget, &down);
}

void type(MaskedField &field, QChar character)
{
    switch (character.unicode()) {
    case u'<':
        press(field, Qt::Key_Left);
        break;
    case u'>':
        press(field, Qt::Key_Right);
        break;
    case u'[':
        press(field, Qt::Key_Home);
        break;
    case u']':
        press(field, Qt::Key_End);
        break;
    case u'~':
        press(field, Qt::Key_Backspace);
        break;
    case u'^':
        press(field, Qt::Key_Delete);
        break;
    case u'@':
        field.selectAll();
        break;
    case u'V':
        press(field, Qt::Key_V, Qt::ControlModifier);
        break;
    default:
        press(field, Qt::Key_unknown, {}, QString(character));
    }
}

/// Holds whatever was typed or set before.
void requireField(const MaskedField &field)
{
    if (field.exceedsMask()) {
        require(std::isfinite(field.text().toDouble()), "a number without the mask is finite");
        return;
    }
    static const QRegularExpression shown(u"[-+]?[0-9 ]*[.]?[0-9 ]*"_s);
    static const QRegularExpression whole(QRegularExpression::anchoredPattern(shown.pattern()));
    require(whole.match(field.text()).hasMatch(), "a field shows nothing but a number");
    require(field.text().size() <= field.inputMask().size(), "a field shows no more than its mask");
    require(field.cursorPosition() >= 0 && field.cursorPosition() <= field.inputMask().size(),
            "the cursor is in the field");
    require(std::isfinite(field.text().toDouble()), "the number of a field is finite");
}

void requireSet(Field &field, const QString &text)
{
    MaskedField &widget = *field.widget;
    widget.setValue(text);
    requireField(widget);
    require(widget.value() == text || text.isEmpty(), "a value that was set is kept");
    static const QRegularExpression anyDigit(u"[0-9]"_s);
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    require(isNumber || !widget.text().contains(anyDigit), "what is no number does not show");
    if (!isNumber || !std::isfinite(number))
        return;
    const double rounding = 0.5 * std::pow(10, -field.decimals) + 1e-9;
    require(std::abs(widget.text().toDouble() - number) <= rounding,
            "a field shows the number that was set");
}

void requireTyped(Field &field, const QString &text)
{
    MaskedField &widget = *field.widget;
    widget.setValue(QString());
    widget.setCursorPosition(0);
    for (const QChar character : text) {
        type(widget, character);
        requireField(widget);
    }
    if (field.fitting.match(text).hasMatch()) {
        require(widget.text().toDouble() == text.toDouble(),
                "a field shows the number that was typed");
    }
}

} // namespace

int LLVMFuzzerInitialize(int * /*count*/, char *** /*arguments*/)
{
    FuzzSupport::startApplication();
    return 0;
}

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static auto *fields = new std::array<Field, 3>{
        makeField(u"#00.000000"_s, u"([0-9]{1,3}|[-+][0-9]{1,2})([.][0-9]{0,6})?"_s, 6),
        makeField(u"00"_s, u"[0-9]{1,2}"_s, 0),
        makeField(u"00.00"_s, u"[0-9]{1,2}([.][0-9]{0,2})?"_s, 2)};
    const QList<QByteArray> lines = FuzzSupport::bytesOf(data, size).split('\n');
    double before = 0;
    std::size_t turn = 0;
    for (const QByteArray &line : lines) {
        const QString text = QString::fromUtf8(line);
        const double number = Coordinates::number(text);
        requireNumber(text, number);
        requireAngle(number);
        requirePlace(before, number);
        requireText(static_cast<float>(number));
        requireRaw(line);
        before = number;
        const QStringList parts = text.split(u' ');
        Coordinates::fromSexagesimal({.isNegative = parts.first().startsWith(u'-'),
                                      .degrees = parts.value(0),
                                      .minutes = parts.value(1),
                                      .seconds = parts.value(2)});
        if (text.contains(u'V'))
            QGuiApplication::clipboard()->setText(QString(text).remove(u'V'));
        // Testing a field takes time, so each text is tested on only one of them.
        requireSet(fields->at(turn % fields->size()), text);
        requireTyped(fields->at(turn % fields->size()), text);
        ++turn;
    }
    return 0;
}
