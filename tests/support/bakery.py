# SPDX-License-Identifier: MIT
"""The store that the tests of position sources walk to, with an open list so that the reminder rings."""
import nmea

LATITUDE = 10.01
LONGITUDE = 20.0
ROWS = f"""
    insert into magazin values (1, 'Bakery', null, null);
    insert into gpscoord values (1, {LATITUDE}, {LONGITUDE}, 0);
    insert into shoplist values (1, 'Bread', 1, 1);
"""


def latitude_before(meters):
    """Returns the latitude at that distance south of it."""
    return LATITUDE - meters / nmea.METERS_PER_DEGREE
