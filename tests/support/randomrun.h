// SPDX-License-Identifier: MIT
#pragma once

#include <climits>

#include <QRandomGenerator>
#include <QtTest>

/// Functions for randomised tests. They are short in a run of all tests, and arbitrarily long when
/// run by hand.
namespace RandomRun {

/// Returns the number of repetitions: the environment's `variable`, or else `usual`.
inline int count(const char *variable, int usual)
{
    bool isNumber = false;
    const int wanted = qEnvironmentVariableIntValue(variable, &isNumber);
    return isNumber ? wanted : usual;
}

/// Returns TROLLEO_TEST_SEED, or else a random seed. Prints it, so that a failure can be
/// reproduced.
inline quint32 seed()
{
    const quint32 result = qEnvironmentVariableIsSet("TROLLEO_TEST_SEED")
                               ? qEnvironmentVariable("TROLLEO_TEST_SEED").toUInt()
                               : QRandomGenerator::global()->generate();
    qInfo("TROLLEO_TEST_SEED=%u", result);
    return result;
}

/// Must be called before the test runs. If `variable` is set, it removes the usual time limit of a
/// test.
inline void takeYourTime(const char *variable)
{
    if (qEnvironmentVariableIsSet(variable))
        qputenv("QTEST_FUNCTION_TIMEOUT", QByteArray::number(INT_MAX));
}

} // namespace RandomRun
