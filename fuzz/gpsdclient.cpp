// SPDX-License-Identifier: MIT
// Data from a gpsd, in pieces of any size. The first line of an input is a sequence of steps, which
// is repeated. Each step is a letter and a number:
//
//     c100    sends the next 100 bytes of the data
//     x100    sends the next 100 bytes fifty times
//     w0      lets the program receive
//     e0      ends the connection
//     r1      stops the client and starts it again
//
// The rest of the input is the data.
#include <algorithm>
#include <chrono>
#include <vector>

#include <sys/socket.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTcpServer>
#include <QTcpSocket>

#include "fuzz/support.h"
#include "network/gpsdclient.h"

using FuzzSupport::require;

namespace {

/// The number of bytes that one input may make gpsd send.
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

/// Runs the event loop until `condition` holds, normally for some microseconds.
template <typename Condition>
void waitFor(const Condition &condition, const char *what)
{
    const QDeadlineTimer deadline(std::chrono::seconds(10));
    while (!condition()) {
        require(!deadline.hasExpired(), what);
        QCoreApplication::processEvents();
    }
}

/// Simulates a gpsd on loopback.
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
    /// Accepts the pending connection.
    void accept()
    {
        waitFor([this] { return server.hasPendingConnections(); }, "a connection comes");
        client = server.nextPendingConnection();
        // Thousands of closed connections a minute, each kept for a minute, would use up all ports.
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
    /// Closes the connection and discards data that was not sent.
    void hangUp()
    {
        client->abort();
    }
    /// Closes the connection, whether or not the other side has closed it.
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
    // Data that was sent over loopback has already arrived.
    for (int round = 0; round < 2; ++round)
        QCoreApplication::processEvents();
}

/// Executes the steps with `daemon` and `client`.
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
            ++at; // ends an input without sending steps
        }
    }
    receive();
}

void listen(Daemon &daemon, const std::vector<Step> &steps, const QByteArray &words)
{
    GpsdClient client(daemon.address());
    QObject::connect(&client, &GpsdClient::positioned, &client, FuzzSupport::requireSoundPosition);
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
