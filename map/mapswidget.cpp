// SPDX-License-Identifier: MIT
#include "map/mapswidget.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QTimer>

#include "map/mapscore.h"
#include "map/tileserver.h"

using namespace Qt::StringLiterals;

namespace {

// Milliseconds.
constexpr int tapAndHoldTime = 701;
constexpr int catchUpTime = 50;
// Pixels.
constexpr int stillWithin = 10;
constexpr int keyStep = 20;
constexpr int magnifierStep = 15;
constexpr int magnifierRadius = 60;
constexpr qreal magnification = 2;
constexpr int trackingZoom = 14;
constexpr int entryZoom = 16;
constexpr int attributionPointSize = 10;
constexpr int attributionMargin = 3;
constexpr int leastMenuPointSize = 9;

/// Returns the direction of an arrow key, or a null point for any other key.
QPoint directionOf(int key)
{
    switch (key) {
    case Qt::Key_Left:
        return {-1, 0};
    case Qt::Key_Right:
        return {1, 0};
    case Qt::Key_Up:
        return {0, -1};
    case Qt::Key_Down:
        return {0, 1};
    default:
        return {};
    }
}

QString translated(const char *text)
{
    return QCoreApplication::translate("ShopWindow", text);
}

/// A menu that opens under a pressed finger; releasing that finger chooses nothing. A complete
/// click on an entry chooses it. QMenu would only close the menu if the pointer seems not to have
/// moved since the menu opened, which in Qt 6.8 is the case for a pointer that was never seen
/// before.
class HeldMenu : public QMenu
{
public:
    using QMenu::QMenu;

protected:
    void mousePressEvent(QMouseEvent *event) override
    {
        wasPressed = true;
        if (QAction *entry = entryAt(event))
            setActiveAction(entry);
        else
            QMenu::mousePressEvent(event);
    }
    void mouseReleaseEvent(QMouseEvent *event) override
    {
        if (!wasPressed)
            return;
        QAction *entry = entryAt(event);
        close();
        if (entry)
            entry->trigger();
    }

private:
    QAction *entryAt(const QMouseEvent *event) const
    {
        QAction *action = actionAt(event->position().toPoint());
        return action && !action->isSeparator() ? action : nullptr;
    }

    bool wasPressed = false;
};

} // namespace

MapsWidget::MapsWidget(QWidget *parent)
    : QWidget(parent)
    , core(new MapsCore(this))
{
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAccessibleName(translated(QT_TRANSLATE_NOOP("ShopWindow", "Map")));
    core->setFetching(false);
    connect(core, &MapsCore::updated, this, &MapsWidget::updateMap);
}

MapsWidget::~MapsWidget() = default;

void MapsWidget::setTrackingMode(bool tracking)
{
    trackingMode = tracking;
    core->setZoom(tracking ? trackingZoom : entryZoom);
    core->invalidate();
}

void MapsWidget::setCenter(float latitude, float longitude)
{
    core->setCenter(latitude, longitude);
}

void MapsWidget::setStorePin(float latitude, float longitude)
{
    core->setStorePin(latitude, longitude);
}

void MapsWidget::hideStorePin()
{
    core->hideStorePin();
}

void MapsWidget::setPositionMark(float latitude, float longitude)
{
    core->setPositionMark(latitude, longitude);
}

bool MapsWidget::isCenteredOnMark(float latitude, float longitude) const
{
    return core->isCenteredOnMark(latitude, longitude);
}

float MapsWidget::centerLatitude() const
{
    return core->centerLatitude();
}

float MapsWidget::centerLongitude() const
{
    return core->centerLongitude();
}

void MapsWidget::toggleNightMode()
{
    nightMode = !nightMode;
    update();
}

void MapsWidget::updateMap(QRect rect)
{
    const qreal ratio = devicePixelRatio();
    update(QRectF(QPointF(rect.topLeft()) / ratio, QSizeF(rect.size()) / ratio).toAlignedRect());
}

void MapsWidget::setNewMark()
{
    const QPoint place = toDevice(pressPos);
    core->placeStorePinAt(place.x(), place.y());
    emit markUpdated(core->pinLatitude(), core->pinLongitude());
}

/// Converts to the device pixels of the core, so that tiles are as sharp as possible.
QPoint MapsWidget::toDevice(const QPoint &position) const
{
    return (QPointF(position) * devicePixelRatio()).toPoint();
}

void MapsWidget::fitCore()
{
    fittedRatio = devicePixelRatio();
    core->setPixelRatio(fittedRatio);
    core->setSize((QSizeF(size()) * fittedRatio).toSize());
    attribution = {};
    core->invalidate();
}

void MapsWidget::resizeEvent(QResizeEvent * /*event*/)
{
    fitCore();
}

void MapsWidget::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    // Turning the window shows every page for a moment, unseen. A map may also be centred just
    // after it is shown.
    QTimer::singleShot(0, this, &MapsWidget::fetchIfSeen);
    // A window that is activated again already has its focus.
    if (!event->spontaneous())
        QTimer::singleShot(0, this, [this] {
            if (isVisible())
                setFocus();
        });
}

void MapsWidget::fetchIfSeen()
{
    if (isVisible())
        core->setFetching(true);
}

void MapsWidget::hideEvent(QHideEvent *event)
{
    tapTimer.stop();
    if (menu)
        menu->close();
    core->setFetching(false);
    QWidget::hideEvent(event);
}

void MapsWidget::paintEvent(QPaintEvent *event)
{
    // There is no event for moving the window to a screen with another pixel ratio.
    if (fittedRatio != devicePixelRatio())
        fitCore();
    QPainter painter(this);
    const qreal ratio = devicePixelRatio();
    const QRect rect = event->rect();
    painter.scale(1 / ratio, 1 / ratio);
    core->render(
        &painter,
        QRectF(QPointF(rect.topLeft()) * ratio, QSizeF(rect.size()) * ratio).toAlignedRect());
    painter.resetTransform();
    if (zoomed)
        paintMagnifier(painter);
    if (attribution.isNull() || attributionFont != font()) {
        attribution = drawnAttribution();
        attributionFont = font();
    }
    painter.drawPixmap(QPointF(0, height() - attribution.deviceIndependentSize().height()),
                       attribution);
}

/// Draws the attribution once for all frames: drawing text takes as long as many tiles.
QPixmap MapsWidget::drawnAttribution() const
{
    QFont small = font();
    small.setPointSize(attributionPointSize);
    const QRect room(0, 0, width() - 2 * attributionMargin, height());
    // Left-aligned in right-to-left layouts, too.
    constexpr int flags = Qt::TextWordWrap | Qt::AlignLeft | Qt::AlignAbsolute;
    // The resolution of a pixmap can differ from that of the screen.
    QPixmap drawn(1, 1);
    const QRect place =
        QFontMetrics(small, &drawn).boundingRect(room, flags, TileServer::attribution());
    const QSize size(place.width() + 2 * attributionMargin, place.height());
    drawn = QPixmap((QSizeF(size) * fittedRatio).toSize());
    drawn.setDevicePixelRatio(fittedRatio);
    // Keeps the text legible on dark tiles.
    drawn.fill(QColor(255, 255, 255, 200)); // NOLINT: mostly opaque white
    QPainter painter(&drawn);
    painter.setFont(small);
    painter.setPen(Qt::black);
    painter.drawText(room.translated(attributionMargin, 0), flags, TileServer::attribution());
    return drawn;
}

void MapsWidget::paintMagnifier(QPainter &painter)
{
    const QPoint corner(magnifierRadius, magnifierRadius);
    const QRect lens(magnifierPos - corner, magnifierPos + corner);
    QPainterPath circle;
    circle.addEllipse(lens);
    painter.save();
    painter.setClipPath(circle);
    painter.translate(magnifierPos);
    painter.scale(magnification / devicePixelRatio(), magnification / devicePixelRatio());
    painter.translate(-toDevice(magnifierPos));
    core->render(&painter, QRect(toDevice(lens.topLeft()), toDevice(lens.bottomRight())));
    painter.restore();
    painter.drawEllipse(lens);
}

void MapsWidget::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    pressed = true;
    still = true;
    pressPos = event->position().toPoint();
    dragPos = pressPos;
    // A coarse timer may fire up to 5% early.
    tapTimer.start(tapAndHoldTime, Qt::PreciseTimer, this);
    tapDeadline.setRemainingTime(tapAndHoldTime + catchUpTime, Qt::PreciseTimer);
}

void MapsWidget::mouseMoveEvent(QMouseEvent *event)
{
    if (!(event->buttons() & Qt::LeftButton))
        return;
    const QPoint position = event->position().toPoint();
    if (zoomed) {
        magnifierPos = position;
        update();
        return;
    }
    if (pressed && still) {
        const QPoint delta = position - dragPos;
        still = -stillWithin < delta.x() && delta.x() < stillWithin && -stillWithin < delta.y() &&
                delta.y() < stillWithin;
        if (still)
            return;
        tapTimer.stop();
    }
    dragTo(position);
}

/// Moves the map with the finger.
void MapsWidget::dragTo(const QPoint &position)
{
    core->pan(toDevice(position) - toDevice(dragPos));
    dragPos = position;
}

void MapsWidget::mouseReleaseEvent(QMouseEvent * /*event*/)
{
    // The tap timer keeps running, because a short tap opens the menu as well.
    zoomed = false;
    update();
}

void MapsWidget::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != tapTimer.timerId()) {
        QWidget::timerEvent(event);
        return;
    }
    // Mouse events from the time when the program was busy may still arrive and make this a drag.
    if (tapDeadline.hasExpired()) {
        tapDeadline = QDeadlineTimer::Forever;
        tapTimer.start(catchUpTime, Qt::PreciseTimer, this);
        return;
    }
    if (!zoomed)
        openMenu();
    update();
}

void MapsWidget::openMenu()
{
    tapTimer.stop();
    if (menu)
        menu->close();
    menu = new HeldMenu(this);
    menu->setObjectName(u"mapMenu"_s);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->setFont(font());                 // large enough for a finger
    menu->setPalette(window()->palette()); // windows do not inherit palettes
    if (trackingMode) {
        menu->addAction(translated(QT_TRANSLATE_NOOP("ShopWindow", "Goto Store")), this,
                        &MapsWidget::centerByStore);
        menu->addSeparator();
        menu->addAction(translated(QT_TRANSLATE_NOOP("ShopWindow", "Goto Current GPS")), this,
                        &MapsWidget::centerByGps);
    } else {
        menu->addAction(translated(QT_TRANSLATE_NOOP("ShopWindow", "Set Coords")), this,
                        &MapsWidget::setNewMark);
        menu->addSeparator();
        menu->addAction(translated(QT_TRANSLATE_NOOP("ShopWindow", "Center by GPS")), this,
                        &MapsWidget::centerByGps);
    }
    // Some styles elide entries although they have just made room for them.
    const auto wholeWidth = [this] {
        return menu->sizeHint().width() + menu->fontMetrics().horizontalAdvance(u"MM"_s);
    };
    // Menu entries do not wrap, so the font is made smaller.
    for (QFont smaller = font();
         wholeWidth() > window()->width() && smaller.pointSize() > leastMenuPointSize;
         menu->setFont(smaller))
        smaller.setPointSize(smaller.pointSize() - 1);
    menu->setMinimumWidth(wholeWidth());
    menu->popup(mapToGlobal(pressPos));
}

/// The menu key acts like a tap in the middle of the map.
void MapsWidget::contextMenuEvent(QContextMenuEvent *event)
{
    if (event->reason() != QContextMenuEvent::Keyboard)
        return;
    pressPos = {width() / 2, height() / 2}; // same rounding as in the core
    openMenu();
}

void MapsWidget::keyPressEvent(QKeyEvent *event)
{
    const QPoint direction = directionOf(event->key());
    if (zoomed && (event->key() == Qt::Key_Z || event->key() == Qt::Key_Select)) {
        zoomed = false;
        update();
    } else if (direction.isNull()) {
        QWidget::keyPressEvent(event);
    } else if (zoomed) {
        moveMagnifier(direction * magnifierStep);
    } else {
        // The view moves in the direction of the key, so its contents move the other way.
        core->pan(-toDevice(direction * keyStep));
    }
}

void MapsWidget::moveMagnifier(const QPoint &delta)
{
    magnifierPos += delta;
    update();
}
