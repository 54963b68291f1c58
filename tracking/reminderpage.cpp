// SPDX-License-Identifier: MIT
#include "app/shopwindow.h"

void ShopWindow::buildReminderPage()
{
    addPage(PageReminder, QStringLiteral("reminderPage"));
}

void ShopWindow::skipStore() {}

void ShopWindow::startShoppingGps() {}
