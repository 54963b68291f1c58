// SPDX-License-Identifier: MIT
#include "widgets/maskedfield.h"

#include <algorithm>

#include <QFontMetrics>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMouseEvent>

using namespace Qt::StringLiterals;

MaskedField::MaskedField(const QString &mask, QWidget *parent)
    : QLineEdit(parent)
{
    setInputMask(mask);
    setInputMethodHints(Qt::ImhFormattedNumbersOnly);
    connect(this, &QLineEdit::textEdited, this, [this] { given.clear(); });
}

void MaskedField::setValue(const QString &text)
{
    given = text;
    clear();
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    if (!isNumber || text.contains(u'e', Qt::CaseInsensitive))
        return;
    const auto point = [](const QString &string) {
        const auto at = string.indexOf(u'.');
        return at < 0 ? string.size() : at;
    };
    const auto decimals = std::max<qsizetype>(inputMask().size() - point(inputMask()) - 1, 0);
    QString shown = text.size() - point(text) - 1 > decimals
                        ? QString::number(number, 'f', static_cast<int>(decimals))
                        : text;
    const double shownNumber = shown.toDouble();
    // Blanks before the digits, so that they end at the mask's own point.
    const int sign = shown.startsWith(u'-') ? 1 : 0;
    shown.insert(sign, QString(std::max<qsizetype>(point(inputMask()) - point(shown), 0), u' '));
    setText(shown);
    // The mask drops what does not fit into it, wherever that stands.
    if (QLineEdit::text().toDouble() != shownNumber)
        clear();
}

QString MaskedField::value() const
{
    return given.isEmpty() ? text() : given;
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

void MaskedField::inputMethodEvent(QInputMethodEvent *event)
{
    QString commit = event->commitString();
    commit.replace(u',', u'.');
    QInputMethodEvent pointed(event->preeditString(), event->attributes());
    pointed.setCommitString(commit, event->replacementStart(), event->replacementLength());
    QLineEdit::inputMethodEvent(&pointed);
    event->setAccepted(pointed.isAccepted());
}

void MaskedField::keyPressEvent(QKeyEvent *event)
{
    if (event->text() != u","_s) {
        QLineEdit::keyPressEvent(event);
        return;
    }
    QKeyEvent point(QEvent::KeyPress, Qt::Key_Period, event->modifiers(), u"."_s);
    QLineEdit::keyPressEvent(&point);
}

/// In an empty field the mask has places all along; typing starts with the first.
void MaskedField::mousePressEvent(QMouseEvent *event)
{
    QLineEdit::mousePressEvent(event);
    const QString digits = text();
    if (digits.isEmpty() || digits == u"."_s)
        setCursorPosition(0);
}
