# SPDX-License-Identifier: MIT
"""Without a gpsd the desktop's location service tells the installed program where it is."""
import pathlib
import sys
import unittest

SOURCES = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(SOURCES / "tests" / "support"))
from desktop import Desktop, Home, Program, wait_for  # noqa: E402
from locationservice import LocationService  # noqa: E402
from neighbours import free_port  # noqa: E402


class TestLocationService(unittest.TestCase):
    def test_reminder_and_desktop_id(self):
        home = Home()
        self.addCleanup(home.remove)
        desktop = Desktop()
        self.addCleanup(desktop.stop)
        service = LocationService()
        self.addCleanup(service.stop)
        home.write_settings(GpsEnabled="true")
        program = Program(desktop, home, TROLLEO_GPSD=f"127.0.0.1:{free_port()}",
                          DBUS_SYSTEM_BUS_ADDRESS=service.address,
                          PULSE_SERVER="unix:/nonexistent")
        self.addCleanup(program.stop)
        program.wait_for_window()
        home.run("insert into magazin values (1, 'Bakery', null, null);"
                 "insert into gpscoord values (1, 10.01, 20, 0);"
                 "insert into shoplist values (1, 'Bread', 1, 1);")
        # Before anyone asks for a position the service is left alone.
        self.assertNotIn("Start", service.calls)
        program.press("Reminder")
        program.press("Start")
        wait_for("the service to be started", lambda: "Start" in service.calls)
        self.assertEqual(service.client["DesktopId"].get_string(), "trolleo")
        service.locate(10.0, 20.0)
        service.locate(10.009, 20.0)
        wait_for("the reminder", lambda: any(label.name.startswith("Bakery (at 11")
                                             for label in program.find_all("label")))
        wait_for("the service to be stopped", lambda: "Stop" in service.calls)
        program.press("Stop tracking")


if __name__ == "__main__":
    unittest.main(verbosity=2)
