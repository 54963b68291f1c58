// SPDX-License-Identifier: MIT
#include "base/frames.h"

#include <QBoxLayout>
#include <QCoreApplication>
#include <QFontMetrics>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>

#include "widgets/controls.h"
#include "widgets/pictures.h"
#include "widgets/touchlist.h"
#include "widgets/trlistdelegate.h"
#include "widgets/turningpage.h"
#include "widgets/wraplabel.h"

using namespace Qt::StringLiterals;

namespace {

// Device-independent pixels.
constexpr int fieldGap = 12;
constexpr int leastTitleCharacters = 8;
constexpr int leastFieldCharacters = 9;

/// A tool of a header: its picture is a tile by itself.
QPushButton *toolButton(const QString &objectName, const QString &picture, int extent,
                        const QString &name)
{
    QPushButton *button = Controls::pictureButton(objectName, picture, extent, name);
    button->setFlat(true);
    return button;
}

QPushButton *helpButton(int extent)
{
    return toolButton(u"helpButton"_s, u":/img/question.png"_s, extent,
                      QCoreApplication::translate("ShopWindow", "Help"));
}

QPushButton *backButton(QWidget *page, int extent)
{
    QPushButton *button = toolButton(u"backButton"_s, u":/img/back.svg"_s, extent,
                                     QCoreApplication::translate("ShopWindow", "Back"));
    Frames::pressOnEscape(page, button);
    return button;
}

/// Adds a toolbar and a box for contents to `page`.
void makeToolbar(ToolbarFrame &frame, TurningPage *page)
{
    frame.picture = Controls::pictureLabel(u"picture"_s);
    frame.help = helpButton(Controls::pictureExtent);
    frame.back = backButton(page, Controls::pictureExtent);
    auto *toolbar = new QVBoxLayout;
    frame.toolbar = toolbar;
    toolbar->addWidget(frame.picture);
    toolbar->setSpacing(Controls::toolGap);
    toolbar->addStretch();
    toolbar->addWidget(frame.help);
    toolbar->addStretch();
    toolbar->addWidget(frame.back);

    QFrame *line = Controls::separator(QFrame::VLine);
    frame.contents = new QHBoxLayout;
    frame.contents->setSpacing(Controls::besideSeparator);
    auto *box = new QHBoxLayout(page);
    Controls::setPageSpacing(box);
    box->addLayout(toolbar);
    box->addWidget(line);
    box->addLayout(frame.contents, 1);
    page->turningBoxes = {.alongWidth = {box, frame.contents},
                          .acrossWidth = {toolbar},
                          .sideBySide = {},
                          .separators = {line}};
}

} // namespace

ListFrame Frames::makeListFrame(TurningPage *page, const QString &picture, const QString &title)
{
    ListFrame frame;
    frame.picture = Controls::pictureLabel(u"picture"_s);
    frame.picture->setPicture(picture, listPictureExtent);
    auto *label = new WrapLabel;
    frame.title = label;
    label->setObjectName(u"title"_s);
    label->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    label->setText(title);
    Controls::setBold(label);
    // On a narrow screen the buttons leave little room for the title.
    label->setLeastCharacters(leastTitleCharacters);
    frame.help = helpButton(listToolExtent);
    frame.back = backButton(page, listToolExtent);
    frame.header = new QHBoxLayout;
    frame.header->addWidget(frame.picture);
    frame.header->addWidget(frame.title, 1);
    frame.header->addWidget(frame.back);
    frame.header->addWidget(frame.help);

    frame.list = new TouchList;
    page->firstFocus = frame.list;
    frame.list->setObjectName(u"list"_s);
    frame.list->setAccessibleName(page->accessibleName());
    frame.list->setFont(page->font()); // for what measures it before it has a page
    frame.list->setItemDelegate(new TrListDelegate(frame.list));
    auto *contents = new QVBoxLayout;
    contents->setSpacing(Controls::toolGap);
    contents->addLayout(frame.header);
    contents->addWidget(frame.list, 1);

    frame.buttons = new QVBoxLayout;
    frame.buttons->setSpacing(Controls::stackGap);
    auto *box = new QHBoxLayout(page);
    Controls::setPaneSpacing(box);
    box->addLayout(contents, 1);
    box->addLayout(frame.buttons);
    page->turningBoxes = {.alongWidth = {box}, .acrossWidth = {frame.buttons}};
    return frame;
}

ToolbarFrame Frames::makeToolbarFrame(TurningPage *page)
{
    ToolbarFrame frame;
    makeToolbar(frame, page);
    return frame;
}

EditFrame Frames::makeEditFrame(TurningPage *page)
{
    EditFrame frame;
    makeToolbar(frame, page);

    frame.fields = addFields(frame.contents);
    frame.save =
        Controls::textButton(u"saveButton"_s, u":/img/commit.png"_s, Controls::pictureExtent,
                             QCoreApplication::translate("ShopWindow", "Save"));
    frame.remove =
        Controls::textButton(u"deleteButton"_s, u":/img/trash.svg"_s, Controls::pictureExtent,
                             QCoreApplication::translate("ShopWindow", "Delete"));
    frame.remove->setEnabled(false);
    Controls::setMain(frame.save);
    auto *buttons = new QVBoxLayout;
    buttons->setSpacing(Controls::stackGap);
    // One above the other they are far apart, and side by side as wide as each other.
    buttons->addWidget(frame.save, 1, Qt::AlignTop);
    buttons->addWidget(frame.remove, 1, Qt::AlignBottom);

    QFrame *line = Controls::separator(QFrame::VLine);
    frame.contents->addWidget(line);
    frame.contents->addLayout(buttons);
    page->turningBoxes.acrossWidth << buttons;
    page->turningBoxes.separators << line;
    return frame;
}

QVBoxLayout *Frames::addSheet(QBoxLayout *contents)
{
    QFrame *sheet = Controls::sheet();
    contents->addWidget(sheet, 1);
    return Controls::layOutSheet(sheet);
}

QVBoxLayout *Frames::addFields(QBoxLayout *contents)
{
    QVBoxLayout *fields = addSheet(contents);
    fields->setSpacing(fieldGap);
    // The fields begin at the top, where no keyboard on the screen covers them.
    fields->addStretch();
    return fields;
}

void Frames::addField(QVBoxLayout *fields, const QString &caption, QWidget *field)
{
    auto *row = new QVBoxLayout;
    row->addWidget(field);
    addField(fields, caption, field, row);
}

void Frames::addField(QVBoxLayout *fields, const QString &caption, QWidget *field, QLayout *row)
{
    QLabel *label = Controls::caption(caption);
    label->setBuddy(field); // names the field for a screen reader
    auto *box = new QVBoxLayout;
    box->setSpacing(Controls::captionGap);
    box->addWidget(label);
    box->addLayout(row);
    fields->insertLayout(fields->count() - 1, box); // above the stretch
}

void Frames::addButtons(TurningPage *page, const ToolbarFrame &frame,
                        const QList<QPushButton *> &buttons)
{
    QFrame *line = Controls::separator(QFrame::VLine);
    auto *stack = new QVBoxLayout;
    Controls::addStack(stack, buttons);
    frame.contents->addWidget(line);
    frame.contents->addLayout(stack);
    page->turningBoxes.separators << line;
}

void Frames::pressOnEscape(QWidget *page, QPushButton *button)
{
    // The shortcut is inactive while the page is hidden.
    auto *escape = new QShortcut(Qt::Key_Escape, page);
    QObject::connect(escape, &QShortcut::activated, button, &QPushButton::click);
}

void Frames::setTabOrder(const QList<QWidget *> &widgets)
{
    for (qsizetype index = 1; index < widgets.size(); ++index)
        QWidget::setTabOrder(widgets.at(index - 1), widgets.at(index));
}

QString Frames::withoutHalfEmoji(QString name)
{
    if (!name.isEmpty() && name.back().isHighSurrogate())
        name.chop(1);
    return name;
}

QLineEdit *Frames::nameField(const QString &objectName, QPushButton *save)
{
    auto *field = new QLineEdit;
    field->setObjectName(objectName);
    field->setMaxLength(longestName);
    // Enough of a longer name is visible to continue typing.
    field->setMinimumWidth(leastFieldCharacters * QFontMetrics(save->font()).averageCharWidth());
    // The maximum length may split an emoji, and half an emoji would break the statement it is
    // inserted into.
    QObject::connect(field, &QLineEdit::textChanged, field, [field](const QString &text) {
        const QString whole = withoutHalfEmoji(text);
        if (whole != text)
            field->setText(whole);
    });
    QObject::connect(field, &QLineEdit::returnPressed, save, &QPushButton::click);
    return field;
}
