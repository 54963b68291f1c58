// SPDX-License-Identifier: MIT
// What filling a page with many rows costs, from the click to the painted page, and what one good
// that is checked off costs, against the same statements run and read alone. Usage: bench_filling,
// on the platform "offscreen".
#include <algorithm>
#include <cstdio>
#include <functional>

#include <QElapsedTimer>
#include <QListWidget>
#include <QLoggingCategory>
#include <QPushButton>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QStackedWidget>
#include <QtTest>

#include "app/pages.h"
#include "data/database.h"
#include "data/statements.h"
#include "tests/support/shopdriver.h"
#include "tests/support/testpositionplugin.h"

Q_IMPORT_PLUGIN(TestPositionPlugin)

namespace {

constexpr int rounds = 7;

/// A database with `count` of everything: categories, stores, lists, and goods of list 1.
QStringList manyOfAll(int count)
{
    QStringList statements{"pragma synchronous = off", "begin"};
    for (int id = 1; id <= count; ++id) {
        statements << QString("insert into category values (%1, 'Category %1')").arg(id)
                   << QString("insert into magazin values (%1, 'Store %1', %1, null)").arg(id)
                   << QString("insert into shoplist values (%1, 'List %1', %1, 1)").arg(id)
                   << QString("insert into purchase values (%1, 'Good %1', 1, 1, 0)").arg(id);
    }
    statements << "commit";
    return statements;
}

/// Milliseconds for `work`, the median of some rounds; `prepare` runs before each.
double milliseconds(const std::function<void()> &prepare, const std::function<void()> &work)
{
    QList<double> times;
    for (int round = 0; round < rounds; ++round) {
        prepare();
        QCoreApplication::processEvents();
        QElapsedTimer clock;
        clock.start();
        work();
        times << double(clock.nsecsElapsed()) / 1e6;
    }
    std::ranges::sort(times);
    return times.at(rounds / 2);
}

/// Runs a statement and reads these columns of each row, and for each what `more` does.
void readAll(QSqlQuery query, std::initializer_list<const char *> columns,
             const std::function<void(const QSqlQuery &)> &more = {})
{
    while (query.next()) {
        for (const char *column : columns)
            query.value(column).toString();
        if (more)
            more(query);
    }
}

void report(const char *what, int rows, double ours, double floor)
{
    std::printf("%-28s %8d %12.3f %12.3f %8.2f\n", what, rows, ours, floor, ours / floor);
}

void measure(int count)
{
    const ShopDriver shop(manyOfAll(count));
    // How long the disk takes is nothing of ours.
    Database::execute("pragma synchronous = off");
    const auto back = [&shop](Page page) {
        return [&shop, page] {
            shop.stack->setCurrentIndex(page);
        };
    };
    const auto click = [&shop](const char *button) {
        return [&shop, button] {
            shop.page()->findChild<QPushButton *>(button)->click();
            QCoreApplication::processEvents();
        };
    };
    const auto nothing = [] {
    };

    report(
        "lists page", count, milliseconds(back(PageShopping), click("listsButton")),
        milliseconds(nothing, [] {
            readAll(Database::run(Statements::allLists), {"name", "id"}, [](const QSqlQuery &list) {
                readAll(Database::run(Statements::storeName, list.value("magazinid").toInt()),
                        {"name"});
            });
        }));
    report("store list", count, milliseconds(back(PageStores), click("storesButton")),
           milliseconds(nothing, [] {
               readAll(Database::run(Statements::allStores), {"name", "id"},
                       [](const QSqlQuery &store) {
                           readAll(Database::run(Statements::categoryName,
                                                 store.value("categoryid").toInt()),
                                   {"name"});
                       });
           }));

    // List 1 has the goods.
    shop.stack->setCurrentIndex(PageShopping);
    click("listsButton")();
    for (int row = 0; row < shop.list()->count(); ++row) {
        if (shop.list()->item(row)->text() == "List 1")
            shop.list()->setCurrentRow(row);
    }
    click("selectButton")();
    report("items page", count, milliseconds(back(PageShopping), click("goodsButton")),
           milliseconds(nothing, [] {
               readAll(Database::run(Statements::goodsOfList, 1), {"name", "id", "amount"});
           }));

    shop.stack->setCurrentIndex(PageShopping);
    click("startButton")();
    const auto firstRow = [&shop] {
        shop.list()->setCurrentRow(0);
    };
    const double toggle = milliseconds(firstRow, click("checkButton"));
    int good = 0;
    const double floor = milliseconds(firstRow, [&shop, &good, count] {
        Database::run(Statements::updateGoodCheckState, 1, count - ++good);
        shop.list()->viewport()->repaint(shop.list()->visualItemRect(shop.list()->item(0)));
    });
    report("one good checked off", count, toggle, floor);
}

} // namespace

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    QLoggingCategory::setFilterRules("*.debug=false");
    std::printf("%-28s %8s %12s %12s %8s\n", "what", "rows", "ours, ms", "floor, ms", "ratio");
    for (const int count : {100, 1000, 10000, 100000})
        measure(count);
    return 0;
}
