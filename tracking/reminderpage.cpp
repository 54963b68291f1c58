// SPDX-License-Identifier: MIT
#include "app/shopwindow.h"

using namespace Qt::StringLiterals;

void ShopWindow::buildReminderPage()
{
    addPage(PageReminder, u"reminderPage"_s);
}

void ShopWindow::skipStore() {}

void ShopWindow::startShoppingGps() {}
