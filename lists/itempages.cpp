// SPDX-License-Identifier: MIT
#include "lists/itempages.h"

#include <algorithm>
#include <chrono>

#include <QBoxLayout>
#include <QDeadlineTimer>
#include <QHash>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSet>
#include <QSpinBox>
#include <QSqlError>
#include <QStackedWidget>

#include "app/shopwindow.h"
#include "base/frames.h"
#include "base/recordrows.h"
#include "data/database.h"
#include "data/statements.h"
#include "widgets/controls.h"
#include "widgets/listrow.h"
#include "widgets/pictures.h"
#include "widgets/suggestions.h"
#include "widgets/touchlist.h"
#include "widgets/turningpage.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// The minimum width of a step button for a finger, in device-independent pixels. A style may make
/// the button wider.
constexpr int leastStepWidth = 56;

/// Creates a button that steps the amount. It never takes the focus, because on a keyboard the
/// arrow keys step the amount.
QPushButton *stepButton(const QString &objectName, const QString &sign, const QString &name)
{
    auto *button = new QPushButton(sign);
    button->setObjectName(objectName);
    button->setAccessibleName(name);
    button->setMinimumWidth(leastStepWidth);
    button->setAutoRepeat(true);
    button->setFocusPolicy(Qt::NoFocus);
    return button;
}

} // namespace

// ---- The items list page ----------------------------------------------------------------------

void ShopWindow::buildItemsListPage()
{
    TurningPage *page = addPage(PageItemsList, u"itemsListPage"_s, tr("Items List"));
    ItemsListPage &p = *itemsListPage;
    p = {Frames::makeListFrame(page, u":/img/shopping-cart.svg"_s, QString())};
    p.list->setPlaceholder(u":/img/shopping-cart.svg"_s, tr("No goods yet. Press + to add one."));

    p.add = Controls::pictureButton(u"addButton"_s, u":/img/plus.svg"_s, Controls::pictureExtent,
                                    tr("New item"));
    p.ok = Controls::textButton(u"okButton"_s, u":/img/commit.png"_s, Controls::pictureExtent,
                                tr("OK"));
    p.buttons->addWidget(p.add);
    Controls::setMain(p.ok);
    p.buttons->addWidget(p.ok, 1, Qt::AlignBottom);

    connect(p.list, &QListWidget::itemClicked, this, &ShopWindow::shoppingItemClicked);
    connect(p.list, &QListWidget::itemActivated, this, &ShopWindow::shoppingItemActivated);
    connect(p.ok, &QPushButton::clicked, this, &ShopWindow::saveShoppingItemsClicked);
    connect(p.add, &QPushButton::clicked, this, &ShopWindow::addListItemClicked);
    connect(p.back, &QPushButton::clicked, this, &ShopWindow::cancelShoppingItemsClicked);
    connect(p.help, &QPushButton::clicked, this, &ShopWindow::editItemsListHelp);
}

/// Creates a row with the name and the amount of each good in `query`. The caller owns the rows.
QList<QListWidgetItem *> ShopWindow::goodsRows(QSqlQuery &query)
{
    const int amountColumn = Database::column(query, "amount"_L1);
    return recordRows(query, [amountColumn](const QSqlQuery &good) {
        return Database::integer(good, amountColumn);
    });
}

void ShopWindow::listEditClicked()
{
    itemsListPage->title->setText(
        Database::name(Statements::listName, currentListId).value_or(QString()));
    QSqlQuery query = Database::run(Statements::goodsOfList, currentListId);
    itemsListPage->list->showRows(goodsRows(query));
    goodsWereRead = !query.lastError().isValid();
    itemsReturnPage = pageStack->currentIndex();
    pageStack->setCurrentIndex(PageItemsList);
}

void ShopWindow::shoppingItemClicked(QListWidgetItem *item)
{
    if (tappedAgain(*item, lastTappedItemId, tr("Tap it again to edit it")))
        shoppingItemActivated(item);
}

void ShopWindow::shoppingItemActivated(QListWidgetItem *item)
{
    lastTappedItemId = rowId(*item);
    fillItemEditPage();
}

void ShopWindow::saveShoppingItemsClicked()
{
    const QListWidget *list = itemsListPage->list;
    QSet<int> kept;
    for (int index = 0; index < list->count(); ++index)
        kept << rowId(*list->item(index));
    QList<int> deleted;
    QSqlQuery query = Database::run(Statements::goodIdsOfList, currentListId);
    // If the goods could not be read, the page has no rows for them, although the user has not
    // deleted them.
    while (goodsWereRead && query.next()) {
        const int id = query.value(u"id"_s).toInt();
        if (!kept.contains(id))
            deleted << id;
    }
    query.finish();
    for (const int id : deleted)
        Database::run(Statements::deleteGood, id);

    for (int index = 0; index < list->count(); ++index) {
        const QListWidgetItem &row = *list->item(index);
        const int amount = row.data(SecondColumnRole).toInt();
        if (rowId(row) != 0) {
            Database::run(Statements::updateGood, row.text(), amount, rowId(row));
        } else {
            Database::run(Statements::insertGood, Database::newId(Statements::newGoodId),
                          row.text(), currentListId, amount);
        }
    }
    updateListState();
    pageStack->setCurrentIndex(itemsReturnPage);
}

void ShopWindow::cancelShoppingItemsClicked()
{
    pageStack->setCurrentIndex(itemsReturnPage);
}

// ---- The item edit page -----------------------------------------------------------------------

void ShopWindow::buildItemEditPage()
{
    TurningPage *page = addPage(PageItemEdit, u"itemEditPage"_s, tr("Item Add/Edit"));
    ItemEditPage &p = *itemEditPage;
    p = {Frames::makeEditFrame(page)};

    p.name = Frames::nameField(u"nameField"_s, p.save);
    p.name->setAlignment(Qt::AlignCenter);
    p.amount = new QSpinBox;
    p.amount->setObjectName(u"amountField"_s);
    p.amount->setAccessibleName(tr("Amount"));
    p.amount->setMinimum(1);
    p.amount->setAlignment(Qt::AlignCenter);
    p.suggestions = new Suggestions(p.name);
    auto *name = new QVBoxLayout;
    name->addWidget(p.name);
    name->addWidget(p.suggestions);
    Frames::addField(p.fields, tr("Name"), p.name, name);
    // The arrows of a spin box are too small for a finger.
    p.amount->setButtonSymbols(QAbstractSpinBox::NoButtons);
    QPushButton *less = stepButton(u"lessButton"_s, u"−"_s, tr("Less"));
    QPushButton *more = stepButton(u"moreButton"_s, u"+"_s, tr("More"));
    auto *amount = new QHBoxLayout;
    amount->addWidget(less);
    amount->addWidget(p.amount, 1);
    amount->addWidget(more);
    Frames::addField(p.fields, tr("Amount"), p.amount, amount);
    connect(less, &QPushButton::clicked, p.amount, &QSpinBox::stepDown);
    connect(more, &QPushButton::clicked, p.amount, &QSpinBox::stepUp);
    Frames::setTabOrder(QWidgetList{p.name} + p.suggestions->wordWidgets() +
                        QWidgetList{p.amount, p.save, p.remove});

    connect(p.remove, &QPushButton::clicked, this, &ShopWindow::deleteShoppingItemClicked);
    connect(p.back, &QPushButton::clicked, this, &ShopWindow::addShoppingItemCancelClicked);
    connect(p.help, &QPushButton::clicked, this, &ShopWindow::addItemHelp);
}

/// Returns the names of goods of all lists, the most frequent ones first. It stops reading after a
/// while, so that the page opens at once however many there are.
QStringList ShopWindow::knownGoods()
{
    constexpr auto longestReading = 20ms;
    const Database::ShorterWait shorter(longestReading);
    const QDeadlineTimer deadline(longestReading);
    QHash<QString, int> counts;
    QSqlQuery lists = Database::run(Statements::allLists);
    while (!deadline.hasExpired() && lists.next()) {
        QSqlQuery goods = Database::run(Statements::goodsOfList, lists.value(u"id"_s).toInt());
        const int nameColumn = Database::column(goods, "name"_L1);
        while (!deadline.hasExpired() && goods.next())
            ++counts[goods.value(nameColumn).toString()];
    }
    QStringList names = counts.keys();
    std::ranges::sort(names, [&counts](const QString &one, const QString &other) {
        const int frequency = counts[one] - counts[other];
        return frequency == 0 ? one < other : frequency > 0;
    });
    return names;
}

void ShopWindow::addListItemClicked()
{
    ItemEditPage &p = *itemEditPage;
    p.suggestions->setWords(knownGoods());
    p.name->clear();
    p.amount->setValue(1);
    showEditPage(PageItemEdit, p, p.name, u":/img/itemAdd.png"_s, false,
                 &ShopWindow::addShoppingItemConfirmClicked);
}

void ShopWindow::fillItemEditPage()
{
    ItemEditPage &p = *itemEditPage;
    p.suggestions->setWords(knownGoods());
    if (const QListWidgetItem *row = itemsListPage->list->currentItem()) {
        p.name->setText(row->text());
        p.amount->setValue(row->data(SecondColumnRole).toInt());
    }
    showEditPage(PageItemEdit, p, p.name, u":/img/itemEdit.png"_s, true,
                 &ShopWindow::editShoppingItemConfirmClicked);
}

void ShopWindow::addShoppingItemConfirmClicked()
{
    const QString name = typedName(itemEditPage->name);
    if (name.isEmpty())
        return;
    auto *row = new ListRow(name, 0, itemEditPage->amount->value());
    itemsListPage->list->addItem(row);
    pageStack->setCurrentIndex(PageItemsList);
    itemsListPage->list->setCurrentItem(row);
}

void ShopWindow::editShoppingItemConfirmClicked()
{
    const QString name = typedName(itemEditPage->name);
    if (name.isEmpty())
        return;
    if (QListWidgetItem *row = itemsListPage->list->currentItem()) {
        row->setText(name);
        row->setData(SecondColumnRole, itemEditPage->amount->value());
    }
    pageStack->setCurrentIndex(PageItemsList);
}

void ShopWindow::addShoppingItemCancelClicked()
{
    pageStack->setCurrentIndex(PageItemsList);
}

void ShopWindow::deleteShoppingItemClicked()
{
    askQuestion(tr("Deleting List Item"),
                tr("Are You really want to delete item '%1' ?").arg(itemEditPage->name->text()),
                &ShopWindow::deleteShoppingItemConfirm, PageItemEdit);
}

void ShopWindow::deleteShoppingItemConfirm()
{
    delete itemsListPage->list->currentItem();
    pageStack->setCurrentIndex(PageItemsList);
}
