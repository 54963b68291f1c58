// SPDX-License-Identifier: MIT
#include "app/shopwindow.h"

void ShopWindow::buildDoShoppingPage()
{
    addPage(PageDoShopping, QStringLiteral("doShoppingPage"));
}

void ShopWindow::startShopping() {}

void ShopWindow::doShoppingItemClicked(QListWidgetItem * /*item*/) {}

void ShopWindow::doShoppingItemActivated(QListWidgetItem * /*item*/) {}

void ShopWindow::setAllMarks() {}

void ShopWindow::clearMarks() {}

void ShopWindow::doShoppingOkClicked() {}
