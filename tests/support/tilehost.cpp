// SPDX-License-Identifier: MIT
#include "tests/support/tilehost.h"

#include <algorithm>

#include <QBuffer>
#include <QImage>
#include <QTcpSocket>

TileHost::TileHost(const Caller &by)
{
    if (!listen(QHostAddress::LocalHost))
        stopTest("cannot listen", by);
    answer = [this](QTcpSocket *socket, const QString &path) {
        sendTile(socket, path);
    };
    connect(this, &QTcpServer::newConnection, this, &TileHost::accept);
}

QByteArray TileHost::address() const
{
    return "http://127.0.0.1:" + QByteArray::number(serverPort());
}

QByteArray TileHost::picture(const QColor &color, const char *format, int extent)
{
    QImage image(extent, extent, QImage::Format_RGB32);
    image.fill(color);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes;
}

QByteArray TileHost::response(const QByteArray &body, const QByteArray &type,
                              const QByteArray &headers, const QByteArray &status)
{
    return "HTTP/1.1 " + status + "\r\nContent-Type: " + type +
           "\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n" + headers + "\r\n" +
           body;
}

QColor TileHost::colorOf(const QString &path)
{
    const auto hash = qHash(path, 1);
    return QColor(QColor::fromHsv(int(hash % 360), 200, 200).rgb()); // 8 bits, as in a file
}

void TileHost::accept()
{
    while (QTcpSocket *socket = nextPendingConnection()) {
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] { hear(socket); });
        connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
            waiting.remove(socket);
            heard.remove(socket);
            socket->deleteLater();
        });
    }
}

void TileHost::hear(QTcpSocket *socket)
{
    QByteArray &request = heard[socket];
    request += socket->readAll();
    const auto end = request.indexOf("\r\n\r\n");
    if (end < 0)
        return;
    const QList<QByteArray> lines = request.left(end).split('\n');
    request.remove(0, end + 4);
    QHash<QByteArray, QByteArray> fields;
    for (const QByteArray &line : lines.mid(1)) {
        const auto colon = line.indexOf(':');
        fields[line.left(colon).toLower()] = line.mid(colon + 1).trimmed();
    }
    const QString path = lines.first().split(' ').value(1);
    paths << path;
    headers << fields;
    waiting << socket;
    mostWaiting = std::max(mostWaiting, int(waiting.size()));
    answer(socket, path);
}

void TileHost::finish(QTcpSocket *socket, const QByteArray &bytes)
{
    // Counted before the bytes are sent, since the next request may follow at once.
    waiting.remove(socket);
    socket->write(bytes);
}

void TileHost::sendTile(QTcpSocket *socket, const QString &path)
{
    finish(socket, response(picture(colorOf(path))));
}
