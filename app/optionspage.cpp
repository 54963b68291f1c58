// SPDX-License-Identifier: MIT
#include "app/shopwindow.h"

void ShopWindow::buildOptionsPage()
{
    addPage(PageOptions, QStringLiteral("optionsPage"));
}

void ShopWindow::optionsClicked() {}

void ShopWindow::saveSettings() {}

void ShopWindow::enableGpsChanged(bool /*aState*/) {}

void ShopWindow::enableAutoStartChanged(bool /*aState*/) {}

void ShopWindow::chooseSoundFile() {}
