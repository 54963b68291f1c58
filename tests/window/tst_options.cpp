// SPDX-License-Identifier: MIT
#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QPointer>
#include <QRadioButton>
#include <QSettings>
#include <QSqlDatabase>
#include <QStackedWidget>
#include <QTimer>
#include <QTranslator>
#include <QtTest>

#include "app/pages.h"
#include "tests/support/shopdriver.h"
#include "tests/support/testpositionplugin.h"

Q_IMPORT_PLUGIN(TestPositionPlugin)

static const QStringList oneStore{
    "insert into magazin values (1, 'Bakery', null, null)",
    "insert into gpscoord values (1, 10.01, 20, 0)",
    "insert into shoplist values (1, 'Bread', 1, 1)",
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
    void soundFileIsChosen_data();
    void soundFileIsChosen();
    void cancelledChoiceChangesNothing();
    void soundFileAloneRebuildsNothing();
    void languageRebuildsThePages_data();
    void languageRebuildsThePages();
    void sameLanguageRebuildsNothing();
    void trackingGoesOnInAnotherLanguage();
    void thousandLanguagesLeaveNothingBehind();
    void reminderClosesTheChoiceOfAFile();

private:
    static TestPositionSource *source()
    {
        return TestPositionSource::instance();
    }
    static QVariant setting(const char *name)
    {
        return QSettings("Vantor", "Trolleo").value(name);
    }
    static void check(const ShopDriver &shop, const char *box, bool on)
    {
        if (shop.find<QAbstractButton>(box)->isChecked() != on)
            shop.press(box);
        QCOMPARE(shop.find<QAbstractButton>(box)->isChecked(), on);
    }
    /// Of the three boxes: "+" checked, "-" unchecked, "." disabled.
    static QString boxes(const ShopDriver &shop)
    {
        QString result;
        for (const char *name : {"enableGpsBox", "gpsAlwaysActiveBox", "autoStartTrackingBox"}) {
            const auto *box = shop.find<QCheckBox>(name);
            result += !box->isEnabled() ? '.' : box->isChecked() ? '+' : '-';
        }
        return result;
    }
    /// Presses the sound button and does `act` with the dialog that it opens.
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
        });
        timer.start(20);
        shop.press("soundButton");
        QVERIFY(came);
    }
};

void TestOptions::initTestCase()
{
    // The toolkit's own sources are found no more: one of them offers itself everywhere.
    QVERIFY(QSqlDatabase::isDriverAvailable("QSQLITE"));
    QCoreApplication::setLibraryPaths({});
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
    if (shop.pageIndex() == PageMessage) // nothing to track
        shop.press("messageOkButton");
    shop.stack->setCurrentIndex(PageMain);
    shop.press("optionsButton");
    QCOMPARE(shop.pageIndex(), int(PageOptions));
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
    QCOMPARE(boxes(shop), "++-"); // what was unchecked stays so
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
        shop.press(way);
        QCOMPARE(shop.pageIndex(), int(PageMain));
        QVERIFY(!QSettings("Vantor", "Trolleo").contains("GpsEnabled"));
        shop.press("optionsButton");
        QCOMPARE(boxes(shop), "-..");
        QVERIFY(shop.find<QRadioButton>("autoDetectRadio")->isChecked());
    }
}

void TestOptions::savedAndReadBack()
{
    ShopDriver shop;
    shop.press("optionsButton");
    shop.press("enableGpsBox");
    shop.press("gpsAlwaysActiveBox");
    shop.press("okButton");
    QCOMPARE(shop.pageIndex(), int(PageMain));
    QCOMPARE(setting("GpsEnabled").toBool(), true);
    QCOMPARE(setting("GpsAutoStart").toBool(), true);
    QCOMPARE(setting("TrackAutoStart").toBool(), false);
    QVERIFY(!QSettings("Vantor", "Trolleo").contains("LanguageId"));
    // The alarm that came with the program is stored by its name.
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
    const QString path = shop.home->path() + '/' + name;
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    shop.press("optionsButton");
    withDialog(shop, [&path](QFileDialog *dialog) {
        QCOMPARE(dialog->directory().path(), QDir::rootPath());
        QCOMPARE(dialog->nameFilters(), QStringList{"Sound Files (*.wav *.mp3)"});
        auto *edit = dialog->findChild<QLineEdit *>("fileNameEdit");
        edit->setText(path);
        QTest::keyClick(edit, Qt::Key_Return);
    });
    QCOMPARE(shop.buttonText("soundButton"), shown);
    QVERIFY(!QSettings("Vantor", "Trolleo").contains("SoundFileName"));
    shop.press("okButton");
    QCOMPARE(setting("SoundFileName").toString(), path);
    // Opened again, the page shows the name whole.
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
    const QString path = shop.home->path() + "/bell.wav";
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    shop.press("optionsButton");
    withDialog(shop, [&path](QFileDialog *dialog) {
        auto *edit = dialog->findChild<QLineEdit *>("fileNameEdit");
        edit->setText(path);
        QTest::keyClick(edit, Qt::Key_Return);
    });
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
    const QPointer<QStackedWidget> before = shop.stack;
    shop.press("optionsButton");
    shop.press(radio.constData());
    shop.press("okButton");
    QTRY_VERIFY(!before);
    shop.stack = shop.window->findChild<QStackedWidget *>("pageStack");
    QCOMPARE(shop.stack->count(), 20);
    QCOMPARE(shop.pageIndex(), int(PageMain));
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
    ShopDriver shop(oneStore, {{"GpsEnabled", true}});
    shop.press("reminderButton");
    shop.press("startButton");
    shop.press("backButton");
    shop.press("optionsButton");
    shop.press("englishRadio");
    const QPointer<QStackedWidget> before = shop.stack;
    shop.press("okButton");
    QTRY_VERIFY(!before);
    shop.stack = shop.window->findChild<QStackedWidget *>("pageStack");
    QVERIFY(source()->updating);
    shop.press("reminderButton");
    QVERIFY(shop.isEnabled("stopButton"));
    QVERIFY(!shop.isEnabled("startButton"));
    source()->deliver(10.0095, 20);
    QCOMPARE(shop.pageIndex(), int(PageReminder));
}

void TestOptions::thousandLanguagesLeaveNothingBehind()
{
    ShopDriver shop;
    const auto change = [&shop](int round) {
        const QPointer<QStackedWidget> before = shop.stack;
        shop.press("optionsButton");
        shop.press(round % 2 ? "englishRadio" : "russianRadio");
        shop.press("okButton");
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!before);
        shop.stack = shop.window->findChild<QStackedWidget *>("pageStack");
    };
    change(0);
    change(1);
    const auto objects = shop.window->findChildren<QObject *>().size();
    for (int round = 0; round < 1000; ++round)
        change(round);
    // Each "OK" leaves its silent predecessor of the alarm.
    const auto alarms = shop.window->findChildren<QObject *>().size() - objects;
    QVERIFY2(alarms <= 1000 * 3, qPrintable(QString::number(alarms)));
    QCOMPARE(shop.window->findChildren<QStackedWidget *>("pageStack").size(), 1);
}

void TestOptions::reminderClosesTheChoiceOfAFile()
{
    ShopDriver shop(oneStore, {{"GpsEnabled", true}});
    shop.press("reminderButton");
    shop.press("startButton");
    shop.press("backButton");
    shop.press("optionsButton");
    withDialog(shop, [](QFileDialog *) { source()->deliver(10.0095, 20); });
    QCOMPARE(shop.pageIndex(), int(PageReminder));
    QVERIFY(!QApplication::activeModalWidget());
    shop.press("stopButton");
    QCOMPARE(shop.pageIndex(), int(PageTracking));
}

QTEST_MAIN(TestOptions)
#include "tst_options.moc"
