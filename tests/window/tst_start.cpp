// SPDX-License-Identifier: MIT
#include <QAccessible>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>
#include <QSqlDatabase>
#include <QStackedWidget>
#include <QTranslator>
#include <QtTest>

#include "app/shopwindow.h"
#include "tests/support/pagenames.h"
#include "tests/support/records.h"
#include "tests/support/shopdriver.h"
#include "tests/support/testhome.h"
#include "widgets/controls.h"
#include "widgets/TrKineticScroller.h"
#include "widgets/trlistdelegate.h"

namespace {

/// Translates every text into the same one.
class EverythingTranslator : public QTranslator
{
public:
    QString translate(const char * /*context*/, const char * /*sourceText*/,
                      const char * /*disambiguation*/, int /*n*/) const override
    {
        return QStringLiteral("Перевод");
    }
    bool isEmpty() const override
    {
        return false;
    }
};

/// Returns the number of threads of this process with that name.
int threadsNamed(const QByteArray &name)
{
    int count = 0;
    const QString tasks = "/proc/self/task/";
    for (const QString &task : QDir(tasks).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile file(tasks + task + "/comm");
        count += file.open(QIODevice::ReadOnly) && file.readAll().trimmed() == name ? 1 : 0;
    }
    return count;
}

} // namespace

class TestStart : public QObject
{
    Q_OBJECT

private slots:
    /// The first, because threads of other tests stay for a while.
    void mainPageIsPaintedWithoutThreads();
    void firstStartMakesFolderAndTables();
    void laterStartsKeepWhatIsThere();
    void twentyPagesStandInTheirOrder();
    void mainPageShows();
    void mainPageControls_data();
    void mainPageControls();
    void picturesOfTheMainPageAreReady();
    void toolbarOrder();
    void navigationSlots_data();
    void navigationSlots();
    void pagesWithHelpAreListed();
    void everyControlHasItsName();
    void tabFollowsThePage_data();
    void tabFollowsThePage();
    void titleIsTheSameInEveryLanguage_data();
    void titleIsTheSameInEveryLanguage();
    void firstSize();
    void exitButtonEndsTheEventLoop();
    void endOfTheProgramRecomputesTheState_data();
    void endOfTheProgramRecomputesTheState();
    void endOfTheProgramLeavesListsAlone();
    void destroyingRemovesTheConnection();
    void nothingIsWrittenToTheSettings();
    void idleWindowRunsNoTimer();
    void everyListIsDrawnByTheOneDelegate();
    void homeWithAnUnusualPath_data();
    void homeWithAnUnusualPath();
};

void TestStart::mainPageIsPaintedWithoutThreads()
{
    const ShopDriver shop;
    shop.window->resize(800, 480);
    shop.window->grab();
    // Qt starts them to scale a picture or to draw it as if it were scaled.
    QCOMPARE(threadsNamed("Thread (pooled)"), 0);
}

void TestStart::firstStartMakesFolderAndTables()
{
    const TestHome home;
    QVERIFY(!QFile::exists(home.dataFolder()));
    const ShopWindow window;
    QVERIFY(QFile::exists(home.databaseFile()));
    SecondConnection second(home.databaseFile());
    QCOMPARE(second.tables(), (QStringList{"category", "gpscoord", "magazin", "purchase", "purref",
                                           "reminders", "shoplist"}));
    QCOMPARE(second.columnsOf("purref"), (QStringList{second.columnsOf("purref").value(0),
                                                      "name varchar(20)", "int categoryid"}));
}

void TestStart::laterStartsKeepWhatIsThere()
{
    const TestHome home;
    {
        const ShopWindow window;
    }
    {
        SecondConnection(home.databaseFile()).add(category("Food"));
    }
    const QByteArray before = home.readDatabaseFile();
    {
        const ShopWindow window;
    }
    QCOMPARE(home.readDatabaseFile(), before);
}

void TestStart::twentyPagesStandInTheirOrder()
{
    const TestHome home;
    const ShopWindow window;
    const auto *stack = qobject_cast<QStackedWidget *>(window.centralWidget());
    QVERIFY(stack);
    QCOMPARE(window.findChildren<QStackedWidget *>(Qt::FindDirectChildrenOnly).size(), 1);
    const QStringList names{
        "mainPage",         "shoppingPage",    "trackingPage",      "storesPage",
        "itemsListPage",    "listEditPage",    "shoppingListsPage", "itemEditPage",
        "storeListPage",    "storeEditPage",   "categoryListPage",  "categoryEditPage",
        "messagePage",      "doShoppingPage",  "optionsPage",       "waitingPage",
        "confirmationPage", "trackedListPage", "reminderPage",      "coordinatesPage"};
    QCOMPARE(stack->count(), PageCount);
    for (int index = 0; index < stack->count(); ++index) {
        const QWidget *page = stack->widget(index);
        QCOMPARE(page->objectName(), names.at(index));
        QCOMPARE(page->metaObject()->className(), "TurningPage");
        QCOMPARE(page->font().pointSize(), 22);
    }
}

void TestStart::mainPageShows()
{
    const TestHome home;
    ShopWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    const auto *stack = window.findChild<QStackedWidget *>("pageStack");
    QCOMPARE(Page(stack->currentIndex()), PageMain);
    QVERIFY(window.findChild<QWidget *>("mainPage")->isVisible());
    const auto *logo = window.findChild<QLabel *>("logo");
    QCOMPARE(logo->pixmap().deviceIndependentSize(), QSizeF(52, 52));
}

void TestStart::mainPageControls_data()
{
    QTest::addColumn<QString>("objectName");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("accessibleName");
    QTest::addColumn<int>("icon");
    QTest::newRow("shopping") << "shoppingButton"
                              << "Shopping"
                              << "" << 96;
    QTest::newRow("reminder") << "reminderButton"
                              << "Reminder"
                              << "" << 96;
    QTest::newRow("shops") << "shopsButton"
                           << "Shops"
                           << "" << 96;
    QTest::newRow("options") << "optionsButton"
                             << ""
                             << "Options" << 40;
    QTest::newRow("exit") << "exitButton"
                          << ""
                          << "Exit" << 40;
    QTest::newRow("help") << "helpButton"
                          << ""
                          << "Help" << 52;
    QTest::newRow("about") << "aboutButton"
                           << ""
                           << "About" << 52;
}

void TestStart::mainPageControls()
{
    QFETCH(QString, objectName);
    QFETCH(QString, text);
    QFETCH(QString, accessibleName);
    QFETCH(int, icon);
    const TestHome home;
    const ShopWindow window;
    const auto *button =
        window.findChild<QWidget *>("mainPage")->findChild<QPushButton *>(objectName);
    QVERIFY(button);
    QCOMPARE(button->text(), text);
    QCOMPARE(button->accessibleName(), accessibleName);
    QCOMPARE(button->iconSize(), QSize(icon, icon));
    QVERIFY(!button->icon().isNull());
    QCOMPARE(button->sizePolicy().verticalPolicy(),
             icon == 96 ? QSizePolicy::Preferred : QSizePolicy::Fixed);
}

/// Decoding pictures would take a good part of the start.
void TestStart::picturesOfTheMainPageAreReady()
{
    const TestHome home;
    const ShopWindow window;
    int count = 0;
    for (const auto *button :
         window.findChild<QWidget *>("mainPage")->findChildren<QPushButton *>()) {
        const QString name = QFileInfo(Controls::pictureOf(button)).completeBaseName();
        const int extent = button->iconSize().width();
        QVERIFY2(QFile::exists(QString(":/ready/%1/%2.rgba").arg(extent).arg(name)),
                 qPrintable(name));
        ++count;
    }
    QCOMPARE(count, 7);
}

void TestStart::toolbarOrder()
{
    const TestHome home;
    ShopWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    const auto *page = window.findChild<QWidget *>("mainPage");
    int y = -1;
    for (const char *name : {"logo", "optionsButton", "helpButton", "aboutButton", "exitButton"}) {
        const auto *widget = page->findChild<QWidget *>(name);
        QVERIFY2(widget->geometry().top() > y, name);
        y = widget->geometry().bottom();
    }
}

void TestStart::navigationSlots_data()
{
    QTest::addColumn<QString>("slot");
    QTest::addColumn<Page>("page");
    QTest::newRow("backClicked") << "backClicked" << PageMain;
    QTest::newRow("backToShopEdit") << "backToShopEdit" << PageStoreEdit;
    QTest::newRow("cancelShoppingLists") << "cancelShoppingLists" << PageShopping;
    QTest::newRow("addShoppingItemCancelClicked")
        << "addShoppingItemCancelClicked" << PageItemsList;
    QTest::newRow("addCategoryCancelClicked") << "addCategoryCancelClicked" << PageCategoryList;
}

void TestStart::navigationSlots()
{
    QFETCH(QString, slot);
    QFETCH(Page, page);
    const TestHome home;
    ShopWindow window;
    auto *stack = window.findChild<QStackedWidget *>("pageStack");
    stack->setCurrentIndex(PageCoordinates);
    QVERIFY(QMetaObject::invokeMethod(&window, slot.toLatin1().constData()));
    QCOMPARE(Page(stack->currentIndex()), page);
}

void TestStart::pagesWithHelpAreListed()
{
    const TestHome home;
    const ShopWindow window;
    const auto *stack = window.findChild<QStackedWidget *>("pageStack");
    for (int index = 0; index < PageCount; ++index) {
        const QWidget *page = stack->widget(index);
        const bool isListed =
            std::ranges::find(pagesWithHelp, Page(index)) != std::end(pagesWithHelp);
        QVERIFY2((page->findChild<QWidget *>("helpButton") != nullptr) == isListed,
                 qPrintable(page->objectName()));
    }
}

void TestStart::everyControlHasItsName()
{
    const TestHome home;
    const ShopWindow window;
    for (const QAbstractButton *button : window.findChildren<QAbstractButton *>()) {
        // Buttons of scroll bars and the like belong to Qt, and a suggestion without a word is
        // hidden.
        if (button->objectName().startsWith("qt_") || button->isHidden())
            continue;
        QVERIFY2(!button->objectName().isEmpty(), qPrintable(button->text()));
        // A button for a name that is not chosen yet has its caption as accessible name.
        QAccessibleInterface *accessible =
            QAccessible::queryAccessibleInterface(const_cast<QAbstractButton *>(button));
        QVERIFY2(!accessible->text(QAccessible::Name).isEmpty(), qPrintable(button->objectName()));
    }
}

void TestStart::tabFollowsThePage_data()
{
    QTest::addColumn<QStringList>("order");
    QTest::newRow("mainPage") << QStringList{"optionsButton", "helpButton",     "aboutButton",
                                             "exitButton",    "shoppingButton", "reminderButton",
                                             "shopsButton"};
    QTest::newRow("shoppingPage") << QStringList{"helpButton", "backButton",  "startButton",
                                                 "editButton", "goodsButton", "listsButton"};
    QTest::newRow("storesPage") << QStringList{"helpButton", "backButton", "editButton",
                                               "storesButton", "newButton"};
    QTest::newRow("listEditPage") << QStringList{"helpButton",  "backButton",  "nameField",
                                                 "storeButton", "resetButton", "saveButton",
                                                 "deleteButton"};
    QTest::newRow("itemEditPage") << QStringList{"helpButton",  "backButton",  "nameField",
                                                 "suggestion0", "suggestion1", "suggestion2",
                                                 "amountField", "saveButton",  "deleteButton"};
    QTest::newRow("storeEditPage")
        << QStringList{"helpButton",        "backButton", "nameField",   "categoryButton",
                       "coordinatesButton", "saveButton", "deleteButton"};
    QTest::newRow("categoryEditPage")
        << QStringList{"helpButton", "backButton", "nameField", "saveButton", "deleteButton"};
    QTest::newRow("categoryListPage")
        << QStringList{"backButton", "helpButton", "list", "addButton", "selectButton"};
    QTest::newRow("doShoppingPage") << QStringList{"backButton",  "helpButton",    "list",
                                                   "checkButton", "uncheckButton", "okButton"};
}

void TestStart::tabFollowsThePage()
{
    QFETCH(QStringList, order);
    const TestHome home;
    const ShopWindow window;
    const auto *page = window.findChild<QWidget *>(QTest::currentDataTag());
    QStringList found;
    const auto *first = page->findChild<QWidget *>(order.first());
    const QWidget *widget = first;
    do {
        if ((widget->focusPolicy() & Qt::TabFocus) != 0 && !widget->objectName().isEmpty() &&
            !widget->objectName().startsWith("qt_") && page->isAncestorOf(widget))
            found << widget->objectName();
        widget = widget->nextInFocusChain();
    } while (widget != first);
    QCOMPARE(found, order);
}

void TestStart::titleIsTheSameInEveryLanguage_data()
{
    QTest::addColumn<int>("languageId");
    for (const int id : {-1, 0, 1, 2, 99})
        QTest::addRow("language %d", id) << id;
}

void TestStart::titleIsTheSameInEveryLanguage()
{
    QFETCH(int, languageId);
    const TestHome home;
    QSettings("Vantor", "Trolleo").setValue("LanguageId", languageId);
    EverythingTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    const ShopWindow window;
    QCOMPARE(window.windowTitle(), "Trolleo");
    // Texts come from the program's own translation, or else from this one.
    const QString expected = languageId == 1 ? "Shopping" : languageId == 2 ? "Покупки" : "Перевод";
    QCOMPARE(window.findChild<QPushButton *>("shoppingButton")->text(), expected);
}

void TestStart::firstSize()
{
    const TestHome home;
    ShopWindow window;
    // The screen of this platform is 800 x 800.
    QCOMPARE(QGuiApplication::primaryScreen()->availableSize(), QSize(800, 800));
    QCOMPARE(window.size(), QSize(800, 480));
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QCOMPARE(window.size(), QSize(800, 480));
}

void TestStart::exitButtonEndsTheEventLoop()
{
    const TestHome home;
    {
        ShopWindow window;
        window.show();
        QTimer::singleShot(0, &window, [&window] {
            QTest::mouseClick(window.findChild<QPushButton *>("exitButton"), Qt::LeftButton);
        });
        bool hung = false;
        QTimer::singleShot(5000, &window, [&hung] {
            hung = true;
            QCoreApplication::exit(1);
        });
        QCOMPARE(QApplication::exec(), 0);
        QVERIFY(!hung);
        QVERIFY(QSqlDatabase::database().isOpen());
    }
    QCOMPARE(QSqlDatabase::connectionNames(), QStringList());
    SecondConnection second(home.databaseFile());
    QCOMPARE(second.column("pragma integrity_check"), QVariantList{"ok"});
}

static const Records oneGood{openList(1, "Weekend").good("Milk")};

void TestStart::endOfTheProgramRecomputesTheState_data()
{
    QTest::addColumn<QString>("button");
    QTest::newRow("shopping") << QString();
    QTest::newRow("reading the help") << "helpButton";
}

/// A list that is finished must not ring again, however the program ends.
void TestStart::endOfTheProgramRecomputesTheState()
{
    QFETCH(QString, button);
    ShopDriver shop(oneGood);
    shop.startShopping();
    shop.list()->setCurrentRow(0);
    shop.press("checkButton");
    if (!button.isEmpty())
        shop.press(qPrintable(button));
    bool hung = false;
    QTimer::singleShot(0, shop.window.get(), [&shop] { shop.window->close(); });
    QTimer::singleShot(5000, shop.window.get(), [&hung] {
        hung = true;
        QCoreApplication::exit(1);
    });
    QCOMPARE(QApplication::exec(), 0);
    QVERIFY(!hung);
    QCOMPARE(shop.db->column("select state from shoplist where id = 1"), QVariantList{3});
}

/// On other pages the end of the program changes no list.
void TestStart::endOfTheProgramLeavesListsAlone()
{
    ShopDriver shop(oneGood);
    shop.startShopping();
    shop.press("okButton");
    shop.db->add(Records().sql("update shoplist set state = 0"));
    QTimer::singleShot(0, shop.window.get(), [&shop] { shop.window->close(); });
    QCOMPARE(QApplication::exec(), 0);
    QCOMPARE(shop.db->column("select state from shoplist where id = 1"), QVariantList{0});
}

void TestStart::destroyingRemovesTheConnection()
{
    const TestHome home;
    {
        const ShopWindow window;
        QCOMPARE(QSqlDatabase::connectionNames(),
                 QStringList(QLatin1String(QSqlDatabase::defaultConnection)));
        QVERIFY(QSqlDatabase::database().isOpen());
    }
    QCOMPARE(QSqlDatabase::connectionNames(), QStringList());
}

void TestStart::nothingIsWrittenToTheSettings()
{
    const TestHome home;
    QSettings("Vantor", "Trolleo").setValue("SoundFileName", "");
    QFile file(home.settingsFile());
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray before = file.readAll();
    file.close();
    {
        ShopWindow window;
        window.show();
    }
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), before);
}

void TestStart::idleWindowRunsNoTimer()
{
    const TestHome home;
    ShopWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    int timers = 0;
    for (const QTimer *timer : window.findChildren<QTimer *>()) {
        ++timers;
        QVERIFY2(!timer->isActive(), qPrintable(timer->parent()->objectName()));
    }
    QVERIFY(timers > 0);
}

void TestStart::everyListIsDrawnByTheOneDelegate()
{
    const TestHome home;
    const ShopWindow window;
    const auto lists = window.findChildren<QListWidget *>();
    QCOMPARE(lists.size(), 6);
    for (const QListWidget *list : lists) {
        QVERIFY(qobject_cast<TrListDelegate *>(list->itemDelegate()));
        // Distances with six decimals use a smaller font.
        const bool hasDistances =
            window.findChild<QWidget *>("trackedListPage")->isAncestorOf(list);
        QCOMPARE(list->font().pointSize(), hasDistances ? 13 : 22);
        QVERIFY(list->findChild<TrKineticScroller *>());
    }
}

void TestStart::homeWithAnUnusualPath_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("spaces") << "my  home ";
    QTest::newRow("Cyrillic") << "домашняя папка";
    QTest::newRow("quotes") << "it's \"home\"; drop";
    QTest::newRow("percent") << "%1 %20 #?";
}

void TestStart::homeWithAnUnusualPath()
{
    QFETCH(QString, name);
    const TestHome home(name);
    const ShopWindow window;
    QVERIFY(QFile::exists(home.databaseFile()));
    SecondConnection second(home.databaseFile());
    QCOMPARE(second.tables().size(), 7);
}

STOPPABLE_TEST_MAIN(TestStart)
#include "tst_start.moc"
