// SPDX-License-Identifier: MIT
#include "platform/localsocket.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstring>

#include <QSocketNotifier>

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

int createSocket()
{
    return ::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
}

/// Calls `function`, which is bind() or connect(). Returns whether it succeeds.
bool apply(int (*function)(int, const sockaddr *, socklen_t), int descriptor,
           const QByteArray &name)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (name.isEmpty() || static_cast<std::size_t>(name.size()) >= sizeof address.sun_path) {
        errno = ENAMETOOLONG;
        return false;
    }
    std::memcpy(&address.sun_path, name.constData(), static_cast<std::size_t>(name.size()));
    const auto size = offsetof(sockaddr_un, sun_path) + static_cast<std::size_t>(name.size());
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): addresses are passed like this
    return function(descriptor, reinterpret_cast<const sockaddr *>(&address),
                    static_cast<socklen_t>(size)) == 0;
}

/// Closes the socket of `notifier`, if any.
void closeSocket(QSocketNotifier *&notifier)
{
    if (!notifier)
        return;
    notifier->setEnabled(false);
    ::close(static_cast<int>(notifier->socket()));
    notifier->deleteLater(); // this may be within its signal
    notifier = nullptr;
}

} // namespace

LocalSocket::LocalSocket(QObject *parent)
    : QObject(parent)
{}

LocalSocket::LocalSocket(int descriptor, QObject *parent)
    : QObject(parent)
{
    watch(descriptor);
}

LocalSocket::~LocalSocket()
{
    close();
}

bool LocalSocket::connectTo(const QByteArray &name)
{
    close();
    const int descriptor = createSocket();
    if (descriptor < 0)
        return false;
    if (!apply(::connect, descriptor, name)) {
        ::close(descriptor);
        return false;
    }
    watch(descriptor);
    return true;
}

bool LocalSocket::isConnected() const
{
    return notifier;
}

void LocalSocket::close()
{
    closeSocket(notifier);
    unread.clear();
}

void LocalSocket::write(const QByteArray &data)
{
    if (!notifier)
        return;
    const auto sent = ::send(static_cast<int>(notifier->socket()), data.constData(),
                             static_cast<std::size_t>(data.size()), MSG_NOSIGNAL);
    if (sent != data.size())
        close();
}

QByteArray &LocalSocket::buffer()
{
    return unread;
}

bool LocalSocket::waitForData(const QDeadlineTimer &deadline)
{
    if (!notifier)
        return false;
    pollfd request{static_cast<int>(notifier->socket()), POLLIN, 0};
    if (::poll(&request, 1, static_cast<int>(deadline.remainingTime())) != 1)
        return false;
    read();
    return !unread.isEmpty();
}

void LocalSocket::watch(int descriptor)
{
    notifier = new QSocketNotifier(descriptor, QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, &LocalSocket::read);
}

void LocalSocket::read()
{
    constexpr std::size_t mostAtOnce = 4096;
    std::array<char, mostAtOnce> data{};
    const auto size =
        ::recv(static_cast<int>(notifier->socket()), data.data(), data.size(), MSG_DONTWAIT);
    if (size > 0) {
        unread.append(data.data(), size);
        emit received();
    } else if (size == 0 || (errno != EAGAIN && errno != EINTR)) {
        close();
        emit closed();
    }
}

LocalServer::LocalServer(QObject *parent)
    : QObject(parent)
{}

LocalServer::~LocalServer()
{
    close();
}

bool LocalServer::listen(const QByteArray &path)
{
    close();
    const int descriptor = createSocket();
    if (descriptor < 0)
        return false;
    constexpr int mostWaiting = 10;
    ::unlink(path.constData());
    if (!apply(::bind, descriptor, path) || ::listen(descriptor, mostWaiting) != 0) {
        const int reason = errno;
        ::close(descriptor);
        errno = reason;
        return false;
    }
    notifier = new QSocketNotifier(descriptor, QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this, descriptor] {
        const int connection =
            ::accept4(descriptor, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
        if (connection >= 0)
            emit connected(new LocalSocket(connection));
        else if (errno != EAGAIN && errno != EINTR && errno != ECONNABORTED)
            close(); // it would fail again at once, and for ever
    });
    socketPath = path;
    return true;
}

void LocalServer::close()
{
    if (notifier)
        ::unlink(socketPath.constData());
    closeSocket(notifier);
}
