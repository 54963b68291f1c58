# SPDX-License-Identifier: MIT
"""Sentences as a receiver writes them."""

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


def fix(second, latitude, longitude):
    """What a receiver says in one second of the day, as GGA and RMC."""
    time = f"{second // 3600:02d}{second // 60 % 60:02d}{second % 60:02d}.00"
    place = f"{angle(latitude, 2, 'NS')},{angle(longitude, 3, 'EW')}"
    return (sentence(f"GPGGA,{time},{place},1,08,0.9,12.5,M,39.0,M,,")
            + sentence(f"GPRMC,{time},A,{place},2.7,0.0,211126,,,A"))


def walk_north(start, meters, meters_per_second, longitude, first_second=36000):
    """A walk along a meridian from a latitude, a fix a second."""
    seconds = int(meters / meters_per_second)
    return "".join(
        fix(first_second + second, start + second * meters_per_second / METERS_PER_DEGREE, longitude)
        for second in range(seconds))


def latitude_of(line):
    """The latitude in an RMC sentence, or None for any other line."""
    fields = line.split(",")
    if not line.startswith("$GPRMC") or fields[2] != "A":
        return None
    degrees = int(fields[3][:2]) + float(fields[3][2:]) / 60
    return -degrees if fields[4] == "S" else degrees
