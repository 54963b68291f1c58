// SPDX-License-Identifier: MIT
#include "platform/gpsdstream.h"

#include <algorithm>
#include <future>
#include <memory>
#include <thread>

#include <QDeadlineTimer>
#include <QTextStream>
#include <QUrl>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr quint16 defaultPort = 2947;
constexpr auto firstRetryPause = 1s;
constexpr auto longestRetryPause = 25s;
/// A receiver that works says something every second; a connection is made in far less.
constexpr auto longestSilence = 5s;
/// Bytes. A sentence has at most 82, what gpsd says of itself some hundred.
constexpr qsizetype longestLine = 4096;
/// Bytes, of sentences that nobody has read.
constexpr qsizetype mostUnread = 65536;

constexpr QByteArrayView greeting = R"({"class":"VERSION")";
constexpr auto watch = R"(?WATCH={"enable":true,"nmea":true};)"
                       "\n";
/// gpsd answers this at once, whatever its receiver does.
constexpr auto signOfLife = "?VERSION;\n";

bool greets(const GpsdAddress &gpsd, std::chrono::milliseconds limit)
{
    const QDeadlineTimer deadline(limit);
    QTcpSocket socket;
    socket.connectToHost(gpsd.host, gpsd.port);
    if (!socket.waitForConnected(static_cast<int>(deadline.remainingTime())))
        return false;
    while (socket.bytesAvailable() < greeting.size()) {
        if (!socket.waitForReadyRead(static_cast<int>(deadline.remainingTime())))
            return false;
    }
    return socket.peek(greeting.size()) == greeting;
}

} // namespace

GpsdAddress GpsdAddress::fromEnvironment()
{
    GpsdAddress usual{.host = u"127.0.0.1"_s, .port = defaultPort};
    const QString value = qEnvironmentVariable("TROLLEO_GPSD");
    if (value.isEmpty())
        return usual;
    QUrl url;
    url.setAuthority(value, QUrl::StrictMode);
    if (!url.isValid() || url.host().isEmpty() || url.port() < 1 || !url.userInfo().isEmpty()) {
        QTextStream(stderr) << "trolleo: TROLLEO_GPSD is not host:port, " << usual.host << ':'
                            << usual.port << " is used instead: " << value << Qt::endl;
        return usual;
    }
    return {.host = url.host(), .port = static_cast<quint16>(url.port())};
}

bool GpsdStream::answers(const GpsdAddress &gpsd, std::chrono::milliseconds limit)
{
    // In a thread, since nothing limits the time that looking up a host name takes. One that takes
    // longer is left to itself.
    auto result = std::make_shared<std::promise<bool>>();
    std::future<bool> greeted = result->get_future();
    std::thread([gpsd, limit, result] { result->set_value(greets(gpsd, limit)); }).detach();
    return greeted.wait_for(limit) == std::future_status::ready && greeted.get();
}

std::chrono::seconds GpsdStream::pauseAfter(std::chrono::seconds pause)
{
    return std::min<std::chrono::seconds>(2 * pause, longestRetryPause);
}

GpsdStream::GpsdStream(const GpsdAddress &gpsd, QObject *parent)
    : QIODevice(parent)
    , address(gpsd)
    , retryPause(firstRetryPause)
{
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    retry.setSingleShot(true);
    silence.setSingleShot(true);
    silence.setInterval(longestSilence);
    connect(&retry, &QTimer::timeout, this, &GpsdStream::connectToGpsd);
    connect(&silence, &QTimer::timeout, this, &GpsdStream::waitedInVain);
    connect(&socket, &QTcpSocket::readyRead, this, &GpsdStream::receive);
    // Queued, so that the socket is never aborted within a slot of its own.
    connect(&socket, &QTcpSocket::disconnected, this, &GpsdStream::socketClosed,
            Qt::QueuedConnection);
    connect(&socket, &QTcpSocket::errorOccurred, this, &GpsdStream::socketClosed,
            Qt::QueuedConnection);
}

void GpsdStream::setWanted(bool wanted)
{
    if (wanted == isWanted)
        return;
    isWanted = wanted;
    if (wanted) {
        retryPause = firstRetryPause;
        connectToGpsd();
        return;
    }
    retry.stop();
    silence.stop();
    socket.abort();
    sentences.clear();
}

void GpsdStream::connectToGpsd()
{
    incomplete.clear();
    sentences.clear();
    askedForASign = false;
    hasGreeted = false;
    silence.start();
    socket.connectToHost(address.host, address.port);
}

void GpsdStream::socketClosed()
{
    // An error and the end of a connection are both told, and late: another attempt may be waiting
    // or under way already.
    if (isWanted && !retry.isActive() && socket.state() == QAbstractSocket::UnconnectedState)
        giveUp();
}

/// Ends the connection, or the attempt, and tries again after a pause.
void GpsdStream::giveUp()
{
    silence.stop();
    socket.abort();
    retry.start(retryPause);
    retryPause = pauseAfter(retryPause);
    emit connectionLost();
}

void GpsdStream::waitedInVain()
{
    if (socket.state() != QAbstractSocket::ConnectedState || askedForASign) {
        giveUp();
        return;
    }
    askedForASign = true;
    socket.write(signOfLife);
    silence.start();
}

void GpsdStream::receive()
{
    silence.start();
    askedForASign = false;
    incomplete += socket.readAll();
    qsizetype begin = 0;
    for (qsizetype end = incomplete.indexOf('\n'); end >= 0;
         end = incomplete.indexOf('\n', begin)) {
        takeLine(incomplete.mid(begin, end + 1 - begin));
        begin = end + 1;
    }
    incomplete.remove(0, begin);
    // No line is that long. What follows up to the next line end is a fragment, and ignored as
    // such.
    if (incomplete.size() > longestLine)
        incomplete.clear();
    if (!sentences.isEmpty())
        emit readyRead();
}

void GpsdStream::takeLine(const QByteArray &line)
{
    // As one whose end came late.
    if (line.size() > longestLine)
        return;
    if (line.startsWith('$')) {
        retryPause = firstRetryPause;
        if (sentences.size() + line.size() > mostUnread)
            sentences.clear();
        sentences += line;
    } else if (!hasGreeted && line.startsWith(greeting)) {
        hasGreeted = true;
        emit connected();
        socket.write(watch);
    }
}

bool GpsdStream::isSequential() const
{
    return true;
}

qint64 GpsdStream::bytesAvailable() const
{
    return sentences.size() + QIODevice::bytesAvailable();
}

bool GpsdStream::canReadLine() const
{
    return sentences.contains('\n');
}

qint64 GpsdStream::readData(char *data, qint64 maxSize)
{
    const qsizetype size = std::min<qsizetype>(sentences.size(), static_cast<qsizetype>(maxSize));
    // Whoever reads nothing may have no place for it.
    std::copy_n(sentences.constData(), size, data);
    sentences.remove(0, size);
    return size;
}

qint64 GpsdStream::writeData(const char * /*data*/, qint64 /*size*/)
{
    return -1;
}
