// SPDX-License-Identifier: MIT
#include "map/mapscore.h"

#include <chrono>
#include <cmath>
#include <memory>

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QPainter>
#include <QPixmapCache>
#include <QStandardPaths>

#include "map/tilecache.h"
#include "map/tileimage.h"
#include "map/tileserver.h"
#include "map/webmercator.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using WebMercator::tileExtent;

namespace {

/// Limit for a whole transfer. Qt's own timeout starts again with every byte received.
constexpr auto transferLimit = 30s;
constexpr int mostRedirects = 5;
/// Number of tiles beyond the view that are kept.
constexpr int keptTiles = 2;
/// The zoom level of the requested tile.
constexpr auto zoomAttribute = static_cast<QNetworkRequest::Attribute>(QNetworkRequest::User + 1);
/// The address of the tile before redirections, and their number.
constexpr auto originAttribute = static_cast<QNetworkRequest::Attribute>(QNetworkRequest::User + 2);
constexpr auto hopsAttribute = static_cast<QNetworkRequest::Attribute>(QNetworkRequest::User + 3);
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

/// Returns whether `reply`, which is no picture, comes from the cache or confirms what was there.
/// It is then fetched again, once.
bool isFromDamagedFile(const QNetworkReply &reply)
{
    constexpr int notModified = 304;
    const bool isCached =
        reply.attribute(QNetworkRequest::SourceIsFromCacheAttribute).toBool() ||
        reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt() == notModified;
    return isCached && reply.error() == QNetworkReply::NoError &&
           reply.request().attribute(QNetworkRequest::CacheLoadControlAttribute).toInt() !=
               QNetworkRequest::AlwaysNetwork;
}

QUrl originOf(const QNetworkRequest &request)
{
    return request.attribute(originAttribute, request.url()).toUrl();
}

} // namespace

MapsCore::MapsCore(QObject *parent)
    : QObject(parent)
    , exactLatitude(latitude)
    , exactLongitude(longitude)
    , server(TileServer::baseUrl(qEnvironmentVariable("TROLLEO_TILE_SERVER")))
{
    transferTimer.setSingleShot(true);
    transferTimer.setInterval(transferLimit);
    connect(&transferTimer, &QTimer::timeout, this, [this] {
        if (replyInFlight)
            replyInFlight->abort();
    });
}

MapsCore::~MapsCore() = default;

void MapsCore::setSize(const QSize &size)
{
    width = size.width();
    height = size.height();
}

void MapsCore::setZoom(int level)
{
    if (level != zoom)
        tilePixmaps.clear();
    zoom = level;
}

void MapsCore::setPixelRatio(qreal ratio)
{
    pixelRatio = ratio;
}

void MapsCore::setFetching(bool on)
{
    fetching = on;
    // While fetching is disabled, download() only ends the search for an address.
    if ((on && url.isEmpty()) || (!on && lookup))
        download();
    else if (!on && replyInFlight)
        replyInFlight->abort();
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

/// Creates the network manager when it is first needed. The cache creates its folders at once,
/// which would delay the start of a program whose map may never be opened.
QNetworkAccessManager *MapsCore::network()
{
    if (!manager) {
        manager = new QNetworkAccessManager(this);
        auto *cache = new TileCache(manager);
        cache->setCacheDirectory(QStandardPaths::writableLocation(QStandardPaths::CacheLocation));
        manager->setCache(cache);
        connect(manager, &QNetworkAccessManager::finished, this, &MapsCore::handleNetworkData);
    }
    return manager;
}

/// Starts to fetch the next missing tile, if any.
void MapsCore::download()
{
    url.clear();
    lookup.reset();
    transferTimer.stop();
    if (!fetching)
        return;
    const QPoint tile = nextTile();
    if (tile.isNull())
        return;
    url = TileServer::tileUrl(server, zoom, tile);
    QNetworkRequest request(url);
    request.setAttribute(QNetworkRequest::User, tile);
    request.setAttribute(zoomAttribute, zoom);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute,
                         QNetworkRequest::PreferNetwork);
    transferTimer.start();
    fetch(request);
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

/// Starts the transfer of one tile, which is then in flight.
void MapsCore::fetch(QNetworkRequest request)
{
    request.setRawHeader("User-Agent", TileServer::userAgent());
    // Qt would decompress the reply, and a small reply could become a huge one.
    request.setRawHeader("Accept-Encoding", "identity");
    // Cookies would let a tile server recognise the user.
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::ManualRedirectPolicy);
    QNetworkReply *reply = network()->get(request);
    // Qt stops reading somewhat below this limit without an error.
    reply->setReadBufferSize(2 * TileImage::largestBody);
    connect(reply, &QNetworkReply::readyRead, this, [reply] {
        if (reply->bytesAvailable() > TileImage::largestBody)
            reply->abort();
    });
    replyInFlight = reply;
}

void MapsCore::handleNetworkData(QNetworkReply *reply)
{
    reply->deleteLater();
    QNetworkRequest request = reply->request();
    const bool isGivenUp = reply->error() != QNetworkReply::NoError && !fetching;
    if (isGivenUp || isOfAnotherZoom(request)) {
        download();
        return;
    }
    const QUrl target = reply->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl();
    if (!target.isEmpty() && reply->error() == QNetworkReply::NoError) {
        follow(request, request.url().resolved(target));
        return;
    }
    const QImage image = imageOf(reply);
    // A reply that is not a picture, for example a hotspot's login page, must not come from the
    // cache again.
    if (image.isNull() && reply->error() == QNetworkReply::NoError)
        network()->cache()->remove(request.url());
    if (image.isNull() && isFromDamagedFile(*reply)) {
        request.setAttribute(QNetworkRequest::CacheLoadControlAttribute,
                             QNetworkRequest::AlwaysNetwork);
        fetching ? fetch(request) : download();
        return;
    }
    showTile(request.attribute(QNetworkRequest::User).toPoint(), image);
}

bool MapsCore::isOfAnotherZoom(const QNetworkRequest &request) const
{
    return request.attribute(zoomAttribute, zoom).toInt() != zoom;
}

/// Fetches the tile of `request` from `target` if it may be there. Qt's own policies would either
/// ask a host of the local network or stop at a redirection that is in the cache.
void MapsCore::follow(const QNetworkRequest &request, const QUrl &target)
{
    const auto giveUp = [this, request] {
        if (isOfAnotherZoom(request))
            download();
        else
            showTile(request.attribute(QNetworkRequest::User).toPoint(),
                     cachedImage(originOf(request)));
    };
    const auto goOn = [this, request, target, giveUp](bool isAllowed) {
        const int hops = request.attribute(hopsAttribute).toInt() + 1;
        if (!isAllowed || hops > mostRedirects || isOfAnotherZoom(request)) {
            giveUp();
            return;
        }
        QNetworkRequest next = request;
        next.setUrl(target);
        next.setAttribute(originAttribute, originOf(request));
        next.setAttribute(hopsAttribute, hops);
        lookup.reset();
        fetch(next);
    };
    lookup = std::make_unique<QObject>();
    connect(&transferTimer, &QTimer::timeout, lookup.get(), giveUp);
    TileServer::checkRedirection(request.url(), target, lookup.get(), goOn);
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

/// Returns the picture in `reply`. If the request failed, or was redirected to a page, returns the
/// cached tile, even if it has expired: an old tile is better than none.
QImage MapsCore::imageOf(QNetworkReply *reply)
{
    const QUrl origin = originOf(reply->request());
    if (reply->error() != QNetworkReply::NoError) {
        const QImage cached = cachedImage(origin);
        return cached.isNull() ? cachedImage(reply->url()) : cached;
    }
    const QByteArray body = reply->read(TileImage::largestBody + 1);
    QImage image = TileImage::read(body);
    if (reply->url() == origin)
        return image;
    if (image.isNull())
        return cachedImage(origin);
    // The cache has the tile only under its final address. Storing it under the requested address
    // as well makes it available when the server cannot redirect.
    QNetworkCacheMetaData entry = network()->cache()->metaData(reply->url());
    entry.setUrl(origin);
    QIODevice *file = entry.isValid() ? network()->cache()->prepare(entry) : nullptr;
    if (file) {
        file->write(body);
        network()->cache()->insert(file);
    }
    return image;
}

QImage MapsCore::cachedImage(const QUrl &source)
{
    const std::unique_ptr<QIODevice> file(network()->cache()->data(source));
    return file ? TileImage::read(file->read(TileImage::largestBody + 1)) : QImage();
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
