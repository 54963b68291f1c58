// SPDX-License-Identifier: MIT
#include "app/shopwindow.h"

using namespace Qt::StringLiterals;

void ShopWindow::buildTrackingPage()
{
    addPage(PageTracking, u"trackingPage"_s);
}

void ShopWindow::trackingClicked() {}

void ShopWindow::startTracking() {}

void ShopWindow::stopTracking() {}

void ShopWindow::selectStoreForTracking() {}

void ShopWindow::selectCategoryForTracking() {}

void ShopWindow::rbByCategoryToggle(bool /*checked*/) {}

void ShopWindow::rbByStoreToggle(bool /*checked*/) {}
