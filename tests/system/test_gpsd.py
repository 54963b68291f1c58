# SPDX-License-Identifier: MIT
"""Tests the ways in which a real gpsd and the other services may start, stop or fail. The reminder must
always come."""
import fcntl
import os
import pathlib
import signal
import subprocess
import sys
import threading
import time
import unittest

SOURCES = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(SOURCES / "tests" / "support"))
import bakery  # noqa: E402
from desktop import PACKAGES, Desktop, Home, Program, stop, tool, wait_for  # noqa: E402
from neighbours import NmeaHost, Receiver, free_port  # noqa: E402
import nmea  # noqa: E402

PACKAGES["systemd-socket-activate"] = "systemd"
POSITION_SECONDS = 40  # from the first delivery, at the latest


def walk(sentences, meters_before=300, first_second=36000, seconds=90):
    """A walk at 10 m a second towards the store and past it."""
    start = bakery.latitude_before(meters_before)
    return "".join(sentences(first_second + second, start + second * 10 / nmea.METERS_PER_DEGREE,
                             bakery.LONGITUDE) for second in range(seconds))


def stand(sentences, first_second=36000, seconds=90):
    """Standing 50 m from the store."""
    return "".join(sentences(first_second + second, bakery.latitude_before(50)
                             + second / 1e7, bakery.LONGITUDE) for second in range(seconds))


def dateless(second, latitude, longitude):
    return nmea.sentence(f"GPRMC,{nmea.time_of_day(second)},A,{nmea.place(latitude, longitude)},"
                         "2.7,0.0,,,,A")


class TestGpsd(unittest.TestCase):
    def setUp(self):
        self.home = Home()
        self.addCleanup(self.home.remove)
        self.desktop = Desktop()
        self.addCleanup(self.desktop.stop)

    def receiver(self, *walks, port=None, seconds_per_sentence=0.5):
        receiver = Receiver(walks, port or free_port(), seconds_per_sentence)
        self.addCleanup(receiver.kill)
        return receiver

    def start(self, gpsd, **extra):
        self.home.write_settings(GpsEnabled="true")
        self.program = Program(self.desktop, self.home, TROLLEO_GPSD=gpsd,
                               PULSE_SERVER="unix:/nonexistent", **extra)
        self.addCleanup(self.program.stop)
        self.program.wait_for_window()
        self.home.run(bakery.ROWS)
        self.program.press("Reminder")
        self.program.press("Start")

    def assert_reminded(self, seconds=POSITION_SECONDS):
        begin = time.monotonic()
        wait_for("the reminder", lambda: any(label.name.startswith("Bakery (at ")
                                             for label in self.program.find_all("label")), seconds)
        print(f"{self.id().split('.')[-1]}: reminded after {time.monotonic() - begin:.1f} s")

    def test_two_receivers_with_clocks_a_second_apart(self):
        self.start(self.receiver(walk(nmea.fix), walk(nmea.fix, first_second=36001)).address)
        self.assert_reminded()

    def test_two_receivers_with_clocks_an_hour_apart(self):
        self.start(self.receiver(walk(nmea.fix), walk(nmea.fix, first_second=39600)).address)
        self.assert_reminded()

    def test_time_ahead_in_one_sentence(self):
        ahead = nmea.sentence(f"GPGGA,{nmea.time_of_day(80000)},{nmea.place(10, bakery.LONGITUDE)},1,08,"
                              "0.9,12.5,M,39.0,M,,")
        self.start(self.receiver(nmea.fix(35999, 10, bakery.LONGITUDE) + ahead + walk(nmea.fix)).address)
        self.assert_reminded()

    def test_dates_missing(self):
        self.start(self.receiver(walk(dateless), seconds_per_sentence=1).address)
        self.assert_reminded()

    def test_no_dates_at_all(self):
        self.start(self.receiver(walk(lambda *where: nmea.fix(*where).splitlines(True)[0]),
                                 seconds_per_sentence=1).address)
        self.assert_reminded()

    def test_gpsd_comes_late(self):
        port = free_port()
        self.start(f"127.0.0.1:{port}")
        time.sleep(8)  # attempts were made after 1, 2 and 4 s
        self.receiver(stand(nmea.fix), port=port)
        self.assert_reminded()

    def test_receiver_comes_late(self):
        port = free_port()
        empty = subprocess.Popen([tool("gpsd"), "-N", "-S", str(port), "-n"],
                                 stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.addCleanup(stop, empty)
        self.start(f"127.0.0.1:{port}")
        time.sleep(5)
        stop(empty)
        self.receiver(stand(nmea.fix), port=port)
        self.assert_reminded()

    def test_gpsd_started_by_its_socket(self):
        host = NmeaHost(stand(nmea.fix), seconds_per_sentence=0.5)
        self.addCleanup(host.stop)
        port = free_port()
        activator = subprocess.Popen(
            # The first socket is the control socket, as in gpsd.socket.
            [tool("systemd-socket-activate"), "-l", str(self.home.path / "control"), "-l",
             f"127.0.0.1:{port}", tool("gpsd"), "-N", "-n", f"tcp://127.0.0.1:{host.port}"],
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.addCleanup(stop, activator)
        self.start(f"127.0.0.1:{port}")
        self.assert_reminded()

    def test_silent_system_bus(self):
        bus = subprocess.Popen([tool("dbus-daemon"), "--session", "--nofork", "--print-address=1"],
                               stdout=subprocess.PIPE, text=True)
        self.addCleanup(bus.stdout.close)
        self.addCleanup(stop, bus)
        address = bus.stdout.readline().strip()
        bus.send_signal(signal.SIGSTOP)
        self.addCleanup(bus.send_signal, signal.SIGCONT)
        begin = time.monotonic()
        self.start(self.receiver(stand(nmea.fix)).address, DBUS_SYSTEM_BUS_ADDRESS=address)
        self.assertLess(time.monotonic() - begin, 10)
        self.assert_reminded()

    def test_unread_standard_error(self):
        read_end, write_end = os.pipe()
        self.addCleanup(os.close, read_end)
        flags = fcntl.fcntl(write_end, fcntl.F_GETFL)
        fcntl.fcntl(write_end, fcntl.F_SETFL, flags | os.O_NONBLOCK)
        try:
            while True:
                os.write(write_end, bytes(4096))
        except BlockingIOError:
            pass  # it is full
        fcntl.fcntl(write_end, fcntl.F_SETFL, flags)
        with os.fdopen(write_end, "wb") as full:
            self.start(self.receiver(stand(nmea.fix)).address, stderr=full)
        self.assert_reminded()
        self.program.press("Stop tracking")
        wait_for("tracking to end", lambda: self.program.find("button", "Start"))


if __name__ == "__main__":
    unittest.main(verbosity=2)
