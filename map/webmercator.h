// SPDX-License-Identifier: MIT
#pragma once

#include <QPoint>
#include <QPointF>

/// Slippy-map tile arithmetic in the Web-Mercator projection (EPSG:3857). The formulas are from
/// "Slippy map tilenames" in the OpenStreetMap wiki. Angles are in degrees, x grows eastwards and y
/// southwards. At zoom z the world is 2^z tiles wide and high, with (0, 0) in the north-west.
namespace WebMercator {

/// Width and height of a tile in pixels.
inline constexpr int tileExtent = 256;

/// The northern and southern limit of the projection: atan(sinh(pi)).
inline constexpr double latitudeLimit = 85.05112877980659;
inline constexpr double longitudeLimit = 180;

/// Returns `latitude` limited to the projection; 0 if it is NaN.
double clampedLatitude(double latitude);
/// Returns `longitude` limited to -180 to 180; 0 if it is NaN.
double clampedLongitude(double longitude);
/// Returns `longitude` wrapped around the earth to -180 to 180.
double wrappedLongitude(double longitude);

/// Returns the position of a point in the tile grid. Coordinates are clamped first.
QPointF tileForCoordinate(double latitude, double longitude, int zoom);
/// Not clamped: a `tx` outside the grid gives a longitude outside -180 to 180.
double longitudeFromTile(double tx, int zoom);
/// A `ty` outside the grid gives the limit of the projection.
double latitudeFromTile(double ty, int zoom);

/// Returns how many pixels a point lies right of and below the centre.
QPointF pixelOffset(double latitude, double longitude, double centerLatitude,
                    double centerLongitude, int zoom);

/// Returns whether the world has a tile at `tile`.
bool isInGrid(const QPoint &tile, int zoom);

} // namespace WebMercator
