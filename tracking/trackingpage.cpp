// SPDX-License-Identifier: MIT
#include "tracking/trackingpage.h"

#include <chrono>

#include <QBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>

#include "app/shopwindow.h"
#include "base/frames.h"
#include "base/installation.h"
#include "data/database.h"
#include "data/statements.h"
#include "gps/positionwait.h"
#include "gps/trshopgps.h"
#include "platform/alarmsound.h"
#include "platform/alerthelper.h"
#include "platform/devicealert.h"
#include "platform/informationbox.h"
#include "platform/messagebus.h"
#include "platform/notifier.h"
#include "platform/sleepinhibitor.h"
#include "tracking/trackedlistpage.h"
#include "tracking/trackingrun.h"
#include "widgets/controls.h"
#include "widgets/inputpause.h"
#include "widgets/namebutton.h"
#include "widgets/pictures.h"
#include "widgets/rowbutton.h"
#include "widgets/turningpage.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int alarmLoops = 3;
constexpr auto bannerTime = std::chrono::seconds(5);
/// The action key of a click on the notification itself.
const QString defaultAction = u"default"_s;

} // namespace

void ShopWindow::buildTrackingPage()
{
    TurningPage *page = addPage(PageTracking, u"trackingPage"_s, tr("Reminders (GPS tracking)"));
    TrackingPage &p = *trackingPage;
    const ToolbarFrame frame = Frames::makeToolbarFrame(page);
    frame.picture->setPicture(u":/img/reminder.svg"_s, Controls::pictureExtent);

    p.start = Controls::textButton(u"startButton"_s, u":/img/start.png"_s, Controls::pictureExtent,
                                   tr("Start"));
    p.stop = Controls::textButton(u"stopButton"_s, u":/img/stop.svg"_s, Controls::pictureExtent,
                                  tr("Stop"));
    p.view = Controls::textButton(u"viewButton"_s, u":/img/eye.svg"_s, Controls::pictureExtent,
                                  tr("View tracked"));
    p.all = new RowRadioButton(u"allStoresRadio"_s, tr("All Stores / Lists"));
    p.byCategory = new RowRadioButton(u"byCategoryRadio"_s, tr("By Category"));
    p.byStore = new RowRadioButton(u"byStoreRadio"_s, tr("By Store"));
    p.category = new NameButton;
    p.category->setObjectName(u"categoryButton"_s);
    p.category->setAccessibleDescription(p.byCategory->text());
    p.store = new NameButton;
    p.store->setObjectName(u"storeButton"_s);
    p.store->setAccessibleDescription(p.byStore->text());
    for (NameButton *button : {p.category, p.store}) {
        button->setMaximumWidth(textWidth);
        button->setEnabled(false);
    }

    p.criteria = new QWidget;
    p.criteria->setObjectName(u"criteria"_s);
    auto *criteria = new QVBoxLayout(p.criteria);
    criteria->setContentsMargins({});
    criteria->setSpacing(Controls::captionGap);
    for (QWidget *widget : QList<QWidget *>{p.all, p.byCategory, p.category, p.byStore, p.store})
        criteria->addWidget(widget);
    QVBoxLayout *sheet = Frames::addSheet(frame.contents);
    sheet->addWidget(p.criteria);
    sheet->addStretch();
    // Whichever of them is enabled is the main action.
    Controls::setMain(p.start);
    Controls::setMain(p.stop);
    Frames::addButtons(page, frame, {p.view, p.stop, p.start});

    connect(p.start, &QPushButton::clicked, this, &ShopWindow::startTracking);
    connect(p.stop, &QPushButton::clicked, this, &ShopWindow::stopTracking);
    connect(p.byCategory, &QRadioButton::toggled, this, &ShopWindow::rbByCategoryToggle);
    connect(p.byStore, &QRadioButton::toggled, this, &ShopWindow::rbByStoreToggle);
    connect(p.category, &QPushButton::clicked, this, &ShopWindow::selectCategoryForTracking);
    connect(p.store, &QPushButton::clicked, this, &ShopWindow::selectStoreForTracking);
    connect(p.view, &QPushButton::clicked, this, &ShopWindow::viewFilteredTracking);
    connect(frame.back, &QPushButton::clicked, this, &ShopWindow::backClicked);
    connect(frame.help, &QPushButton::clicked, this, &ShopWindow::trackingPageHelp);

    // A page that is built again shows the same state as before.
    QRadioButton *chosen = p.all;
    if (trackByCategory)
        chosen = p.byCategory;
    else if (trackByStore)
        chosen = p.byStore;
    chosen->setChecked(true);
    nameTrackingChoices();
    showTrackingState();
}

/// Creates the objects that outlive the pages and show tracking and the reminder outside the
/// window.
void ShopWindow::buildTrackingServices()
{
    inputPause = new InputPause(this);
    trackingNotice = new Notifier(MessageBus::session(), this);
    connect(trackingNotice, &Notifier::activationTokenGiven, this, &ShopWindow::bringToFrontBy);
    connect(trackingNotice, &Notifier::actionInvoked, this, &ShopWindow::bringToFront);
    const DeviceAlert &alert = DeviceAlert::instance();
    connect(&alert, &DeviceAlert::activationTokenGiven, this, &ShopWindow::bringToFrontBy);
    connect(&alert, &DeviceAlert::actionInvoked, this, &ShopWindow::answerReminder);
    sleepInhibitor = new SleepInhibitor(MessageBus::system(), this);
    connect(sleepInhibitor, &SleepInhibitor::fallingAsleep, this, [this] {
        InformationBox::information(this, tr("Tracking pauses while the device sleeps."),
                                    bannerTime);
    });
}

void ShopWindow::setTrackingActive(bool active)
{
    run.trackingActive = active;
    showTrackingState();
    if (active)
        sleepInhibitor->hold(tr("Reminds of shopping lists on the way"));
    else
        sleepInhibitor->release();
}

/// Updates the buttons, the criteria and the notification to show whether tracking runs.
void ShopWindow::showTrackingState() const
{
    trackingPage->start->setEnabled(!run.trackingActive);
    trackingPage->stop->setEnabled(run.trackingActive);
    trackingPage->criteria->setEnabled(!run.trackingActive);
    turningPage(PageTracking)->firstFocus =
        run.trackingActive ? trackingPage->stop : trackingPage->start;
    if (run.trackingActive)
        trackingNotice->show({.summary = tr("Tracking is running"),
                              .body = tr("Trolleo rings when a Store with an open List is near."),
                              .urgency = Notification::Low,
                              .isResident = true,
                              .actions = {{defaultAction, tr("Open Trolleo")}}});
    else
        trackingNotice->close();
}

/// Names the store and the category that are tracked or selected. Both may have been selected,
/// renamed or deleted on other pages, so everything that opens the tracking page calls this.
void ShopWindow::nameTrackingChoices() const
{
    const int storeId = run.trackingActive ? run.trackStoreId : currentStoreId;
    const int categoryId = run.trackingActive ? run.trackCategoryId : selectedCategoryId;
    QString store;
    if (storeId != 0)
        store = Database::name(Statements::storeName, storeId).value_or(QString());
    QString category;
    if (categoryId != 0)
        category = categoryName(categoryId);
    trackingPage->store->setName(store.isEmpty() ? categoryButtonDefaultText : store);
    trackingPage->category->setName(category.isEmpty() ? categoryButtonDefaultText : category);
}

void ShopWindow::trackingClicked()
{
    pageStack->setCurrentIndex(PageTracking);
}

void ShopWindow::selectStoreForTracking()
{
    viewShopsClicked();
}

void ShopWindow::selectCategoryForTracking()
{
    showCategoriesClicked();
}

void ShopWindow::rbByCategoryToggle(bool checked)
{
    trackByCategory = checked;
    trackingPage->category->setEnabled(checked);
}

void ShopWindow::rbByStoreToggle(bool checked)
{
    trackByStore = checked;
    trackingPage->store->setEnabled(checked);
}

void ShopWindow::startTracking()
{
    const QString warning = u":/img/warning_r.svg"_s;
    // The two messages about the receiver are never seen, because the tracking page is shown
    // instead.
    if (!gpsAvailable) {
        fillMessage(tr("No GPS available"),
                    tr("GPS tracking can not be started, cause no GPS available on this device."),
                    warning, pageStack->currentIndex());
        trackingPage->stop->setEnabled(false);
        trackingClicked();
        return;
    }
    if (!gpsEnabled) {
        fillMessage(tr("GPS is not Enabled"),
                    tr("GPS tracking can not be started, cause GPS is Diasabled.  You can enable "
                       "GPS usage in the Option at the Main page."),
                    warning, pageStack->currentIndex());
        trackingClicked();
        return;
    }
    takeTrackingChoices();
    if (!queryTrackedStores()) {
        showMessage(
            tr("Tracking Warning"),
            tr("There are no stores matching selected criteria with active shopping lists."),
            warning, PageTracking);
        return;
    }
    trackFoundStores();
}

void ShopWindow::trackFoundStores()
{
    // The last known position may be far from the current one.
    positionWait->expire();
    positionWait->tellAnew();
    setTrackingActive(true);
    gps->startUpdates();
}

void ShopWindow::stopTracking()
{
    endTracking();
    trackingClicked();
}

/// Ends tracking without leaving the current page.
void ShopWindow::endTracking()
{
    alarmSound->stop();
    alertHelper->alert(false);
    setTrackingActive(false);
    nameTrackingChoices();
    if (gpsAutoStart && gpsEnabled) {
        // A reminder has paused them.
        gps->startUpdates();
    } else {
        gps->stopUpdates();
        positionWait->expire();
    }
}

/// Shows the criterion in the title of the tracked list. For all stores the title is not changed.
void ShopWindow::nameCriterion() const
{
    if (trackingPage->byStore->isChecked())
        trackedListPage->title->setText(tr("Store: %1").arg(trackingPage->store->text()));
    else if (trackingPage->byCategory->isChecked())
        trackedListPage->title->setText(tr("By category: %1").arg(trackingPage->category->text()));
}

void ShopWindow::takeTrackingChoices()
{
    run.trackStoreId = currentStoreId;
    run.trackCategoryId = selectedCategoryId;
}

/// Fills the list of tracked stores by the selected criterion. Returns false if the list is empty.
bool ShopWindow::queryTrackedStores()
{
    QList<TrackedStore> found;
    if (trackingPage->byStore->isChecked()) {
        QSqlQuery query = Database::run(Statements::trackedStore, run.trackStoreId);
        if (query.first()) {
            found << TrackedStores::entry(query, run.trackStoreId);
            nameCriterion();
        }
    } else if (trackingPage->byCategory->isChecked()) {
        nameCriterion();
        QSqlQuery query = Database::run(Statements::trackedStoresOfCategory, run.trackCategoryId);
        found = TrackedStores::entries(query);
    } else if (trackingPage->all->isChecked()) {
        QSqlQuery query = Database::run(Statements::trackedStores);
        found = TrackedStores::entries(query);
    }
    run.watch(found);
    return !found.isEmpty();
}

void ShopWindow::refreshTrackedDistances()
{
    run.measure(currentLatitude, currentLongitude);
}

void ShopWindow::applyGpsSettings()
{
    // Created before anything can ring. The previous object is silent and lives as long as the
    // window.
    if (alarmSound)
        alarmSound->stop();
    alarmSound = new AlarmSound(soundFileName, this);
    alarmSound->setLoops(alarmLoops);
    if (gpsEnabled)
        gps->init();
    else
        gps->cancelRequest();
    if (run.trackingActive && !gpsEnabled)
        endTracking();
    // If tracking runs, it continues with the stores of its start, even on a source created just
    // now.
    if (run.trackingActive || (gpsAutoStart && gpsEnabled))
        gps->startUpdates();
    else if (positionWait->haveGpsFix() || gps->isUpdating())
        gps->stopUpdates();
    if (trackAutoStart && !run.trackingActive) {
        trackingPage->all->setChecked(true);
        // While the stores cannot be read, there only seem to be none.
        if (!tablesAreAwaited || !gpsAvailable || !gpsEnabled)
            startTracking();
    }
}

/// Starts the tracking that had to wait for the tables. What the person does meanwhile is not
/// interrupted, so it says nothing if there is no store.
void ShopWindow::tablesAreThere()
{
    tablesAreAwaited = false;
    if (!trackAutoStart || run.trackingActive || !gpsAvailable || !gpsEnabled)
        return;
    takeTrackingChoices();
    if (queryTrackedStores())
        trackFoundStores();
}
