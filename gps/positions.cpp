// SPDX-License-Identifier: MIT
#include "app/shopwindow.h"

void ShopWindow::gpsAcquired(qreal /*longitude*/, qreal /*latitude*/, qreal /*altitude*/) {}

void ShopWindow::coordUpdateTimeout() {}

void ShopWindow::startGpsFailed() {}

void ShopWindow::fixCurrentGps() {}
