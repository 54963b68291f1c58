// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include <QAccessible>
#include <QLatin1StringView>
#include <QMainWindow>
#include <QSet>
#include <QSqlDatabase>
#include <QString>
#include <QStringList>

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

/// The main window. It holds all pages of the program in one page stack, and nearly all slots,
/// because the pages switch to each other. Pages are never closed: setting the current index of the
/// stack switches them.
///
/// The constructor opens the database as the default connection and the destructor closes it, so
/// only one window may exist at a time.
class ShopWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit ShopWindow(QWidget *parent = nullptr);
    ~ShopWindow() override;

    // tracking/reminderpage.cpp
    /// Brings the window to the front, even if it is minimised or covered. `activationToken` is one
    /// for the Wayland compositor, or empty.
    void bringToFrontBy(const QString &activationToken);

signals:
    /// Emitted when a position arrives while a page waits for one. The page connects to it for one
    /// position.
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
    /// Takes a position that has arrived; in degrees and metres, longitude first.
    void gpsAcquired(qreal longitude, qreal latitude, qreal altitude);
    /// Repeats the request if a page still waits, because the source has delivered no position in
    /// time.
    void coordUpdateTimeout();
    /// Tells the user that there is no position source.
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
    /// Takes the place where the user has put the store's mark on the map; in degrees, latitude
    /// first.
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
    /// Remembers the network configuration of the session, which is open now.
    void sessionOpened();

protected:
    void resizeEvent(QResizeEvent *event) override;

    // ---- Messages and questions, used by all pages: app/messagepages.cpp ----------------------

    /// Shows `text`, which is rich text, on the message page. "OK" leads to `returnPage`. `picture`
    /// is a resource path; if it is empty, the picture of the previous message is kept.
    void showMessage(const QString &title, const QString &text, const QString &picture,
                     int returnPage);

    /// Fills the message page like showMessage(), but does not show it.
    void fillMessage(const QString &title, const QString &text, const QString &picture,
                     int returnPage);

    /// Asks `text`, which is plain text, on the confirmation page. "Yes" only runs `confirmed`,
    /// which must switch to the next page. "No" leads to `returnPage`.
    void askQuestion(const QString &title, const QString &text, void (ShopWindow::*confirmed)(),
                     int returnPage);

    /// Tells the user to select a row first. "OK" leads back to the current page.
    void warnNotSelected();
    /// Tells the user to type a name first. "OK" leads back to the current page.
    void warnEmptyName();
    /// Returns the text of `field`. If it is empty, calls warnEmptyName().
    QString typedName(const QLineEdit *field);

    /// Shows the waiting page. "Cancel" leads back to the current page.
    void showWaiting();

    /// Builds all pages, which replace existing ones, and shows the main page.
    void buildUserInterface();

    /// Whether a position source is available. The constructor sets it before the source is
    /// created, so it stays true even if creating the source fails.
    bool gpsAvailable = false;
    /// Whether the next startShopping() shows the goods of all lists of the current store.
    bool shoppingFromReminder = false;

private:
    // ---- Start and pages: app/shopwindow.cpp -------------------------------------------------
    void loadSettings();
    void openDatabase();
    void awaitTables();
    void refuseDatabase();
    void setSharedTexts();
    /// Adds an empty page to the page stack, which owns it. Its index must be `page`, so pages must
    /// be added in the order of the enumeration. Screen readers speak `title` when the page is
    /// shown.
    TurningPage *addPage(Page page, const QString &objectName, const QString &title,
                         QAccessible::Role role = QAccessible::Pane);
    void turnPages(Qt::Orientation orientation);
    void layOutHiddenPages();
    TurningPage *turningPage(int page) const;
    void pageChanged(int page);
    bool tappedAgain(const QListWidgetItem &row, int &lastTapped, const QString &hint);

    /// Connects `button` to `slot` and removes its other connections, because "Save" of a page that
    /// adds and edits, and "Yes", have a different slot each time.
    void connectAnew(QPushButton *button, void (ShopWindow::*slot)()) const;
    /// Connects `button`, which is checked while `views` shows `view`, to `slot`, which shows that
    /// view. The connection uses toggled(), because assistive technology toggles a checkable button
    /// and does not click it.
    void connectView(QPushButton *button, const QStackedWidget *views, int view,
                     void (ShopWindow::*slot)());
    /// Shows an edit page with `picture`, a resource path, and sets the focus to `name`. "Save"
    /// runs `save`. "Delete" is enabled if `exists` is true.
    void showEditPage(Page page, const EditFrame &frame, QLineEdit *name, const QString &picture,
                      bool exists, void (ShopWindow::*save)());

    // ---- Page builders, each in the file of the page's slots ----------------------------------
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
    QTimer *hintTimer = nullptr;
    /// The pages on which the user knows, or has been told, what a second tap does.
    QSet<int> hintedPages;
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

    /// Maximum width of a text in pixels. A wider text would make its page wider than the screen in
    /// portrait.
    int textWidth = 0;

    // Texts used by several pages.
    QString categoryButtonDefaultText;
    QString categoryNotSelectedText;
    QString cancelText;
    QString htmlBreak;
    QString htmlBoldOpen;
    QString htmlBoldClose;

    // ---- Help: app/help.cpp -------------------------------------------------------------------
    QString helpLine(const QString &text) const;
    /// Returns a bold line, after an empty line.
    QString helpHeading(const QString &text) const;
    /// Returns a line that explains a button. `picture` is the name of a file in ":/img/".
    QString helpButton(QLatin1StringView picture, const QString &text) const;
    void showHelp(const QString &title, const QString &text, int returnPage);

    // ---- Options and language: app/optionspage.cpp --------------------------------------------
    /// Installs the translations for a language code. An empty code selects the system locale.
    void loadTranslations(const QString &code);
    void loadStoredLanguage();
    void changeLanguage(int language);

    std::unique_ptr<OptionsPage> optionsPage;
    /// Selected on the options page, but not saved yet.
    QString pendingSoundFileName;
    std::unique_ptr<QTranslator> libraryTranslator;
    std::unique_ptr<QTranslator> applicationTranslator;

    // The settings in use. They are read once at the start, and saved by the options page.
    bool gpsEnabled = false;
    bool gpsAutoStart = false;
    bool trackAutoStart = false;
    int languageId = 0;
    QString soundFileName;

    // ---- Data ---------------------------------------------------------------------------------
    QString dbFilePath;
    QSqlDatabase db;
    /// Another process keeps the database locked, and it is not known whether it has its tables.
    bool tablesAreAwaited = false;

    // ---- Shopping lists -----------------------------------------------------------------------
    // lists/shoppingpage.cpp
    void fillShoppingPage();
    static QString listStateText(int state);

    // lists/shoppinglistpages.cpp
    QString storeNameForRow() const;

    // lists/itempages.cpp
    static QList<QListWidgetItem *> goodsRows(QSqlQuery &query);
    static QStringList knownGoods();

    // lists/doshoppingpage.cpp
    static QList<QListWidgetItem *> checkableRows(QLatin1StringView statement, int id,
                                                  Qt::CheckState checkState);
    void toggleGood(int row);
    /// Updates the state of the list if the user is shopping or reading the help for it. A list
    /// whose goods are all checked would ring again otherwise.
    void finishShopping() const;
    /// Recomputes the state of the active list from its goods, stores it and shows it.
    void updateListState() const;

    std::unique_ptr<ShoppingPage> shoppingPage;
    std::unique_ptr<ShoppingListsPage> shoppingListsPage;
    std::unique_ptr<ListEditPage> listEditPage;
    std::unique_ptr<ItemsListPage> itemsListPage;
    std::unique_ptr<ItemEditPage> itemEditPage;
    std::unique_ptr<DoShoppingPage> doShoppingPage;
    // Return pages: the index of the page that "Back" on the named page leads to.
    int itemsReturnPage = PageMain;
    int listEditReturnPage = PageMain;
    /// The active list; 0 for none.
    int currentListId = 0;
    /// The list being edited. On the shopping lists page, the list tapped last.
    int editedListId = 0;
    int newListState = 0;
    /// Whether the store of the list being edited is missing in the database, and so has no name.
    bool storeIsUnknown = false;
    /// Whether all goods of the list could be read for the items list page.
    bool goodsWereRead = true;
    int lastTappedItemId = 0;
    int lastTappedGoodId = 0;
    /// The number of checked goods. They are the last rows of the list.
    int checkedCount = 0;
    /// "Start" was pressed without an active list, so selecting a list starts shopping.
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
    /// The store shown on the stores page, or selected on the store list page; 0 for none.
    int currentStoreId = 0;
    int storeBeforePicking = 0;
    StoreDraft draft;
    /// The store to which the text of the coordinates button refers; 0 for none.
    int coordinatesTextStoreId = 0;
    /// The category selected last, or that of the store edited last; 0 for none.
    int selectedCategoryId = 0;
    int lastTappedCategoryId = 0;
    /// The coordinates of the store on the stores page, in degrees.
    float shownStoreLatitude = 0;
    float shownStoreLongitude = 0;
    int storeListReturnPage = PageMain;
    int storeEditReturnPage = PageMain;
    int categoryReturnPage = PageMain;

    // ---- Positioning --------------------------------------------------------------------------
    // gps/positions.cpp
    void endWaiting();
    void takePosition();
    /// Takes a position that is too rough for a reminder or for a store; in degrees and metres.
    void takeRoughPosition(qreal longitude, qreal latitude, qreal accuracyMeters);
    /// Tells the user that there is no position, once until a position arrives.
    void tellNoPosition(const QString &text);
    /// Takes the current position for the edited store. Returns true if it must wait for one, which
    /// `taken` then takes.
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
    void tablesAreThere();
    void trackFoundStores();
    void buildTrackingServices();
    void setTrackingActive(bool active);
    void endTracking();
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
    /// Prepares the notification of the reminder from the texts of its page.
    void prepareAlert() const;
    /// Answers the reminder from its notification. `key` is the key of the selected action.
    void answerReminder(const QString &key);
    void bringToFront();
    void closeWhatCoversPages();

    // tracking/trackedlistpage.cpp
    void fillTrackedList(bool distancesAreKnown);
    void showPositionAndNearest();
    void markNearestStore();

    std::unique_ptr<TrackingPage> trackingPage;
    std::unique_ptr<TrackedListPage> trackedListPage;
    std::unique_ptr<ReminderPage> reminderPage;
    /// A child of the window.
    AlarmSound *alarmSound = nullptr;
    /// The notification shown while tracking runs. A child of the window.
    Notifier *trackingNotice = nullptr;
    /// Keeps the device awake while tracking runs. A child of the window.
    SleepInhibitor *sleepInhibitor = nullptr;
    /// Discards input that was meant for another page when the reminder opens. A child of the
    /// window.
    InputPause *inputPause = nullptr;
    /// The selected criterion. If both are false, all stores are tracked.
    bool trackByCategory = false;
    bool trackByStore = false;
    TrackingRun run;

    // ---- Map ----------------------------------------------------------------------------------
    // app/mapsession.cpp
    void openNetworkSession();
    void startNetworkSession();

    /// Exists only while it looks for networks. A child of the window.
    QNetworkConfigurationManager *networkManager = nullptr;
    /// Null if no session was opened, or none is needed. A child of the window.
    QNetworkSession *networkSession = nullptr;
};
