# SPDX-License-Identifier: MIT
"""Stands in for GeoClue on a system bus of its own. A mock: the real service knows a position only
with a network, a modem or other devices that a test machine has not."""
import subprocess
import threading

from gi.repository import Gio, GLib

from desktop import stop, tool

INTERFACES = """
<node>
  <interface name="org.freedesktop.GeoClue2.Manager">
    <method name="GetClient"><arg type="o" direction="out"/></method>
    <method name="CreateClient"><arg type="o" direction="out"/></method>
    <property name="InUse" type="b" access="read"/>
    <property name="AvailableAccuracyLevel" type="u" access="read"/>
  </interface>
  <interface name="org.freedesktop.GeoClue2.Client">
    <method name="Start"/>
    <method name="Stop"/>
    <property name="Location" type="o" access="read"/>
    <property name="DistanceThreshold" type="u" access="readwrite"/>
    <property name="TimeThreshold" type="u" access="readwrite"/>
    <property name="DesktopId" type="s" access="readwrite"/>
    <property name="RequestedAccuracyLevel" type="u" access="readwrite"/>
    <property name="Active" type="b" access="read"/>
    <signal name="LocationUpdated"><arg type="o"/><arg type="o"/></signal>
  </interface>
  <interface name="org.freedesktop.GeoClue2.Location">
    <property name="Latitude" type="d" access="read"/>
    <property name="Longitude" type="d" access="read"/>
    <property name="Accuracy" type="d" access="read"/>
    <property name="Altitude" type="d" access="read"/>
    <property name="Speed" type="d" access="read"/>
    <property name="Heading" type="d" access="read"/>
    <property name="Description" type="s" access="read"/>
    <property name="Timestamp" type="(tt)" access="read"/>
  </interface>
</node>
"""
UNKNOWN_ALTITUDE = -1.7976931348623157e308  # what GeoClue says for "not known"


class LocationService:
    CLIENT = "/org/freedesktop/GeoClue2/Client/1"

    def __init__(self):
        self.calls = []
        self.client = {
            "Location": GLib.Variant("o", "/"), "DistanceThreshold": GLib.Variant("u", 0),
            "TimeThreshold": GLib.Variant("u", 0), "DesktopId": GLib.Variant("s", ""),
            "RequestedAccuracyLevel": GLib.Variant("u", 0), "Active": GLib.Variant("b", False),
        }
        self.locations = 0
        self.bus = subprocess.Popen(
            [tool("dbus-daemon"), "--session", "--nofork", "--print-address=1"],
            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        self.address = self.bus.stdout.readline().strip()
        # In a thread of its own: the program waits for its answers, and must not wait for a test
        # that waits for the program.
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
        self.interfaces = Gio.DBusNodeInfo.new_for_xml(INTERFACES)
        self.offer("/org/freedesktop/GeoClue2/Manager", "Manager", {
            "InUse": GLib.Variant("b", False), "AvailableAccuracyLevel": GLib.Variant("u", 8)})
        self.offer(self.CLIENT, "Client", self.client)
        Gio.bus_own_name_on_connection(self.connection, "org.freedesktop.GeoClue2",
                                       Gio.BusNameOwnerFlags.NONE, lambda *_: self.ready.set(), None)
        self.loop.run()
        self.connection.close_sync(None)
        self.context.pop_thread_default()

    def in_thread(self, function):
        """Has the thread run a function once."""
        source = GLib.idle_source_new()
        source.set_callback(lambda *_: function() and False)
        source.attach(self.context)

    def offer(self, path, name, properties):
        def call(_connection, _sender, _path, _interface, method, _arguments, invocation):
            self.calls.append(method)
            answer = GLib.Variant("(o)", (self.CLIENT,)) if method.endswith("Client") else None
            invocation.return_value(answer)

        def get(_connection, _sender, _path, _interface, key):
            return properties[key]

        def put(_connection, _sender, _path, _interface, key, value):
            properties[key] = value
            return True

        self.connection.register_object(
            path, self.interfaces.lookup_interface("org.freedesktop.GeoClue2." + name), call, get, put)

    def locate(self, latitude, longitude):
        """Tells the client where it is."""
        self.in_thread(lambda: self.tell(latitude, longitude))

    def tell(self, latitude, longitude):
        self.locations += 1
        path = f"/org/freedesktop/GeoClue2/Location/{self.locations}"
        now = GLib.get_real_time()
        self.offer(path, "Location", {
            "Latitude": GLib.Variant("d", latitude), "Longitude": GLib.Variant("d", longitude),
            "Accuracy": GLib.Variant("d", 10.0), "Altitude": GLib.Variant("d", UNKNOWN_ALTITUDE),
            "Speed": GLib.Variant("d", -1.0), "Heading": GLib.Variant("d", -1.0),
            "Description": GLib.Variant("s", ""),
            "Timestamp": GLib.Variant("(tt)", (now // 1000000, now % 1000000)),
        })
        earlier = self.client["Location"].get_string()
        self.client["Location"] = GLib.Variant("o", path)
        self.connection.emit_signal(None, self.CLIENT, "org.freedesktop.GeoClue2.Client",
                                    "LocationUpdated", GLib.Variant("(oo)", (earlier, path)))

    def stop(self):
        self.in_thread(self.loop.quit)
        self.thread.join()
        stop(self.bus)
        self.bus.stdout.close()
