// SPDX-License-Identifier: MIT
#include "network/tilecache.h"

#include <algorithm>
#include <memory>

#include <QBuffer>
#include <QNetworkRequest>

using namespace Qt::StringLiterals;

namespace {

/// Returns the size in bytes of the body that `entry` describes, or -1 if it is unknown.
qint64 sizeOf(const QNetworkCacheMetaData &entry)
{
    const auto headers = entry.rawHeaders();
    const auto length = std::ranges::find_if(headers, [](const auto &header) {
        return header.first.compare("content-length", Qt::CaseInsensitive) == 0;
    });
    bool isNumber = false;
    const qint64 size = length == headers.cend() ? -1 : length->second.toLongLong(&isNumber);
    return isNumber ? size : -1;
}

} // namespace

QIODevice *TileCache::data(const QUrl &source)
{
    std::unique_ptr<QIODevice> body(QNetworkDiskCache::data(source));
    if (!body)
        return nullptr;
    const qint64 expected = sizeOf(metaData(source));
    const bool isComplete = expected < 0 ? body->size() > 0 : body->size() >= expected;
    if (isComplete)
        return body.release();
    body.reset();
    remove(source);
    return nullptr;
}

QIODevice *TileCache::prepare(const QNetworkCacheMetaData &entry)
{
    constexpr int redirections = 3; // hundreds
    const int status = entry.attributes().value(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (status / 100 != redirections)
        return QNetworkDiskCache::prepare(entry);
    // Without a device, Qt would remove the entry of that address.
    auto *device = new QBuffer(this);
    device->open(QIODevice::WriteOnly);
    delete discarded.take(entry.url());
    discarded.insert(entry.url(), device);
    return device;
}

void TileCache::insert(QIODevice *device)
{
    const QUrl source = discarded.key(device);
    if (source.isEmpty())
        QNetworkDiskCache::insert(device);
    else
        delete discarded.take(source);
}

/// Qt also calls this for a transfer that has failed. That of a redirection leaves the tile alone.
bool TileCache::remove(const QUrl &source)
{
    QIODevice *device = discarded.take(source);
    delete device;
    return device || QNetworkDiskCache::remove(source);
}
