// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QPoint>
#include <QString>
#include <QUrl>

/// Where tiles come from, and as who the program asks for them.
namespace TileServer {

/// The base URL that `setting` names, or the public OpenStreetMap server for an empty one. What is
/// no http or https URL of a host is refused with a line on standard error.
QUrl baseUrl(const QString &setting);

/// The URL of a tile of a standard slippy-map server.
QUrl tileUrl(const QUrl &base, int zoom, const QPoint &tile);

/// Names program, version and a contact, as the servers' usage policy wants it.
QByteArray userAgent();

/// What has to be said wherever the map shows.
QString attribution();

} // namespace TileServer
