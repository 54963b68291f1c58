// SPDX-License-Identifier: MIT
#pragma once

#include <QPluginLoader>
#include <QString>

/// Loads the module `name`, a Qt plugin beside the program, and returns its interface. Returns
/// null, with a warning, if that is not possible. The module stays loaded.
template <typename Interface>
Interface *loadModule(const QString &name)
{
    QPluginLoader module(name);
    auto *interface = qobject_cast<Interface *>(module.instance());
    if (!interface)
        qWarning("%s", qPrintable(module.errorString()));
    return interface;
}
