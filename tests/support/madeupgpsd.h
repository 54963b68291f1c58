// SPDX-License-Identifier: MIT
#pragma once

#include <QGeoCoordinate>
#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimeZone>

#include "platform/gpsdclient.h"
#include "tests/support/stoppable.h"

/// Stands in for gpsd where the real one cannot be made to misbehave, or to tell a position at a
/// given moment. What it answers to ?POLL is set by tell(); it says more by say().
class MadeUpGpsd : public QTcpServer
{
public:
    static inline const QByteArray greeting =
        R"({"class":"VERSION","release":"3.22","rev":"3.22","proto_major":3,"proto_minor":14})"
        "\r\n";

    explicit MadeUpGpsd(quint16 port = 0, const Caller &by = Caller::here())
    {
        if (!listen(QHostAddress::LocalHost, port))
            stopTest("cannot listen", by);
        connect(this, &QTcpServer::newConnection, this, [this] {
            client = nextPendingConnection();
            ++connections;
            if (greets)
                client->write(greeting);
            connect(client, &QTcpSocket::readyRead, this, [this, from = client] {
                const QByteArray words = from->readAll();
                heard += words;
                if (answers)
                    from->write(answer.repeated(words.count("?POLL;")));
            });
        });
    }

    GpsdAddress address() const
    {
        return {.host = QStringLiteral("127.0.0.1"), .port = serverPort()};
    }
    QByteArray environment() const
    {
        return "127.0.0.1:" + QByteArray::number(serverPort());
    }
    bool isConnected() const
    {
        return client && client->state() == QAbstractSocket::ConnectedState;
    }
    int polls() const
    {
        return int(heard.count("?POLL;"));
    }
    void say(const QByteArray &text)
    {
        client->write(text);
        client->flush();
    }

    /// One receiver as gpsd 3.22 tells it; `more` is what follows in the object.
    static QByteArray receiver(const QByteArray &device, const QByteArray &time,
                               const QGeoCoordinate &place, const QByteArray &more = {})
    {
        QByteArray object = R"({"class":"TPV","device":")" + device + R"(","mode":)" +
                            (qIsNaN(place.altitude()) ? "2" : "3");
        if (!time.isEmpty())
            object += R"(,"time":")" + time + '"';
        object += R"(,"lat":)" + QByteArray::number(place.latitude(), 'f', 9) + R"(,"lon":)" +
                  QByteArray::number(place.longitude(), 'f', 9);
        if (!qIsNaN(place.altitude()))
            object += R"(,"altHAE":51.5,"altMSL":)" + QByteArray::number(place.altitude(), 'f', 4);
        return object + (more.isEmpty() ? QByteArray() : ',' + more) + '}';
    }
    static QByteArray poll(const QByteArrayList &receivers)
    {
        return R"({"class":"POLL","time":"2026-11-22T01:31:19.101Z","active":1,"tpv":[)" +
               receivers.join(',') + R"(],"gst":[],"sky":[]})" + "\r\n";
    }
    static QByteArray time(int second)
    {
        return QByteArray::fromStdString(
            QDateTime::fromSecsSinceEpoch(1795341600 + second, QTimeZone::utc())
                .toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss.zzzZ"))
                .toStdString());
    }
    /// From now on this is what it answers: one receiver there, at that second of its clock.
    void tell(int second, double latitude, double longitude = 20, const QByteArray &more = {})
    {
        answer = poll({receiver("/dev/ttyS0", time(second),
                                QGeoCoordinate(latitude, longitude, 12.5), more)});
    }

    QPointer<QTcpSocket> client;
    QByteArray heard;
    QByteArray answer = poll({});
    int connections = 0;
    bool greets = true;
    bool answers = true;
};
