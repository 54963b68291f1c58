// SPDX-License-Identifier: MIT
#pragma once

#include <array>

#include <QLatin1StringView>

/// Every statement the program runs, grouped by table. Placeholders are filled in ascending order
/// by Database::run.
namespace Statements {

using Text = QLatin1StringView;

// clang-format off: one statement, one line

// The schema, in the order of creation. In purref, "int categoryid" has the type first, so SQLite
// names the column "int". Existing files have that column, so it must not change.
inline constexpr std::array<Text, 7> createTables{
    Text{"create table category (id int primary key, name varchar(20))"},
    Text{"create table magazin (id int primary key, name varchar(50), categoryid int, gpsid int)"},
    Text{"create table shoplist (id int primary key, name varchar(20),magazinid int, state int)"},
    Text{"create table purchase (id int primary key, name varchar(20),shoplistid int, amount int, "
         "checkstate int)"},
    Text{"create table purref (id int primary key, name varchar(20),int categoryid)"},
    Text{"create table gpscoord (id int primary key, latitude float,longitude float, altitude "
         "float)"},
    Text{"create table reminders (id int primary key, name varchar(20), alarm datetime)"},
};

// How long a statement waits for a file that another process has locked, in milliseconds.
inline constexpr Text setBusyTimeout{"pragma busy_timeout = %1"};
// Whether statements wait until the disk has stored what they have changed, as they usually do.
inline constexpr Text waitForDisk{"pragma synchronous = full"};
inline constexpr Text doNotWaitForDisk{"pragma synchronous = off"};
// Whether statements keep the lock of the file, which they usually do not. It is released by the
// next statement that uses the file.
inline constexpr Text keepLock{"pragma locking_mode = exclusive"};
inline constexpr Text releaseLock{"pragma locking_mode = normal"};

// Store categories.
inline constexpr Text newCategoryId{"select max(id)+1 as ad from category"};
inline constexpr Text insertCategory{"insert into category values (%1, '%2')"};
inline constexpr Text updateCategory{"update category set name = '%1' where id = %2"};
inline constexpr Text deleteCategory{"delete from category where id = %1"};
inline constexpr Text allCategories{"select * from category order by name"};
inline constexpr Text categoryName{"select name from category where id = %1"};
inline constexpr Text categoryIdByName{"select id from category where name = '%1'"};

// Stores.
inline constexpr Text allStores{"select * from magazin order by name"};
inline constexpr Text store{"select * from magazin where id = %1"};
inline constexpr Text storeName{"select name from magazin where id = %1"};
inline constexpr Text newStoreId{"select max(id)+1 as ad from magazin"};
inline constexpr Text insertStore{"insert into magazin values (%1, '%2', %3, %4)"};
inline constexpr Text updateStore{
    "update magazin set name = '%1', categoryid = %2, gpsid = %3 where id = %4"};
inline constexpr Text deleteStore{"delete from magazin where id = %1"};
inline constexpr Text clearStoreCategory{"update magazin set categoryid = null where id = %1"};

// Coordinates of stores. The id of a row is the id of its store.
inline constexpr Text insertCoordinates{"insert into gpscoord values (%1, %2, %3, %4)"};
inline constexpr Text deleteCoordinates{"delete from gpscoord where id = %1"};
inline constexpr Text coordinates{"select * from gpscoord where id = %1"};

// Shopping lists.
inline constexpr Text allLists{"select * from shoplist order by name"};
inline constexpr Text list{"select * from shoplist where id = %1"};
inline constexpr Text listName{"select name from shoplist where id = %1"};
inline constexpr Text newListId{"select max(id)+1 as ad from shoplist"};
inline constexpr Text insertList{"insert into shoplist values (%1, '%2', %3, %4)"};
inline constexpr Text updateList{"update shoplist set name = '%1', magazinid = %2 where id = %3"};
inline constexpr Text resetListState{"update shoplist set state = 1 where id = %1"};
inline constexpr Text updateListState{"update shoplist set state = %1 where id = %2"};
inline constexpr Text deleteList{"delete from shoplist where id = %1"};

// Goods of shopping lists.
inline constexpr Text goodsOfList{"select * from purchase where shoplistid = %1"};
inline constexpr Text goodIdsOfList{"select id from purchase where shoplistid = %1"};
inline constexpr Text newGoodId{"select max(id)+1 as ad from purchase"};
inline constexpr Text insertGood{"insert into purchase values (%1, '%2', %3, %4, 0)"};
inline constexpr Text updateGood{"update purchase set name = '%1', amount = %2 where id = %3"};
inline constexpr Text deleteGood{"delete from purchase where id = %1"};
inline constexpr Text uncheckGoodsOfList{
    "update purchase set checkstate = 0 where shoplistid = %1"};
inline constexpr Text deleteGoodsOfList{"delete from purchase where shoplistid = %1"};
inline constexpr Text updateGoodCheckState{"update purchase set checkstate = %1 where id = %2"};
inline constexpr Text checkStatesOfList{"select checkstate from purchase where shoplistid = %1"};
inline constexpr Text uncheckedGoodsOfList{
    "select * from purchase where checkstate = 0 and shoplistid = %1"};
inline constexpr Text checkedGoodsOfList{
    "select * from purchase where checkstate = 1 and shoplistid = %1"};
inline constexpr Text uncheckedGoodsOfStore{
    "select * from purchase where checkstate = 0 and shoplistid in (select id from shoplist where "
    "magazinid = %1)"};
inline constexpr Text checkedGoodsOfStore{
    "select * from purchase where checkstate = 1 and shoplistid in (select id from shoplist where "
    "magazinid = %1)"};

// For tracking: stores that have coordinates and an open list (state 1 or 2).
inline constexpr Text trackedStore{
    "select m.name as name, c.name as cname, g.*, s.id as sid, s.name as sname from magazin m  "
    "inner join gpscoord g on m.id = g.id  inner join shoplist s on s.magazinid = m.id  left join "
    "category c on m.categoryid = c.id  where m.id = %1 and s.state in (1,2) "};
inline constexpr Text trackedStoresOfCategory{
    "select m.name as name, m.id as id, c.name as cname,  g.*, s.id as sid, s.name as sname from "
    "magazin m  inner join gpscoord g on m.id = g.id  inner join shoplist s on s.magazinid = m.id  "
    "left join category c on m.categoryid = c.id  where m.categoryid = %1 and s.state in (1,2) "
    "order by m.id"};
inline constexpr Text trackedStores{
    "select m.name as name, m.id as id, c.name as cname, g.*, s.id as sid, s.name as sname from "
    "magazin m  inner join gpscoord g on m.id = g.id  inner join shoplist s on s.magazinid = m.id  "
    "left join category c on m.categoryid = c.id  where s.state in (1,2) order by m.id"};
inline constexpr Text noTrackedStores{"select * from magazin where id = 0"};

// clang-format on

} // namespace Statements
