// SPDX-License-Identifier: MIT
#include <QtTest>

#include "gps/positionwait.h"

class TestPositionWait : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void asksUntilThereIsAPosition();
    void asksAgainAfterAPauseWhenRefusedAtOnce();
    void asksNobodyAfterTheEnd();
    void sourceThatAnswersAtOnceEndsTheWait();
    void storesPageKeepsTheSourceLooking();
    void positionExpiresAndStaysKnown();
    void missingPositionIsToldOnce();
    void roughPositionIsToldOnceInAWait();

private:
    int asked = 0;
    int givenUp = 0;
    PositionWait::Action answer;
    PositionWait wait{[this] {
                          ++asked;
                          if (answer)
                              answer();
                      },
                      [this] {
                          ++givenUp;
                      }};
};

void TestPositionWait::init()
{
    answer = nullptr;
    wait.distancePending = false;
    wait.end();
    wait.expire();
    wait.tellAnew();
    asked = 0;
    givenUp = 0;
}

void TestPositionWait::asksUntilThereIsAPosition()
{
    QVERIFY(!wait.waitingForFix());
    wait.refused(); // there is no wait
    QCOMPARE(asked, 0);
    wait.begin();
    QVERIFY(wait.waitingForFix());
    QCOMPARE(asked, 1);
    for (int again = 2; again < 10; ++again) {
        wait.refused();
        QCOMPARE(asked, again);
    }
    wait.arrived();
    QVERIFY(wait.haveGpsFix());
    QVERIFY(wait.waitingForFix()); // until the waiting page has taken the position
    wait.satisfy();
    QVERIFY(!wait.waitingForFix());
    QCOMPARE(givenUp, 0);
}

void TestPositionWait::asksAgainAfterAPauseWhenRefusedAtOnce()
{
    answer = [this] {
        wait.refused();
    };
    wait.begin();
    QCOMPARE(asked, 1);
    QTest::qWait(500);
    QCOMPARE(asked, 1);
    QTRY_COMPARE_WITH_TIMEOUT(asked, 2, 2000);
}

void TestPositionWait::asksNobodyAfterTheEnd()
{
    answer = [this] {
        wait.refused();
    };
    wait.begin();
    wait.end();
    QVERIFY(!wait.waitingForFix());
    QCOMPARE(givenUp, 1);
    QTest::qWait(1500);
    QCOMPARE(asked, 1);
    wait.end(); // there is nothing left to give up
    QCOMPARE(givenUp, 1);
}

void TestPositionWait::sourceThatAnswersAtOnceEndsTheWait()
{
    answer = [this] {
        wait.satisfy();
    };
    wait.begin();
    QVERIFY(!wait.waitingForFix());
}

void TestPositionWait::storesPageKeepsTheSourceLooking()
{
    wait.begin();
    wait.distancePending = true;
    wait.end();
    QVERIFY(!wait.waitingForFix());
    QCOMPARE(givenUp, 0);
}

void TestPositionWait::positionExpiresAndStaysKnown()
{
    wait.arrived();
    wait.expire();
    QVERIFY(!wait.haveGpsFix());
    QVERIFY(wait.positionKnown());
}

void TestPositionWait::missingPositionIsToldOnce()
{
    QVERIFY(wait.tellsMissing());
    QVERIFY(!wait.tellsMissing());
    wait.roughArrived();
    QVERIFY(wait.tellsMissing());
    wait.arrived();
    QVERIFY(wait.tellsMissing());
    wait.begin();
    QVERIFY(wait.tellsMissing());
}

void TestPositionWait::roughPositionIsToldOnceInAWait()
{
    QVERIFY(wait.tellsRough());
    QVERIFY(!wait.tellsRough());
    wait.arrived();
    QVERIFY(!wait.tellsRough());
    wait.begin();
    QVERIFY(wait.tellsRough());
}

QTEST_GUILESS_MAIN(TestPositionWait)
#include "tst_positionwait.moc"
