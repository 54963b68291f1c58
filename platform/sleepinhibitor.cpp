// SPDX-License-Identifier: MIT
#include "platform/sleepinhibitor.h"

#include "platform/messagebus.h"

using namespace Qt::StringLiterals;

namespace {

const QString service = u"org.freedesktop.login1"_s;
const QString path = u"/org/freedesktop/login1"_s;
const QString interface = u"org.freedesktop.login1.Manager"_s;
const MessageBus::Signal sleepSignal{{}, path, interface, u"PrepareForSleep"_s, u"b"_s};
const QString block = u"block"_s;
const QString delay = u"delay"_s;

} // namespace

SleepInhibitor::SleepInhibitor(MessageBus &systemBus, QObject *parent)
    : QObject(parent)
    , bus(systemBus)
{
    connect(&bus, &MessageBus::lost, this, [this] {
        if (holding)
            hold(reason);
    });
}

void SleepInhibitor::hold(const QString &why)
{
    release();
    reason = why;
    holding = std::make_unique<QObject>();
    bus.whenReady(holding.get(), [this] {
        bus.connectSignal(sleepSignal, this, SLOT(prepareForSleep(bool)));
        inhibitBy(block);
    });
}

void SleepInhibitor::release()
{
    lock = {};
    if (!holding)
        return;
    holding.reset();
    bus.disconnectSignal(sleepSignal, this, SLOT(prepareForSleep(bool)));
}

void SleepInhibitor::inhibitBy(const QString &mode)
{
    bus.call(
        holding.get(),
        {service, path, interface, u"Inhibit"_s, {u"sleep"_s, u"Trolleo"_s, reason, mode}, true},
        u"h"_s,
        [this](const QVariantList &results) {
            lock = qvariant_cast<QDBusUnixFileDescriptor>(results.constFirst());
        },
        [this, mode](const QString & /*error*/) {
            // "block" requires an active session of the user; "delay" is granted to everyone.
            if (mode == block)
                inhibitBy(delay);
        });
}

void SleepInhibitor::prepareForSleep(bool begins)
{
    if (!holding)
        return;
    if (begins) {
        lock = {}; // otherwise the device would wait in vain
        emit fallingAsleep();
    } else {
        inhibitBy(block);
        emit wokeUp();
    }
}
