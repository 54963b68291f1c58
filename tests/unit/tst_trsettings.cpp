// SPDX-License-Identifier: MIT
#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QtTest>

#include "base/installation.h"
#include "base/trsettings.h"
#include "tests/support/testhome.h"

class TestTrSettings : public QObject
{
    Q_OBJECT

private slots:
    void emptyStoreGivesDefaults();
    void everyKeyIsStoredUnderItsNameWithItsType();
    void positionIsStoredWhole();
    void lockOfKilledProgramDelaysNothing_data();
    void lockOfKilledProgramDelaysNothing();
    void noSoundFileMeansTheInstalledAlarm();
    void valuesAreReadBackAtOnce();
    void latitudeComesBackInSinglePrecision();
    void onlyTrueAndNumbersSwitchAFlagOn_data();
    void onlyTrueAndNumbersSwitchAFlagOn();
    void foreignTypesReadAsDefaults_data();
    void foreignTypesReadAsDefaults();
    void garbageInTheFileReadsAsDefaults();

private:
    void writeFile(const TestHome &home, const QByteArray &content);
    QVariant stored(const QString &key);
};

void TestTrSettings::writeFile(const TestHome &home, const QByteArray &content)
{
    QDir().mkpath(QFileInfo(home.settingsFile()).path());
    QFile file(home.settingsFile());
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

QVariant TestTrSettings::stored(const QString &key)
{
    return QSettings("Vantor", "Trolleo").value(key);
}

void TestTrSettings::emptyStoreGivesDefaults()
{
    const TestHome home;
    const TrSettings &settings = TrSettings::instance();
    QCOMPARE(settings.gpsEnabled(), false);
    QCOMPARE(settings.gpsAutoStart(), false);
    QCOMPARE(settings.trackAutoStart(), false);
    QCOMPARE(settings.languageId(), 0);
    QCOMPARE(settings.soundFileName(), QString());
    QCOMPARE(settings.lastLatitude(), 0.0F);
    QCOMPARE(settings.lastLongitude(), 0.0F);
    QCOMPARE(settings.defaultNetworkConfiguration(), QString());
    QVERIFY(!QFile::exists(home.settingsFile()));
}

void TestTrSettings::everyKeyIsStoredUnderItsNameWithItsType()
{
    const TestHome home;
    TrSettings &settings = TrSettings::instance();
    settings.setGpsEnabled(true);
    settings.setGpsAutoStart(true);
    settings.setTrackAutoStart(true);
    settings.setLanguageId(2);
    settings.setSoundFileName("/a/b c.wav");
    settings.setLastLatitude(55.5F);
    settings.setLastLongitude(-37.25F);
    settings.setDefaultNetworkConfiguration("home");

    QCOMPARE(QSettings("Vantor", "Trolleo").allKeys().size(), 8);
    QCOMPARE(stored("GpsEnabled").toString(), "true");
    QCOMPARE(stored("GpsAutoStart").toString(), "true");
    QCOMPARE(stored("TrackAutoStart").toString(), "true");
    QCOMPARE(stored("LanguageId").toString(), "2");
    QCOMPARE(stored("SoundFileName").toString(), "/a/b c.wav");
    QCOMPARE(stored("LastLatitude").typeId(), int(QMetaType::Float));
    QCOMPARE(stored("LastLatitude").toFloat(), 55.5F);
    QCOMPARE(stored("LastLongitude").typeId(), int(QMetaType::Float));
    QCOMPARE(stored("LastLongitude").toFloat(), -37.25F);
    QCOMPARE(stored("DefaultNetworkConfiguration").toString(), "home");
}

void TestTrSettings::positionIsStoredWhole()
{
    const TestHome home;
    TrSettings::instance().setLastPosition(55.5F, -37.25F);
    QCOMPARE(stored("LastLatitude").typeId(), int(QMetaType::Float));
    QCOMPARE(stored("LastLatitude").toFloat(), 55.5F);
    QCOMPARE(stored("LastLongitude").toFloat(), -37.25F);
}

void TestTrSettings::lockOfKilledProgramDelaysNothing_data()
{
    QTest::addColumn<bool>("isOld");
    QTest::newRow("killed just now") << false;
    QTest::newRow("killed a minute ago") << true;
}

/// The program was killed between the creation of the lock file and the first write to it.
void TestTrSettings::lockOfKilledProgramDelaysNothing()
{
    QFETCH(bool, isOld);
    const TestHome home;
    QVERIFY(QDir().mkpath(QFileInfo(home.settingsFile()).path()));
    QFile lock(home.settingsFile() + ".lock");
    QVERIFY(lock.open(QIODevice::WriteOnly));
    // Newer than what QSettings takes for abandoned.
    if (isOld) {
        QVERIFY(lock.setFileTime(QDateTime::currentDateTime().addSecs(-20),
                                 QFileDevice::FileModificationTime));
    }
    lock.close();
    QElapsedTimer clock;
    clock.start();
    TrSettings::instance().setLanguageId(2);
    QVERIFY2(clock.elapsed() < (isOld ? 400 : 5000), qPrintable(QString::number(clock.elapsed())));
    QCOMPARE(stored("LanguageId").toInt(), 2);
    QVERIFY(!lock.exists());
}

void TestTrSettings::noSoundFileMeansTheInstalledAlarm()
{
    const TestHome home;
    TrSettings &settings = TrSettings::instance();
    QCOMPARE(alarmFile(settings.soundFileName()), "/opt/trolleo/Alarm5.wav");
    settings.setSoundFileName("");
    QCOMPARE(alarmFile(settings.soundFileName()), "/opt/trolleo/Alarm5.wav");
    // The default is not written back.
    QCOMPARE(settings.soundFileName(), QString());
    settings.setSoundFileName("/music/horn.mp3");
    QCOMPARE(alarmFile(settings.soundFileName()), "/music/horn.mp3");
}

void TestTrSettings::valuesAreReadBackAtOnce()
{
    const TestHome home;
    TrSettings &settings = TrSettings::instance();
    settings.setGpsEnabled(true);
    QCOMPARE(settings.gpsEnabled(), true);
    settings.setGpsEnabled(false);
    QCOMPARE(settings.gpsEnabled(), false);
    settings.setGpsAutoStart(true);
    QCOMPARE(settings.gpsAutoStart(), true);
    settings.setTrackAutoStart(true);
    QCOMPARE(settings.trackAutoStart(), true);
    settings.setLanguageId(1);
    QCOMPARE(settings.languageId(), 1);
    settings.setSoundFileName("x.mp3");
    QCOMPARE(settings.soundFileName(), "x.mp3");
    settings.setLastLatitude(1.5F);
    QCOMPARE(settings.lastLatitude(), 1.5F);
    settings.setLastLongitude(2.5F);
    QCOMPARE(settings.lastLongitude(), 2.5F);
    settings.setDefaultNetworkConfiguration("id");
    QCOMPARE(settings.defaultNetworkConfiguration(), "id");
}

void TestTrSettings::latitudeComesBackInSinglePrecision()
{
    const TestHome home;
    TrSettings &settings = TrSettings::instance();
    const double typed = 55.7558321;
    settings.setLastLatitude(static_cast<float>(typed));
    const double readBack = settings.lastLatitude();
    QVERIFY(readBack != typed);
    QCOMPARE(readBack, 55.755832672119140625);
}

void TestTrSettings::onlyTrueAndNumbersSwitchAFlagOn_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<bool>("on");
    const QList<std::pair<QByteArray, bool>> rows{
        {"true", true},
        {"1", true},
        {"2", true},
        {"-1", true},
        {"0.5", true},
        {"1e3", true},
        {"false", false},
        {"0", false},
        {"0.0", false},
        {"no", false},
        {"off", false},
        {"yes", false},
        {"truth", false},
        {"", false},
        {"nan", false},
        {"1, 1", false},
        {"@ByteArray(x)", false},
        {"@Invalid()", false},
        {"@Rect(1 1 1 1)", false},
        {"@Variant(\\0\\0\\0\\x87?\\x80\\0\\0)", true},
        {"@Variant(\\0\\0\\0\\x87\\0\\0\\0\\0)", false},
    };
    for (const auto &[value, on] : rows)
        QTest::newRow(value.isEmpty() ? "empty" : value.constData()) << value << on;
}

void TestTrSettings::onlyTrueAndNumbersSwitchAFlagOn()
{
    QFETCH(QByteArray, value);
    QFETCH(bool, on);
    const TestHome home;
    writeFile(home, "[General]\nGpsEnabled=" + value + "\nGpsAutoStart=" + value +
                        "\nTrackAutoStart=" + value + "\n");
    QCOMPARE(TrSettings::instance().gpsEnabled(), on);
    QCOMPARE(TrSettings::instance().gpsAutoStart(), on);
    QCOMPARE(TrSettings::instance().trackAutoStart(), on);
}

void TestTrSettings::foreignTypesReadAsDefaults_data()
{
    QTest::addColumn<QByteArray>("value");
    for (const char *value : {"abc", "12abc", "@Rect(1 2 3 4)", "@Invalid()", "1, 2",
                              "@ByteArray(a)", "nan", "inf", "1e39"})
        QTest::newRow(value) << QByteArray(value);
}

void TestTrSettings::foreignTypesReadAsDefaults()
{
    QFETCH(QByteArray, value);
    const TestHome home;
    writeFile(home, "[General]\nLanguageId=" + value + "\nLastLatitude=" + value +
                        "\nLastLongitude=" + value + "\n");
    QCOMPARE(TrSettings::instance().languageId(), 0);
    QCOMPARE(TrSettings::instance().lastLatitude(), 0.0F);
    QCOMPARE(TrSettings::instance().lastLongitude(), 0.0F);
}

void TestTrSettings::garbageInTheFileReadsAsDefaults()
{
    const TestHome home;
    writeFile(home, QByteArray("\x00\xff[[]=%%%\n=\n\\x\xfe", 15) + QByteArray(5000, '\x07'));
    emptyStoreGivesDefaults();
}

STOPPABLE_TEST_GUILESS_MAIN(TestTrSettings)
#include "tst_trsettings.moc"
