// SPDX-License-Identifier: MIT
#include "stores/storeeditpage.h"

#include <QBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QStackedWidget>

#include "app/shopwindow.h"
#include "base/frames.h"
#include "data/database.h"
#include "data/statements.h"
#include "gps/coordinates.h"
#include "stores/storepages.h"
#include "widgets/controls.h"
#include "widgets/listrow.h"
#include "widgets/namebutton.h"
#include "widgets/pictures.h"
#include "widgets/touchlist.h"
#include "widgets/turningpage.h"

using namespace Qt::StringLiterals;

namespace {

/// The SQL text for a missing reference.
const QString missingReference = u"null"_s;

} // namespace

void ShopWindow::buildStoreEditPage()
{
    TurningPage *page = addPage(PageStoreEdit, u"storeEditPage"_s, tr("Store Add/Edit"));
    StoreEditPage &p = *storeEditPage;
    p = {Frames::makeEditFrame(page)};

    p.name = Frames::nameField(u"nameField"_s, p.save);
    p.category = new NameButton;
    p.category->setObjectName(u"categoryButton"_s);
    p.category->setMaximumWidth(textWidth);
    p.category->setName(categoryButtonDefaultText);
    p.coordinates = new NameButton;
    p.coordinates->setObjectName(u"coordinatesButton"_s);
    p.coordinates->setMaximumWidth(textWidth);
    p.coordinates->setName(tr("(set Coordinates)"));
    coordinatesTextStoreId = 0;
    Frames::addField(p.fields, tr("Store"), p.name);
    Frames::addField(p.fields, tr("Category"), p.category);
    Frames::addField(p.fields, tr("GPS"), p.coordinates);
    Frames::setTabOrder({p.name, p.category, p.coordinates, p.save, p.remove});

    connect(p.category, &QPushButton::clicked, this, &ShopWindow::showCategoriesClicked);
    connect(p.coordinates, &QPushButton::clicked, this, &ShopWindow::manualEnterGps);
    connect(p.remove, &QPushButton::clicked, this, &ShopWindow::deleteShopClicked);
    connect(p.back, &QPushButton::clicked, this, &ShopWindow::addShopCancelClicked);
    connect(p.help, &QPushButton::clicked, this, &ShopWindow::addShopHelp);
}

void ShopWindow::addShopClicked()
{
    StoreEditPage &p = *storeEditPage;
    draft.editNew();
    storeEditReturnPage = pageStack->currentIndex();
    p.name->clear();
    p.category->setName(categoryButtonDefaultText);
    p.coordinates->setName(gpsAvailable ? tr("(set Coordinates)") : tr("(GPS is not Available)"));
    p.coordinates->setEnabled(gpsAvailable);
    coordinatesTextStoreId = 0;
    showEditPage(PageStoreEdit, p, p.name, u":/img/storeAdd.png"_s, false,
                 &ShopWindow::addShopConfirmClicked);
}

void ShopWindow::editShopClicked()
{
    StoreEditPage &p = *storeEditPage;
    draft.edit(currentStoreId);
    storeEditReturnPage = pageStack->currentIndex();

    QSqlQuery store = Database::run(Statements::store, draft.editedStoreId);
    if (store.first()) {
        p.name->setText(store.value(u"name"_s).toString());
        const int categoryId = store.value(u"categoryid"_s).toInt();
        const QString category = categoryName(categoryId);
        p.category->setName(category.isEmpty() ? categoryButtonDefaultText : category);
        selectedCategoryId = category.isEmpty() ? 0 : categoryId;
    }
    showCoordinatesOf(draft.editedStoreId);
    showEditPage(PageStoreEdit, p, p.name, u":/img/storeEdit.png"_s, true,
                 &ShopWindow::editShopConfirmClicked);
}

/// Updates the coordinates button for the store that is opened for editing.
void ShopWindow::showCoordinatesOf(int storeId)
{
    NameButton *button = storeEditPage->coordinates;
    button->setEnabled(gpsAvailable);
    if (!gpsAvailable) {
        button->setName(tr("(GPS is not Available)"));
    } else if (!gpsEnabled) {
        const bool known = Database::run(Statements::coordinates, storeId).first();
        button->setName(known ? tr("coords is set (edit...)") : tr("(enter GPS)"));
    } else if (coordinatesTextStoreId != storeId) {
        // If GPS is enabled, the text is kept when the same store is opened again.
        button->setName(tr("(set Coordinates)"));
    }
    coordinatesTextStoreId = storeId;
}

/// Returns the id of the category on the button as text for a statement, or "null" if there is no
/// such category. The category is found by its name. If two categories have the same name, the
/// first one is used.
QString ShopWindow::categoryIdText() const
{
    QSqlQuery category =
        Database::run(Statements::categoryIdByName, storeEditPage->category->text());
    return category.first() ? category.value(u"id"_s).toString() : missingReference;
}

void ShopWindow::insertTakenCoordinates(int storeId)
{
    constexpr int altitudeDecimals = 2;
    Database::run(
        Statements::insertCoordinates, storeId, Coordinates::text(draft.editedLatitude()),
        Coordinates::text(draft.editedLongitude()),
        u"%1"_s.arg(static_cast<double>(draft.editedAltitude()), 0, 'f', altitudeDecimals));
}

bool ShopWindow::coordinatesWereTaken() const
{
    return storeEditPage->coordinates->isEnabled() && draft.storeCoordsSet();
}

void ShopWindow::addShopConfirmClicked()
{
    const QString name = typedName(storeEditPage->name);
    if (name.isEmpty())
        return;
    const QString categoryId = categoryIdText();
    const int id = Database::newId(Statements::newStoreId);
    const bool isNew =
        Database::run(Statements::insertStore, id, name, categoryId, missingReference).isActive();
    // Coordinates of a store that is not there may be in the file under this id. An id that is in
    // use, which a damaged file or a locked one can lead to, keeps its coordinates.
    if (isNew) {
        Database::run(Statements::deleteCoordinates, id);
        if (coordinatesWereTaken())
            insertTakenCoordinates(id);
    }
    currentStoreId = id;
    coordinatesTextStoreId = isNew ? id : 0;
    if (storeEditReturnPage == PageStoreList) {
        auto *row = new ListRow(name, id);
        if (categoryId != missingReference)
            row->setData(SecondColumnRole, storeEditPage->category->text());
        storeListPage->list->addItem(row);
        pageStack->setCurrentIndex(PageStoreList);
    } else {
        shopsClicked();
    }
}

void ShopWindow::editShopConfirmClicked()
{
    const QString name = typedName(storeEditPage->name);
    if (name.isEmpty())
        return;
    const QString categoryId = categoryIdText();
    Database::run(Statements::updateStore, name, categoryId, missingReference, draft.editedStoreId);
    if (coordinatesWereTaken()) {
        Database::run(Statements::deleteCoordinates, draft.editedStoreId);
        insertTakenCoordinates(draft.editedStoreId);
    }
    if (storeEditReturnPage != PageStoreList) {
        currentStoreId = draft.editedStoreId;
        shopsClicked();
        return;
    }
    if (QListWidgetItem *row = storeListPage->list->currentItem()) {
        row->setText(name);
        if (categoryId != missingReference)
            row->setData(SecondColumnRole, storeEditPage->category->text());
    }
    pageStack->setCurrentIndex(PageStoreList);
}

void ShopWindow::addShopCancelClicked()
{
    pageStack->setCurrentIndex(storeEditReturnPage);
}

void ShopWindow::deleteShopClicked()
{
    askQuestion(
        tr("Deleting Store"),
        tr("Are You really want to delete store named '%1' ?").arg(storeEditPage->name->text()),
        &ShopWindow::deleteShopConfirm, PageStoreEdit);
}

void ShopWindow::deleteShopConfirm()
{
    // The lists of the store are kept. The shopping page shows their store as unknown.
    Database::run(Statements::deleteCoordinates, draft.editedStoreId);
    Database::run(Statements::deleteStore, draft.editedStoreId);
    if (storeEditReturnPage == PageStoreList) {
        delete storeListPage->list->currentItem();
        pageStack->setCurrentIndex(PageStoreList);
    } else {
        currentStoreId = 0;
        shopsClicked();
    }
}
