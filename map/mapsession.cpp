// SPDX-License-Identifier: MIT
#include "app/shopwindow.h"

void ShopWindow::sessionOpened() {}
