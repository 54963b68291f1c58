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
#include "map/mapswidget.h"
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

constexpr int storePointSize = 28;

// Action keys of the notification.
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
    p.heading->setProperty(Controls::captionProperty, true);
    p.store = Controls::valueLabel(u"reminderStore"_s);
    p.store->setAlignment(Qt::AlignCenter);
    p.store->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    // What a person is to see first.
    QFont large = page->font();
    large.setPointSize(storePointSize);
    large.setBold(true);
    p.store->setFont(large);
    PictureLabel *picture = Controls::pictureLabel(u"picture"_s);
    picture->setPicture(u":/img/reminder.svg"_s, Controls::pictureExtent);
    p.next = Controls::textButton(u"nextButton"_s, u":/img/next.svg"_s, Controls::pictureExtent,
                                  tr("Next Store"));
    p.stop = Controls::textButton(u"stopButton"_s, u":/img/stop.svg"_s, Controls::pictureExtent,
                                  tr("Stop tracking"));
    p.startShopping = Controls::textButton(u"startShoppingButton"_s, u":/img/shopping-cart.svg"_s,
                                           Controls::pictureExtent, tr("Start Shopping"));

    auto *box = new QVBoxLayout(page);
    Controls::setPaneSpacing(box);
    QVBoxLayout *sheet = Frames::addSheet(box);
    sheet->addWidget(p.heading);
    sheet->addWidget(p.store, 1);
    sheet->addWidget(picture);
    Controls::setMain(p.startShopping);
    auto *answers = new QVBoxLayout;
    Controls::addStack(answers, {p.next, p.stop, p.startShopping});
    box->addLayout(answers);

    connect(p.next, &QPushButton::clicked, this, &ShopWindow::skipStore);
    connect(p.stop, &QPushButton::clicked, this, &ShopWindow::stopTracking);
    connect(p.startShopping, &QPushButton::clicked, this, &ShopWindow::startShoppingGps);
}

/// Applies a position while tracking runs. `somebodyWaited` is true if a page has waited for the
/// position and already used it.
void ShopWindow::track(bool somebodyWaited)
{
    const Sight seen = somebodyWaited ? Sight::OtherPage : seenByPerson();
    const PositionEffect effect = run.take(currentLatitude, currentLongitude, seen);
    if (effect.refreshesList)
        fillTrackedList(true);
    // A position that stays the same does not paint the map again.
    if (effect.centersMap &&
        !trackedListPage->map->isCenteredOnMark(currentLatitude, currentLongitude))
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

/// Rings for the nearest store. Updates stop until the user has answered.
void ShopWindow::showReminder()
{
    constexpr int decimals = 2;
    alarmSound->play();
    gps->stopUpdates();
    const TrackedStore &nearest = run.nearest();
    // Not translated: the text is the same in every language of the program.
    reminderPage->store->setText(u"%1 (at %2 meters)"_s.arg(
        nearest.name, QString::number(double{nearest.distance}, 'f', decimals)));
    QWidget *page = pageStack->widget(PageReminder);
    page->setAccessibleName(reminderPage->heading->text() + u' ' + reminderPage->store->text());
    prepareAlert();
    alertHelper->alert(true);
    // Checked goods are already in the database. The state of the list would be updated only by
    // "OK". A locked database delays what follows, but not the alarm.
    finishShopping();
    closeWhatCoversPages();
    pageStack->setCurrentIndex(PageReminder);
    // The page has the focus and not a button, because a key already pressed must not press a
    // button. Screen readers also read the page.
    page->setFocus();
    // Called after the focus change, because a field that loses focus commits the word being
    // composed.
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
         .isResident = true, // needed if the window could not come to the front
         .actions = {{openAction, tr("Open Trolleo")},
                     {nextAction, reminderPage->next->text()},
                     {stopAction, reminderPage->stop->text()},
                     {startAction, reminderPage->startShopping->text()}}});
}

void ShopWindow::answerReminder(const QString &key)
{
    // Once the page is answered, answers of the notification are not reported any more.
    if (key == openAction)
        bringToFront();
    else if (key == nextAction)
        skipStore();
    else if (key == stopAction)
        stopTracking();
    else if (key == startAction) {
        startShoppingGps();
        bringToFront();
    }
}

/// Closes popups and dialogs, which would block the reminder. A dialog may itself have opened a
/// message box.
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
    // Qt's Wayland plugin reads the token from here, once.
    if (!activationToken.isEmpty())
        qputenv("XDG_ACTIVATION_TOKEN", activationToken.toUtf8());
    bringToFront();
}

/// Brings the window to the front, even if it is minimised or covered.
void ShopWindow::bringToFront()
{
    QWidget *top = window();
    top->setWindowState(top->windowState() & ~Qt::WindowMinimized);
    top->show();
    top->raise();
    top->activateWindow();
    // A compositor may refuse to activate a window. The window then demands attention.
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
    const TrackedStore &nearest = run.nearest();
    currentListId = nearest.listId;
    currentStoreId = nearest.storeId;
    shoppingPage->listName->setText(nearest.listName);
    // Updates the rest of the page, which is shown when shopping ends.
    fillShoppingPage();
    stopTracking();
    startShopping();
}
