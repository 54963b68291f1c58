// SPDX-License-Identifier: MIT
// Measures the cost of filling a page with many rows, from the click to the painted page, and the
// cost of checking off one good, against running and reading statements for the same data alone
// and, for the good, repainting the rows.
#include <initializer_list>

#include <QListWidget>
#include <QLoggingCategory>
#include <QPushButton>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QStackedWidget>
#include <QtTest>

#include "base/pages.h"
#include "bench/report.h"
#include "data/database.h"
#include "data/statements.h"
#include "tests/support/records.h"
#include "tests/support/shopdriver.h"
#include "tests/support/testpositionplugin.h"

Q_IMPORT_PLUGIN(TestPositionPlugin)

namespace {

constexpr double fillingGoal = 1.3;
constexpr double joinGoal = 2.5; // against a single statement
constexpr double toggleGoal = 1.1;

/// Returns a database with `count` categories, stores, lists, and goods of list 1.
Records manyOfAll(int count)
{
    Records records;
    for (int id = 1; id <= count; ++id) {
        const QString number = QString::number(id);
        records.category("Category " + number)
            .store("Store " + number)
            .inCategory(id)
            .openList("List " + number)
            .good("Good " + number)
            .onList(1);
    }
    return records;
}

/// Reads these columns of each row.
void readAll(QSqlQuery query, std::initializer_list<const char *> names)
{
    QList<int> columns;
    for (const char *name : names)
        columns << query.record().indexOf(QLatin1StringView(name));
    while (query.next()) {
        for (const int column : std::as_const(columns))
            query.value(column).toString();
    }
}

void measure(int count)
{
    const ShopDriver shop(manyOfAll(count));
    // The speed of the disk must not affect the results.
    Database::execute("pragma synchronous = off");
    const auto back = [&shop](Page page) {
        return [&shop, page] {
            shop.stack->setCurrentIndex(page);
        };
    };
    const auto click = [&shop](const char *button) {
        return [&shop, button] {
            shop.pageWidget()->findChild<QPushButton *>(button)->click();
            QCoreApplication::processEvents();
        };
    };
    Bench::compare("filling the lists page", count, {click("listsButton"), back(PageShopping)},
                   {[] {
                       readAll(Database::execute("select s.name as name, s.id as id, m.name as "
                                                 "store from shoplist s left join magazin m on "
                                                 "s.magazinid = m.id order by s.name"),
                               {"name", "id", "store"});
                   }},
                   joinGoal);
    Bench::compare("filling the store list", count, {click("storesButton"), back(PageStores)}, {[] {
                       readAll(Database::execute("select m.name as name, m.id as id, c.name as "
                                                 "category from magazin m left join category c on "
                                                 "m.categoryid = c.id order by m.name"),
                               {"name", "id", "category"});
                   }},
                   joinGoal);

    // The goods belong to list 1.
    shop.stack->setCurrentIndex(PageShopping);
    click("listsButton")();
    for (int row = 0; row < shop.list()->count(); ++row) {
        if (shop.list()->item(row)->text() == "List 1")
            shop.list()->setCurrentRow(row);
    }
    click("selectButton")();
    Bench::compare("filling the items page", count, {click("goodsButton"), back(PageShopping)},
                   {[] {
                       readAll(Database::run(Statements::goodsOfList, 1), {"name", "id", "amount"});
                   }},
                   fillingGoal);

    shop.stack->setCurrentIndex(PageShopping);
    click("startButton")();
    const auto firstRow = [&shop] {
        shop.list()->setCurrentRow(0);
    };
    int good = 0;
    Bench::compare("a good checked off", count, {click("checkButton"), firstRow},
                   {[&shop, &good, count] {
                        Database::run(Statements::updateGoodCheckState, 1, count - ++good);
                        shop.list()->viewport()->repaint(); // the rows move up
                    },
                    firstRow},
                   toggleGoal, 21);
}

} // namespace

/// Usage: bench_filling [number of rows]; without a number it prints how the costs grow.
int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    QLoggingCategory::setFilterRules("*.debug=false");
    if (argc > 1) {
        measure(QByteArray(argv[1]).toInt());
        return 0;
    }
    for (const int count : {100, 1000, 10000, 100000})
        measure(count);
    return 0;
}
