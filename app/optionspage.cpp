// SPDX-License-Identifier: MIT
#include "app/shopwindow.h"

using namespace Qt::StringLiterals;

void ShopWindow::buildOptionsPage()
{
    addPage(PageOptions, u"optionsPage"_s);
}

void ShopWindow::optionsClicked() {}

void ShopWindow::saveSettings() {}

void ShopWindow::enableGpsChanged(bool /*aState*/) {}

void ShopWindow::enableAutoStartChanged(bool /*aState*/) {}

void ShopWindow::chooseSoundFile() {}
