# SPDX-License-Identifier: MIT
"""NMEA sentences as a receiver writes them."""
import math

METERS_PER_DEGREE = 111195.0  # of latitude


def sentence(body):
    checksum = 0
    for character in body.encode():
        checksum ^= character
    return f"${body}*{checksum:02X}\r\n"


def angle(degrees, width, letters):
    magnitude = abs(degrees)
    whole = int(magnitude)
    return f"{whole:0{width}d}{(magnitude - whole) * 60:09.6f},{letters[degrees < 0]}"


def rounded(degrees):
    """Returns the angle with the precision of a sentence."""
    magnitude = abs(degrees)
    whole = int(magnitude)
    return math.copysign(whole + float(f"{(magnitude - whole) * 60:.6f}") / 60, degrees)


def time_of_day(second):
    return f"{second // 3600:02d}{second // 60 % 60:02d}{second % 60:02d}.00"


def place(latitude, longitude):
    return f"{angle(latitude, 2, 'NS')},{angle(longitude, 3, 'EW')}"


def rmc(second, latitude, longitude):
    """Returns an RMC sentence: position, time and date, for one second of the day."""
    return sentence(f"GPRMC,{time_of_day(second)},A,{place(latitude, longitude)},2.7,0.0,211126,,,A")


def fix(second, latitude, longitude):
    """Returns the sentences of a receiver for one second of the day, including the altitude."""
    return (sentence(f"GPGGA,{time_of_day(second)},{place(latitude, longitude)},1,08,0.9,12.5,M,"
                     "39.0,M,,") + rmc(second, latitude, longitude))


def walk_north(start, meters, meters_per_second, longitude, first_second=36000):
    """Returns a walk northwards along a meridian, with one fix per second."""
    seconds = int(meters / meters_per_second)
    return "".join(
        fix(first_second + second, start + second * meters_per_second / METERS_PER_DEGREE, longitude)
        for second in range(seconds))


def place_of(line):
    """Returns the latitude and longitude in an RMC sentence, or None for any other line."""
    fields = line.split(",")
    if not line.startswith("$GPRMC") or fields[2] != "A":
        return None
    latitude = int(fields[3][:2]) + float(fields[3][2:]) / 60
    longitude = int(fields[5][:3]) + float(fields[5][3:]) / 60
    return (-latitude if fields[4] == "S" else latitude,
            -longitude if fields[6] == "W" else longitude)
