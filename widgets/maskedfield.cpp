// SPDX-License-Identifier: MIT
#include "widgets/maskedfield.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <optional>
#include <utility>

#include <QFocusEvent>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QRegularExpression>
#include <QScopedValueRollback>

using namespace Qt::StringLiterals;

namespace {

/// Where the point of a number is, or would be.
qsizetype pointOf(const QString &number)
{
    const auto at = number.indexOf(u'.');
    return at < 0 ? number.size() : at;
}

bool hasSign(const QString &number)
{
    return number.startsWith(u'-') || number.startsWith(u'+');
}

/// Returns whether `key` can be typed in a number.
bool isPartOfNumber(const QString &key)
{
    static const QString parts = u"0123456789.,-+"_s;
    return key.size() == 1 && parts.contains(key);
}

/// A mask accepts digits of any script, and fractions and exponents as well. None of them is read
/// as a number.
bool isForeignDigit(QChar character)
{
    return character.isNumber() && (character < u'0' || character > u'9');
}

/// Returns `text` with the digits and the minus sign of other scripts replaced.
QString withPlainDigits(QString text)
{
    for (QChar &character : text) {
        if (character.isDigit())
            character = QChar(u'0' + character.digitValue());
        else if (character == u'\u2212') // the minus sign of typography
            character = u'-';
    }
    return text;
}

/// Splits numbers like "50.1, 14.2" or "50,1; 14,2". Returns nothing if `text` is not such a pair.
std::optional<std::pair<QString, QString>> splitPair(const QString &text)
{
    static const QString number = u"([-+]?[0-9]+(?:%1[0-9]+)?)"_s;
    static const QString pattern = u"%1(?:%2)%1"_s;
    for (const auto &[point, separator] :
         {std::pair(u"[.]"_s, u"\\s*[,;]\\s*|\\s+"_s), std::pair(u","_s, u"\\s*;\\s*|,?\\s+"_s)}) {
        const QRegularExpression pair(
            QRegularExpression::anchoredPattern(pattern.arg(number.arg(point), separator)));
        const QRegularExpressionMatch match = pair.match(text);
        if (match.hasMatch()) {
            return std::pair(match.captured(1).replace(u',', u'.'),
                             match.captured(2).replace(u',', u'.'));
        }
    }
    return {};
}

} // namespace

MaskedField::MaskedField(const QString &inputMask, QWidget *parent)
    : QLineEdit(parent)
    , mask(inputMask)
{
    setInputMask(mask);
    setInputMethodHints(Qt::ImhFormattedNumbersOnly);
    // What is dropped or pasted by the menu would be spread over the places of the mask.
    setAcceptDrops(false);
    setContextMenuPolicy(Qt::NoContextMenu);
    knownText = text();
    // Qt emits textEdited() before textChanged().
    connect(this, &QLineEdit::textEdited, this, &MaskedField::takeTyped);
    connect(this, &QLineEdit::textChanged, this, &MaskedField::takeForeignText);
}

void MaskedField::takeTyped(const QString &typed)
{
    // A key that the mask refuses is reported as well.
    if (typed == knownText)
        return;
    given.clear();
    knownText = typed;
}

/// Assistive technology calls QLineEdit::setText().
void MaskedField::takeForeignText(const QString &text)
{
    if (!isShowing && text != knownText)
        setValue(isBlank() ? QString() : withPlainDigits(text));
}

void MaskedField::setValue(const QString &text)
{
    given = text;
    sinceRefused.invalidate();
    if (!showNumber(text)) {
        showBlank();
        bool isNumber = false;
        if (std::isfinite(text.toDouble(&isNumber)) && isNumber) {
            const QScopedValueRollback showing(isShowing, true);
            setInputMask(QString());
            setText(text);
        }
    }
    knownText = QLineEdit::text();
}

void MaskedField::refuse()
{
    setValue(QString());
    sinceRefused.start();
}

void MaskedField::showBlank()
{
    const QScopedValueRollback showing(isShowing, true);
    // Not clear(), which could be undone.
    setText(QString());
    if (exceedsMask())
        setInputMask(mask);
    setCursorPosition(0);
}

/// Returns whether the mask can hold `text`. If not, nothing changes.
bool MaskedField::showNumber(const QString &text)
{
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    if (!isNumber || !std::isfinite(number) || text.contains(u'e', Qt::CaseInsensitive))
        return false;
    const auto decimals = std::max<qsizetype>(mask.size() - pointOfMask() - 1, 0);
    QString shown = text.size() - pointOf(text) - 1 > decimals
                        ? QString::number(number, 'f', static_cast<int>(decimals))
                        : text;
    const double shownNumber = shown.toDouble();
    // Blanks before the digits, so that they end at the mask's own point.
    shown.insert(hasSign(shown) ? 1 : 0,
                 QString(std::max<qsizetype>(pointOfMask() - pointOf(shown), 0), u' '));
    const QScopedValueRollback showing(isShowing, true);
    const QString before = displayText();
    const bool exceeded = exceedsMask();
    if (exceeded)
        setInputMask(mask);
    setText(shown);
    // The mask drops what does not fit into it, wherever that is.
    if (QLineEdit::text().toDouble() == shownNumber)
        return true;
    if (exceeded)
        setInputMask(QString());
    setText(before);
    return false;
}

QString MaskedField::value() const
{
    return given.isEmpty() ? text() : given;
}

bool MaskedField::exceedsMask() const
{
    return inputMask().isEmpty();
}

bool MaskedField::isBlank() const
{
    return text().isEmpty() || text() == u"."_s;
}

qsizetype MaskedField::pointOfMask() const
{
    return pointOf(mask);
}

QSize MaskedField::minimumSizeHint() const
{
    const QSize size = QLineEdit::minimumSizeHint(); // for the widest letter
    const QFontMetrics metrics = fontMetrics();
    constexpr int cursor = 2; // pixels
    return {size.width() - metrics.maxWidth() +
                metrics.horizontalAdvance(QString(mask).replace(u'#', u'0')) + cursor,
            size.height()};
}

/// Typing after Tab replaces what is there; Qt would mix both digit by digit.
void MaskedField::focusInEvent(QFocusEvent *event)
{
    QLineEdit::focusInEvent(event);
    if (event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason)
        selectAll();
}

/// Aligns at the point of the mask what was typed with gaps, like "5 .25".
void MaskedField::focusOutEvent(QFocusEvent *event)
{
    QLineEdit::focusOutEvent(event);
    // Typing goes on where it was when the window is active again.
    const bool isLeft =
        event->reason() != Qt::ActiveWindowFocusReason && event->reason() != Qt::PopupFocusReason;
    if (isLeft && given.isEmpty() && !isBlank()) {
        showNumber(text());
        knownText = text();
    }
}

/// Returns whether `key` continues a number that was refused.
bool MaskedField::isIgnoredAfterRefusal(const QString &key)
{
    constexpr std::chrono::milliseconds longestPause(2000);
    const bool isPart = key.size() == 1 && (key.front().isDigit() || key == u"."_s);
    if (!sinceRefused.isValid() || !isPart ||
        std::chrono::milliseconds(sinceRefused.elapsed()) > longestPause) {
        sinceRefused.invalidate();
        return false;
    }
    sinceRefused.start();
    return true;
}

/// Handles a key that has another meaning here than for the mask. Returns whether it did.
bool MaskedField::takeKey(const QString &key)
{
    if (key.isEmpty()) // a modifier key, or a preedit text
        return false;
    if (exceedsMask()) // without the mask, nothing else would refuse a letter
        return key.front().isPrint();
    if (std::ranges::any_of(key, isForeignDigit) || isIgnoredAfterRefusal(key))
        return true;
    if (hasSelectedText())
        return false;
    const bool isDigit = key.size() == 1 && key.front().isDigit();
    const bool isWholeNumber = pointOfMask() == mask.size();
    if (isWholeNumber && isDigit && cursorPosition() == mask.size()) {
        emit tooManyDigits();
        return true;
    }
    if (!mask.startsWith(u'#'))
        return false;
    const QString digits = text();
    if ((key == u"-"_s || key == u"+"_s) && !isBlank()) {
        // Typed over the first digit, it would make another number of it.
        const QString number =
            (key == u"-"_s ? key : QString()) + (hasSign(digits) ? digits.sliced(1) : digits);
        if (showNumber(number))
            emit textEdited(text());
        return true;
    }
    // Another digit than the mask has places for would continue behind the point.
    const bool isTooMany = isDigit && wholeIsFull && cursorPosition() == pointOfMask() + 1;
    wholeIsFull = wholeIsFull ? isTooMany : isDigit && cursorPosition() == pointOfMask() - 1;
    if (isTooMany)
        emit tooManyDigits();
    return isTooMany;
}

void MaskedField::inputMethodEvent(QInputMethodEvent *event)
{
    QString commit = event->commitString();
    commit.replace(u',', u'.');
    const bool edits = event->replacementLength() > 0 || !event->preeditString().isEmpty();
    if (exceedsMask() && (edits || isPartOfNumber(commit)))
        setValue(QString());
    QInputMethodEvent pointed(event->preeditString(), event->attributes());
    // What was composed leaves the field also when it is not accepted as it was.
    if (!takeKey(commit))
        pointed.setCommitString(commit, event->replacementStart(), event->replacementLength());
    QLineEdit::inputMethodEvent(&pointed);
    event->setAccepted(pointed.isAccepted());
}

void MaskedField::keyPressEvent(QKeyEvent *event)
{
    static constexpr std::array erasing{QKeySequence::Cut,
                                        QKeySequence::Delete,
                                        QKeySequence::DeleteEndOfLine,
                                        QKeySequence::DeleteCompleteLine,
                                        QKeySequence::DeleteStartOfWord,
                                        QKeySequence::DeleteEndOfWord};
    const bool erases =
        event->key() == Qt::Key_Backspace || event->key() == Qt::Key_Delete ||
        std::ranges::any_of(erasing, [event](auto key) { return event->matches(key); });
    const QString typed = event->text();
    const bool isShortcut = event->modifiers().testFlag(Qt::ControlModifier);
    const bool replaces = !isShortcut && isPartOfNumber(typed);
    if (exceedsMask() && (erases || replaces)) {
        // A part of such a number would be another one, so it is replaced as a whole.
        if (event->matches(QKeySequence::Cut))
            copy();
        setValue(QString());
        if (erases)
            return;
    }
    if (event->matches(QKeySequence::Paste)) {
        paste(QClipboard::Clipboard);
    } else if (typed == u","_s) {
        QKeyEvent point(QEvent::KeyPress, Qt::Key_Period, event->modifiers(), u"."_s);
        keyPressEvent(&point);
    } else if (isShortcut || !takeKey(typed)) {
        QLineEdit::keyPressEvent(event);
    }
}

/// Accepts a number as a whole, or not at all.
void MaskedField::paste(QClipboard::Mode mode)
{
    const QString text = withPlainDigits(QGuiApplication::clipboard()->text(mode).trimmed());
    const QString number = QString(text).replace(u',', u'.');
    static const QRegularExpression decimal(
        QRegularExpression::anchoredPattern(u"[-+]?[0-9]{1,3}([.][0-9]*)?"_s));
    if (decimal.match(number).hasMatch()) {
        setValue(number);
        emit textEdited(knownText);
    } else if (const auto pair = splitPair(text)) {
        emit pairPasted(pair->first, pair->second);
    }
}

/// In an empty field the mask has places all along; typing starts with the first.
void MaskedField::mousePressEvent(QMouseEvent *event)
{
    QLineEdit::mousePressEvent(event);
    if (isBlank())
        setCursorPosition(0);
}

void MaskedField::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::MiddleButton)
        paste(QClipboard::Selection);
    else
        QLineEdit::mouseReleaseEvent(event);
}
