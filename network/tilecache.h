// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QNetworkDiskCache>
#include <QUrl>

/// A disk cache of tiles only. It drops files which were cut short, for example by a full disk or a
/// flat battery: Qt would wait for the rest of such a file until the transfer times out. It does
/// not keep redirections: one would replace the tile of its address, which may be needed without a
/// network.
class TileCache : public QNetworkDiskCache
{
    Q_OBJECT

public:
    using QNetworkDiskCache::QNetworkDiskCache;

    QIODevice *data(const QUrl &source) override;
    QIODevice *prepare(const QNetworkCacheMetaData &entry) override;
    void insert(QIODevice *device) override;
    bool remove(const QUrl &source) override;

private:
    /// Takes the body of a redirection, by its address. Owned by this object.
    QHash<QUrl, QIODevice *> discarded;
};
