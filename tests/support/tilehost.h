// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include <QByteArray>
#include <QColor>
#include <QHash>
#include <QPoint>
#include <QSet>
#include <QStringList>
#include <QTcpServer>

#include "tests/support/stoppable.h"

class QTcpSocket;

/// A tile server on loopback that counts requests. By default it answers with single-coloured tiles
/// that are fresh for an hour; a test can set another answer.
class TileHost : public QTcpServer
{
public:
    explicit TileHost(const Caller &by = Caller::here());

    /// Returns the address in the format of TROLLEO_TILE_SERVER.
    QByteArray address() const;

    /// Returns a single-coloured picture in `format`, with the given extent.
    static QByteArray picture(const QColor &color, const char *format = "png", int extent = 256);
    /// Returns a response with the required headers.
    static QByteArray response(const QByteArray &body, const QByteArray &type = "image/png",
                               const QByteArray &headers = "Cache-Control: max-age=3600\r\n",
                               const QByteArray &status = "200 OK");
    static QColor colorOf(const QString &path);

    /// Sends a response, or its last part. Only requests may follow on that connection.
    void finish(QTcpSocket *socket, const QByteArray &bytes);
    /// Answers with the tile of that path.
    void sendTile(QTcpSocket *socket, const QString &path);

    /// Handles requests; sendTile() by default. It can be changed at any time.
    std::function<void(QTcpSocket *socket, const QString &path)> answer;

    /// In the order of the requests.
    QStringList paths;
    QList<QHash<QByteArray, QByteArray>> headers;
    /// The highest number of requests that waited for an answer at the same time.
    int mostWaiting = 0;

private:
    void accept();
    void hear(QTcpSocket *socket);

    QHash<QTcpSocket *, QByteArray> heard;
    QSet<QTcpSocket *> waiting;
};
