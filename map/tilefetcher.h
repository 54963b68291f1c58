// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

class QNetworkReply;
class QPoint;
class QUrl;

/// Fetches tiles from a tile server, one at a time and through a disk cache. NetworkFactory creates
/// it.
class TileFetcher : public QObject
{
public:
    using QObject::QObject;

    /// Starts to fetch the tile of that place in the grid, and gives up the one on its way, if any.
    virtual void fetch(const QUrl &address, const QPoint &tile) = 0;
    /// Gives up the tile on its way, if any, and reports nothing for it.
    virtual void giveUp() = 0;
    /// Reports the picture in `reply` or in the cache, or else that there is none. Follows a
    /// redirection instead, unless it leads to the local network. Ignores the reply for a tile that
    /// was given up. Deletes `reply` later. The attribute QNetworkRequest::User of its request is
    /// the place of the tile.
    virtual void handle(QNetworkReply *reply) = 0;
};
