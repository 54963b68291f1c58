// SPDX-License-Identifier: MIT
#pragma once

#include <QBasicTimer>
#include <QDeadlineTimer>
#include <QFont>
#include <QPixmap>
#include <QPoint>
#include <QPointer>
#include <QWidget>

class MapsCore;
class QMenu;

/// The map on the screen: dragged by a finger or moved by the arrow keys, with a menu that opens on
/// tap and hold and by the menu key. Tiles are fetched while somebody sees it. Coordinates are
/// degrees, latitude first.
class MapsWidget : public QWidget
{
    Q_OBJECT

public:
    explicit MapsWidget(QWidget *parent = nullptr);
    ~MapsWidget() override;

    /// In tracking mode the menu leads to the nearest store and to the position, else it sets
    /// coordinates; tracking looks at a larger part of the world.
    void setTrackingMode(bool tracking);

    void setCenter(float latitude, float longitude);
    void setStorePin(float latitude, float longitude);
    void hideStorePin();
    void setPositionMark(float latitude, float longitude);

    float centerLatitude() const;
    float centerLongitude() const;

signals:
    /// The person has put the store pin there.
    void markUpdated(qreal latitude, qreal longitude);
    void centerByGps();
    void centerByStore();
    void centerByEdited();

public slots:
    void toggleNightMode();
    /// Paints `rect`, in pixels of the device, again.
    void updateMap(QRect rect);
    /// Puts the store pin where the map was pressed.
    void setNewMark();

protected:
    void contextMenuEvent(QContextMenuEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void timerEvent(QTimerEvent *event) override;

    /// The magnifier is out; nothing in the program takes it out yet.
    bool zoomed = false;
    /// Where the magnifier is.
    QPoint magnifierPos;

private:
    void fitCore();
    void fetchIfSeen();
    void openMenu();
    QPixmap drawnAttribution() const;
    void dragTo(const QPoint &position);
    void moveMagnifier(const QPoint &delta);
    QPoint toDevice(const QPoint &position) const;
    void paintMagnifier(QPainter &painter);

    MapsCore *core;
    /// Device pixels per pixel, as the core counts them.
    qreal fittedRatio = 1;
    bool pressed = false;
    /// The press has not moved far enough to be a drag.
    bool still = false;
    QPoint pressPos;
    QPoint dragPos;
    QBasicTimer tapTimer;
    /// Once it has expired, the program was kept from looking at what the finger did.
    QDeadlineTimer tapDeadline;
    bool nightMode = false;
    bool trackingMode = false;
    QPointer<QMenu> menu;
    /// Drawn for the size of the map and this font; null when it has to be drawn anew.
    QPixmap attribution;
    QFont attributionFont;
};
