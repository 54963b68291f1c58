// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// Non-blocking output to standard error: a line that cannot be written at once is dropped.
namespace StandardError {

/// Writes a line; `text` has no line ending.
void write(const QString &text);

/// Installs a handler that writes all Qt messages (qDebug() and similar) in this way.
void takeMessages();

} // namespace StandardError
