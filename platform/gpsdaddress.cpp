// SPDX-License-Identifier: MIT
#include "platform/gpsdaddress.h"

#include <QUrl>

#include "platform/standarderror.h"

using namespace Qt::StringLiterals;

GpsdAddress GpsdAddress::fromEnvironment()
{
    constexpr quint16 defaultPort = 2947;
    GpsdAddress usual{.host = u"127.0.0.1"_s, .port = defaultPort};
    const QString value = qEnvironmentVariable("TROLLEO_GPSD");
    if (value.isEmpty())
        return usual;
    QUrl url;
    url.setAuthority(value, QUrl::StrictMode);
    if (!url.isValid() || url.host().isEmpty() || url.port() < 1 || !url.userInfo().isEmpty()) {
        StandardError::write(
            u"trolleo: TROLLEO_GPSD is not host:port, %1:%2 is used instead: %3"_s.arg(
                usual.host, QString::number(usual.port), value));
        return usual;
    }
    return {.host = url.host(), .port = static_cast<quint16>(url.port())};
}
