// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QIcon>
#include <QObject>
#include <QPixmap>
#include <QPoint>
#include <QPointer>
#include <QRect>
#include <QTimer>
#include <QUrl>

class QNetworkAccessManager;
class QNetworkReply;
class QPainter;

/// The map without a widget: it knows which tiles cover a view, fetches the missing ones, one at a
/// time and through a cache on disk, and paints them with two markers.
///
/// Coordinates are degrees, latitude first. Those that no map can show, infinite ones and what is
/// not a number included, are moved to the nearest place that it can. Pixels are the pixels of the
/// device.
class MapsCore : public QObject
{
    Q_OBJECT

public:
    /// Fetches from the server that TROLLEO_TILE_SERVER names.
    explicit MapsCore(QObject *parent = nullptr);
    ~MapsCore() override;

    /// None of the three computes anything; invalidate() is to follow.
    void setSize(const QSize &size);
    void setZoom(int level);
    /// Device pixels per pixel of the markers' size.
    void setPixelRatio(qreal ratio);

    /// Whether tiles are fetched; they are at first. Ending it gives up the request in flight.
    void setFetching(bool on);

    void setCenter(float centerLatitude, float centerLongitude);
    void setStorePin(float pinLatitude, float pinLongitude);
    void hideStorePin();
    void setPositionMark(float positionLatitude, float positionLongitude);

    /// Computes anew which tiles cover the view, and where they lie. Nothing for an empty view.
    void invalidate();
    /// Moves the contents of the view by `delta`.
    void pan(const QPoint &delta);
    /// Puts the store pin where a point of the view lies.
    void placeStorePinAt(int x, int y);
    /// Paints what meets `rect`.
    void render(QPainter *painter, const QRect &rect);

    float centerLatitude() const;
    float centerLongitude() const;
    float pinLatitude() const;
    float pinLongitude() const;
    bool isStorePinShown() const;

signals:
    /// That part of the view has to be painted again.
    void updated(QRect rect);

public slots:
    /// Keeps the tile that `reply` brought, or the empty one, and fetches the next. Deletes
    /// `reply` later. The tile's place is the attribute QNetworkRequest::User of its request.
    void handleNetworkData(QNetworkReply *reply);

private:
    void moveCenter(double centerLatitude, double centerLongitude);
    void download();
    QPoint nextTile() const;
    void fetch(const QPoint &tile);
    QByteArray bodyOf(QNetworkReply *reply);
    QByteArray cachedBody(const QUrl &source);
    QNetworkAccessManager *network();
    QPointF centerTile() const;
    QRect screenRect(const QPoint &tile) const;
    void drawMarker(QPainter *painter, const QIcon &icon, int extent, float markerLatitude,
                    float markerLongitude) const;

    int width = 400;
    int height = 300;
    int zoom = 16;
    float latitude = 59.913822F;
    float longitude = 10.738741F;
    /// The centre as dragging leaves it: rounded to single precision, slow drags would drift.
    double exactLatitude;
    double exactLongitude;
    float storeLatitude = 0;
    float storeLongitude = 0;
    float markLatitude = 0;
    float markLongitude = 0;
    bool showStorePin = false;
    bool showPositionMark = false;
    qreal pixelRatio = 1;
    /// Where the first tile's corner lies in the view.
    QPoint offset;
    /// The tiles that cover the view.
    QRect tilesRect;
    QPixmap emptyTile;
    QIcon storePin;
    QIcon positionMark;
    QHash<QPoint, QPixmap> tilePixmaps;

    QUrl server;
    QNetworkAccessManager *manager = nullptr;
    bool fetching = true;
    /// Of the tile being fetched; empty when none is.
    QUrl url;
    QPointer<QNetworkReply> replyInFlight;
    QTimer transferTimer;
};
