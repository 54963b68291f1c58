// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

#include <QtPlugin>

#include "platform/gpsdaddress.h"

class QGeoPositionInfo;
class QImage;
class QNetworkReply;
class QObject;
class QPoint;
class TileFetcher;

/// The positions of a gpsd. GpsdClient does the work.
class GpsdFeed
{
public:
    GpsdFeed() = default;
    GpsdFeed(const GpsdFeed &) = delete;
    GpsdFeed &operator=(const GpsdFeed &) = delete;
    virtual ~GpsdFeed() = default;

    virtual void setWanted(bool wanted) = 0;
};

/// Creates what uses the network.
///
/// The implementation is in the module "trolleo-network": its libraries would take a twentieth of
/// the start and 1.3 MiB of memory, and many runs ask for no position and show no map.
class NetworkFactory
{
public:
    NetworkFactory() = default;
    NetworkFactory(const NetworkFactory &) = delete;
    NetworkFactory &operator=(const NetworkFactory &) = delete;
    virtual ~NetworkFactory() = default;

    /// Returns the factory of the module, which is loaded by the first call, or null if it cannot
    /// be loaded now.
    static NetworkFactory *instance();

    /// The functions are called for the signals of GpsdClient.
    virtual std::unique_ptr<GpsdFeed>
    createGpsdFeed(const GpsdAddress &address,
                   const std::function<void(const QGeoPositionInfo &)> &positioned,
                   const std::function<void()> &connectionLost) = 0;

    /// `replied` is called with a finished reply, which it passes to TileFetcher::handle().
    /// `fetched` is called with the place in the grid and the picture, null if there is none.
    virtual TileFetcher *
    createTileFetcher(const std::function<void(QNetworkReply *)> &replied,
                      const std::function<void(const QPoint &, const QImage &)> &fetched,
                      QObject *parent) = 0;
};

// The number changes with these classes and TileFetcher, so that a module of another version is not
// loaded.
#define NetworkFactory_iid "trolleo.NetworkFactory/1"
Q_DECLARE_INTERFACE(NetworkFactory, NetworkFactory_iid)
