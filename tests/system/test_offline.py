# SPDX-License-Identifier: MIT
"""The installed program on a computer whose only network is the loopback."""
import pathlib
import sys

SOURCES = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(SOURCES / "tests" / "support"))
from namespace import enter_namespace  # noqa: E402

enter_namespace()

import time  # noqa: E402
import unittest  # noqa: E402

from desktop import Desktop, Home, Program, wait_for  # noqa: E402

LONGEST_PAUSE = 0.1  # seconds for which the window may not respond
STORES = """
    insert into magazin values (1, 'Bakery', null, null);
    insert into gpscoord values (1, 10.01, 20.0, 0);
    insert into shoplist values (1, 'Bread', 1, 1);
    insert into purchase values (1, 'Rye', 1, 2, 0);
"""


class TestOffline(unittest.TestCase):
    def setUp(self):
        self.home = Home()
        self.addCleanup(self.home.remove)
        self.desktop = Desktop()
        self.addCleanup(self.desktop.stop)
        # The public server, which cannot be reached here.
        self.program = Program(self.desktop, self.home, TROLLEO_TILE_SERVER="",
                               DBUS_SYSTEM_BUS_ADDRESS="unix:path=/nonexistent/bus")
        self.addCleanup(self.program.stop)
        self.program.wait_for_window()
        self.home.run(STORES)

    def longest_pause(self, button, seconds):
        """Presses a button and returns the longest response time of the window during the press and the
        following seconds."""
        component = self.program.find("frame", "Trolleo").queryComponent()
        actions = self.program.find("check box", button).queryAction()
        longest = 0
        end = time.monotonic() + seconds
        asked = time.monotonic()
        actions.doAction(0)
        while asked < end:
            component.getExtents(0)
            now = time.monotonic()
            longest = max(longest, now - asked)
            asked = now
        return longest

    def test_every_page_works(self):
        for button, shown in (("Shopping", "Start"), ("Reminder", "View tracked"),
                              ("Shops", "Edit Store")):
            self.program.press(button)
            wait_for(f"the page of {button}",
                     lambda name=shown: any(name in found.name
                                            for found in self.program.find_all("button")))
            self.program.press("Back")

    def test_map_keeps_the_window_awake(self):
        self.program.press("Shops")
        self.program.press("New")
        self.program.press("(set Coordinates)")
        pauses = []
        # A single pause may be caused by a busy machine, a repeated one by the program.
        for _ in range(3):
            pauses.append(self.longest_pause("Map", 3))
            self.assertIsNotNone(self.program.find("filler", "Map"))
            if pauses[-1] < LONGEST_PAUSE:
                break
            self.program.press("Type")
        print(f"longest pauses: {', '.join(f'{pause * 1000:.0f} ms' for pause in pauses)}")
        self.assertLess(min(pauses), LONGEST_PAUSE)


if __name__ == "__main__":
    unittest.main(verbosity=2)
