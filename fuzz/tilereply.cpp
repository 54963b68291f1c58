// SPDX-License-Identifier: MIT
// Complete replies of a tile server. An input is one or more replies, separated by the line "----".
// A reply has lines that describe it, an empty line, and its body:
//
//     asked http://127.0.0.1/16/34722/19057.png     the requested address
//     from http://127.0.0.1/elsewhere.png           the final address, after redirections
//     tile 34722 19057                              the attributes of the request, each as a
//     number 7                                      number, or else as a text; a reply with
//                                                   another number than 0 was given up
//     error 203                                     a QNetworkReply error
//     sums                                          corrects the checksums of PNG chunks
//     at 59.9 10.7                                  moves the map, and the two markers with it
//     online                                        tiles are wanted
//     Cache-Control: max-age=3600                   every other line is a header
#include <algorithm>
#include <array>

#include <QCoreApplication>
#include <QEvent>
#include <QImage>
#include <QNetworkAccessManager>
#include <QNetworkDiskCache>
#include <QNetworkReply>
#include <QPainter>
#include <QtEndian>

#include "fuzz/support.h"
#include "map/mapscore.h"
#include "map/webmercator.h"
#include "network/tileimage.h"
#include "tests/support/testhome.h"

using FuzzSupport::require;

namespace {

constexpr QSize viewSize(400, 300);
constexpr auto serialAttribute = static_cast<QNetworkRequest::Attribute>(QNetworkRequest::User + 1);

quint32 checksum(const QByteArray &bytes)
{
    constexpr quint32 polynomial = 0xedb88320;
    quint32 rest = ~quint32{0};
    for (const char byte : bytes) {
        rest ^= static_cast<quint8>(byte);
        for (int bit = 0; bit < 8; ++bit)
            rest = (rest & 1) != 0 ? rest >> 1 ^ polynomial : rest >> 1;
    }
    return ~rest;
}

/// Returns the PNG picture `body` with correct checksums. Otherwise a changed byte would be
/// rejected by the checksum test.
QByteArray withChecksums(QByteArray body)
{
    constexpr qsizetype signature = 8;
    constexpr qsizetype field = 4;
    for (qsizetype at = signature; at + 3 * field <= body.size();) {
        const auto length = qsizetype{qFromBigEndian<quint32>(body.constData() + at)};
        if (length > body.size() - at - 3 * field)
            break;
        const qsizetype sumAt = at + 2 * field + length;
        qToBigEndian(checksum(body.mid(at + field, field + length)), body.data() + sumAt);
        at = sumAt + field;
    }
    return body;
}

/// A finished reply, described by the lines before its body.
class ToldReply : public QNetworkReply
{
public:
    explicit ToldReply(const QByteArray &told)
    {
        const auto end = told.indexOf("\n\n");
        if (end >= 0)
            bytes = told.mid(end + 2);
        for (const QByteArray &line : told.left(end).split('\n')) {
            const auto space = line.indexOf(' ');
            take(line.left(space), space < 0 ? QByteArray() : line.mid(space + 1), line);
        }
        asked.setUrl(askedAddress);
        setRequest(asked);
        setUrl(url().isEmpty() ? askedAddress : url());
        open(ReadOnly);
    }
    void abort() override {}
    qint64 bytesAvailable() const override
    {
        return bytes.size() + QNetworkReply::bytesAvailable();
    }
    const QByteArray &body() const
    {
        return bytes;
    }

    float latitude = 0;
    float longitude = 0;
    bool movesTheMap = false;
    bool isOnline = false;
    bool hasNumber = false;

protected:
    qint64 readData(char *data, qint64 size) override
    {
        const qint64 count = std::min<qint64>(size, bytes.size());
        std::copy_n(bytes.constData(), count, data);
        bytes.remove(0, count);
        return count;
    }

private:
    /// The program sets the attributes itself, so they can be wrong but must be possible for a
    /// tile.
    static int tileNumber(int number)
    {
        constexpr int farBeyondTheGrid = 1 << 20;
        return std::clamp(number, -farBeyondTheGrid, farBeyondTheGrid);
    }

    void take(const QByteArray &name, const QByteArray &value, const QByteArray &line)
    {
        const QList<QByteArray> words = value.split(' ');
        bool isNumber = false;
        const int number = words.first().toInt(&isNumber);
        if (name == "asked") {
            askedAddress = QUrl::fromEncoded(value);
        } else if (name == "from") {
            setUrl(QUrl::fromEncoded(value));
        } else if (name == "tile") {
            const QPoint tile(tileNumber(number), tileNumber(words.last().toInt()));
            asked.setAttribute(QNetworkRequest::User,
                               isNumber ? QVariant(tile) : QVariant(QString(value)));
        } else if (name == "number") {
            hasNumber = true;
            asked.setAttribute(serialAttribute,
                               isNumber ? QVariant(number) : QVariant(QString(value)));
        } else if (name == "error") {
            setError(NetworkError(std::clamp<int>(number, NoError, UnknownServerError)), {});
        } else if (name == "sums") {
            bytes = withChecksums(bytes);
        } else if (name == "at") {
            movesTheMap = true;
            latitude = words.first().toFloat();
            longitude = words.last().toFloat();
        } else if (name == "online") {
            isOnline = true;
        } else if (const auto colon = line.indexOf(':'); colon > 0) {
            setRawHeader(line.left(colon), line.mid(colon + 1).trimmed());
        }
    }

    QByteArray bytes;
    QUrl askedAddress{QStringLiteral("http://127.0.0.1/16/34722/19057.png")};
    QNetworkRequest asked;
};

void requireTile(const QImage &image)
{
    const QSize tile(WebMercator::tileExtent, WebMercator::tileExtent);
    require(image.isNull() || image.size() == tile, "a picture has the size of a tile");
}

void render(MapsCore &core)
{
    QImage image(viewSize, QImage::Format_RGB32);
    QPainter painter(&image);
    core.render(&painter, image.rect());
}

} // namespace

int LLVMFuzzerInitialize(int * /*count*/, char *** /*arguments*/)
{
    FuzzSupport::startApplication();
    Q_INIT_RESOURCE(pictures);
    return 0;
}

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    // For the cache, in all runs.
    static const TestHome home;
    const QByteArray input = FuzzSupport::bytesOf(data, size);
    MapsCore core;
    core.setSize(viewSize);
    core.setFetching(false);
    core.invalidate();
    bool isUpdated = false;
    QObject::connect(&core, &MapsCore::updated, [&isUpdated] { isUpdated = true; });

    constexpr QByteArrayView separator = "\n----\n";
    for (qsizetype begin = 0; begin <= input.size();) {
        auto end = input.indexOf(separator, begin);
        end = end < 0 ? input.size() : end;
        auto *reply = new ToldReply(input.mid(begin, end - begin));
        begin = end + separator.size();
        if (reply->isOnline) {
            // The only tile of that zoom is never fetched, so there is no request.
            core.setZoom(0);
            core.setFetching(true);
        }
        if (reply->movesTheMap) {
            core.setCenter(reply->latitude, reply->longitude);
            core.setStorePin(reply->latitude, reply->longitude);
            core.setPositionMark(reply->longitude, reply->latitude);
        }
        requireTile(TileImage::read(reply->body()));
        isUpdated = false;
        core.handleNetworkData(reply);
        require(isUpdated || reply->hasNumber, "a reply for the tile on its way updates the map");
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    render(core);
    // The next input must not find the cache entries of this one.
    if (const auto *network = core.findChild<QNetworkAccessManager *>())
        network->cache()->clear();
    return 0;
}
