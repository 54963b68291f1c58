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

/// The map on the screen. It is dragged by a finger or moved by the arrow keys, and has a menu that
/// opens on tap and hold or by the menu key. Tiles are fetched only while the map is visible.
/// Coordinates are in degrees, latitude first.
class MapsWidget : public QWidget
{
    Q_OBJECT

public:
    explicit MapsWidget(QWidget *parent = nullptr);
    ~MapsWidget() override;

    /// In tracking mode the menu centres the map on the nearest store or the position, and the zoom
    /// shows a larger area. Otherwise the menu sets coordinates.
    void setTrackingMode(bool tracking);

    void setCenter(float latitude, float longitude);
    void setStorePin(float latitude, float longitude);
    void hideStorePin();
    void setPositionMark(float latitude, float longitude);
    /// Returns whether the position mark and the centre are at that place.
    bool isCenteredOnMark(float latitude, float longitude) const;

    float centerLatitude() const;
    float centerLongitude() const;

signals:
    /// The user has placed the store pin.
    void markUpdated(qreal latitude, qreal longitude);
    void centerByGps();
    void centerByStore();
    void centerByEdited();

public slots:
    void toggleNightMode();
    /// Repaints `rect`, in device pixels.
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

    /// Whether the magnifier is shown. The program does not show it yet.
    bool zoomed = false;
    /// The centre of the magnifier.
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
    /// Device pixels per pixel, as last passed to the core.
    qreal fittedRatio = 1;
    bool pressed = false;
    /// The press has not moved far enough to be a drag.
    bool still = false;
    QPoint pressPos;
    QPoint dragPos;
    QBasicTimer tapTimer;
    /// If it has expired when the tap timer fires, the program was busy and mouse events may be
    /// pending.
    QDeadlineTimer tapDeadline;
    bool nightMode = false;
    bool trackingMode = false;
    QPointer<QMenu> menu;
    /// The attribution, drawn for the size of the map and attributionFont; null if it must be drawn
    /// again.
    QPixmap attribution;
    QFont attributionFont;
};
