// SPDX-License-Identifier: MIT
#include "platform/standarderror.h"

#include <climits>

#include <QByteArray>
#include <QtGlobal>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace {

/// Standard error as an open file of our own, which does not wait: to set that for the one that was
/// inherited would set it for all programs that share it. -1 where the system cannot open it once
/// more, as with a socket.
int ownDescriptor()
{
    static const int descriptor =
        open("/proc/self/fd/2", O_WRONLY | O_APPEND | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    return descriptor;
}

} // namespace

void StandardError::write(const QString &text)
{
    QByteArray line = text.toLocal8Bit();
    // A pipe that is ready takes so much without waiting for its reader, pipe(7).
    line.truncate(PIPE_BUF - 1);
    line += '\n';
    const int descriptor = ownDescriptor() < 0 ? STDERR_FILENO : ownDescriptor();
    pollfd output{.fd = descriptor, .events = POLLOUT, .revents = 0};
    // A pipe without a reader is ready as well, with an error: writing would end the program.
    if (poll(&output, 1, 0) == 1 && output.revents == POLLOUT) [[maybe_unused]]
        const auto written =
            ::write(descriptor, line.constData(), static_cast<size_t>(line.size()));
}

void StandardError::takeMessages()
{
    qInstallMessageHandler(
        [](QtMsgType type, const QMessageLogContext &context, const QString &message) {
            write(qFormatLogMessage(type, context, message));
        });
}
