# SPDX-License-Identifier: MIT
"""The map of the installed program in a real window, with tiles from a server on loopback."""
import functools
import pathlib
import signal
import sys
import threading
import time
import unittest

SOURCES = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(SOURCES / "tests" / "support"))
from desktop import Desktop, Home, Program, tool, wait_for  # noqa: E402
from tiles import TileServer  # noqa: E402

HOLD = 0.701  # seconds
# Width of a pixel at zoom 16 in degrees of longitude; at the equator its height is the same.
DEGREES_PER_PIXEL = 360 / 2 ** 16 / 256


class TestMap(unittest.TestCase):
    def setUp(self):
        self.home = Home()
        self.addCleanup(self.home.remove)
        self.desktop = Desktop(1920, 1200)
        self.addCleanup(self.desktop.stop)
        self.tiles = TileServer()
        self.addCleanup(self.tiles.stop)
        self.start()

    def start(self, **environment):
        self.program = Program(self.desktop, self.home, TROLLEO_TILE_SERVER=self.tiles.address,
                               **environment)
        self.addCleanup(self.program.stop)
        self.program.wait_for_window()

    def open_map(self):
        """Opens the map of a new store. It shows 0, 0, the last position in a new home."""
        self.program.press("Shops")
        self.program.press("New")
        self.program.press("(set Coordinates)")
        self.program.press("Map")
        wait_for("the map", lambda: self.program.find("filler", "Map"))

    @functools.cached_property
    def middle(self):
        """Returns the middle of the map on a screen with a pixel ratio of 1."""
        x, y, width, height = self.program.place_of(self.program.find("filler", "Map"))
        return x + width // 2, y + height // 2

    def wait_for_tiles(self):
        """Waits for all tiles of the view and returns their number."""
        self.tiles.wait_until_idle()
        return len(self.tiles.paths)

    def mouse(self, *commands):
        self.desktop.run([tool("xdotool"), *map(str, commands)])

    def move_to(self, x, y):
        """Returns the command that moves the pointer to a distance from the middle of the map."""
        return "mousemove", self.middle[0] + x, self.middle[1] + y

    def move(self, x, y):
        self.mouse(*self.move_to(x, y))

    def assert_no_menu(self):
        end = time.monotonic() + 1.2
        while time.monotonic() < end:
            self.assertIsNone(self.program.menu())
            time.sleep(0.05)

    def choose(self, entry):
        """Clicks an entry of the menu, which has two."""
        x, y, width, height = wait_for("the menu", self.program.menu)
        self.mouse("mousemove", x + width // 2, y + height * (1 + 2 * entry) // 4, "click", 1)
        wait_for("the menu to be gone", lambda: self.program.menu() is None)

    def save_store(self):
        self.program.press("Set")
        field = wait_for("the name", lambda: self.program.find("text"))
        field.queryEditableText().setTextContents("Kiosk")
        self.program.press("Save")
        return wait_for("the coordinates", lambda: self.home.query(
            "select latitude, longitude from gpscoord"))[0]

    def test_press_held(self):
        self.open_map()
        self.move(40, 30)
        start = time.monotonic()
        self.mouse("mousedown", 1)
        menu = wait_for("the menu", self.program.menu)
        self.assertGreaterEqual(time.monotonic() - start, HOLD)
        self.assertLess(time.monotonic() - start, HOLD + 1)
        self.assertEqual(menu[:2], (self.middle[0] + 40, self.middle[1] + 30))
        # Releasing the finger over an entry chooses nothing.
        self.move(80, 50)
        self.mouse("mouseup", 1)
        time.sleep(0.2)
        self.assertIsNotNone(self.program.menu())
        self.choose(0)
        latitude, longitude = self.save_store()
        self.assertAlmostEqual(longitude, 40 * DEGREES_PER_PIXEL, delta=DEGREES_PER_PIXEL)
        self.assertAlmostEqual(latitude, -30 * DEGREES_PER_PIXEL, delta=DEGREES_PER_PIXEL)

    def test_short_tap(self):
        self.open_map()
        self.move(0, 0)
        self.mouse("click", 1)
        wait_for("the menu", self.program.menu)
        self.mouse("key", "Escape")
        wait_for("the menu to be gone", lambda: self.program.menu() is None)
        # The page is still shown, so Escape closed only the menu.
        self.assertIsNotNone(self.program.find("filler", "Map"))

    def test_window_that_is_placed_late(self):
        self.program.stop()
        # The window manager is stopped as soon as it has announced itself; new windows must still be
        # shown.
        self.desktop = Desktop(1920, 1200)
        self.desktop.manager.send_signal(signal.SIGSTOP)
        self.addCleanup(self.desktop.stop)
        resume = threading.Timer(3, self.desktop.manager.send_signal, [signal.SIGCONT])
        resume.start()
        self.addCleanup(resume.join)
        self.start()
        self.open_map()
        self.move(0, 0)
        self.mouse("click", 1)
        self.assertEqual(wait_for("the menu", self.program.menu)[:2], self.middle)

    def test_menu_that_is_not_shown_is_none(self):
        self.open_map()
        self.mouse("key", "Menu")
        place = wait_for("the menu", self.program.menu)
        # The state of the X server while Qt is about to place and show a menu.
        [window] = self.program.menu_windows()
        self.mouse("windowunmap", window)
        wait_for("the menu to be hidden", lambda: "IsUnMapped" in self.desktop.run(
            [tool("xwininfo"), "-id", window]))
        self.assertIsNone(self.program.menu())
        self.mouse("windowmap", window)
        self.assertEqual(wait_for("the menu", self.program.menu), place)

    def test_press_that_moves_nine_pixels(self):
        self.open_map()
        self.move(0, 0)
        self.mouse("mousedown", 1)
        self.move(9, -9)
        wait_for("the menu", self.program.menu)
        self.mouse("mouseup", 1)

    def test_press_that_moves_ten_pixels(self):
        self.open_map()
        self.move(0, 0)
        # Without a pause: a finger that rests would open the menu.
        self.mouse("mousedown", 1, *self.move_to(10, 0))
        self.assert_no_menu()
        self.mouse("mouseup", 1)
        self.assert_no_menu()

    def test_drag(self):
        self.open_map()
        before = self.wait_for_tiles()
        self.move(150, 0)
        # Without a pause: a finger that rests would open the menu.
        way = [step for x in range(140, -151, -10)
               for step in (*self.move_to(x, 0), "sleep", 0.005)]
        self.mouse("mousedown", 1, *way, "mouseup", 1)
        wait_for("further tiles", lambda: len(self.tiles.paths) > before)
        self.move(0, 0)
        self.mouse("click", 1)
        self.choose(0)
        latitude, longitude = self.save_store()
        self.assertAlmostEqual(longitude, 300 * DEGREES_PER_PIXEL, delta=DEGREES_PER_PIXEL)
        self.assertAlmostEqual(latitude, 0, delta=DEGREES_PER_PIXEL)

    def test_keys(self):
        self.open_map()
        before = self.wait_for_tiles()
        self.mouse("key", "--repeat", 10, "--delay", 20, "Left")
        wait_for("further tiles", lambda: len(self.tiles.paths) > before)
        self.mouse("key", "--repeat", 5, "--delay", 20, "Up")
        self.mouse("key", "Menu")
        self.choose(0)
        latitude, longitude = self.save_store()
        self.assertAlmostEqual(longitude, -200 * DEGREES_PER_PIXEL, delta=DEGREES_PER_PIXEL)
        self.assertAlmostEqual(latitude, 100 * DEGREES_PER_PIXEL, delta=DEGREES_PER_PIXEL)

    def test_window_that_comes_back_keeps_its_focus(self):
        self.open_map()
        self.mouse("key", "Tab")
        wait_for("the focus", lambda: self.focused() == "Set")
        window = self.program.window_ids()[-1]
        self.mouse("windowminimize", "--sync", window)
        self.mouse("windowactivate", "--sync", window)
        self.wait_for_tiles()
        self.assertEqual(self.focused(), "Set")

    def focused(self):
        node = self.program.focused()
        return node.name if node is not None else None

    def test_dense_screen(self):
        self.open_map()
        usual = self.wait_for_tiles()
        self.program.stop()
        self.tiles.paths.clear()
        # A new home, because some of the tiles would come from the disk cache.
        self.home = Home()
        self.addCleanup(self.home.remove)
        self.start(QT_SCALE_FACTOR="2")
        self.open_map()
        # A pixel of a tile is one pixel of the screen, so the view needs more tiles.
        self.assertGreater(self.wait_for_tiles(), 2 * usual)

    def test_second_start_asks_for_nothing(self):
        self.open_map()
        self.assertGreaterEqual(self.wait_for_tiles(), 12)
        self.assertEqual(len(set(self.tiles.paths)), len(self.tiles.paths))
        self.assertRegex(self.tiles.agents.pop(), r"^Trolleo/\d+\.\d+\.\d+ \(\S+@\S+\)$")
        self.program.stop()
        self.tiles.paths.clear()
        self.start()
        self.open_map()
        time.sleep(2)
        self.assertEqual(self.tiles.paths, [])


if __name__ == "__main__":
    unittest.main(verbosity=2)
