// SPDX-License-Identifier: MIT
#include "tracking/trackedlistpage.h"

#include <cmath>

#include <QBoxLayout>
#include <QPushButton>
#include <QStackedWidget>

#include "app/shopwindow.h"
#include "lists/listrow.h"
#include "widgets/controls.h"
#include "widgets/touchlist.h"

using namespace Qt::StringLiterals;

void ShopWindow::setupTrackedListPage()
{
    QWidget *page = addPage(PageTrackedList, u"trackedListPage"_s);
    TrackedListPage &p = trackedListPage;
    p = {Frames::makeListFrame(page, u":/img/eye.svg"_s, QString())};
    // The same in both orientations.
    p.turningBoxes.turn(Qt::Vertical);

    p.ok = Controls::textButton(u"okButton"_s, u":/img/commit.png"_s, Controls::pictureExtent,
                                tr("OK"));
    p.buttons->addWidget(p.ok, 1);

    connect(p.ok, &QPushButton::clicked, this, &ShopWindow::trackingClicked);
    connect(p.back, &QPushButton::clicked, this, &ShopWindow::trackingClicked);
    connect(p.help, &QPushButton::clicked, this, &ShopWindow::trackingListHelp);
}

void ShopWindow::viewFilteredTracking()
{
    if (!trackingActive) {
        takeTrackingChoices();
        if (!queryTrackedStores())
            return;
    }
    trackedListPage.list->clear();
    if (!gpsEnabled) {
        fillTrackedList(false);
        pageStack->setCurrentIndex(PageTrackedList);
        return;
    }
    if (!haveGpsFix)
        fixCurrentGps();
    if (waitingForFix) {
        disconnect(this, &ShopWindow::requestedGpsUpdate, nullptr, nullptr);
        connect(this, &ShopWindow::requestedGpsUpdate, this, &ShopWindow::showTrackingAfterGps);
        showWaiting();
        return;
    }
    refreshTrackedDistances();
    fillTrackedList(true);
    pageStack->setCurrentIndex(PageTrackedList);
}

/// Adds a row for each tracked store, with its distance if that is known.
void ShopWindow::fillTrackedList(bool distancesAreKnown)
{
    constexpr int decimals = 6;
    for (const TrackedStore &store : std::as_const(trackedStores)) {
        auto *row = new ListRow(store.name, 0);
        const bool known = distancesAreKnown && std::isfinite(store.distance);
        row->setData(SecondColumnRole, known
                                           ? QString::number(double{store.distance}, 'f', decimals)
                                           : tr("unknown"));
        trackedListPage.list->addItem(row);
    }
}

void ShopWindow::showTrackingAfterGps()
{
    endWaiting();
    viewFilteredTracking();
    // The next view waits for a position of its own.
    haveGpsFix = false;
}

void ShopWindow::trackingMapShow() {}

void ShopWindow::trackingListShow() {}

void ShopWindow::mapTrackCenterByGps() {}

void ShopWindow::mapTrackCenterByStore() {}
