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
    // A pipe that is ready accepts this many bytes without blocking, see pipe(7).
    line.truncate(PIPE_BUF - 1);
    line += '\n';
    // The function opens the file again, in non-blocking mode: changing the mode of the inherited
    // descriptor would affect all programs that share it. A socket cannot be opened again and is
    // used as it is.
    const int own =
        open("/proc/self/fd/2", O_WRONLY | O_APPEND | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    pollfd output{.fd = own < 0 ? STDERR_FILENO : own, .events = POLLOUT, .revents = 0};
    // A pipe without a reader is ready as well, but with an error: writing would end the program.
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
