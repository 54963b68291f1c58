// SPDX-License-Identifier: MIT
// What a gpsd sends, in pieces of any size. The first line of an input tells how; it is a row of
// steps that begins anew when it is through, each a letter and a number:
//
//     c100    sends the next 100 bytes of what follows the line
//     x100    sends the next 100 bytes fifty times over
//     w0      lets the program receive
//     e0      ends the connection
//     r1      positions are wanted no more, and then wanted again
//
// Everything else is what gpsd sends.
#include <algorithm>
#include <chrono>
#include <vector>

#include <sys/socket.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QGeoPositionInfo>
#include <QTcpServer>
#include <QTcpSocket>

#include "fuzz/support.h"
#include "platform/gpsdclient.h"

using FuzzSupport::require;

namespace {

/// Bytes that one input may let gpsd send.
constexpr qint64 mostSent = 1 << 20;

struct Step
{
    char kind = 0;
    int number = 0;
};

std::vector<Step> stepsOf(const QByteArray &line)
{
    constexpr int largest = 100000;
    std::vector<Step> steps;
    for (const char character : line) {
        const bool isDigit = character >= '0' && character <= '9';
        if (!isDigit)
            steps.push_back({.kind = character});
        else if (!steps.empty())
            steps.back().number = std::min(steps.back().number * 10 + (character - '0'), largest);
    }
    return steps;
}

/// Runs the event loop until `condition` holds, which is a matter of microseconds.
template <typename Condition>
void waitFor(const Condition &condition, const char *what)
{
    const QDeadlineTimer deadline(std::chrono::seconds(10));
    while (!condition()) {
        require(!deadline.hasExpired(), what);
        QCoreApplication::processEvents();
    }
}

/// Stands where a gpsd listens, on loopback.
class Daemon
{
public:
    Daemon()
    {
        require(server.listen(QHostAddress::LocalHost), "a port is free");
    }
    GpsdAddress address() const
    {
        return {.host = QStringLiteral("127.0.0.1"), .port = server.serverPort()};
    }
    /// Takes the connection that somebody has asked for.
    void accept()
    {
        waitFor([this] { return server.hasPendingConnections(); }, "a connection comes");
        client = server.nextPendingConnection();
        // Thousands of connections a minute, kept for a minute each, would use up all ports.
        const linger atOnce{.l_onoff = 1, .l_linger = 0};
        setsockopt(static_cast<int>(client->socketDescriptor()), SOL_SOCKET, SO_LINGER, &atOnce,
                   sizeof atOnce);
    }
    void send(const QByteArray &bytes)
    {
        if (client->state() != QAbstractSocket::ConnectedState)
            return;
        client->write(bytes);
        client->flush();
    }
    /// What nobody takes is not waited for.
    void hangUp()
    {
        client->abort();
    }
    /// Ends the connection, when the other side has ended it or not.
    void drop()
    {
        delete client;
        client = nullptr;
        while (QTcpSocket *later = server.nextPendingConnection())
            delete later;
    }

private:
    QTcpServer server;
    QTcpSocket *client = nullptr;
};

void receive()
{
    // What the daemon has sent over loopback is there already.
    for (int round = 0; round < 2; ++round)
        QCoreApplication::processEvents();
}

/// Lets `daemon` do what the steps tell, and `client` listen.
void play(Daemon &daemon, GpsdClient &client, const std::vector<Step> &steps,
          const QByteArray &words)
{
    constexpr int times = 50;
    constexpr int mostSteps = 1000;
    qsizetype at = 0;
    qint64 sent = 0;
    for (int done = 0; done < mostSteps && at < words.size() && sent < mostSent; ++done) {
        const Step &step = steps[static_cast<std::size_t>(done) % steps.size()];
        const QByteArray piece = words.mid(at, step.number);
        switch (step.kind) {
        case 'c':
            daemon.send(piece);
            at += piece.size();
            sent += piece.size();
            break;
        case 'x':
            daemon.send(piece.repeated(times));
            at += piece.size();
            sent += times * piece.size();
            break;
        case 'w':
            receive();
            break;
        case 'e':
            daemon.hangUp();
            break;
        case 'r':
            client.setWanted(false);
            daemon.drop();
            client.setWanted(true);
            daemon.accept();
            break;
        default:
            ++at; // so that a row without a step that sends comes to its end
        }
    }
    receive();
}

void listen(Daemon &daemon, const std::vector<Step> &steps, const QByteArray &words)
{
    GpsdClient client(daemon.address());
    QObject::connect(
        &client, &GpsdClient::positioned, &client, [](const QGeoPositionInfo &position) {
            require(position.isValid(), "a position has its place and time");
            const bool isAccurate = !position.hasAttribute(QGeoPositionInfo::HorizontalAccuracy) ||
                                    position.attribute(QGeoPositionInfo::HorizontalAccuracy) >= 0;
            require(isAccurate, "an accuracy is a distance");
        });
    client.setWanted(true);
    daemon.accept();
    play(daemon, client, steps, words);
    client.setWanted(false);
    daemon.drop();
}

} // namespace

int LLVMFuzzerInitialize(int * /*count*/, char *** /*arguments*/)
{
    FuzzSupport::startApplication();
    return 0;
}

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static Daemon daemon;
    const QByteArray input = FuzzSupport::bytesOf(data, size);
    const auto end = input.indexOf('\n');
    if (end < 1)
        return -1;
    const std::vector<Step> steps = stepsOf(input.left(end));
    if (steps.empty())
        return -1;
    const QByteArray words = input.mid(end + 1);
    GpsdFix::fromPoll(words);
    listen(daemon, steps, words);
    return 0;
}
