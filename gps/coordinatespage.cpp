// SPDX-License-Identifier: MIT
#include "gps/coordinatespage.h"

#include <QApplication>
#include <QBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>
#include <QTabBar>
#include <QTabWidget>
#include <QtMath>

#include "app/shopwindow.h"
#include "base/frames.h"
#include "base/trsettings.h"
#include "data/database.h"
#include "data/statements.h"
#include "map/mapswidget.h"
#include "platform/informationbox.h"
#include "stores/storeeditpage.h"
#include "widgets/controls.h"
#include "widgets/maskedfield.h"
#include "widgets/namebutton.h"
#include "widgets/pictures.h"
#include "widgets/touchstyle.h"
#include "widgets/turningpage.h"
#include "widgets/wraplabel.h"
#include "widgets/wrappingbutton.h"

using namespace Qt::StringLiterals;

namespace {

/// Of the sheet of a tab, in device-independent pixels.
constexpr QMargins tabMargins(6, 12, 6, 12);
constexpr int tabPadding = 8; // more at the sides
const QString decimalMask = u"#00.000000"_s;
const QString wholeMask = u"00"_s;
const QString secondsMask = u"00.00"_s;

/// A bar whose tabs become narrower where they have no room.
class FittingTabBar : public QTabBar
{
protected:
    QSize minimumTabSizeHint(int index) const override
    {
        const QSize hint = tabSizeHint(index);
        return {qCeil(TextBreaking::smallest * hint.width()), hint.height()};
    }
};

class FittingTabs : public QTabWidget
{
public:
    FittingTabs()
    {
        // Other styles do not draw smaller texts in narrower tabs.
        if (!qobject_cast<const TouchStyle *>(QApplication::style()))
            return;
        setTabBar(new FittingTabBar);
        setUsesScrollButtons(false);
        setElideMode(Qt::ElideNone);
    }
};

/// Creates a field as wide as its mask. Screen readers speak `axis` and `unit`.
MaskedField *maskedField(const QString &objectName, const QString &mask, const QString &axis,
                         const QString &unit)
{
    auto *field = new MaskedField(mask);
    field->setObjectName(objectName);
    field->setAccessibleName(u"%1, %2"_s.arg(axis, unit));
    return field;
}

/// Returns one half of a tab: a caption above `fields`.
QBoxLayout *axisPane(const QString &caption, QLayout *fields)
{
    auto *pane = new QVBoxLayout;
    pane->setSpacing(Controls::captionGap);
    pane->addWidget(Controls::caption(caption));
    pane->addLayout(fields);
    return pane;
}

/// Adds a tab with two halves, which are side by side in landscape.
void addTab(QTabWidget *tabs, TurningBoxes &turningBoxes, const QString &title,
            QBoxLayout *latitude, QBoxLayout *longitude)
{
    auto *tab = new QWidget;
    QFrame *line = Controls::separator(QFrame::VLine);
    auto *column = new QVBoxLayout(tab);
    column->setContentsMargins(tabMargins);
    auto *box = new QHBoxLayout;
    box->setSpacing(Controls::besideSeparator);
    box->addLayout(latitude, 1);
    box->addWidget(line);
    box->addLayout(longitude, 1);
    // Where the fields need the room, they get it.
    auto *padded = new QHBoxLayout;
    padded->setSpacing(0);
    padded->addSpacerItem(new QSpacerItem(tabPadding, 0, QSizePolicy::Maximum));
    padded->addLayout(box, 1);
    padded->addSpacerItem(new QSpacerItem(tabPadding, 0, QSizePolicy::Maximum));
    column->addLayout(padded);
    column->addStretch(1); // a keyboard on the screen covers what is below
    tabs->addTab(tab, title);
    turningBoxes.alongWidth << box;
    turningBoxes.separators << line;
}

} // namespace

void AxisFields::clear() const
{
    for (MaskedField *field : {decimal, degrees, minutes, seconds})
        field->setValue(QString());
    hemisphere->setText(positive);
}

void AxisFields::decimalToSexagesimal() const
{
    const Coordinates::Sexagesimal angle = Coordinates::toSexagesimal(value());
    hemisphere->setText(angle.isNegative ? negative : positive);
    degrees->setValue(angle.degrees);
    minutes->setValue(angle.minutes);
    seconds->setValue(angle.seconds);
}

Coordinates::Sexagesimal AxisFields::sexagesimal() const
{
    return {.isNegative = hemisphere->text() != positive,
            .degrees = degrees->value(),
            .minutes = minutes->value(),
            .seconds = seconds->value()};
}

bool AxisFields::sexagesimalDiffers() const
{
    return Coordinates::fromSexagesimal(sexagesimal()) !=
           Coordinates::fromSexagesimal(Coordinates::toSexagesimal(value()));
}

void AxisFields::sexagesimalToDecimal() const
{
    // A number that cannot be typed must not be rounded.
    if (decimal->exceedsMask() && !sexagesimalDiffers())
        return;
    decimal->setValue(Coordinates::decimalText(Coordinates::fromSexagesimal(sexagesimal())));
}

void AxisFields::switchHemisphere() const
{
    hemisphere->setText(hemisphere->text() == negative ? positive : negative);
}

double AxisFields::value() const
{
    return Coordinates::number(decimal->value());
}

void CoordinatesPage::showView(View view) const
{
    views->setCurrentIndex(view);
    gpsButton->setChecked(view == GpsView);
    editButton->setChecked(view == EditView);
    mapButton->setChecked(view == MapView);
}

void CoordinatesPage::showCoordinates(const QString &latitudeText,
                                      const QString &longitudeText) const
{
    latitude.decimal->setValue(latitudeText);
    longitude.decimal->setValue(longitudeText);
    latitudeValue->setText(latitudeText);
    longitudeValue->setText(longitudeText);
    latitude.decimalToSexagesimal();
    longitude.decimalToSexagesimal();
}

void ShopWindow::buildCoordinatesPage()
{
    TurningPage *page = addPage(PageCoordinates, u"coordinatesPage"_s, tr("Coords input"));
    CoordinatesPage &p = *coordinatesPage;
    p = {Frames::makeToolbarFrame(page)};
    p.picture->hide(); // the view buttons serve as pictures
    p.gpsButton = Controls::viewButton(u"gpsViewButton"_s, u":/img/gps.svg"_s,
                                       Controls::pictureExtent, tr("From GPS"));
    p.editButton = Controls::viewButton(u"editViewButton"_s, u":/img/gps_ed.svg"_s,
                                        Controls::pictureExtent, tr("Type"));
    p.mapButton = Controls::viewButton(u"mapViewButton"_s, u":/img/map_icon.svg"_s,
                                       Controls::pictureExtent, tr("Map"));
    int place = 0;
    for (QPushButton *button : {p.gpsButton, p.editButton, p.mapButton})
        p.toolbar->insertWidget(place++, button);

    p.views = new QStackedWidget;
    p.views->setObjectName(u"coordinatesViews"_s);
    buildCoordinatesGpsView();
    buildCoordinatesEditView(page->turningBoxes);
    p.map = new MapsWidget;
    p.map->setObjectName(u"map"_s);
    p.views->addWidget(p.map);
    p.views->setCurrentIndex(CoordinatesPage::EditView);
    p.set = Controls::textButton(u"setButton"_s, u":/img/commit.png"_s, Controls::pictureExtent,
                                 tr("Set"));
    Controls::setMain(p.set);
    auto *column = new QVBoxLayout;
    column->setSpacing(Controls::paneGap);
    column->addWidget(p.views, 1);
    column->addWidget(p.set);
    p.contents->addLayout(column, 1);
    Frames::setTabOrder({p.gpsButton, p.editButton, p.mapButton, p.help, p.back, p.getFromGps,
                         p.tabs, p.map, p.set});

    connectView(p.gpsButton, p.views, CoordinatesPage::GpsView, &ShopWindow::showGpsGetPage);
    connectView(p.editButton, p.views, CoordinatesPage::EditView, &ShopWindow::showGpsEditPage);
    connectView(p.mapButton, p.views, CoordinatesPage::MapView, &ShopWindow::showGpsMapPage);
    connect(p.map, &MapsWidget::markUpdated, this, &ShopWindow::mapMarkUpdated);
    connect(p.map, &MapsWidget::centerByEdited, this, &ShopWindow::mapCenterByEdited);
    connect(p.map, &MapsWidget::centerByGps, this, &ShopWindow::mapCenterByGps);
    connect(p.set, &QPushButton::clicked, this, &ShopWindow::saveEnteredGps);
    connect(p.back, &QPushButton::clicked, this, &ShopWindow::backToShopEdit);
    connect(p.help, &QPushButton::clicked, this, &ShopWindow::gpsEnterHelp);
}

void ShopWindow::buildCoordinatesGpsView()
{
    CoordinatesPage &p = *coordinatesPage;
    QLabel *heading = Controls::valueLabel(u"gpsHeading"_s);
    heading->setText(tr("Getting coords from GPS"));
    heading->setAlignment(Qt::AlignCenter);
    p.status = Controls::valueLabel(u"gpsStatus"_s);
    p.status->setAlignment(Qt::AlignCenter);
    const auto value = [](const QString &objectName) {
        QLabel *label = Controls::valueLabel(objectName);
        label->setText(u"0.0"_s);
        return label;
    };
    p.longitudeValue = value(u"gpsLongitude"_s);
    p.latitudeValue = value(u"gpsLatitude"_s);
    p.getFromGps = Controls::textButton(u"getFromGpsButton"_s, u":/img/gps.svg"_s,
                                        Controls::pictureExtent, tr("Get from GPS"));

    QFrame *view = Controls::sheet();
    QVBoxLayout *box = Controls::layOutSheet(view);
    box->addWidget(heading);
    box->addWidget(p.status, 1);
    auto *values = new QVBoxLayout;
    values->addStretch();
    box->addLayout(values);
    Frames::addField(values, tr("Lon:"), p.longitudeValue);
    Frames::addField(values, tr("Lat:"), p.latitudeValue);
    box->addWidget(p.getFromGps);
    p.views->addWidget(view);

    connect(p.getFromGps, &QPushButton::clicked, this, &ShopWindow::btnGetGpsClicked);
}

void ShopWindow::buildCoordinatesEditView(TurningBoxes &turningBoxes)
{
    CoordinatesPage &p = *coordinatesPage;
    const QString latitude = tr("Latitude");
    const QString longitude = tr("Longitude");
    const auto decimalRow = [](AxisFields &axis, const QString &objectName, const QString &name) {
        axis.decimal = maskedField(objectName, decimalMask, name, tr("decimal degrees"));
        auto *row = new QHBoxLayout;
        row->addWidget(axis.decimal);
        return row;
    };
    const auto sexagesimalRow = [&turningBoxes](AxisFields &axis, const QString &prefix,
                                                const QString &name) {
        axis.degrees = maskedField(prefix + u"Degrees"_s, wholeMask, name, tr("degrees"));
        axis.minutes = maskedField(prefix + u"Minutes"_s, wholeMask, name, tr("minutes"));
        axis.seconds = maskedField(prefix + u"Seconds"_s, secondsMask, name, tr("seconds"));
        axis.hemisphere = new QPushButton(axis.positive);
        axis.hemisphere->setObjectName(prefix + u"Hemisphere"_s);
        axis.hemisphere->setAccessibleDescription(name);
        auto *whole = new QHBoxLayout;
        whole->addWidget(axis.degrees, 1);
        whole->addWidget(new QLabel(u"°"_s));
        whole->addWidget(axis.minutes, 1);
        whole->addWidget(new QLabel(u"'"_s));
        auto *rest = new QHBoxLayout;
        rest->addWidget(axis.seconds, 3); // wider, for its decimals
        rest->addWidget(new QLabel(u"''"_s));
        rest->addWidget(axis.hemisphere, 1);
        auto *row = new QHBoxLayout;
        row->addLayout(whole, 1);
        row->addLayout(rest, 1);
        for (QBoxLayout *part : {whole, rest, row})
            part->setSpacing(2); // pixels, so that units stay close to their numbers
        turningBoxes.sideBySide << row;
        return row;
    };

    p.tabs = new FittingTabs;
    p.tabs->setObjectName(u"coordinatesTabs"_s);
    p.tabs->setAccessibleName(tr("Coords input"));
    addTab(p.tabs, turningBoxes, tr("DD.DD°"),
           axisPane(latitude, decimalRow(p.latitude, u"latitudeField"_s, latitude)),
           axisPane(longitude, decimalRow(p.longitude, u"longitudeField"_s, longitude)));
    addTab(p.tabs, turningBoxes, tr("DD°MM'SS''"),
           axisPane(latitude, sexagesimalRow(p.latitude, u"latitude"_s, latitude)),
           axisPane(longitude, sexagesimalRow(p.longitude, u"longitude"_s, longitude)));
    p.views->addWidget(p.tabs);

    connect(p.tabs, &QTabWidget::currentChanged, this, &ShopWindow::gpsEditPageChanged);
    connect(p.latitude.hemisphere, &QPushButton::clicked, this, &ShopWindow::latBtnSwitch);
    connect(p.longitude.hemisphere, &QPushButton::clicked, this, &ShopWindow::lonBtnSwitch);
    for (MaskedField *field : {p.latitude.decimal, p.longitude.decimal})
        connect(field, &MaskedField::pairPasted, this, &ShopWindow::takePastedPair);
    for (const AxisFields *axis : {&p.latitude, &p.longitude}) {
        for (MaskedField *field : {axis->decimal, axis->degrees}) {
            connect(field, &MaskedField::tooManyDigits, this,
                    [this, field] { refuseTooManyDigits(field); });
        }
    }
}

/// A number whose last digits are missing is the coordinate of another place.
void ShopWindow::refuseTooManyDigits(MaskedField *field)
{
    field->refuse();
    InformationBox::information(
        this, tr("This number does not fit. Choose the place on the map, or get it from the GPS."),
        InformationBox::adviceTime);
}

void ShopWindow::takePastedPair(const QString &latitude, const QString &longitude)
{
    if (!Coordinates::isPlace(Coordinates::number(latitude), Coordinates::number(longitude)))
        return;
    coordinatesPage->latitude.decimal->setValue(latitude);
    coordinatesPage->longitude.decimal->setValue(longitude);
}

void ShopWindow::manualEnterGps()
{
    const CoordinatesPage &p = *coordinatesPage;
    p.gpsButton->setEnabled(gpsEnabled);
    p.getFromGps->setEnabled(gpsEnabled);
    const bool gpsViewWasLast = p.views->currentIndex() == CoordinatesPage::GpsView;
    p.showView(gpsViewWasLast ? CoordinatesPage::GpsView : CoordinatesPage::EditView);
    draft.setCoordsShown(false);
    p.latitude.clear();
    p.longitude.clear();
    p.status->setText(tr("Coordinates is not Set"));
    p.longitudeValue->clear();
    p.latitudeValue->clear();

    if (draft.storeCoordsSet()) {
        p.showCoordinates(Coordinates::text(draft.editedLatitude()),
                          Coordinates::text(draft.editedLongitude()));
        draft.setCoordsShown(true);
    } else if (!draft.isNew()) {
        QSqlQuery row = Database::run(Statements::coordinates, draft.editedStoreId);
        if (row.first()) {
            p.showCoordinates(row.value(u"latitude"_s).toString(),
                              row.value(u"longitude"_s).toString());
            draft.setCoordsShown(true);
        }
    }
    if (draft.coordsShown())
        p.status->setText(tr("Current store Coordinates"));
    pageStack->setCurrentIndex(PageCoordinates);
}

void ShopWindow::backToShopEdit()
{
    pageStack->setCurrentIndex(PageStoreEdit);
}

void ShopWindow::saveEnteredGps()
{
    const CoordinatesPage &p = *coordinatesPage;
    const int view = p.views->currentIndex();
    // Coordinates from the GPS have already been taken.
    if (view != CoordinatesPage::GpsView) {
        if (view == CoordinatesPage::EditView &&
            p.tabs->currentIndex() == CoordinatesPage::SexagesimalTab) {
            p.latitude.sexagesimalToDecimal();
            p.longitude.sexagesimalToDecimal();
        }
        const double latitude = p.latitude.value();
        const double longitude = p.longitude.value();
        if (!Coordinates::isPlace(latitude, longitude)) {
            draft.refuseTyped();
            showMessage(tr("Coordinates are out of range"),
                        tr("Latitude goes from -90 to 90 degrees, longitude from -180 to 180."),
                        u":/img/warning_r.svg"_s, PageCoordinates);
            return;
        }
        takeTypedCoordinates(static_cast<float>(latitude), static_cast<float>(longitude));
    }
    if (!draft.storeCoordsSet()) {
        showMessage(tr("Coordinates is Empty"),
                    tr("You can not save zero or empty coordinates. Press Cancel instead."),
                    u":/img/warning_r.svg"_s, PageCoordinates);
        return;
    }
    storeEditPage->coordinates->setName(tr("coords is set (edit...)"));
    pageStack->setCurrentIndex(PageStoreEdit);
}

void ShopWindow::takeTypedCoordinates(float latitude, float longitude)
{
    if (!draft.takeTyped(latitude, longitude))
        return;
    TrSettings::instance().setLastPosition(latitude, longitude);
}

void ShopWindow::lonBtnSwitch()
{
    coordinatesPage->longitude.switchHemisphere();
}

void ShopWindow::latBtnSwitch()
{
    coordinatesPage->latitude.switchHemisphere();
}

void ShopWindow::gpsEditPageChanged(int aIndex)
{
    for (const AxisFields *axis : {&coordinatesPage->latitude, &coordinatesPage->longitude}) {
        if (aIndex == CoordinatesPage::SexagesimalTab)
            axis->decimalToSexagesimal();
        else
            axis->sexagesimalToDecimal();
    }
}

void ShopWindow::showGpsGetPage()
{
    coordinatesPage->showView(CoordinatesPage::GpsView);
    coordinatesPage->status->setText(tr("Current store Coordinates"));
}

void ShopWindow::showGpsEditPage()
{
    coordinatesPage->showView(CoordinatesPage::EditView);
    endWaiting();
}

void ShopWindow::showGpsMapPage()
{
    const CoordinatesPage &p = *coordinatesPage;
    endWaiting();
    if (p.views->currentIndex() == CoordinatesPage::EditView &&
        p.tabs->currentIndex() == CoordinatesPage::SexagesimalTab) {
        for (const AxisFields *axis : {&p.latitude, &p.longitude}) {
            if (axis->sexagesimalDiffers())
                axis->sexagesimalToDecimal();
        }
    }
    // The map is centred before it is shown, so that it fetches no tiles of another place.
    if (draft.storeCoordsSet() || draft.coordsShown()) {
        mapCenterByEdited();
        p.map->setStorePin(static_cast<float>(p.latitude.value()),
                           static_cast<float>(p.longitude.value()));
    } else {
        const TrSettings &settings = TrSettings::instance();
        p.map->setCenter(settings.lastLatitude(), settings.lastLongitude());
        p.map->hideStorePin();
    }
    p.showView(CoordinatesPage::MapView);
    openNetworkSession();
}

void ShopWindow::updateGpsGetPage()
{
    takeAwaitedPosition();
    showTakenCoordinates();
}

void ShopWindow::btnGetGpsClicked()
{
    if (!waitForPosition(&ShopWindow::updateGpsGetPage))
        showTakenCoordinates();
    else
        coordinatesPage->status->setText(tr("Requesting NEW store Coordinates from GPS..."));
}

/// Shows the coordinates that have been taken for the store.
void ShopWindow::showTakenCoordinates() const
{
    coordinatesPage->status->setText(tr("Current store Coordinates UPDATED"));
    coordinatesPage->showCoordinates(Coordinates::text(draft.editedLatitude()),
                                     Coordinates::text(draft.editedLongitude()));
}

void ShopWindow::mapMarkUpdated(qreal latitude, qreal longitude)
{
    draft.takeMark(static_cast<float>(latitude), static_cast<float>(longitude));
    showTakenCoordinates();
}

void ShopWindow::mapCenterByEdited()
{
    coordinatesPage->map->setCenter(static_cast<float>(coordinatesPage->latitude.value()),
                                    static_cast<float>(coordinatesPage->longitude.value()));
}

void ShopWindow::mapCenterByGps()
{
    if (!gpsEnabled)
        return;
    if (!waitForPosition(&ShopWindow::updateMapCenter))
        updateMapCenter();
}

void ShopWindow::updateMapCenter()
{
    takeAwaitedPosition();
    coordinatesPage->map->setCenter(draft.editedLatitude(), draft.editedLongitude());
}
