// SPDX-License-Identifier: MIT
#include "network/gpsdclient.h"

#include <algorithm>
#include <limits>

#include <QDateTime>
#include <QGeoCoordinate>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr std::chrono::seconds firstRetryPause = 1s;
constexpr std::chrono::seconds longestRetryPause = 25s;
/// The first answer contains only what was known before. A receiver reports every second.
constexpr auto firstPollPause = 1s;
constexpr auto pollPause = 3s;
/// A socket-activated gpsd greets after five seconds.
constexpr auto longestWaitForGreeting = 15s;
/// The time of three answers. gpsd answers no client while it opens a receiver.
constexpr auto longestSilence = 10s;
/// In bytes. An answer has some hundred for each receiver and each visible satellite.
constexpr qsizetype longestLine = 65536;
/// A limit far above any real number of receivers.
constexpr qsizetype mostReceivers = 64;
constexpr int mode2D = 2;
constexpr int mode3D = 3;

constexpr QByteArrayView greeting = R"({"class":"VERSION")";
/// Makes gpsd read its receivers, and report nothing unless polled.
constexpr auto watch = R"(?WATCH={"enable":true};)"
                       "\n";
constexpr auto pollRequest = "?POLL;\n";

std::optional<GpsdFix> fixFrom(const QJsonObject &tpv)
{
    const QJsonValue latitude = tpv["lat"_L1];
    const QJsonValue longitude = tpv["lon"_L1];
    const int mode = tpv["mode"_L1].toInt();
    if ((mode != mode2D && mode != mode3D) || !latitude.isDouble() || !longitude.isDouble())
        return {};
    QGeoCoordinate coordinate(latitude.toDouble(), longitude.toDouble());
    // Older releases do not have "altMSL".
    const QJsonValue altitude = tpv[tpv.contains("altMSL"_L1) ? "altMSL"_L1 : "alt"_L1];
    if (mode == mode3D && altitude.isDouble())
        coordinate.setAltitude(altitude.toDouble());
    if (!coordinate.isValid())
        return {};
    const QString time = tpv["time"_L1].toString();
    QDateTime timestamp = QDateTime::fromString(time, Qt::ISODateWithMs);
    // QGeoPositionInfo is invalid without a time, and receivers without a date report none.
    if (!timestamp.isValid())
        timestamp = QDateTime::currentDateTimeUtc();
    GpsdFix fix{.device = tpv["device"_L1].toString(),
                .stamp = time.isEmpty()
                             ? QString::fromUtf8(QJsonDocument(tpv).toJson(QJsonDocument::Compact))
                             : time,
                .position = QGeoPositionInfo(coordinate, timestamp)};
    const QJsonValue accuracy = tpv["eph"_L1];
    if (accuracy.isDouble() && accuracy.toDouble() >= 0)
        fix.position.setAttribute(QGeoPositionInfo::HorizontalAccuracy, accuracy.toDouble());
    return fix;
}

/// Returns the accuracy in metres; if it is unknown, more than any known one.
qreal accuracyOf(const GpsdFix &fix)
{
    return fix.position.hasAttribute(QGeoPositionInfo::HorizontalAccuracy)
               ? fix.position.attribute(QGeoPositionInfo::HorizontalAccuracy)
               : std::numeric_limits<qreal>::max();
}

} // namespace

std::optional<QList<GpsdFix>> GpsdFix::fromPoll(const QByteArray &line)
{
    const QJsonObject answer = QJsonDocument::fromJson(line).object();
    if (answer["class"_L1].toString() != "POLL"_L1)
        return {};
    QList<GpsdFix> fixes;
    const QJsonArray receivers = answer["tpv"_L1].toArray();
    for (const QJsonValue receiver : receivers) {
        if (fixes.size() == mostReceivers)
            break;
        if (const std::optional<GpsdFix> fix = fixFrom(receiver.toObject()))
            fixes << *fix;
    }
    return fixes;
}

std::chrono::seconds GpsdClient::pauseAfter(std::chrono::seconds pause)
{
    return std::min(2 * pause, longestRetryPause);
}

GpsdClient::GpsdClient(const GpsdAddress &gpsd, QObject *parent)
    : QObject(parent)
    , address(gpsd)
    , retryPause(firstRetryPause)
{
    for (QTimer *timer : {&retry, &nextPoll, &silence})
        timer->setSingleShot(true);
    connect(&retry, &QTimer::timeout, this, &GpsdClient::connectToGpsd);
    connect(&nextPoll, &QTimer::timeout, this, &GpsdClient::poll);
    connect(&silence, &QTimer::timeout, this, &GpsdClient::giveUp);
    connect(&socket, &QTcpSocket::readyRead, this, &GpsdClient::receive);
    // Queued, so that the socket is never aborted within one of its own slots.
    connect(&socket, &QTcpSocket::disconnected, this, &GpsdClient::socketClosed,
            Qt::QueuedConnection);
    connect(&socket, &QTcpSocket::errorOccurred, this, &GpsdClient::socketClosed,
            Qt::QueuedConnection);
}

void GpsdClient::setWanted(bool wanted)
{
    if (wanted == isWanted)
        return;
    isWanted = wanted;
    if (wanted) {
        retryPause = firstRetryPause;
        connectToGpsd();
        return;
    }
    for (QTimer *timer : {&retry, &nextPoll, &silence})
        timer->stop();
    socket.abort();
}

void GpsdClient::connectToGpsd()
{
    incomplete.clear();
    skipsLine = false;
    hasGreeted = false;
    lastStamps.reset();
    silence.start(longestWaitForGreeting);
    socket.connectToHost(address.host, address.port);
}

void GpsdClient::socketClosed()
{
    // An error and the end of a connection are both signalled, and late. The next attempt may
    // already be scheduled or running.
    if (isWanted && !retry.isActive() && socket.state() == QAbstractSocket::UnconnectedState)
        giveUp();
}

/// Ends the connection or the attempt, and tries again after a pause.
void GpsdClient::giveUp()
{
    nextPoll.stop();
    silence.stop();
    socket.abort();
    retry.start(retryPause);
    retryPause = pauseAfter(retryPause);
    emit connectionLost();
}

void GpsdClient::receive()
{
    incomplete += socket.readAll();
    qsizetype begin = 0;
    for (qsizetype end = incomplete.indexOf('\n'); end >= 0;
         end = incomplete.indexOf('\n', begin)) {
        if (!skipsLine && end - begin <= longestLine)
            takeLine(incomplete.mid(begin, end - begin));
        // The receiver of a position may have stopped the client.
        if (!isWanted || retry.isActive())
            return;
        skipsLine = false;
        begin = end + 1;
    }
    incomplete.remove(0, begin);
    if (incomplete.size() > longestLine) {
        incomplete.clear();
        skipsLine = true;
    }
}

void GpsdClient::takeLine(const QByteArray &line)
{
    if (!hasGreeted) {
        if (!line.startsWith(greeting))
            return;
        hasGreeted = true;
        socket.write(watch);
        socket.write(pollRequest);
        nextPoll.start(firstPollPause);
        silence.start(longestSilence);
    } else if (const std::optional<QList<GpsdFix>> fixes = GpsdFix::fromPoll(line)) {
        // Only an answer to a poll restarts the timer. Otherwise the client would never leave a
        // server that sends anything else.
        silence.start(longestSilence);
        retryPause = firstRetryPause;
        takeFixes(*fixes);
    }
}

void GpsdClient::takeFixes(const QList<GpsdFix> &fixes)
{
    // A receiver that loses its fix may report the previous one again, so its stamp is kept.
    QHash<QString, QString> stamps = lastStamps.value_or(QHash<QString, QString>());
    if (stamps.size() > mostReceivers)
        stamps.clear();
    const GpsdFix *best = nullptr;
    for (const GpsdFix &fix : fixes) {
        stamps[fix.device] = fix.stamp;
        const bool isNew = lastStamps && lastStamps->value(fix.device) != fix.stamp;
        if (isNew && (!best || accuracyOf(fix) < accuracyOf(*best)))
            best = &fix;
    }
    lastStamps = stamps;
    if (best)
        emit positioned(best->position);
}

void GpsdClient::poll()
{
    socket.write(pollRequest);
    nextPoll.start(pollPause);
}
