// SPDX-License-Identifier: MIT
#pragma once

#include <QGeoCoordinate>
#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimeZone>

#include "network/gpsdclient.h"
#include "tests/support/stoppable.h"

/// Simulates gpsd in cases where the real one cannot be made to fail, or to report a position at a
/// given moment. tell() sets its answer to ?POLL; say() sends anything else.
class MadeUpGpsd : public QTcpServer
{
public:
    static inline const QByteArray greeting =
        R"({"class":"VERSION","release":"3.22","rev":"3.22","proto_major":3,"proto_minor":14})"
        "\r\n";

    explicit MadeUpGpsd(quint16 port = 0, const Caller &by = Caller::here())
    {
        if (!listen(QHostAddress::LocalHost, port))
            stopTest("cannot listen: " + errorString(), by);
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

    /// Returns one receiver as reported by gpsd 3.22; `more` is appended to the object.
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
    /// Sets the answer: one receiver at that place, at that second of its clock.
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
