// SPDX-License-Identifier: MIT
#include "platform/networkfactory.h"

#include "platform/module.h"

NetworkFactory *NetworkFactory::instance()
{
    static auto *factory = loadModule<NetworkFactory>(QStringLiteral("trolleo-network"));
    return factory;
}
