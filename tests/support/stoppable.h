// SPDX-License-Identifier: MIT
#pragma once

#include <QMetaObject>
#include <QString>
#include <QtTest>

/// The place where a test calls a helper. It must be the last parameter of a helper, with the
/// default Caller::here().
struct Caller
{
    // Not all supported compilers have std::source_location.
    static Caller here(const char *file = __builtin_FILE(), int line = __builtin_LINE())
    {
        return {file, line};
    }

    const char *file;
    int line;
};

/// Thrown by a helper if the test cannot continue; the test has then failed.
struct TestStopped
{};

/// Makes the test function fail in the line of the call, and stops it. Outside a test it ends the
/// process.
[[noreturn]] void stopTest(const QString &why, const Caller &caller = Caller::here());

/// A test whose functions can be stopped by helpers; the next function then runs. Qt Test alone
/// would end the process.
template <typename Test>
class Stoppable : public Test
{
public:
    /// Qt Test calls test functions through the meta-object, so this class provides one that
    /// catches the exception.
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
            return; // already reported
        }
    }
};

/// Like QTEST_MAIN and QTEST_GUILESS_MAIN, for tests that use helpers.
#define STOPPABLE_TEST_MAIN(Test) QTEST_MAIN(Stoppable<Test>)
#define STOPPABLE_TEST_GUILESS_MAIN(Test) QTEST_GUILESS_MAIN(Stoppable<Test>)
