// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

#include <QByteArray>
#include <QIODevice>
#include <QString>
#include <QTcpSocket>
#include <QTimer>

/// Where a gpsd listens.
struct GpsdAddress
{
    QString host;
    quint16 port = 0;

    /// The one that TROLLEO_GPSD names as host:port, an IPv6 address in brackets; else gpsd's
    /// default. A value that is neither is refused with a line on standard error.
    static GpsdAddress fromEnvironment();
};

/// The NMEA sentences of a gpsd, as a device that can only be read. It survives that gpsd goes away
/// or stops answering: it connects again, after pauses that grow up to 25 s, so that sentences
/// come within 30 s of gpsd's return. Between connections it just has nothing to read.
class GpsdStream : public QIODevice
{
    Q_OBJECT

public:
    explicit GpsdStream(const GpsdAddress &gpsd, QObject *parent = nullptr);

    /// How long to pause after an attempt that came `pause` after the one before.
    static std::chrono::seconds pauseAfter(std::chrono::seconds pause);

    /// Whether a gpsd greets within `limit`, host name look-up included. Blocks no longer than
    /// that.
    static bool answers(const GpsdAddress &gpsd, std::chrono::milliseconds limit);

    /// Connects, or disconnects and forgets what was not read. Nothing happens, and nothing wakes
    /// up, while the sentences are not wanted.
    void setWanted(bool wanted);

    bool isSequential() const override;
    qint64 bytesAvailable() const override;
    bool canReadLine() const override;

signals:
    /// gpsd has greeted; its sentences follow, and none from before will.
    void connected();
    /// An attempt to connect has failed, or a connection has ended. The next attempt follows.
    void connectionLost();

protected:
    qint64 readData(char *data, qint64 maxSize) override;
    qint64 writeData(const char *data, qint64 size) override;

private:
    void connectToGpsd();
    void socketClosed();
    void giveUp();
    void receive();
    void takeLine(const QByteArray &line);
    void waitedInVain();

    GpsdAddress address;
    bool isWanted = false;
    QTcpSocket socket;
    QTimer retry;
    std::chrono::seconds retryPause;
    /// Runs out when gpsd has sent nothing for too long.
    QTimer silence;
    bool askedForASign = false;
    bool hasGreeted = false;
    QByteArray incomplete;
    QByteArray sentences;
};
