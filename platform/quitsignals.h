// SPDX-License-Identifier: MIT
#pragma once

/// The signals by which a session or a terminal ends its programs.
namespace QuitSignals {

/// Makes SIGTERM, SIGINT and SIGHUP end the event loop of the application, which must exist. A
/// second signal of the same kind ends the process at once, in case the application hangs. Signals
/// that the parent process has made this one ignore stay ignored.
void watch();

} // namespace QuitSignals
