// SPDX-License-Identifier: MIT
#include <QBoxLayout>
#include <QPushButton>
#include <QStackedWidget>

#include "app/frames.h"
#include "app/shopwindow.h"

using namespace Qt::StringLiterals;

void ShopWindow::buildCoordinatesPage()
{
    QWidget *page = addPage(PageCoordinates, u"coordinatesPage"_s);
    const ToolbarFrame frame = Frames::makeToolbarFrame(page);
    frame.help->hide();
    frame.contents->addStretch(1);
    coordinatesBoxes = frame.turningBoxes;
    connect(frame.back, &QPushButton::clicked, this, &ShopWindow::backToShopEdit);
}

void ShopWindow::manualEnterGps()
{
    pageStack->setCurrentIndex(PageCoordinates);
}

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

void ShopWindow::mapMarkUpdated(qreal latitude, qreal longitude)
{
    editedLatitude = static_cast<float>(latitude);
    editedLongitude = static_cast<float>(longitude);
    storeCoordsSet = true;
}

void ShopWindow::mapCenterByEdited() {}

void ShopWindow::mapCenterByGps() {}

void ShopWindow::updateMapCenter() {}
