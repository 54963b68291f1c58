// SPDX-License-Identifier: MIT
#include "stores/categorypages.h"

#include <QBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QStackedWidget>

#include "app/shopwindow.h"
#include "base/frames.h"
#include "base/recordrows.h"
#include "data/database.h"
#include "data/statements.h"
#include "stores/storeeditpage.h"
#include "widgets/controls.h"
#include "widgets/listrow.h"
#include "widgets/namebutton.h"
#include "widgets/pictures.h"
#include "widgets/touchlist.h"
#include "widgets/turningpage.h"

using namespace Qt::StringLiterals;

// ---- The category list page -------------------------------------------------------------------

void ShopWindow::buildCategoryListPage()
{
    TurningPage *page = addPage(PageCategoryList, u"categoryListPage"_s, tr("Category List"));
    CategoryListPage &p = *categoryListPage;
    p = {Frames::makeListFrame(page, u":/img/bee.png"_s, tr("Category List"))};
    p.list->setPlaceholder(u":/img/bee.png"_s, tr("No categories yet. Press + to add one."));

    p.add = Controls::pictureButton(u"addButton"_s, u":/img/plus.svg"_s, Controls::pictureExtent,
                                    tr("New category"));
    p.select = Controls::textButton(u"selectButton"_s, u":/img/commit.png"_s,
                                    Controls::pictureExtent, tr("Select"));
    p.buttons->addWidget(p.add);
    Controls::setMain(p.select);
    p.buttons->addWidget(p.select, 1, Qt::AlignBottom);

    connect(p.list, &QListWidget::itemClicked, this, &ShopWindow::categoryItemClicked);
    connect(p.add, &QPushButton::clicked, this, &ShopWindow::addCategoryClicked);
    connect(p.select, &QPushButton::clicked, this, &ShopWindow::selectCategoryClicked);
    connect(p.back, &QPushButton::clicked, this, &ShopWindow::backFromCategoryClicked);
    connect(p.help, &QPushButton::clicked, this, &ShopWindow::categoryListHelp);
}

QString ShopWindow::categoryName(int id)
{
    return Database::name(Statements::categoryName, id).value_or(QString());
}

void ShopWindow::showCategoriesClicked()
{
    categoryReturnPage = pageStack->currentIndex();
    pageStack->setCurrentIndex(PageCategoryList);
    QSqlQuery query = Database::run(Statements::allCategories);
    const QList<QListWidgetItem *> rows = recordRows(query);
    categoryListPage->list->showRows(rows);
    categoryListPage->list->setCurrentItem(rowOfRecord(rows, selectedCategoryId, rows.value(0)));
}

void ShopWindow::selectCategoryClicked()
{
    const QListWidgetItem *row = categoryListPage->list->currentItem();
    if (!row) {
        warnNotSelected();
        return;
    }
    selectedCategoryId = rowId(*row);
    if (categoryReturnPage == PageStoreEdit)
        storeEditPage->category->setName(row->text());
    pageStack->setCurrentIndex(categoryReturnPage);
}

void ShopWindow::backFromCategoryClicked()
{
    pageStack->setCurrentIndex(categoryReturnPage);
}

void ShopWindow::categoryItemClicked(QListWidgetItem *item)
{
    if (tappedAgain(*item, lastTappedCategoryId, tr("Tap it again to edit it")))
        categoryItemActivated(item);
}

// ---- The category edit page -------------------------------------------------------------------

void ShopWindow::buildCategoryEditPage()
{
    TurningPage *page = addPage(PageCategoryEdit, u"categoryEditPage"_s, tr("Add/Edit Category"));
    CategoryEditPage &p = *categoryEditPage;
    p = {Frames::makeEditFrame(page)};

    p.name = Frames::nameField(u"nameField"_s, p.save);
    p.name->setAlignment(Qt::AlignCenter);
    Frames::addField(p.fields, tr("Category"), p.name);
    Frames::setTabOrder({p.name, p.save, p.remove});

    connect(p.remove, &QPushButton::clicked, this, &ShopWindow::deleteCategoryClicked);
    connect(p.back, &QPushButton::clicked, this, &ShopWindow::addCategoryCancelClicked);
    connect(p.help, &QPushButton::clicked, this, &ShopWindow::addCategoryHelp);
}

void ShopWindow::addCategoryClicked()
{
    CategoryEditPage &p = *categoryEditPage;
    p.name->clear();
    showEditPage(PageCategoryEdit, p, p.name, u":/img/categAdd.png"_s, false,
                 &ShopWindow::addCategoryConfirmClicked);
}

void ShopWindow::categoryItemActivated(QListWidgetItem * /*item*/)
{
    const QListWidgetItem *row = categoryListPage->list->currentItem();
    if (!row)
        return;
    CategoryEditPage &p = *categoryEditPage;
    p.name->setText(row->text());
    showEditPage(PageCategoryEdit, p, p.name, u":/img/categEdit.png"_s, true,
                 &ShopWindow::editCategoryConfirmClicked);
}

void ShopWindow::addCategoryConfirmClicked()
{
    const QString name = typedName(categoryEditPage->name);
    if (name.isEmpty())
        return;
    const int id = Database::newId(Statements::newCategoryId);
    Database::run(Statements::insertCategory, id, name);
    auto *row = new ListRow(name, id);
    categoryListPage->list->addItem(row);
    pageStack->setCurrentIndex(PageCategoryList);
    categoryListPage->list->setCurrentItem(row);
}

void ShopWindow::editCategoryConfirmClicked()
{
    const QString name = typedName(categoryEditPage->name);
    if (name.isEmpty())
        return;
    if (QListWidgetItem *row = categoryListPage->list->currentItem()) {
        Database::run(Statements::updateCategory, name, rowId(*row));
        row->setText(name);
    }
    pageStack->setCurrentIndex(PageCategoryList);
}

void ShopWindow::addCategoryCancelClicked()
{
    pageStack->setCurrentIndex(PageCategoryList);
}

void ShopWindow::deleteCategoryClicked()
{
    askQuestion(
        tr("Deleting Category"),
        tr("Are You really want to delete category '%1' ?").arg(categoryEditPage->name->text()),
        &ShopWindow::deleteCategoryConfirm, PageCategoryEdit);
}

void ShopWindow::deleteCategoryConfirm()
{
    if (const std::unique_ptr<QListWidgetItem> row{
            categoryListPage->list->takeItem(categoryListPage->list->currentRow())}) {
        // The statement compares the category id with the ids of the stores, not with their
        // category ids. It clears the category of the store that has this id as its own. The stores
        // of the category keep their category id.
        Database::run(Statements::clearStoreCategory, rowId(*row));
        Database::run(Statements::deleteCategory, rowId(*row));
    }
    pageStack->setCurrentIndex(PageCategoryList);
}
