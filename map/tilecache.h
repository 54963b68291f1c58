// SPDX-License-Identifier: MIT
#pragma once

#include <QNetworkDiskCache>

/// A disk cache that drops files which were cut short, for example by a full disk or a flat
/// battery. Qt would wait for the rest of such a file until the transfer times out.
class TileCache : public QNetworkDiskCache
{
    Q_OBJECT

public:
    using QNetworkDiskCache::QNetworkDiskCache;

    QIODevice *data(const QUrl &source) override;
};
