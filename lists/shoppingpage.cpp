// SPDX-License-Identifier: MIT
#include "lists/shoppingpage.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>

#include "app/shopwindow.h"
#include "base/frames.h"
#include "data/database.h"
#include "data/statements.h"
#include "lists/liststate.h"
#include "widgets/controls.h"
#include "widgets/pictures.h"
#include "widgets/turningpage.h"
#include "widgets/wraplabel.h"

using namespace Qt::StringLiterals;

void ShopWindow::buildShoppingPage()
{
    constexpr int editExtent = 52;
    TurningPage *page = addPage(PageShopping, u"shoppingPage"_s, tr("Shoppings"));
    ShoppingPage &p = *shoppingPage;
    const ToolbarFrame frame = Frames::makeToolbarFrame(page);
    frame.picture->setPicture(u":/img/shopping-cart.svg"_s, Controls::pictureExtent);

    p.listName = Controls::valueLabel(u"listName"_s);
    Controls::setBold(p.listName);
    p.store = Controls::valueLabel(u"storeName"_s);
    p.state = Controls::valueLabel(u"listState"_s);
    QVBoxLayout *fields = Frames::addFields(frame.contents);
    Frames::addField(fields, tr("List"), p.listName);
    Frames::addField(fields, tr("Store"), p.store);
    Frames::addField(fields, tr("State"), p.state);

    p.start = Controls::textButton(u"startButton"_s, u":/img/check-list.svg"_s,
                                   Controls::pictureExtent, tr("Start"));
    p.edit = Controls::textButton(u"editButton"_s, u":/img/edit.svg"_s, editExtent, tr("Edit"));
    p.goods = Controls::textButton(u"goodsButton"_s, u":/img/shopping-cart.svg"_s,
                                   Controls::pictureExtent, tr("Goods"));
    p.lists = Controls::textButton(u"listsButton"_s, u":/img/listList.png"_s,
                                   Controls::pictureExtent, tr("Lists"));
    p.edit->setEnabled(false);
    p.goods->setEnabled(false);
    Controls::setMain(p.start);
    page->firstFocus = p.start;
    Frames::addButtons(page, frame, {p.start, p.edit, p.goods, p.lists});

    connect(p.start, &QPushButton::clicked, this, &ShopWindow::startShopping);
    connect(p.edit, &QPushButton::clicked, this, &ShopWindow::listPropertiesEditClicked);
    connect(p.goods, &QPushButton::clicked, this, &ShopWindow::listEditClicked);
    connect(p.lists, &QPushButton::clicked, this, &ShopWindow::showShoppingLists);
    connect(frame.back, &QPushButton::clicked, this, &ShopWindow::backClicked);
    connect(frame.help, &QPushButton::clicked, this, &ShopWindow::shopListPageHelp);
}

void ShopWindow::buyClicked()
{
    fillShoppingPage();
    pageStack->setCurrentIndex(PageShopping);
}

void ShopWindow::fillShoppingPage()
{
    if (currentListId != 0) {
        QSqlQuery list = Database::run(Statements::list, currentListId);
        if (list.first()) {
            shoppingPage->listName->setText(list.value(u"name"_s).toString());
            const int storeId = list.value(u"magazinid"_s).toInt();
            shoppingPage->store->setText(
                Database::name(Statements::storeName, storeId).value_or(tr("(unknown)")));
            shoppingPage->state->setText(listStateText(list.value(u"state"_s).toInt()));
            shoppingPage->edit->setEnabled(true);
            shoppingPage->goods->setEnabled(true);
        }
    } else {
        shoppingPage->listName->clear();
        shoppingPage->edit->setEnabled(false);
        shoppingPage->goods->setEnabled(false);
    }
}

QString ShopWindow::listStateText(int state)
{
    switch (state) {
    case ListEmpty:
        return tr("Empty");
    case ListUnchecked:
        return tr("Active (unchecked)");
    case ListPartlyChecked:
        return tr("Active (partial checked)");
    case ListFinished:
        return tr("Finished (checked)");
    default:
        return tr("unknown");
    }
}
