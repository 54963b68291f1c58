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
    /// What the button of the hemisphere reads for a positive and for a negative angle.
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
    /// The sexagesimal fields hold another angle than the decimal one would be written as.
    bool sexagesimalDiffers() const;
    void switchHemisphere() const;
    /// What stands in the decimal field; 0 when that is no number.
    double value() const;

private:
    Coordinates::Sexagesimal sexagesimal() const;
};

/// Coordinates of a store: from the GPS, typed, or from the map. "Set" takes them.
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
    /// Shows these coordinates in all fields and values.
    void showCoordinates(const QString &latitudeText, const QString &longitudeText) const;
};
