// SPDX-License-Identifier: MIT
#include "platform/standarderror.h"

#include <climits>

#include <QByteArray>
#include <QtGlobal>

#include <poll.h>
#include <unistd.h>

void StandardError::write(const QString &text)
{
    QByteArray line = text.toLocal8Bit();
    // A pipe that is ready takes so much without waiting for its reader, pipe(7).
    line.truncate(PIPE_BUF - 1);
    line += '\n';
    pollfd output{.fd = STDERR_FILENO, .events = POLLOUT, .revents = 0};
    if (poll(&output, 1, 0) == 1 && (output.revents & POLLOUT) != 0)
        [[maybe_unused]] const auto written =
            ::write(STDERR_FILENO, line.constData(), static_cast<size_t>(line.size()));
}

void StandardError::takeMessages()
{
    qInstallMessageHandler(
        [](QtMsgType type, const QMessageLogContext &context, const QString &message) {
            write(qFormatLogMessage(type, context, message));
        });
}
