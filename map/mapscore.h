// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QIcon>
#include <QObject>
#include <QPixmap>
#include <QPoint>
#include <QRect>
#include <QUrl>

class QImage;
class QNetworkReply;
class QPainter;
class TileFetcher;

/// The map without a widget. It computes which tiles cover a view, fetches the missing ones, one at
/// a time and through a disk cache, and paints them with two markers.
///
/// Coordinates are in degrees, latitude first. Coordinates outside the map, including infinity and
/// NaN, are moved to the nearest valid place. Pixels are device pixels.
class MapsCore : public QObject
{
    Q_OBJECT

public:
    /// Uses the tile server in the environment variable TROLLEO_TILE_SERVER.
    explicit MapsCore(QObject *parent = nullptr);

    /// These three setters compute nothing; call invalidate() afterwards.
    void setSize(const QSize &size);
    void setZoom(int level);
    /// Device pixels per pixel of the markers' size.
    void setPixelRatio(qreal ratio);

    /// Enables or disables fetching; it is enabled by default. Disabling aborts the current
    /// request.
    void setFetching(bool on);

    void setCenter(float centerLatitude, float centerLongitude);
    void setStorePin(float pinLatitude, float pinLongitude);
    void hideStorePin();
    void setPositionMark(float positionLatitude, float positionLongitude);
    /// Returns whether the position mark and the centre are at that place.
    bool isCenteredOnMark(float positionLatitude, float positionLongitude) const;

    /// Recomputes which tiles cover the view, and where they lie. Does nothing if the view is
    /// empty.
    void invalidate();
    /// Moves the contents of the view by `delta` pixels.
    void pan(const QPoint &delta);
    /// Puts the store pin at a point of the view.
    void placeStorePinAt(int x, int y);
    /// Paints everything that intersects `rect`.
    void render(QPainter *painter, const QRect &rect);

    float centerLatitude() const;
    float centerLongitude() const;
    float pinLatitude() const;
    float pinLongitude() const;
    bool isStorePinShown() const;

signals:
    /// `rect` of the view must be painted again.
    void updated(QRect rect);

public slots:
    /// Stores the tile in `reply` or in the cache, or else the empty tile, and fetches the next
    /// one. See TileFetcher::handle().
    void handleNetworkData(QNetworkReply *reply);

private:
    void moveCenter(double centerLatitude, double centerLongitude);
    void download();
    QPoint nextTile() const;
    TileFetcher *tileFetcher();
    void giveUp();
    void showTile(const QPoint &tile, const QImage &image);
    QPointF centerTile() const;
    QRect screenRect(const QPoint &tile) const;
    void loadPictures();
    void drawMarker(QPainter *painter, const QIcon &icon, int extent, float markerLatitude,
                    float markerLongitude) const;

    int width = 400;
    int height = 300;
    int zoom = 16;
    float latitude = 59.913822F;
    float longitude = 10.738741F;
    /// The centre in double precision: slow drags would drift if it were rounded to single
    /// precision.
    double exactLatitude;
    double exactLongitude;
    float storeLatitude = 0;
    float storeLongitude = 0;
    float markLatitude = 0;
    float markLongitude = 0;
    bool showStorePin = false;
    bool showPositionMark = false;
    qreal pixelRatio = 1;
    /// Where the corner of the first tile lies in the view.
    QPoint offset;
    /// The tiles that cover the view.
    QRect tilesRect;
    QPixmap emptyTile;
    QIcon storePin;
    QIcon positionMark;
    QHash<QPoint, QPixmap> tilePixmaps;

    QUrl server;
    TileFetcher *fetcher = nullptr;
    bool fetching = true;
    /// The address of the tile being fetched; empty if there is none.
    QUrl url;
};
