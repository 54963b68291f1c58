# SPDX-License-Identifier: MIT
"""A Wayland desktop like that of a phone, without a screen: a real compositor, and a real daemon that
shows notifications above every window."""
import json
import os
import pathlib
import shutil
import subprocess
import tempfile

from desktop import PACKAGES, stop, tool, wait_for

PACKAGES.update({
    "foot": "foot",
    "grim": "grim",
    "mako": "mako-notifier",
    "makoctl": "mako-notifier",
    "sway": "sway",
    "swaymsg": "sway",
    "unshare": "util-linux",
})

# A window that requests attention does not get the focus: it is marked as urgent.
COMPOSITOR = """
xwayland disable
output * resolution {width}x{height}
default_border none
focus_on_window_activation urgent
"""
# One colour for each urgency, so that a picture shows which notification is visible.
NOTIFICATIONS = """
layer=overlay
default-timeout=0
icons=0
border-size=0
text-color=#000000ff
[urgency=low]
background-color=#00ff00ff
[urgency=normal]
background-color=#0000ffff
[urgency=high]
background-color=#ff00ffff
"""
LOW, NORMAL, CRITICAL = (bytes.fromhex(color) for color in ("00ff00", "0000ff", "ff00ff"))
ENOUGH = 2000  # pixels; a notification has more than 10000, and no text has its colours


class WaylandDesktop:
    """A compositor with one output of the given size. Programs that it starts use the session bus.

    Its seat has neither keyboard nor pointer: programs are controlled over the accessibility bus.
    """

    def __init__(self, width=1024, height=768):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="trolleo-wayland-"))
        self.ipc = self.folder / "ipc"
        self.log = self.folder / "log"
        self.others = []
        (self.folder / "sway").write_text(COMPOSITOR.format(width=width, height=height))
        (self.folder / "mako").write_text(NOTIFICATIONS)
        command = [tool("sway"), "--config", str(self.folder / "sway")]
        if os.geteuid() == 0:
            # The compositor refuses to run as root. In this user namespace it is another user with
            # root's file access.
            command[:0] = [tool("unshare"), "--user", "--map-user=1000", "--map-group=1000"]
        with open(self.log, "w") as log:
            self.compositor = subprocess.Popen(
                command, stdout=log, stderr=log,
                env=dict(os.environ, HOME=str(self.folder), XDG_RUNTIME_DIR=str(self.folder),
                         SWAYSOCK=str(self.ipc), WLR_BACKENDS="headless", WLR_RENDERER="pixman",
                         WLR_LIBINPUT_NO_DEVICES="1"))
        self.notifier = None
        try:
            wait_for("the compositor", self.is_ready)
            self.start_notifier()
        except BaseException:
            self.stop()
            raise

    def is_ready(self):
        if self.compositor.poll() is not None:
            raise RuntimeError(f"sway ended with {self.compositor.returncode}:\n"
                               + self.log.read_text()[-2000:])
        return self.sockets() and self.ipc.exists() and any(
            output["active"] for output in self.ask("get_outputs"))

    def sockets(self):
        return [file for file in self.folder.glob("wayland-*") if file.suffix != ".lock"]

    def environment(self):
        """The environment of a program on this desktop. A Qt program also needs QT_QPA_PLATFORM=wayland."""
        # The full path of the socket, because programs keep the runtime folder of the session.
        return dict(os.environ, WAYLAND_DISPLAY=str(self.sockets()[0]), SWAYSOCK=str(self.ipc))

    def start_notifier(self):
        with open(self.log, "a") as log:
            self.notifier = subprocess.Popen(
                [tool("mako"), "--config", str(self.folder / "mako")], env=self.environment(),
                stdout=log, stderr=log)

        def is_there():
            if self.notifier.poll() is not None:
                raise RuntimeError(f"mako ended:\n{self.log.read_text()[-2000:]}")
            # The daemon is not called, because the bus would start a second one.
            return "org.freedesktop.Notifications" in self.run(
                ["busctl", "--user", "--acquired", "--no-legend", "list"])

        wait_for("the notification daemon", is_there)

    def run(self, command):
        return subprocess.run(
            command, env=self.environment(), capture_output=True, text=True, check=False
        ).stdout

    def ask(self, what):
        """Returns a reply of the compositor, such as that to get_tree."""
        answer = self.run([tool("swaymsg"), "--socket", str(self.ipc), "--raw", "--type", what])
        return json.loads(answer or "[]")

    def windows(self):
        """Returns the compositor's descriptions of the windows: pid, focused, urgent, visible and so on."""
        found = []

        def visit(node):
            if node.get("pid"):
                found.append(node)
            for child in node["nodes"] + node["floating_nodes"]:
                visit(child)

        visit(self.ask("get_tree"))
        return found

    def window(self, pid):
        """Returns the window of a process, or None."""
        return next((window for window in self.windows() if window["pid"] == pid), None)

    def cover(self):
        """Opens another program's window that covers the whole screen, and returns its process."""
        other = subprocess.Popen([tool("foot"), "--fullscreen", "sleep", "infinity"],
                                 env=dict(self.environment(), LC_ALL="C.UTF-8"),
                                 stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.others.append(other)
        wait_for("the other window over everything", lambda: self.is_covered_by(other))
        return other

    def is_covered_by(self, other):
        window = self.window(other.pid)
        return window is not None and window["fullscreen_mode"] == 1 and window["focused"] \
            and window["visible"]

    def picture(self, file):
        """Saves a picture of the screen."""
        subprocess.run([tool("grim"), str(file)], env=self.environment(), check=True)

    def pixels(self, color):
        """Returns the number of pixels of a colour on the screen."""
        picture = subprocess.run([tool("grim"), "-t", "ppm", "-"], env=self.environment(), check=True,
                                 capture_output=True).stdout
        # P6, width and height, 255, each with a newline
        data = picture.split(b"\n", 3)[3]
        return sum(1 for pixel in zip(data[0::3], data[1::3], data[2::3]) if pixel == tuple(color))

    def shows(self, urgency):
        """Returns whether a notification of that urgency is visible."""
        return self.pixels(urgency) > ENOUGH

    def notifications(self):
        """Returns the notifications shown by the daemon: id, summary, body and actions."""
        # makoctl is not used, because since 1.10 its output is not machine-readable.
        answer = json.loads(self.run(
            ["busctl", "--user", "--json=short", "call", "org.freedesktop.Notifications",
             "/fr/emersion/Mako", "fr.emersion.Mako", "ListNotifications"]))
        return [{name: value["data"] for name, value in notification.items()}
                for notification in answer["data"][0]]

    def invoke(self, notification, action):
        """Chooses an action of a notification, which stays until it is closed."""
        self.run([tool("makoctl"), "invoke", "-n", str(notification["id"]), action])

    def dismiss(self, notification):
        """Dismisses a notification like a user."""
        self.run([tool("makoctl"), "dismiss", "-n", str(notification["id"])])

    def stop(self):
        for process in (*self.others, self.notifier, self.compositor):
            if process is not None:
                stop(process)
        shutil.rmtree(self.folder, ignore_errors=True)
