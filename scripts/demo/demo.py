#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Demonstrates Trolleo on a machine without a receiver and without a network: a walk through a small
town, with a temporary home.

With a display the user operates the program; the walk is repeated until the program is closed. Without a
display the program runs on its own screen, is driven through the whole story, and a picture of each step
is saved.
"""
import contextlib
import math
import os
import shutil
import signal
import subprocess
import sys
import time

OF_THE_PERSON = dict(os.environ)  # before it is changed for a desktop of our own
from town import METERS_PER_DEGREE, SOURCES  # noqa: E402
from surroundings import Surroundings  # noqa: E402
from desktop import PROGRAM, Desktop, pyatspi, stop, wait_for  # noqa: E402
import nmea  # noqa: E402

PICTURES = SOURCES / "build" / "demo"
SIZE = (800, 480)
REMINDER_METERS = 250
BAKERY = "Sunrise Bakery"


def is_near(place, latitude, longitude):
    """Returns whether a latitude and longitude are near enough to another for a reminder."""
    north = (place[0] - latitude) * METERS_PER_DEGREE
    east = (place[1] - longitude) * METERS_PER_DEGREE * math.cos(math.radians(latitude))
    return math.hypot(north, east) < REMINDER_METERS


class Story:
    """Drives the program from one step to the next."""

    def __init__(self, desktop, program, surroundings):
        self.desktop = desktop
        self.program = program
        self.home = surroundings.home
        self.receiver = surroundings.receiver
        self.tiles = surroundings.tiles
        self.number = 0
        self.step = "main page"

    def tell(self, step, account):
        self.number += 1
        self.desktop.picture(PICTURES / f"{self.number}-{step}.png")
        print(f"{self.number} {step}: {account}", flush=True)

    def run(self):
        for step in (self.main_page, self.tracked_stores, self.map, self.tracking, self.reminder,
                     self.shopping, self.checked_off, self.finished):
            self.step = step.__name__.replace("_", " ")
            self.tell(step.__name__.replace("_", "-"), step())

    def main_page(self):
        self.program.wait_for_window()
        wait_for("the main page", lambda: self.program.find("button", "Reminder"))
        return "the program has started, and the walk is on"

    def tracked_stores(self):
        self.program.press("Reminder")
        self.program.press("View tracked")
        rows = wait_for("the tracked stores", self.program.rows)
        assert len(rows) == 3, rows
        nearest, distance = rows[0].rsplit(", ", 1)
        return f"three stores have an open list; {nearest} is the nearest, {distance} away"

    def map(self):
        self.program.press("Map")
        wait_for("the map", lambda: self.program.find("filler", "Map"))
        self.tiles.wait_until_idle()
        return "the position and the nearest store on the map"

    def tracking(self):
        self.program.press("OK")
        self.program.press("Start")
        wait_for("tracking", lambda: self.program.find("button", "Stop").getState().contains(
            pyatspi.STATE_ENABLED))
        return "tracking follows the walk"

    def reminder(self):
        text = wait_for("the reminder", lambda: next(
            (label.name for label in self.program.find_all("label") if " meters)" in label.name),
            None), 90)
        now = time.monotonic()
        assert text.startswith(BAKERY), text
        bakery = self.home.query("select latitude, longitude from gpscoord join magazin using (id) "
                                 f"where name = '{BAKERY}'")[0]
        crossed = next(when for when, line in self.receiver.said
                       if (place := nmea.place_of(line)) is not None and is_near(place, *bakery))
        return f"{text}, {max(0, now - crossed):.1f} s after the walk came within 250 m of it"

    def shopping(self):
        self.program.press("Start Shopping")
        rows = wait_for("the goods", self.program.rows)
        assert len(rows) == 3, rows
        return f"{len(rows)} goods to buy here"

    def checked_off(self):
        while unchecked := [row for row in self.program.rows() if row.endswith(", unchecked")]:
            self.program.select_row(unchecked[0])
            self.program.press("Check")
            wait_for("the check mark",
                     lambda: unchecked[0].replace(", unchecked", ", checked") in self.program.rows())
        return "every one is in the basket"

    def finished(self):
        self.program.press("OK")
        wait_for("the end of the list", lambda: self.home.query(
            "select state from shoplist where name = 'Breakfast'") == [(3,)])
        wait_for("the end of the shopping", lambda: not self.program.rows())
        return "the list is finished, in the database as well"


def run_alone():
    """Returns the exit status."""
    shutil.rmtree(PICTURES, ignore_errors=True)
    PICTURES.mkdir(parents=True)
    story = None
    try:
        with contextlib.ExitStack() as cleanup:
            desktop = Desktop(*SIZE, phone=True)
            cleanup.callback(desktop.stop)
            surroundings = Surroundings(cleanup)
            program = surroundings.start_program(desktop)
            cleanup.callback(program.stop)
            surroundings.furnish()
            story = Story(desktop, program, surroundings)
            story.run()
    except Exception as error:  # any error is reported with the step at which it occurred
        step = story.step if story else "start"
        print(f"demo: the step \"{step}\" failed: {error}", file=sys.stderr)
        return 1
    print(f"The pictures are in {PICTURES.relative_to(SOURCES)}.")
    return 0


def run_for_a_person():
    """Returns the exit status."""
    with contextlib.ExitStack() as cleanup:
        surroundings = Surroundings(cleanup, again_and_again=True)
        environment = {name: value for name, value in OF_THE_PERSON.items()
                       if not name.startswith("XDG_") or name in (
                           "XDG_RUNTIME_DIR", "XDG_SESSION_TYPE", "XDG_CURRENT_DESKTOP")}
        # The key of the display, which X clients look for in the home folder unless this names it.
        environment.setdefault("XAUTHORITY", os.path.join(OF_THE_PERSON["HOME"], ".Xauthority"))
        environment.update(HOME=str(surroundings.home.path), **surroundings.environment)
        process = subprocess.Popen([PROGRAM], env=environment)
        cleanup.callback(stop, process)
        surroundings.furnish()
        print("You walk through a small town, ten times as fast as one does, and again and "
              "again.\nPress \"Reminder\" and \"Start\"; \"View tracked\" shows the "
              "stores, and the map. Leaving the program ends the demo.", flush=True)
        return process.wait()


if __name__ == "__main__":
    # Closing the terminal ends the demo in the regular way, so that nothing is left behind.
    for number in (signal.SIGHUP, signal.SIGINT, signal.SIGTERM):
        signal.signal(number, lambda number, frame: sys.exit(128 + number))
    HAS_DISPLAY = any(OF_THE_PERSON.get(name) for name in ("DISPLAY", "WAYLAND_DISPLAY"))
    sys.exit(run_for_a_person() if HAS_DISPLAY else run_alone())
