# SPDX-License-Identifier: MIT
"""Without a gpsd the installed program gets positions from a real GeoClue."""
import pathlib
import sys

SOURCES = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(SOURCES / "tests" / "support"))
from namespace import enter_namespace  # noqa: E402

enter_namespace()

import time  # noqa: E402
import unittest  # noqa: E402

import bakery  # noqa: E402
from desktop import Desktop, Home, Program, wait_for  # noqa: E402
from geoclue import GeoClue, second_of_day  # noqa: E402
from neighbours import free_port  # noqa: E402
import nmea  # noqa: E402

REMINDER_METERS = 250
METERS_PER_SECOND = 10
RETURN_SECONDS = 40  # from the service's return, at the latest


class TestGeoClue(unittest.TestCase):
    def setUp(self):
        self.home = Home()
        self.addCleanup(self.home.remove)
        self.desktop = Desktop()
        self.addCleanup(self.desktop.stop)

    def start_service(self, **options):
        self.service = GeoClue(**options)
        self.addCleanup(self.service.stop)

    def walk(self, meters, meters_per_second=METERS_PER_SECOND, **options):
        """Starts a GeoClue with a walk that begins at that distance before Bakery and leads past it."""
        self.start_service(**options)
        self.service.play(nmea.walk_north(bakery.latitude_before(meters), meters + 200, meters_per_second,
                                          bakery.LONGITUDE))

    def tell(self, meters):
        """The receiver says once that it is at that distance before Bakery."""
        fix = nmea.fix(second_of_day(), bakery.latitude_before(meters), bakery.LONGITUDE)
        wait_for("GeoClue to listen", lambda: self.service.feed(fix))

    def start_tracking(self, beside_others=False):
        self.home.write_settings(GpsEnabled="true")
        self.program = Program(self.desktop, self.home, TROLLEO_GPSD=f"127.0.0.1:{free_port()}",
                               DBUS_SYSTEM_BUS_ADDRESS=self.service.address,
                               PULSE_SERVER="unix:/nonexistent")
        self.addCleanup(self.program.stop)
        self.program.wait_for_window()
        self.home.run(bakery.ROWS)
        # Before a position is needed, the service is not used.
        self.assertEqual(self.service.is_in_use(), beside_others)
        self.program.press("Reminder")
        self.program.press("Start")

    def is_reminded(self):
        return next((label.name for label in self.program.find_all("label")
                     if label.name.startswith("Bakery (at ")), None)

    def reminded(self, seconds):
        """Waits for the reminder and returns the time of it."""
        name = wait_for("the reminder of Bakery", self.is_reminded, seconds)
        now = time.monotonic()
        self.assertLess(float(name.removeprefix("Bakery (at ").removesuffix(" meters)")),
                        REMINDER_METERS)
        return now

    def wait_for_walk(self, seconds):
        """Waits until the program has received positions for some time."""
        wait_for("the walk", lambda: len(self.service.receiver.said) > seconds)

    def wait_until_asked(self):
        """Waits until the program has requested positions that it does not get yet."""
        wait_for("the program to ask", lambda: any(
            words in self.service.log.read_text()
            for words in ("Number of connected clients: 1", "waiting for agent")))

    def assert_no_reminder(self, seconds):
        end = time.monotonic() + seconds
        while time.monotonic() < end:
            self.assertIsNone(self.is_reminded())
            time.sleep(0.1)
        self.assertIsNone(self.program.process.poll())

    def test_reminder(self):
        self.walk(405)
        self.start_tracking()
        self.reminded(40)
        self.program.press("Stop tracking")
        wait_for("the service to be left alone", lambda: not self.service.is_in_use())

    def assert_returns(self):
        """Starts tracking, then kills the service and pauses the walk. No reminder may come until both
        return."""
        self.start_tracking()
        self.wait_for_walk(3)
        self.service.kill()
        self.service.pause()
        self.assert_no_reminder(8)

    def assert_reminded_after_return(self):
        returned = time.monotonic()
        self.service.resume()
        self.assertLess(self.reminded(RETURN_SECONDS + 5) - returned, RETURN_SECONDS)

    def test_service_dies_and_comes_back(self):
        self.walk(355)
        self.assert_returns()
        self.service.restart()
        self.assert_reminded_after_return()

    def test_service_dies_and_is_called_back(self):
        # Here the bus restarts it as soon as the program calls it.
        self.walk(355, activatable=True)
        self.assert_returns()
        self.assert_reminded_after_return()

    def test_service_comes_late(self):
        self.walk(355)
        self.service.kill()
        self.start_tracking()
        self.assert_no_reminder(3)
        self.service.restart()
        self.assert_reminded_after_return()

    def test_location_is_off_at_first(self):
        self.walk(355, is_on=False)
        self.start_tracking()
        self.wait_until_asked()
        self.assert_no_reminder(5)
        self.assertEqual(self.service.receiver.said, [])
        self.service.switch(True)
        self.assert_reminded_after_return()

    def test_program_is_denied_at_first(self):
        self.walk(355, allowed=False)
        self.start_tracking()
        self.wait_until_asked()
        self.assert_no_reminder(5)
        self.assertEqual(self.service.receiver.said, [])
        self.service.allow()
        self.assert_reminded_after_return()

    def test_location_is_switched_off_on_the_way(self):
        self.walk(355)
        self.start_tracking()
        self.wait_for_walk(2)
        self.service.switch(False)
        self.service.pause()
        self.assert_no_reminder(5)
        self.service.switch(True)
        self.assert_reminded_after_return()

    def test_nobody_asks_the_person(self):
        # Without an agent GeoClue answers no client until there is one.
        self.walk(355, has_agent=False)
        self.start_tracking()
        self.wait_until_asked()
        self.assert_no_reminder(5)
        self.service.add_agent()
        self.assert_reminded_after_return()

    def test_clock_is_set_back(self):
        # GeoClue passes no position on that is older than the last one.
        hour = 3600
        self.walk(405, meters_per_second=4)
        receiver = self.service.receiver
        before, after = (0, -hour) if second_of_day() > 2 * hour else (hour, 0)
        receiver.clock_offset = before
        self.start_tracking()
        self.wait_for_walk(3)
        receiver.clock_offset = after
        self.assert_no_reminder(45)
        self.reminded(40)

    def test_position_kept_for_another_program(self):
        self.walk(150)
        self.service.receiver.clock_offset = -40  # as if it had been kept for that long
        self.service.add_client()
        self.wait_for_walk(3)
        self.service.pause()
        self.start_tracking(beside_others=True)
        self.assert_no_reminder(8)
        self.service.receiver.clock_offset = 0
        self.service.resume()
        self.reminded(10)

    def test_position_that_soon_follows_another(self):
        # GeoClue does not signal it.
        self.start_service()
        self.start_tracking()
        self.tell(300)
        time.sleep(1)
        self.tell(200)
        self.reminded(10)


if __name__ == "__main__":
    unittest.main(verbosity=2)
