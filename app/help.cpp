// SPDX-License-Identifier: MIT
#include "app/shopwindow.h"

void ShopWindow::mainPageHelp() {}

void ShopWindow::mainPageAbout() {}

void ShopWindow::optionsPageHelp() {}

void ShopWindow::trackingPageHelp() {}

void ShopWindow::trackingListHelp() {}

void ShopWindow::doShoppingHelp() {}

void ShopWindow::shopListPageHelp() {}

void ShopWindow::shopListsHelp() {}

void ShopWindow::shopListEditHelp() {}

void ShopWindow::editItemsListHelp() {}

void ShopWindow::addItemHelp() {}

void ShopWindow::shopsHelp() {}

void ShopWindow::magazinListHelp() {}

void ShopWindow::addShopHelp() {}

void ShopWindow::gpsEnterHelp() {}

void ShopWindow::categoryListHelp() {}

void ShopWindow::addCategoryHelp() {}
