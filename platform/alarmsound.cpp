// SPDX-License-Identifier: MIT
#include "platform/alarmsound.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include <QCoreApplication>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::seconds firstRetryPause = 1s;
constexpr std::chrono::seconds longestRetryPause = 25s;

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
    for (QProcess *stopped : findChildren<QProcess *>())
        stopped->waitForFinished();
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
    stopped->kill();
}

void AlarmSound::startPlayer()
{
    if (!QFileInfo(soundFile).isFile())
        return;
    player = new QProcess(this);
    player->setProcessChannelMode(QProcess::ForwardedChannels);
    player->setStandardInputFile(QProcess::nullDevice());
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
