// SPDX-License-Identifier: MIT
#pragma once

#include <QMetaObject>
#include <QString>
#include <QtTest>

/// Where a test calls a helper. To be a helper's last argument, with Caller::here() as its default.
struct Caller
{
    // std::source_location is not for every compiler that builds the tests.
    static Caller here(const char *file = __builtin_FILE(), int line = __builtin_LINE())
    {
        return {file, line};
    }

    const char *file;
    int line;
};

/// What a helper throws when the test cannot go on; the test has failed then.
struct TestStopped
{};

/// Lets the test function fail where it calls a helper, and go no further. Outside of a test, the
/// process ends.
[[noreturn]] void stopTest(const QString &why, const Caller &caller = Caller::here());

/// The test whose functions helpers can stop: the next ones run. Qt Test would end the process.
template <typename Test>
class Stoppable : public Test
{
public:
    /// Qt Test calls by the class's own table of functions, so it gets one that catches.
    const QMetaObject *metaObject() const override
    {
        static const QMetaObject guarded = [] {
            QMetaObject table = Test::staticMetaObject;
            table.d.static_metacall = &call;
            return table;
        }();
        return &guarded;
    }

private:
    static void call(QObject *object, QMetaObject::Call what, int index, void **arguments)
    {
        try {
            Test::staticMetaObject.d.static_metacall(object, what, index, arguments);
        } catch (const TestStopped &) {
            return; // it has been told
        }
    }
};

/// As QTEST_MAIN and QTEST_GUILESS_MAIN, for tests that use helpers.
#define STOPPABLE_TEST_MAIN(Test) QTEST_MAIN(Stoppable<Test>)
#define STOPPABLE_TEST_GUILESS_MAIN(Test) QTEST_GUILESS_MAIN(Stoppable<Test>)
