// SPDX-License-Identifier: MIT
#include "app/shopwindow.h"

void ShopWindow::buildShoppingPage()
{
    addPage(PageShopping, QStringLiteral("shoppingPage"));
}

void ShopWindow::buyClicked() {}
