// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QStringList>
#include <QWidget>

class NameButton;
class QLineEdit;

/// A row of words that complete what is being typed in a field. A tap on a word, or Enter when the
/// focus has moved there by keys, puts it into the field. The row always takes its room, so that
/// nothing moves while typing. It covers nothing, and a tap leaves the focus where it is.
class Suggestions : public QWidget
{
    Q_OBJECT

public:
    /// `field` must live as long as this object.
    explicit Suggestions(QLineEdit *field, QWidget *parent = nullptr);

    /// Sets the words to choose from, the best ones first.
    void setWords(const QStringList &known);

    /// Returns the widgets of the words from left to right, for the tab order of the page.
    QWidgetList wordWidgets() const;

private:
    void suggest(const QString &typed);

    QLineEdit *field;
    QStringList words;
    QList<NameButton *> buttons;
};
