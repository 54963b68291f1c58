// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// Coordinates in degrees, as people write them.
namespace Coordinates {

/// An angle as degrees, minutes and seconds, each as its field shows it.
struct Sexagesimal
{
    /// South of the equator, or west of the prime meridian.
    bool isNegative = false;
    QString degrees;
    QString minutes;
    /// With two decimals.
    QString seconds;
};

/// `text` as a real number; 0 when it is none.
double number(const QString &text);

/// Degrees and minutes are cut, seconds are rounded.
Sexagesimal toSexagesimal(double degrees);
/// A part that is empty or no number counts as 0.
double fromSexagesimal(const Sexagesimal &angle);

/// With six decimals.
QString decimalText(double degrees);
/// With eight significant digits.
QString text(float degrees);

/// Whether there is a place on earth with these coordinates.
bool isPlace(double latitude, double longitude);

/// Whether latitude and longitude are equal but for a hundred-thousandth, as they are when nothing
/// was entered.
bool areEqual(float latitude, float longitude);

} // namespace Coordinates
