// SPDX-License-Identifier: MIT
#include "app/shopwindow.h"

void ShopWindow::setupTrackedListPage()
{
    addPage(PageTrackedList, QStringLiteral("trackedListPage"));
}

void ShopWindow::viewFilteredTracking() {}

void ShopWindow::showTrackingAfterGps() {}

void ShopWindow::trackingMapShow() {}

void ShopWindow::trackingListShow() {}

void ShopWindow::mapTrackCenterByGps() {}

void ShopWindow::mapTrackCenterByStore() {}
