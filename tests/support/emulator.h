// SPDX-License-Identifier: MIT
#pragma once

#include <utility>

#include <QCoreApplication>
#include <QProcess>
#include <QStringList>

/// Tests for another architecture run in an emulator, which is slow and must also start the
/// children of tests. The environment variable TROLLEO_EMULATOR is its path.
namespace Emulator {

inline bool isUsed()
{
    return qEnvironmentVariableIsSet("TROLLEO_EMULATOR");
}

/// Starts the program of this test once more, as `process` and with `arguments`.
inline void startSelf(QProcess &process, QStringList arguments)
{
    QString program = QCoreApplication::applicationFilePath();
    if (isUsed())
        arguments.prepend(std::exchange(program, qEnvironmentVariable("TROLLEO_EMULATOR")));
    process.start(program, arguments);
}

} // namespace Emulator

/// The program starts the player of the alarm by itself, which takes no emulator then.
#define SKIP_WITHOUT_PLAYER()                                                                      \
    if (Emulator::isUsed())                                                                        \
    QSKIP("The program cannot start the player of another architecture.")
