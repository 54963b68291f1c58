// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// The address of a gpsd.
struct GpsdAddress
{
    QString host;
    quint16 port = 0;

    /// Returns the address in TROLLEO_GPSD, as host:port with an IPv6 host in brackets, or gpsd's
    /// default. An invalid value is refused with a line on standard error.
    static GpsdAddress fromEnvironment();
};
