# SPDX-License-Identifier: MIT
"""Tests the services that bring a reminder to the user: the notification daemon, feedbackd and
systemd-logind. Only this script uses them, not the program."""
import contextlib
import os
import pathlib
import sys
import unittest

SOURCES = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(SOURCES / "tests" / "support"))
from namespace import enter_namespace  # noqa: E402

enter_namespace()
from desktop import GLib, wait_for  # noqa: E402
from gi.repository import Gio  # noqa: E402
from phone import FeedbackDaemon, LoginManager, Overheard, SleepRecorder  # noqa: E402
from wayland import CRITICAL, LOW, WaylandDesktop  # noqa: E402

ACTIONS = ["default", "Show", "next", "Next Store", "stop", "Stop tracking",
           "start", "Start Shopping"]


class Client:
    """A separate connection to a bus, like that of another program."""

    def __init__(self, address=None):
        self.connection = Gio.DBusConnection.new_for_address_sync(
            address or os.environ["DBUS_SESSION_BUS_ADDRESS"],
            Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
            | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)

    def call(self, name, method, signature, *arguments):
        """Calls a method of the service whose name is that of the interface, or its beginning."""
        bus_name = name.removesuffix(".Manager")
        answer, handles = self.connection.call_with_unix_fd_list_sync(
            bus_name, "/" + bus_name.replace(".", "/"), name, method,
            GLib.Variant(signature, arguments), None, Gio.DBusCallFlags.NONE, 5000, None, None)
        return handles.steal_fds()[0] if handles is not None and handles.get_length() \
            else answer.unpack()

    def notify(self, urgency, body, actions=(), resident=False):
        return self.call("org.freedesktop.Notifications", "Notify", "(susssasa{sv}i)", "Trolleo", 0,
                         "trolleo", body, body, list(actions), {
                             "urgency": GLib.Variant("y", urgency),
                             "desktop-entry": GLib.Variant("s", "trolleo"),
                             "suppress-sound": GLib.Variant("b", True),
                             "resident": GLib.Variant("b", resident)}, -1)[0]

    def inhibit(self, mode):
        return self.call("org.freedesktop.login1.Manager", "Inhibit", "(ssss)", "sleep", "Trolleo",
                         "a test", mode)

    def leave(self):
        with contextlib.suppress(GLib.Error):
            self.connection.close_sync(None)


class TestAlertServices(unittest.TestCase):
    def client(self, address=None):
        client = Client(address)
        self.addCleanup(client.leave)
        return client

    def add(self, fixture):
        self.addCleanup(fixture.stop)
        return fixture

    def test_notification_over_a_window_that_fills_the_screen(self):
        desktop = self.add(WaylandDesktop(720, 540))
        overheard = self.add(Overheard("interface='org.freedesktop.Notifications'"))
        other = desktop.cover()
        self.assertEqual((desktop.pixels(CRITICAL), desktop.pixels(LOW)), (0, 0))
        client = self.client()
        reminder = client.notify(2, "Bakery (at 240 meters)", ACTIONS)
        wait_for("the notification", lambda: desktop.shows(CRITICAL))
        self.assertTrue(desktop.is_covered_by(other))
        self.assertFalse(desktop.shows(LOW))
        tracking = client.notify(0, "Reminders run", resident=True)
        wait_for("the quiet notification", lambda: desktop.shows(LOW))
        self.assertEqual({shown["id"] for shown in desktop.notifications()}, {reminder, tracking})
        shown = next(shown for shown in desktop.notifications() if shown["id"] == reminder)
        self.assertEqual(shown["actions"], dict(zip(ACTIONS[::2], ACTIONS[1::2])))

        desktop.invoke(shown, "next")
        wait_for("the action", lambda: overheard.said("ActionInvoked") == [[reminder, "next"]])
        self.assertTrue(desktop.shows(CRITICAL))  # the program must close it
        client.call("org.freedesktop.Notifications", "CloseNotification", "(u)", reminder)
        wait_for("the notification to go", lambda: not desktop.shows(CRITICAL))
        self.assertTrue(desktop.shows(LOW))
        desktop.dismiss(desktop.notifications()[0])
        wait_for("the other to go", lambda: not desktop.shows(LOW))
        wait_for("both to be told of", lambda: overheard.said("NotificationClosed")
                 == [[reminder, 3], [tracking, 2]])
        hints = overheard.said("Notify")[0][6]
        self.assertEqual(hints["urgency"], {"type": "y", "data": 2})

    def test_feedback_lasts_until_it_is_ended(self):
        daemon = self.add(FeedbackDaemon())
        overheard = self.add(Overheard("interface='org.sigxcpu.Feedback'"))
        client = self.client()

        def trigger(event):
            return client.call("org.sigxcpu.Feedback", "TriggerFeedback", "(ssa{sv}i)", "trolleo",
                               event, {}, 0)[0]

        alarm = trigger("alarm-clock-elapsed")
        wait_for("the feedback", lambda: daemon.running() == {str(alarm)})
        self.assertEqual(daemon.triggered(), [("alarm-clock-elapsed", "trolleo")])
        self.assertEqual(overheard.said("FeedbackEnded"), [])
        client.call("org.sigxcpu.Feedback", "EndFeedback", "(u)", alarm)
        wait_for("the feedback to end", lambda: not daemon.running())
        wait_for("its end to be told", lambda: overheard.said("FeedbackEnded") == [[alarm, 2]])

        trigger("alarm-clock-elapsed")
        wait_for("the feedback", daemon.running)
        client.leave()
        wait_for("the feedback to end with who wanted it", lambda: not daemon.running())

    def test_inhibitor_lasts_until_it_is_closed(self):
        manager = self.add(LoginManager())
        handle = self.client(manager.address).inhibit("block")
        self.assertEqual(manager.inhibitors(), [("sleep", "Trolleo", "a test", "block", os.getpid())])
        os.close(handle)
        wait_for("the inhibitor to go", lambda: not manager.inhibitors())

    def test_recorder_refuses_and_grants(self):
        recorder = self.add(SleepRecorder(refuses=["block"]))
        overheard = self.add(Overheard("member='PrepareForSleep'", address=recorder.address))
        client = self.client(recorder.address)
        with self.assertRaisesRegex(GLib.Error, "org.freedesktop.DBus.Error.AccessDenied"):
            client.inhibit("block")
        self.assertEqual(recorder.held(), [])
        handle = client.inhibit("delay")
        self.assertEqual([call[3] for call in recorder.calls], ["block", "delay"])
        self.assertEqual(recorder.held(), ["delay"])
        os.close(handle)
        wait_for("it to be let go", lambda: not recorder.held())
        recorder.prepare_for_sleep(True)
        wait_for("the signal", lambda: overheard.said("PrepareForSleep") == [[True]])


if __name__ == "__main__":
    unittest.main(verbosity=2)
