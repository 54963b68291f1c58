// SPDX-License-Identifier: MIT
#pragma once

#include <QPoint>
#include <QPointF>

/// The arithmetic of slippy-map tiles in the Web-Mercator projection (EPSG:3857); formulas as in
/// "Slippy map tilenames" of the OpenStreetMap wiki. Angles are degrees, x grows eastwards and y
/// southwards. At zoom z the world is 2^z tiles wide and high, with (0, 0) in its north-west.
namespace WebMercator {

/// Pixels a tile is wide and high.
inline constexpr int tileExtent = 256;

/// Where the projection ends, north and south: atan(sinh(pi)).
inline constexpr double latitudeLimit = 85.05112877980659;
inline constexpr double longitudeLimit = 180;

/// `latitude` within the limits of the projection; what is not a number is the equator.
double clampedLatitude(double latitude);
/// `longitude` within -180 to 180; what is not a number is the prime meridian.
double clampedLongitude(double longitude);
/// `longitude` turned around the earth into -180 to 180.
double wrappedLongitude(double longitude);

/// Where a point lies in the grid of tiles. Coordinates are clamped first.
QPointF tileForCoordinate(double latitude, double longitude, int zoom);
/// Not clamped: beyond the grid it is beyond -180 to 180.
double longitudeFromTile(double tx, int zoom);
/// Beyond the grid it is the projection's limit.
double latitudeFromTile(double ty, int zoom);

/// How many pixels a point lies right of and below another.
QPointF pixelOffset(double latitude, double longitude, double centerLatitude,
                    double centerLongitude, int zoom);

/// Whether the world has a tile at `tile`.
bool isInGrid(const QPoint &tile, int zoom);

} // namespace WebMercator
