// SPDX-License-Identifier: MIT
#include <algorithm>

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QListView>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSettings>
#include <QSqlDatabase>
#include <QStackedWidget>
#include <QTimer>
#include <QTranslator>
#include <QtTest>

#include "base/pages.h"
#include "platform/alarmsound.h"
#include "platform/informationbox.h"
#include "tests/support/emulator.h"
#include "tests/support/mutesoundserver.h"
#include "tests/support/processes.h"
#include "tests/support/records.h"
#include "tests/support/shopdriver.h"
#include "tests/support/testpositionplugin.h"

Q_IMPORT_PLUGIN(TestPositionPlugin)

static const Records oneStore = store("Bakery").at(10.01, 20).openList("Bread");

/// Deletes pending objects before a press, as the event loop does between two taps of a user.
class DeletingBeforePresses : public QObject
{
public:
    bool eventFilter(QObject * /*object*/, QEvent *event) override
    {
        if (event->type() == QEvent::MouseButtonPress)
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return false;
    }
};

/// Reads the settings when the window gets its first new widget, the stack of the new pages.
class LookingAtNewWidgets : public QObject
{
public:
    QVariant stored;

    bool eventFilter(QObject * /*object*/, QEvent *event) override
    {
        if (event->type() == QEvent::ChildAdded && !stored.isValid() &&
            static_cast<QChildEvent *>(event)->child()->isWidgetType())
            stored = QSettings("Vantor", "Trolleo").value("LanguageId", 0);
        return false;
    }
};

class TestOptions : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void showsTheSettings_data();
    void showsTheSettings();
    void uncheckingGoesDownTheLine();
    void withoutGpsItIsOff();
    void backAndCancelChangeNothing();
    void savedAndReadBack();
    void gpsIsSwitchedOnAtOnce();
    void autoStartTracksAtOnceAndAtTheNextStart();
    void autoStartWithNothingToTrackSaysSo();
    void soundFileIsChosen_data();
    void soundFileIsChosen();
    void cancelledChoiceChangesNothing();
    void soundFileAloneRebuildsNothing();
    void languageRebuildsThePages_data();
    void languageRebuildsThePages();
    void sameLanguageRebuildsNothing();
    void trackingGoesOnInAnotherLanguage();
    void stoppedTrackingStaysStopped();
    void whatIsCurrentStaysSo();
    void languageIsStoredBeforeThePagesAreBuilt();
    void doubleTapOnOkPressesNothingElse();
    void dragThatBeginsOnARowScrolls_data();
    void dragThatBeginsOnARowScrolls();
    void pageOpensAtItsTop();
    void thousandLanguagesLeaveNothingBehind();
    void optionsThatCannotBeSavedAreTold_data();
    void optionsThatCannotBeSavedAreTold();
    void optionsThatAreSavedTellNothing();
    void savedOptionsLeaveNoAlarm();
    void reminderClosesTheChoiceOfAFile();
    void reminderClosesWhatTheChoiceHasOpened();
    void choiceLeavesOtherProgramsAlone();
    void choiceOfAFileFitsThePhone_data();
    void choiceOfAFileFitsThePhone();

private:
    static TestPositionSource *source()
    {
        return TestPositionSource::instance();
    }
    static QVariant setting(const char *name)
    {
        return QSettings("Vantor", "Trolleo").value(name);
    }
    /// Creates a file of that name and chooses it in the dialog; returns its path.
    static QString choose(const ShopDriver &shop, const QString &name)
    {
        const QString path = shop.home->path() + '/' + name;
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly))
            stopTest("cannot write " + path);
        withDialog(shop, [&path](QFileDialog *dialog) { enter(dialog, path); });
        return path;
    }
    static void enter(QFileDialog *dialog, const QString &path)
    {
        auto *edit = dialog->findChild<QLineEdit *>("fileNameEdit");
        edit->setText(path);
        QTest::keyClick(edit, Qt::Key_Return);
    }
    /// Returns the state of the three check boxes: "+" checked, "-" unchecked, "." disabled.
    static QString boxes(const ShopDriver &shop)
    {
        QString result;
        for (const char *name : {"enableGpsBox", "gpsAlwaysActiveBox", "autoStartTrackingBox"}) {
            const auto *box = shop.find<QCheckBox>(name);
            result += !box->isEnabled() ? '.' : box->isChecked() ? '+' : '-';
        }
        return result;
    }
    /// Presses the sound button and calls `act` with the dialog.
    static void withDialog(const ShopDriver &shop, const std::function<void(QFileDialog *)> &act)
    {
        bool came = false;
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
            auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
            if (!dialog || came)
                return;
            came = true;
            act(dialog);
            if (QTest::currentTestFailed())
                dialog->reject(); // otherwise it would stay open
        });
        timer.start(20);
        shop.press("soundButton");
        QVERIFY(came);
    }
};

void TestOptions::initTestCase()
{
    // Qt's own sources must not be found, since one of them is always available.
    QVERIFY(QSqlDatabase::isDriverAvailable("QSQLITE"));
    QCoreApplication::setLibraryPaths({qEnvironmentVariable("QT_PLUGIN_PATH")});
}

void TestOptions::showsTheSettings_data()
{
    QTest::addColumn<QVariantMap>("settings");
    QTest::addColumn<QString>("shown");
    const auto add = [](const char *name, bool gps, bool always, bool tracking, const char *shown) {
        QTest::newRow(name) << QVariantMap{{"GpsEnabled", gps},
                                           {"GpsAutoStart", always},
                                           {"TrackAutoStart", tracking}}
                            << shown;
    };
    add("nothing", false, false, false, "-..");
    add("GPS", true, false, false, "+-.");
    add("always", true, true, false, "++-");
    add("all", true, true, true, "+++");
    add("without GPS none of the others", false, true, true, "-..");
}

void TestOptions::showsTheSettings()
{
    QFETCH(QVariantMap, settings);
    QFETCH(QString, shown);
    ShopDriver shop({}, settings);
    if (shop.page() == PageMessage) // nothing to track
        shop.press("messageOkButton");
    shop.stack->setCurrentIndex(PageMain);
    shop.press("optionsButton");
    QCOMPARE(shop.page(), PageOptions);
    QCOMPARE(boxes(shop), shown);
    QCOMPARE(shop.buttonText("soundButton"), "no sound.wav");
    QVERIFY(shop.find<QRadioButton>("autoDetectRadio")->isChecked());
}

void TestOptions::uncheckingGoesDownTheLine()
{
    ShopDriver shop;
    shop.press("optionsButton");
    QCOMPARE(boxes(shop), "-..");
    shop.press("enableGpsBox");
    QCOMPARE(boxes(shop), "+-.");
    shop.press("gpsAlwaysActiveBox");
    QCOMPARE(boxes(shop), "++-");
    shop.press("autoStartTrackingBox");
    QCOMPARE(boxes(shop), "+++");
    shop.press("enableGpsBox");
    QCOMPARE(boxes(shop), "-..");
    shop.press("enableGpsBox");
    shop.press("gpsAlwaysActiveBox");
    QCOMPARE(boxes(shop), "++-"); // unchecked boxes stay unchecked
}

void TestOptions::withoutGpsItIsOff()
{
    ShopDriver shop({}, {{"GpsEnabled", true}});
    shop.window->gpsAvailable = false;
    shop.press("optionsButton");
    QCOMPARE(boxes(shop), "...");
    shop.press("okButton");
    QCOMPARE(setting("GpsEnabled").toBool(), false);
}

void TestOptions::backAndCancelChangeNothing()
{
    for (const char *way : {"backButton", "cancelButton"}) {
        ShopDriver shop;
        shop.press("optionsButton");
        shop.press("enableGpsBox");
        shop.press("russianRadio");
        choose(shop, "bell.wav");
        shop.press(way);
        QCOMPARE(shop.page(), PageMain);
        QVERIFY(!QSettings("Vantor", "Trolleo").contains("GpsEnabled"));
        shop.press("optionsButton");
        QCOMPARE(boxes(shop), "-..");
        QVERIFY(shop.find<QRadioButton>("autoDetectRadio")->isChecked());
        QCOMPARE(shop.buttonText("soundButton"), "Alarm5.wav");
        shop.press("okButton");
        QCOMPARE(setting("SoundFileName").toString(), "/opt/trolleo/Alarm5.wav");
    }
}

void TestOptions::savedAndReadBack()
{
    ShopDriver shop;
    shop.press("optionsButton");
    shop.press("enableGpsBox");
    shop.press("gpsAlwaysActiveBox");
    shop.press("okButton");
    QCOMPARE(shop.page(), PageMain);
    QCOMPARE(setting("GpsEnabled").toBool(), true);
    QCOMPARE(setting("GpsAutoStart").toBool(), true);
    QCOMPARE(setting("TrackAutoStart").toBool(), false);
    QVERIFY(!QSettings("Vantor", "Trolleo").contains("LanguageId"));
    // The installed alarm is stored by its path.
    QCOMPARE(setting("SoundFileName").toString(), "/opt/trolleo/Alarm5.wav");
    shop.window.reset();
    shop.window = std::make_unique<ShopDriver::Window>();
    shop.stack = shop.window->findChild<QStackedWidget *>("pageStack");
    shop.window->show();
    QVERIFY(QTest::qWaitForWindowExposed(shop.window.get()));
    shop.press("optionsButton");
    QCOMPARE(boxes(shop), "++-");
    QCOMPARE(shop.buttonText("soundButton"), "Alarm5.wav");
}

void TestOptions::gpsIsSwitchedOnAtOnce()
{
    const int made = TestPositionSource::made();
    ShopDriver shop;
    QCOMPARE(TestPositionSource::made(), made);
    shop.press("optionsButton");
    shop.press("enableGpsBox");
    shop.press("okButton");
    QCOMPARE(TestPositionSource::made(), made + 1);
    QVERIFY(!source()->updating);
    shop.press("optionsButton");
    shop.press("gpsAlwaysActiveBox");
    shop.press("okButton");
    QVERIFY(source()->updating);
    QCOMPARE(TestPositionSource::made(), made + 1);
    shop.press("optionsButton");
    shop.press("enableGpsBox");
    shop.press("okButton");
    QVERIFY(!source()->updating);
}

void TestOptions::autoStartTracksAtOnceAndAtTheNextStart()
{
    ShopDriver shop(oneStore, {{"GpsEnabled", true}});
    // Another criterion is chosen.
    shop.press("reminderButton");
    shop.press("byStoreRadio");
    shop.press("backButton");
    shop.press("optionsButton");
    shop.press("gpsAlwaysActiveBox");
    shop.press("autoStartTrackingBox");
    shop.press("okButton");
    shop.stack->setCurrentIndex(PageTracking);
    QVERIFY(shop.isEnabled("stopButton"));
    QVERIFY(shop.find<QRadioButton>("allStoresRadio")->isChecked());
    shop.window.reset();
    shop.window = std::make_unique<ShopDriver::Window>();
    shop.stack = shop.window->findChild<QStackedWidget *>("pageStack");
    shop.stack->setCurrentIndex(PageTracking);
    QVERIFY(shop.isEnabled("stopButton"));
    QVERIFY(shop.find<QRadioButton>("allStoresRadio")->isChecked());
}

void TestOptions::autoStartWithNothingToTrackSaysSo()
{
    ShopDriver shop;
    const auto save = [&shop](const char *language) {
        shop.press("optionsButton");
        for (const char *box : {"enableGpsBox", "gpsAlwaysActiveBox", "autoStartTrackingBox"}) {
            if (!shop.find<QCheckBox>(box)->isChecked())
                shop.press(box);
        }
        shop.press(language);
        shop.press("okButton");
        shop.stack = shop.window->findChild<QStackedWidget *>("pageStack");
    };
    save("autoDetectRadio");
    QCOMPARE(shop.page(), PageMessage);
    QCOMPARE(shop.labelText("messageTitle"), "Tracking Warning");
    shop.press("messageOkButton");
    shop.press("backButton");
    // Nothing of it is left after a change of language.
    const QPointer<QStackedWidget> before = shop.stack;
    save("englishRadio");
    QTRY_VERIFY(!before);
    shop.stack = shop.window->findChild<QStackedWidget *>("pageStack");
    QCOMPARE(shop.page(), PageMain);
}

void TestOptions::soundFileIsChosen_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("shown");
    QTest::newRow("short") << "bell.wav"
                           << "bell.wav";
    QTest::newRow("25") << "123456789012345678901.wav"
                        << "123456789012345678901.wav";
    QTest::newRow("30") << "12345678901234567890123456.mp3"
                        << "1234567890123456789012345";
}

void TestOptions::soundFileIsChosen()
{
    QFETCH(QString, name);
    QFETCH(QString, shown);
    ShopDriver shop;
    shop.press("optionsButton");
    withDialog(shop, [](QFileDialog *dialog) {
        QCOMPARE(dialog->windowTitle(), "Open Sound");
        QCOMPARE(dialog->directory().path(), QDir::rootPath());
        QCOMPARE(dialog->nameFilters(), QStringList{"Sound Files (*.wav *.mp3)"});
        dialog->reject();
    });
    const QString path = choose(shop, name);
    QCOMPARE(shop.buttonText("soundButton"), shown);
    QVERIFY(!QSettings("Vantor", "Trolleo").contains("SoundFileName"));
    shop.press("okButton");
    QCOMPARE(setting("SoundFileName").toString(), path);
    // From now on this file rings.
    QCOMPARE(shop.window->findChildren<AlarmSound *>().last()->fileName(), path);
    // When the page is opened again, it shows the whole name.
    shop.press("optionsButton");
    QCOMPARE(shop.buttonText("soundButton"), name);
}

void TestOptions::cancelledChoiceChangesNothing()
{
    ShopDriver shop;
    shop.press("optionsButton");
    withDialog(shop, [](QFileDialog *dialog) { dialog->reject(); });
    QCOMPARE(shop.buttonText("soundButton"), "Alarm5.wav");
    shop.press("okButton");
    QCOMPARE(setting("SoundFileName").toString(), "/opt/trolleo/Alarm5.wav");
}

void TestOptions::soundFileAloneRebuildsNothing()
{
    ShopDriver shop;
    const QPointer<QStackedWidget> before = shop.stack;
    shop.press("optionsButton");
    choose(shop, "bell.wav");
    shop.press("okButton");
    QTest::qWait(50);
    QVERIFY(before);
    QCOMPARE(shop.window->findChild<QStackedWidget *>("pageStack"), before);
    QVERIFY(!shop.window->isMaximized());
}

void TestOptions::languageRebuildsThePages_data()
{
    QTest::addColumn<int>("stored");
    QTest::addColumn<QByteArray>("radio");
    QTest::addColumn<int>("saved");
    QTest::newRow("English for the system's") << 0 << QByteArray("englishRadio") << 1;
    QTest::newRow("Russian for the system's") << 0 << QByteArray("russianRadio") << 2;
    QTest::newRow("the system's for Russian") << 2 << QByteArray("autoDetectRadio") << 0;
}

void TestOptions::languageRebuildsThePages()
{
    QFETCH(int, stored);
    QFETCH(QByteArray, radio);
    QFETCH(int, saved);
    ShopDriver shop({}, {{"LanguageId", stored}});
    shop.changeLanguage(radio);
    QCOMPARE(shop.stack->count(), PageCount);
    QCOMPARE(shop.page(), PageMain);
    QCOMPARE(setting("LanguageId").toInt(), saved);
    QVERIFY(shop.window->isMaximized());
    // The new pages work.
    shop.press("optionsButton");
    QVERIFY(shop.find<QRadioButton>(radio.constData())->isChecked());
}

void TestOptions::sameLanguageRebuildsNothing()
{
    ShopDriver shop({}, {{"LanguageId", 1}});
    const QPointer<QStackedWidget> before = shop.stack;
    shop.press("optionsButton");
    QVERIFY(shop.find<QRadioButton>("englishRadio")->isChecked());
    shop.press("okButton");
    QTest::qWait(50);
    QVERIFY(before);
}

void TestOptions::trackingGoesOnInAnotherLanguage()
{
    ShopDriver shop({category(1, "Food"), category("Tools"),
                     store("Bakery").inCategory(1).at(10.01, 20).openList("Bread")},
                    {{"GpsEnabled", true}, {"LanguageId", 1}});
    shop.press("reminderButton");
    shop.press("byCategoryRadio");
    shop.press("categoryButton");
    shop.tap(0);
    shop.press("selectButton");
    shop.press("startButton");
    shop.press("backButton");
    // A later choice does not change what is tracked.
    shop.press("shopsButton");
    shop.press("newButton");
    shop.press("categoryButton");
    shop.tap(1);
    shop.press("selectButton");
    shop.press("backButton");
    shop.press("backButton");

    shop.changeLanguage("russianRadio");
    QVERIFY(source()->updating);
    shop.press("reminderButton");
    QVERIFY(shop.isEnabled("stopButton"));
    QVERIFY(!shop.isEnabled("startButton"));
    QVERIFY(!shop.find<QWidget>("criteria")->isEnabled());
    QVERIFY(shop.find<QRadioButton>("byCategoryRadio")->isChecked());
    QCOMPARE(shop.buttonText("categoryButton"), "Food");
    source()->deliver(10.5, 20);
    shop.press("viewButton");
    QCOMPARE(shop.page(), PageTrackedList);
    QCOMPARE(shop.labelText("title"), "По категории: Food");
    QCOMPARE(shop.rows().size(), 1);
    source()->deliver(10.0095, 20);
    QCOMPARE(shop.page(), PageReminder);
}

void TestOptions::stoppedTrackingStaysStopped()
{
    ShopDriver shop(oneStore, {{"GpsEnabled", true}});
    shop.press("reminderButton");
    shop.press("byStoreRadio");
    shop.press("storeButton");
    shop.tap(0);
    shop.press("selectButton");
    shop.press("startButton");
    shop.press("stopButton");
    shop.press("backButton");
    shop.changeLanguage("englishRadio");
    QVERIFY(!source()->updating);
    shop.press("reminderButton");
    QVERIFY(shop.isEnabled("startButton"));
    QVERIFY(!shop.isEnabled("stopButton"));
    QVERIFY(shop.find<QWidget>("criteria")->isEnabled());
    QVERIFY(shop.find<QRadioButton>("byStoreRadio")->isChecked());
    QCOMPARE(shop.buttonText("storeButton"), "Bakery");
    QVERIFY(shop.isEnabled("storeButton"));
    QVERIFY(!shop.isEnabled("categoryButton"));
}

void TestOptions::dragThatBeginsOnARowScrolls_data()
{
    QTest::addColumn<QByteArray>("row");
    for (const char *row : {"englishRadio", "soundButton", "gpsAlwaysActiveBox"})
        QTest::newRow(row) << QByteArray(row);
}

void TestOptions::dragThatBeginsOnARowScrolls()
{
    QFETCH(QByteArray, row);
    ShopDriver shop({}, {{"GpsEnabled", true}});
    shop.window->showNormal();
    shop.window->resize(800, 480);
    shop.press("optionsButton");
    auto *bar = shop.find<QScrollArea>("optionsScrollArea")->verticalScrollBar();
    QVERIFY(bar->maximum() > 100);
    auto *button = shop.find<QAbstractButton>(row.constData());
    const bool checked = button->isChecked();
    bar->setValue(std::min(bar->maximum(), std::max(button->y() - 50, 0)));
    const int before = bar->value();
    const bool upwards = before < bar->maximum();
    const QPoint from = button->mapTo(shop.window.get(), button->rect().center());
    const QPoint to = from + QPoint(0, upwards ? -50 : 50);
    QSignalSpy clicks(button, &QAbstractButton::clicked);
    shop.drag(from, to);
    QCOMPARE(bar->value() - before, upwards ? std::min(50, bar->maximum() - before) : -50);
    QCOMPARE(clicks.size(), 0);
    QCOMPARE(button->isChecked(), checked);
    QVERIFY(!button->isDown());
    // The next tap counts.
    if (row != "soundButton") {
        shop.touch(button->mapTo(shop.window.get(), button->rect().center()));
        QCOMPARE(clicks.size(), 1);
        QVERIFY(button->isChecked() != checked);
    }
}

void TestOptions::pageOpensAtItsTop()
{
    ShopDriver shop;
    shop.window->showNormal();
    shop.window->resize(800, 480);
    shop.press("optionsButton");
    auto *bar = shop.find<QScrollArea>("optionsScrollArea")->verticalScrollBar();
    bar->setValue(bar->maximum());
    shop.press("backButton");
    shop.press("optionsButton");
    QCOMPARE(bar->value(), 0);
}

void TestOptions::whatIsCurrentStaysSo()
{
    ShopDriver shop(
        {category(3, "Food"), store(5, "Bakery").inCategory(3).openList(7, "Bread").good("Rye")},
        {{"LanguageId", 1}});
    shop.press("shoppingButton");
    shop.press("listsButton");
    shop.tap(0);
    shop.press("selectButton");
    shop.press("backButton");
    shop.press("shopsButton");
    shop.press("storesButton");
    shop.tap(0);
    shop.press("selectButton");
    shop.press("backButton");
    shop.press("reminderButton");
    shop.press("byCategoryRadio");
    shop.press("categoryButton");
    shop.tap(0);
    shop.press("selectButton");
    shop.press("backButton");

    shop.changeLanguage("russianRadio");
    shop.press("shoppingButton");
    QCOMPARE(shop.labelText("listName"), "Bread");
    shop.press("startButton");
    QCOMPARE(shop.page(), PageDoShopping);
    QCOMPARE(shop.rows().size(), 1);
    shop.press("backButton");
    shop.stack->setCurrentIndex(PageMain);
    shop.press("shopsButton");
    QCOMPARE(shop.labelText("storeName"), "Bakery");
    shop.press("backButton");
    shop.press("reminderButton");
    QCOMPARE(shop.buttonText("categoryButton"), "Food");
}

void TestOptions::languageIsStoredBeforeThePagesAreBuilt()
{
    ShopDriver shop;
    LookingAtNewWidgets filter;
    shop.window->installEventFilter(&filter);
    shop.changeLanguage("russianRadio");
    QCOMPARE(filter.stored, QVariant(2));
}

void TestOptions::doubleTapOnOkPressesNothingElse()
{
    ShopDriver shop;
    shop.window->showMaximized(); // the state after the change
    QCoreApplication::processEvents();
    shop.press("optionsButton");
    shop.press("russianRadio");
    DeletingBeforePresses filter;
    shop.window->windowHandle()->installEventFilter(&filter);
    QVERIFY(shop.doubleTap("okButton", PageMain));
    QCOMPARE(shop.page(), PageMain);
    QCOMPARE(setting("LanguageId").toInt(), 2);
}

void TestOptions::thousandLanguagesLeaveNothingBehind()
{
    ShopDriver shop;
    const auto change = [&shop](int round) {
        shop.changeLanguage(round % 2 ? "englishRadio" : "russianRadio");
    };
    // Except for the silent predecessors of the alarm, one for each "OK".
    const auto objects = [&shop] {
        auto all = shop.window->findChildren<QObject *>().size();
        for (const auto *alarm : shop.window->findChildren<AlarmSound *>())
            all -= 1 + alarm->findChildren<QObject *>().size();
        return all;
    };
    change(0);
    change(1);
    const auto before = objects();
    const auto alarms = shop.window->findChildren<AlarmSound *>().size();
    for (int round = 0; round < 1000; ++round)
        change(round);
    QCOMPARE(objects(), before);
    QCOMPARE(shop.window->findChildren<AlarmSound *>().size(), alarms + 1000);
}

void TestOptions::optionsThatCannotBeSavedAreTold_data()
{
    QTest::addColumn<bool>("isFolder");
    QTest::newRow("the file is a folder") << true;
    QTest::newRow("the folder is a file") << false;
}

void TestOptions::optionsThatCannotBeSavedAreTold()
{
    QFETCH(bool, isFolder);
    auto home = std::make_unique<TestHome>();
    // Permissions would not stop the superuser.
    if (isFolder) {
        QVERIFY(QDir().mkpath(home->settingsFile()));
    } else {
        QFile file(home->path() + "/.config");
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    ShopDriver shop(std::move(home));
    shop.press("optionsButton");
    shop.press("enableGpsBox");
    shop.press("okButton");
    QCOMPARE(shop.page(), PageMain);
    const auto *banner = shop.window->findChild<InformationBox *>();
    QVERIFY(banner && banner->isVisible());
    QCOMPARE(banner->text(), QString("The options could not be saved."));
}

void TestOptions::optionsThatAreSavedTellNothing()
{
    ShopDriver shop;
    shop.press("optionsButton");
    shop.press("enableGpsBox");
    shop.press("okButton");
    QVERIFY(!shop.window->findChild<InformationBox *>());
}

void TestOptions::savedOptionsLeaveNoAlarm()
{
    SKIP_WITHOUT_PLAYER();
    MuteSoundServer server;
    QVERIFY(server.listen());
    ShopDriver shop(oneStore, {{"GpsEnabled", true}, {"SoundFileName", "/bin/sh"}});
    for (int round = 0; round < 5; ++round) {
        shop.press("reminderButton");
        shop.press("startButton");
        source()->deliver(10.0095, 20);
        QCOMPARE(shop.page(), PageReminder);
        QTRY_COMPARE(childrenNamed("trolleo-alarm").size(), 1);
        shop.press("stopButton");
        shop.press("backButton");
        shop.press("optionsButton");
        shop.press("okButton");
        QTRY_COMPARE(childrenNamed("trolleo-alarm").size(), 0);
        QTRY_VERIFY(shop.window->findChildren<QProcess *>().isEmpty());
    }
}

void TestOptions::reminderClosesTheChoiceOfAFile()
{
    ShopDriver shop(oneStore, {{"GpsEnabled", true}});
    shop.press("reminderButton");
    shop.press("startButton");
    shop.press("backButton");
    shop.press("optionsButton");
    withDialog(shop, [](QFileDialog *) { source()->deliver(10.0095, 20); });
    QCOMPARE(shop.page(), PageReminder);
    QVERIFY(!QApplication::activeModalWidget());
    shop.press("stopButton");
    QCOMPARE(shop.page(), PageTracking);
}

void TestOptions::reminderClosesWhatTheChoiceHasOpened()
{
    ShopDriver shop(oneStore, {{"GpsEnabled", true}});
    shop.press("reminderButton");
    shop.press("startButton");
    shop.press("backButton");
    shop.press("optionsButton");
    bool boxCame = false;
    withDialog(shop, [&boxCame](QFileDialog *dialog) {
        QTimer::singleShot(20, dialog, [&boxCame, dialog] {
            const QWidget *top = QApplication::activeModalWidget();
            boxCame = top && top != dialog;
            source()->deliver(10.0095, 20);
        });
        enter(dialog, "/nothing here.wav"); // the dialog reports this in a message box
    });
    QVERIFY(boxCame);
    QVERIFY(!QApplication::activeModalWidget());
    QCOMPARE(shop.page(), PageReminder);
    shop.press("stopButton");
    QCOMPARE(shop.page(), PageTracking);
}

void TestOptions::choiceLeavesOtherProgramsAlone()
{
    ShopDriver shop;
    QSettings shared(QSettings::UserScope, "QtProject");
    shop.press("optionsButton");
    choose(shop, "bell.wav");
    shared.sync();
    QCOMPARE(shared.allKeys(), QStringList());

    shared.setValue("FileDialog/sidebarWidth", "90");
    shared.setValue("FileDialog/viewMode", "Detail");
    shared.sync();
    choose(shop, "bell.wav");
    shared.sync();
    QCOMPARE(shared.allKeys(), QStringList({"FileDialog/sidebarWidth", "FileDialog/viewMode"}));
    QCOMPARE(shared.value("FileDialog/sidebarWidth"), "90");
    QCOMPARE(shared.value("FileDialog/viewMode"), "Detail");
}

void TestOptions::choiceOfAFileFitsThePhone_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("landscape") << QSize(800, 480);
    QTest::newRow("portrait") << QSize(480, 800);
    QTest::newRow("narrow") << QSize(360, 720);
}

/// Checks that its controls fit into a window of that size, and are large enough for a finger.
static void checkFits(const QFileDialog *dialog, const QSize &size)
{
    QVERIFY(dialog->width() <= size.width() && dialog->height() <= size.height());
    for (const auto *control : dialog->findChildren<QWidget *>()) {
        const bool isForFingers = qobject_cast<const QAbstractButton *>(control) ||
                                  qobject_cast<const QComboBox *>(control) ||
                                  qobject_cast<const QLineEdit *>(control);
        if (!isForFingers || !control->isVisible())
            continue;
        const QRect place(control->mapTo(dialog, QPoint(0, 0)), control->size());
        QVERIFY2(dialog->rect().contains(place), qPrintable(control->objectName()));
        QVERIFY2(place.height() >= 48, qPrintable(control->objectName()));
    }
    const auto *files = dialog->findChild<QListView *>("listView");
    QVERIFY(files->isVisible());
    QVERIFY(files->visualRect(files->indexAt(QPoint(5, 5))).height() >= 48);
}

void TestOptions::choiceOfAFileFitsThePhone()
{
    QFETCH(QSize, size);
    ShopDriver shop;
    shop.window->resize(size);
    QCOMPARE(shop.window->size(), size);
    shop.press("optionsButton");
    withDialog(shop, [&shop, &size](QFileDialog *dialog) {
        const auto *files = dialog->findChild<QListView *>("listView");
        QTRY_VERIFY(files->model()->rowCount(files->rootIndex()) > 0);
        checkFits(dialog, size);
        QCOMPARE(dialog->font().pointSize(), shop.window->font().pointSize());
        shop.window->resize(size.transposed());
        QCoreApplication::processEvents();
        checkFits(dialog, size.transposed());
        QTest::mouseClick(dialog->findChild<QPushButton *>("homeButton"), Qt::LeftButton);
        QCOMPARE(dialog->directory().path(), shop.home->path());
        QVERIFY(!dialog->findChild<QPushButton *>("musicButton")->isEnabled()); // no such folder
        dialog->reject();
    });
}

STOPPABLE_TEST_MAIN(TestOptions)
#include "tst_options.moc"
