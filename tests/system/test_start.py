# SPDX-License-Identifier: MIT
"""The installed program, started like a user does and used like a screen reader does."""
import os
import pathlib
import re
import signal
import stat
import subprocess
import sys
import time
import unittest

SOURCES = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(SOURCES / "tests" / "support"))
from desktop import Desktop, GONE, Home, Program, pyatspi, tool, wait_for  # noqa: E402

COLUMNS = {
    "category": [("id", "INT"), ("name", "varchar(20)")],
    "magazin": [("id", "INT"), ("name", "varchar(50)"), ("categoryid", "INT"), ("gpsid", "INT")],
    "shoplist": [("id", "INT"), ("name", "varchar(20)"), ("magazinid", "INT"), ("state", "INT")],
    "purchase": [("id", "INT"), ("name", "varchar(20)"), ("shoplistid", "INT"), ("amount", "INT"),
                 ("checkstate", "INT")],
    "purref": [("id", "INT"), ("name", "varchar(20)"), ("int", "categoryid")],
    "gpscoord": [("id", "INT"), ("latitude", "float"), ("longitude", "float"),
                 ("altitude", "float")],
    "reminders": [("id", "INT"), ("name", "varchar(20)"), ("alarm", "datetime")],
}
BUTTONS = ["About", "Exit", "Help", "Options", "Reminder", "Shopping", "Shops"]


class SystemTest(unittest.TestCase):
    def setUp(self):
        self.home = Home()
        self.addCleanup(self.home.remove)

    def desktop(self, *size):
        desktop = Desktop(*size)
        self.addCleanup(desktop.stop)
        return desktop

    def program(self, desktop, **extra):
        program = Program(desktop, self.home, **extra)
        self.addCleanup(program.stop)
        return program


class TestFirstStart(SystemTest):
    def test_empty_home_to_orderly_end(self):
        program = self.program(self.desktop())
        program.wait_for_window()
        wait_for("seven buttons", lambda: len(program.find_all("button")) == 7)
        names = sorted(button.name for button in program.find_all("button"))
        self.assertEqual(names, BUTTONS)

        tables = self.home.query("select name from sqlite_master where type = 'table'")
        self.assertEqual({name for (name,) in tables}, set(COLUMNS))
        for table, columns in COLUMNS.items():
            found = self.home.query(f"pragma table_info({table})")
            self.assertEqual(
                [(row[1], row[2].lower()) for row in found],
                [(name, kind.lower()) for name, kind in columns],
                table,
            )

        program.press("Exit")
        self.assertEqual(program.wait_for_exit(), 0)
        self.assertEqual(self.home.query("pragma integrity_check"), [("ok",)])
        self.assertFalse((self.home.path / ".config").exists(), "nothing was set, nothing is stored")

    def test_signals_end_it_orderly(self):
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            with self.subTest(signal=number.name):
                program = self.program(self.desktop())
                program.wait_for_window()
                program.process.send_signal(number)
                self.assertEqual(program.wait_for_exit(), 0)

    def test_ignored_signals_stay_ignored(self):
        before = signal.signal(signal.SIGHUP, signal.SIG_IGN)  # as nohup does
        self.addCleanup(signal.signal, signal.SIGHUP, before)
        program = self.program(self.desktop())
        program.wait_for_window()
        program.process.send_signal(signal.SIGHUP)
        time.sleep(1)
        self.assertIsNone(program.process.poll())

    def test_list_is_finished_when_the_session_ends(self):
        program = self.program(self.desktop())
        program.wait_for_window()
        self.home.run("insert into shoplist values (1, 'Weekend', 0, 1);"
                      "insert into purchase values (1, 'Milk', 1, 1, 0);")
        program.press("Shopping")
        program.press("Lists")
        program.select_row("Weekend")
        program.press("Select")
        program.press("Start")
        program.select_row("Milk, 1, unchecked")
        program.press("Check")
        wait_for("milk checked", lambda: program.rows() == ["Milk, 1, checked"])
        program.process.send_signal(signal.SIGTERM)
        self.assertEqual(program.wait_for_exit(), 0)
        self.assertEqual(self.home.query("select state from shoplist"), [(3,)])

    def test_files_are_private(self):
        self.home.path.chmod(0o755)
        (self.home.path / ".config").mkdir()
        program = self.program(self.desktop())
        program.wait_for_window()
        program.press("Options")
        program.press("Enable use of GPS")
        program.press("OK")
        settings = self.home.path / ".config" / "Vantor" / "Trolleo.conf"
        wait_for("the settings", settings.exists)
        program.press("Exit")
        self.assertEqual(program.wait_for_exit(), 0)
        modes = {path.name: stat.S_IMODE(path.stat().st_mode) for path in (
            self.home.database.parent, self.home.database, settings.parent, settings)}
        self.assertEqual(modes, {".trolleo": 0o700, "trolleo.db": 0o600, "Vantor": 0o700,
                                 "Trolleo.conf": 0o600})

    def test_existing_files_keep_what_their_owner_gave_them(self):
        self.home.database.parent.mkdir()
        self.home.database.touch()
        self.home.database.parent.chmod(0o755)
        self.home.database.chmod(0o640)
        program = self.program(self.desktop())
        program.wait_for_window()
        program.press("Exit")
        self.assertEqual(program.wait_for_exit(), 0)
        self.assertGreater(self.home.database.stat().st_size, 0)
        modes = [stat.S_IMODE(path.stat().st_mode)
                 for path in (self.home.database.parent, self.home.database)]
        self.assertEqual(modes, [0o755, 0o640])


class TestSecondStart(SystemTest):
    def start_first(self):
        desktop = self.desktop()
        first = self.program(desktop)
        first.wait_for_window()
        return desktop, first

    def is_viewable(self, desktop, window):
        return desktop.place_of(window) is not None

    def test_shows_the_first_window(self):
        desktop, first = self.start_first()
        window = wait_for("the window", first.window_ids)[0]
        desktop.run([tool("xdotool"), "windowminimize", "--sync", window])
        wait_for("the window to be gone", lambda: not self.is_viewable(desktop, window))
        second = self.program(desktop)
        self.assertEqual(second.wait_for_exit(), 0)
        wait_for("the window to be back", lambda: self.is_viewable(desktop, window))
        first.press("Exit")
        self.assertEqual(first.wait_for_exit(), 0)

    def test_starts_after_the_first_was_killed(self):
        desktop, first = self.start_first()
        first.stop()
        second = self.program(desktop)
        second.wait_for_window()

    def test_starts_when_the_first_has_ended(self):
        desktop, first = self.start_first()
        first.process.send_signal(signal.SIGSTOP)
        second = self.program(desktop)
        time.sleep(1)
        self.assertIsNone(second.process.poll(), "it waits for an answer")
        first.stop()
        second.wait_for_window()

    def test_gives_up_when_the_first_does_not_respond(self):
        desktop, first = self.start_first()
        first.process.send_signal(signal.SIGSTOP)
        second = self.program(desktop, stderr=subprocess.PIPE)
        self.addCleanup(second.process.stderr.close)
        self.assertEqual(second.wait_for_exit(), 1)
        self.assertIn(b"is already running", second.process.stderr.read())

    def test_homes_do_not_meet(self):
        desktop, first = self.start_first()
        other_home = Home()
        self.addCleanup(other_home.remove)
        other = Program(desktop, other_home)
        self.addCleanup(other.stop)
        other.wait_for_window()
        for program, home in ((first, self.home), (other, other_home)):
            program.press("Exit")
            self.assertEqual(program.wait_for_exit(), 0)
            self.assertEqual(home.query("pragma integrity_check"), [("ok",)])


class TestFirstSize(SystemTest):
    def window_size(self, width, height):
        desktop = self.desktop(width, height)
        program = self.program(desktop)
        window = wait_for("the window", program.window_ids)[0]

        def geometry():
            text = desktop.run([tool("xwininfo"), "-id", window])
            return [int(re.search(rf"{key}:\s+(-?\d+)", text).group(1)) for key in
                    ("Width", "Height", "Absolute upper-left X", "Absolute upper-left Y")]

        def settled():
            before = geometry()
            time.sleep(0.3)
            return before == geometry() and before

        size = wait_for("a window that stays as it is", settled)
        program.stop()
        return size

    def test_large_screen(self):
        self.assertEqual(self.window_size(1280, 800)[:2], [800, 480])

    def test_small_screens_are_filled_and_not_exceeded(self):
        for width, height in ((800, 480), (480, 800), (640, 400)):
            with self.subTest(screen=f"{width}x{height}"):
                window_width, window_height, x, y = self.window_size(width, height)
                self.assertLessEqual(x + window_width, width)
                self.assertLessEqual(y + window_height, height)
                # The rest of the width is the window frame.
                self.assertGreater(window_width, width - 20)
                self.assertGreater(window_height, height - 40)


class TestDatabaseThatCannotBeOpened(SystemTest):
    def test_is_announced_and_ends_the_program(self):
        self.home.database.mkdir(parents=True)
        desktop = self.desktop()
        announced = []

        def showing(event):
            try:
                if event.detail1 and event.source.getRoleName() == "notification":
                    announced.append(event.source.name)
            except GONE:
                pass  # its source has gone

        pyatspi.Registry.registerEventListener(showing, "object:state-changed:showing")
        self.addCleanup(
            pyatspi.Registry.deregisterEventListener, showing, "object:state-changed:showing")
        program = self.program(desktop)
        wait_for("the announcement", lambda: announced)
        self.assertEqual(set(announced), {"Can't open database"})
        shown = time.monotonic()
        self.assertEqual(program.wait_for_exit(), 0)
        self.assertGreater(time.monotonic() - shown, 2)
        self.assertEqual(list(self.home.database.iterdir()), [])


class TestCommands(unittest.TestCase):
    def test_run_without_a_display_says_what_is_missing(self):
        environment = {name: value for name, value in os.environ.items()
                       if name not in ("DISPLAY", "WAYLAND_DISPLAY")}
        result = subprocess.run([SOURCES / "scripts" / "run"], env=environment, timeout=60,
                                capture_output=True, text=True, check=False)
        self.assertNotEqual(result.returncode, 0)
        self.assertEqual(result.stdout, "")
        self.assertEqual(len(result.stderr.strip().splitlines()), 1)
        self.assertIn("display", result.stderr)

    def test_setup_does_nothing_when_nothing_is_missing(self):
        result = subprocess.run([SOURCES / "scripts" / "setup"], timeout=60,
                                capture_output=True, text=True, check=False)
        self.assertEqual((result.returncode, result.stdout, result.stderr), (0, "", ""))


if __name__ == "__main__":
    unittest.main()
