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

#include "platform/gpsdaddress.h"

/// The fix of one receiver in gpsd's answer to ?POLL (a TPV object, see gpsd_json(5)).
struct GpsdFix
{
    QString device;
    /// Identifies the fix: the receiver's time, or the whole report if it has no time. It equals
    /// that of the previous fix if the receiver has reported nothing new.
    QString stamp;
    /// A valid position, with the horizontal accuracy in metres if gpsd knows it ("eph").
    QGeoPositionInfo position;

    /// Returns the fixes in a line from gpsd, or nothing if the line is not an answer to ?POLL.
    /// Receivers without a fix, and fixes with invalid coordinates, are left out.
    static std::optional<QList<GpsdFix>> fromPoll(const QByteArray &line);
};

/// Polls a gpsd for positions every 3 s while they are wanted. When gpsd exits or stops answering,
/// the client reconnects after pauses that grow up to 25 s.
class GpsdClient : public QObject
{
    Q_OBJECT

public:
    explicit GpsdClient(const GpsdAddress &gpsd, QObject *parent = nullptr);

    /// Returns the pause after an attempt that followed `pause` after the previous one.
    static std::chrono::seconds pauseAfter(std::chrono::seconds pause);

    /// Connects or disconnects. While positions are not wanted, nothing is connected and no timer
    /// runs.
    void setWanted(bool wanted);

signals:
    /// A receiver has reported a new position. With several receivers it is the most accurate one.
    /// Positions from before the connection are not reported.
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
    /// Fires when gpsd has sent no greeting or no answer for too long.
    QTimer silence;
    bool hasGreeted = false;
    QByteArray incomplete;
    /// The rest of a line that is too long is skipped.
    bool skipsLine = false;
    /// By device; no value before the first answer.
    std::optional<QHash<QString, QString>> lastStamps;
};
