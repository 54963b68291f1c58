// SPDX-License-Identifier: MIT
#pragma once

/// The pages of the window, in the order of the page stack.
enum Page : int {
    PageMain,
    PageShopping,
    PageTracking,
    PageStores,
    PageItemsList,
    PageListEdit,
    PageShoppingLists,
    PageItemEdit,
    PageStoreList,
    PageStoreEdit,
    PageCategoryList,
    PageCategoryEdit,
    PageMessage,
    PageDoShopping,
    PageOptions,
    PageWaiting,
    PageConfirmation,
    PageTrackedList,
    PageReminder,
    PageCoordinates,
};
