// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <optional>

#include <QByteArray>
#include <QGeoPositionInfo>
#include <QHash>
#include <QList>
#include <QObject>
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

/// What one receiver tells in gpsd's answer to ?POLL (a TPV object, see gpsd_json(5)).
struct GpsdFix
{
    QString device;
    /// Differs from that of the fix before, unless the receiver has told nothing new: its time, or
    /// all it tells where it knows no time.
    QString stamp;
    /// Valid; with a horizontal accuracy in metres where gpsd knows one ("eph").
    QGeoPositionInfo position;

    /// The fixes in a line of gpsd; nothing when the line is no answer to ?POLL. Receivers without
    /// a fix, and fixes that are no place on earth, are left out.
    static std::optional<QList<GpsdFix>> fromPoll(const QByteArray &line);
};

/// Asks a gpsd where its receivers are, every 3 s while that is wanted. It survives that gpsd goes
/// away or stops answering: it connects again, after pauses that grow up to 25 s.
class GpsdClient : public QObject
{
    Q_OBJECT

public:
    explicit GpsdClient(const GpsdAddress &gpsd, QObject *parent = nullptr);

    /// How long to pause after an attempt that came `pause` after the one before.
    static std::chrono::seconds pauseAfter(std::chrono::seconds pause);

    /// Connects, or disconnects. Nothing happens, and nothing wakes up, while nothing is wanted.
    void setWanted(bool wanted);

signals:
    /// A receiver has told a new position; of several receivers, the one that is most accurate.
    /// What was known before the connection was made is not told.
    void positioned(const QGeoPositionInfo &position);
    /// An attempt to connect has failed, or a connection has ended. The next attempt follows.
    void connectionLost();

private:
    void connectToGpsd();
    void socketClosed();
    void giveUp();
    void receive();
    void takeLine(const QByteArray &line);
    void takeFixes(const QList<GpsdFix> &fixes);
    void poll();

    GpsdAddress address;
    bool isWanted = false;
    QTcpSocket socket;
    QTimer retry;
    std::chrono::seconds retryPause;
    QTimer nextPoll;
    /// Runs out when gpsd has sent nothing for too long.
    QTimer silence;
    bool hasGreeted = false;
    QByteArray incomplete;
    /// The part of a line that is too long is not kept, and neither is its end.
    bool skipsLine = false;
    /// By device; no value before the first answer.
    std::optional<QHash<QString, QString>> lastStamps;
};
