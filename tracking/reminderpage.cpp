// SPDX-License-Identifier: MIT
#include "tracking/reminderpage.h"

#include <QApplication>
#include <QBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>

#include "app/shopwindow.h"
#include "gps/trshopgps.h"
#include "lists/shoppingpage.h"
#include "platform/alarmsound.h"
#include "platform/alerthelper.h"
#include "platform/devicealert.h"
#include "tracking/trackedlistpage.h"
#include "widgets/controls.h"
#include "widgets/inputpause.h"
#include "widgets/pictures.h"
#include "widgets/turningpage.h"
#include "widgets/wraplabel.h"

using namespace Qt::StringLiterals;

namespace {

// What the answers are called in the notification.
const QString nextAction = u"next"_s;
const QString stopAction = u"stop"_s;
const QString startAction = u"start"_s;
const QString openAction = u"default"_s;

} // namespace

void ShopWindow::buildReminderPage()
{
    TurningPage *page =
        addPage(PageReminder, u"reminderPage"_s, QString(), QAccessible::AlertMessage);
    ReminderPage &p = *reminderPage;

    p.heading = Controls::valueLabel(u"reminderHeading"_s);
    p.heading->setText(tr("You have a Shopping List for this Store:"));
    p.heading->setAlignment(Qt::AlignCenter);
    p.store = Controls::valueLabel(u"reminderStore"_s);
    p.store->setAlignment(Qt::AlignCenter);
    p.store->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    PictureLabel *picture = Controls::pictureLabel(u"picture"_s);
    picture->setPicture(u":/img/reminder.svg"_s, Controls::pictureExtent);
    p.next = Controls::textButton(u"nextButton"_s, u":/img/next.svg"_s, Controls::pictureExtent,
                                  tr("Next Store"));
    p.stop = Controls::textButton(u"stopButton"_s, u":/img/stop.svg"_s, Controls::pictureExtent,
                                  tr("Stop tracking"));
    p.startShopping = Controls::textButton(u"startShoppingButton"_s, u":/img/shopping-cart.svg"_s,
                                           Controls::pictureExtent, tr("Start Shopping"));

    auto *box = new QVBoxLayout(page);
    Controls::setPageSpacing(box);
    box->addWidget(p.heading);
    box->addWidget(p.store, 1);
    box->addWidget(picture);
    for (QPushButton *button : {p.next, p.stop, p.startShopping})
        box->addWidget(button);

    connect(p.next, &QPushButton::clicked, this, &ShopWindow::skipStore);
    connect(p.stop, &QPushButton::clicked, this, &ShopWindow::stopTracking);
    connect(p.startShopping, &QPushButton::clicked, this, &ShopWindow::startShoppingGps);
}

/// What a position does while tracking runs. Somebody who waited for it has been served already.
void ShopWindow::track(bool somebodyWaited)
{
    const Sight seen = somebodyWaited ? Sight::OtherPage : seenByPerson();
    const PositionEffect effect = run.take(currentLatitude, currentLongitude, seen);
    if (effect.refreshesList)
        fillTrackedList(true);
    if (effect.centersMap)
        mapTrackCenterByGps();
    if (effect.rings)
        showReminder();
    if (effect.refreshesStore)
        fillStoresPage();
}

Sight ShopWindow::seenByPerson() const
{
    switch (pageStack->currentIndex()) {
    case PageStores:
        return Sight::StorePage;
    case PageTrackedList:
        return trackedListPage->showsMap() ? Sight::TrackedMap : Sight::TrackedList;
    default:
        return Sight::OtherPage;
    }
}

/// Rings for the nearest store. No position is followed until the person has answered.
void ShopWindow::showReminder()
{
    constexpr int decimals = 2;
    // What was checked is in the database; the state that follows from it else comes with "OK".
    if (pageStack->currentIndex() == PageDoShopping)
        updateListState();
    alarmSound->play();
    gps->stopUpdates();
    const TrackedStore &nearest = run.trackedStores.first();
    // Not translated: it says the same in every language of the program.
    reminderPage->store->setText(u"%1 (at %2 meters)"_s.arg(
        nearest.name, QString::number(double{nearest.distance}, 'f', decimals)));
    QWidget *page = pageStack->widget(PageReminder);
    page->setAccessibleName(reminderPage->heading->text() + u' ' + reminderPage->store->text());
    prepareAlert();
    alertHelper->alert(true);
    closeWhatCoversPages();
    pageStack->setCurrentIndex(PageReminder);
    // None of its buttons: a key that is on its way must not press one. It is read out, too.
    page->setFocus();
    // Only now: a field that loses the focus takes the word that is being composed.
    inputPause->begin(page);
    bringToFront();
}

void ShopWindow::prepareAlert() const
{
    QString heading = reminderPage->heading->text();
    if (heading.endsWith(u':'))
        heading.chop(1); // the store stands above it
    DeviceAlert::instance().setNotification(
        {.summary = reminderPage->store->text(),
         .body = heading,
         .urgency = Notification::Critical,
         .isResident = true, // where the window could not come to the front, it is all there is
         .actions = {{openAction, tr("Open Trolleo")},
                     {nextAction, reminderPage->next->text()},
                     {stopAction, reminderPage->stop->text()},
                     {startAction, reminderPage->startShopping->text()}}});
}

void ShopWindow::answerReminder(const QString &key)
{
    // The page may have been used already, which the notification does not know yet.
    const bool isAsked = pageStack->currentIndex() == PageReminder;
    if (key == openAction)
        bringToFront();
    else if (isAsked && key == nextAction)
        skipStore();
    else if (isAsked && key == stopAction)
        stopTracking();
    else if (isAsked && key == startAction) {
        startShoppingGps();
        bringToFront();
    }
}

/// Whoever chooses a file, or from a menu, could not answer the reminder. A dialog may have opened
/// a box.
void ShopWindow::closeWhatCoversPages()
{
    while (QWidget *popup = QApplication::activePopupWidget()) {
        if (!popup->close())
            break;
    }
    while (QWidget *dialog = QApplication::activeModalWidget()) {
        if (!dialog->close())
            break;
    }
}

void ShopWindow::bringToFrontBy(const QString &activationToken)
{
    // Where Qt's Wayland plugin looks for it, once.
    qputenv("XDG_ACTIVATION_TOKEN", activationToken.toUtf8());
    bringToFront();
}

/// Lets the person see the window, whatever is before it.
void ShopWindow::bringToFront()
{
    QWidget *top = window();
    top->setWindowState(top->windowState() & ~Qt::WindowMinimized);
    top->show();
    top->raise();
    top->activateWindow();
    // A compositor need not let a window push itself forward; it shows then that it wants to.
    QApplication::alert(top);
}

void ShopWindow::skipStore()
{
    alarmSound->stop();
    alertHelper->alert(false);
    if (!run.trackedStores.isEmpty())
        run.trackedStores.removeFirst();
    if (run.trackedStores.isEmpty()) {
        stopTracking();
        return;
    }
    gps->startUpdates();
    pageStack->setCurrentIndex(PageTracking);
    if (trackedListPage->showsMap()) {
        mapTrackCenterByStore();
        markNearestStore();
    }
}

void ShopWindow::startShoppingGps()
{
    if (run.trackedStores.isEmpty())
        return;
    alarmSound->stop();
    shoppingFromReminder = true;
    const TrackedStore &nearest = run.trackedStores.first();
    currentListId = nearest.listId;
    currentStoreId = nearest.storeId;
    shoppingPage->listName->setText(nearest.listName);
    // What else the page tells of the list, for when shopping ends.
    fillShoppingPage();
    stopTracking();
    startShopping();
}
