// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// Conversion and formatting of coordinates in degrees.
namespace Coordinates {

/// An angle in degrees, minutes and seconds, as text for the fields.
struct Sexagesimal
{
    /// True south of the equator, or west of the prime meridian.
    bool isNegative = false;
    QString degrees;
    QString minutes;
    /// With two decimals.
    QString seconds;
};

/// Returns `text` as a number, or 0 if it is not a number.
double number(const QString &text);

/// Degrees and minutes are truncated, seconds are rounded.
Sexagesimal toSexagesimal(double degrees);
/// A part that is empty or not a number counts as 0.
double fromSexagesimal(const Sexagesimal &angle);

/// Returns `degrees` with six decimals.
QString decimalText(double degrees);
/// Returns `degrees` with eight significant digits.
QString text(float degrees);

/// Returns whether the coordinates are within the range of latitudes and longitudes.
bool isPlace(double latitude, double longitude);

/// Returns whether latitude and longitude are equal within a relative difference of 1e-5, as they
/// are if nothing was entered.
bool areEqual(float latitude, float longitude);

} // namespace Coordinates
