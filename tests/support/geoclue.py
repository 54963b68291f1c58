# SPDX-License-Identifier: MIT
"""A real GeoClue on a separate system bus, with a receiver simulated by the test. It needs the namespace
that enter_namespace() creates: GeoClue reads its configuration from only one place, and that of the host
must not be changed."""
import contextlib
import os
import pathlib
import shutil
import signal
import socket
import subprocess
import tempfile
import threading
import time

from gi.repository import Gio, GLib

from desktop import DEADLINE, PACKAGES, stop, wait_for
from namespace import is_inside
import nmea
from systembus import SystemBus

DAEMON = pathlib.Path("/usr/libexec/geoclue")  # not in the path of any user
NAME = "org.freedesktop.GeoClue2"
CONFIGURATION_FOLDER = "/etc/geoclue"
PACKAGES["geoclue"] = "geoclue-2.0"

SERVICE = """
[D-BUS Service]
Name=org.freedesktop.GeoClue2
Exec={daemon} --timeout={timeout}
"""
# The receiver is the only source of positions. The GeoClue of Debian 12 does not know the last section,
# takes it for that of a program, and reports it in its log.
CONFIGURATION = """
[agent]
whitelist=trolleo-test-agent

[network-nmea]
enable=true
nmea-socket={folder}/receiver

[3g]
enable=false

[cdma]
enable=false

[modem-gps]
enable=false

[wifi]
enable=false
submit-data=false

[compass]
enable=false

[static-source]
enable=false
"""
APPLICATION = """
[trolleo]
allowed={allowed}
system=false
users=
"""
AGENT = """
<node>
  <interface name="org.freedesktop.GeoClue2.Agent">
    <method name="AuthorizeApp">
      <arg name="desktop_id" type="s" direction="in"/>
      <arg name="req_accuracy_level" type="u" direction="in"/>
      <arg name="authorized" type="b" direction="out"/>
      <arg name="allowed_accuracy_level" type="u" direction="out"/>
    </method>
    <property name="MaxAccuracyLevel" type="u" access="read"/>
  </interface>
</node>
"""
EXACT, NOWHERE = 8, 0  # accuracy levels


def second_of_day():
    return int(time.time()) % 86400


class Receiver:
    """A receiver behind a UNIX socket. A client gets the sentences that are sent after it has connected."""

    def __init__(self, path):
        self.listeners = []
        self.is_speaking = threading.Event()
        self.is_speaking.set()
        self.is_over = threading.Event()
        self.clock_offset = 0  # seconds by which its clock is ahead
        self.said = []  # (time, latitude, longitude) that a client has received
        self.server = socket.socket(socket.AF_UNIX)
        self.server.bind(str(path))
        self.server.listen()
        os.chmod(path, 0o666)
        self.threads = [threading.Thread(target=self.serve, daemon=True)]
        self.threads[0].start()

    def serve(self):
        with contextlib.suppress(OSError):  # the test has ended
            while True:
                connection, _ = self.server.accept()
                self.listeners.append(connection)

    def feed(self, text):
        """Sends a text at once; returns whether a client received it."""
        is_heard = False
        for listener in list(self.listeners):
            try:
                listener.sendall(text.encode())
                is_heard = True
            except OSError:  # the client has disconnected
                self.listeners.remove(listener)
                listener.close()
        return is_heard

    def play(self, walk, seconds_per_fix=1):
        """Starts a walk as soon as a client is connected. After that it continues with or without
        clients.

        Every fix has the time of the receiver's clock: GeoClue passes the time of a fix to its clients, and drops a fix
        that is older than the last one.
        """
        places = [place for line in walk.splitlines() if (place := nmea.place_of(line)) is not None]
        self.threads.append(threading.Thread(
            target=self.say_all, args=(places, seconds_per_fix), daemon=True))
        self.threads[-1].start()

    def say_all(self, places, seconds_per_fix):
        is_begun = False
        for place in places:
            while not self.is_over.is_set():
                self.is_speaking.wait()
                if self.feed(nmea.fix((second_of_day() + self.clock_offset) % 86400, *place)):
                    is_begun = True
                    self.said.append((time.monotonic(), *place))
                self.is_over.wait(seconds_per_fix if is_begun else 0.1)
                if is_begun:
                    break

    def hang_up(self):
        """Closes the connections; clients must reconnect to receive more."""
        for listener in list(self.listeners):
            listener.shutdown(socket.SHUT_RDWR)

    def stop(self):
        self.is_over.set()
        self.is_speaking.set()
        self.server.shutdown(socket.SHUT_RDWR)
        for thread in self.threads:
            thread.join()
        self.server.close()
        for listener in self.listeners:
            listener.close()


class Agent:
    """The part of a desktop that tells GeoClue how exactly the user may be located."""

    PATH = "/org/freedesktop/GeoClue2/Agent"

    def __init__(self, address, level):
        self.address = address
        self.level = level
        self.is_known = threading.Event()  # the running GeoClue knows the agent
        # Runs in a separate thread, since it must answer while a test waits for GeoClue.
        self.context = GLib.MainContext()
        self.loop = GLib.MainLoop.new(self.context, False)
        self.thread = threading.Thread(target=self.serve, daemon=True)
        self.thread.start()
        if not self.is_known.wait(DEADLINE):
            self.stop()
            raise RuntimeError("GeoClue does not take the agent")

    def serve(self):
        self.context.push_thread_default()
        self.connection = connect(self.address)
        interface = Gio.DBusNodeInfo.new_for_xml(AGENT).lookup_interface(NAME + ".Agent")
        self.connection.register_object(self.PATH, interface, self.authorize,
                                        lambda *_: GLib.Variant("u", self.level), None)
        # Like the agent of a real desktop, it registers before any program connects, and again after
        # GeoClue has restarted.
        Gio.bus_watch_name_on_connection(
            self.connection, NAME, Gio.BusNameWatcherFlags.AUTO_START,
            lambda *_: self.introduce(), lambda *_: self.is_known.clear())
        self.loop.run()
        self.connection.close_sync(None)
        self.context.pop_thread_default()

    def introduce(self):
        def done(connection, result):
            with contextlib.suppress(GLib.Error):  # GeoClue has exited again
                connection.call_finish(result)
                self.is_known.set()

        self.connection.call(NAME, "/org/freedesktop/GeoClue2/Manager", NAME + ".Manager", "AddAgent",
                             GLib.Variant("(s)", ("trolleo-test-agent",)), None,
                             Gio.DBusCallFlags.NO_AUTO_START, -1, None, done)

    def authorize(self, _connection, _sender, _path, _interface, _method, arguments, invocation):
        _, level = arguments.unpack()
        invocation.return_value(GLib.Variant("(bu)", (self.level > NOWHERE, level)))

    def set_level(self, level):
        self.level = level
        self.connection.emit_signal(
            None, self.PATH, "org.freedesktop.DBus.Properties", "PropertiesChanged",
            GLib.Variant("(sa{sv}as)", (
                NAME + ".Agent", {"MaxAccuracyLevel": GLib.Variant("u", level)}, [])))

    def stop(self):
        source = GLib.idle_source_new()
        source.set_callback(lambda *_: self.loop.quit())
        source.attach(self.context)
        self.thread.join()


def connect(address):
    return Gio.DBusConnection.new_for_address_sync(
        address, Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
        | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)


class GeoClue:
    def __init__(self, allowed=True, is_on=True, has_agent=True, activatable=False, timeout=0):
        """`allowed` is the permission of the program in the configuration, or None for no entry. `is_on`
        is whether the user allows location for any program. With `activatable` the bus starts GeoClue at
        every call. `timeout` is the time in seconds after which GeoClue exits without clients; 0 means
        never."""
        if not is_inside():
            raise RuntimeError("a GeoClue for tests runs only in a namespace of its own")
        if not DAEMON.exists():
            raise FileNotFoundError(f"{DAEMON} is missing; install the package {PACKAGES['geoclue']}")
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="trolleo-geoclue-"))
        self.address = f"unix:path={self.folder}/bus"
        self.environment = dict(os.environ, DBUS_SYSTEM_BUS_ADDRESS=self.address, LC_ALL="C.UTF-8",
                                G_MESSAGES_DEBUG="Geoclue")
        self.log = self.folder / "log"
        self.timeout = timeout
        self.is_mounted = False
        self.bus = self.process = self.receiver = self.agent = self.connection = None
        try:
            subprocess.run(["mount", "-t", "tmpfs", "-o", "mode=755", "tmpfs", CONFIGURATION_FOLDER],
                           check=True)
            self.is_mounted = True
            self.configure(allowed)
            (self.folder / "services").mkdir()
            if activatable:
                (self.folder / "services" / f"{NAME}.service").write_text(
                    SERVICE.format(daemon=DAEMON, timeout=timeout))
            self.receiver = Receiver(self.folder / "receiver")
            with open(self.log, "a") as log:
                self.bus = SystemBus(self.folder, f"<servicedir>{self.folder}/services</servicedir>",
                                     env=self.environment, stdout=log, stderr=log)
            self.connection = connect(self.address)
            if not activatable:
                self.start()
            if has_agent:
                self.add_agent(is_on)
        except BaseException:
            self.stop()
            raise

    def configure(self, allowed):
        text = CONFIGURATION.format(folder=self.folder)
        if allowed is not None:
            text += APPLICATION.format(allowed=str(allowed).lower())
        pathlib.Path(CONFIGURATION_FOLDER, "geoclue.conf").write_text(text)

    def ask_bus(self, method, arguments=None):
        return self.connection.call_sync(
            "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", method, arguments,
            None, Gio.DBusCallFlags.NONE, -1, None).unpack()[0]

    def is_there(self):
        if self.process is not None and self.process.poll() is not None:
            raise RuntimeError(f"GeoClue ended with {self.process.returncode}:\n"
                               + self.log.read_text()[-2000:])
        return self.ask_bus("NameHasOwner", GLib.Variant("(s)", (NAME,)))

    def start(self):
        with open(self.log, "a") as log:
            self.process = subprocess.Popen([DAEMON, f"--timeout={self.timeout}"],
                                            env=self.environment, stdout=log, stderr=log)
        wait_for("GeoClue", self.is_there)

    def add_agent(self, is_on=True):
        self.agent = Agent(self.address, EXACT if is_on else NOWHERE)

    def add_client(self):
        """Adds another program that wants positions."""
        def call(path, interface, method, arguments=None):
            return self.connection.call_sync(NAME, path, interface, method, arguments, None,
                                             Gio.DBusCallFlags.NONE, -1, None).unpack()

        path, = call("/org/freedesktop/GeoClue2/Manager", NAME + ".Manager", "GetClient")
        for name, value in (("DesktopId", GLib.Variant("s", "trolleo")),
                            ("RequestedAccuracyLevel", GLib.Variant("u", EXACT))):
            call(path, "org.freedesktop.DBus.Properties", "Set",
                 GLib.Variant("(ssv)", (NAME + ".Client", name, value)))
        call(path, NAME + ".Client", "Start")

    def is_in_use(self):
        """Returns whether GeoClue locates the user for any client. Does not start it."""
        if not self.is_there():
            return False
        return self.connection.call_sync(
            NAME, "/org/freedesktop/GeoClue2/Manager", "org.freedesktop.DBus.Properties", "Get",
            GLib.Variant("(ss)", (NAME + ".Manager", "InUse")), None,
            Gio.DBusCallFlags.NO_AUTO_START, -1, None).unpack()[0]

    def feed(self, text):
        return self.receiver.feed(text)

    def play(self, walk, seconds_per_fix=1):
        self.receiver.play(walk, seconds_per_fix)

    def pause(self):
        """The walk stops, and the receiver sends nothing."""
        self.receiver.is_speaking.clear()

    def resume(self):
        self.receiver.is_speaking.set()

    def kill(self):
        """Kills GeoClue, whoever started it. The bus may already have restarted it on return."""
        owner = self.ask_bus("GetNameOwner", GLib.Variant("(s)", (NAME,)))
        os.kill(self.ask_bus("GetConnectionUnixProcessID", GLib.Variant("(s)", (owner,))),
                signal.SIGKILL)
        if self.process is not None:
            self.process.wait()
            self.process = None
        wait_for("GeoClue to be gone",
                 lambda: not self.ask_bus("NameHasOwner", GLib.Variant("(s)", (owner,))))

    def restart(self):
        """Stops GeoClue, if it is running, and starts it with the current configuration."""
        if self.process is not None:
            stop(self.process)
            self.process = None
        self.start()
        if self.agent is not None:
            wait_for("GeoClue to know the agent", self.agent.is_known.is_set)

    def deny(self):
        """Forbids the program in the configuration. GeoClue reads it only at its start, so it is
        restarted."""
        self.configure(False)
        self.restart()

    def allow(self):
        self.configure(True)
        self.restart()

    def switch(self, is_on):
        """Switches location on or off for all programs while GeoClue runs."""
        self.agent.set_level(EXACT if is_on else NOWHERE)

    def stop(self):
        if self.agent is not None:
            self.agent.stop()
        if self.connection is not None:
            self.connection.close_sync(None)
        # A process started by the bus ends with the bus.
        if self.process is not None:
            stop(self.process)
        if self.bus is not None:
            self.bus.stop()
        if self.receiver is not None:
            self.receiver.stop()
        if self.is_mounted:
            subprocess.run(["umount", "--lazy", CONFIGURATION_FOLDER], check=True)
        shutil.rmtree(self.folder, ignore_errors=True)
