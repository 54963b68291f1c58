// SPDX-License-Identifier: MIT
#include "network/tileimage.h"

#include <QBuffer>
#include <QImageReader>
#include <QtEndian>

#include "map/webmercator.h"

namespace {

const QByteArray pngSignature = QByteArrayLiteral("\x89PNG\r\n\x1a\n");
const QByteArray jpegStartOfScan = QByteArrayLiteral("\xff\xda");
const QByteArray jpegEnd = QByteArrayLiteral("\xff\xd9");

/// Returns only the chunks that are needed to show the PNG picture `body`, or nothing if it is not
/// complete. Texts and profiles are removed, because Qt would decompress each of them, to
/// megabytes.
QByteArray essentialPng(const QByteArray &body)
{
    // Size of the length, the name and the checksum of a chunk.
    constexpr qsizetype frame = 12;
    constexpr qsizetype nameAt = 4;
    QByteArray result = pngSignature;
    for (qsizetype at = pngSignature.size(); at + frame <= body.size();) {
        const auto length = qsizetype{qFromBigEndian<quint32>(body.constData() + at)};
        if (length > body.size() - at - frame)
            return {};
        const QByteArray name = body.mid(at + nameAt, nameAt);
        const bool isCritical = name.front() >= 'A' && name.front() <= 'Z';
        if (isCritical || name == "tRNS")
            result += body.mid(at, frame + length);
        if (name == "IEND")
            return result;
        at += frame + length;
    }
    return {};
}

/// Returns the JPEG picture `body`. Returns nothing if it is not complete, which Qt would accept,
/// or has more scans than real pictures have: each scan takes as much time as a whole picture.
QByteArray harmlessJpeg(const QByteArray &body)
{
    constexpr qsizetype mostScans = 32;
    return body.endsWith(jpegEnd) && body.count(jpegStartOfScan) <= mostScans ? body : QByteArray();
}

} // namespace

QImage TileImage::read(QByteArray body)
{
    if (body.size() > largestBody)
        return {};
    QBuffer buffer(&body);
    buffer.open(QIODevice::ReadOnly);
    // The format is detected from the contents. Not every format that Qt reads is acceptable: an
    // SVG drawing, for example, could refer to other files or take any time.
    const QByteArray format = QImageReader::imageFormat(&buffer);
    buffer.close();
    if (format == "png")
        body = essentialPng(body);
    else if (format == "jpeg")
        body = harmlessJpeg(body);
    else if (format != "gif" && format != "webp")
        return {};
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, format);
    const QSize size = reader.size();
    if (size.isEmpty() || size.width() > largestExtent || size.height() > largestExtent)
        return {};
    QImage image = reader.read();
    const QSize tileSize(WebMercator::tileExtent, WebMercator::tileExtent);
    if (image.isNull() || image.size() == tileSize)
        return image;
    return image.scaled(tileSize, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}
