// SPDX-License-Identifier: MIT
#include <QStackedWidget>

#include "app/shopwindow.h"

void ShopWindow::buildStoresPage()
{
    addPage(PageStores, QStringLiteral("storesPage"));
}

void ShopWindow::buildStoreListPage()
{
    addPage(PageStoreList, QStringLiteral("storeListPage"));
}

void ShopWindow::shopsClicked() {}

void ShopWindow::viewShopsClicked() {}

void ShopWindow::selectShopClicked() {}

void ShopWindow::shopItemActivated(QListWidgetItem * /*item*/) {}

void ShopWindow::shopItemClicked(QListWidgetItem * /*item*/) {}

void ShopWindow::cancelViewShopsClicked()
{
    pageStack->setCurrentIndex(storeListReturnPage);
}
