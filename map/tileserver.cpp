// SPDX-License-Identifier: MIT
#include "map/tileserver.h"

#include <algorithm>
#include <array>

#include <QHostInfo>
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

bool TileServer::isPublic(const QHostAddress &address)
{
    // Also of an IPv4 address that is written as one of IPv6.
    bool isIPv4 = false;
    const QHostAddress plain(address.toIPv4Address(&isIPv4));
    if (!isIPv4) {
        return address.isGlobal() && !address.isUniqueLocalUnicast() && !address.isSiteLocal();
    }
    // Private and shared networks (RFC 1918 and RFC 6598), which Qt calls global.
    static const std::array local{
        QHostAddress::parseSubnet(u"10.0.0.0/8"_s),
        QHostAddress::parseSubnet(u"172.16.0.0/12"_s),
        QHostAddress::parseSubnet(u"192.168.0.0/16"_s),
        QHostAddress::parseSubnet(u"100.64.0.0/10"_s),
    };
    return plain.isGlobal() && std::ranges::none_of(local, [&plain](const auto &subnet) {
               return plain.isInSubnet(subnet);
           });
}

void TileServer::checkRedirection(const QUrl &source, const QUrl &target, QObject *context,
                                  const std::function<void(bool)> &answer)
{
    const bool isSafe = target.scheme() == u"https"_s ||
                        (target.scheme() == u"http"_s && source.scheme() == u"http"_s);
    if (!isSafe || target.host() == source.host()) {
        answer(isSafe);
        return;
    }
    QHostInfo::lookupHost(target.host(), context, [answer](const QHostInfo &found) {
        const QList<QHostAddress> addresses = found.addresses();
        answer(!addresses.isEmpty() && std::ranges::all_of(addresses, isPublic));
    });
}

QByteArray TileServer::userAgent()
{
    return QByteArray("Trolleo/") + TROLLEO_VERSION + " (" + TROLLEO_CONTACT + ")";
}

QString TileServer::attribution()
{
    return u"© OpenStreetMap contributors"_s;
}
