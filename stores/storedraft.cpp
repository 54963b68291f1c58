// SPDX-License-Identifier: MIT
#include "stores/storedraft.h"
#include "gps/coordinates.h"

void StoreDraft::editNew()
{
    storeIsNew = true;
    forgetTaken();
    latitude = 0;
    longitude = 0;
}

void StoreDraft::edit(int storeId)
{
    editedStoreId = storeId;
    storeIsNew = false;
    forgetTaken();
}

void StoreDraft::showStored(float storedLatitude, float storedLongitude)
{
    forgetTaken();
    latitude = storedLatitude;
    longitude = storedLongitude;
}

void StoreDraft::forgetTaken()
{
    isTaken = false;
    altitude = 0;
}

void StoreDraft::takePosition(float newLatitude, float newLongitude, float newAltitude)
{
    takeMark(newLatitude, newLongitude);
    altitude = newAltitude;
}

void StoreDraft::takeMark(float newLatitude, float newLongitude)
{
    latitude = newLatitude;
    longitude = newLongitude;
    isTaken = true;
}

bool StoreDraft::takeTyped(float newLatitude, float newLongitude)
{
    takeMark(newLatitude, newLongitude);
    isTaken = !Coordinates::areEqual(newLatitude, newLongitude);
    return isTaken;
}
