// SPDX-License-Identifier: MIT
#include "map/mapscore.h"

#include <cmath>

#include <QImage>
#include <QPainter>
#include <QPixmapCache>

#include "map/tilefetcher.h"
#include "map/tileserver.h"
#include "map/webmercator.h"
#include "platform/networkfactory.h"

using namespace Qt::StringLiterals;
using WebMercator::tileExtent;

namespace {

/// Number of tiles beyond the view that are kept.
constexpr int keptTiles = 2;
// In pixels. A marker marks the point at its lower right corner.
constexpr int storePinExtent = 30;
constexpr int positionMarkExtent = 20;

/// Returns the empty tile, which all maps share.
QPixmap sharedEmptyTile()
{
    const QString key = u"emptyTile"_s;
    QPixmap tile;
    if (!QPixmapCache::find(key, &tile)) {
        tile = QPixmap(tileExtent, tileExtent);
        tile.fill(Qt::lightGray);
        QPixmapCache::insert(key, tile);
    }
    return tile;
}

} // namespace

MapsCore::MapsCore(QObject *parent)
    : QObject(parent)
    , exactLatitude(latitude)
    , exactLongitude(longitude)
    , server(TileServer::baseUrl(qEnvironmentVariable("TROLLEO_TILE_SERVER")))
{}

void MapsCore::setSize(const QSize &size)
{
    width = size.width();
    height = size.height();
}

void MapsCore::setZoom(int level)
{
    if (level == zoom)
        return;
    zoom = level;
    tilePixmaps.clear();
    giveUp();
}

void MapsCore::setPixelRatio(qreal ratio)
{
    pixelRatio = ratio;
}

void MapsCore::setFetching(bool on)
{
    fetching = on;
    if (!on)
        giveUp();
    else if (url.isEmpty())
        download();
}

void MapsCore::setCenter(float centerLatitude, float centerLongitude)
{
    moveCenter(centerLatitude, centerLongitude);
    invalidate();
}

void MapsCore::moveCenter(double centerLatitude, double centerLongitude)
{
    exactLatitude = WebMercator::clampedLatitude(centerLatitude);
    exactLongitude = WebMercator::clampedLongitude(centerLongitude);
    latitude = static_cast<float>(exactLatitude);
    longitude = static_cast<float>(exactLongitude);
}

void MapsCore::setStorePin(float pinLatitude, float pinLongitude)
{
    storeLatitude = pinLatitude;
    storeLongitude = pinLongitude;
    showStorePin = true;
    invalidate();
}

void MapsCore::hideStorePin()
{
    showStorePin = false;
    invalidate();
}

void MapsCore::setPositionMark(float positionLatitude, float positionLongitude)
{
    markLatitude = positionLatitude;
    markLongitude = positionLongitude;
    showPositionMark = true;
    invalidate();
}

bool MapsCore::isCenteredOnMark(float positionLatitude, float positionLongitude) const
{
    return showPositionMark && markLatitude == positionLatitude &&
           markLongitude == positionLongitude && latitude == positionLatitude &&
           longitude == positionLongitude;
}

/// Returns the position of the centre in the tile grid.
QPointF MapsCore::centerTile() const
{
    return WebMercator::tileForCoordinate(exactLatitude, exactLongitude, zoom);
}

void MapsCore::invalidate()
{
    if (width < 1 || height < 1)
        return;
    const QPointF center = centerTile();
    const QPoint tile(static_cast<int>(center.x()), static_cast<int>(center.y()));
    // Returns where the corner of the tile in the middle lies.
    const auto corner = [](int middle, double at) {
        return static_cast<int>(middle - (at - std::floor(at)) * tileExtent);
    };
    const int xs = corner(width / 2, center.x());
    const int ys = corner(height / 2, center.y());
    const int xa = (xs + tileExtent - 1) / tileExtent;
    const int ya = (ys + tileExtent - 1) / tileExtent;
    offset = {xs - tileExtent * xa, ys - tileExtent * ya};
    tilesRect.setCoords(tile.x() - xa, tile.y() - ya, tile.x() + (width - xs - 1) / tileExtent,
                        tile.y() + (height - ys - 1) / tileExtent);
    if (url.isEmpty())
        download();
    emit updated(QRect(0, 0, width, height));
}

void MapsCore::pan(const QPoint &delta)
{
    const QPointF center = centerTile() - QPointF(delta) / tileExtent;
    moveCenter(WebMercator::latitudeFromTile(center.y(), zoom),
               WebMercator::longitudeFromTile(center.x(), zoom));
    invalidate();
}

void MapsCore::placeStorePinAt(int x, int y)
{
    const QPoint distance = QPoint(width / 2, height / 2) - QPoint(x, y);
    const QPointF place = centerTile() - QPointF(distance) / tileExtent;
    setStorePin(static_cast<float>(WebMercator::latitudeFromTile(place.y(), zoom)),
                static_cast<float>(WebMercator::wrappedLongitude(
                    WebMercator::longitudeFromTile(place.x(), zoom))));
}

/// Creates the fetcher when it is first needed, because it takes time, and most maps are never
/// shown. Returns null if that is not possible.
TileFetcher *MapsCore::tileFetcher()
{
    if (!fetcher) {
        if (NetworkFactory *factory = NetworkFactory::instance())
            fetcher = factory->createTileFetcher(
                [this](QNetworkReply *reply) { handleNetworkData(reply); },
                [this](const QPoint &tile, const QImage &image) { showTile(tile, image); }, this);
    }
    return fetcher;
}

/// Gives up the tile on its way, if any.
void MapsCore::giveUp()
{
    url.clear();
    if (fetcher)
        fetcher->giveUp();
}

/// Starts to fetch the next missing tile, if any.
void MapsCore::download()
{
    url.clear();
    const QPoint tile = fetching ? nextTile() : QPoint();
    if (tile.isNull() || !tileFetcher())
        return;
    url = TileServer::tileUrl(server, zoom, tile);
    fetcher->fetch(url, tile);
}

/// Returns the topmost missing tile of the rightmost column that has one, including a column and a
/// row beyond the view. (0, 0) means none, so that tile itself is never fetched.
QPoint MapsCore::nextTile() const
{
    QPoint next(0, 0);
    for (int x = 0; x <= tilesRect.width(); ++x) {
        for (int y = 0; y <= tilesRect.height(); ++y) {
            const QPoint tile = tilesRect.topLeft() + QPoint(x, y);
            if (WebMercator::isInGrid(tile, zoom) && !tilePixmaps.contains(tile)) {
                next = tile;
                break;
            }
        }
    }
    return next;
}

void MapsCore::handleNetworkData(QNetworkReply *reply)
{
    if (tileFetcher())
        fetcher->handle(reply);
}

/// Shows `image`, or the empty tile if it is null, and fetches the next tile.
void MapsCore::showTile(const QPoint &tile, const QImage &image)
{
    loadPictures();
    tilePixmaps.insert(tile, image.isNull() ? emptyTile : QPixmap::fromImage(image));
    emit updated(screenRect(tile));
    const QRect kept = tilesRect.adjusted(-keptTiles, -keptTiles, keptTiles, keptTiles);
    tilePixmaps.removeIf([&kept](const auto &entry) { return !kept.contains(entry.key()); });
    download();
}

QRect MapsCore::screenRect(const QPoint &tile) const
{
    return {(tile - tilesRect.topLeft()) * tileExtent + offset, QSize(tileExtent, tileExtent)};
}

/// Loads what the map draws itself. Most runs of the program show no map.
void MapsCore::loadPictures()
{
    if (!emptyTile.isNull())
        return;
    emptyTile = sharedEmptyTile();
    storePin = QIcon(u":/img/blue_pin.svg"_s);
    positionMark = QIcon(u":/img/smile.svg"_s);
}

void MapsCore::render(QPainter *painter, const QRect &rect)
{
    loadPictures();
    for (int x = 0; x <= tilesRect.width(); ++x) {
        for (int y = 0; y <= tilesRect.height(); ++y) {
            const QPoint tile = tilesRect.topLeft() + QPoint(x, y);
            const QRect place = screenRect(tile);
            if (place.intersects(rect))
                painter->drawPixmap(place.topLeft(), tilePixmaps.value(tile, emptyTile));
        }
    }
    if (showStorePin)
        drawMarker(painter, storePin, storePinExtent, storeLatitude, storeLongitude);
    if (showPositionMark)
        drawMarker(painter, positionMark, positionMarkExtent, markLatitude, markLongitude);
}

void MapsCore::drawMarker(QPainter *painter, const QIcon &icon, int extent, float markerLatitude,
                          float markerLongitude) const
{
    const int scaled = qRound(extent * pixelRatio);
    const QPointF place = WebMercator::pixelOffset(markerLatitude, markerLongitude, exactLatitude,
                                                   exactLongitude, zoom);
    const QPoint corner(static_cast<int>(place.x()) + width / 2 - scaled,
                        static_cast<int>(place.y()) + height / 2 - scaled);
    painter->drawPixmap(corner, icon.pixmap(QSize(scaled, scaled), 1.0));
}

float MapsCore::centerLatitude() const
{
    return latitude;
}

float MapsCore::centerLongitude() const
{
    return longitude;
}

float MapsCore::pinLatitude() const
{
    return storeLatitude;
}

float MapsCore::pinLongitude() const
{
    return storeLongitude;
}

bool MapsCore::isStorePinShown() const
{
    return showStorePin;
}
