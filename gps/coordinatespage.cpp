// SPDX-License-Identifier: MIT
#include <QStackedWidget>

#include "app/shopwindow.h"

using namespace Qt::StringLiterals;

void ShopWindow::buildCoordinatesPage()
{
    addPage(PageCoordinates, u"coordinatesPage"_s);
}

void ShopWindow::manualEnterGps() {}

void ShopWindow::backToShopEdit()
{
    pageStack->setCurrentIndex(PageStoreEdit);
}

void ShopWindow::saveEnteredGps() {}

void ShopWindow::lonBtnSwitch() {}

void ShopWindow::latBtnSwitch() {}

void ShopWindow::gpsEditPageChanged(int /*aIndex*/) {}

void ShopWindow::showGpsGetPage() {}

void ShopWindow::showGpsEditPage() {}

void ShopWindow::showGpsMapPage() {}

void ShopWindow::updateGpsGetPage() {}

void ShopWindow::btnGetGpsClicked() {}

void ShopWindow::mapMarkUpdated(qreal /*latitude*/, qreal /*longitude*/) {}

void ShopWindow::mapCenterByEdited() {}

void ShopWindow::mapCenterByGps() {}

void ShopWindow::updateMapCenter() {}
