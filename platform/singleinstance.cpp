// SPDX-License-Identifier: MIT
#include "platform/singleinstance.h"

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <QFile>
#include <QLocalSocket>
#include <QThread>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 longestToken = 4096;
/// Between two attempts while the other process starts or ends.
constexpr unsigned long retryPause = 50; // ms

int remaining(const QDeadlineTimer &deadline)
{
    return static_cast<int>(deadline.remainingTime());
}

} // namespace

SingleInstance::SingleInstance(QString path, QObject *parent)
    : QObject(parent)
    , folder(std::move(path))
    , server(this)
{
    connect(&server, &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket *other = server.nextPendingConnection()) {
            connect(other, &QLocalSocket::readyRead, this, [this, other] { answer(other); });
            connect(other, &QLocalSocket::disconnected, other, &QObject::deleteLater);
            answer(other);
        }
    });
}

SingleInstance::~SingleInstance()
{
    server.close();
    if (descriptor >= 0)
        ::close(descriptor);
}

SingleInstance::Result SingleInstance::start(const QByteArray &activationToken,
                                             std::chrono::milliseconds patience)
{
    const QDeadlineTimer deadline(patience);
    for (;;) {
        if (lock()) {
            if (descriptor >= 0)
                listen();
            return Result::First;
        }
        if (ask(activationToken, deadline))
            return Result::Answered;
        if (deadline.hasExpired())
            return Result::Unanswered;
        QThread::msleep(retryPause);
    }
}

void SingleInstance::stopListening()
{
    server.close();
}

/// Returns false if another process has locked the folder.
bool SingleInstance::lock()
{
    const int opened =
        ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (opened < 0)
        return true;
    if (::flock(opened, LOCK_EX | LOCK_NB) == 0) {
        descriptor = opened;
        return true;
    }
    const bool isLocked = errno == EWOULDBLOCK;
    ::close(opened);
    return !isLocked;
}

/// Returns false if there was no answer.
bool SingleInstance::ask(const QByteArray &activationToken, const QDeadlineTimer &deadline) const
{
    QLocalSocket other;
    other.connectToServer(socketPath());
    if (!other.waitForConnected(remaining(deadline)))
        return false;
    other.write(activationToken.left(longestToken) + '\n');
    return other.waitForReadyRead(remaining(deadline));
}

void SingleInstance::listen()
{
    // A process that was killed has left its socket.
    QLocalServer::removeServer(socketPath());
    if (!server.listen(socketPath()))
        qWarning("Another start cannot show this window: %s", qPrintable(server.errorString()));
}

void SingleInstance::answer(QLocalSocket *other)
{
    if (other->canReadLine()) {
        emit startedAgain(QString::fromUtf8(other->readLine().trimmed()));
        other->write("\n");
        other->disconnectFromServer();
    } else if (other->bytesAvailable() > longestToken) {
        other->abort();
    }
}

QString SingleInstance::socketPath() const
{
    return folder + u"trolleo.socket"_s;
}
