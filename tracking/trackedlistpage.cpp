// SPDX-License-Identifier: MIT
#include "tracking/trackedlistpage.h"

#include <cmath>

#include <QBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QStackedWidget>
#include <QTranslator>

#include "app/shopwindow.h"
#include "gps/positionwait.h"
#include "map/mapswidget.h"
#include "widgets/controls.h"
#include "widgets/listrow.h"
#include "widgets/pictures.h"
#include "widgets/touchlist.h"
#include "widgets/turningpage.h"

using namespace Qt::StringLiterals;

namespace {

/// A store with its distance in meters, which is drawn and spoken as people say it: only for rows
/// that are seen, because that takes longer than the number.
class DistanceRow : public ListRow
{
public:
    /// `language` is that of the page.
    explicit DistanceRow(const QLocale &language)
        : ListRow(QString(), 0)
        , locale(language)
    {}

    QVariant data(int role) const override
    {
        if (role != ShownSecondRole)
            return ListRow::data(role);
        bool isNumber = false;
        const double meters = ListRow::data(SecondColumnRole).toDouble(&isNumber);
        if (!isNumber)
            return ListRow::data(role);
        constexpr double kilometer = 1000;
        constexpr double far = 99.95; // kilometers; rounded from here on
        const double kilometers = meters / kilometer;
        if (std::round(meters) < kilometer)
            return ShopWindow::tr("%1 m").arg(locale.toString(meters, 'f', 0));
        return ShopWindow::tr("%1 km").arg(
            locale.toString(kilometers, 'f', kilometers < far ? 1 : 0));
    }

private:
    QLocale locale;
};

} // namespace

bool TrackedListPage::showsMap() const
{
    return views->currentIndex() == MapView;
}

void TrackedListPage::showView(View view) const
{
    views->setCurrentIndex(view);
    listButton->setChecked(view == ListView);
    mapButton->setChecked(view == MapView);
}

void ShopWindow::setupTrackedListPage()
{
    TurningPage *page = addPage(PageTrackedList, u"trackedListPage"_s, tr("Tracking"));
    TrackedListPage &p = *trackedListPage;
    p = {Frames::makeListFrame(page, u":/img/eye.svg"_s, QString())};
    p.list->setPlaceholder(u":/img/eye.svg"_s, tr("No stores to show."));
    // The page has the same layout in both orientations.
    page->turningBoxes.turn(Qt::Vertical);
    page->turningBoxes = {};

    p.title->setMinimumWidth(1); // four buttons leave little room on a narrow screen
    p.picture->hide();           // the view buttons serve as pictures
    p.listButton = Controls::viewButton(u"listViewButton"_s, u":/img/eye.svg"_s,
                                        Frames::listToolExtent, tr("List"));
    p.mapButton = Controls::viewButton(u"mapViewButton"_s, u":/img/map_icon.svg"_s,
                                       Frames::listToolExtent, tr("Map"));
    p.header->insertWidget(0, p.listButton);
    p.header->insertWidget(1, p.mapButton);

    // The second column, a third of the row in portrait, fits any distance on earth at this size.
    constexpr int rowPointSize = 13;
    QFont rowFont = p.list->font();
    rowFont.setPointSize(rowPointSize);
    p.list->setFont(rowFont);

    p.map = new MapsWidget(this);
    p.map->setObjectName(u"map"_s);
    p.map->setTrackingMode(true);
    p.views = new QStackedWidget;
    p.views->setObjectName(u"trackedViews"_s);
    delete page->layout()->replaceWidget(p.list, p.views);
    p.views->addWidget(p.list);
    p.views->addWidget(p.map);
    p.showView(TrackedListPage::ListView);
    if (run.trackingActive) // the page was built again in another language
        nameCriterion();

    p.ok = Controls::textButton(u"okButton"_s, u":/img/commit.png"_s, Controls::pictureExtent,
                                tr("OK"));
    Controls::setMain(p.ok);
    p.buttons->addWidget(p.ok, 1, Qt::AlignBottom);
    Frames::setTabOrder({p.listButton, p.mapButton, p.back, p.help, p.list, p.map, p.ok});

    connectView(p.listButton, p.views, TrackedListPage::ListView, &ShopWindow::trackingListShow);
    connectView(p.mapButton, p.views, TrackedListPage::MapView, &ShopWindow::trackingMapShow);
    connect(p.map, &MapsWidget::centerByGps, this, &ShopWindow::mapTrackCenterByGps);
    connect(p.map, &MapsWidget::centerByStore, this, &ShopWindow::mapTrackCenterByStore);
    connect(p.ok, &QPushButton::clicked, this, &ShopWindow::trackingClicked);
    connect(p.back, &QPushButton::clicked, this, &ShopWindow::trackingClicked);
    connect(p.help, &QPushButton::clicked, this, &ShopWindow::trackingListHelp);
}

void ShopWindow::viewFilteredTracking()
{
    if (!run.trackingActive) {
        takeTrackingChoices();
        if (!queryTrackedStores())
            return;
    }
    if (!gpsEnabled) {
        trackedListPage->showView(TrackedListPage::ListView);
        fillTrackedList(false);
        pageStack->setCurrentIndex(PageTrackedList);
        return;
    }
    if (!positionWait->haveGpsFix() && waitForPosition(&ShopWindow::showTrackingAfterGps)) {
        trackedListPage->list->clear();
        showWaiting();
        return;
    }
    refreshTrackedDistances();
    fillTrackedList(true);
    if (trackedListPage->showsMap())
        showPositionAndNearest();
    pageStack->setCurrentIndex(PageTrackedList);
}

/// Shows a row for each tracked store, with its distance if that is known. Without distances there
/// is no map. The selected store and the scroll position are kept.
void ShopWindow::fillTrackedList(bool distancesAreKnown)
{
    constexpr int decimals = 6;
    TrackedListPage &p = *trackedListPage;
    const int chosen = p.list->currentRow();
    const int chosenStoreId = chosen < 0 ? 0 : p.storeIds.value(chosen);
    if (p.list->count() != run.trackedStores.size()) {
        const QLocale language(applicationTranslator->language());
        QList<QListWidgetItem *> rows;
        for (qsizetype row = 0; row < run.trackedStores.size(); ++row)
            rows << new DistanceRow(language);
        p.list->showRows(rows);
    }
    p.mapButton->setEnabled(distancesAreKnown);
    p.storeIds.clear();
    bool differs = false;
    for (const TrackedStore &store : std::as_const(run.trackedStores)) {
        const bool known = distancesAreKnown && std::isfinite(store.distance);
        const int row = static_cast<int>(p.storeIds.size());
        const QString distance =
            known ? QString::number(double{store.distance}, 'f', decimals) : tr("unknown");
        if (static_cast<ListRow *>(p.list->item(row))->setTexts(store.name, distance))
            differs = true;
        p.storeIds << store.storeId;
    }
    QAbstractItemModel *model = p.list->model();
    if (differs) // a list that stays the same is not painted again
        emit model->dataChanged(model->index(0, 0), model->index(p.list->count() - 1, 0));
    p.list->chooseInPlace(chosenStoreId == 0 ? -1
                                             : static_cast<int>(p.storeIds.indexOf(chosenStoreId)));
}

void ShopWindow::showTrackingAfterGps()
{
    endWaiting();
    viewFilteredTracking();
    // The next view needs a new position.
    positionWait->expire();
}

void ShopWindow::trackingMapShow()
{
    endWaiting();
    // The map is centred before it is shown, so that it fetches no tiles of another place.
    if (positionWait->positionKnown())
        showPositionAndNearest();
    trackedListPage->showView(TrackedListPage::MapView);
    openNetworkSession();
}

/// Centres the map on the position and marks the nearest store.
void ShopWindow::showPositionAndNearest()
{
    mapTrackCenterByGps();
    markNearestStore();
}

void ShopWindow::markNearestStore()
{
    if (run.trackedStores.isEmpty())
        return;
    const TrackedStore &nearest = run.nearest();
    trackedListPage->map->setStorePin(nearest.latitude, nearest.longitude);
}

void ShopWindow::trackingListShow()
{
    trackedListPage->showView(TrackedListPage::ListView);
}

void ShopWindow::mapTrackCenterByGps()
{
    trackedListPage->map->setCenter(currentLatitude, currentLongitude);
    trackedListPage->map->setPositionMark(currentLatitude, currentLongitude);
}

void ShopWindow::mapTrackCenterByStore()
{
    if (run.trackedStores.isEmpty())
        return;
    const TrackedStore &nearest = run.nearest();
    trackedListPage->map->setCenter(nearest.latitude, nearest.longitude);
}
