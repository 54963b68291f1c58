# SPDX-License-Identifier: MIT
"""The installed program on a walk, on a Wayland desktop and behind another window that fills the screen:
how a reminder reaches a user who does not look at the program, and what keeps the device awake."""
import pathlib
import sys
import unittest

SOURCES = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(SOURCES / "tests" / "support"))
from namespace import enter_namespace  # noqa: E402

enter_namespace()
from desktop import Home, Program, wait_for  # noqa: E402
from neighbours import Receiver, SoundServer, free_port  # noqa: E402
import nmea  # noqa: E402
from phone import FeedbackDaemon, LoginManager, Overheard, SleepRecorder  # noqa: E402
from wayland import CRITICAL, LOW, WaylandDesktop  # noqa: E402

BAKERY = 10.01  # degrees north; Dairy is a kilometre farther
DAIRY = 10.02
LONGITUDE = 20.0
STORES = f"""
    insert into magazin values (1, 'Bakery', null, null), (2, 'Dairy', null, null);
    insert into gpscoord values (1, {BAKERY}, {LONGITUDE}, 0), (2, {DAIRY}, {LONGITUDE}, 0);
    insert into shoplist values (1, 'Bread', 1, 1), (2, 'Milk', 2, 1);
    insert into purchase values (1, 'Rye', 1, 2, 0);
"""
NEAR = 320  # metres; the reminder comes shortly after the start
FAR = 3000  # metres; the reminder does not come
ACTIONS = {"next": "Next Store", "stop": "Stop tracking", "start": "Start Shopping"}
NOTIFICATIONS = "interface='org.freedesktop.Notifications'"
FEEDBACK = "interface='org.sigxcpu.Feedback'"


class AlertTest(unittest.TestCase):
    def setUp(self):
        self.home = Home()
        self.addCleanup(self.home.remove)
        self.desktop = self.add(WaylandDesktop())
        self.feedback = self.add(FeedbackDaemon())
        self.overheard = self.add(Overheard(NOTIFICATIONS, FEEDBACK))
        self.sound = self.add(SoundServer())

    def add(self, fixture):
        self.addCleanup(fixture.stop)
        return fixture

    def start(self, manager, distance):
        """Starts the program on a walk to Bakery that begins at that distance in metres."""
        self.manager = self.add(manager)
        receiver = Receiver(nmea.walk_north(BAKERY - distance / nmea.METERS_PER_DEGREE, 600, 10,
                                            LONGITUDE), free_port(), 0.25)
        self.addCleanup(receiver.kill)
        self.home.write_settings(GpsEnabled="true")
        self.program = Program(
            self.desktop, self.home, QT_QPA_PLATFORM="wayland", TROLLEO_GPSD=receiver.address,
            PULSE_SERVER=self.sound.address, DBUS_SYSTEM_BUS_ADDRESS=manager.address)
        self.addCleanup(self.program.stop)
        self.program.wait_for_window()
        self.home.run(STORES)
        self.program.press("Reminder")

    def start_tracking(self):
        self.program.press("Start")
        wait_for("tracking to run", lambda: self.program.find("button", "Stop"))

    def urgent(self):
        """Returns the Notify calls of the highest urgency: one for each reminder."""
        return [call for call in self.overheard.said("Notify")
                if call[6].get("urgency", {}).get("data") == 2]

    def shown(self):
        """Returns the daemon's data of the reminder's notification, or None."""
        return next((shown for shown in self.desktop.notifications() if "next" in shown["actions"]),
                    None)

    def is_loud(self):
        return max(self.sound.loudness(self.sound.recorded() - 1), default=0) > 0.3

    def wait_for_reminder(self):
        """Waits until the reminder is seen, felt and heard, and returns its notification."""
        wait_for("the call for the notification", self.urgent, 30)
        wait_for("the notification on the screen", lambda: self.desktop.shows(CRITICAL), 3)
        wait_for("the feedback", self.feedback.running, 3)
        wait_for("the alarm", self.is_loud, 5)
        return wait_for("the notification", self.shown, 3)

    def assert_answered(self, sound_at):
        """Checks that the reminder is no longer seen, felt or heard."""
        wait_for("the notification to go", lambda: not self.desktop.shows(CRITICAL), 3)
        self.assertIsNone(self.shown())
        wait_for("the feedback to end", lambda: not self.feedback.running(), 3)
        self.assertEqual(len(self.overheard.said("EndFeedback")), 1)
        wait_for("the recording", lambda: self.sound.recorded() > sound_at + 3)
        self.assertEqual(max(self.sound.loudness(sound_at + 1)), 0)


class TestReminderAlert(AlertTest):
    def remind(self):
        self.start(LoginManager(), NEAR)
        self.start_tracking()
        self.other = self.desktop.cover()
        self.assertFalse(self.desktop.shows(CRITICAL))
        return self.wait_for_reminder()

    def answer(self, action):
        """Answers the reminder by its notification."""
        shown = self.remind()
        sound_at = self.sound.recorded()
        self.desktop.invoke(shown, action)
        self.assert_answered(sound_at)

    def test_seen_over_another_window(self):
        shown = self.remind()
        # The other window still covers the screen and has the focus; the notification is above it.
        self.assertTrue(self.desktop.is_covered_by(self.other))
        self.assertEqual(len(self.urgent()), 1)
        name, replaces, _icon, summary, body, actions, hints, _timeout = self.urgent()[0]
        self.assertEqual((name, replaces), ("Trolleo", 0))
        self.assertIn("Bakery (at ", f"{summary}\n{body}")
        labels = dict(zip(actions[::2], actions[1::2]))
        self.assertIn("default", labels)
        self.assertEqual({key: labels.get(key) for key in ACTIONS}, ACTIONS)
        self.assertEqual(hints["urgency"], {"type": "y", "data": 2})
        self.assertEqual(hints["desktop-entry"]["data"], "trolleo")
        self.assertIs(hints["suppress-sound"]["data"], True)
        self.assertEqual(shown["app-name"], "Trolleo")
        self.assertEqual(self.feedback.triggered(), [("alarm-clock-elapsed", "trolleo")])

    def test_next_store_by_notification(self):
        self.answer("next")
        wait_for("tracking to go on", lambda: self.program.find("button", "Stop"))
        self.assertEqual(len(self.manager.inhibitors()), 1)

    def test_stop_tracking_by_notification(self):
        self.answer("stop")
        wait_for("tracking to end", lambda: self.program.find("button", "Start"))
        wait_for("the inhibitor to go", lambda: not self.manager.inhibitors(), 3)

    def test_start_shopping_by_notification(self):
        self.answer("start")
        goods = wait_for("the goods", lambda: self.program.rows())
        self.assertEqual([good.split(",")[0] for good in goods], ["Rye"])

    def test_answered_in_the_window(self):
        shown = self.remind()
        sound_at = self.sound.recorded()
        self.program.press("Next Store")
        self.assert_answered(sound_at)
        # The daemon's reason says that the program has closed it.
        self.assertIn([shown["id"], 3], self.overheard.said("NotificationClosed"))

    def test_dismissed_notification_answers_nothing(self):
        shown = self.remind()
        self.desktop.dismiss(shown)
        wait_for("the notification to go", lambda: not self.desktop.shows(CRITICAL))
        wait_for("the daemon to tell", lambda: [shown["id"], 2]
                 in self.overheard.said("NotificationClosed"))
        self.assertIsNotNone(self.program.find("button", "Next Store"))
        # The answer in the window still works.
        sound_at = self.sound.recorded()
        self.program.press("Next Store")
        self.assert_answered(sound_at)


class TestStayingAwake(AlertTest):
    def test_held_exactly_while_tracking_runs(self):
        self.start(LoginManager(), FAR)
        self.assertEqual(self.manager.inhibitors(), [])
        for _ in range(2):
            self.start_tracking()
            held = wait_for("the inhibitor", self.manager.inhibitors, 3)
            self.assertEqual([(what, who, mode, pid) for what, who, _why, mode, pid in held],
                             [("sleep", "Trolleo", "block", self.program.process.pid)])
            self.assertNotEqual(held[0][2], "")
            self.program.press("Stop")
            wait_for("the inhibitor to go", lambda: not self.manager.inhibitors(), 3)

    def test_held_while_the_reminder_waits(self):
        self.start(LoginManager(), NEAR)
        self.start_tracking()
        self.wait_for_reminder()
        self.assertEqual(len(self.manager.inhibitors()), 1)

    def test_killed_program_holds_nothing(self):
        self.start(LoginManager(), FAR)
        self.start_tracking()
        wait_for("the inhibitor", self.manager.inhibitors, 3)
        self.program.stop()
        wait_for("the inhibitor to go", lambda: not self.manager.inhibitors(), 3)

    def test_delays_sleep_when_it_may_not_block_it(self):
        self.start(SleepRecorder(refuses=["block"]), FAR)
        self.start_tracking()
        wait_for("the inhibitor", lambda: self.manager.held() == ["delay"], 3)
        self.assertEqual([(what, who, mode) for what, who, _why, mode in self.manager.calls],
                         [("sleep", "Trolleo", "block"), ("sleep", "Trolleo", "delay")])
        self.program.press("Stop")
        wait_for("the inhibitor to go", lambda: self.manager.held() == [], 3)

    def test_tracks_when_it_may_do_neither(self):
        self.start(SleepRecorder(refuses=["block", "delay"]), NEAR)
        self.start_tracking()
        wait_for("both to be refused", lambda: len(self.manager.calls) == 2, 3)
        self.wait_for_reminder()

    def test_quiet_notification_while_tracking_runs(self):
        self.start(LoginManager(), FAR)
        self.assertEqual(self.desktop.notifications(), [])
        self.start_tracking()
        wait_for("the quiet notification", lambda: self.desktop.shows(LOW), 3)
        hints = self.overheard.said("Notify")[0][6]
        self.assertEqual(hints["urgency"], {"type": "y", "data": 0})
        self.assertIs(hints["resident"]["data"], True)
        self.program.press("Stop")
        wait_for("it to go", lambda: not self.desktop.shows(LOW), 3)
        self.assertEqual(self.desktop.notifications(), [])


if __name__ == "__main__":
    unittest.main(verbosity=2)
