// SPDX-License-Identifier: MIT
#include "map/webmercator.h"

#include <algorithm>
#include <cmath>
#include <numbers>

using std::numbers::pi;

namespace {

constexpr double degreesOfHalfCircle = 180;
constexpr double degreesOfCircle = 360;

double tilesAcross(int zoom)
{
    return std::ldexp(1.0, zoom);
}

double clamped(double degrees, double limit)
{
    return std::isnan(degrees) ? 0 : std::clamp(degrees, -limit, limit);
}

} // namespace

double WebMercator::clampedLatitude(double latitude)
{
    return clamped(latitude, latitudeLimit);
}

double WebMercator::clampedLongitude(double longitude)
{
    return clamped(longitude, longitudeLimit);
}

double WebMercator::wrappedLongitude(double longitude)
{
    return std::remainder(longitude, degreesOfCircle);
}

QPointF WebMercator::tileForCoordinate(double latitude, double longitude, int zoom)
{
    const double phi = clampedLatitude(latitude) * pi / degreesOfHalfCircle;
    const double tx =
        (clampedLongitude(longitude) + degreesOfHalfCircle) / degreesOfCircle * tilesAcross(zoom);
    // asinh(tan(phi)) equals ln(tan(phi) + 1 / cos(phi)), but loses no digits in the south.
    const double ty = (1 - std::asinh(std::tan(phi)) / pi) / 2 * tilesAcross(zoom);
    return {tx, ty};
}

double WebMercator::longitudeFromTile(double tx, int zoom)
{
    return tx / tilesAcross(zoom) * degreesOfCircle - degreesOfHalfCircle;
}

double WebMercator::latitudeFromTile(double ty, int zoom)
{
    const double n = pi - 2 * pi * ty / tilesAcross(zoom);
    return clampedLatitude(std::atan(std::sinh(n)) * degreesOfHalfCircle / pi);
}

QPointF WebMercator::pixelOffset(double latitude, double longitude, double centerLatitude,
                                 double centerLongitude, int zoom)
{
    return (tileForCoordinate(latitude, longitude, zoom) -
            tileForCoordinate(centerLatitude, centerLongitude, zoom)) *
           tileExtent;
}

bool WebMercator::isInGrid(const QPoint &tile, int zoom)
{
    const int across = 1 << zoom;
    return tile.x() >= 0 && tile.x() < across && tile.y() >= 0 && tile.y() < across;
}
