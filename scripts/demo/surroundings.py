# SPDX-License-Identifier: MIT
"""The environment of the program in the demo."""
import contextlib
import sqlite3

from town import DATA, Town
from desktop import Home, Program, wait_for
from neighbours import Receiver, free_port
from tiles import TileServer

ENGLISH, RUSSIAN = 1, 2  # language ids of the settings
FIX_SECONDS = 0.2  # the walk has a fix every two seconds, so it is played at ten times the speed
SENTENCES_PER_FIX = 2


class Surroundings:
    """A home with stores and lists, a receiver on a walk, and a map of the town."""

    def __init__(self, cleanup, language=ENGLISH, again_and_again=False, first_fix=0):
        """`cleanup` ends everything that is started here. The walk begins at the fix `first_fix`."""
        self.home = Home()
        cleanup.callback(self.home.remove)
        self.home.write_settings(GpsEnabled="true", LanguageId=language)
        self.tiles = TileServer(draw=Town().tile)
        cleanup.callback(self.tiles.stop)
        sentences = (DATA / "walk.nmea").read_text().splitlines(keepends=True)
        self.receiver = Receiver("".join(sentences[first_fix * SENTENCES_PER_FIX:]), free_port(),
                                 FIX_SECONDS / SENTENCES_PER_FIX, again_and_again)
        cleanup.callback(self.receiver.kill)
        self.environment = {"TROLLEO_GPSD": self.receiver.address,
                            "TROLLEO_TILE_SERVER": self.tiles.address}

    def start_program(self, desktop, **extra):
        """Starts the program on our own desktop. If there is no sound server, none is started for it."""
        return Program(desktop, self.home, PULSE_SERVER="unix:/nonexistent",
                       **dict(self.environment, **extra))

    def furnish(self):
        """Fills the database, after the program has created its tables."""
        def has_tables():
            with contextlib.suppress(sqlite3.OperationalError):
                return len(self.home.query("select * from sqlite_master where type = 'table'")) == 7
            return False

        wait_for("the database", has_tables)
        self.home.run((DATA / "sample.sql").read_text())
