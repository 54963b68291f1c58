// SPDX-License-Identifier: MIT
#include <sys/prctl.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <functional>

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLineEdit>
#include <QMap>
#include <QProcess>
#include <QPushButton>
#include <QRandomGenerator>
#include <QtPlugin>
#include <QtTest>

#include "base/pages.h"
#include "lists/liststate.h"
#include "tests/support/emulator.h"
#include "tests/support/randomrun.h"
#include "tests/support/shopdriver.h"
#include "widgets/listrow.h"

// Stores have coordinates only if there is a position source.
Q_IMPORT_PLUGIN(TestPositionPlugin)

namespace {

/// The rows of all tables: "table/id" and the other columns. In a change, a row without columns is
/// removed.
using Rows = QMap<QString, QStringList>;

const QString null = "null";

QString key(const char *table, int id)
{
    return QString("%1/%2").arg(table).arg(id);
}

Rows rowsOf(SecondConnection &connection)
{
    Rows rows;
    for (const QString &table : connection.tables()) {
        for (const QVariantList &row : connection.rows("select * from " + table)) {
            QStringList columns;
            for (const QVariant &value : row)
                columns << (value.isNull() ? null : value.toString());
            rows[table + '/' + columns.takeFirst()] = columns;
        }
    }
    return rows;
}

void apply(const Rows &change, Rows &rows)
{
    for (auto row = change.cbegin(); row != change.cend(); ++row) {
        if (row->isEmpty())
            rows.remove(row.key());
        else
            rows[row.key()] = *row;
    }
}

QJsonObject toJson(const Rows &rows)
{
    QJsonObject json;
    for (auto row = rows.cbegin(); row != rows.cend(); ++row)
        json[row.key()] = QJsonArray::fromStringList(*row);
    return json;
}

Rows fromJson(const QJsonObject &json)
{
    Rows rows;
    for (auto row = json.begin(); row != json.end(); ++row)
        rows[row.key()] = row->toVariant().toStringList();
    return rows;
}

/// Returns the differences for the failure message.
QString difference(const Rows &found, const Rows &expected)
{
    QStringList lines;
    Rows all = expected;
    all.insert(found);
    for (const QString &row : all.keys()) {
        if (found.value(row) != expected.value(row))
            lines << QString("%1: found [%2], expected [%3]")
                         .arg(row, found.value(row).join('|'), expected.value(row).join('|'));
    }
    return lines.join('\n');
}

/// Uses the window endlessly. Before each change it writes the expected change to standard output,
/// and once the window shows the change as done, it confirms it.
///
/// A change is a sequence of steps, one for each statement, in the order of the program. Every
/// statement commits by itself, so a program that is killed between two statements leaves only the
/// first one.
class Writer
{
public:
    Writer(const QString &home, quint32 seed)
        : shop(std::make_unique<TestHome>(TestHome::OfAnother{home}))
        , random(seed)
        , rows(rowsOf(*shop.db))
    {
        say({{"found", toJson(rows)}});
    }

    [[noreturn]] void run()
    {
        for (;;) {
            expect(shop.page() == PageMain, "the main page");
            switch (random.bounded(5)) {
            case 0:
                categories();
                break;
            case 1:
                stores();
                break;
            default: // the most frequent user actions
                lists();
            }
        }
    }

private:
    using Steps = QList<Rows>;

    /// Writes one line and flushes it, so that it is read even if the next instruction is never
    /// reached.
    static void say(const QJsonObject &what)
    {
        const QByteArray line = QJsonDocument(what).toJson(QJsonDocument::Compact) + '\n';
        if (write(STDOUT_FILENO, line.constData(), size_t(line.size())) != line.size())
            _exit(1);
    }

    void expect(bool condition, const char *what) const
    {
        if (!condition)
            qFatal("%s does not show, but %s", what, qPrintable(shop.pageWidget()->objectName()));
    }

    /// `act` makes the window run the statements of `steps`.
    void change(const char *name, const Steps &steps, const std::function<void()> &act,
                const std::function<bool()> &shows)
    {
        QJsonArray about;
        for (const Rows &step : steps)
            about << toJson(step);
        say({{"about", name}, {"steps", about}});
        act();
        expect(shows(), name);
        for (const Rows &step : steps)
            apply(step, rows);
        say({{"done", name}});
    }

    QList<int> ids(const QString &table) const
    {
        QList<int> result;
        for (auto row = rows.cbegin(); row != rows.cend(); ++row) {
            if (row.key().startsWith(table + '/'))
                result << row.key().section('/', 1).toInt();
        }
        std::sort(result.begin(), result.end());
        return result;
    }
    static int after(const QList<int> &ids)
    {
        return ids.isEmpty() ? 1 : qMax(ids.last() + 1, 1);
    }
    bool chance(int percent)
    {
        return random.bounded(100) < percent;
    }
    QString newName()
    {
        QString name;
        for (int left = chance(10) ? 25 : 8; left > 0; --left)
            name += QChar('a' + random.bounded(26));
        return name;
    }

    void goTo(const char *button, Page page) const
    {
        shop.press(button);
        expect(shop.page() == page, button);
    }
    int rowOf(int id) const
    {
        for (int row = 0; row < shop.list()->count(); ++row) {
            if (rowId(*shop.list()->item(row)) == id)
                return row;
        }
        return -1;
    }
    /// Taps a row until it opens another page, with the first or the second tap.
    void tapOpen(int row) const
    {
        const Page page = shop.page();
        for (int taps = 0; taps < 2 && shop.page() == page; ++taps)
            shop.tap(row);
        expect(shop.page() != page, "what a row opens");
    }
    int anyRow()
    {
        return int(random.bounded(shop.list()->count()));
    }
    int idOf(int row) const
    {
        return rowId(*shop.list()->item(row));
    }

    void categories()
    {
        goTo("shopsButton", PageStores);
        goTo("newButton", PageStoreEdit);
        goTo("categoryButton", PageCategoryList);
        for (int left = 3; left > 0; --left) {
            const int count = shop.list()->count();
            if (count == 0 || (count < 8 && chance(50))) {
                goTo("addButton", PageCategoryEdit);
                const QString name = newName();
                shop.type(name);
                change(
                    "add category", {{{key("category", after(ids("category"))), {name}}}},
                    [this] { shop.press("saveButton"); },
                    [&] { return shop.page() == PageCategoryList && shop.rows().last() == name; });
                continue;
            }
            const int row = anyRow();
            const int id = idOf(row);
            tapOpen(row);
            if (chance(50)) {
                const QString name = newName();
                shop.type(name);
                change(
                    "rename category", {{{key("category", id), {name}}}},
                    [this] { shop.press("saveButton"); },
                    [&] { return shop.page() == PageCategoryList && shop.rows().at(row) == name; });
            } else {
                goTo("deleteButton", PageConfirmation);
                Steps steps;
                // The category is cleared in the store with the id of the category.
                QStringList store = rows.value(key("magazin", id));
                if (!store.isEmpty()) {
                    store[1] = null;
                    steps << Rows{{key("magazin", id), store}};
                }
                steps << Rows{{key("category", id), {}}};
                change(
                    "delete category", steps, [this] { shop.press("confirmationYesButton"); },
                    [&] { return shop.page() == PageCategoryList && rowOf(id) < 0; });
            }
        }
        goTo("backButton", PageStoreEdit);
        goTo("backButton", PageStores);
        goTo("backButton", PageMain);
    }

    /// On the store edit page: chooses a category for the store, if there is one. Returns its id.
    QString chooseCategory()
    {
        goTo("categoryButton", PageCategoryList);
        if (shop.list()->count() == 0) {
            goTo("backButton", PageStoreEdit);
            return null;
        }
        const int id = idOf(shop.list()->currentRow());
        goTo("selectButton", PageStoreEdit);
        return QString::number(id);
    }
    /// On the store edit page: types coordinates, and returns their columns in the database.
    QStringList typeCoordinates()
    {
        goTo("coordinatesButton", PageCoordinates);
        const double latitude = random.bounded(1, 80) + 0.5;
        const QStringList typed{QString::number(latitude), QString::number(latitude + 20.25)};
        for (const int axis : {0, 1}) {
            auto *edit = shop.find<QLineEdit>(axis == 0 ? "latitudeField" : "longitudeField");
            edit->setFocus();
            edit->selectAll();
            QTest::keyClick(edit, Qt::Key_Delete);
            QTest::keyClick(edit, Qt::Key_Home);
            QTest::keyClicks(edit, typed.at(axis));
        }
        goTo("setButton", PageStoreEdit);
        return typed + QStringList{"0"};
    }

    void stores()
    {
        goTo("shopsButton", PageStores);
        for (int left = 3; left > 0; --left) {
            goTo("storesButton", PageStoreList);
            const int count = shop.list()->count();
            if (count == 0 || (count < 8 && chance(40)))
                addStore();
            else
                changeStore(anyRow());
        }
        goTo("backButton", PageMain);
    }

    void addStore()
    {
        goTo("addButton", PageStoreEdit);
        const QString name = newName();
        shop.type(name);
        const int id = after(ids("magazin"));
        const QString category = chance(50) ? chooseCategory() : null;
        Steps steps{{{key("magazin", id), {name, category, null}}}};
        if (chance(50))
            steps << Rows{{key("gpscoord", id), typeCoordinates()}};
        change(
            "add store", steps, [this] { shop.press("saveButton"); },
            [&] { return shop.page() == PageStoreList && rowOf(id) >= 0; });
        goTo("backButton", PageStores);
    }

    void changeStore(int row)
    {
        const int id = idOf(row);
        shop.tap(row);
        if (shop.page() == PageStoreList)
            shop.press("selectButton");
        goTo("editButton", PageStoreEdit);
        const QString coordinates = key("gpscoord", id);
        Steps steps;
        if (chance(70)) {
            const QString name = newName();
            shop.type(name);
            // A deleted category is cleared when the store is saved.
            const QString category = rows.value(key("magazin", id)).at(1);
            const bool known = rows.contains("category/" + category);
            steps << Rows{{key("magazin", id), {name, known ? category : null, null}}};
            if (chance(50)) {
                // If the program is killed between these two, the store has no coordinates.
                steps << Rows{{coordinates, {}}} << Rows{{coordinates, typeCoordinates()}};
            }
            change(
                "change store", steps, [this] { shop.press("saveButton"); },
                [&] { return shop.page() == PageStores && shop.labelText("storeName") == name; });
        } else {
            goTo("deleteButton", PageConfirmation);
            steps << Rows{{coordinates, {}}} << Rows{{key("magazin", id), {}}};
            change(
                "delete store", steps, [this] { shop.press("confirmationYesButton"); },
                [&] { return shop.page() == PageStores && !shop.isEnabled("editButton"); });
        }
    }

    void lists()
    {
        goTo("shoppingButton", PageShopping);
        goTo("listsButton", PageShoppingLists);
        const int count = shop.list()->count();
        if (count == 0 || (count < 6 && chance(20))) {
            const int id = addList();
            editGoods(id);
            goTo("backButton", PageShopping);
        } else {
            const int row = anyRow();
            const int id = idOf(row);
            tapOpen(row);
            const int what = int(random.bounded(100));
            if (what < 45) {
                goTo("goodsButton", PageItemsList);
                editGoods(id);
            } else if (what < 85) {
                checkGoods(id);
            } else if (what < 95) {
                changeList(id);
            } else {
                deleteList(id);
            }
        }
        expect(shop.page() == PageShopping, "the shopping page");
        goTo("backButton", PageMain);
    }

    /// On the page of all lists: adds a list, which opens its goods. Returns its id.
    int addList()
    {
        goTo("createButton", PageListEdit);
        const QString name = newName();
        shop.type(name);
        int store = 0;
        goTo("storeButton", PageStoreList);
        if (shop.list()->count() > 0) {
            const int row = anyRow();
            store = idOf(row);
            shop.tap(row);
            if (shop.page() == PageStoreList)
                shop.press("selectButton");
        } else {
            shop.press("backButton");
        }
        expect(shop.page() == PageListEdit, "the list edit page");
        const int id = after(ids("shoplist"));
        change(
            "add list",
            {{{key("shoplist", id),
               {name, QString::number(store), QString::number(int(ListEmpty))}}}},
            [this] { shop.press("saveButton"); },
            [this] { return shop.message().startsWith("List Created: "); });
        goTo("messageOkButton", PageItemsList);
        return id;
    }

    void changeList(int id)
    {
        goTo("editButton", PageListEdit);
        if (shop.isEnabled("resetButton")) {
            Rows unchecked;
            for (const int good : goodsOf(id, rows)) {
                QStringList columns = rows.value(key("purchase", good));
                columns[3] = "0";
                unchecked[key("purchase", good)] = columns;
            }
            change(
                "reset list", {unchecked, stateStep(id, ListUnchecked, rows)},
                [this] { shop.press("resetButton"); },
                [this] { return !shop.isEnabled("resetButton"); });
        }
        const QString name = newName();
        shop.type(name);
        QStringList columns = rows.value(key("shoplist", id));
        columns[0] = name;
        change(
            "rename list", {{{key("shoplist", id), columns}}}, [this] { shop.press("saveButton"); },
            [&] { return shop.page() == PageShopping && shop.labelText("listName") == name; });
    }

    void deleteList(int id)
    {
        goTo("editButton", PageListEdit);
        goTo("deleteButton", PageConfirmation);
        Rows goods;
        for (const int good : goodsOf(id, rows))
            goods[key("purchase", good)] = {};
        change(
            "delete list", {goods, {{key("shoplist", id), {}}}},
            [this] { shop.press("confirmationYesButton"); },
            [this] { return shop.page() == PageShopping && !shop.isEnabled("goodsButton"); });
    }

    QList<int> goodsOf(int list, const Rows &all) const
    {
        QList<int> goods;
        for (const int good : ids("purchase")) {
            if (all.value(key("purchase", good)).value(1) == QString::number(list))
                goods << good;
        }
        return goods;
    }
    static Rows stateStep(int list, int state, const Rows &all)
    {
        QStringList columns = all.value(key("shoplist", list));
        columns[2] = QString::number(state);
        return {{key("shoplist", list), columns}};
    }
    /// Returns the step that stores the list's state, computed when its goods were shown.
    Rows stateStep(int list, const Rows &all) const
    {
        QList<bool> marks;
        for (auto row = all.cbegin(); row != all.cend(); ++row) {
            if (row.key().startsWith("purchase/") && row->at(1) == QString::number(list))
                marks << (row->at(3) == "1");
        }
        return stateStep(list, stateOfList(marks), all);
    }

    /// On the page of a list's goods: edits them and saves them all. They are written in this
    /// order: deleted goods are removed, one after the other; then each remaining good is updated
    /// or inserted; then the state of the list is written. Only goods that were deleted on the page
    /// are removed; the others are never removed and inserted again.
    void editGoods(int list)
    {
        struct Good
        {
            int id;
            QString name;
            int amount;
        };
        QList<Good> goods;
        for (const int id : goodsOf(list, rows)) {
            const QStringList columns = rows.value(key("purchase", id));
            goods << Good{id, columns.at(0), columns.at(2).toInt()};
        }
        QList<int> deleted;
        for (int left = int(random.bounded(1, 6)); left > 0; --left) {
            const int count = int(goods.size());
            if (count == 0 || (count < 12 && chance(60))) {
                Good good{0, newName(), 1};
                goTo("addButton", PageItemEdit);
                shop.type(good.name);
                if (chance(30)) {
                    shop.press("moreButton");
                    ++good.amount;
                }
                goTo("saveButton", PageItemsList);
                goods << good;
                continue;
            }
            const int row = anyRow();
            tapOpen(row);
            if (chance(60)) {
                goods[row].name = newName();
                shop.type(goods[row].name);
                goTo("saveButton", PageItemsList);
            } else {
                goTo("deleteButton", PageConfirmation);
                goTo("confirmationYesButton", PageItemsList);
                if (goods.at(row).id != 0)
                    deleted << goods.at(row).id;
                goods.removeAt(row);
            }
        }
        QStringList shown;
        for (const Good &good : std::as_const(goods))
            shown << QString("%1|%2").arg(good.name).arg(good.amount);
        expect(shop.rows() == shown, "the goods");

        Steps steps;
        Rows then = rows;
        QList<int> used = ids("purchase");
        const auto step = [&](const Rows &rowsOfStep) {
            apply(rowsOfStep, then);
            steps << rowsOfStep;
        };
        std::sort(deleted.begin(), deleted.end());
        for (const int id : std::as_const(deleted)) {
            step({{key("purchase", id), {}}});
            used.removeOne(id);
        }
        for (const Good &good : std::as_const(goods)) {
            QStringList columns = then.value(key("purchase", good.id));
            if (good.id == 0) {
                used << after(used);
                columns = {good.name, QString::number(list), QString::number(good.amount), "0"};
            } else {
                columns[0] = good.name;
                columns[2] = QString::number(good.amount);
            }
            step({{key("purchase", good.id == 0 ? used.last() : good.id), columns}});
        }
        step(stateStep(list, then));
        change(
            "save goods", steps, [this] { shop.press("okButton"); },
            [this] { return shop.page() != PageItemsList; });
    }

    void checkGoods(int list)
    {
        goTo("startButton", PageDoShopping);
        for (int left = int(random.bounded(1, 6)); left > 0 && shop.list()->count() > 0; --left) {
            const int row = anyRow();
            const int id = idOf(row);
            const auto isChecked = [&] {
                return shop.list()->item(rowOf(id))->checkState() == Qt::Checked;
            };
            const bool before = isChecked();
            QStringList columns = rows.value(key("purchase", id));
            columns[3] = before ? "0" : "1";
            change(
                "check good", {{{key("purchase", id), columns}}},
                [&] {
                    shop.tap(row);
                    if (isChecked() == before) // otherwise it was the second tap on this row
                        shop.press(before ? "uncheckButton" : "checkButton");
                },
                [&] { return isChecked() != before; });
        }
        change(
            "end shopping", {stateStep(list, rows)}, [this] { shop.press("okButton"); },
            [this] { return shop.page() == PageShopping; });
    }

    ShopDriver shop;
    QRandomGenerator random;
    Rows rows;
};

/// Interprets the output of a writer, line by line.
class Account
{
public:
    void add(const QByteArray &line)
    {
        const QJsonObject said = QJsonDocument::fromJson(line).object();
        if (said.contains("found")) {
            isReady = true;
            found = fromJson(said["found"].toObject());
        } else if (said.contains("about")) {
            what = said["about"].toString();
            steps.clear();
            for (const QJsonValue &step : said["steps"].toArray())
                steps << fromJson(step.toObject());
            ++begun;
        } else if (said.contains("done")) {
            for (const Rows &step : std::as_const(steps))
                apply(step, confirmed);
            steps.clear();
            what.clear();
            ++done;
        }
    }

    bool isReady = false;
    Rows found;
    /// The required contents of the file.
    Rows confirmed;
    /// The name and the steps of the change in progress.
    QString what;
    QList<Rows> steps;
    int begun = 0;
    int done = 0;
};

} // namespace

/// Kills the program at any moment, as a phone does when memory is low. Everything it had shown as
/// done must be in the file.
class TestKilled : public QObject
{
    Q_OBJECT

private slots:
    void whatWasShownAsDoneIsInTheFile();
};

void TestKilled::whatWasShownAsDoneIsInTheFile()
{
    // The number is unlimited by hand, and limited by time in a run of all tests.
    const int most = RandomRun::count("TROLLEO_TEST_KILLS", 60);
    const QDeadlineTimer deadline = qEnvironmentVariableIsSet("TROLLEO_TEST_KILLS")
                                        ? QDeadlineTimer(QDeadlineTimer::Forever)
                                        : QDeadlineTimer(std::chrono::seconds(30));
    // The seed reproduces the actions, but not the moments of the kills, which depend on the
    // machine.
    QRandomGenerator random(RandomRun::seed());

    const TestHome home;
    const QString journal = home.databaseFile() + "-journal";
    Rows known;
    bool isFresh = true;
    int kills = 0;
    int changes = 0;
    int inFlight = 0;
    int halves = 0;
    int hotJournals = 0;
    QElapsedTimer clock;
    clock.start();
    while (kills < most && !deadline.hasExpired()) {
        if (random.bounded(10) == 0) {
            QVERIFY(QDir(home.dataFolder()).removeRecursively());
            known.clear();
            isFresh = true;
        }
        QProcess writer;
        Emulator::startSelf(writer, {"write", home.path(), QString::number(random.generate())});
        QVERIFY(writer.waitForStarted());
        // At random moments most kills hit a program that paints. Other kills therefore wait for
        // the beginning of a change, or for the creation of the tables.
        const bool meetsTables = isFresh && random.bounded(2) == 0;
        const bool meetsChange = !meetsTables && random.bounded(3) > 0;
        const int count = int(random.bounded(1, 10));
        const int statements = random.bounded(2) == 0 ? 1 : 3;
        const int patience = Emulator::isUsed() ? 120000 : 30000; // ms
        const QDeadlineTimer moment(meetsTables || meetsChange ? patience : random.bounded(500));
        Account account;
        account.confirmed = known;
        const auto hear = [&] {
            while (writer.canReadLine())
                account.add(writer.readLine());
        };
        if (meetsTables) {
            while (!QFile::exists(home.databaseFile()) && !moment.hasExpired())
                usleep(200);
            usleep(random.bounded(40000));
        } else {
            while (!moment.hasExpired() &&
                   !(meetsChange && account.begun >= count && account.steps.size() >= statements)) {
                writer.waitForReadyRead(int(moment.remainingTime()));
                QVERIFY2(writer.state() == QProcess::Running, writer.readAllStandardError());
                hear();
            }
        }
        if (meetsChange) {
            QVERIFY2(!moment.hasExpired(), "the writer hangs");
            usleep(random.bounded(3000 * int(account.steps.size())));
        }
        writer.kill();
        QVERIFY(writer.waitForFinished());
        QCOMPARE(writer.exitStatus(), QProcess::CrashExit);
        QVERIFY2(writer.exitCode() == SIGKILL, writer.readAllStandardError());
        hear();
        ++kills;
        changes += account.done;
        const QByteArray about = QString("kill %1, %2 of %3 changes done, in flight: %4")
                                     .arg(kills)
                                     .arg(account.done)
                                     .arg(account.begun)
                                     .arg(account.what)
                                     .toUtf8();

        // The next program must recover from the state of this one, so only a copy is read.
        const QTemporaryDir folder;
        const QString copy = folder.filePath("trolleo.db");
        if (!QFile::exists(home.databaseFile())) {
            QVERIFY2(isFresh && !account.isReady, about);
            continue;
        }
        QVERIFY(QFile::copy(home.databaseFile(), copy));
        if (QFile::exists(journal)) {
            QVERIFY(QFile::copy(journal, copy + "-journal"));
            ++hotJournals;
        }
        SecondConnection connection(copy);
        QVERIFY2(connection.column("pragma integrity_check") == QVariantList{"ok"}, about);
        const Rows rows = rowsOf(connection);
        if (account.isReady) {
            QVERIFY2(account.found == known,
                     about + '\n' + difference(account.found, known).toUtf8());
        }
        const QStringList tables = connection.tables();
        if (tables.size() < 7) {
            QVERIFY2(isFresh && !account.isReady, about);
            // Each table commits by itself, and once the table of stores exists, the others are
            // never created. Nothing can be confirmed on such a file.
            QVERIFY(QDir(home.dataFolder()).removeRecursively());
            continue;
        }
        isFresh = false;

        Rows allowed = account.confirmed;
        qsizetype written = 0;
        while (rows != allowed && written < account.steps.size())
            apply(account.steps.at(written++), allowed);
        QVERIFY2(rows == allowed, about + '\n' + difference(rows, account.confirmed).toUtf8());
        inFlight += account.steps.isEmpty() ? 0 : 1;
        halves += written > 0 && written < account.steps.size() ? 1 : 0;
        known = rows;
        if (kills % 100 == 0)
            qInfo("%d kills", kills);
    }
    qInfo("%d kills in %.1f s, %d of them during a change and %d between its statements; "
          "%d journals left, %d changes done",
          kills, double(clock.elapsed()) / 1000, inFlight, halves, hotJournals, changes);
    QVERIFY(kills > 0 && changes > 0 && inFlight > 0);

    ShopDriver shop(std::make_unique<TestHome>(TestHome::OfAnother{home.path()}));
    QCOMPARE(rowsOf(*shop.db), known);
    shop.press("shoppingButton");
    shop.press("listsButton");
    QCOMPARE(shop.list()->count(), shop.db->column("select id from shoplist").size());
}

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == "write") {
        // The writer must not outlive the test.
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        Writer(arguments.value(2), arguments.value(3).toUInt()).run();
    }
    RandomRun::takeYourTime("TROLLEO_TEST_KILLS");
    Stoppable<TestKilled> test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_killed.moc"
