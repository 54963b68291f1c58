// SPDX-License-Identifier: MIT
#include "platform/informationbox.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QEvent>
#include <QPainter>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int marginToWindow = 12;
constexpr int padding = 16;
constexpr int cornerRadius = 8;
constexpr int pointSize = 18;
constexpr std::chrono::milliseconds timeToJoinTheBus = 500ms;

/// Screen readers speak a notification as soon as it is shown, without moving the focus.
QAccessibleInterface *accessibleBanner(const QString & /*className*/, QObject *object)
{
    auto *box = qobject_cast<InformationBox *>(object);
    return box ? new QAccessibleWidget(box, QAccessible::Notification, box->text()) : nullptr;
}

} // namespace

InformationBox *InformationBox::information(QWidget *window, const QString &text,
                                            std::chrono::milliseconds time)
{
    // Installing the same factory again has no effect.
    QAccessible::installFactory(accessibleBanner);
    for (InformationBox *earlier :
         window->findChildren<InformationBox *>(Qt::FindDirectChildrenOnly)) {
        if (earlier->isKept)
            return earlier;
        earlier->vanish();
    }
    auto *box = new InformationBox(window, text, time);
    box->show();
    return box;
}

InformationBox::InformationBox(QWidget *window, const QString &text, std::chrono::milliseconds time)
    : QLabel(text, window)
{
    setObjectName(u"informationBox"_s);
    setAccessibleName(text);
    setTextFormat(Qt::PlainText);
    setTextInteractionFlags(Qt::NoTextInteraction);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    setAlignment(Qt::AlignCenter);
    setWordWrap(true);
    setMargin(padding);
    QFont large = font();
    large.setPointSize(pointSize);
    setFont(large);
    // Inverted colours make it stand out from any page in light and dark palettes.
    setBackgroundRole(QPalette::WindowText);
    setForegroundRole(QPalette::Window);
    timer.setSingleShot(true);
    timer.setTimerType(Qt::PreciseTimer);
    timer.setInterval(time);
    connect(&timer, &QTimer::timeout, this, &InformationBox::vanish);
    window->installEventFilter(this);
    place();
}

void InformationBox::keep()
{
    isKept = true;
}

bool InformationBox::eventFilter(QObject *object, QEvent *event)
{
    if (object == parent()) {
        if (event->type() == QEvent::Resize)
            place();
        else if (event->type() == QEvent::ChildAdded)
            raise(); // widgets that the window gets later must not cover the banner
    }
    return QLabel::eventFilter(object, event);
}

void InformationBox::paintEvent(QPaintEvent *event)
{
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(palette().brush(backgroundRole()));
        painter.drawRoundedRect(rect(), cornerRadius, cornerRadius);
    }
    QLabel::paintEvent(event);
}

void InformationBox::showEvent(QShowEvent *event)
{
    QLabel::showEvent(event);
    raise();
    place();
    if (!timer.isActive())
        timer.start();
    // Qt reports the banner to the accessibility bus if it is connected to it. A program that has
    // just started is not connected yet, so the banner is announced again later.
    if (!QAccessible::isActive())
        QTimer::singleShot(timeToJoinTheBus, this, &InformationBox::announce);
}

void InformationBox::announce()
{
    QAccessibleEvent showing(this, QAccessible::ObjectShow);
    QAccessible::updateAccessibility(&showing);
}

void InformationBox::vanish()
{
    if (isHidden())
        return; // already gone and waiting for deletion
    hide();
    deleteLater();
    emit gone();
}

/// Places the banner near the upper edge, as wide as the text needs and the window allows.
void InformationBox::place()
{
    const QSize room = parentWidget()->size() - QSize(2 * marginToWindow, 2 * marginToWindow);
    const int width = qMin(fontMetrics().size(0, text()).width() + 2 * padding, room.width());
    const int height = qMin(heightForWidth(width), room.height());
    setGeometry((parentWidget()->width() - width) / 2, marginToWindow, width, height);
}
