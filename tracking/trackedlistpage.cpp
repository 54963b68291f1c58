// SPDX-License-Identifier: MIT
#include "app/shopwindow.h"

using namespace Qt::StringLiterals;

void ShopWindow::setupTrackedListPage()
{
    addPage(PageTrackedList, u"trackedListPage"_s);
}

void ShopWindow::viewFilteredTracking() {}

void ShopWindow::showTrackingAfterGps() {}

void ShopWindow::trackingMapShow() {}

void ShopWindow::trackingListShow() {}

void ShopWindow::mapTrackCenterByGps() {}

void ShopWindow::mapTrackCenterByStore() {}
