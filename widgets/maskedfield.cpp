// SPDX-License-Identifier: MIT
#include "widgets/maskedfield.h"

#include <algorithm>

#include <QFocusEvent>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMouseEvent>

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

/// A mask takes digits of any script for digits, and fractions and exponents as well; none of them
/// is read as a number.
bool isForeignDigit(QChar character)
{
    return character.isNumber() && (character < u'0' || character > u'9');
}

} // namespace

MaskedField::MaskedField(const QString &mask, QWidget *parent)
    : QLineEdit(parent)
{
    setInputMask(mask);
    setInputMethodHints(Qt::ImhFormattedNumbersOnly);
    // What is dropped or pasted by the menu would be spread over the places of the mask.
    setAcceptDrops(false);
    setContextMenuPolicy(Qt::NoContextMenu);
    shownText = text();
    connect(this, &QLineEdit::textEdited, this, [this](const QString &typed) {
        // A key that the mask refuses is reported as well.
        if (typed != shownText)
            given.clear();
    });
}

void MaskedField::setValue(const QString &text)
{
    given = text;
    // Not clear(), which could be undone.
    if (!showNumber(text)) {
        setText(QString());
        setCursorPosition(0);
    }
    shownText = QLineEdit::text();
}

/// Whether the mask holds `text`; nothing changes when it does not.
bool MaskedField::showNumber(const QString &text)
{
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    if (!isNumber || text.contains(u'e', Qt::CaseInsensitive))
        return false;
    const auto decimals = std::max<qsizetype>(inputMask().size() - pointOfMask() - 1, 0);
    QString shown = text.size() - pointOf(text) - 1 > decimals
                        ? QString::number(number, 'f', static_cast<int>(decimals))
                        : text;
    const double shownNumber = shown.toDouble();
    // Blanks before the digits, so that they end at the mask's own point.
    shown.insert(hasSign(shown) ? 1 : 0,
                 QString(std::max<qsizetype>(pointOfMask() - pointOf(shown), 0), u' '));
    const QString before = displayText();
    setText(shown);
    // The mask drops what does not fit into it, wherever that stands.
    if (QLineEdit::text().toDouble() == shownNumber)
        return true;
    setText(before);
    return false;
}

QString MaskedField::value() const
{
    return given.isEmpty() ? text() : given;
}

bool MaskedField::hidesValue() const
{
    return !given.isEmpty() && isBlank();
}

bool MaskedField::isBlank() const
{
    return text().isEmpty() || text() == u"."_s;
}

qsizetype MaskedField::pointOfMask() const
{
    return pointOf(inputMask());
}

QSize MaskedField::minimumSizeHint() const
{
    const QSize size = QLineEdit::minimumSizeHint(); // for the widest letter
    const QFontMetrics metrics = fontMetrics();
    constexpr int cursor = 2; // pixels
    return {size.width() - metrics.maxWidth() +
                metrics.horizontalAdvance(QString(inputMask()).replace(u'#', u'0')) + cursor,
            size.height()};
}

/// Typing after Tab replaces what is there; Qt would mix both digit by digit.
void MaskedField::focusInEvent(QFocusEvent *event)
{
    QLineEdit::focusInEvent(event);
    if (event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason)
        selectAll();
}

/// Takes a key that means another thing here than to the mask.
bool MaskedField::takeKey(const QString &key)
{
    if (std::ranges::any_of(key, isForeignDigit))
        return true;
    if (!inputMask().startsWith(u'#') || hasSelectedText())
        return false;
    const QString digits = text();
    if ((key == u"-"_s || key == u"+"_s) && !isBlank()) {
        // Put over the first digit, it would make another number of it.
        const QString number =
            (key == u"-"_s ? key : QString()) + (hasSign(digits) ? digits.sliced(1) : digits);
        if (showNumber(number))
            emit textEdited(text());
        return true;
    }
    // One more digit than there are places would go on behind the point.
    const bool isDigit = key.size() == 1 && key.front().isDigit();
    const bool isTooMany = isDigit && wholeIsFull && cursorPosition() == pointOfMask() + 1;
    wholeIsFull = wholeIsFull ? isTooMany : isDigit && cursorPosition() == pointOfMask() - 1;
    return isTooMany;
}

void MaskedField::inputMethodEvent(QInputMethodEvent *event)
{
    QString commit = event->commitString();
    commit.replace(u',', u'.');
    QInputMethodEvent pointed(event->preeditString(), event->attributes());
    // What was composed leaves the field also when it is not taken as it was.
    if (!takeKey(commit))
        pointed.setCommitString(commit, event->replacementStart(), event->replacementLength());
    QLineEdit::inputMethodEvent(&pointed);
    event->setAccepted(pointed.isAccepted());
}

void MaskedField::keyPressEvent(QKeyEvent *event)
{
    // The hidden value is there to be erased, too.
    if (hidesValue() && (event->key() == Qt::Key_Backspace || event->key() == Qt::Key_Delete))
        given.clear();
    if (event->matches(QKeySequence::Paste)) {
        paste(QClipboard::Clipboard);
    } else if (event->text() == u","_s) {
        QKeyEvent point(QEvent::KeyPress, Qt::Key_Period, event->modifiers(), u"."_s);
        keyPressEvent(&point);
    } else if (!takeKey(event->text())) {
        QLineEdit::keyPressEvent(event);
    }
}

/// Takes a number as a whole, or not at all.
void MaskedField::paste(QClipboard::Mode mode)
{
    const QString text = QGuiApplication::clipboard()->text(mode).trimmed().replace(u',', u'.');
    if (!showNumber(text))
        return;
    given = text;
    shownText = QLineEdit::text();
    emit textEdited(shownText);
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
