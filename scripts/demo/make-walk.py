#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Writes resources/demo/walk.nmea: what a receiver says on the walk of town.json, a fix every two
seconds at 1.4 metres a second."""
import pathlib
import sys

from town import FILE, Town

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "tests" / "support"))
import nmea  # noqa: E402

MORNING = 9 * 3600  # second of the day
SECONDS_PER_FIX = 2

(FILE.parent / "walk.nmea").write_text("".join(
    nmea.fix(MORNING + SECONDS_PER_FIX * index, latitude, longitude)
    for index, (latitude, longitude) in enumerate(Town().walk())), newline="")
