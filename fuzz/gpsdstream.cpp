// SPDX-License-Identifier: MIT
// What a gpsd sends, in pieces of any size, and read in pieces of any size. The first line of an
// input tells how; it is a row of steps that begins anew when it is through, each a letter and a
// number:
//
//     c100    sends the next 100 bytes of what follows the line
//     x100    sends the next 100 bytes fifty times over
//     w0      lets the program receive
//     l5      reads up to 5 lines
//     r80     reads 80 bytes
//     e0      ends the connection
//     p0      anywhere in the line: a position source reads, instead of the harness
//
// Everything else is what gpsd sends.
#include <algorithm>
#include <chrono>
#include <vector>

#include <sys/socket.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QGeoCoordinate>
#include <QTcpServer>
#include <QTcpSocket>

#include "fuzz/support.h"
#include "platform/gpsdsource.h"
#include "platform/gpsdstream.h"

using FuzzSupport::require;

namespace {

/// Bytes of sentences that a stream keeps for a reader who does not read.
constexpr qint64 mostUnread = 65536;
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

/// Reads a stream and looks at what it gives.
class Reader
{
public:
    explicit Reader(GpsdStream &gpsd)
        : stream(gpsd)
    {}

    void readLines(int count)
    {
        for (int line = 0; line < count && stream.canReadLine(); ++line) {
            const qint64 before = stream.bytesAvailable();
            const QByteArray text = stream.readLine();
            require(text.endsWith('\n'), "a line that can be read has its end");
            require(text.count('\n') == 1, "a line is one line");
            require(hasReadInPieces || text.startsWith('$'), "a line is a sentence");
            require(stream.bytesAvailable() == before - text.size(), "what is read is gone");
        }
        look();
    }
    void readBytes(int size)
    {
        hasReadInPieces = true;
        const qint64 before = stream.bytesAvailable();
        const QByteArray bytes = stream.read(size);
        require(bytes.size() == std::min<qint64>(size, before), "what is there can be read");
        require(stream.bytesAvailable() == before - bytes.size(), "what is read is gone");
        look();
    }
    void look() const
    {
        require(stream.bytesAvailable() <= mostUnread, "what nobody reads is bounded");
        require(!stream.canReadLine() || stream.bytesAvailable() > 0, "a line has bytes");
    }

private:
    GpsdStream &stream;
    /// The next line may be the rest of one.
    bool hasReadInPieces = false;
};

void receive()
{
    // What the daemon has sent over loopback is there already.
    for (int round = 0; round < 2; ++round)
        QCoreApplication::processEvents();
}

/// Lets `daemon` do what the steps tell; `read` takes those that are not the daemon's.
template <typename Read>
void play(Daemon &daemon, const std::vector<Step> &steps, const QByteArray &words, const Read &read)
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
        default:
            read(step);
        }
    }
    receive();
}

void playToStream(Daemon &daemon, const std::vector<Step> &steps, const QByteArray &words)
{
    GpsdStream stream(daemon.address());
    Reader reader(stream);
    stream.setWanted(true);
    daemon.accept();
    play(daemon, steps, words, [&reader](const Step &step) {
        if (step.kind == 'l')
            reader.readLines(step.number);
        else if (step.kind == 'r')
            reader.readBytes(step.number);
        else
            reader.look();
    });
    reader.look();
    stream.setWanted(false);
    require(stream.bytesAvailable() == 0 && !stream.canReadLine(),
            "nothing is kept when nothing is wanted");
    daemon.drop();
}

void playToSource(Daemon &daemon, const std::vector<Step> &steps, const QByteArray &words)
{
    GpsdSource source(daemon.address());
    QObject::connect(&source, &QGeoPositionInfoSource::positionUpdated, &source,
                     [&source](const QGeoPositionInfo &position) {
                         require(position.timestamp().isValid() || !position.isValid(),
                                 "a position has its time");
                         require(source.lastKnownPosition(false) == position,
                                 "the last position is known");
                     });
    source.startUpdates();
    daemon.accept();
    play(daemon, steps, words, [&source](const Step &step) {
        // As a person may do at any moment.
        if (step.kind == 'l')
            source.requestUpdate(step.number);
        else if (step.kind == 'r')
            source.setUpdateInterval(step.number);
    });
    source.stopUpdates();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
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
    if (std::ranges::any_of(steps, [](const Step &step) { return step.kind == 'p'; }))
        playToSource(daemon, steps, words);
    else
        playToStream(daemon, steps, words);
    return 0;
}
