// SPDX-License-Identifier: MIT
#include "stores/storepages.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>

#include "app/shopwindow.h"
#include "base/frames.h"
#include "base/recordrows.h"
#include "data/database.h"
#include "data/statements.h"
#include "gps/positionwait.h"
#include "gps/trshopgps.h"
#include "lists/shoppinglistpages.h"
#include "widgets/controls.h"
#include "widgets/listrow.h"
#include "widgets/namebutton.h"
#include "widgets/pictures.h"
#include "widgets/touchlist.h"
#include "widgets/turningpage.h"

using namespace Qt::StringLiterals;

// ---- The stores page --------------------------------------------------------------------------

void ShopWindow::buildStoresPage()
{
    TurningPage *page = addPage(PageStores, u"storesPage"_s, tr("Stores"));
    StoresPage &p = *storesPage;
    const ToolbarFrame frame = Frames::makeToolbarFrame(page);
    frame.picture->setPicture(u":/img/market.png"_s, Controls::pictureExtent);

    p.name = Controls::valueLabel(u"storeName"_s);
    Controls::setBold(p.name);
    p.name->setText(tr("(empty)"));
    p.category = Controls::valueLabel(u"storeCategory"_s);
    p.category->setText(tr("(not set)"));
    p.distance = Controls::valueLabel(u"storeDistance"_s);
    p.distance->setText(tr("(GPS not active)"));
    QVBoxLayout *fields = Frames::addFields(frame.contents);
    Frames::addField(fields, tr("Store"), p.name);
    Frames::addField(fields, tr("Category"), p.category);
    Frames::addField(fields, tr("Distance"), p.distance);

    p.edit = Controls::textButton(u"editButton"_s, u":/img/edit.svg"_s, Controls::pictureExtent,
                                  tr("Edit Store"));
    p.edit->setEnabled(false);
    p.stores = Controls::textButton(u"storesButton"_s, u":/img/storeList.svg"_s,
                                    Controls::pictureExtent, tr("Stores"));
    p.create = Controls::textButton(u"newButton"_s, u":/img/plus.svg"_s, Controls::pictureExtent,
                                    tr("New"));
    Controls::setMain(p.stores);
    page->firstFocus = p.stores;
    Frames::addButtons(page, frame, {p.edit, p.stores, p.create});

    connect(p.edit, &QPushButton::clicked, this, &ShopWindow::editShopClicked);
    connect(p.stores, &QPushButton::clicked, this, &ShopWindow::viewShopsClicked);
    connect(p.create, &QPushButton::clicked, this, &ShopWindow::addShopClicked);
    connect(frame.back, &QPushButton::clicked, this, &ShopWindow::backClicked);
    connect(frame.help, &QPushButton::clicked, this, &ShopWindow::shopsHelp);
}

void ShopWindow::shopsClicked()
{
    fillStoresPage();
    pageStack->setCurrentIndex(PageStores);
}

void ShopWindow::fillStoresPage()
{
    positionWait->distancePending = false;
    if (currentStoreId == 0) {
        for (QLabel *value : {storesPage->name, storesPage->category, storesPage->distance})
            value->setText(categoryNotSelectedText);
        storesPage->edit->setEnabled(false);
    } else {
        QSqlQuery store = Database::run(Statements::store, currentStoreId);
        if (store.first()) {
            storesPage->name->setText(store.value(u"name"_s).toString());
            const QString category = categoryName(store.value(u"categoryid"_s).toInt());
            storesPage->category->setText(category.isEmpty() ? categoryNotSelectedText : category);
            storesPage->distance->setText(distanceToCurrentStore());
            storesPage->edit->setEnabled(true);
        }
    }
}

/// Returns the text for the distance to the current store, and requests a position if the distance
/// cannot be computed without one.
QString ShopWindow::distanceToCurrentStore()
{
    if (!gpsAvailable)
        return tr("(GPS is not Available)");
    QSqlQuery coordinates = Database::run(Statements::coordinates, currentStoreId);
    if (!coordinates.first())
        return tr("(no Coordinates set)");
    shownStoreLatitude = coordinates.value(u"latitude"_s).toFloat();
    shownStoreLongitude = coordinates.value(u"longitude"_s).toFloat();
    draft.showStored(shownStoreLatitude, shownStoreLongitude);
    if (positionWait->haveGpsFix())
        return distanceToShownStore();
    if (!gpsEnabled)
        return tr("(GPS disabled)");
    positionWait->distancePending = true;
    gps->requestUpdate();
    return tr("(calculating)");
}

QString ShopWindow::distanceToShownStore() const
{
    constexpr int decimals = 2;
    const float meters = TrShopGps::distanceBetween(currentLatitude, currentLongitude,
                                                    shownStoreLatitude, shownStoreLongitude);
    return tr("%1 meters").arg(static_cast<double>(meters), 0, 'f', decimals);
}

// ---- The store list page ----------------------------------------------------------------------

void ShopWindow::buildStoreListPage()
{
    TurningPage *page = addPage(PageStoreList, u"storeListPage"_s, tr("Stores List"));
    StoreListPage &p = *storeListPage;
    p = {Frames::makeListFrame(page, u":/img/market.png"_s, tr("Stores List"))};
    p.list->setPlaceholder(u":/img/market.png"_s, tr("No stores yet. Press + to add one."));

    p.add = Controls::pictureButton(u"addButton"_s, u":/img/plus.svg"_s, Controls::pictureExtent,
                                    tr("New store"));
    p.select = Controls::textButton(u"selectButton"_s, u":/img/commit.png"_s,
                                    Controls::pictureExtent, tr("Select"));
    p.buttons->addWidget(p.add);
    Controls::setMain(p.select);
    p.buttons->addWidget(p.select, 1, Qt::AlignBottom);

    connect(p.list, &QListWidget::itemClicked, this, &ShopWindow::shopItemClicked);
    connect(p.add, &QPushButton::clicked, this, &ShopWindow::addShopClicked);
    connect(p.select, &QPushButton::clicked, this, &ShopWindow::selectShopClicked);
    connect(p.back, &QPushButton::clicked, this, &ShopWindow::cancelViewShopsClicked);
    connect(p.help, &QPushButton::clicked, this, &ShopWindow::magazinListHelp);
}

void ShopWindow::viewShopsClicked()
{
    storeListReturnPage = pageStack->currentIndex();
    pageStack->setCurrentIndex(PageStoreList);
    storeEditReturnPage = PageStoreList;
    storeBeforePicking = currentStoreId;

    QSqlQuery query = Database::run(Statements::allStores);
    const int categoryColumn = Database::column(query, "categoryid"_L1);
    Database::Names categories(Statements::categoryName, Statements::allCategories);
    const QList<QListWidgetItem *> rows = recordRows(query, [&](const QSqlQuery &store) {
        const auto category = categories.of(Database::integer(store, categoryColumn));
        return category && !category->isEmpty() ? QVariant(*category) : QVariant();
    });
    storeListPage->list->showRows(rows);
    storeListPage->list->setCurrentItem(rowOfRecord(rows, currentStoreId));
}

void ShopWindow::selectShopClicked()
{
    const QListWidgetItem *row = storeListPage->list->currentItem();
    if (!row) {
        warnNotSelected();
        return;
    }
    currentStoreId = rowId(*row);
    if (storeListReturnPage == PageStores) {
        shopsClicked();
        return;
    }
    if (storeListReturnPage == PageListEdit) {
        listEditPage->store->setName(row->text());
        storeIsUnknown = false;
    }
    pageStack->setCurrentIndex(storeListReturnPage);
}

void ShopWindow::shopItemActivated(QListWidgetItem * /*item*/)
{
    selectShopClicked();
}

void ShopWindow::shopItemClicked(QListWidgetItem *item)
{
    if (tappedAgain(*item, draft.editedStoreId, tr("Tap it again to choose it")))
        selectShopClicked();
}

void ShopWindow::cancelViewShopsClicked()
{
    // A store added on the list has become the current one, but the user has not selected it.
    currentStoreId = storeBeforePicking;
    pageStack->setCurrentIndex(storeListReturnPage);
}
