// SPDX-License-Identifier: MIT
#include "map/tileimage.h"

#include <QBuffer>
#include <QImageReader>

#include "map/webmercator.h"

using namespace Qt::StringLiterals;

namespace {

/// Whether the end of a picture is there. The toolkit's JPEG and PNG readers fill up what is
/// missing.
bool isComplete(const QByteArray &format, const QByteArray &body)
{
    if (format == "png")
        return body.endsWith("IEND\xae\x42\x60\x82");
    if (format == "jpeg")
        return body.endsWith("\xff\xd9");
    return true;
}

} // namespace

QImage TileImage::read(QByteArray body)
{
    if (body.size() > largestBody)
        return {};
    QBuffer buffer(&body);
    buffer.open(QIODevice::ReadOnly);
    // The format is guessed from the contents, but not every format is a tile's: a drawing, say,
    // could name other files or take any time.
    const QByteArray format = QImageReader::imageFormat(&buffer);
    const QList<QByteArray> formats{"png", "jpeg", "gif", "webp"};
    if (!formats.contains(format) || !isComplete(format, body))
        return {};
    QImageReader reader(&buffer, format);
    const QSize size = reader.size();
    if (size.isEmpty() || size.width() > largestExtent || size.height() > largestExtent)
        return {};
    const QImage image = reader.read();
    const QSize tileSize(WebMercator::tileExtent, WebMercator::tileExtent);
    if (image.isNull() || image.size() == tileSize)
        return image;
    return image.scaled(tileSize, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}
