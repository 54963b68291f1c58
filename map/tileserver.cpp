// SPDX-License-Identifier: MIT
#include "map/tileserver.h"

#include <QTextStream>

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
    QTextStream(stderr) << "trolleo: TROLLEO_TILE_SERVER is not an http or https URL, "
                        << usual.toString() << " is used\n";
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

QByteArray TileServer::userAgent()
{
    return QByteArray("Trolleo/") + TROLLEO_VERSION + " (" + TROLLEO_CONTACT + ")";
}

QString TileServer::attribution()
{
    return u"© OpenStreetMap contributors"_s;
}
