// SPDX-License-Identifier: MIT
#include "platform/devicealert.h"

#include <QCoreApplication>
#include <QPointer>
#include <QVariantMap>

#include "platform/messagebus.h"

using namespace Qt::StringLiterals;

namespace {

const QString feedbackService = u"org.sigxcpu.Feedback"_s;
const QString feedbackPath = u"/org/sigxcpu/Feedback"_s;
/// An event name as freedesktop.org defines it. The quiet profile still vibrates for it.
const QString alarmEvent = u"alarm-clock-elapsed"_s;
constexpr int longestFeedback = 30; // seconds

} // namespace

DeviceAlert::DeviceAlert(MessageBus &sessionBus, QObject *parent)
    : QObject(parent)
    , bus(sessionBus)
    , notifier(sessionBus)
{
    connect(&notifier, &Notifier::actionInvoked, this, &DeviceAlert::actionInvoked);
    connect(&notifier, &Notifier::activationTokenGiven, this, &DeviceAlert::activationTokenGiven);
}

DeviceAlert::~DeviceAlert()
{
    stop();
}

DeviceAlert &DeviceAlert::instance()
{
    static QPointer<DeviceAlert> alert;
    if (!alert)
        alert = new DeviceAlert(MessageBus::session(), QCoreApplication::instance());
    return *alert;
}

void DeviceAlert::setNotification(const Notification &content)
{
    notification = content;
}

void DeviceAlert::start()
{
    stop();
    notifier.show(notification);
    startFeedback();
}

void DeviceAlert::stop()
{
    ++wanted;
    waiting.reset();
    notifier.close();
    if (feedbackId != 0)
        endFeedback(feedbackId);
    feedbackId = 0;
}

void DeviceAlert::startFeedback()
{
    const int current = wanted;
    // The quiet profile gives vibration and light only, since the alarm sounds by itself.
    const QVariantMap hints{{u"profile"_s, u"quiet"_s}};
    waiting = std::make_unique<QObject>();
    bus.whenReady(waiting.get(), [this, hints, current] {
        bus.call(this,
                 {feedbackService,
                  feedbackPath,
                  feedbackService,
                  u"TriggerFeedback"_s,
                  {u"trolleo"_s, alarmEvent, hints, longestFeedback},
                  true},
                 u"u"_s, [this, current](const QVariantList &results) {
                     const uint feedback = results.constFirst().toUInt();
                     if (current == wanted)
                         feedbackId = feedback;
                     else
                         endFeedback(feedback);
                 });
    });
}

void DeviceAlert::endFeedback(uint feedback)
{
    bus.send({feedbackService, feedbackPath, feedbackService, u"EndFeedback"_s, {feedback}});
}
