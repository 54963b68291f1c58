// SPDX-License-Identifier: MIT
#include <QStackedWidget>

#include "app/shopwindow.h"

using namespace Qt::StringLiterals;

void ShopWindow::buildItemsListPage()
{
    addPage(PageItemsList, u"itemsListPage"_s);
}

void ShopWindow::buildItemEditPage()
{
    addPage(PageItemEdit, u"itemEditPage"_s);
}

void ShopWindow::listEditClicked() {}

void ShopWindow::shoppingItemClicked(QListWidgetItem * /*item*/) {}

void ShopWindow::shoppingItemActivated(QListWidgetItem * /*item*/) {}

void ShopWindow::saveShoppingItemsClicked() {}

void ShopWindow::cancelShoppingItemsClicked()
{
    pageStack->setCurrentIndex(itemsReturnPage);
}

void ShopWindow::addListItemClicked() {}

void ShopWindow::fillItemEditPage() {}

void ShopWindow::addShoppingItemConfirmClicked() {}

void ShopWindow::editShoppingItemConfirmClicked() {}

void ShopWindow::addShoppingItemCancelClicked()
{
    pageStack->setCurrentIndex(PageItemsList);
}

void ShopWindow::deleteShoppingItemClicked() {}

void ShopWindow::deleteShoppingItemConfirm() {}
