// SPDX-License-Identifier: MIT
#include "network/redirections.h"

#include <algorithm>

#include <QHostInfo>
#include <QNetworkInterface>
#include <QtEndian>

using namespace Qt::StringLiterals;

namespace {

using Subnet = QPair<QHostAddress, int>;

bool isInAny(const QHostAddress &address, const QList<Subnet> &subnets)
{
    return std::ranges::any_of(
        subnets, [&address](const Subnet &subnet) { return address.isInSubnet(subnet); });
}

/// Returns whether `address` is one of this machine, or belongs to a network to which it is
/// connected: addresses of IPv6 are global there, too.
bool isOfThisNetwork(const QHostAddress &address)
{
    const QList<QNetworkInterface> interfaces = QNetworkInterface::allInterfaces();
    return std::ranges::any_of(interfaces, [&address](const QNetworkInterface &each) {
        const QList<QNetworkAddressEntry> entries = each.addressEntries();
        return std::ranges::any_of(entries, [&address](const QNetworkAddressEntry &own) {
            return address.isInSubnet(own.ip(), own.prefixLength());
        });
    });
}

bool isPublicIPv4(const QHostAddress &address)
{
    // Private and shared networks, and those of translation to IPv6 and of tests, which Qt calls
    // global (RFC 1918, RFC 6598, RFC 7335, RFC 2544).
    static const QList<Subnet> local{
        QHostAddress::parseSubnet(u"10.0.0.0/8"_s),
        QHostAddress::parseSubnet(u"172.16.0.0/12"_s),
        QHostAddress::parseSubnet(u"192.168.0.0/16"_s),
        QHostAddress::parseSubnet(u"100.64.0.0/10"_s),
        QHostAddress::parseSubnet(u"192.0.0.0/24"_s),
        QHostAddress::parseSubnet(u"198.18.0.0/15"_s),
    };
    return address.isGlobal() && !isInAny(address, local);
}

bool isPublicIPv6(const QHostAddress &address)
{
    // The internet (RFC 4291), without addresses that contain one of IPv4 (RFC 4380, RFC 3056).
    static const Subnet global = QHostAddress::parseSubnet(u"2000::/3"_s);
    static const QList<Subnet> tunnels{
        QHostAddress::parseSubnet(u"2001::/32"_s),
        QHostAddress::parseSubnet(u"2002::/16"_s),
    };
    return address.isInSubnet(global) && !isInAny(address, tunnels);
}

/// Returns the address of IPv4 that `address` stands for, or else `address`.
QHostAddress withoutTranslation(const QHostAddress &address)
{
    // In a network without IPv4 (RFC 6052).
    static const Subnet translated = QHostAddress::parseSubnet(u"64:ff9b::/96"_s);
    bool isIPv4 = false;
    const quint32 number = address.toIPv4Address(&isIPv4);
    if (isIPv4)
        return QHostAddress(number);
    if (!address.isInSubnet(translated))
        return address;
    const Q_IPV6ADDR bytes = address.toIPv6Address();
    return QHostAddress(qFromBigEndian<quint32>(bytes.c + sizeof bytes - sizeof(quint32)));
}

/// Returns whether `target` is on the server of `url`, or on the usual port for https of its host.
bool isSameServer(const QUrl &url, const QUrl &target)
{
    constexpr int http = 80;
    constexpr int https = 443;
    const auto portOf = [](const QUrl &each) {
        return each.port(each.scheme() == u"https"_s ? https : http);
    };
    return target.host() == url.host() &&
           (portOf(target) == portOf(url) || portOf(target) == https);
}

} // namespace

bool Redirections::isPublic(const QHostAddress &address)
{
    const QHostAddress plain = withoutTranslation(address);
    const bool isIPv4 = plain.protocol() == QAbstractSocket::IPv4Protocol;
    return (isIPv4 ? isPublicIPv4(plain) : isPublicIPv6(plain)) && !isOfThisNetwork(plain);
}

void Redirections::check(const QUrl &server, const QUrl &source, const QUrl &target,
                         QObject *context, const std::function<void(bool)> &answer)
{
    const bool isSafe = target.scheme() == u"https"_s ||
                        (target.scheme() == u"http"_s && source.scheme() == u"http"_s);
    const QHostAddress literal(target.host());
    if (!isSafe || isSameServer(server, target)) {
        answer(isSafe);
    } else if (!literal.isNull()) {
        answer(isPublic(literal));
    } else {
        // Qt keeps what it found for a minute, so the request normally goes to these addresses.
        QHostInfo::lookupHost(target.host(), context, [answer](const QHostInfo &found) {
            const QList<QHostAddress> addresses = found.addresses();
            answer(!addresses.isEmpty() && std::ranges::all_of(addresses, isPublic));
        });
    }
}
