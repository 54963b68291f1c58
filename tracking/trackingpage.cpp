// SPDX-License-Identifier: MIT
#include "app/shopwindow.h"

void ShopWindow::buildTrackingPage()
{
    addPage(PageTracking, QStringLiteral("trackingPage"));
}

void ShopWindow::trackingClicked() {}

void ShopWindow::startTracking() {}

void ShopWindow::stopTracking() {}

void ShopWindow::selectStoreForTracking() {}

void ShopWindow::selectCategoryForTracking() {}

void ShopWindow::rbByCategoryToggle(bool /*checked*/) {}

void ShopWindow::rbByStoreToggle(bool /*checked*/) {}
