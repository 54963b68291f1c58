# SPDX-License-Identifier: MIT
"""The network session that the map opens, with a real NetworkManager in a separate network."""
import pathlib
import sys

SOURCES = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(SOURCES / "tests" / "support"))
from namespace import enter_namespace  # noqa: E402

enter_namespace()

import configparser  # noqa: E402
import time  # noqa: E402
import unittest  # noqa: E402

import bakery  # noqa: E402
from desktop import Desktop, Home, Program, wait_for  # noqa: E402
from neighbours import Receiver, free_port  # noqa: E402
from networkmanager import NetworkManager  # noqa: E402
import nmea  # noqa: E402
from tiles import TileServer  # noqa: E402


class TestNetwork(unittest.TestCase):
    def setUp(self):
        self.home = Home()
        self.addCleanup(self.home.remove)
        self.desktop = Desktop()
        self.addCleanup(self.desktop.stop)
        self.tiles = TileServer()
        self.addCleanup(self.tiles.stop)

    def make_network(self, **options):
        """Adds two network cards, and a profile for each of them."""
        self.network = NetworkManager(**options)
        self.addCleanup(self.network.stop)
        self.network.add_link("house0")
        self.network.add_link("office0")
        self.house = self.network.add_profile("House", "house0", "10.1.0.2/24")
        self.office = self.network.add_profile("Office", "office0", "10.2.0.2/24")

    def launch(self, bus=None, **environment):
        self.program = Program(self.desktop, self.home, TROLLEO_TILE_SERVER=self.tiles.address,
                               DBUS_SYSTEM_BUS_ADDRESS=bus or self.network.address, **environment)
        self.addCleanup(self.program.stop)
        self.program.wait_for_window()

    def start(self, stored=None, bus=None):
        if stored is not None:
            self.home.write_settings(DefaultNetworkConfiguration=stored)
        self.launch(bus)
        self.program.press("Shops")
        self.program.press("New")
        self.program.press("(set Coordinates)")
        self.open_map()

    def open_map(self):
        self.tiles.paths.clear()
        self.program.press("Map")
        wait_for("the map", lambda: self.program.find("filler", "Map"))

    def stored(self):
        settings = configparser.ConfigParser()
        settings.read(self.home.path / ".config" / "Vantor" / "Trolleo.conf")
        return settings.get("General", "DefaultNetworkConfiguration", fallback=None)

    def assert_opens(self, uuid):
        wait_for("the network", lambda: uuid in self.network.active())
        wait_for("the profile to be stored", lambda: self.stored() == uuid)

    def assert_nothing_happens(self, stored=None):
        """Checks that the map is still shown, there is no message, and no profile is stored."""
        end = time.monotonic() + 1
        while time.monotonic() < end:
            self.assertIsNotNone(self.program.find("filler", "Map"))
        self.assertEqual(self.stored(), stored)
        self.assertIsNone(self.program.process.poll())

    def test_stored_profile_is_used(self):
        self.make_network()
        self.network.up("Office")  # the one used last
        self.network.down("Office")
        self.start(self.house)
        self.assert_opens(self.house)
        self.assertEqual(self.network.active(), {self.house})

    def test_map_of_the_tracked_stores(self):
        self.make_network()
        self.home.write_settings(GpsEnabled="true", DefaultNetworkConfiguration=self.house)
        start = bakery.latitude_before(1000)
        receiver = Receiver(nmea.walk_north(start, 300, 1, bakery.LONGITUDE), free_port(), 0.25)
        self.addCleanup(receiver.kill)
        self.launch(TROLLEO_GPSD=receiver.address)
        self.home.run(bakery.ROWS)
        self.program.press("Reminder")
        self.program.press("View tracked")
        wait_for("the tracked stores", lambda: self.program.find("list item"))
        self.assertEqual(self.network.active(), set())
        self.open_map()
        self.assert_opens(self.house)

    def test_nothing_stored(self):
        self.make_network()
        for name in ("House", "Office"):
            self.network.up(name)
            time.sleep(1.1)  # the time of use is stored in seconds
            self.network.down(name)
        self.start()
        self.assert_opens(self.office)
        self.assertEqual(self.network.active(), {self.office})

    def test_stored_profile_is_gone(self):
        self.make_network()
        self.network.delete("House")
        self.start(self.house)
        self.assert_opens(self.office)

    def test_stored_profile_cannot_be_reached(self):
        self.make_network()
        self.network.plug("house0", False)
        wait_for("the cable to be out", lambda: self.network.state("house0") == "unavailable")
        self.start(self.house)
        self.assert_opens(self.office)
        self.assertEqual(self.network.active(), {self.office})

    def test_stored_bridge_is_no_network(self):
        self.make_network()
        self.network.ip("link", "add", "name", "bridge0", "type", "bridge")
        self.addCleanup(self.network.ip, "link", "delete", "bridge0")
        self.network.ip("link", "set", "bridge0", "up")
        self.network.ip("address", "add", "10.3.0.1/24", "dev", "bridge0")
        uuid = wait_for("a profile of the bridge", lambda: self.network.uuid_of("bridge0"))
        self.start(uuid)
        self.assert_opens(self.office if self.office in self.network.active() else self.house)

    def test_connected_computer_is_left_alone(self):
        self.make_network()
        self.network.nmcli("connection", "modify", "Office", "ipv4.gateway", "10.2.0.1")
        self.network.up("Office")
        self.start(self.house)
        wait_for("the profile to be stored", lambda: self.stored() == self.office)
        self.assertEqual(self.network.active(), {self.office})

    def test_connected_device_is_left_alone(self):
        self.make_network()
        # A network without a default route, to which the device was connected.
        other = self.network.add_profile("Other house", "house0", "10.4.0.2/24")
        self.network.up("Other house")
        self.start(self.house)
        wait_for("the profile to be stored", lambda: self.stored() == other)
        self.assertEqual(self.network.active(), {other})

    def test_stored_profile_beside_a_network_that_leads_nowhere(self):
        self.make_network()
        self.network.up("Office")
        self.start(self.house)
        self.assert_opens(self.house)
        self.assertEqual(self.network.active(), {self.house, self.office})

    def test_profile_that_is_up_is_not_brought_up_again(self):
        self.make_network()
        self.network.up("House")
        before = self.network.nmcli("-g", "DBUS-PATH", "connection", "show", "--active")
        self.start(self.house)
        self.assert_nothing_happens(self.house)
        self.assertEqual(
            self.network.nmcli("-g", "DBUS-PATH", "connection", "show", "--active"), before)

    def test_network_manager_comes_later(self):
        self.make_network()
        self.network.kill()
        self.start(self.house)
        wait_for("the tiles", lambda: len(self.tiles.paths) >= 12)
        self.assert_nothing_happens(self.house)
        # A connection is searched for each time the map is shown.
        self.network.restart()
        self.program.press("Type")
        self.open_map()
        self.assert_opens(self.house)

    def test_network_manager_dies(self):
        self.make_network()
        self.network.nmcli("connection", "modify", "Office", "ipv4.dad-timeout", "5000")
        self.start(self.office)
        wait_for("the network to be on its way",
                 lambda: "connecting" in (self.network.state("office0") or ""))
        self.network.kill()
        self.assert_nothing_happens(self.office)
        # There is no second attempt.
        self.network.restart()
        self.program.press("Type")
        self.open_map()
        self.assert_nothing_happens(self.office)
        self.assertEqual(self.network.active(), set())

    def test_permission_denied(self):
        self.make_network(denied="ActivateConnection")
        self.start()
        self.assert_nothing_happens()
        self.assertEqual(self.network.active(), set())

    def test_no_bus(self):
        self.start(bus="unix:path=/nonexistent/bus")
        wait_for("the tiles", lambda: len(self.tiles.paths) >= 12)
        self.assert_nothing_happens()


if __name__ == "__main__":
    unittest.main(verbosity=2)
