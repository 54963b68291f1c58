// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include <QHostAddress>
#include <QObject>
#include <QUrl>

/// Where a tile server may redirect the program: a stranger's server must not make it send requests
/// to this machine or its network.
namespace Redirections {

/// Calls `answer` with whether the reply from `source` may redirect a request, which was sent to
/// `server` at first, to `target`, as soon as the address of another host is known. It may not
/// redirect to an unsafe protocol, nor to this machine or its network, unless `server` is there.
/// `answer` is not called if `context` is destroyed meanwhile.
void check(const QUrl &server, const QUrl &source, const QUrl &target, QObject *context,
           const std::function<void(bool isAllowed)> &answer);

/// Returns whether `address` is on the internet, and not on this machine or a network to which it
/// is connected.
bool isPublic(const QHostAddress &address);

} // namespace Redirections
