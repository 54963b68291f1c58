// SPDX-License-Identifier: MIT
#include "app/shopwindow.h"

using namespace Qt::StringLiterals;

void ShopWindow::buildDoShoppingPage()
{
    addPage(PageDoShopping, u"doShoppingPage"_s);
}

void ShopWindow::startShopping() {}

void ShopWindow::doShoppingItemClicked(QListWidgetItem * /*item*/) {}

void ShopWindow::doShoppingItemActivated(QListWidgetItem * /*item*/) {}

void ShopWindow::setAllMarks() {}

void ShopWindow::clearMarks() {}

void ShopWindow::doShoppingOkClicked() {}
