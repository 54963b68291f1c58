// SPDX-License-Identifier: MIT
#include <QStackedWidget>

#include "app/shopwindow.h"

void ShopWindow::buildStoreEditPage()
{
    addPage(PageStoreEdit, QStringLiteral("storeEditPage"));
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
