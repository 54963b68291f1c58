// SPDX-License-Identifier: MIT
#include "platform/alarmsound.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <utility>

#include <sys/prctl.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::seconds firstRetryPause = 1s;
constexpr std::chrono::seconds longestRetryPause = 25s;
/// How long the end of the program waits for a killed player, which the kernel may hold, for
/// instance while it reads from a drive that does not respond.
constexpr auto patience = 500ms;

} // namespace

AlarmSound::AlarmSound(const QString &file, QObject *parent)
    : QObject(parent)
    , soundFile(file)
    , retryPause(firstRetryPause)
{
    retry.setSingleShot(true);
    connect(&retry, &QTimer::timeout, this, &AlarmSound::startPlayer);
}

AlarmSound::~AlarmSound()
{
    stop();
    for (QProcess *stopped : findChildren<QProcess *>()) {
        if (stopped->state() != QProcess::NotRunning &&
            !stopped->waitForFinished(std::chrono::milliseconds(patience).count()))
            stopped->setParent(nullptr); // its destructor would wait for half a minute
    }
}

QString AlarmSound::fileName() const
{
    return soundFile;
}

void AlarmSound::setLoops(int count)
{
    loops = count;
}

void AlarmSound::play()
{
    stop();
    retryPause = firstRetryPause;
    startPlayer();
}

void AlarmSound::stop()
{
    retry.stop();
    if (!player)
        return;
    QProcess *stopped = std::exchange(player, nullptr);
    stopped->disconnect(this);
    connect(stopped, &QProcess::finished, stopped, &QObject::deleteLater);
    connect(stopped, &QProcess::errorOccurred, stopped, &QObject::deleteLater);
    stopped->kill();
}

void AlarmSound::startPlayer()
{
    if (!QFileInfo(soundFile).isFile())
        return;
    player = new QProcess(this);
    player->setProcessChannelMode(QProcess::ForwardedChannels);
    player->setStandardInputFile(QProcess::nullDevice());
    // The player ends with the program, however that ends.
    player->setChildProcessModifier([program = getpid()] {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (getppid() != program) // it has ended already
            _exit(EXIT_FAILURE);
    });
    connect(player, &QProcess::finished, this, [this](int code, QProcess::ExitStatus status) {
        takeResult(status == QProcess::NormalExit && code == EXIT_SUCCESS);
    });
    connect(player, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) {
            qWarning("The alarm: %s", qPrintable(player->errorString()));
            takeResult(false);
        }
    });
    // Found where Qt finds plugins: beside this program.
    const QString program =
        QStandardPaths::findExecutable(u"trolleo-alarm"_s, QCoreApplication::libraryPaths());
    player->start(program, {soundFile, QString::number(loops)});
}

void AlarmSound::takeResult(bool isPlayed)
{
    std::exchange(player, nullptr)->deleteLater();
    if (isPlayed)
        return;
    retry.start(retryPause);
    retryPause = std::min(2 * retryPause, longestRetryPause);
}
