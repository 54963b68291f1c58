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

/// A tile server on loopback that counts what it is asked, and answers as a test likes: with tiles
/// of one colour each, that are fresh for an hour, unless told otherwise.
class TileHost : public QTcpServer
{
public:
    explicit TileHost(const Caller &by = Caller::here());

    /// As TROLLEO_TILE_SERVER takes it.
    QByteArray address() const;

    /// The picture of one colour in `format`, with a given extent.
    static QByteArray picture(const QColor &color, const char *format = "png", int extent = 256);
    /// An answer with the headers that it takes.
    static QByteArray response(const QByteArray &body, const QByteArray &type = "image/png",
                               const QByteArray &headers = "Cache-Control: max-age=3600\r\n",
                               const QByteArray &status = "200 OK");
    static QColor colorOf(const QString &path);

    /// Sends an answer, or its last part. Nothing may follow on that connection but requests.
    void finish(QTcpSocket *socket, const QByteArray &bytes);
    /// Answers with the tile of that path.
    void sendTile(QTcpSocket *socket, const QString &path);

    /// What answers; sendTile() at first. May be changed at any time.
    std::function<void(QTcpSocket *socket, const QString &path)> answer;

    /// In the order in which they came.
    QStringList paths;
    QList<QHash<QByteArray, QByteArray>> headers;
    /// How many requests were waiting for their answer at most.
    int mostWaiting = 0;

private:
    void accept();
    void hear(QTcpSocket *socket);

    QHash<QTcpSocket *, QByteArray> heard;
    QSet<QTcpSocket *> waiting;
};
