// SPDX-License-Identifier: MIT
#include "map/tileserver.h"

using namespace Qt::StringLiterals;

QUrl TileServer::baseUrl(const QString &setting)
{
    QUrl usual(u"https://tile.openstreetmap.org"_s);
    if (setting.isEmpty())
        return usual;
    QUrl url(setting, QUrl::StrictMode);
    const bool isWeb = url.scheme() == u"http"_s || url.scheme() == u"https"_s;
    if (isWeb && url.isValid() && !url.host().isEmpty() && !url.hasQuery() && !url.hasFragment())
        return url;
    qWarning("trolleo: TROLLEO_TILE_SERVER is not an http or https URL, %s is used",
             qPrintable(usual.toString()));
    return usual;
}

QUrl TileServer::tileUrl(const QUrl &base, int zoom, const QPoint &tile)
{
    QString folder = base.path();
    while (folder.endsWith(u'/'))
        folder.chop(1);
    QUrl url = base;
    url.setPath(folder + u"/%1/%2/%3.png"_s.arg(zoom).arg(tile.x()).arg(tile.y()));
    return url;
}

QString TileServer::attribution()
{
    return u"© OpenStreetMap contributors"_s;
}
