# SPDX-License-Identifier: MIT
"""The installed program on a walk: a real gpsd delivers the positions, and the sound output is recorded."""
import array
import math
import pathlib
import shutil
import subprocess
import sys
import time
import unittest
import wave

SOURCES = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(SOURCES / "tests" / "support"))
from desktop import Desktop, Home, Program, stop, tool, wait_for  # noqa: E402
from neighbours import Receiver, SoundServer, children_of, free_port, wake_ups, woken  # noqa: E402
import nmea  # noqa: E402

BAKERY = 10.01  # degrees north; Dairy is a kilometre farther, and Tools another
DAIRY = 10.02
TOOLS = 10.03
LONGITUDE = 20.0
STORES = f"""
    insert into magazin values (1, 'Bakery', null, null), (2, 'Dairy', null, null),
                               (3, 'Tools', null, null);
    insert into gpscoord values (1, {BAKERY}, {LONGITUDE}, 0), (2, {DAIRY}, {LONGITUDE}, 0),
                                (3, {TOOLS}, {LONGITUDE}, 0);
    insert into shoplist values (1, 'Bread', 1, 1), (2, 'Milk', 2, 1), (3, 'Nails', 3, 1);
    insert into purchase values (1, 'Rye', 1, 2, 0), (2, 'Butter', 2, 1, 0);
"""
REMINDER_METERS = 250
UPDATE_SECONDS = 3  # from one position to the next
ALARM = pathlib.Path("/opt/trolleo/Alarm5.wav")


def meters(latitude, store):
    return abs(latitude - store) * nmea.METERS_PER_DEGREE


class TestReminder(unittest.TestCase):
    def setUp(self):
        self.home = Home()
        self.addCleanup(self.home.remove)
        self.desktop = Desktop()
        self.addCleanup(self.desktop.stop)

    def play(self, walk, port=None, seconds_per_sentence=0.25):
        receiver = Receiver(walk, port or free_port(), seconds_per_sentence)
        self.addCleanup(receiver.kill)
        return receiver

    def start(self, gpsd, sound="unix:/nonexistent", **settings):
        self.home.write_settings(GpsEnabled="true", **settings)
        self.program = Program(self.desktop, self.home, TROLLEO_GPSD=gpsd, PULSE_SERVER=sound)
        self.addCleanup(self.program.stop)
        self.program.wait_for_window()

    def start_tracking(self):
        self.home.run(STORES)
        self.program.press("Reminder")
        self.program.press("Start")
        self.assertIsNotNone(self.program.find("button", "Stop"))

    def reminded_of(self, store, seconds):
        """Waits for the reminder and returns the time of it."""
        label = wait_for(
            f"the reminder of {store}",
            lambda: next((label for label in self.program.find_all("label")
                          if label.name.startswith(store + " (at ")), None), seconds)
        now = time.monotonic()
        distance = float(label.name.removeprefix(store + " (at ").removesuffix(" meters)"))
        self.assertLess(distance, REMINDER_METERS)
        return now

    def assert_in_time(self, receiver, store, when):
        near = wait_for("the receiver to come near", lambda: next(
            (moment for moment, line in receiver.said
             if (place := nmea.place_of(line)) is not None
             and meters(place[0], store) < REMINDER_METERS), None), 2)
        # Finding it on the accessibility bus takes some time as well.
        self.assertLess(when - near, UPDATE_SECONDS + 1.5)
        # The recorder of sentences may be late, since it shares a processor with the observer of the
        # window.
        self.assertGreater(when, near - 1)

    def window(self):
        return int(self.desktop.run(
            [tool("xdotool"), "search", "--pid", str(self.program.process.pid), "--name",
             "^Trolleo$"]).split()[-1])

    def is_above(self, upper, lower):
        """Returns whether the X server has one window above another."""
        order = [line.split()[0] for line in self.desktop.run(
            [tool("xwininfo"), "-root", "-tree"]).splitlines() if line.strip().startswith("0x")]
        return order.index(hex(upper)) < order.index(hex(lower))

    def is_viewable(self):
        return "IsViewable" in self.desktop.run(["xwininfo", "-id", str(self.window())])

    def is_maximized(self):
        state = self.desktop.run(["xprop", "-id", str(self.window()), "_NET_WM_STATE"])
        return "MAXIMIZED_VERT" in state and "MAXIMIZED_HORZ" in state

    def double_click_on_title(self):
        lines = self.desktop.run(["xwininfo", "-id", str(self.window())]).splitlines()
        left, top = (next(line.split()[-1] for line in lines if f"Absolute upper-left {axis}" in line)
                     for axis in "XY")
        self.desktop.run(["xdotool", "mousemove", str(int(left) + 200), str(int(top) - 8),
                          "click", "--repeat", "2", "--delay", "100", "1"])

    def active_window(self):
        answer = self.desktop.run(["xprop", "-root", "_NET_ACTIVE_WINDOW"]).split()[-1]
        return int(answer, 16) if answer.startswith("0x") else None

    def cover(self):
        """Opens another program's window above all others, and uses it."""
        other = subprocess.Popen([tool("xev"), "-geometry", "1000x700+0+0"],
                                 env=self.desktop.environment(), stdout=subprocess.DEVNULL)
        self.addCleanup(stop, other)
        xdotool = [tool("xdotool"), "search", "--name", "^Event Tester$"]
        window = int(wait_for("the other window", lambda: self.desktop.run(xdotool).split())[0])
        self.desktop.run(["xdotool", "windowactivate", "--sync", str(window)])
        self.desktop.run(["xdotool", "mousemove", "500", "400", "click", "1", "key", "a"])
        wait_for("the other window on top", lambda: self.is_above(window, self.window()))
        return window

    def assert_front(self, other):
        wait_for("the window on top", lambda: self.is_above(self.window(), other), 3)
        wait_for("the window to be active", lambda: self.active_window() == self.window(), 3)

    def make_horn(self):
        """Returns a sound file of a minute without a pause, which cannot end by itself in a test."""
        rate = 8000  # samples per second
        second = array.array("h", (int(16000 * math.sin(2 * math.pi * 400 * index / rate))
                                   for index in range(rate)))
        horn = self.home.path / "horn.wav"
        with wave.open(str(horn), "wb") as file:
            file.setnchannels(1)
            file.setsampwidth(2)
            file.setframerate(rate)
            file.writeframes(second.tobytes() * 60)
        return horn

    def assert_silenced_by(self, sound, name):
        """Presses a button while the horn sounds."""
        button = wait_for(f"the button {name}", lambda: self.program.find("button", name))
        wait_for("the stream", lambda: sound.roles() == ["alarm"])
        # Just before the button is pressed: a sound server that had no processor for a while records
        # silence for that time.
        wait_for("the horn", lambda: max(sound.loudness(sound.recorded() - 0.5), default=0) > 0.3)
        self.program.push(button)
        after = sound.recorded()
        wait_for("the recording", lambda: sound.recorded() > after + 3)
        self.assertEqual(max(sound.loudness(after + 0.5)), 0)

    def test_walk_past_three_stores(self):
        sound = SoundServer()
        self.addCleanup(sound.stop)
        # Starts 800 m before Bakery and continues beyond Tools.
        start = BAKERY - 800 / nmea.METERS_PER_DEGREE
        receiver = self.play(nmea.walk_north(start, 4000, 20, LONGITUDE))
        chosen = self.make_horn()
        self.start(receiver.address, sound.address, SoundFileName=chosen)
        self.start_tracking()
        other = self.cover()

        # Another window is on top.
        self.assert_in_time(receiver, BAKERY, self.reminded_of("Bakery", 40))
        self.assert_front(other)
        self.assert_silenced_by(sound, "Next Store")

        # The options are confirmed, and the sound server is another one afterwards.
        for button in ("Back", "Options", "OK"):
            self.program.press(button)
        sound.restart(away=4)

        # The window is minimised, and was maximised before. The alarm sounds to its end.
        shutil.copy(ALARM, chosen)
        self.double_click_on_title()
        wait_for("the window to be maximised", self.is_maximized)
        self.desktop.run(["xdotool", "windowminimize", "--sync", str(self.window())])
        wait_for("the window to be gone", lambda: not self.is_viewable())
        self.assert_in_time(receiver, DAIRY, self.reminded_of("Dairy", 60))
        wait_for("the window to be back", self.is_viewable, 3)
        self.assert_front(other)
        self.assertTrue(self.is_maximized())
        self.listen_to_three_loops(sound)
        self.program.press("Next Store")

        self.make_horn()
        self.assert_in_time(receiver, TOOLS, self.reminded_of("Tools", 60))
        self.assert_silenced_by(sound, "Stop tracking")
        wait_for("tracking to end", lambda: self.program.find("button", "Start"))

    def listen_to_three_loops(self, sound):
        """Waits for the end of the alarm, and checks that exactly three loops were recorded."""
        begin = sound.recorded() - 3
        wait_for("the alarm to have ended",
                 lambda: (levels := sound.loudness(begin)) and max(levels) > 0.3
                 and len(levels) > 900 and max(levels[-100:]) == 0)
        wait_for("the player to have ended", lambda: not self.alarms())
        after = sound.recorded()
        wait_for("the silence after it", lambda: sound.recorded() > after + 3)
        levels = sound.loudness(begin)
        self.assertGreater(max(levels), 0.5)
        self.assertLess(max(levels), 0.95)  # no clipping
        # Each loop has two groups of chimes, with silence after each.
        groups = []
        ringing = False
        for index, level in enumerate(levels):
            if not ringing and level > 0.2:
                groups.append(index)
            ringing = level > 0.02 if ringing else level > 0.2
        self.assertEqual(len(groups), 6, f"groups of chimes at {groups} hundredths of a second")
        # There is no gap: the silence between two loops is that within the file.
        for earlier, later in zip(groups, groups[1:]):
            self.assertAlmostEqual(later - earlier, 120, delta=15)

    def approach_bakery(self, sound_file):
        """Starts a walk that rings within half a minute. Returns the sound server and the receiver."""
        sound = SoundServer()
        self.addCleanup(sound.stop)
        start = BAKERY - 320 / nmea.METERS_PER_DEGREE
        receiver = self.play(nmea.walk_north(start, 600, 10, LONGITUDE))
        self.start(receiver.address, sound.address, SoundFileName=sound_file)
        self.start_tracking()
        return sound, receiver

    def test_start_shopping(self):
        sound, receiver = self.approach_bakery(self.make_horn())
        self.assert_in_time(receiver, BAKERY, self.reminded_of("Bakery", 30))
        self.assert_silenced_by(sound, "Start Shopping")
        goods = wait_for("the goods", lambda: self.program.find_all("list item"))
        self.assertEqual([good.name.split(",")[0] for good in goods], ["Rye"])
        x, y, width, height = self.program.place_of(goods[0])
        center = [str(x + width // 2), str(y + height // 2)]
        self.desktop.run(["xdotool", "mousemove", *center, "click", "1", "sleep", "1", "click", "1"])
        wait_for("the check mark",
                 lambda: self.home.query("select checkstate from purchase where id = 1") == [(1,)])
        self.program.press("OK")
        self.assertEqual(self.home.query("select state from shoplist where id = 1"), [(3,)])

    def test_sound_server_that_comes_late_and_goes(self):
        sound, receiver = self.approach_bakery(self.make_horn())
        sound.end()
        self.assert_in_time(receiver, BAKERY, self.reminded_of("Bakery", 30))
        time.sleep(1)
        sound.start()
        wait_for("the stream", lambda: sound.roles() == ["alarm"])
        sound.restart(away=1)
        wait_for("the stream", lambda: sound.roles() == ["alarm"])
        sound.replace_device()
        self.assert_silenced_by(sound, "Stop tracking")
        wait_for("the alarm's process to end", lambda: not self.alarms())

    def test_program_that_is_killed_while_it_rings(self):
        sound, _ = self.approach_bakery(self.make_horn())
        self.reminded_of("Bakery", 30)
        wait_for("the stream", lambda: sound.roles() == ["alarm"])
        self.program.process.kill()
        wait_for("the alarm to end", lambda: sound.roles() == [])

    def test_sound_server_that_never_answers(self):
        sound, receiver = self.approach_bakery(ALARM)
        sound.freeze()
        self.assert_in_time(receiver, BAKERY, self.reminded_of("Bakery", 30))
        wait_for("the alarm", self.alarms)
        self.program.press("Stop tracking")
        wait_for("tracking to end", lambda: self.program.find("button", "Start"), 2)
        wait_for("the alarm to end", lambda: not self.alarms())
        self.program.press("Back")
        self.program.press("Exit")
        self.assertEqual(self.program.process.wait(5), 0)

    def test_sound_file_that_is_none(self):
        noise = self.home.path / "noise.wav"
        noise.write_bytes(pathlib.Path("/opt/trolleo/bin/trolleo").read_bytes()[:100000])
        sound, receiver = self.approach_bakery(noise)
        begin = sound.recorded()
        self.assert_in_time(receiver, BAKERY, self.reminded_of("Bakery", 30))
        tries = set(self.alarms())

        def is_recorded():
            tries.update(self.alarms())
            return sound.recorded() > begin + 5

        wait_for("the recording", is_recorded)
        self.assertEqual(max(sound.loudness(begin)), 0)
        self.assertLessEqual(len(tries), 1)
        self.program.press("Next Store")
        wait_for("tracking to go on", lambda: self.program.find("button", "Stop"))

    def test_nothing_runs_when_nothing_is_wanted(self):
        start = BAKERY - 3000 / nmea.METERS_PER_DEGREE
        receiver = self.play(nmea.walk_north(start, 1000, 2, LONGITUDE))
        self.start(receiver.address)

        def woken_within_three_seconds():
            time.sleep(1)  # started actions finish
            before = wake_ups(self.program.process.pid)
            time.sleep(3)
            return woken(before, wake_ups(self.program.process.pid))

        self.assertLessEqual(woken_within_three_seconds(), 1)
        self.start_tracking()
        self.assertEqual(self.alarms(), [], "the first reminder needs one")
        # The receiver may cause no wake-ups except those of a poll and its answer.
        counts = [woken_within_three_seconds() for _ in range(3)]
        self.assertGreater(sum(counts), 2)
        self.assertLessEqual(sum(counts), 9)
        self.program.press("Stop")
        wait_for("tracking to end", lambda: self.program.find("button", "Start"))
        self.assertLessEqual(woken_within_three_seconds(), 1)

    def alarms(self):
        """Returns the process ids of the alarms of the program."""
        return children_of(self.program.process.pid, "trolleo-alarm")

    def test_gpsd_is_killed_and_comes_back(self):
        start = BAKERY - 1000 / nmea.METERS_PER_DEGREE
        first = self.play(nmea.walk_north(start, 600, 10, LONGITUDE))
        self.start(first.address)  # and there is no sound server
        self.start_tracking()
        wait_for("some way of it", lambda: len(first.said) > 20)
        first.kill()
        time.sleep(8)  # it tries again after 1, 2 and 4 s, and now waits
        returned = time.monotonic()
        again = self.play(nmea.walk_north(start + 760 / nmea.METERS_PER_DEGREE, 600, 2, LONGITUDE,
                                          first_second=36100), first.port)
        self.assertLess(self.reminded_of("Bakery", 35) - returned, 30)
        again.kill()


if __name__ == "__main__":
    unittest.main(verbosity=2)
