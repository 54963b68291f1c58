// SPDX-License-Identifier: MIT
#include "platform/singleinstance.h"

#include <cerrno>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <QFile>
#include <QThread>
#include <QTimer>

namespace {

constexpr qsizetype longestToken = 4096;
constexpr auto longestQuestion = std::chrono::seconds(5);
/// Between two attempts while the other process starts or ends.
constexpr unsigned long retryPause = 50; // ms

} // namespace

SingleInstance::SingleInstance(QString path, QObject *parent)
    : QObject(parent)
    , folder(std::move(path))
    , server(this)
{
    connect(&server, &LocalServer::connected, this, [this](LocalSocket *other) {
        other->setParent(this);
        connect(other, &LocalSocket::received, this, [this, other] { answer(other); });
        connect(other, &LocalSocket::closed, other, &QObject::deleteLater);
        QTimer::singleShot(longestQuestion, other, &QObject::deleteLater);
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
    if (descriptor < 0)
        descriptor =
            ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return Result::First;
    while (!lock()) {
        if (ask(activationToken, deadline))
            return Result::Answered;
        if (deadline.hasExpired())
            return Result::Unanswered;
        QThread::msleep(retryPause);
    }
    if (isLocked)
        listen();
    return Result::First;
}

void SingleInstance::stopListening()
{
    server.close();
}

/// Returns false if another process has locked the folder.
bool SingleInstance::lock()
{
    isLocked = ::flock(descriptor, LOCK_EX | LOCK_NB) == 0;
    return isLocked || errno != EWOULDBLOCK;
}

/// Returns false if there was no answer.
bool SingleInstance::ask(const QByteArray &activationToken, const QDeadlineTimer &deadline) const
{
    LocalSocket other;
    if (!other.connectTo(socketPath()))
        return false;
    other.write(activationToken.left(longestToken) + '\n');
    return other.waitForData(deadline);
}

void SingleInstance::listen()
{
    // A process that was killed has left its socket, which is replaced.
    if (!server.listen(socketPath()))
        qWarning("Another start cannot show this window: %s", std::strerror(errno));
}

void SingleInstance::answer(LocalSocket *other)
{
    const qsizetype end = other->buffer().indexOf('\n');
    if (end >= 0) {
        emit startedAgain(QString::fromUtf8(other->buffer().first(end).trimmed()));
        other->write("\n");
    } else if (other->buffer().size() <= longestToken) {
        return;
    }
    other->close();
    other->deleteLater();
}

/// The path to a socket has room for about 100 bytes, and that to the folder may be longer.
QByteArray SingleInstance::socketPath() const
{
    return "/proc/self/fd/" + QByteArray::number(descriptor) + "/trolleo.socket";
}
