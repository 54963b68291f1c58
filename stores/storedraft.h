// SPDX-License-Identifier: MIT
#pragma once

/// What is being edited of a store and is not stored yet: which store, and the coordinates taken
/// for it. Coordinates are in degrees and metres.
class StoreDraft
{
public:
    /// The store being edited; on the store list page the one tapped last.
    int editedStoreId = 0;

    /// What is being edited is no store yet, whatever editedStoreId says.
    bool isNew() const
    {
        return storeIsNew;
    }
    /// Coordinates were taken while this store is being edited.
    bool storeCoordsSet() const
    {
        return isTaken;
    }
    float editedLatitude() const
    {
        return latitude;
    }
    float editedLongitude() const
    {
        return longitude;
    }
    float editedAltitude() const
    {
        return altitude;
    }
    /// The coordinates page shows coordinates that exist.
    bool coordsShown() const
    {
        return isShown;
    }

    /// Coordinates taken for another store are not those of the one that is being edited now.
    void editNew();
    void edit(int storeId);
    /// The stores page shows a store that lies there.
    void showStored(float storedLatitude, float storedLongitude);
    void setCoordsShown(bool shown)
    {
        isShown = shown;
    }

    void takePosition(float newLatitude, float newLongitude, float newAltitude);
    /// A mark on the map has no altitude: that of a position taken before stays.
    void takeMark(float newLatitude, float newLongitude);
    /// Typed coordinates are taken unless they are equal, as empty fields are. Returns whether they
    /// were.
    bool takeTyped(float newLatitude, float newLongitude);
    /// What was typed is no place.
    void refuseTyped()
    {
        isTaken = false;
    }

private:
    void forgetTaken();

    bool storeIsNew = false;
    bool isTaken = false;
    bool isShown = false;
    float latitude = 0;
    float longitude = 0;
    float altitude = 0;
};
