// SPDX-License-Identifier: MIT
#pragma once

#include "base/frames.h"
#include "gps/coordinates.h"

class MapsWidget;
class MaskedField;
class QStackedWidget;
class QTabWidget;

/// The fields of latitude or longitude, in both notations.
struct AxisFields
{
    /// Text of the hemisphere button for a positive and for a negative angle.
    QString positive;
    QString negative;
    MaskedField *decimal = nullptr;
    MaskedField *degrees = nullptr;
    MaskedField *minutes = nullptr;
    MaskedField *seconds = nullptr;
    QPushButton *hemisphere = nullptr;

    void clear() const;
    void decimalToSexagesimal() const;
    void sexagesimalToDecimal() const;
    /// Returns whether the sexagesimal fields differ from the decimal value converted to them.
    bool sexagesimalDiffers() const;
    void switchHemisphere() const;
    /// Returns the value of the decimal field; 0 if it is not a number.
    double value() const;

private:
    Coordinates::Sexagesimal sexagesimal() const;
};

/// Coordinates of a store: from the GPS, typed, or from the map. "Set" accepts them.
struct CoordinatesPage : ToolbarFrame
{
    enum View { GpsView, EditView, MapView };
    enum Tab { DecimalTab, SexagesimalTab };

    QPushButton *gpsButton = nullptr;
    QPushButton *editButton = nullptr;
    QPushButton *mapButton = nullptr;
    QStackedWidget *views = nullptr;

    QLabel *status = nullptr;
    QLabel *longitudeValue = nullptr;
    QLabel *latitudeValue = nullptr;
    QPushButton *getFromGps = nullptr;

    QTabWidget *tabs = nullptr;
    AxisFields latitude{QStringLiteral("N"), QStringLiteral("S")};
    AxisFields longitude{QStringLiteral("E"), QStringLiteral("W")};

    MapsWidget *map = nullptr;
    QPushButton *set = nullptr;

    void showView(View view) const;
    /// Shows the coordinates in all fields and labels.
    void showCoordinates(const QString &latitudeText, const QString &longitudeText) const;
};
