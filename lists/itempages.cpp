// SPDX-License-Identifier: MIT
#include <QStackedWidget>

#include "app/shopwindow.h"

void ShopWindow::buildItemsListPage()
{
    addPage(PageItemsList, QStringLiteral("itemsListPage"));
}

void ShopWindow::buildItemEditPage()
{
    addPage(PageItemEdit, QStringLiteral("itemEditPage"));
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
