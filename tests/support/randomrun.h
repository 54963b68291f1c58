// SPDX-License-Identifier: MIT
#pragma once

#include <climits>

#include <QRandomGenerator>
#include <QtTest>

/// What tests that draw lots have in common: they are brief in a run of all tests, and as long as
/// one likes by hand.
namespace RandomRun {

/// How often to do it: as the environment's `variable` says, else `usual`.
inline int count(const char *variable, int usual)
{
    bool isNumber = false;
    const int wanted = qEnvironmentVariableIntValue(variable, &isNumber);
    return isNumber ? wanted : usual;
}

/// TROLLEO_TEST_SEED, else any. It is printed, so that a failure can be seen again.
inline quint32 seed()
{
    const quint32 result = qEnvironmentVariableIsSet("TROLLEO_TEST_SEED")
                               ? qEnvironmentVariable("TROLLEO_TEST_SEED").toUInt()
                               : QRandomGenerator::global()->generate();
    qInfo("TROLLEO_TEST_SEED=%u", result);
    return result;
}

/// To be called before the test runs: where `variable` is set, it may take longer than a test of
/// its kind may otherwise.
inline void takeYourTime(const char *variable)
{
    if (qEnvironmentVariableIsSet(variable))
        qputenv("QTEST_FUNCTION_TIMEOUT", QByteArray::number(INT_MAX));
}

} // namespace RandomRun
