// SPDX-License-Identifier: MIT
#include "lists/doshoppingpage.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>

#include "app/shopwindow.h"
#include "data/database.h"
#include "data/statements.h"
#include "lists/liststate.h"
#include "lists/shoppingpage.h"
#include "widgets/controls.h"
#include "widgets/listrow.h"
#include "widgets/touchlist.h"
#include "widgets/turningpage.h"

using namespace Qt::StringLiterals;

void ShopWindow::buildDoShoppingPage()
{
    TurningPage *page = addPage(PageDoShopping, u"doShoppingPage"_s, tr("Do Shopping"));
    DoShoppingPage &p = *doShoppingPage;
    p = {Frames::makeListFrame(page, u":/img/check-list.svg"_s, QString())};
    p.list->setPlaceholder(u":/img/check-list.svg"_s, tr("Nothing to buy on this list."));

    p.check = Controls::pictureButton(u"checkButton"_s, u":/img/check_sign_fill.svg"_s,
                                      Controls::pictureExtent, tr("Check"));
    p.uncheck = Controls::pictureButton(u"uncheckButton"_s, u":/img/check_sign_empt.svg"_s,
                                        Controls::pictureExtent, tr("Uncheck"));
    p.ok = Controls::textButton(u"okButton"_s, u":/img/commit.png"_s, Controls::pictureExtent,
                                tr("OK"));
    p.buttons->addWidget(p.check);
    p.buttons->addWidget(p.uncheck);
    Controls::setMain(p.ok);
    p.buttons->addWidget(p.ok, 1, Qt::AlignBottom);

    connect(p.list, &QListWidget::itemClicked, this, &ShopWindow::doShoppingItemClicked);
    connect(p.list, &QListWidget::itemActivated, this, &ShopWindow::doShoppingItemActivated);
    connect(p.check, &QPushButton::clicked, this, &ShopWindow::setAllMarks);
    connect(p.uncheck, &QPushButton::clicked, this, &ShopWindow::clearMarks);
    connect(p.ok, &QPushButton::clicked, this, &ShopWindow::doShoppingOkClicked);
    connect(p.back, &QPushButton::clicked, this, &ShopWindow::doShoppingOkClicked);
    connect(p.help, &QPushButton::clicked, this, &ShopWindow::doShoppingHelp);
}

void ShopWindow::startShopping()
{
    if (currentListId == 0) {
        startShoppingPending = true;
        showShoppingLists();
        showMessage(tr("No Shop List selected"), tr("Please select Shop List or create a New One"),
                    u":/img/warning_r.svg"_s, PageShoppingLists);
        shoppingFromReminder = false;
        return;
    }
    lastTappedGoodId = 0;
    doShoppingPage->title->setText(shoppingPage->listName->text());
    QList<QListWidgetItem *> unchecked;
    QList<QListWidgetItem *> checked;
    if (shoppingFromReminder) {
        unchecked = checkableRows(Statements::uncheckedGoodsOfStore, currentStoreId, Qt::Unchecked);
        checked = checkableRows(Statements::checkedGoodsOfStore, currentStoreId, Qt::Checked);
    } else {
        unchecked = checkableRows(Statements::uncheckedGoodsOfList, currentListId, Qt::Unchecked);
        checked = checkableRows(Statements::checkedGoodsOfList, currentListId, Qt::Checked);
    }
    checkedCount = static_cast<int>(checked.size());
    doShoppingPage->list->showRows(unchecked + checked);
    pageStack->setCurrentIndex(PageDoShopping);
    startShoppingPending = false;
    shoppingFromReminder = false;
}

/// Creates a row with a check mark for each good that `statement` returns for the list or store
/// `id`. The caller owns the rows.
QList<QListWidgetItem *> ShopWindow::checkableRows(QLatin1StringView statement, int id,
                                                   Qt::CheckState checkState)
{
    QSqlQuery query = Database::run(statement, id);
    QList<QListWidgetItem *> rows = goodsRows(query);
    for (QListWidgetItem *row : std::as_const(rows)) {
        row->setData(CheckableRole, 1);
        row->setData(Qt::CheckStateRole, static_cast<int>(checkState));
    }
    return rows;
}

void ShopWindow::doShoppingItemClicked(QListWidgetItem *item)
{
    const QString hint = item->checkState() == Qt::Checked ? tr("Tap it again to uncheck it")
                                                           : tr("Tap it again to check it off");
    if (!tappedAgain(*item, lastTappedGoodId, hint))
        return;
    // Another row moves to the tapped position, so a quick second tap must not toggle that row.
    doShoppingPage->list->ignoreDoubleTap();
    toggleGood(doShoppingPage->list->row(item));
}

void ShopWindow::doShoppingItemActivated(QListWidgetItem *item)
{
    lastTappedGoodId = rowId(*item);
    toggleGood(doShoppingPage->list->row(item));
}

/// Checks or unchecks the good in `row`, and stores that. A checked good becomes the first row of
/// the checked goods, an unchecked one the last row of the unchecked goods above them.
void ShopWindow::toggleGood(int row)
{
    TouchList *list = doShoppingPage->list;
    const QListWidgetItem *good = list->item(row);
    const int id = rowId(*good);
    lastTappedGoodId = id;
    const int left = list->count() - 1;
    int checkState = 0;
    if (good->checkState() == Qt::Checked) {
        const int below = left - checkedCount + 1;
        --checkedCount;
        list->moveRow(row, below, Qt::Unchecked);
        list->setCurrentRow(below);
    } else {
        const int above = left - checkedCount;
        ++checkedCount;
        list->moveRow(row, above, Qt::Checked);
        list->setCurrentRow(row);
        checkState = 1;
    }
    lastTappedGoodId = rowId(*list->currentItem());
    Database::run(Statements::updateGoodCheckState, checkState, id);
}

void ShopWindow::setAllMarks()
{
    const QListWidgetItem *good = doShoppingPage->list->currentItem();
    if (good && good->checkState() == Qt::Unchecked)
        toggleGood(doShoppingPage->list->currentRow());
}

void ShopWindow::clearMarks()
{
    const QListWidgetItem *good = doShoppingPage->list->currentItem();
    if (good && good->checkState() == Qt::Checked)
        toggleGood(doShoppingPage->list->currentRow());
}

void ShopWindow::doShoppingOkClicked()
{
    updateListState();
    pageStack->setCurrentIndex(PageShopping);
}

void ShopWindow::finishShopping() const
{
    const int page = pageStack->currentIndex();
    const bool isShopping =
        page == PageDoShopping || (page == PageMessage && messageReturnPage == PageDoShopping);
    if (isShopping)
        updateListState();
}

void ShopWindow::updateListState() const
{
    QList<bool> checkMarks;
    QSqlQuery query = Database::run(Statements::checkStatesOfList, currentListId);
    if (!query.isActive()) // without the goods, a finished list would become an open one
        return;
    while (query.next())
        checkMarks << query.value(u"checkstate"_s).toBool();
    query.finish();
    const int state = stateOfList(checkMarks);
    Database::run(Statements::updateListState, state, currentListId);
    shoppingPage->state->setText(listStateText(state));
}
