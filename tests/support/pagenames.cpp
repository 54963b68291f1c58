// SPDX-License-Identifier: MIT
#include "tests/support/pagenames.h"

#include <QByteArray>

static const char *nameOf(Page page)
{
    switch (page) {
    case PageMain:
        return "PageMain";
    case PageShopping:
        return "PageShopping";
    case PageTracking:
        return "PageTracking";
    case PageStores:
        return "PageStores";
    case PageItemsList:
        return "PageItemsList";
    case PageListEdit:
        return "PageListEdit";
    case PageShoppingLists:
        return "PageShoppingLists";
    case PageItemEdit:
        return "PageItemEdit";
    case PageStoreList:
        return "PageStoreList";
    case PageStoreEdit:
        return "PageStoreEdit";
    case PageCategoryList:
        return "PageCategoryList";
    case PageCategoryEdit:
        return "PageCategoryEdit";
    case PageMessage:
        return "PageMessage";
    case PageDoShopping:
        return "PageDoShopping";
    case PageOptions:
        return "PageOptions";
    case PageWaiting:
        return "PageWaiting";
    case PageConfirmation:
        return "PageConfirmation";
    case PageTrackedList:
        return "PageTrackedList";
    case PageReminder:
        return "PageReminder";
    case PageCoordinates:
        return "PageCoordinates";
    }
    return nullptr;
}

char *toString(Page page)
{
    const char *name = nameOf(page);
    return qstrdup(name ? name : ("page " + QByteArray::number(int(page))).constData());
}
