// SPDX-License-Identifier: MIT
#include <chrono>
#include <cmath>

#include <QLabel>
#include <QLocale>
#include <QStackedWidget>

#include "app/shopwindow.h"
#include "base/trsettings.h"
#include "gps/coordinatespage.h"
#include "gps/positionwait.h"
#include "gps/trshopgps.h"
#include "map/mapswidget.h"
#include "platform/informationbox.h"
#include "stores/storeeditpage.h"
#include "stores/storepages.h"
#include "tracking/trackedlistpage.h"
#include "widgets/namebutton.h"

using namespace Qt::StringLiterals;

void ShopWindow::gpsAcquired(qreal longitude, qreal latitude, qreal altitude)
{
    currentLongitude = static_cast<float>(longitude);
    currentLatitude = static_cast<float>(latitude);
    // A receiver with too few satellites reports no altitude. A statement cannot contain "nan" or
    // "inf".
    const auto meters = static_cast<float>(altitude);
    currentAltitude = std::isfinite(meters) ? meters : 0;
    positionWait->arrived();
    // The reminder must be answered first.
    if (pageStack->currentIndex() == PageReminder)
        return;
    const bool somebodyWaits = positionWait->waitingForFix();
    if (somebodyWaits)
        emit requestedGpsUpdate();
    if (run.trackingActive) {
        track(somebodyWaits);
    } else if (positionWait->distancePending) {
        storesPage->distance->setText(distanceToShownStore());
        positionWait->distancePending = false;
    }
}

void ShopWindow::coordUpdateTimeout()
{
    positionWait->refused();
}

/// Ends the wait, so that a position that arrives later has no effect.
void ShopWindow::endWaiting()
{
    positionWait->end();
    disconnect(this, &ShopWindow::requestedGpsUpdate, nullptr, nullptr);
}

void ShopWindow::takeRoughPosition(qreal longitude, qreal latitude, qreal accuracyMeters)
{
    positionWait->roughArrived();
    MapsWidget *map = nullptr;
    if (positionWait->waitingForFix() && pageStack->currentIndex() == PageCoordinates)
        map = coordinatesPage->map;
    else if (run.trackingActive && pageStack->currentIndex() == PageTrackedList)
        map = trackedListPage->map;
    if (map)
        map->setCenter(static_cast<float>(latitude), static_cast<float>(longitude));
    if (pageStack->currentIndex() == PageReminder || !positionWait->tellsRough())
        return;
    constexpr qreal metersPerKilometer = 1000;
    const QString kilometers =
        QLocale().toString(std::ceil(accuracyMeters / metersPerKilometer), 'f', 0);
    InformationBox::information(this,
                                tr("Your position is known to within %1 km only.").arg(kilometers),
                                InformationBox::adviceTime);
}

void ShopWindow::tellNoPosition(const QString &text)
{
    if (positionWait->tellsMissing())
        InformationBox::information(this, text, InformationBox::adviceTime);
}

void ShopWindow::startGpsFailed()
{
    // Not translated: the text is the same in every language of the program.
    showMessage(tr("GPS"), u"Failed to start GPS system"_s, u":/img/error.svg"_s, PageMain);
}

void ShopWindow::fixCurrentGps()
{
    if (positionWait->haveGpsFix())
        takePosition();
    else
        positionWait->begin();
}

bool ShopWindow::waitForPosition(void (ShopWindow::*taken)())
{
    fixCurrentGps();
    if (!positionWait->waitingForFix())
        return false;
    disconnect(this, &ShopWindow::requestedGpsUpdate, nullptr, nullptr);
    connect(this, &ShopWindow::requestedGpsUpdate, this, taken);
    return true;
}

/// Takes the position that has arrived. The next wait needs a new position.
void ShopWindow::takeAwaitedPosition()
{
    endWaiting();
    takePosition();
    positionWait->expire();
}

/// Sets the coordinates of the store being edited to the current position.
void ShopWindow::takePosition()
{
    draft.takePosition(currentLatitude, currentLongitude, currentAltitude);
    storeEditPage->coordinates->setName(tr("coords is set (update...)"));
    positionWait->satisfy();
    TrSettings::instance().setLastPosition(currentLatitude, currentLongitude);
}
