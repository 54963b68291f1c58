// SPDX-License-Identifier: MIT
#include "widgets/suggestions.h"

#include <QHBoxLayout>
#include <QLineEdit>

#include "widgets/controls.h"
#include "widgets/namebutton.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int count = 3;
constexpr int pointSize = 16; // so that three words have room beside each other

} // namespace

Suggestions::Suggestions(QLineEdit *completedField, QWidget *parent)
    : QWidget(parent)
    , field(completedField)
{
    setObjectName(u"suggestions"_s);
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins({});
    row->setSpacing(Controls::stackGap);
    for (int index = 0; index < count; ++index) {
        auto *button = new NameButton;
        button->setObjectName(u"suggestion%1"_s.arg(index));
        QFont smaller = button->font();
        smaller.setPointSize(pointSize);
        button->setFont(smaller);
        button->setFocusPolicy(Qt::TabFocus);
        button->setProperty(Controls::leadsOnProperty, false);
        button->setMinimumWidth(1);
        QSizePolicy policy = button->sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        button->setSizePolicy(policy);
        button->hide();
        connect(button, &QPushButton::clicked, this, [this, button] {
            if (button->hasFocus()) // it may be hidden now
                field->setFocus();
            field->setText(button->accessibleName());
            suggest(field->text());
        });
        row->addWidget(button, 1);
        buttons << button;
    }
    connect(field, &QLineEdit::textEdited, this, &Suggestions::suggest);
}

void Suggestions::setWords(const QStringList &known)
{
    words = known;
    suggest(QString());
}

QWidgetList Suggestions::wordWidgets() const
{
    return {buttons.cbegin(), buttons.cend()};
}

void Suggestions::suggest(const QString &typed)
{
    QStringList matching;
    for (const QString &word : std::as_const(words)) {
        if (matching.size() == count)
            break;
        if (!typed.isEmpty() && word != typed && word.startsWith(typed, Qt::CaseInsensitive) &&
            !matching.contains(word, Qt::CaseInsensitive))
            matching << word;
    }
    for (qsizetype index = 0; index < buttons.size(); ++index) {
        const QString word = matching.value(index);
        buttons.at(index)->setName(word);
        buttons.at(index)->setVisible(!word.isEmpty());
    }
}
