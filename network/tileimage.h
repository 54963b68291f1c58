// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QImage>

/// Reads the reply of a tile server, which may be any data.
namespace TileImage {

/// Maximum size of a tile in bytes.
inline constexpr qint64 largestBody = 2LL * 1024 * 1024;
/// Maximum width and height of a tile in pixels.
inline constexpr int largestExtent = 1024;

/// Returns the picture in `body`, scaled to the size of a tile. Returns a null image if `body` is
/// not a complete PNG, JPEG, GIF or WebP picture within the limits above. Larger pictures are never
/// decoded.
QImage read(QByteArray body);

} // namespace TileImage
