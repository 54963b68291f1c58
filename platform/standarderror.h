// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// Writing to standard error without ever waiting for whoever reads it: a line that it does not
/// take at once is dropped.
namespace StandardError {

/// Writes a line; `text` is without its end.
void write(const QString &text);

/// Writes from now on all messages of Qt (qDebug() and its kin) so.
void takeMessages();

} // namespace StandardError
