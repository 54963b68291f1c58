// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include <QAccessible>
#include <QLatin1StringView>
#include <QMainWindow>
#include <QSqlDatabase>
#include <QString>

#include "base/pages.h"
#include "stores/storedraft.h"
#include "tracking/trackingrun.h"

class AlarmSound;
class AlertHelper;
class InputPause;
class MaskedField;
class Notifier;
class PageSwitchGuard;
class PositionWait;
class QLineEdit;
class QListWidgetItem;
class QNetworkConfigurationManager;
class QNetworkSession;
class QPushButton;
class QSqlQuery;
class QStackedWidget;
class QTimer;
class QTranslator;
class SleepInhibitor;
class TrShopGps;
class TurningPage;
struct CategoryEditPage;
struct CategoryListPage;
struct ConfirmationPage;
struct CoordinatesPage;
struct DoShoppingPage;
struct EditFrame;
struct ItemEditPage;
struct ItemsListPage;
struct ListEditPage;
struct MainPage;
struct MessagePage;
struct OptionsPage;
struct ReminderPage;
struct ShoppingListsPage;
struct ShoppingPage;
struct StoreEditPage;
struct StoreListPage;
struct StoresPage;
struct TrackedListPage;
struct TrackingPage;
struct TurningBoxes;
struct WaitingPage;

/// The main window: it holds every page of the program in one page stack and nearly every slot,
/// since its pages switch each other. Pages never close; they are switched by their index alone.
///
/// Constructing it opens the database, which happens once per process: the connection is the
/// default one.
class ShopWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit ShopWindow(QWidget *parent = nullptr);
    ~ShopWindow() override;

signals:
    /// A position has arrived while someone waited for one. Whoever waits connects for one use.
    void requestedGpsUpdate();

    // ---- Application shell ------------------------------------------------------------------
    // app/shopwindow.cpp, app/mainpage.cpp
private slots:
    void timerFired();
    void exitClicked();
    void backClicked();

    // app/messagepages.cpp
    void messageBoxOkClicked();
    void waitingCanceled();

    // app/optionspage.cpp
    void optionsClicked();
    void saveSettings();
    void enableGpsChanged(bool aState);
    void enableAutoStartChanged(bool aState);
    void chooseSoundFile();

    // app/help.cpp
    void mainPageHelp();
    void mainPageAbout();
    void optionsPageHelp();
    void trackingPageHelp();
    void trackingListHelp();
    void doShoppingHelp();
    void shopListPageHelp();
    void shopListsHelp();
    void shopListEditHelp();
    void editItemsListHelp();
    void addItemHelp();
    void shopsHelp();
    void magazinListHelp();
    void addShopHelp();
    void gpsEnterHelp();
    void categoryListHelp();
    void addCategoryHelp();

    // ---- Shopping lists ---------------------------------------------------------------------
    // lists/shoppingpage.cpp
    void buyClicked();

    // lists/doshoppingpage.cpp
    void doShoppingOkClicked();
    void doShoppingItemActivated(QListWidgetItem *item);
    void doShoppingItemClicked(QListWidgetItem *item);
    void clearMarks();
    void setAllMarks();

    // lists/shoppinglistpages.cpp
    void listCreateClicked();
    void listPropertiesEditClicked();
    void cancelListCreateClicked();
    void showShoppingLists();
    void cancelShoppingLists();
    void selectShoppingLists();
    void updateShopList();
    void createShopList();
    void shopListSelectMagazin();
    void shopListSelectCategory();
    void deleteShopList();
    void deleteShopListConfirm();
    void shopListItemActivated(QListWidgetItem *item);
    void shopListItemClicked(QListWidgetItem *item);
    void shopListResetState();

    // lists/doshoppingpage.cpp
    void startShopping();

    // lists/itempages.cpp
    void listEditClicked();
    void addListItemClicked();
    void saveShoppingItemsClicked();
    void cancelShoppingItemsClicked();
    void deleteShoppingItemClicked();
    void deleteShoppingItemConfirm();
    void addShoppingItemConfirmClicked();
    void addShoppingItemCancelClicked();
    void editShoppingItemConfirmClicked();
    void shoppingItemActivated(QListWidgetItem *item);
    void shoppingItemClicked(QListWidgetItem *item);
    void fillItemEditPage();

    // ---- Stores and categories --------------------------------------------------------------
    // stores/storepages.cpp, stores/storeeditpage.cpp
    void shopsClicked();
    void addShopClicked();
    void addShopCancelClicked();
    void editShopClicked();
    void viewShopsClicked();
    void cancelViewShopsClicked();
    void selectShopClicked();
    void addShopConfirmClicked();
    void editShopConfirmClicked();
    void deleteShopClicked();
    void deleteShopConfirm();
    void shopItemActivated(QListWidgetItem *item);
    void shopItemClicked(QListWidgetItem *item);

    // stores/categorypages.cpp
    void showCategoriesClicked();
    void addCategoryClicked();
    void backFromCategoryClicked();
    void selectCategoryClicked();
    void categoryItemActivated(QListWidgetItem *item);
    void categoryItemClicked(QListWidgetItem *item);
    void deleteCategoryClicked();
    void deleteCategoryConfirm();
    void addCategoryConfirmClicked();
    void editCategoryConfirmClicked();
    void addCategoryCancelClicked();

    // ---- Positioning ------------------------------------------------------------------------
    // gps/positions.cpp
public slots:
    /// A position has arrived; degrees and metres, longitude first.
    void gpsAcquired(qreal longitude, qreal latitude, qreal altitude);
    /// The position source has not delivered in time.
    void coordUpdateTimeout();
    /// There is no position source.
    void startGpsFailed();
private slots:
    void fixCurrentGps();

    // gps/coordinatespage.cpp
    void manualEnterGps();
    void backToShopEdit();
    void saveEnteredGps();
    void lonBtnSwitch();
    void latBtnSwitch();
    void gpsEditPageChanged(int aIndex);
    void showGpsGetPage();
    void showGpsEditPage();
    void showGpsMapPage();
    void updateGpsGetPage();
    void btnGetGpsClicked();
public slots:
    /// The store's mark was put elsewhere on the map; degrees, latitude first.
    void mapMarkUpdated(qreal latitude, qreal longitude);
    void mapCenterByEdited();
    void mapCenterByGps();
private slots:
    void updateMapCenter();

    // ---- Tracking and reminders -------------------------------------------------------------
    // tracking/trackingpage.cpp
    void trackingClicked();
    void startTracking();
    void stopTracking();
    void selectStoreForTracking();
    void selectCategoryForTracking();
    void rbByCategoryToggle(bool checked);
    void rbByStoreToggle(bool checked);

    // tracking/trackedlistpage.cpp
    void viewFilteredTracking();
    void setupTrackedListPage();

    // tracking/reminderpage.cpp
    void skipStore();
    void startShoppingGps();

    // tracking/trackedlistpage.cpp
    void showTrackingAfterGps();
    void trackingMapShow();
    void trackingListShow();
public slots:
    void mapTrackCenterByGps();
    void mapTrackCenterByStore();

    // ---- Map --------------------------------------------------------------------------------
    // app/mapsession.cpp
    /// The network session that the map waits for is open.
    void sessionOpened();

protected:
    void resizeEvent(QResizeEvent *event) override;

    // ---- What every page uses to speak to the person: app/messagepages.cpp -------------------

    /// Shows `text`, which may be rich text, on the message page; "OK" leads to `returnPage`.
    /// `picture` is a resource path; an empty one leaves the picture of the message before.
    void showMessage(const QString &title, const QString &text, const QString &picture,
                     int returnPage);

    /// Fills the message page as showMessage() does, and does not show it.
    void fillMessage(const QString &title, const QString &text, const QString &picture,
                     int returnPage);

    /// Asks `text`, taken as plain text, on the confirmation page. "Yes" runs `confirmed` and
    /// nothing else, and `confirmed` decides which page follows; "No" leads to `returnPage`.
    void askQuestion(const QString &title, const QString &text, void (ShopWindow::*confirmed)(),
                     int returnPage);

    /// Says that a row has to be chosen first; "OK" leads back to the page that shows now.
    void warnNotSelected();
    /// Says that a name has to be typed first; "OK" leads back to the page that shows now.
    void warnEmptyName();
    /// What was typed into `field`; warns when that is nothing.
    QString typedName(const QLineEdit *field);

    /// Shows the waiting page; cancelling it leads back to the page that shows now.
    void showWaiting();

    /// Builds all pages, instead of those that are there, and shows the main page.
    void buildUserInterface();

    /// A position source exists, as far as is known.
    bool gpsAvailable = false;
    /// The next filling of the shopping takes the goods of all lists of the current store.
    bool shoppingFromReminder = false;

private:
    // ---- Start and pages: app/shopwindow.cpp -------------------------------------------------
    void loadSettings();
    void openDatabase();
    void setSharedTexts();
    /// Adds an empty page to the page stack, where it must come to stand at `page`. A screen reader
    /// says `title` when the page comes up.
    TurningPage *addPage(Page page, const QString &objectName, const QString &title,
                         QAccessible::Role role = QAccessible::Pane);
    void turnPages(Qt::Orientation orientation);
    void layOutHiddenPages();
    void pageChanged(int page);

    /// Lets `button` run `slot` and nothing else: a page that adds and edits has one "Save".
    void connectAnew(QPushButton *button, void (ShopWindow::*slot)()) const;
    /// Lets `button`, which is checked while `views` shows `view`, run `slot`, which shows it. What
    /// drives buttons for a screen reader toggles them, and clicks none.
    void connectView(QPushButton *button, const QStackedWidget *views, int view,
                     void (ShopWindow::*slot)());
    /// Shows an edit page with `picture`, a resource path, ready to type in `name`. "Save" runs
    /// `save`; "Delete" can be pressed for what exists already.
    void showEditPage(Page page, const EditFrame &frame, QLineEdit *name, const QString &picture,
                      bool exists, void (ShopWindow::*save)());

    // ---- One builder a page, each beside the page's slots -------------------------------------
    void buildMainPage();
    void buildShoppingPage();
    void buildTrackingPage();
    void buildStoresPage();
    void buildItemsListPage();
    void buildListEditPage();
    void buildShoppingListsPage();
    void buildItemEditPage();
    void buildStoreListPage();
    void buildStoreEditPage();
    void buildCategoryListPage();
    void buildCategoryEditPage();
    void buildMessagePage();
    void buildDoShoppingPage();
    void buildOptionsPage();
    void buildWaitingPage();
    void buildConfirmationPage();
    void buildReminderPage();
    void buildCoordinatesPage();

    // ---- Application shell --------------------------------------------------------------------
    QTimer *reserveTimer = nullptr; // never started
    std::unique_ptr<AlertHelper> alertHelper;
    QStackedWidget *pageStack = nullptr;
    /// A child of the window.
    PageSwitchGuard *pageSwitchGuard = nullptr;
    std::unique_ptr<MainPage> mainPage;
    std::unique_ptr<MessagePage> messagePage;
    std::unique_ptr<ConfirmationPage> confirmationPage;
    std::unique_ptr<WaitingPage> waitingPage;
    int messageReturnPage = PageMain;
    int waitingReturnPage = PageMain;
    Qt::Orientation pagesOrientation = Qt::Horizontal;
    bool turningPages = false;

    /// Pixels; as wide as a text may be without making its page wider than the upright screen.
    int textWidth = 0;

    // Texts that many pages share.
    QString categoryButtonDefaultText;
    QString categoryNotSelectedText;
    QString cancelText;
    QString htmlBreak;
    QString htmlBoldOpen;
    QString htmlBoldClose;

    // ---- Help: app/help.cpp -------------------------------------------------------------------
    QString helpLine(const QString &text) const;
    /// After an empty line.
    QString helpHeading(const QString &text) const;
    /// `picture` is a file of ":/img/".
    QString helpButton(QLatin1StringView picture, const QString &text) const;
    void showHelp(const QString &title, const QString &text, int returnPage);

    // ---- Options and language: app/optionspage.cpp --------------------------------------------
    /// Installs the translations for a language code; an empty one stands for the system's locale.
    void loadTranslations(const QString &code);
    void loadStoredLanguage();
    void changeLanguage(int language);

    std::unique_ptr<OptionsPage> optionsPage;
    /// Chosen on the options page, and not taken over yet.
    QString pendingSoundFileName;
    std::unique_ptr<QTranslator> libraryTranslator;
    std::unique_ptr<QTranslator> applicationTranslator;

    // The settings as the program follows them; the store is read once and written by the options.
    bool gpsEnabled = false;
    bool gpsAutoStart = false;
    bool trackAutoStart = false;
    int languageId = 0;
    QString soundFileName;

    // ---- Data ---------------------------------------------------------------------------------
    QString dbFilePath;
    QSqlDatabase db;

    // ---- Shopping lists -----------------------------------------------------------------------
    // lists/shoppingpage.cpp
    void fillShoppingPage();
    static QString listStateText(int state);

    // lists/shoppinglistpages.cpp
    QString storeNameForRow() const;

    // lists/itempages.cpp
    static QList<QListWidgetItem *> goodsRows(QSqlQuery &query);

    // lists/doshoppingpage.cpp
    static QList<QListWidgetItem *> checkableRows(QLatin1StringView statement, int id,
                                                  Qt::CheckState checkState);
    void toggleGood(int row);
    /// Recomputes the state of the active list from its goods, stores it and shows it.
    void updateListState() const;

    std::unique_ptr<ShoppingPage> shoppingPage;
    std::unique_ptr<ShoppingListsPage> shoppingListsPage;
    std::unique_ptr<ListEditPage> listEditPage;
    std::unique_ptr<ItemsListPage> itemsListPage;
    std::unique_ptr<ItemEditPage> itemEditPage;
    std::unique_ptr<DoShoppingPage> doShoppingPage;
    /// Return pages, each the index of the page that opened the one named.
    int itemsReturnPage = PageMain;
    int listEditReturnPage = PageMain;
    /// The active list.
    int currentListId = 0;
    /// The list being edited; on the shopping lists page the one tapped last.
    int editedListId = 0;
    int newListState = 0;
    /// The store of the list being edited is not in the database, so there is no name to show.
    bool storeIsUnknown = false;
    /// All goods of the list were on the items list page when it came up.
    bool goodsWereRead = true;
    int lastTappedItemId = 0;
    int lastTappedGoodId = 0;
    /// How many goods are checked; they are the last rows of the list.
    int checkedCount = 0;
    /// "Start" was pressed without a list: the next list chosen goes straight on to shopping.
    bool startShoppingPending = false;

    // ---- Stores and categories ----------------------------------------------------------------
    // stores/categorypages.cpp
    static QString categoryName(int id);

    // stores/storepages.cpp
    void fillStoresPage();
    QString distanceToCurrentStore();
    QString distanceToShownStore() const;

    // stores/storeeditpage.cpp
    void showCoordinatesOf(int storeId);
    QString categoryIdText() const;
    bool coordinatesWereTaken() const;
    void insertTakenCoordinates(int storeId);

    std::unique_ptr<StoresPage> storesPage;
    std::unique_ptr<StoreListPage> storeListPage;
    std::unique_ptr<StoreEditPage> storeEditPage;
    std::unique_ptr<CategoryListPage> categoryListPage;
    std::unique_ptr<CategoryEditPage> categoryEditPage;
    /// The current store: shown on the stores page, and what the store list picks.
    int currentStoreId = 0;
    int storeBeforePicking = 0;
    StoreDraft draft;
    /// The store of which the text of the coordinates button tells; 0 for none.
    int coordinatesTextStoreId = 0;
    /// The category chosen last.
    int selectedCategoryId = 0;
    int lastTappedCategoryId = 0;
    /// Degrees, of the store on the stores page.
    float shownStoreLatitude = 0;
    float shownStoreLongitude = 0;
    int storeListReturnPage = PageMain;
    int storeEditReturnPage = PageMain;
    int categoryReturnPage = PageMain;

    // ---- Positioning --------------------------------------------------------------------------
    // gps/positions.cpp
    void endWaiting();
    void takePosition();
    /// A position that is too rough to ring, or to be a store's; degrees and metres.
    void takeRoughPosition(qreal longitude, qreal latitude, qreal accuracyMeters);
    /// Tells once, until a position comes, that there is none.
    void tellNoPosition(const QString &text);
    /// Takes a position for the edited store: true when it has to wait for one, and lets `taken`
    /// run then.
    bool waitForPosition(void (ShopWindow::*taken)());
    void takeAwaitedPosition();

    // gps/coordinatespage.cpp
    void buildCoordinatesGpsView();
    void buildCoordinatesEditView(TurningBoxes &turningBoxes);
    void showTakenCoordinates() const;
    void takeTypedCoordinates(float latitude, float longitude);
    void refuseTooManyDigits(MaskedField *field);
    void takePastedPair(const QString &latitude, const QString &longitude);

    std::unique_ptr<TrShopGps> gps;
    std::unique_ptr<PositionWait> positionWait;
    std::unique_ptr<CoordinatesPage> coordinatesPage;
    /// The last position, in degrees and metres.
    float currentLatitude = 0;
    float currentLongitude = 0;
    float currentAltitude = 0;

    // ---- Tracking and reminders ---------------------------------------------------------------
    // tracking/trackingpage.cpp
    void applyGpsSettings();
    void buildTrackingServices();
    void setTrackingActive(bool active);
    void showTrackingState() const;
    void nameTrackingChoices() const;
    void nameCriterion() const;
    void takeTrackingChoices();
    bool queryTrackedStores();
    void refreshTrackedDistances();

    // tracking/reminderpage.cpp
    void track(bool somebodyWaited);
    Sight seenByPerson() const;
    void showReminder();
    /// Makes the reminder's notification, from what its page says.
    void prepareAlert() const;
    /// Answers the reminder by its notification: `key` is that of the action chosen.
    void answerReminder(const QString &key);
    void bringToFront();
    /// As bringToFront(), by the compositor's leave where that takes a token.
    void bringToFrontBy(const QString &activationToken);
    void closeWhatCoversPages();

    // tracking/trackedlistpage.cpp
    void fillTrackedList(bool distancesAreKnown);
    void showPositionAndNearest();
    void markNearestStore() const;

    std::unique_ptr<TrackingPage> trackingPage;
    std::unique_ptr<TrackedListPage> trackedListPage;
    std::unique_ptr<ReminderPage> reminderPage;
    /// A child of the window.
    AlarmSound *alarmSound = nullptr;
    /// Says so while tracking runs, and keeps the device awake. Children of the window.
    Notifier *trackingNotice = nullptr;
    SleepInhibitor *sleepInhibitor = nullptr;
    /// Keeps from the reminder what was meant for something else. A child of the window.
    InputPause *inputPause = nullptr;
    /// Which criterion is chosen; neither stands for all stores.
    bool trackByCategory = false;
    bool trackByStore = false;
    TrackingRun run;

    // ---- Map ----------------------------------------------------------------------------------
    // app/mapsession.cpp
    void openNetworkSession();
    void startNetworkSession();

    /// Looks for networks while it exists; a child of the window.
    QNetworkConfigurationManager *networkManager = nullptr;
    /// None was opened, or none is needed, while this is null; a child of the window.
    QNetworkSession *networkSession = nullptr;
};
