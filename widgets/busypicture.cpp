// SPDX-License-Identifier: MIT
#include "widgets/busypicture.h"

#include <chrono>

#include <QPainter>
#include <QStyle>
#include <QTimerEvent>

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds step = 60ms;
constexpr int anglePerStep = 15;
constexpr int arcAngle = 90;
constexpr int fullAngle = 360;
constexpr int unitsPerDegree = 16; // of QPainter::drawArc()
// Device-independent pixels.
constexpr int aroundPicture = 18;
constexpr int arcWidth = 4;

} // namespace

BusyPicture::BusyPicture(QWidget *parent)
    : PictureLabel(parent)
{}

QSize BusyPicture::sizeHint() const
{
    return PictureLabel::sizeHint() + 2 * QSize(aroundPicture, aroundPicture);
}

void BusyPicture::showEvent(QShowEvent *event)
{
    PictureLabel::showEvent(event);
    if (style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, this) > 0)
        timer.start(step.count(), this);
}

void BusyPicture::hideEvent(QHideEvent *event)
{
    timer.stop();
    PictureLabel::hideEvent(event);
}

void BusyPicture::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != timer.timerId()) {
        PictureLabel::timerEvent(event);
        return;
    }
    angle = (angle + anglePerStep) % fullAngle;
    update();
}

void BusyPicture::paintEvent(QPaintEvent *event)
{
    PictureLabel::paintEvent(event);
    QRect square(QPoint(), sizeHint().boundedTo(size()));
    square.moveCenter(rect().center());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    square.adjust(arcWidth, arcWidth, -arcWidth, -arcWidth);
    painter.setPen(QPen(palette().color(QPalette::Button), arcWidth));
    painter.drawEllipse(square);
    painter.setPen(QPen(palette().color(QPalette::Link), arcWidth, Qt::SolidLine, Qt::RoundCap));
    const int quarter = fullAngle / 4; // QPainter counts from three o'clock, counterclockwise
    painter.drawArc(square, (quarter - angle) * unitsPerDegree, -arcAngle * unitsPerDegree);
}
