// SPDX-License-Identifier: MIT
#include <QStackedWidget>

#include "app/shopwindow.h"

using namespace Qt::StringLiterals;

void ShopWindow::buildStoreEditPage()
{
    addPage(PageStoreEdit, u"storeEditPage"_s);
}

void ShopWindow::addShopClicked() {}

void ShopWindow::editShopClicked() {}

void ShopWindow::addShopConfirmClicked() {}

void ShopWindow::editShopConfirmClicked() {}

void ShopWindow::addShopCancelClicked()
{
    pageStack->setCurrentIndex(storeEditReturnPage);
}

void ShopWindow::deleteShopClicked() {}

void ShopWindow::deleteShopConfirm() {}
