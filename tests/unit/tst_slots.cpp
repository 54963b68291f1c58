// SPDX-License-Identifier: MIT
#include <QMetaMethod>
#include <QtTest>

#include "app/shopwindow.h"

/// The slots of the window are its interface for calls by name.
class TestSlots : public QObject
{
    Q_OBJECT

private slots:
    void slotsStandInTheirOrder();
    void onlySomeSlotsArePublic();
    void thereIsOneSignal();

private:
    QStringList methods(QMetaMethod::MethodType type, int access = -1);
    /// Returns the elements of `all` that are not in `others`.
    static QStringList without(QStringList all, const QStringList &others);
};

QStringList TestSlots::without(QStringList all, const QStringList &others)
{
    all.removeIf([&others](const QString &name) { return others.contains(name); });
    return all;
}

QStringList TestSlots::methods(QMetaMethod::MethodType type, int access)
{
    const QMetaObject &meta = ShopWindow::staticMetaObject;
    QStringList result;
    for (int index = meta.methodOffset(); index < meta.methodCount(); ++index) {
        const QMetaMethod method = meta.method(index);
        if (method.methodType() == type && (access < 0 || method.access() == access))
            result << QString::fromLatin1(method.methodSignature());
    }
    return result;
}

void TestSlots::slotsStandInTheirOrder()
{
    const QStringList expected{
        "timerFired()",
        "exitClicked()",
        "backClicked()",
        "messageBoxOkClicked()",
        "waitingCanceled()",
        "optionsClicked()",
        "saveSettings()",
        "enableGpsChanged(bool)",
        "enableAutoStartChanged(bool)",
        "chooseSoundFile()",
        "mainPageHelp()",
        "mainPageAbout()",
        "optionsPageHelp()",
        "trackingPageHelp()",
        "trackingListHelp()",
        "doShoppingHelp()",
        "shopListPageHelp()",
        "shopListsHelp()",
        "shopListEditHelp()",
        "editItemsListHelp()",
        "addItemHelp()",
        "shopsHelp()",
        "magazinListHelp()",
        "addShopHelp()",
        "gpsEnterHelp()",
        "categoryListHelp()",
        "addCategoryHelp()",
        "buyClicked()",
        "doShoppingOkClicked()",
        "doShoppingItemActivated(QListWidgetItem*)",
        "doShoppingItemClicked(QListWidgetItem*)",
        "clearMarks()",
        "setAllMarks()",
        "listCreateClicked()",
        "listPropertiesEditClicked()",
        "cancelListCreateClicked()",
        "showShoppingLists()",
        "cancelShoppingLists()",
        "selectShoppingLists()",
        "updateShopList()",
        "createShopList()",
        "shopListSelectMagazin()",
        "shopListSelectCategory()",
        "deleteShopList()",
        "deleteShopListConfirm()",
        "shopListItemActivated(QListWidgetItem*)",
        "shopListItemClicked(QListWidgetItem*)",
        "shopListResetState()",
        "startShopping()",
        "listEditClicked()",
        "addListItemClicked()",
        "saveShoppingItemsClicked()",
        "cancelShoppingItemsClicked()",
        "deleteShoppingItemClicked()",
        "deleteShoppingItemConfirm()",
        "addShoppingItemConfirmClicked()",
        "addShoppingItemCancelClicked()",
        "editShoppingItemConfirmClicked()",
        "shoppingItemActivated(QListWidgetItem*)",
        "shoppingItemClicked(QListWidgetItem*)",
        "fillItemEditPage()",
        "shopsClicked()",
        "addShopClicked()",
        "addShopCancelClicked()",
        "editShopClicked()",
        "viewShopsClicked()",
        "cancelViewShopsClicked()",
        "selectShopClicked()",
        "addShopConfirmClicked()",
        "editShopConfirmClicked()",
        "deleteShopClicked()",
        "deleteShopConfirm()",
        "shopItemActivated(QListWidgetItem*)",
        "shopItemClicked(QListWidgetItem*)",
        "showCategoriesClicked()",
        "addCategoryClicked()",
        "backFromCategoryClicked()",
        "selectCategoryClicked()",
        "categoryItemActivated(QListWidgetItem*)",
        "categoryItemClicked(QListWidgetItem*)",
        "deleteCategoryClicked()",
        "deleteCategoryConfirm()",
        "addCategoryConfirmClicked()",
        "editCategoryConfirmClicked()",
        "addCategoryCancelClicked()",
        "gpsAcquired(double,double,double)",
        "coordUpdateTimeout()",
        "startGpsFailed()",
        "fixCurrentGps()",
        "manualEnterGps()",
        "backToShopEdit()",
        "saveEnteredGps()",
        "lonBtnSwitch()",
        "latBtnSwitch()",
        "gpsEditPageChanged(int)",
        "showGpsGetPage()",
        "showGpsEditPage()",
        "showGpsMapPage()",
        "updateGpsGetPage()",
        "btnGetGpsClicked()",
        "mapMarkUpdated(double,double)",
        "mapCenterByEdited()",
        "mapCenterByGps()",
        "updateMapCenter()",
        "trackingClicked()",
        "startTracking()",
        "stopTracking()",
        "selectStoreForTracking()",
        "selectCategoryForTracking()",
        "rbByCategoryToggle(bool)",
        "rbByStoreToggle(bool)",
        "viewFilteredTracking()",
        "setupTrackedListPage()",
        "skipStore()",
        "startShoppingGps()",
        "showTrackingAfterGps()",
        "trackingMapShow()",
        "trackingListShow()",
        "mapTrackCenterByGps()",
        "mapTrackCenterByStore()",
        "sessionOpened()",
    };
    const QStringList found = methods(QMetaMethod::Slot);
    // As texts, since a comparison of lists prints only their sizes.
    QCOMPARE(without(found, expected).join(u' '), QString());
    QCOMPARE(without(expected, found).join(u' '), QString());
    QCOMPARE(found, expected);
}

void TestSlots::onlySomeSlotsArePublic()
{
    const QStringList expected{
        "gpsAcquired(double,double,double)",
        "coordUpdateTimeout()",
        "startGpsFailed()",
        "mapMarkUpdated(double,double)",
        "mapCenterByGps()",
        "mapCenterByEdited()",
        "mapTrackCenterByGps()",
        "mapTrackCenterByStore()",
        "sessionOpened()",
    };
    const QStringList found = methods(QMetaMethod::Slot, QMetaMethod::Public);
    // As texts, since a comparison of lists prints only their sizes.
    QCOMPARE(without(found, expected).join(u' '), QString());
    QCOMPARE(without(expected, found).join(u' '), QString());
    QCOMPARE(methods(QMetaMethod::Slot, QMetaMethod::Protected), QStringList());
}

void TestSlots::thereIsOneSignal()
{
    QCOMPARE(methods(QMetaMethod::Signal), QStringList("requestedGpsUpdate()"));
}

QTEST_GUILESS_MAIN(TestSlots)
#include "tst_slots.moc"
