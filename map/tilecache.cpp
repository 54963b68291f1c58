// SPDX-License-Identifier: MIT
#include "map/tilecache.h"

#include <algorithm>
#include <memory>

#include <QIODevice>

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
