// SPDX-License-Identifier: MIT
// The window on a database file with arbitrary values in its rows, or with arbitrary bytes. If the
// first line is "file", the rest of the input is the file itself. Otherwise the lines are rows and
// steps. A row is
//
//     mi4|tDairy|n|r1e300     a row of "magazin", the table with that initial (others: see below)
//
// Its values are (n)ull, an (i)nteger, a (r)eal, a (t)ext, a (b)lob, or a text repeated a number of
// times (x2000 text). In texts and blobs \00 is the byte with that hexadecimal number. Steps are a
// line of letters after ">":
//
//     L G D S C T    pages of lists, goods, shopping, stores, coordinates, tracking
//     B              goes back to the main page
//     P              a position arrives, at each store in turn
//
// Random presses on all widgets are tested by tst_monkey.
#include <algorithm>
#include <array>
#include <vector>

#include <QAbstractButton>
#include <QCoreApplication>
#include <QDir>
#include <QGeoCoordinate>
#include <QListWidget>
#include <QScrollArea>
#include <QSettings>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QStackedWidget>
#include <QtTest>

#include "app/shopwindow.h"
#include "data/statements.h"
#include "fuzz/support.h"
#include "tests/support/testhome.h"
#include "tests/support/testpositionplugin.h"

Q_IMPORT_PLUGIN(TestPositionPlugin)

using namespace Qt::StringLiterals;
using FuzzSupport::require;

namespace {

constexpr int mostRows = 200;
constexpr int mostSteps = 40;

struct Table
{
    char initial;
    const char *insert;
};

constexpr std::array<Table, 7> tables{{
    {'c', "insert into category values (?, ?)"},
    {'m', "insert into magazin values (?, ?, ?, ?)"},
    {'s', "insert into shoplist values (?, ?, ?, ?)"},
    {'p', "insert into purchase values (?, ?, ?, ?, ?)"},
    {'u', "insert into purref values (?, ?, ?)"},
    {'g', "insert into gpscoord values (?, ?, ?, ?)"},
    {'r', "insert into reminders values (?, ?, ?)"},
}};

/// Returns `text` with each backslash and two digits replaced by the byte.
QByteArray unescaped(const QByteArray &text)
{
    constexpr qsizetype length = 3;
    constexpr int hexadecimal = 16;
    QByteArray result;
    for (qsizetype at = 0; at < text.size(); ++at) {
        bool isByte = false;
        const int byte =
            text.at(at) == '\\' ? text.mid(at + 1, length - 1).toInt(&isByte, hexadecimal) : 0;
        result += isByte ? static_cast<char>(byte) : text.at(at);
        at += isByte ? length - 1 : 0;
    }
    return result;
}

QVariant valueOf(const QByteArray &told)
{
    constexpr int mostTimes = 2000;
    const QByteArray rest = told.mid(1);
    switch (told.isEmpty() ? 'n' : told.front()) {
    case 'i':
        return rest.toLongLong();
    case 'r':
        return rest.toDouble();
    case 't':
        return QString::fromUtf8(unescaped(rest));
    case 'b':
        return unescaped(rest);
    case 'x': {
        const auto space = rest.indexOf(' ');
        const int times = std::clamp(rest.left(space).toInt(), 0, mostTimes);
        return QString::fromUtf8(unescaped(rest.mid(space + 1)).left(4)).repeated(times);
    }
    default:
        return {};
    }
}

/// The rows and steps in an input.
struct Script
{
    QByteArray file;
    bool isFile = false;
    QList<QByteArray> rows;
    QByteArray steps;

    explicit Script(const QByteArray &input)
    {
        const QByteArray mark = "file\n";
        isFile = input.startsWith(mark);
        if (isFile)
            file = input.mid(mark.size());
        for (const QByteArray &line : isFile ? QList<QByteArray>() : input.split('\n')) {
            if (line.startsWith('>'))
                steps += line.mid(1);
            else if (!line.isEmpty() && rows.size() < mostRows)
                rows << line;
        }
        if (steps.isEmpty())
            steps = "LGDSCTPP";
        steps.truncate(mostSteps);
    }
};

void writeRows(const TestHome &home, const QList<QByteArray> &rows)
{
    QDir().mkpath(home.dataFolder());
    const QString name = u"rows"_s;
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(u"QSQLITE"_s, name);
        database.setDatabaseName(home.databaseFile());
        require(database.open(), "a new file can be opened");
        QSqlQuery query(database);
        query.exec(u"pragma synchronous = off"_s);
        database.transaction();
        for (const QLatin1StringView statement : Statements::createTables)
            require(query.exec(statement), "tables can be made");
        for (const QByteArray &row : rows) {
            const auto *table = std::ranges::find(tables, row.front(), &Table::initial);
            if (table == tables.end())
                continue;
            query.prepare(QLatin1StringView(table->insert));
            const QList<QByteArray> values = row.mid(1).split('|');
            const auto count = QByteArrayView(table->insert).count('?');
            for (qsizetype column = 0; column < count; ++column)
                query.addBindValue(valueOf(values.value(column)));
            // A second row with the same id is refused.
            query.exec();
        }
        database.commit();
    }
    QSqlDatabase::removeDatabase(name);
}

/// Returns the coordinates in the rows, and a place without a store.
std::vector<QGeoCoordinate> placesOf(const QList<QByteArray> &rows)
{
    std::vector<QGeoCoordinate> places{{10, 20}};
    for (const QByteArray &row : rows) {
        const QList<QByteArray> values = row.mid(1).split('|');
        const QGeoCoordinate place(valueOf(values.value(1)).toDouble(),
                                   valueOf(values.value(2)).toDouble());
        if (row.startsWith('g') && place.isValid())
            places.push_back(place);
    }
    return places;
}

/// Simulates a user who presses the visible buttons.
class Visitor
{
public:
    Visitor(ShopWindow &shopWindow, std::vector<QGeoCoordinate> storePlaces)
        : window(shopWindow)
        , places(std::move(storePlaces))
    {}

    void go(const QByteArray &steps)
    {
        for (const char step : steps) {
            if (!window.isVisible())
                return; // the program was closed
            take(step);
            QCoreApplication::processEvents();
            FuzzSupport::requireSoundWindow(window);
        }
    }

private:
    QWidget *page() const
    {
        // Created again by every change of language.
        return window.findChild<QStackedWidget *>(u"pageStack"_s)->currentWidget();
    }

    /// Returns the buttons that can be pressed.
    QList<QAbstractButton *> buttons() const
    {
        QList<QAbstractButton *> result = page()->findChildren<QAbstractButton *>();
        result.removeIf([](const QAbstractButton *button) {
            // The dialog for the sound file would read this computer's folders.
            return !button->isVisible() || !button->isEnabled() ||
                   button->objectName() == u"soundButton"_s;
        });
        return result;
    }

    void click(const QWidget *widget, const QPoint &place)
    {
        QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, widget->mapTo(&window, place));
        QCoreApplication::processEvents();
    }

    void press(QAbstractButton *button)
    {
        for (auto *area : page()->findChildren<QScrollArea *>()) {
            if (area->isAncestorOf(button))
                area->ensureWidgetVisible(button);
        }
        click(button, button->rect().center());
    }

    /// Does nothing if the page has no such button.
    bool press(const char *name)
    {
        const QList<QAbstractButton *> all = buttons();
        const auto found = std::ranges::find_if(all, [name](const QAbstractButton *button) {
            return button->objectName() == QLatin1StringView(name);
        });
        if (found == all.cend())
            return false;
        press(*found);
        return true;
    }

    void press(std::initializer_list<const char *> names)
    {
        for (const char *name : names) {
            press(name);
            FuzzSupport::requireSoundWindow(window);
        }
    }

    void tap(int row)
    {
        auto *list = page()->findChild<QListWidget *>();
        if (!list || !list->isVisible() || list->count() == 0)
            return;
        const QListWidgetItem *item = list->item(row % list->count());
        list->scrollToItem(item);
        click(list->viewport(), list->visualItemRect(item).center());
    }

    void goBack()
    {
        constexpr int deepest = 8;
        const std::array<const char *, 6> ways{"backButton",           "messageOkButton",
                                               "confirmationNoButton", "waitingCancelButton",
                                               "stopButton",           "okButton"};
        for (int level = 0; level < deepest && page()->objectName() != u"mainPage"_s; ++level) {
            for (const char *way : ways) {
                if (press(way))
                    break;
            }
        }
    }

    void arrive()
    {
        const QGeoCoordinate place = places.at(arrivals++ % places.size());
        if (auto *source = TestPositionSource::instance())
            source->deliver(place.latitude(), place.longitude());
    }

    void chooseList()
    {
        press({"shoppingButton", "listsButton"});
        tap(0);
        press("selectButton");
    }

    void chooseStore()
    {
        press({"shopsButton", "storesButton"});
        tap(0);
        press("selectButton");
    }

    void take(char step)
    {
        if (step == 'B') {
            goBack();
        } else if (step == 'P') {
            arrive();
        } else {
            walk(step);
        }
    }

    void walk(char pages)
    {
        goBack();
        switch (pages) {
        case 'L':
            chooseList();
            press({"listsButton", "editButton", "storeButton"});
            tap(1);
            press({"selectButton", "saveButton"});
            break;
        case 'G':
            chooseList();
            press("goodsButton");
            tap(0);
            tap(0);
            press({"moreButton", "saveButton", "okButton"});
            break;
        case 'D':
            chooseList();
            press("startButton");
            tap(0);
            press({"checkButton", "uncheckButton", "okButton"});
            break;
        case 'S':
            chooseStore();
            press({"storesButton", "editButton", "categoryButton"});
            tap(0);
            press({"editButton", "backButton", "selectButton", "saveButton"});
            break;
        case 'C':
            chooseStore();
            press({"editButton", "coordinatesButton", "mapViewButton", "gpsViewButton",
                   "editViewButton", "saveButton", "okButton"});
            break;
        case 'T':
            press({"reminderButton", "startButton"});
            arrive();
            press({"messageOkButton", "viewButton", "mapViewButton", "listViewButton"});
            arrive();
            break;
        default:
            break;
        }
    }

    ShopWindow &window;
    std::vector<QGeoCoordinate> places;
    std::size_t arrivals = 0;
};

} // namespace

int LLVMFuzzerInitialize(int * /*count*/, char *** /*arguments*/)
{
    FuzzSupport::startApplication();
    return 0;
}

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const Script script(FuzzSupport::bytesOf(data, size));
    const TestHome home;
    {
        QSettings settings(u"Vantor"_s, u"Trolleo"_s);
        settings.setValue(u"GpsEnabled"_s, true);
        // A missing file starts no alarm.
        settings.setValue(u"SoundFileName"_s, home.path() + u"/no sound.wav"_s);
    }
    if (script.isFile)
        home.writeDatabaseFile(script.file);
    else
        writeRows(home, script.rows);

    ShopWindow window;
    window.show();
    QCoreApplication::processEvents();
    Visitor(window, placesOf(script.rows)).go(script.steps);
    FuzzSupport::requireSoundWindow(window);
    return 0;
}
