# SPDX-License-Identifier: MIT
"""A separate desktop for the installed program: an X server, a window manager, a session bus with
accessibility, and an empty home.

Import this before pyatspi: it creates the session bus that pyatspi connects to.
"""
import atexit
import contextlib
import os
import pathlib
import re
import shutil
import signal
import socket
import sqlite3
import subprocess
import tempfile
import time
import unittest

PROGRAM = "/opt/trolleo/bin/trolleo"
DEADLINE = 20  # seconds; long enough for a loaded machine

PACKAGES = {
    "Xvfb": "xvfb",
    "import": "imagemagick",
    "openbox": "openbox",
    "dbus-daemon": "dbus",
    "xwininfo": "x11-utils",
    "xdotool": "xdotool",
    "xev": "x11-utils",
}


def tool(name):
    """Returns the path of a program. If it is missing, the error names the package to install."""
    # Services are installed in a folder that is not in every user's path.
    path = shutil.which(name, path=f"{os.environ['PATH']}:/usr/sbin:/sbin")
    if path is None:
        raise FileNotFoundError(f"{name} is missing; install the package {PACKAGES[name]}")
    return path


def stop(process):
    if process.poll() is None:
        process.terminate()
        try:
            process.wait(DEADLINE)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()


def wait_for(what, condition, seconds=DEADLINE):
    """Polls until condition() is true and returns its result."""
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        pump_events()
        result = condition()
        if result:
            return result
        time.sleep(0.02)
    raise AssertionError(f"waited {seconds} s in vain for {what}")


def is_listening(address):
    """Whether a server accepts connections: the path of a UNIX socket, or (host, port). The file of a
    socket exists a moment earlier than that."""
    family = socket.AF_INET if isinstance(address, tuple) else socket.AF_UNIX
    with socket.socket(family) as probe:
        return probe.connect_ex(address) == 0


def start_session_bus():
    runtime = tempfile.mkdtemp(prefix="trolleo-runtime-")
    os.environ["XDG_RUNTIME_DIR"] = runtime
    os.environ.pop("DISPLAY", None)
    os.environ.pop("WAYLAND_DISPLAY", None)
    bus = subprocess.Popen(
        [tool("dbus-daemon"), "--session", "--nofork", "--print-address=1"],
        stdout=subprocess.PIPE,
        stderr=subprocess.DEVNULL,
        text=True,
    )
    os.environ["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().strip()

    def end():
        stop(bus)
        bus.stdout.close()
        shutil.rmtree(runtime, ignore_errors=True)

    atexit.register(end)


start_session_bus()
try:
    import pyatspi  # noqa: E402
    from gi.repository import GLib  # noqa: E402
except ImportError as missing:
    raise ImportError(f"{missing}; install the packages python3-pyatspi and python3-gi") from missing


# A program that has just exited does not answer; by default a call would wait 15 s for it.
pyatspi.Atspi.set_timeout(1000, 1000)

# The errors for an object that no longer exists; the second one if it disappears while its proxy is
# created.
GONE = (GLib.Error, RuntimeError)


def pump_events():
    context = GLib.MainContext.default()
    for _ in range(500):  # a busy bus must not prevent the test from checking the time
        if not context.pending():
            break
        context.iteration(False)


# Role names of older releases of the accessibility bus, with the newer ones.
LATER_ROLE_NAMES = {"push button": "button"}


def role_of(node):
    """Returns the role name of a node, which is the same for all releases of the accessibility bus."""
    name = node.getRoleName()
    return LATER_ROLE_NAMES.get(name, name)


class Home:
    """An empty home folder."""

    def __init__(self):
        self.path = pathlib.Path(tempfile.mkdtemp(prefix="trolleo-home-"))

    @property
    def database(self):
        return self.path / ".trolleo" / "trolleo.db"

    def query(self, statement):
        """Returns the rows of a statement, read over a separate connection."""
        with contextlib.closing(sqlite3.connect(self.database)) as connection:
            return connection.execute(statement).fetchall()

    def run(self, statements):
        """Changes the database over a separate connection."""
        with contextlib.closing(sqlite3.connect(self.database)) as connection:
            connection.executescript(statements)

    def write_settings(self, **settings):
        file = self.path / ".config" / "Vantor" / "Trolleo.conf"
        file.parent.mkdir(parents=True)
        file.write_text("[General]\n" + "".join(
            f"{key}={value}\n" for key, value in settings.items()))

    def remove(self):
        shutil.rmtree(self.path, ignore_errors=True)


# Windows as on a phone: without a frame, as large as the screen.
PHONE = """<?xml version="1.0"?>
<openbox_config xmlns="http://openbox.org/3.4/rc"><applications><application class="*">
<decor>no</decor><maximized>yes</maximized></application></applications></openbox_config>
"""


class Desktop:
    """An X server with one screen of the given size, and a window manager."""

    def __init__(self, width=1024, height=768, phone=False):
        openbox = [tool("openbox")]
        if phone:
            self.configuration = tempfile.NamedTemporaryFile("w", suffix=".xml")
            self.configuration.write(PHONE)
            self.configuration.flush()
            openbox += ["--config-file", self.configuration.name]
        read_end, write_end = os.pipe()
        self.server = subprocess.Popen(
            [tool("Xvfb"), "-displayfd", str(write_end), "-screen", "0", f"{width}x{height}x24",
             "-nolisten", "tcp", "-noreset"],  # a reset would disconnect new clients
            pass_fds=[write_end],
            stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
        )
        os.close(write_end)
        with os.fdopen(read_end) as pipe:
            self.display = ":" + pipe.readline().strip()
        if self.display == ":":
            raise RuntimeError("Xvfb did not start")
        self.manager = subprocess.Popen(
            openbox, env=self.environment(), stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL
        )
        try:
            wait_for("the window manager", self.is_managed)
        except BaseException:
            self.stop()
            raise

    def is_managed(self):
        if self.manager.poll() is not None:
            raise RuntimeError(f"openbox ended with {self.manager.returncode}")
        # While it starts, the window manager already announces itself, but ignores new windows.
        self.run([tool("xdotool"), "set_num_desktops", "1"])
        return "_NET_NUMBER_OF_DESKTOPS(CARDINAL) = 1\n" in self.run(
            ["xprop", "-root", "_NET_NUMBER_OF_DESKTOPS"])

    def environment(self):
        return dict(os.environ, DISPLAY=self.display)

    def run(self, command):
        tool("xwininfo")  # xprop is in the same package
        return subprocess.run(
            command, env=self.environment(), capture_output=True, text=True, check=False
        ).stdout

    def place_of(self, window):
        """Returns the position and size of a window on the screen, or None while it is hidden."""
        text = self.run([tool("xwininfo"), "-id", window])
        if "Map State: IsViewable" not in text:
            return None
        return tuple(int(re.search(rf"{key}:\s+(-?\d+)", text)[1]) for key in (
            "Absolute upper-left X", "Absolute upper-left Y", "Width", "Height"))

    def picture(self, file):
        """Saves a picture of the screen."""
        subprocess.run([tool("import"), "-window", "root", str(file)], env=self.environment(),
                       check=True)

    def stop(self):
        stop(self.manager)
        stop(self.server)


class Program:
    """The installed program, running on a desktop in a home."""

    def __init__(self, desktop, home, stderr=subprocess.DEVNULL, **extra):
        environment = desktop.environment()
        for name in [name for name in environment if name.startswith("XDG_") and name
                     != "XDG_RUNTIME_DIR"]:
            del environment[name]
        environment.update({
            "HOME": str(home.path), "QT_QPA_PLATFORM": "xcb",
            "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1", "LANG": "C.UTF-8",
            # Tests must not contact a tile server on the internet.
            "TROLLEO_TILE_SERVER": "http://127.0.0.1:9", **extra,
        })
        self.desktop = desktop
        self.process = subprocess.Popen(
            [PROGRAM], env=environment, stdout=subprocess.DEVNULL, stderr=stderr
        )

    def application(self):
        """Returns the program's object on the accessibility bus, or None while there is none."""
        for application in pyatspi.Registry.getDesktop(0):
            try:
                if application is not None and application.get_process_id() == self.process.pid:
                    return application
            except GONE:
                pass
        return None

    def wait_for_window(self):
        return wait_for("the window on the accessibility bus", lambda: self.find("frame", "Trolleo"))

    def focused(self):
        """Returns the object with the keyboard focus, or None."""
        nodes = [node for role in ("button", "text", "spin button", "list", "list item")
                 for node in self.find_all(role)]
        return next((node for node in nodes
                     if node.getState().contains(pyatspi.STATE_FOCUSED)), None)

    def find_all(self, role, name=None):
        """Returns the visible objects with a role and, unless it is None, a name."""
        found = []

        def visit(node, depth):
            if node is None or depth > 12:
                return
            states = node.getState()
            if depth > 1 and not states.contains(pyatspi.STATE_SHOWING):
                return
            if role_of(node) == role and name in (None, node.name):
                found.append(node)
            for child in node:
                visit(child, depth + 1)

        for _ in range(3):
            try:
                application = self.application()
                if application is not None:
                    visit(application, 0)
                return found
            except GONE:
                found.clear()  # objects disappeared meanwhile, so look again
        return []

    def find(self, role, name=None):
        found = self.find_all(role, name)
        return found[0] if found else None

    def press(self, name):
        # A checkable button has the role of a check box.
        self.push(wait_for(f"the button {name}", lambda: self.find("button", name)
                           or self.find("check box", name)))

    def push(self, button):
        name = button.name
        actions = button.queryAction()
        names = [actions.getName(index) for index in range(actions.nActions)]
        actions.doAction(names.index("Press" if "Press" in names else "Toggle"))
        # Qt shows the button pressed for a moment, and acts when it is released.
        wait_for(f"the button {name} to come up",
                 lambda: not button.getState().contains(pyatspi.STATE_PRESSED))

    def rows(self):
        """Returns the accessible names of the rows in the page's list."""
        return [row.name for row in self.find_all("list item")]

    def select_row(self, name):
        """Moves to a row with the keyboard, like a user who cannot see it."""
        wait_for(f"the row {name}", lambda: self.find("list item", name))

        def list_has_focus():
            before = self.focused()
            if before is not None and role_of(before) in ("list", "list item"):
                return True
            self.desktop.run([tool("xdotool"), "key", "Tab"])
            wait_for("the focus to move", lambda: self.focused() != before)
            return False

        wait_for("the focus on the list", list_has_focus)
        self.desktop.run([tool("xdotool"), "key", "Home"] + ["Down"] * self.rows().index(name))
        wait_for(f"the row {name} selected", lambda: self.find(
            "list item", name).getState().contains(pyatspi.STATE_SELECTED))

    def window_ids(self):
        """Returns the visible X windows of the program."""
        return self.desktop.run(
            [tool("xdotool"), "search", "--onlyvisible", "--pid", str(self.process.pid),
             "--name", "^Trolleo$"]
        ).split()

    def menu_windows(self):
        """Returns the X windows of menus, including those that are not shown yet."""
        # The other windows of this name have no class.
        return re.findall(r'(0x\w+) "trolleo": \("trolleo" "trolleo"\)',
                          self.desktop.run([tool("xwininfo"), "-root", "-tree"]))

    def menu(self):
        """Returns the position and size of the menu on the screen, or None while it is not visible.

        Qt creates the window of a menu before its position and size are known, and shows it later. A
        click at the earlier position would miss the menu and close it.
        """
        places = map(self.desktop.place_of, self.menu_windows())
        return next((place for place in places if place), None)

    def place_of(self, node):
        """Returns the position and size of an object of the window on the screen.

        The window manager places the window and then shows it, and the program is notified last. With
        the earlier position a click would miss the window.
        """
        def extents(of):
            place = of.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
            return place.x, place.y, place.width, place.height

        def is_placed():
            frame = self.find("frame", "Trolleo")
            return frame and any(self.desktop.place_of(window) == extents(frame)
                                 for window in self.window_ids())

        wait_for("the window to be shown at its place", is_placed)
        return extents(node)

    def wait_for_exit(self):
        return self.process.wait(DEADLINE)

    def stop(self):
        if self.process.poll() is None:
            self.process.send_signal(signal.SIGKILL)
            self.process.wait()


class ProgramTest(unittest.TestCase):
    """A test of the program on a separate desktop with an empty home."""

    def setUp(self):
        self.home = Home()
        self.addCleanup(self.home.remove)
        self.desktop = Desktop()
        self.addCleanup(self.desktop.stop)
        self.program = Program(self.desktop, self.home)
        self.addCleanup(self.program.stop)
        self.program.wait_for_window()
