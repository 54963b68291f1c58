// SPDX-License-Identifier: MIT
#include <QDBusArgument>
#include <QDBusUnixFileDescriptor>
#include <QSignalSpy>
#include <QtTest>

#include <poll.h>
#include <unistd.h>

#include "platform/devicealert.h"
#include "platform/messagebus.h"
#include "platform/notifier.h"
#include "platform/sleepinhibitor.h"
#include "tests/support/privatebus.h"

static constexpr int soon = 5000; // milliseconds
static const QString notifications = "org.freedesktop.Notifications";
static const QString notificationsPath = "/org/freedesktop/Notifications";

/// A simulated notification service that shows nothing.
struct Notifications : MadeUpService
{
    explicit Notifications(const QString &busAddress)
        : MadeUpService(busAddress, notifications, notificationsPath)
    {
        answers["Notify"] = [this](const QDBusMessage &message) {
            return message.createReply(++lastId);
        };
        answers["CloseNotification"] = [](const QDBusMessage &message) {
            return message.createReply();
        };
    }
    void tell(const QString &signal, const QVariantList &arguments) const
    {
        emitSignal(notificationsPath, notifications, signal, arguments);
    }
    QList<uint> closed() const
    {
        QList<uint> ids;
        for (const QDBusMessage &call : calls("CloseNotification"))
            ids << call.arguments().constFirst().toUInt();
        return ids;
    }
    uint lastId = 0;
};

struct Feedback : MadeUpService
{
    explicit Feedback(const QString &busAddress)
        : MadeUpService(busAddress, "org.sigxcpu.Feedback", "/org/sigxcpu/Feedback")
    {
        answers["TriggerFeedback"] = [](const QDBusMessage &message) {
            return message.createReply(70U);
        };
    }
};

/// A simulated login service that returns real descriptors, and grants only the requested modes.
struct Login : MadeUpService
{
    explicit Login(const QString &busAddress)
        : MadeUpService(busAddress, "org.freedesktop.login1", "/org/freedesktop/login1")
    {
        answers["Inhibit"] = [this](const QDBusMessage &message) {
            const QString mode = message.arguments().at(3).toString();
            if (!granted.contains(mode))
                return message.createErrorReply(QDBusError::AccessDenied, "no");
            int ends[2];
            if (pipe(ends) != 0)
                stopTest("no pipe");
            held << ends[0];
            const QDBusUnixFileDescriptor descriptor(ends[1]);
            close(ends[1]);
            return message.createReply(QVariant::fromValue(descriptor));
        };
    }
    ~Login() override
    {
        for (const int end : std::as_const(held))
            close(end);
    }
    /// Returns the number of inhibitors that are held.
    int inhibitors() const
    {
        int count = 0;
        for (const int end : held) {
            pollfd watched{.fd = end, .events = POLLIN, .revents = 0};
            poll(&watched, 1, 0);
            count += (watched.revents & POLLHUP) == 0;
        }
        return count;
    }
    void prepareForSleep(bool begins) const
    {
        emitSignal("/org/freedesktop/login1", "org.freedesktop.login1.Manager", "PrepareForSleep",
                   {begins});
    }
    QStringList granted{"block", "delay"};
    QList<int> held;
};

class TestAlerts : public QObject
{
    Q_OBJECT

private slots:
    void notificationIsShownAndClosed();
    void bodyIsNoMarkup();
    void actionsOfTheOneThatShows();
    void idsEndWithTheService();
    void closedBeforeItShows();
    void replacedByTheNext();
    void serviceThatComesLate();
    void noServiceAtAll();
    void alertIsShownAndFelt();
    void sleepIsInhibitedWhileHeld();
    void delayWhereBlockIsRefused();
    void releasedBeforeItIsGranted();
    void sleepThatComesAllTheSame();
};

void TestAlerts::notificationIsShownAndClosed()
{
    const PrivateBus daemon;
    const Notifications service(daemon.address());
    MessageBus bus(daemon.address());
    Notifier notifier(bus);
    notifier.show({.summary = "Bakery",
                   .body = "Bread",
                   .urgency = Notification::Critical,
                   .isResident = true,
                   .actions = {{"default", "Open"}, {"next", "Next Store"}}});
    QTRY_COMPARE_WITH_TIMEOUT(service.calls("Notify").size(), 1, soon);
    const QDBusMessage call = service.calls("Notify").constFirst();
    QCOMPARE(call.signature(), "susssasa{sv}i");
    const QVariantList arguments = call.arguments();
    QCOMPARE(arguments.at(0), "Trolleo");
    QCOMPARE(arguments.at(3), "Bakery");
    QCOMPARE(arguments.at(4), "Bread");
    QCOMPARE(arguments.at(5).toStringList(),
             (QStringList{"default", "Open", "next", "Next Store"}));
    const auto hints = qdbus_cast<QVariantMap>(arguments.at(6));
    QCOMPARE(hints.value("urgency"), QVariant::fromValue(uchar(2)));
    QCOMPARE(hints.value("desktop-entry"), "trolleo");
    QCOMPARE(hints.value("suppress-sound"), true);
    QCOMPARE(hints.value("resident"), true);
    QCOMPARE(arguments.at(7), 0); // no timeout
    QTest::qWait(100);
    notifier.close();
    QTRY_COMPARE_WITH_TIMEOUT(service.closed(), QList<uint>{1}, soon);
    notifier.close();
    QTest::qWait(100);
    QCOMPARE(service.closed().size(), 1);
}

void TestAlerts::bodyIsNoMarkup()
{
    const PrivateBus daemon;
    const Notifications service(daemon.address());
    MessageBus bus(daemon.address());
    Notifier notifier(bus);
    notifier.show({.summary = "<b>B & B</b>", .body = "<b>B & B</b>"});
    QTRY_COMPARE_WITH_TIMEOUT(service.calls("Notify").size(), 1, soon);
    const QVariantList arguments = service.calls("Notify").constFirst().arguments();
    QCOMPARE(arguments.at(3), "<b>B & B</b>"); // no markup
    QCOMPARE(arguments.at(4), "&lt;b&gt;B &amp; B&lt;/b&gt;");
}

void TestAlerts::actionsOfTheOneThatShows()
{
    const PrivateBus daemon;
    const Notifications service(daemon.address());
    MessageBus bus(daemon.address());
    Notifier notifier(bus);
    QSignalSpy actions(&notifier, &Notifier::actionInvoked);
    QSignalSpy tokens(&notifier, &Notifier::activationTokenGiven);
    notifier.show({.summary = "Bakery"});
    QTRY_COMPARE_WITH_TIMEOUT(service.calls("Notify").size(), 1, soon);
    QTest::qWait(100);
    service.tell("ActionInvoked", {99U, "next"}); // of another program
    service.tell("ActivationToken", {1U, "token"});
    service.tell("ActionInvoked", {1U, "next"});
    QTRY_COMPARE_WITH_TIMEOUT(actions.count(), 1, soon);
    QCOMPARE(actions.first().first(), "next");
    QCOMPARE(tokens.count(), 1);
    QCOMPARE(tokens.first().first(), "token");
    service.tell("NotificationClosed", {1U, 2U});
    service.tell("ActionInvoked", {1U, "next"});
    service.tell("ActionInvoked", {0U, "next"});
    QTest::qWait(200);
    QCOMPARE(actions.count(), 1);
    notifier.close(); // it is already closed
    QTest::qWait(100);
    QVERIFY(service.closed().isEmpty());
}

/// A service that starts anew gives the same ids to notifications of other programs.
void TestAlerts::idsEndWithTheService()
{
    const PrivateBus daemon;
    Notifications service(daemon.address());
    MessageBus bus(daemon.address());
    Notifier notifier(bus);
    QSignalSpy actions(&notifier, &Notifier::actionInvoked);
    notifier.show({.summary = "Bakery"});
    QTRY_COMPARE_WITH_TIMEOUT(service.calls("Notify").size(), 1, soon);
    service.tell("ActionInvoked", {1U, "next"});
    QTRY_COMPARE_WITH_TIMEOUT(actions.count(), 1, soon);
    service.leave();
    service.comeBack();
    service.tell("ActionInvoked", {1U, "next"});
    QTest::qWait(200);
    QCOMPARE(actions.count(), 1);
    service.heard.clear();
    notifier.show({.summary = "Butcher"});
    QTRY_COMPARE_WITH_TIMEOUT(service.calls("Notify").size(), 1, soon);
    QCOMPARE(service.calls("Notify").first().arguments().at(1), 0U); // replaces none
}

void TestAlerts::closedBeforeItShows()
{
    const PrivateBus daemon;
    const Notifications service(daemon.address());
    MessageBus bus(daemon.address());
    bool isReady = false;
    bus.whenReady(this, [&] { isReady = true; });
    QTRY_VERIFY_WITH_TIMEOUT(isReady, soon);
    Notifier notifier(bus);
    notifier.show({.summary = "Bakery"});
    notifier.close(); // its id is not known yet
    QTRY_COMPARE_WITH_TIMEOUT(service.closed(), QList<uint>{1}, soon);
}

void TestAlerts::replacedByTheNext()
{
    const PrivateBus daemon;
    const Notifications service(daemon.address());
    MessageBus bus(daemon.address());
    Notifier notifier(bus);
    notifier.show({.summary = "Bakery"});
    QTRY_COMPARE_WITH_TIMEOUT(service.calls("Notify").size(), 1, soon);
    QTest::qWait(100);
    notifier.show({.summary = "Butcher"});
    QTRY_COMPARE_WITH_TIMEOUT(service.calls("Notify").size(), 2, soon);
    QCOMPARE(service.calls("Notify").last().arguments().at(1), 1U);
}

void TestAlerts::serviceThatComesLate()
{
    const PrivateBus daemon;
    MessageBus bus(daemon.address());
    Notifier notifier(bus);
    notifier.show({.summary = "Bakery"});
    QTest::qWait(200);
    const Notifications service(daemon.address());
    notifier.show({.summary = "Butcher"});
    QTRY_COMPARE_WITH_TIMEOUT(service.calls("Notify").size(), 1, soon);
    QCOMPARE(service.calls("Notify").first().arguments().at(3), "Butcher");
}

void TestAlerts::noServiceAtAll()
{
    MessageBus bus("unix:path=/nonexistent");
    DeviceAlert alert(bus);
    SleepInhibitor inhibitor(bus);
    alert.setNotification({.summary = "Bakery"});
    alert.start();
    inhibitor.hold("test");
    QTest::qWait(100);
    alert.stop();
    inhibitor.release();
}

void TestAlerts::alertIsShownAndFelt()
{
    const PrivateBus daemon;
    const Notifications service(daemon.address());
    const Feedback feedback(daemon.address());
    MessageBus bus(daemon.address());
    DeviceAlert alert(bus);
    QSignalSpy actions(&alert, &DeviceAlert::actionInvoked);
    alert.setNotification({.summary = "Bakery"});
    QTest::qWait(100);
    QVERIFY(service.heard.isEmpty());
    alert.start();
    QTRY_COMPARE_WITH_TIMEOUT(service.calls("Notify").size(), 1, soon);
    QTRY_COMPARE_WITH_TIMEOUT(feedback.calls("TriggerFeedback").size(), 1, soon);
    const QDBusMessage trigger = feedback.calls("TriggerFeedback").constFirst();
    QCOMPARE(trigger.signature(), "ssa{sv}i");
    QCOMPARE(trigger.arguments().at(0), "trolleo");
    QCOMPARE(trigger.arguments().at(1), "alarm-clock-elapsed");
    QCOMPARE(qdbus_cast<QVariantMap>(trigger.arguments().at(2)),
             (QVariantMap{{"profile", "quiet"}})); // the alarm has a sound of its own
    QTest::qWait(100);
    service.tell("ActionInvoked", {1U, "stop"});
    QTRY_COMPARE_WITH_TIMEOUT(actions.count(), 1, soon);
    alert.stop();
    QTRY_COMPARE_WITH_TIMEOUT(service.closed(), QList<uint>{1}, soon);
    QTRY_COMPARE_WITH_TIMEOUT(feedback.calls("EndFeedback").size(), 1, soon);
    QCOMPARE(feedback.calls("EndFeedback").first().arguments(), QVariantList{70U});
    alert.start();
    alert.stop(); // before the service has answered
    QTRY_COMPARE_WITH_TIMEOUT(feedback.calls("EndFeedback").size(), 2, soon);
}

void TestAlerts::sleepIsInhibitedWhileHeld()
{
    const PrivateBus daemon;
    const Login login(daemon.address());
    MessageBus bus(daemon.address());
    SleepInhibitor inhibitor(bus);
    QTest::qWait(100);
    QVERIFY(login.heard.isEmpty());
    inhibitor.hold("Reminds of shopping lists");
    QTRY_COMPARE_WITH_TIMEOUT(login.inhibitors(), 1, soon);
    const QVariantList arguments = login.calls("Inhibit").constFirst().arguments();
    QCOMPARE(arguments, (QVariantList{"sleep", "Trolleo", "Reminds of shopping lists", "block"}));
    QTest::qWait(200);
    QCOMPARE(login.inhibitors(), 1);
    inhibitor.release();
    QTRY_COMPARE_WITH_TIMEOUT(login.inhibitors(), 0, soon);
}

void TestAlerts::delayWhereBlockIsRefused()
{
    const PrivateBus daemon;
    Login login(daemon.address());
    login.granted = QStringList{"delay"};
    MessageBus bus(daemon.address());
    SleepInhibitor inhibitor(bus);
    inhibitor.hold("test");
    QTRY_COMPARE_WITH_TIMEOUT(login.inhibitors(), 1, soon);
    QCOMPARE(login.calls("Inhibit").last().arguments().last(), "delay");
    inhibitor.release();
    QTRY_COMPARE_WITH_TIMEOUT(login.inhibitors(), 0, soon);
    login.granted.clear();
    login.heard.clear();
    inhibitor.hold("test");
    QTRY_COMPARE_WITH_TIMEOUT(login.calls("Inhibit").size(), 2, soon);
    QTest::qWait(200);
    QCOMPARE(login.calls("Inhibit").size(), 2); // and no more
}

void TestAlerts::releasedBeforeItIsGranted()
{
    const PrivateBus daemon;
    const Login login(daemon.address());
    MessageBus bus(daemon.address());
    bool isReady = false;
    bus.whenReady(this, [&] { isReady = true; });
    QTRY_VERIFY_WITH_TIMEOUT(isReady, soon);
    SleepInhibitor inhibitor(bus);
    inhibitor.hold("test");
    inhibitor.release();
    QTRY_COMPARE_WITH_TIMEOUT(login.calls("Inhibit").size(), 1, soon);
    QTRY_COMPARE_WITH_TIMEOUT(login.inhibitors(), 0, soon);
}

void TestAlerts::sleepThatComesAllTheSame()
{
    const PrivateBus daemon;
    Login login(daemon.address());
    login.granted = QStringList{"delay"};
    MessageBus bus(daemon.address());
    SleepInhibitor inhibitor(bus);
    QSignalSpy asleep(&inhibitor, &SleepInhibitor::fallingAsleep);
    QSignalSpy awake(&inhibitor, &SleepInhibitor::wokeUp);
    inhibitor.hold("test");
    QTRY_COMPARE_WITH_TIMEOUT(login.inhibitors(), 1, soon);
    login.prepareForSleep(true);
    QTRY_COMPARE_WITH_TIMEOUT(asleep.count(), 1, soon);
    QTRY_COMPARE_WITH_TIMEOUT(login.inhibitors(), 0, soon); // the lock is released without delay
    login.prepareForSleep(false);
    QTRY_COMPARE_WITH_TIMEOUT(awake.count(), 1, soon);
    QTRY_COMPARE_WITH_TIMEOUT(login.inhibitors(), 1, soon);
    inhibitor.release();
    login.prepareForSleep(true);
    QTest::qWait(200);
    QCOMPARE(asleep.count(), 1);
}

STOPPABLE_TEST_GUILESS_MAIN(TestAlerts)
#include "tst_alerts.moc"
