// SPDX-License-Identifier: MIT
#pragma once

#include <QPoint>
#include <QString>
#include <QUrl>

/// The addresses of the tile server, and whom its pictures are owed to.
namespace TileServer {

/// Returns the base URL in `setting`, or the public OpenStreetMap server if it is empty. A value
/// that is not an http or https URL with a host is refused with a warning.
QUrl baseUrl(const QString &setting);

/// Returns the URL of a tile on a standard slippy-map server.
QUrl tileUrl(const QUrl &base, int zoom, const QPoint &tile);

/// Returns the text that must be visible wherever the map is shown.
QString attribution();

} // namespace TileServer
