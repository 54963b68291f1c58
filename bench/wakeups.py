#!/usr/bin/python3 -B
# SPDX-License-Identifier: MIT
"""Measures how often tracking wakes the processor, against a program that only polls gpsd. The argument
is the polling program. Prints rows of the table of scripts/bench."""
import pathlib
import subprocess
import sys
import time

SOURCES = pathlib.Path(__file__).resolve().parents[1]
sys.path.insert(0, str(SOURCES / "tests" / "support"))
from desktop import Desktop, Home, Program, stop, wait_for  # noqa: E402
from neighbours import Receiver, free_port, wake_ups, woken  # noqa: E402
import nmea  # noqa: E402

SECONDS = 30
GOAL = 1.0  # per second


def rate(pid):
    time.sleep(5)  # started actions finish
    before = wake_ups(pid)
    time.sleep(SECONDS)
    return woken(before, wake_ups(pid)) / SECONDS


def measure(fixes_per_second, poller):
    """Returns the rates of the program and of the polling program, which follow the same receiver."""
    walk = nmea.walk_north(0, 3000, 1, 20)  # far from the store
    receiver = Receiver(walk, free_port(), 1 / fixes_per_second / 2)
    home = Home()
    desktop = Desktop()
    floor = subprocess.Popen([poller, str(receiver.port)])
    home.write_settings(GpsEnabled="true")
    program = Program(desktop, home, TROLLEO_GPSD=receiver.address, PULSE_SERVER="unix:/nonexistent")
    try:
        program.wait_for_window()
        home.run("insert into magazin values (1, 'Bakery', null, null);"
                 "insert into gpscoord values (1, 60, 20, 0);"
                 "insert into shoplist values (1, 'Bread', 1, 1);")
        program.press("Reminder")
        program.press("Start")
        wait_for("tracking", lambda: program.find("button", "Stop"))
        return rate(program.process.pid), rate(floor.pid)
    finally:
        program.stop()
        stop(floor)
        desktop.stop()
        home.remove()
        receiver.kill()


for fixes in (1, 10):
    ours, least = measure(fixes, sys.argv[1])
    print(f"{f'wake-ups a second, {fixes} fixes a second':<34} {'':>8} {ours:12.4f} {least:12.4f} "
          f"{ours / least:8.2f} {GOAL:8.2f}", flush=True)
