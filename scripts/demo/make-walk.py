#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Writes resources/demo/walk.nmea: the sentences of a receiver on the walk of town.json, with a fix
every two seconds at 1.4 metres per second."""
from town import DATA, Town
import nmea

MORNING = 9 * 3600  # second of the day
SECONDS_PER_FIX = 2

(DATA / "walk.nmea").write_text("".join(
    nmea.fix(MORNING + SECONDS_PER_FIX * index, latitude, longitude)
    for index, (latitude, longitude) in enumerate(Town().walk())), newline="")
