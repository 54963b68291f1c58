// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include <QByteArray>
#include <QHostAddress>
#include <QPoint>
#include <QString>
#include <QUrl>

/// The address of the tile server, and how the program identifies itself there.
namespace TileServer {

/// Returns the base URL in `setting`, or the public OpenStreetMap server if it is empty. A value
/// that is not an http or https URL with a host is refused with a line on standard error.
QUrl baseUrl(const QString &setting);

/// Returns the URL of a tile on a standard slippy-map server.
QUrl tileUrl(const QUrl &base, int zoom, const QPoint &tile);

/// Calls `answer` with whether the server at `source` may redirect a request to `target`, as soon
/// as the address of another host is known. It may not redirect to an unsafe protocol, nor, except
/// on its own host, to this machine or its network: a stranger's server must not make the program
/// send requests there. `answer` is not called if `context` is destroyed meanwhile.
void checkRedirection(const QUrl &source, const QUrl &target, QObject *context,
                      const std::function<void(bool isAllowed)> &answer);

/// Returns whether `address` is on the internet, and not on this machine or a network to which it
/// is connected.
bool isPublic(const QHostAddress &address);

/// Returns the program name, the version and a contact, as the usage policy of the servers
/// requires.
QByteArray userAgent();

/// Returns the text that must be visible wherever the map is shown.
QString attribution();

} // namespace TileServer
