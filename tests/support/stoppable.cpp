// SPDX-License-Identifier: MIT
#include "tests/support/stoppable.h"

void stopTest(const QString &why, const Caller &caller)
{
    if (!QTest::currentTestFunction())
        qFatal("%s:%d: %s", caller.file, caller.line, qPrintable(why));
    QTest::qFail(qPrintable(why), caller.file, caller.line);
    throw TestStopped();
}
