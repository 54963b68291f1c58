// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

#include <QImage>
#include <QNetworkRequest>
#include <QPoint>
#include <QPointer>
#include <QTimer>
#include <QUrl>

#include "map/tilefetcher.h"

class QNetworkAccessManager;
class QNetworkReply;

/// Implements TileFetcher by Qt's network manager. It bounds what a server can do: time, bytes,
/// redirections, size and kind of the picture.
class HttpTileFetcher : public TileFetcher
{
public:
    using Replied = std::function<void(QNetworkReply *reply)>;
    using Fetched = std::function<void(const QPoint &tile, const QImage &image)>;

    /// See NetworkFactory::createTileFetcher().
    HttpTileFetcher(const Replied &replied, Fetched fetched, QObject *parent);

    void fetch(const QUrl &address, const QPoint &tile) override;
    void giveUp() override;
    void handle(QNetworkReply *reply) override;

    /// Returns the program name, the version and a contact, as the usage policy of the servers
    /// requires.
    static QByteArray userAgent();

private:
    void get(QNetworkRequest request);
    void follow(const QNetworkRequest &request, const QUrl &target);
    void report(const QNetworkRequest &request, const QImage &image);
    QImage imageOf(QNetworkReply *reply);
    QImage cachedImage(const QUrl &source);

    Fetched fetchedFunction;
    QNetworkAccessManager *manager;
    QPointer<QNetworkReply> replyInFlight;
    /// The context of the search for the address of a redirection; null if there is none.
    std::unique_ptr<QObject> lookup;
    QTimer transferTimer;
    /// The number of the tile on its way. A reply for another one was given up.
    int serial = 0;
};
