#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Takes pictures of every page, in both languages and orientations, with the stores and lists of the
demo. Writes them to build/screenshots/<language>-<orientation>/."""
import contextlib
import shutil
import xml.etree.ElementTree

from town import SOURCES
from surroundings import ENGLISH, RUSSIAN, Surroundings
from desktop import Desktop, wait_for

PICTURES = SOURCES / "build" / "screenshots"
LANGUAGES = {"en": ENGLISH, "ru": RUSSIAN}
ORIENTATIONS = {"landscape": (800, 480), "portrait": (480, 800)}
FIXES_BEFORE_THE_BAKERY = 170  # are skipped, so that the reminder comes half a minute earlier
NO_RECEIVER = "127.0.0.1:9"


def texts(language):
    """Returns the texts of the program by their keys."""
    file = SOURCES / "resources" / "i18n" / f"trolleo_{language}.ts"
    return {message.find("source").text: message.find("translation").text
            for message in xml.etree.ElementTree.parse(file).iter("message")}


class Tour:
    """Goes from page to page as a user does."""

    def __init__(self, folder, desktop, surroundings, language):
        folder.mkdir(parents=True)
        self.folder = folder
        self.desktop = desktop
        self.surroundings = surroundings
        self.tr = texts(language)
        self.program = None

    def start(self, **environment):
        self.program = self.surroundings.start_program(self.desktop, **environment)
        self.program.wait_for_window()

    def stop(self):
        if self.program:
            self.program.stop()

    def picture(self, name):
        self.desktop.picture(self.folder / f"{name}.png")

    def press(self, *keys):
        for key in keys:
            self.program.press(self.tr.get(key, key))

    def select(self, name):
        rows = wait_for("the rows", self.program.rows)
        self.program.select_row(next(row for row in rows if row.startswith(name)))

    def shopping(self):
        self.press("Shopping", "Lists")
        self.select("Breakfast")
        self.picture("06-shopping-lists")
        self.press("Select")
        self.picture("01-shopping")
        self.press("Edit")
        self.picture("05-list-edit")
        self.press("Delete")
        self.picture("16-confirmation")
        self.press("No", "Back", "Goods")
        self.picture("04-items-list")
        self.press("New item")
        self.picture("07-item-edit")
        self.press("Back", "Back", "Start")
        self.select("Bread")
        self.press("Check")
        self.picture("13-do-shopping")
        self.press("Back", "Back")

    def stores(self):
        self.press("Shops", "Stores")
        self.select("Green Grocer")
        self.picture("08-store-list")
        self.press("Select")
        self.picture("03-stores")
        self.press("Edit Store")
        self.picture("09-store-edit")
        self.press("Food")
        wait_for("the categories", self.program.rows)
        self.picture("10-category-list")
        self.press("New category")
        self.picture("11-category-edit")
        self.press("Back", "Back", "(set Coordinates)")
        self.picture("19-coordinates")
        self.press("Map")
        self.surroundings.tiles.wait_until_idle()
        self.picture("19-coordinates-map")
        self.press("Back", "Back", "Back")

    def tracking(self):
        self.press("Reminder", "View tracked")
        wait_for("the tracked stores", self.program.rows)
        self.picture("17-tracked-list")
        self.press("Map")
        self.surroundings.tiles.wait_until_idle()
        self.picture("17-tracked-map")
        self.press("OK", "Start")
        self.picture("02-tracking")
        wait_for("the reminder", lambda: self.program.find(
            "button", self.tr["Start Shopping"]), 60)
        self.picture("18-reminder")
        self.press("Stop tracking", "Back")

    def run(self):
        self.start()
        self.surroundings.furnish()
        self.picture("00-main")
        self.press("Help")
        self.picture("12-message")
        self.press("OK")
        self.shopping()
        self.stores()
        self.tracking()
        self.press("Options")
        self.picture("14-options")
        self.program.stop()
        # Without a receiver the wait for a position does not end.
        self.start(TROLLEO_GPSD=NO_RECEIVER)
        self.press("Reminder", "View tracked")
        wait_for("the wait", lambda: self.program.find("label", self.tr["Update in Progress"]))
        self.picture("15-waiting")
        self.program.stop()


def main():
    shutil.rmtree(PICTURES, ignore_errors=True)
    for language, language_id in LANGUAGES.items():
        for orientation, size in ORIENTATIONS.items():
            with contextlib.ExitStack() as cleanup:
                desktop = Desktop(*size, phone=True)
                cleanup.callback(desktop.stop)
                surroundings = Surroundings(cleanup, language_id, first_fix=FIXES_BEFORE_THE_BAKERY)
                tour = Tour(PICTURES / f"{language}-{orientation}", desktop, surroundings, language)
                cleanup.callback(tour.stop)
                tour.run()
                print(f"{len(list(tour.folder.iterdir()))} pictures in "
                      f"{tour.folder.relative_to(SOURCES)}", flush=True)


if __name__ == "__main__":
    main()
