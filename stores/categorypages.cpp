// SPDX-License-Identifier: MIT
#include <QStackedWidget>

#include "app/shopwindow.h"

using namespace Qt::StringLiterals;

void ShopWindow::buildCategoryListPage()
{
    addPage(PageCategoryList, u"categoryListPage"_s);
}

void ShopWindow::buildCategoryEditPage()
{
    addPage(PageCategoryEdit, u"categoryEditPage"_s);
}

void ShopWindow::showCategoriesClicked() {}

void ShopWindow::categoryItemClicked(QListWidgetItem * /*item*/) {}

void ShopWindow::categoryItemActivated(QListWidgetItem * /*item*/) {}

void ShopWindow::selectCategoryClicked() {}

void ShopWindow::backFromCategoryClicked()
{
    pageStack->setCurrentIndex(categoryReturnPage);
}

void ShopWindow::addCategoryClicked() {}

void ShopWindow::addCategoryConfirmClicked() {}

void ShopWindow::editCategoryConfirmClicked() {}

void ShopWindow::addCategoryCancelClicked()
{
    pageStack->setCurrentIndex(PageCategoryList);
}

void ShopWindow::deleteCategoryClicked() {}

void ShopWindow::deleteCategoryConfirm() {}
