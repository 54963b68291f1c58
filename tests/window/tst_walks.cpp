// SPDX-License-Identifier: MIT
#include <QDir>
#include <QFile>
#include <QNmeaPositionInfoSource>
#include <QRandomGenerator>
#include <QStackedWidget>
#include <QtTest>

#include "base/pages.h"
#include "tests/support/madeupgpsd.h"
#include "tests/support/records.h"
#include "tests/support/shopdriver.h"
#include "tests/support/testpositionplugin.h"

Q_IMPORT_PLUGIN(TestPositionPlugin)

/// Qt's own parser of sentences, without the receiver's clock.
class SentenceReader : public QNmeaPositionInfoSource
{
public:
    SentenceReader()
        : QNmeaPositionInfoSource(RealTimeMode)
    {}

    /// Returns whether `line` is a position, and then sets `position`.
    bool read(const QByteArray &line, QGeoPositionInfo &position)
    {
        bool hasFix = false;
        return parsePosInfoFromNmeaData(line.constData(), int(line.size()), &position, &hasFix) &&
               hasFix;
    }
};

struct Reminder
{
    int line = 0;
    QString answer;
    QString text;
};

/// The table of a walk: see make-walks.py.
struct Table
{
    Records records;
    QStringList criterion;
    QHash<int, int> rubbish; // bytes before a line
    QList<Reminder> reminders;

    explicit Table(const QString &file)
    {
        QFile table(file);
        if (!table.open(QIODevice::ReadOnly))
            stopTest("cannot read " + file);
        for (const QString &line :
             QString::fromUtf8(table.readAll()).split('\n', Qt::SkipEmptyParts)) {
            const QStringList words = line.split(' ');
            if (words[0] == "category") {
                records.category(words[1].toInt(), words[2]);
            } else if (words[0] == "store") {
                records.store(words[1].toInt(), words[2]);
                if (words[3] != "-")
                    records.at(words[3].toDouble(), words[4].toDouble());
                if (words[5] != "-")
                    records.inCategory(words[5].toInt());
            } else if (words[0] == "list") {
                records.list(words[1].toInt(), words[2], words[4].toInt())
                    .ofStore(words[3].toInt());
            } else if (words[0] == "criterion") {
                criterion = words.mid(1);
            } else if (words[0] == "rubbish") {
                rubbish[words[1].toInt()] = words[2].toInt();
            } else if (words[0] == "reminder") {
                reminders << Reminder{words[1].toInt(), words[2], words.mid(3).join(' ')};
            }
        }
    }
};

/// Plays recorded walks at full speed to the real window.
class TestWalks : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void walk_data();
    void walk();
    void cleanupTestCase();

private:
    static TestPositionSource *source()
    {
        return TestPositionSource::instance();
    }
    static void startTracking(ShopDriver &shop, const QStringList &criterion);
    static void answer(ShopDriver &shop, const QString &answer);

    QStringList results;
    /// Number of positions that the program has reported.
    static inline int told = 0;
};

static const QString folder = TROLLEO_SOURCES "/tests/data/walks/";

void TestWalks::initTestCase()
{
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &text) {
        if (text.startsWith("Position updated:"))
            ++told;
        else
            QTextStream(stderr) << text << Qt::endl;
    });
}

void TestWalks::walk_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("byGpsd");
    const QStringList walks = QDir(folder).entryList({"*.nmea"}, QDir::Files, QDir::Name);
    QCOMPARE(walks.size(), 27);
    for (const QString &walk : walks) {
        QTest::newRow(qPrintable(walk.chopped(5))) << walk.chopped(5) << false;
        QTest::newRow(qPrintable(walk.chopped(5) + " by gpsd")) << walk.chopped(5) << true;
    }
}

void TestWalks::startTracking(ShopDriver &shop, const QStringList &criterion)
{
    shop.press("reminderButton");
    if (criterion.first() != "all") {
        const bool byStore = criterion.first() == "store";
        shop.press(byStore ? "byStoreRadio" : "byCategoryRadio");
        shop.press(byStore ? "storeButton" : "categoryButton");
        const auto rows = shop.list()->findItems(criterion.last(), Qt::MatchExactly);
        QCOMPARE(rows.size(), 1);
        shop.tap(shop.list()->row(rows.first()));
        shop.press("selectButton");
    }
    shop.press("startButton");
    QVERIFY(shop.isEnabled("stopButton"));
}

void TestWalks::answer(ShopDriver &shop, const QString &answer)
{
    if (answer == "start") {
        shop.press("startShoppingButton");
        QCOMPARE(shop.page(), PageDoShopping);
    } else {
        shop.press(answer == "stop" ? "stopButton" : "nextButton");
        QCOMPARE(shop.page(), PageTracking);
    }
}

void TestWalks::walk()
{
    QFETCH(QString, name);
    QFETCH(bool, byGpsd);
    TestPositionPlugin::offersSource = !byGpsd;
    MadeUpGpsd gpsd;
    qputenv("TROLLEO_GPSD", gpsd.environment());
    const Table table(folder + name + ".txt");
    QFile file(folder + name + ".nmea");
    QVERIFY(file.open(QIODevice::ReadOnly));
    ShopDriver shop(table.records, {{"GpsEnabled", true}});
    startTracking(shop, table.criterion);
    QVERIFY(!QTest::currentTestFailed());
    // Positions that are known at first are not reported.
    const auto connect = [&gpsd](int earlier) {
        QTRY_VERIFY(gpsd.polls() > earlier);
        QTest::qWait(20);
    };
    if (byGpsd)
        connect(0);

    SentenceReader reader;
    QRandomGenerator noise(1);
    int line = 0;
    int positions = 0;
    QList<Reminder> rung;
    const auto say = [&](const QByteArray &sentence) {
        QGeoPositionInfo position;
        if (!reader.read(sentence, position))
            return;
        ++positions;
        if (!byGpsd) {
            if (!source()->updating)
                return;
            source()->deliver(position);
        } else if (position.isValid() && gpsd.isConnected()) {
            gpsd.answer = MadeUpGpsd::poll(
                {MadeUpGpsd::receiver("/dev/a", MadeUpGpsd::time(line), position.coordinate())});
            const int earlier = told;
            gpsd.say(gpsd.answer);
            QVERIFY(QTest::qWaitFor([earlier] { return told > earlier; }));
        }
        if (shop.page() != PageReminder)
            return;
        const QString reply = rung.size() < table.reminders.size()
                                  ? table.reminders.at(rung.size()).answer
                                  : QString("next");
        rung << Reminder{line, reply, shop.labelText("reminderStore")};
        const int polls = gpsd.polls();
        answer(shop, reply);
        if (byGpsd && reply == "next" && shop.isEnabled("stopButton"))
            connect(polls);
        else if (byGpsd)
            QTRY_VERIFY(!gpsd.isConnected());
    };
    while (!file.atEnd()) {
        const QByteArray sentence = file.readLine();
        ++line;
        QByteArray rubbish;
        for (int left = table.rubbish.value(line); left > 0; --left)
            rubbish += char(noise.bounded(256));
        for (const QByteArray &part : rubbish.split('\n'))
            say(part + '\n');
        say(sentence);
    }

    int missed = 0;
    int late = 0;
    QList<Reminder> unexpected = rung;
    for (const Reminder &expected : table.reminders) {
        const auto store = [](const Reminder &reminder) {
            return reminder.text.section(' ', 0, 0);
        };
        const auto same = std::ranges::find_if(unexpected, [&](const Reminder &reminder) {
            return store(reminder) == store(expected);
        });
        if (same == unexpected.end()) {
            ++missed;
        } else {
            late += same->line > expected.line;
            unexpected.erase(same);
        }
    }
    results << QString("%1 %2 %3 %4 %5 %6 %7 %8")
                   .arg(QTest::currentDataTag(), -36)
                   .arg(line, 9)
                   .arg(positions, 9)
                   .arg(table.reminders.size(), 8)
                   .arg(rung.size(), 4)
                   .arg(missed, 6)
                   .arg(unexpected.size(), 5)
                   .arg(late, 4);
    QCOMPARE(missed, 0);
    QCOMPARE(unexpected.size(), 0);
    QCOMPARE(late, 0);
    for (int index = 0; index < rung.size(); ++index) {
        QCOMPARE(rung.at(index).line, table.reminders.at(index).line);
        QCOMPARE(rung.at(index).text, table.reminders.at(index).text);
    }
}

void TestWalks::cleanupTestCase()
{
    QTextStream out(stdout);
    out << "walk                                 sentences positions expected rang missed false "
           "late\n";
    for (const QString &result : std::as_const(results))
        out << result << '\n';
}

STOPPABLE_TEST_MAIN(TestWalks)
#include "tst_walks.moc"
