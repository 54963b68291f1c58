# SPDX-License-Identifier: MIT
"""The services of a phone apart from the screen: a real feedbackd, a real systemd-logind on a separate
system bus, and a monitor that records the messages on a bus."""
import json
import os
import pathlib
import re
import select
import shutil
import subprocess
import tempfile
import threading

from gi.repository import Gio, GLib

from desktop import PACKAGES, stop, tool, wait_for
from namespace import is_inside
from systembus import SystemBus

PACKAGES.update({
    "busctl": "systemd",
    "feedbackd": "feedbackd",
    "systemd-logind": "systemd",
})
FEEDBACKD = "/usr/libexec/feedbackd"
LOGIND = "/lib/systemd/systemd-logind"
TRIGGERED = re.compile(r"Event '(.*)' for '(.*)' from")
PROBE = "trolleo.Test"
RUNNING = re.compile(r"Running (\d+) feedbacks for event (\d+)")
ENDED = re.compile(r"All feedbacks for event (\d+) finished")

# A feedback that needs no device, and lasts longer than a test.
THEME = {"name": "test", "profiles": [
    {"name": "full", "feedbacks": []},
    {"name": "quiet", "feedbacks": []},
    {"name": "silent", "feedbacks": [
        {"event-name": "alarm-clock-elapsed", "type": "Dummy", "duration": 600000}]},
]}


def service(path):
    if not os.path.exists(path):
        name = os.path.basename(path)
        raise FileNotFoundError(f"{name} is missing; install the package {PACKAGES[name]}")
    return path


class Overheard:
    """Records the messages on a bus that match one of the rules, in their order."""

    def __init__(self, *matches, address=None):
        self.messages = []
        self.busctl = [tool("busctl"),
                       f"--address={address or os.environ['DBUS_SESSION_BUS_ADDRESS']}"]
        self.process = subprocess.Popen(
            [*self.busctl, *(f"--match={match}" for match in (*matches, f"interface='{PROBE}'")),
             "--json=short", "monitor"],
            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        self.thread = threading.Thread(target=self.listen, daemon=True)
        self.thread.start()
        try:
            wait_for("the bus to be overheard", self.hears)
        except BaseException:
            self.stop()
            raise

    def hears(self):
        """Sends a probe signal and returns whether it was recorded. busctl does not report when it
        begins to listen."""
        subprocess.run([*self.busctl, "emit", "/", PROBE, "Probe"], check=True)
        return self.said("Probe")

    def listen(self):
        for line in self.process.stdout:
            self.messages.append(json.loads(line))

    def said(self, member):
        """Returns the arguments of every recorded call or signal of that name, each as a list."""
        return [message["payload"]["data"] for message in self.messages
                if message.get("member") == member and message["type"] in ("method_call", "signal")]

    def stop(self):
        stop(self.process)
        self.thread.join()
        self.process.stdout.close()


class FeedbackDaemon:
    """A feedbackd on the session bus that knows one event, alarm-clock-elapsed."""

    def __init__(self):
        service(FEEDBACKD)
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="trolleo-feedback-"))
        (self.folder / "theme.json").write_text(json.dumps(THEME))
        self.log = self.folder / "log"
        with open(self.log, "w") as log:
            self.process = subprocess.Popen(
                [FEEDBACKD], stdout=log, stderr=log,
                env=dict(os.environ, HOME=str(self.folder), GSETTINGS_BACKEND="memory",
                         FEEDBACK_THEME=str(self.folder / "theme.json"), G_MESSAGES_DEBUG="all",
                         PULSE_SERVER="unix:/nonexistent", LC_ALL="C.UTF-8"))
        try:
            wait_for("feedbackd", self.is_ready)
        except BaseException:
            self.stop()
            raise

    def is_ready(self):
        if self.process.poll() is not None:
            raise RuntimeError(f"feedbackd ended:\n{self.log.read_text()[-2000:]}")
        return "'org.sigxcpu.Feedback' was acquired" in self.log.read_text()

    def triggered(self):
        """Returns the requested events, each with the program that requested it."""
        return TRIGGERED.findall(self.log.read_text())

    def running(self):
        """Returns the numbers of the events whose feedback has started and not ended."""
        log = self.log.read_text()
        begun = {event for count, event in RUNNING.findall(log) if count != "0"}
        return begun - set(ENDED.findall(log))

    def stop(self):
        stop(self.process)
        shutil.rmtree(self.folder, ignore_errors=True)


# It must not use the consoles and keys of the host.
LOGIND_CONFIGURATION = """
[Login]
NAutoVTs=0
ReserveVT=0
IdleAction=ignore
""" + "".join(f"Handle{key}=ignore\n" for key in (
    "PowerKey", "PowerKeyLongPress", "RebootKey", "RebootKeyLongPress", "SuspendKey",
    "SuspendKeyLongPress", "HibernateKey", "HibernateKeyLongPress", "LidSwitch",
    "LidSwitchExternalPower", "LidSwitchDocked"))
# The folders of its state and its configuration.
MOUNTS = ("/run", "/etc/systemd")


class LoginManager:
    """A systemd-logind on a separate system bus. It cannot suspend the host, since there is no systemd
    on that bus. It needs the namespace that enter_namespace() creates."""

    def __init__(self):
        if not is_inside():
            raise RuntimeError("a systemd-logind for tests runs only in a namespace of its own")
        service(LOGIND)
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="trolleo-login-"))
        self.address = f"unix:path={self.folder}/bus"
        self.log = self.folder / "log"
        self.mounts = []
        self.bus = self.process = self.connection = None
        try:
            for place in MOUNTS:
                subprocess.run(["mount", "-t", "tmpfs", "-o", "mode=755", "tmpfs", place], check=True)
                self.mounts.append(place)
            pathlib.Path("/run/systemd").mkdir()  # it creates folders in it, but not the folder itself
            pathlib.Path("/etc/systemd/logind.conf").write_text(LOGIND_CONFIGURATION)
            self.bus = SystemBus(self.folder)
            with open(self.log, "w") as log:
                self.process = subprocess.Popen(
                    [LOGIND], stdout=log, stderr=log,
                    env=dict(os.environ, DBUS_SYSTEM_BUS_ADDRESS=self.address,
                             SYSTEMD_LOG_TARGET="console"))
            self.connection = Gio.DBusConnection.new_for_address_sync(
                self.address, Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
                | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)
            wait_for("systemd-logind", self.is_ready)
        except BaseException:
            self.stop()
            raise

    def is_ready(self):
        if self.process.poll() is not None:
            raise RuntimeError(f"systemd-logind ended:\n{self.log.read_text()[-2000:]}")
        try:
            return self.inhibitors() == []
        except GLib.Error:
            return False  # not running yet

    def inhibitors(self):
        """Returns the inhibitors, each as (what, who, why, mode, pid)."""
        answer = self.connection.call_sync(
            "org.freedesktop.login1", "/org/freedesktop/login1", "org.freedesktop.login1.Manager",
            "ListInhibitors", None, None, Gio.DBusCallFlags.NONE, 1000, None).unpack()[0]
        return [(what, who, why, mode, pid) for what, who, why, mode, _user, pid in answer]

    def stop(self):
        if self.connection is not None:
            self.connection.close_sync(None)
        if self.process is not None:
            stop(self.process)
        if self.bus is not None:
            self.bus.stop()
        for place in reversed(self.mounts):
            subprocess.run(["umount", "--lazy", place], check=False)
        shutil.rmtree(self.folder, ignore_errors=True)


MANAGER = """
<node>
  <interface name="org.freedesktop.login1.Manager">
    <method name="Inhibit">
      <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="s" direction="in"/>
      <arg type="s" direction="in"/><arg type="h" direction="out"/>
    </method>
    <signal name="PrepareForSleep"><arg type="b"/></signal>
  </interface>
</node>
"""


class SleepRecorder:
    """Simulates systemd-logind on a separate system bus. The real one never refuses root, asks polkit
    for other users, and cannot put a test machine to sleep."""

    def __init__(self, refuses=()):
        """`refuses` are the modes, "block" or "delay", that are never granted."""
        self.refuses = refuses
        self.calls = []  # (what, who, why, mode)
        self.pipes = []  # (mode, our end of the pipe, which reports when all other ends are closed)
        self.bus = subprocess.Popen(
            [tool("dbus-daemon"), "--session", "--nofork", "--print-address=1"],
            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        self.address = self.bus.stdout.readline().strip()
        self.context = GLib.MainContext()
        self.loop = GLib.MainLoop.new(self.context, False)
        self.ready = threading.Event()
        self.thread = threading.Thread(target=self.serve)
        self.thread.start()
        self.ready.wait()

    def serve(self):
        self.context.push_thread_default()
        self.connection = Gio.DBusConnection.new_for_address_sync(
            self.address, Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
            | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)
        interface = Gio.DBusNodeInfo.new_for_xml(MANAGER).interfaces[0]
        self.connection.register_object("/org/freedesktop/login1", interface, self.inhibit, None, None)
        Gio.bus_own_name_on_connection(self.connection, "org.freedesktop.login1",
                                       Gio.BusNameOwnerFlags.NONE, lambda *_: self.ready.set(), None)
        self.loop.run()
        self.connection.close_sync(None)
        self.context.pop_thread_default()

    def inhibit(self, _connection, _sender, _path, _interface, _method, arguments, invocation):
        call = arguments.unpack()
        self.calls.append(call)
        mode = call[3]
        if mode in self.refuses:
            invocation.return_dbus_error("org.freedesktop.DBus.Error.AccessDenied",
                                         "Permission denied")
            return
        ours, theirs = os.pipe()
        self.pipes.append((mode, ours))
        handles = Gio.UnixFDList.new()
        handles.append(theirs)  # a copy, which is closed with the list after the reply
        os.close(theirs)
        invocation.return_value_with_unix_fd_list(GLib.Variant("(h)", (0,)), handles)

    def held(self):
        """Returns the modes of the locks that were granted and not released."""
        return [mode for mode, ours in self.pipes if not self.is_let_go(ours)]

    @staticmethod
    def is_let_go(pipe):
        waiter = select.poll()
        waiter.register(pipe, 0)  # a hang-up is always reported
        return bool(waiter.poll(0))

    def prepare_for_sleep(self, begins):
        """Announces that the machine is about to sleep, or has woken up."""
        self.connection.emit_signal(
            None, "/org/freedesktop/login1", "org.freedesktop.login1.Manager", "PrepareForSleep",
            GLib.Variant("(b)", (begins,)))

    def stop(self):
        self.context.invoke_full(GLib.PRIORITY_DEFAULT, lambda *_: self.loop.quit() or False)
        self.thread.join()
        for _mode, ours in self.pipes:
            os.close(ours)
        stop(self.bus)
        self.bus.stdout.close()
