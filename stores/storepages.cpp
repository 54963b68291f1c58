// SPDX-License-Identifier: MIT
#include <QStackedWidget>

#include "app/shopwindow.h"

using namespace Qt::StringLiterals;

void ShopWindow::buildStoresPage()
{
    addPage(PageStores, u"storesPage"_s);
}

void ShopWindow::buildStoreListPage()
{
    addPage(PageStoreList, u"storeListPage"_s);
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
