// SPDX-License-Identifier: MIT
#include <cmath>
#include <csignal>
#include <numbers>

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtEndian>
#include <QtTest>

#include "platform/alarmsound.h"
#include "tests/support/emulator.h"
#include "tests/support/mutesoundserver.h"
#include "tests/support/processes.h"

static const QString soundFile = TROLLEO_SOURCES "/resources/sounds/Alarm5.wav";

/// How long starting or stopping a few processes may take, in milliseconds. A sound server that
/// does not answer would block for 30 seconds.
static const int timeToStart = Emulator::isUsed() ? 10000 : 1000;

/// How long a player may take to find that there is no sound server, in milliseconds.
static const int timeToFail = 10000;

/// Samples from -1 to 1.
struct Recording
{
    int rate = 0;
    QList<double> samples;
};

static QList<int> players()
{
    return childrenNamed("trolleo-alarm");
}

/// Returns whether exactly one player runs, and another one than before.
static bool isReplaced(const QList<int> &before)
{
    const QList<int> now = players();
    return now.size() == 1 && now != before;
}

/// The alarm file and how it is played. The audible result is tested with a sound server.
class TestAlarmSound : public QObject
{
    Q_OBJECT

private slots:
    void fileIsWhatItsScriptMakes();
    void fileIsAShortMonoWave();
    void fileIsLoudAndDoesNotClip();
    void fileLoopsCleanly();
    void fileIsWhereALoudspeakerIsGood();
    void nothingStartsBeforeItPlays();
    void missingFileStartsNothing();
    void playsInAProcess();
    void playsOnceTheServerIsThere();
    void playsAgainIfThePlayerIsKilled();
    void stoppedSoundIsNotTriedAgain();
    void playsOnceThePlayerIsThere();
    void playingNeverWaits_data();
    void playingNeverWaits();

private:
    static Recording recording();
};

Recording TestAlarmSound::recording()
{
    QFile file(soundFile);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray data = file.readAll();
    constexpr int headerSize = 44;
    if (!data.startsWith("RIFF") || data.mid(8, 8) != "WAVEfmt " || data.mid(36, 4) != "data")
        return {};
    Recording result{.rate = qFromLittleEndian<qint32>(data.constData() + 24), .samples = {}};
    for (qsizetype index = headerSize; index + 1 < data.size(); index += 2)
        result.samples << qFromLittleEndian<qint16>(data.constData() + index) / 32768.0;
    return result;
}

void TestAlarmSound::fileIsWhatItsScriptMakes()
{
    const QTemporaryDir folder;
    const QString script = "make-alarm.py";
    QVERIFY(QFile::copy(TROLLEO_SOURCES "/resources/sounds/" + script, folder.filePath(script)));
    QCOMPARE(QProcess::execute("python3", {"-B", folder.filePath(script)}), 0);
    QFile made(folder.filePath("Alarm5.wav"));
    QFile kept(soundFile);
    QVERIFY(made.open(QIODevice::ReadOnly));
    QVERIFY(kept.open(QIODevice::ReadOnly));
    QVERIFY(made.readAll() == kept.readAll());
}

void TestAlarmSound::fileIsAShortMonoWave()
{
    const Recording alarm = recording();
    QCOMPARE(alarm.rate, 44100);
    const double seconds = double(alarm.samples.size()) / alarm.rate;
    QVERIFY2(seconds >= 2 && seconds <= 4, qPrintable(QString::number(seconds)));
}

void TestAlarmSound::fileIsLoudAndDoesNotClip()
{
    double peak = 0;
    double power = 0;
    const Recording alarm = recording();
    for (const double sample : alarm.samples) {
        peak = std::max(peak, std::abs(sample));
        power += sample * sample;
    }
    power /= double(alarm.samples.size());
    QVERIFY2(peak > 0.8 && peak < 0.95, qPrintable(QString::number(peak)));
    const double level = 10 * std::log10(power); // dB below full scale
    QVERIFY2(level > -20, qPrintable(QString::number(level)));
}

void TestAlarmSound::fileLoopsCleanly()
{
    const Recording alarm = recording();
    const auto isSilent = [](double sample) {
        return std::abs(sample) < 0.001;
    };
    QVERIFY(isSilent(alarm.samples.first()));
    const int tenMilliseconds = alarm.rate / 100;
    QVERIFY(std::all_of(alarm.samples.end() - tenMilliseconds, alarm.samples.end(), isSilent));
    // There are no jumps, which would be heard as clicks.
    for (qsizetype index = 1; index < alarm.samples.size(); ++index)
        QVERIFY(std::abs(alarm.samples[index] - alarm.samples[index - 1]) < 0.5);
}

void TestAlarmSound::fileIsWhereALoudspeakerIsGood()
{
    // Power at a frequency in the first second, by correlation.
    Recording alarm = recording();
    alarm.samples.resize(alarm.rate);
    const auto power = [&alarm](double frequency) {
        double real = 0;
        double imaginary = 0;
        const double step = 2 * std::numbers::pi * frequency / alarm.rate;
        for (qsizetype index = 0; index < alarm.samples.size(); ++index) {
            real += alarm.samples[index] * std::cos(step * double(index));
            imaginary += alarm.samples[index] * std::sin(step * double(index));
        }
        return real * real + imaginary * imaginary;
    };
    double all = 0;
    double within = 0;
    for (double frequency = 50; frequency < 12000; frequency += 50) {
        const double there = power(frequency);
        all += there;
        if (frequency >= 900 && frequency <= 4800)
            within += there;
    }
    QVERIFY2(within / all > 0.95, qPrintable(QString::number(within / all)));
}

void TestAlarmSound::nothingStartsBeforeItPlays()
{
    AlarmSound sound(soundFile);
    sound.setLoops(3);
    sound.stop();
    QCOMPARE(players().size(), 0);
}

void TestAlarmSound::missingFileStartsNothing()
{
    MuteSoundServer server;
    QVERIFY(server.listen());
    AlarmSound sound("/no such file.wav");
    sound.play();
    QTest::qWait(200);
    QCOMPARE(players().size(), 0);
}

void TestAlarmSound::playsInAProcess()
{
    SKIP_WITHOUT_PLAYER();
    MuteSoundServer server;
    QVERIFY(server.listen());
    {
        AlarmSound sound(soundFile);
        sound.play();
        QTRY_COMPARE(players().size(), 1);
        const QList<int> first = players();
        sound.play();
        QTRY_VERIFY(isReplaced(first));
        sound.stop();
        QTRY_COMPARE(players().size(), 0);
        QTRY_VERIFY(sound.children().isEmpty());
        sound.play();
        QTRY_COMPARE(players().size(), 1);
    }
    QCOMPARE(players().size(), 0);
    // The libraries of the sound system are not loaded into this process.
    QFile maps("/proc/self/maps");
    QVERIFY(maps.open(QIODevice::ReadOnly));
    const QByteArray libraries = maps.readAll();
    QVERIFY(libraries.contains("libQt6Core"));
    QVERIFY(!libraries.contains("libQt6Multimedia"));
}

void TestAlarmSound::playsOnceTheServerIsThere()
{
    SKIP_WITHOUT_PLAYER();
    MuteSoundServer server;
    AlarmSound sound(soundFile);
    sound.play();
    QTRY_COMPARE_WITH_TIMEOUT(sound.children().size(), 0, timeToFail); // it has ended
    QVERIFY(server.listen());
    QTRY_COMPARE_WITH_TIMEOUT(players().size(), 1, timeToFail);
}

void TestAlarmSound::playsAgainIfThePlayerIsKilled()
{
    SKIP_WITHOUT_PLAYER();
    MuteSoundServer server;
    QVERIFY(server.listen());
    AlarmSound sound(soundFile);
    sound.play();
    QTRY_COMPARE(players().size(), 1);
    const QList<int> first = players();
    QCOMPARE(::kill(first.constFirst(), SIGKILL), 0);
    QTRY_VERIFY(isReplaced(first));
}

void TestAlarmSound::stoppedSoundIsNotTriedAgain()
{
    MuteSoundServer server;
    AlarmSound sound(soundFile);
    sound.play();
    QTRY_COMPARE_WITH_TIMEOUT(sound.children().size(), 0, timeToFail);
    sound.stop();
    QVERIFY(server.listen());
    QTest::qWait(1500);
    QCOMPARE(players().size(), 0);
}

void TestAlarmSound::playsOnceThePlayerIsThere()
{
    SKIP_WITHOUT_PLAYER();
    MuteSoundServer server;
    QVERIFY(server.listen());
    const QStringList paths = QCoreApplication::libraryPaths();
    QCoreApplication::setLibraryPaths({"/nonexistent"});
    AlarmSound sound(soundFile);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^The alarm: "));
    sound.play();
    QCoreApplication::setLibraryPaths(paths);
    QTRY_COMPARE(players().size(), 1);
}

void TestAlarmSound::playingNeverWaits_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("the alarm") << soundFile;
    QTest::newRow("no file") << "/no such file.wav";
    QTest::newRow("empty name") << QString();
    QTest::newRow("folder") << "/";
    QTest::newRow("no sound") << "/bin/sh";
    QTest::newRow("device") << "/dev/null";
}

void TestAlarmSound::playingNeverWaits()
{
    QFETCH(QString, file);
    MuteSoundServer server;
    QVERIFY(server.listen());
    QElapsedTimer clock;
    clock.start();
    {
        AlarmSound sound(file);
        sound.setLoops(3);
        for (int time = 0; time < 20; ++time) {
            sound.play();
            sound.stop();
        }
        sound.play();
        sound.play();
        QVERIFY2(clock.elapsed() < timeToStart, qPrintable(QString::number(clock.elapsed())));
        QTest::qWait(200);
        clock.start();
    }
    // It ends a sound system that does not answer.
    QVERIFY2(clock.elapsed() < timeToStart, qPrintable(QString::number(clock.elapsed())));
    QCOMPARE(players().size(), 0);
}

QTEST_GUILESS_MAIN(TestAlarmSound)
#include "tst_alarmsound.moc"
