// SPDX-License-Identifier: MIT
#include "lists/shoppinglistpages.h"

#include <QBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStackedWidget>

#include "app/shopwindow.h"
#include "base/frames.h"
#include "base/recordrows.h"
#include "data/database.h"
#include "data/statements.h"
#include "lists/itempages.h"
#include "lists/liststate.h"
#include "lists/shoppingpage.h"
#include "widgets/controls.h"
#include "widgets/listrow.h"
#include "widgets/namebutton.h"
#include "widgets/pictures.h"
#include "widgets/touchlist.h"
#include "widgets/turningpage.h"

using namespace Qt::StringLiterals;

// ---- The shopping lists page ------------------------------------------------------------------

void ShopWindow::buildShoppingListsPage()
{
    TurningPage *page = addPage(PageShoppingLists, u"shoppingListsPage"_s, tr("Shopping Lists"));
    ShoppingListsPage &p = *shoppingListsPage;
    p = {Frames::makeListFrame(page, u":/img/listList.png"_s, tr("Shopping Lists"))};
    p.list->setPlaceholder(u":/img/listList.png"_s, tr("No lists yet. Press + to make one."));

    p.select = Controls::textButton(u"selectButton"_s, u":/img/commit.png"_s,
                                    Controls::pictureExtent, tr("Select"));
    p.create = Controls::pictureButton(u"createButton"_s, u":/img/plus.svg"_s,
                                       Controls::pictureExtent, tr("New list"));
    p.buttons->addWidget(p.create);
    Controls::setMain(p.select);
    p.buttons->addWidget(p.select, 1, Qt::AlignBottom);

    connect(p.list, &QListWidget::itemClicked, this, &ShopWindow::shopListItemClicked);
    connect(p.list, &QListWidget::itemActivated, this, &ShopWindow::shopListItemActivated);
    connect(p.select, &QPushButton::clicked, this, &ShopWindow::selectShoppingLists);
    connect(p.create, &QPushButton::clicked, this, &ShopWindow::listCreateClicked);
    connect(p.back, &QPushButton::clicked, this, &ShopWindow::cancelShoppingLists);
    connect(p.help, &QPushButton::clicked, this, &ShopWindow::shopListsHelp);
}

void ShopWindow::showShoppingLists()
{
    QSqlQuery query = Database::run(Statements::allLists);
    const int storeColumn = Database::column(query, "magazinid"_L1);
    Database::Names storeNames(Statements::storeName, Statements::allStores);
    shoppingListsPage->list->showRows(recordRows(query, [&](const QSqlQuery &list) {
        const int storeId = Database::integer(list, storeColumn);
        const auto store = storeId == 0 ? std::nullopt : storeNames.of(storeId);
        return store ? QVariant(*store) : QVariant();
    }));
    pageStack->setCurrentIndex(PageShoppingLists);
    editedListId = 0;
    listEditReturnPage = PageShoppingLists;
}

void ShopWindow::cancelShoppingLists()
{
    pageStack->setCurrentIndex(PageShopping);
}

void ShopWindow::shopListItemClicked(QListWidgetItem *item)
{
    if (tappedAgain(*item, editedListId, tr("Tap it again to choose it")))
        selectShoppingLists();
}

void ShopWindow::shopListItemActivated(QListWidgetItem * /*item*/)
{
    selectShoppingLists();
}

void ShopWindow::selectShoppingLists()
{
    const QListWidgetItem *row = shoppingListsPage->list->currentItem();
    if (!row) {
        warnNotSelected();
        return;
    }
    currentListId = rowId(*row);
    buyClicked();
    if (startShoppingPending)
        startShopping();
}

// ---- The list edit page -----------------------------------------------------------------------

void ShopWindow::buildListEditPage()
{
    TurningPage *page = addPage(PageListEdit, u"listEditPage"_s, tr("Shopping List Edit"));
    ListEditPage &p = *listEditPage;
    p = {Frames::makeEditFrame(page)};

    p.name = Frames::nameField(u"nameField"_s, p.save);
    p.store = new NameButton;
    p.store->setObjectName(u"storeButton"_s);
    p.store->setMaximumWidth(textWidth);
    p.state = Controls::valueLabel(u"listState"_s);
    p.state->setText(tr("unknown"));
    p.reset = new QPushButton(tr("Reset"));
    p.reset->setObjectName(u"resetButton"_s);
    Frames::addField(p.fields, tr("ShopList"), p.name);
    Frames::addField(p.fields, tr("Store"), p.store);
    Frames::addField(p.fields, tr("State"), p.state);
    p.fields->insertWidget(p.fields->count() - 1, p.reset);
    Frames::setTabOrder({p.name, p.store, p.reset, p.save, p.remove});

    connect(p.store, &QPushButton::clicked, this, &ShopWindow::shopListSelectMagazin);
    connect(p.reset, &QPushButton::clicked, this, &ShopWindow::shopListResetState);
    connect(p.save, &QPushButton::clicked, this, &ShopWindow::backClicked);
    connect(p.remove, &QPushButton::clicked, this, &ShopWindow::deleteShopList);
    connect(p.back, &QPushButton::clicked, this, &ShopWindow::cancelListCreateClicked);
    connect(p.help, &QPushButton::clicked, this, &ShopWindow::shopListEditHelp);
}

void ShopWindow::listCreateClicked()
{
    ListEditPage &p = *listEditPage;
    listEditReturnPage = pageStack->currentIndex();
    newListState = ListEmpty;
    currentStoreId = 0;
    storeIsUnknown = false;
    p.name->clear();
    p.store->setName(QString());
    p.reset->setEnabled(false);
    p.state->setText(listStateText(ListEmpty));
    showEditPage(PageListEdit, p, p.name, u":/img/plus.svg"_s, false, &ShopWindow::createShopList);
}

void ShopWindow::listPropertiesEditClicked()
{
    ListEditPage &p = *listEditPage;
    editedListId = currentListId;
    listEditReturnPage = pageStack->currentIndex();
    QSqlQuery query = Database::run(Statements::list, editedListId);
    if (query.first()) {
        currentStoreId = query.value(u"magazinid"_s).toInt();
        p.name->setText(query.value(u"name"_s).toString());
        p.store->setName(shoppingPage->store->text());
        storeIsUnknown = !Database::name(Statements::storeName, currentStoreId);
        const int state = query.value(u"state"_s).toInt();
        p.state->setText(listStateText(state));
        p.reset->setEnabled(state == ListPartlyChecked || state == ListFinished);
    }
    showEditPage(PageListEdit, p, p.name, u":/img/edit.svg"_s, true, &ShopWindow::updateShopList);
}

void ShopWindow::cancelListCreateClicked()
{
    pageStack->setCurrentIndex(listEditReturnPage);
}

/// Returns the name of the store on the list edit page, for the second column of a row. It is empty
/// if the list has no store or the store is not in the database.
QString ShopWindow::storeNameForRow() const
{
    return currentStoreId == 0 || storeIsUnknown ? QString() : listEditPage->store->text();
}

void ShopWindow::createShopList()
{
    const QString name = typedName(listEditPage->name);
    if (name.isEmpty())
        return;
    const int id = Database::newId(Statements::newListId);
    const bool isNew =
        Database::run(Statements::insertList, id, name, currentStoreId, newListState).isActive();
    // If the row of an earlier list was refused, its goods may have been stored under this id. An
    // id that is in use, which a damaged file can lead to, keeps its goods.
    if (isNew)
        Database::run(Statements::deleteGoodsOfList, id);
    currentListId = id;

    auto *row = new ListRow(name, id);
    if (currentStoreId != 0)
        row->setData(SecondColumnRole, storeNameForRow());
    shoppingListsPage->list->addItem(row);
    shoppingListsPage->list->setCurrentItem(row);
    pageStack->setCurrentIndex(PageShoppingLists);

    itemsListPage->list->clear();
    // If the list was refused, its id may be that of another one, whose goods are not shown.
    goodsWereRead = isNew;
    itemsListPage->title->setText(name);
    itemsReturnPage = PageShoppingLists;
    showMessage(tr("List Created"),
                tr("Shopping List created. But it is empty for now. "
                   "Fill it with shopping Items."),
                u":/img/info.png"_s, PageItemsList);
}

void ShopWindow::updateShopList()
{
    const QString name = typedName(listEditPage->name);
    if (name.isEmpty())
        return;
    Database::run(Statements::updateList, name, currentStoreId, editedListId);
    if (listEditReturnPage == PageShoppingLists) {
        if (QListWidgetItem *row = shoppingListsPage->list->currentItem()) {
            row->setText(name);
            row->setData(SecondColumnRole, storeNameForRow());
        }
        pageStack->setCurrentIndex(PageShoppingLists);
    } else {
        currentListId = editedListId;
        buyClicked();
    }
}

void ShopWindow::shopListSelectMagazin()
{
    viewShopsClicked();
}

void ShopWindow::shopListSelectCategory()
{
    showCategoriesClicked();
}

void ShopWindow::shopListResetState()
{
    Database::run(Statements::uncheckGoodsOfList, editedListId);
    Database::run(Statements::resetListState, editedListId);
    listEditPage->state->setText(listStateText(ListUnchecked));
    listEditPage->reset->setEnabled(false);
}

void ShopWindow::deleteShopList()
{
    askQuestion(
        tr("Deleting Shopping List"),
        tr("Are You really want to delete list named '%1' ?").arg(listEditPage->name->text()),
        &ShopWindow::deleteShopListConfirm, PageListEdit);
}

void ShopWindow::deleteShopListConfirm()
{
    Database::run(Statements::deleteGoodsOfList, currentListId);
    Database::run(Statements::deleteList, currentListId);
    if (listEditReturnPage == PageShoppingLists) {
        delete shoppingListsPage->list->currentItem();
        pageStack->setCurrentIndex(PageShoppingLists);
    } else {
        currentListId = 0;
        buyClicked();
    }
}
