// SPDX-License-Identifier: MIT
#include "platform/networkfactory.h"

#include "platform/module.h"

NetworkFactory *NetworkFactory::instance()
{
    static NetworkFactory *factory = nullptr;
    if (!factory) // may be missing for a moment while the program is upgraded
        factory = loadModule<NetworkFactory>(QStringLiteral("trolleo-network"));
    return factory;
}
