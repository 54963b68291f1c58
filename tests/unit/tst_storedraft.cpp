// SPDX-License-Identifier: MIT
#include <QtTest>

#include "stores/storedraft.h"

class TestStoreDraft : public QObject
{
    Q_OBJECT

private slots:
    void newStoreHasNoCoordinates();
    void otherStoreGetsNoneOfThem();
    void equalCoordinatesAreNotTaken();
    void refusedTextTakesNothing();
    void markKeepsTheAltitude();
    void storedPlaceIsNotTaken();
};

/// Returns a draft of store 3 with a position taken for it.
static StoreDraft takenDraft()
{
    StoreDraft draft;
    draft.edit(3);
    draft.takePosition(50, 14, 300);
    return draft;
}

void TestStoreDraft::newStoreHasNoCoordinates()
{
    StoreDraft draft = takenDraft();
    QVERIFY(draft.storeCoordsSet());
    QVERIFY(!draft.isNew());
    draft.editNew();
    QVERIFY(draft.isNew());
    QVERIFY(!draft.storeCoordsSet());
    QCOMPARE(draft.editedLatitude(), 0);
    QCOMPARE(draft.editedLongitude(), 0);
    QCOMPARE(draft.editedAltitude(), 0);
}

void TestStoreDraft::otherStoreGetsNoneOfThem()
{
    StoreDraft draft = takenDraft();
    draft.edit(4);
    QCOMPARE(draft.editedStoreId, 4);
    QVERIFY(!draft.storeCoordsSet());
    draft.takeMark(1, 2);
    QCOMPARE(draft.editedAltitude(), 0);
}

void TestStoreDraft::equalCoordinatesAreNotTaken()
{
    StoreDraft draft = takenDraft();
    QVERIFY(!draft.takeTyped(7, 7));
    QVERIFY(!draft.storeCoordsSet());
    QVERIFY(draft.takeTyped(7, 8));
    QVERIFY(draft.storeCoordsSet());
    QCOMPARE(draft.editedLatitude(), 7);
    QCOMPARE(draft.editedLongitude(), 8);
}

void TestStoreDraft::refusedTextTakesNothing()
{
    StoreDraft draft = takenDraft();
    draft.refuseTyped();
    QVERIFY(!draft.storeCoordsSet());
}

void TestStoreDraft::markKeepsTheAltitude()
{
    StoreDraft draft = takenDraft();
    draft.takeMark(51, 15);
    QCOMPARE(draft.editedLatitude(), 51);
    QCOMPARE(draft.editedLongitude(), 15);
    QCOMPARE(draft.editedAltitude(), 300);
}

void TestStoreDraft::storedPlaceIsNotTaken()
{
    StoreDraft draft = takenDraft();
    draft.showStored(60, 20);
    QVERIFY(!draft.storeCoordsSet());
    QCOMPARE(draft.editedLatitude(), 60);
    QCOMPARE(draft.editedAltitude(), 0);
}

QTEST_APPLESS_MAIN(TestStoreDraft)
#include "tst_storedraft.moc"
