// SPDX-License-Identifier: MIT
#pragma once

#include <utility>

#include <QPluginLoader>
#include <QString>

/// Loads the module `name`, a Qt plugin beside the program, and returns its interface. Returns
/// null, with one warning, if that is not possible. The module stays loaded.
template <typename Interface>
Interface *loadModule(const QString &name)
{
    QPluginLoader module(name);
    auto *interface = qobject_cast<Interface *>(module.instance());
    static bool isTold = false;
    if (!interface && !std::exchange(isTold, true)) {
        qWarning("Module %s: %s", qPrintable(name),
                 module.isLoaded() ? "another version" : qPrintable(module.errorString()));
    }
    return interface;
}
