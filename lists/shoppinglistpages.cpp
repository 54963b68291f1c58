// SPDX-License-Identifier: MIT
#include <QStackedWidget>

#include "app/shopwindow.h"

using namespace Qt::StringLiterals;

void ShopWindow::buildListEditPage()
{
    addPage(PageListEdit, u"listEditPage"_s);
}

void ShopWindow::buildShoppingListsPage()
{
    addPage(PageShoppingLists, u"shoppingListsPage"_s);
}

void ShopWindow::showShoppingLists() {}

void ShopWindow::cancelShoppingLists()
{
    pageStack->setCurrentIndex(PageShopping);
}

void ShopWindow::selectShoppingLists() {}

void ShopWindow::shopListItemClicked(QListWidgetItem * /*item*/) {}

void ShopWindow::shopListItemActivated(QListWidgetItem * /*item*/) {}

void ShopWindow::listCreateClicked() {}

void ShopWindow::listPropertiesEditClicked() {}

void ShopWindow::cancelListCreateClicked()
{
    pageStack->setCurrentIndex(listEditReturnPage);
}

void ShopWindow::createShopList() {}

void ShopWindow::updateShopList() {}

void ShopWindow::shopListSelectMagazin() {}

void ShopWindow::shopListSelectCategory() {}

void ShopWindow::shopListResetState() {}

void ShopWindow::deleteShopList() {}

void ShopWindow::deleteShopListConfirm() {}
