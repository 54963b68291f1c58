# SPDX-License-Identifier: MIT
"""The store that the tests of position sources walk to, with an open list so that the reminder rings."""
LATITUDE = 10.01
LONGITUDE = 20.0
ROWS = f"""
    insert into magazin values (1, 'Bakery', null, null);
    insert into gpscoord values (1, {LATITUDE}, {LONGITUDE}, 0);
    insert into shoplist values (1, 'Bread', 1, 1);
"""
