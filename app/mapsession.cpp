// SPDX-License-Identifier: MIT
#include "app/shopwindow.h"
#include "base/trsettings.h"
#include "platform/bearer.h"

using namespace Qt::StringLiterals;

/// Opens the network session for the tiles of the map, unless a session exists or is being opened.
/// The user is not told about the progress.
void ShopWindow::openNetworkSession()
{
    if (networkSession || networkManager)
        return;
    networkManager = new QNetworkConfigurationManager(this);
    connect(networkManager, &QNetworkConfigurationManager::updateCompleted, this,
            &ShopWindow::startNetworkSession);
    networkManager->updateConfigurations();
}

void ShopWindow::startNetworkSession()
{
    const QNetworkConfigurationManager *manager = networkManager;
    networkManager->deleteLater();
    networkManager = nullptr;
    if (!manager->capabilities().testFlag(QNetworkConfigurationManager::NetworkSessionRequired))
        return;
    QNetworkConfiguration configuration =
        manager->configurationFromIdentifier(TrSettings::instance().defaultNetworkConfiguration());
    if (!configuration.state().testFlag(QNetworkConfiguration::Discovered))
        configuration = manager->defaultConfiguration();
    networkSession = new QNetworkSession(configuration, this);
    connect(networkSession, &QNetworkSession::opened, this, &ShopWindow::sessionOpened);
    networkSession->open();
}

void ShopWindow::sessionOpened()
{
    const QNetworkConfiguration configuration = networkSession->configuration();
    const QString identifier =
        configuration.type() == QNetworkConfiguration::UserChoice
            ? networkSession->sessionProperty(u"UserChoiceConfiguration"_s).toString()
            : configuration.identifier();
    TrSettings::instance().setDefaultNetworkConfiguration(identifier);
}
