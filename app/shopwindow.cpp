// SPDX-License-Identifier: MIT
#include "app/shopwindow.h"

#include <algorithm>
#include <chrono>

#include <QApplication>
#include <QFont>
#include <QFontMetrics>
#include <QLayout>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QResizeEvent>
#include <QScopedValueRollback>
#include <QScreen>
#include <QStackedWidget>
#include <QTimer>
#include <QTranslator>

#include "app/mainpage.h"
#include "app/messagepages.h"
#include "app/optionspage.h"
#include "base/frames.h"
#include "base/installation.h"
#include "base/trsettings.h"
#include "data/database.h"
#include "gps/coordinatespage.h"
#include "gps/positionwait.h"
#include "gps/trshopgps.h"
#include "lists/doshoppingpage.h"
#include "lists/itempages.h"
#include "lists/shoppinglistpages.h"
#include "lists/shoppingpage.h"
#include "platform/alerthelper.h"
#include "platform/informationbox.h"
#include "stores/categorypages.h"
#include "stores/storeeditpage.h"
#include "stores/storepages.h"
#include "tracking/reminderpage.h"
#include "tracking/trackedlistpage.h"
#include "tracking/trackingpage.h"
#include "widgets/contrast.h"
#include "widgets/controls.h"
#include "widgets/pagestack.h"
#include "widgets/pageswitchguard.h"
#include "widgets/pictures.h"
#include "widgets/touchlist.h"
#include "widgets/turningpage.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto bannerTime = 3000ms;
/// Of a banner that is removed before.
constexpr auto longestBannerTime = 24h;
constexpr QSize preferredSize(800, 480);
constexpr int pagePointSize = 22;
/// The former number of the attribute that rotates a window with the device. In Qt 6 it is the
/// number of Qt::WA_ContentsMarginsRespectsSafeArea, which is on by default.
constexpr auto autoOrientation = static_cast<Qt::WidgetAttribute>(130);

/// Returns the orientation of a window of `size`. A square counts as portrait.
Qt::Orientation orientationOf(const QSize &size)
{
    return size.height() < size.width() ? Qt::Horizontal : Qt::Vertical;
}

/// Resizes `window` to the preferred size. If the screen is too small for that size and a window
/// frame, the window is maximized, because only the window manager knows the size of the frame.
void setFirstSize(QWidget *window)
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    const QSize available = screen ? screen->availableSize() : QSize();
    const bool fits = !screen || (available.width() >= preferredSize.width() &&
                                  available.height() > preferredSize.height());
    // Phone shells show one window at a time, without a frame. Where the compositor draws none, Qt
    // would draw one, which takes room and can only be used with a mouse.
    constexpr int widestPhone = 600;
    if (!fits && QGuiApplication::platformName().startsWith("wayland"_L1) &&
        std::min(available.width(), available.height()) < widestPhone)
        window->setWindowFlag(Qt::FramelessWindowHint);
    window->resize(fits ? preferredSize : available);
    if (!fits)
        window->setWindowState(Qt::WindowMaximized);
}

void layOutStacksIn(const QWidget *page);

void layOutHiddenPagesOf(QStackedWidget *stack)
{
    for (int index = 0; index < stack->count(); ++index) {
        if (index == stack->currentIndex())
            continue;
        QWidget *page = stack->widget(index);
        page->setGeometry(stack->contentsRect());
        page->show();
        // Nested layouts have only requested a new layout; activate() applies it at once.
        if (page->layout())
            page->layout()->activate();
        layOutStacksIn(page);
        page->hide();
    }
}

/// Lays out the hidden views and tabs of `page`, which are pages of stacks themselves.
void layOutStacksIn(const QWidget *page)
{
    for (QStackedWidget *stack : page->findChildren<QStackedWidget *>())
        layOutHiddenPagesOf(stack);
}

} // namespace

// The linker drops the resources of a static library unless Q_INIT_RESOURCE names them. The macro
// must be used outside of classes and namespaces.
static void initPictures() // NOLINT(misc-use-anonymous-namespace): see above
{
    Q_INIT_RESOURCE(pictures);
}

ShopWindow::ShopWindow(QWidget *parent)
    : QMainWindow(parent, Qt::WindowFlags())
    , mainPage(std::make_unique<MainPage>())
    , messagePage(std::make_unique<MessagePage>())
    , confirmationPage(std::make_unique<ConfirmationPage>())
    , waitingPage(std::make_unique<WaitingPage>())
    , optionsPage(std::make_unique<OptionsPage>())
    , shoppingPage(std::make_unique<ShoppingPage>())
    , shoppingListsPage(std::make_unique<ShoppingListsPage>())
    , listEditPage(std::make_unique<ListEditPage>())
    , itemsListPage(std::make_unique<ItemsListPage>())
    , itemEditPage(std::make_unique<ItemEditPage>())
    , doShoppingPage(std::make_unique<DoShoppingPage>())
    , storesPage(std::make_unique<StoresPage>())
    , storeListPage(std::make_unique<StoreListPage>())
    , storeEditPage(std::make_unique<StoreEditPage>())
    , categoryListPage(std::make_unique<CategoryListPage>())
    , categoryEditPage(std::make_unique<CategoryEditPage>())
    , coordinatesPage(std::make_unique<CoordinatesPage>())
    , trackingPage(std::make_unique<TrackingPage>())
    , trackedListPage(std::make_unique<TrackedListPage>())
    , reminderPage(std::make_unique<ReminderPage>())
{
    initPictures();
    reserveTimer = new QTimer(this);
    hintTimer = new QTimer(this);
    hintTimer->setSingleShot(true);
    loadSettings();
    loadStoredLanguage(); // before the pages are built
    alertHelper = std::make_unique<AlertHelper>();
    alertHelper->initialise();
    setAttribute(autoOrientation, true);
    setWindowTitle(u"Trolleo"_s);
    new ReadableTexts(this);
    pageSwitchGuard = new PageSwitchGuard(this);
    // The window has no dock widgets to animate. An animated page stack would lag behind when the
    // window is rotated.
    setAnimated(false);
    gps = std::make_unique<TrShopGps>();
    positionWait = std::make_unique<PositionWait>([this] { gps->requestUpdate(); },
                                                  [this] { gps->cancelRequest(); });
    connect(qApp, &QCoreApplication::aboutToQuit, this, &ShopWindow::finishShopping);
    connect(gps.get(), &TrShopGps::coordinateUpdated, this, &ShopWindow::gpsAcquired);
    connect(gps.get(), &TrShopGps::coordinateRequestTimeout, this, &ShopWindow::coordUpdateTimeout);
    connect(gps.get(), &TrShopGps::startGpsFailed, this, &ShopWindow::startGpsFailed);
    connect(gps.get(), &TrShopGps::roughCoordinateUpdated, this, &ShopWindow::takeRoughPosition);
    connect(gps.get(), &TrShopGps::positionMissing, this, [this] {
        tellNoPosition(tr("No position yet. Is location switched on, and the sky in sight?"));
    });
    connect(gps.get(), &TrShopGps::locationRefused, this, [this] {
        tellNoPosition(tr("Location is switched off, or not allowed for this program. Allow it in "
                          "the settings of the system."));
    });
    gpsAvailable = gps->isAvailable();
    setFirstSize(this);
    dbFilePath = Database::filePath();
    Database::prepareFolder();
    openDatabase();
    buildTrackingServices();
    buildUserInterface();
    applyGpsSettings();
}

ShopWindow::~ShopWindow()
{
    gps->stopUpdates();
    gps.reset();
    alertHelper.reset();
    Database::close(db);
}

void ShopWindow::loadSettings()
{
    const TrSettings &settings = TrSettings::instance();
    gpsEnabled = settings.gpsEnabled();
    gpsAutoStart = settings.gpsAutoStart();
    soundFileName = alarmFile(settings.soundFileName());
    trackAutoStart = settings.trackAutoStart();
    languageId = settings.languageId();
}

void ShopWindow::openDatabase()
{
    db = Database::open(dbFilePath);
    switch (Database::createMissingTables(db)) {
    case Database::Tables::Complete:
        break;
    case Database::Tables::Locked:
        awaitTables();
        break;
    case Database::Tables::Unreadable:
        refuseDatabase();
        QCoreApplication::quit(); // it has no effect before the event loop runs
    }
}

/// The program could not save what the user enters, so it exits when the banner disappears.
void ShopWindow::refuseDatabase()
{
    db.close();
    auto *banner = InformationBox::information(this, tr("Can't open database"), bannerTime);
    banner->keep();
    connect(banner, &InformationBox::gone, this, &ShopWindow::exitClicked);
}

/// Another process has locked the database, so it is not known whether the tables exist. Nothing
/// can be saved until then, which the banner tells all the time.
void ShopWindow::awaitTables()
{
    constexpr auto betweenTries = 250ms;
    const auto tell = [this] {
        return InformationBox::information(
            this, tr("Another program is using the lists. Nothing is saved until it has finished."),
            longestBannerTime);
    };
    auto *tries = new QTimer(this);
    const auto tryAgain = [this, tries, tell, banner = QPointer(tell())]() mutable {
        const auto tables = Database::createMissingTables(db, 0ms);
        if (tables != Database::Tables::Locked) {
            delete banner;
            tries->deleteLater();
            if (tables == Database::Tables::Unreadable)
                refuseDatabase();
            else
                tablesAreThere();
        } else if (!findChild<InformationBox *>()) {
            banner = tell(); // another one has replaced it
        }
    };
    connect(tries, &QTimer::timeout, this, tryAgain);
    tries->start(betweenTries);
    tablesAreAwaited = true;
}

void ShopWindow::setSharedTexts()
{
    categoryButtonDefaultText = tr("(click to select)");
    categoryNotSelectedText = tr("(not selected)");
    cancelText = tr("Cancel");
    htmlBreak = u"<br>"_s;
    htmlBoldOpen = u"<b>"_s;
    htmlBoldClose = u"</b>"_s;
}

void ShopWindow::buildUserInterface()
{
    setSharedTexts();
    pageStack = new PageStack(this);
    pageStack->setObjectName(u"pageStack"_s);
    QFont pageFont;
    pageFont.setPointSize(pagePointSize);
    setFont(pageFont);
    pageStack->setFont(pageFont);
    const QScreen *screen = QGuiApplication::primaryScreen();
    const QSize screenSize = screen ? screen->size() : preferredSize;
    textWidth = std::min(screenSize.width(), screenSize.height()) -
                QFontMetrics(pageFont).horizontalAdvance(QLatin1Char('f'));

    buildMainPage();
    buildShoppingPage();
    buildTrackingPage();
    buildStoresPage();
    buildItemsListPage();
    buildListEditPage();
    buildShoppingListsPage();
    buildItemEditPage();
    buildStoreListPage();
    buildStoreEditPage();
    buildCategoryListPage();
    buildCategoryEditPage();
    buildMessagePage();
    buildDoShoppingPage();
    buildOptionsPage();
    buildWaitingPage();
    buildConfirmationPage();
    setupTrackedListPage();
    buildReminderPage();
    buildCoordinatesPage();

    setCentralWidget(pageStack);
    pageSwitchGuard->guard(pageStack);
    pageStack->setCurrentIndex(PageMain);
    connect(pageStack, &QStackedWidget::currentChanged, this, &ShopWindow::pageChanged);
    // If the pages of a maximized window are built again, no resize event follows. The page stack
    // must have its geometry before its pages are turned.
    if (isVisible()) {
        pageStack->show();
        layout()->activate();
    }
    // Otherwise only a dialog's buttons are pressed by the Enter key.
    for (QPushButton *button : pageStack->findChildren<QPushButton *>())
        button->setAutoDefault(true);
    turningPage(pageStack->currentIndex())->open();
    turnPages(orientationOf(size()));
}

TurningPage *ShopWindow::addPage(Page page, const QString &objectName, const QString &title,
                                 QAccessible::Role role)
{
    auto *widget = new TurningPage(role, pageStack);
    widget->setObjectName(objectName);
    widget->setAccessibleName(title);
    [[maybe_unused]] const int index = pageStack->addWidget(widget);
    Q_ASSERT(index == page);
    return widget;
}

TurningPage *ShopWindow::turningPage(int page) const
{
    return qobject_cast<TurningPage *>(pageStack->widget(page));
}

void ShopWindow::resizeEvent(QResizeEvent *event)
{
    const Qt::Orientation orientation = orientationOf(event->size());
    if (!turningPages && orientation != pagesOrientation)
        turnPages(orientation);
    QMainWindow::resizeEvent(event);
}

void ShopWindow::turnPages(Qt::Orientation orientation)
{
    const QScopedValueRollback guard(turningPages, true);
    pagesOrientation = orientation;
    for (int page = 0; page < pageStack->count(); ++page)
        turningPage(page)->turn(orientation);
    if (isVisible())
        layOutHiddenPages();
}

/// Shows and hides every hidden page once, so that it applies its new layout now and not when the
/// user opens it. The current page stays visible, because hiding it would take the focus from the
/// field that the user is typing in.
void ShopWindow::layOutHiddenPages()
{
    pageStack->setUpdatesEnabled(false);
    // Otherwise the window would be laid out again for every page that is shown and hidden.
    layout()->setEnabled(false);
    layOutHiddenPagesOf(pageStack);
    layOutStacksIn(pageStack->currentWidget());
    layout()->setEnabled(true);
    pageStack->setUpdatesEnabled(true);
}

/// Does what every change of the current page requires.
void ShopWindow::pageChanged(int page)
{
    // Leaving the page that began a wait ends the wait. It continues on the waiting page, which
    // shows it, and on a message that leads back to the coordinates page.
    const bool waitGoesOn = page == PageWaiting || page == PageCoordinates ||
                            (page == PageMessage && messageReturnPage == PageCoordinates);
    if (!waitGoesOn)
        endWaiting();
    if (page == PageTracking)
        nameTrackingChoices();
    turningPage(pageStack->currentIndex())->open();
}

/// Returns whether this is the second tap on the same record. After a first tap without a second
/// one, the banner shows `hint`, once for each page in a run of the program, unless the user has
/// already tapped twice there.
bool ShopWindow::tappedAgain(const QListWidgetItem &row, int &lastTapped, const QString &hint)
{
    constexpr auto timeForSecondTap = 2s;
    const int page = pageStack->currentIndex();
    hintTimer->stop();
    if (TouchList::wasTappedAgain(row, lastTapped)) {
        hintedPages << page;
        return true;
    }
    if (hintedPages.contains(page))
        return false;
    disconnect(hintTimer, nullptr, this, nullptr);
    connect(hintTimer, &QTimer::timeout, this, [this, page, hint] {
        if (pageStack->currentIndex() != page)
            return;
        hintedPages << page;
        InformationBox::information(this, hint, bannerTime);
    });
    hintTimer->start(timeForSecondTap);
    return false;
}

void ShopWindow::connectAnew(QPushButton *button, void (ShopWindow::*slot)()) const
{
    disconnect(button, &QPushButton::clicked, nullptr, nullptr);
    connect(button, &QPushButton::clicked, this, slot);
}

void ShopWindow::connectView(QPushButton *button, const QStackedWidget *views, int view,
                             void (ShopWindow::*slot)())
{
    connect(button, &QPushButton::toggled, this, [this, views, view, slot](bool on) {
        if (on != (views->currentIndex() == view))
            (this->*slot)();
    });
}

void ShopWindow::showEditPage(Page page, const EditFrame &frame, QLineEdit *name,
                              const QString &picture, bool exists, void (ShopWindow::*save)())
{
    frame.picture->setPicture(picture, Controls::pictureExtent);
    frame.remove->setEnabled(exists);
    connectAnew(frame.save, save);
    pageStack->setCurrentIndex(page);
    name->setFocus();
}

void ShopWindow::timerFired() {}

void ShopWindow::exitClicked()
{
    QCoreApplication::quit();
}

void ShopWindow::backClicked()
{
    startShoppingPending = false;
    pageStack->setCurrentIndex(PageMain);
}
