// SPDX-License-Identifier: MIT
#include <QLabel>

#include "app/shopwindow.h"

void ShopWindow::gpsAcquired(qreal longitude, qreal latitude, qreal altitude)
{
    currentLongitude = static_cast<float>(longitude);
    currentLatitude = static_cast<float>(latitude);
    currentAltitude = static_cast<float>(altitude);
    haveGpsFix = true;
    if (waitingForFix)
        emit requestedGpsUpdate();
    if (distancePending) {
        storesPage.distance->setText(distanceToShownStore());
        distancePending = false;
    }
}

void ShopWindow::coordUpdateTimeout() {}

void ShopWindow::startGpsFailed() {}

void ShopWindow::fixCurrentGps() {}
