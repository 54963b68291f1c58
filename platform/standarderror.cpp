// SPDX-License-Identifier: MIT
#include "platform/standarderror.h"

#include <climits>

#include <QByteArray>
#include <QtGlobal>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

void StandardError::write(const QString &text)
{
    QByteArray line = text.toLocal8Bit();
    // A pipe that is ready takes so much without waiting for its reader, pipe(7).
    line.truncate(PIPE_BUF - 1);
    line += '\n';
    // An open file of our own, which does not wait: to set that for the one that was inherited
    // would set it for all programs that share it. The system cannot open a socket once more.
    const int own =
        open("/proc/self/fd/2", O_WRONLY | O_APPEND | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    pollfd output{.fd = own < 0 ? STDERR_FILENO : own, .events = POLLOUT, .revents = 0};
    // A pipe without a reader is ready as well, with an error: writing would end the program.
    if (poll(&output, 1, 0) == 1 && output.revents == POLLOUT) [[maybe_unused]]
        const auto written = ::write(output.fd, line.constData(), static_cast<size_t>(line.size()));
    if (own >= 0)
        close(own);
}

void StandardError::takeMessages()
{
    qInstallMessageHandler(
        [](QtMsgType type, const QMessageLogContext &context, const QString &message) {
            write(qFormatLogMessage(type, context, message));
        });
}
