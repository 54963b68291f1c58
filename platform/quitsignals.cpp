// SPDX-License-Identifier: MIT
#include "platform/quitsignals.h"

#include <array>
#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QSocketNotifier>

namespace {

std::array<int, 2> ends{-1, -1}; // of a pipe

/// Only a few functions may be called in a signal handler, so the event loop does the rest.
void wakeEventLoop(int /*signal*/)
{
    const int error = errno; // of the interrupted function
    const char byte = 0;
    // If the pipe is full, the event loop has been woken already.
    [[maybe_unused]] const ssize_t written = ::write(ends[1], &byte, 1);
    errno = error;
}

} // namespace

void QuitSignals::watch()
{
    if (::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    auto *notifier = new QSocketNotifier(ends[0], QSocketNotifier::Read, qApp);
    QObject::connect(notifier, &QSocketNotifier::activated, qApp, [notifier] {
        notifier->setEnabled(false);
        QCoreApplication::quit();
    });
    struct sigaction action = {};
    action.sa_handler = wakeEventLoop;
    action.sa_flags = static_cast<int>(SA_RESTART | SA_RESETHAND);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        struct sigaction before = {};
        ::sigaction(signal, nullptr, &before);
        if (before.sa_handler != SIG_IGN) // for example under nohup
            ::sigaction(signal, &action, nullptr);
    }
}
