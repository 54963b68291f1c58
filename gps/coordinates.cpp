// SPDX-License-Identifier: MIT
#include "gps/coordinates.h"

#include <algorithm>
#include <cmath>

#include <QtNumeric>

namespace {

constexpr double minutesPerDegree = 60;
constexpr double secondsPerMinute = 60;
constexpr double secondsPerDegree = minutesPerDegree * secondsPerMinute;
constexpr double largestLatitude = 90;
constexpr double largestLongitude = 180;

} // namespace

double Coordinates::number(const QString &text)
{
    return text.toDouble();
}

Coordinates::Sexagesimal Coordinates::toSexagesimal(double degrees)
{
    // In binary, 10.1 is slightly less than ten degrees and six minutes.
    constexpr double noise = 1e-9;
    constexpr int decimalsOfSeconds = 2;
    const double value = std::abs(degrees);
    const double whole = std::trunc(value);
    const double rest = value - whole;
    const double minutes =
        std::min(std::trunc(rest * minutesPerDegree + noise), minutesPerDegree - 1);
    const double seconds = std::max(0.0, (rest - minutes / minutesPerDegree) * secondsPerDegree);
    return {.isNegative = degrees < 0,
            .degrees = QString::number(whole, 'f', 0),
            .minutes = QString::number(minutes, 'f', 0),
            .seconds = QString::number(seconds, 'f', decimalsOfSeconds)};
}

double Coordinates::fromSexagesimal(const Sexagesimal &angle)
{
    const double value = number(angle.degrees) + number(angle.minutes) / minutesPerDegree +
                         number(angle.seconds) / secondsPerDegree;
    return angle.isNegative ? -value : value;
}

QString Coordinates::decimalText(double degrees)
{
    constexpr int decimals = 6;
    return QString::number(degrees, 'f', decimals);
}

QString Coordinates::text(float degrees)
{
    constexpr int significantDigits = 8;
    return QString::number(static_cast<double>(degrees), 'g', significantDigits);
}

bool Coordinates::isPlace(double latitude, double longitude)
{
    return std::abs(latitude) <= largestLatitude && std::abs(longitude) <= largestLongitude;
}

bool Coordinates::areEqual(float latitude, float longitude)
{
    // The comparison is relative, so nothing would be equal to 0.
    return qFuzzyCompare(longitude + 1, latitude + 1);
}
