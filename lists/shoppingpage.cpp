// SPDX-License-Identifier: MIT
#include "app/shopwindow.h"

using namespace Qt::StringLiterals;

void ShopWindow::buildShoppingPage()
{
    addPage(PageShopping, u"shoppingPage"_s);
}

void ShopWindow::buyClicked() {}
