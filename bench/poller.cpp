// SPDX-License-Identifier: MIT
// The minimum for following a gpsd: a program without a window that polls it every 3 s and reads
// the answers. The argument is the local port of gpsd.
#include <QByteArray>
#include <QCoreApplication>
#include <QTcpSocket>
#include <QTimer>

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QTcpSocket socket;
    QObject::connect(&socket, &QTcpSocket::readyRead, &socket, [&socket] { socket.readAll(); });
    QObject::connect(&socket, &QTcpSocket::connected, &socket,
                     [&socket] { socket.write("?WATCH={\"enable\":true};\n"); });
    QTimer pace;
    QObject::connect(&pace, &QTimer::timeout, &socket, [&socket] { socket.write("?POLL;\n"); });
    pace.start(std::chrono::seconds(3));
    socket.connectToHost(QStringLiteral("127.0.0.1"),
                         QByteArray(argc > 1 ? argv[1] : "2947").toUShort());
    return QCoreApplication::exec();
}
