// SPDX-License-Identifier: MIT
#include "network/httptilefetcher.h"

#include <chrono>
#include <memory>
#include <utility>

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QStandardPaths>

#include "network/redirections.h"
#include "network/tilecache.h"
#include "network/tileimage.h"

using namespace std::chrono_literals;

namespace {

/// Limit for a whole transfer. Qt's own timeout starts again with every byte received.
constexpr auto transferLimit = 30s;
constexpr int mostRedirects = 5;
/// The number of the tile.
constexpr auto serialAttribute = static_cast<QNetworkRequest::Attribute>(QNetworkRequest::User + 1);
/// The address of the tile before redirections, and their number.
constexpr auto originAttribute = static_cast<QNetworkRequest::Attribute>(QNetworkRequest::User + 2);
constexpr auto hopsAttribute = static_cast<QNetworkRequest::Attribute>(QNetworkRequest::User + 3);

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

HttpTileFetcher::HttpTileFetcher(const Replied &replied, Fetched fetched, QObject *parent)
    : TileFetcher(parent)
    , fetchedFunction(std::move(fetched))
    , manager(new QNetworkAccessManager(this))
{
    auto *cache = new TileCache(manager);
    cache->setCacheDirectory(QStandardPaths::writableLocation(QStandardPaths::CacheLocation));
    manager->setCache(cache);
    connect(manager, &QNetworkAccessManager::finished, this, replied);
    transferTimer.setSingleShot(true);
    transferTimer.setInterval(transferLimit);
    connect(&transferTimer, &QTimer::timeout, this, [this] {
        if (replyInFlight)
            replyInFlight->abort();
    });
}

void HttpTileFetcher::fetch(const QUrl &address, const QPoint &tile)
{
    giveUp();
    QNetworkRequest request(address);
    request.setAttribute(QNetworkRequest::User, tile);
    request.setAttribute(serialAttribute, serial);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute,
                         QNetworkRequest::PreferNetwork);
    transferTimer.start();
    get(request);
}

void HttpTileFetcher::giveUp()
{
    ++serial;
    lookup.reset();
    transferTimer.stop();
    if (replyInFlight)
        replyInFlight->abort();
}

/// Starts the transfer of one tile, which is then in flight.
void HttpTileFetcher::get(QNetworkRequest request)
{
    request.setRawHeader("User-Agent", userAgent());
    // Qt would decompress the reply, and a small reply could become a huge one.
    request.setRawHeader("Accept-Encoding", "identity");
    // Cookies would let a tile server recognise the user.
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::ManualRedirectPolicy);
    QNetworkReply *reply = manager->get(request);
    // Qt stops reading somewhat below this limit without an error.
    reply->setReadBufferSize(2 * TileImage::largestBody);
    connect(reply, &QNetworkReply::readyRead, this, [reply] {
        if (reply->bytesAvailable() > TileImage::largestBody)
            reply->abort();
    });
    replyInFlight = reply;
}

void HttpTileFetcher::handle(QNetworkReply *reply)
{
    reply->deleteLater();
    QNetworkRequest request = reply->request();
    if (request.attribute(serialAttribute, serial).toInt() != serial)
        return;
    const QUrl target = reply->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl();
    if (!target.isEmpty() && reply->error() == QNetworkReply::NoError) {
        follow(request, request.url().resolved(target));
        return;
    }
    const QImage image = imageOf(reply);
    // A reply that is not a picture, for example a hotspot's login page, must not come from the
    // cache again.
    if (image.isNull() && reply->error() == QNetworkReply::NoError)
        manager->cache()->remove(request.url());
    if (image.isNull() && isFromDamagedFile(*reply)) {
        request.setAttribute(QNetworkRequest::CacheLoadControlAttribute,
                             QNetworkRequest::AlwaysNetwork);
        get(request);
        return;
    }
    report(request, image);
}

/// Fetches the tile of `request` from `target` if it may be there. Qt's own policies would either
/// ask a host of the local network or stop at a redirection that is in the cache.
void HttpTileFetcher::follow(const QNetworkRequest &request, const QUrl &target)
{
    const auto reportCached = [this, request] {
        report(request, cachedImage(originOf(request)));
    };
    const auto goOn = [this, request, target, reportCached](bool isAllowed) {
        const int hops = request.attribute(hopsAttribute).toInt() + 1;
        if (!isAllowed || hops > mostRedirects) {
            reportCached();
            return;
        }
        QNetworkRequest next = request;
        next.setUrl(target);
        next.setAttribute(originAttribute, originOf(request));
        next.setAttribute(hopsAttribute, hops);
        lookup.reset();
        get(next);
    };
    lookup = std::make_unique<QObject>();
    connect(&transferTimer, &QTimer::timeout, lookup.get(), reportCached);
    Redirections::check(originOf(request), request.url(), target, lookup.get(), goOn);
}

void HttpTileFetcher::report(const QNetworkRequest &request, const QImage &image)
{
    lookup.reset();
    transferTimer.stop();
    fetchedFunction(request.attribute(QNetworkRequest::User).toPoint(), image);
}

/// Returns the picture in `reply`. If the request failed, or was redirected to a page, returns the
/// cached tile, even if it has expired: an old tile is better than none.
QImage HttpTileFetcher::imageOf(QNetworkReply *reply)
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
    QNetworkCacheMetaData entry = manager->cache()->metaData(reply->url());
    entry.setUrl(origin);
    QIODevice *file = entry.isValid() ? manager->cache()->prepare(entry) : nullptr;
    if (file) {
        file->write(body);
        manager->cache()->insert(file);
    }
    return image;
}

QImage HttpTileFetcher::cachedImage(const QUrl &source)
{
    const std::unique_ptr<QIODevice> file(manager->cache()->data(source));
    return file ? TileImage::read(file->read(TileImage::largestBody + 1)) : QImage();
}

QByteArray HttpTileFetcher::userAgent()
{
    return QByteArray("Trolleo/") + TROLLEO_VERSION + " (" + TROLLEO_CONTACT + ")";
}
