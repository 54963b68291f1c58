// SPDX-License-Identifier: MIT
#pragma once

/// The store being edited and the coordinates taken for it, before they are stored. Latitudes and
/// longitudes are in degrees, altitudes in metres.
class StoreDraft
{
public:
    /// The id of the store being edited. On the store list page, the id of the store tapped last.
    int editedStoreId = 0;

    /// Returns whether a new store is being edited. `editedStoreId` does not refer to it.
    bool isNew() const
    {
        return storeIsNew;
    }
    /// Returns whether coordinates were taken for the store being edited.
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
    /// Returns whether the coordinates page shows taken or stored coordinates.
    bool coordsShown() const
    {
        return isShown;
    }

    /// Starts editing a new store. Coordinates taken before no longer count as taken.
    void editNew();
    /// Starts editing the store `storeId`. Coordinates taken before no longer count as taken.
    void edit(int storeId);
    /// Sets the coordinates of the store that the stores page shows. They do not count as taken.
    void showStored(float storedLatitude, float storedLongitude);
    void setCoordsShown(bool shown)
    {
        isShown = shown;
    }

    void takePosition(float newLatitude, float newLongitude, float newAltitude);
    /// Takes the coordinates of a mark on the map. A mark has no altitude, so the altitude of a
    /// position taken before is kept.
    void takeMark(float newLatitude, float newLongitude);
    /// Sets typed coordinates. They count as taken unless latitude and longitude are equal, as they
    /// are if the fields are empty. Returns whether they count as taken.
    bool takeTyped(float newLatitude, float newLongitude);
    /// The typed coordinates are not valid, so no coordinates count as taken.
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
