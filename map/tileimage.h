// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QImage>

/// Reads what a tile server sent, which may be anything.
namespace TileImage {

/// Bytes a tile may have.
inline constexpr qint64 largestBody = 2LL * 1024 * 1024;
/// Pixels a tile may be wide and high.
inline constexpr int largestExtent = 1024;

/// The picture in `body`, at the size of a tile. Null when it is no complete PNG, JPEG, GIF or
/// WebP picture within the limits above; nothing larger is ever unpacked.
QImage read(QByteArray body);

} // namespace TileImage
