// SPDX-License-Identifier: MIT
#include <QObject>

#include "network/gpsdclient.h"
#include "network/httptilefetcher.h"
#include "platform/networkfactory.h"

namespace {

class ClientFeed : public GpsdFeed
{
public:
    ClientFeed(const GpsdAddress &address,
               const std::function<void(const QGeoPositionInfo &)> &positioned,
               const std::function<void()> &connectionLost)
        : client(address)
    {
        QObject::connect(&client, &GpsdClient::positioned, positioned);
        QObject::connect(&client, &GpsdClient::connectionLost, connectionLost);
    }

    void setWanted(bool wanted) override
    {
        client.setWanted(wanted);
    }

private:
    GpsdClient client;
};

} // namespace

class NetworkModule : public QObject, public NetworkFactory
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID NetworkFactory_iid)
    Q_INTERFACES(NetworkFactory)

public:
    std::unique_ptr<GpsdFeed>
    createGpsdFeed(const GpsdAddress &address,
                   const std::function<void(const QGeoPositionInfo &)> &positioned,
                   const std::function<void()> &connectionLost) override
    {
        return std::make_unique<ClientFeed>(address, positioned, connectionLost);
    }

    TileFetcher *
    createTileFetcher(const std::function<void(QNetworkReply *)> &replied,
                      const std::function<void(const QPoint &, const QImage &)> &fetched,
                      QObject *parent) override
    {
        return new HttpTileFetcher(replied, fetched, parent);
    }
};

#include "networkmodule.moc"
