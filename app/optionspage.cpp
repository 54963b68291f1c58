// SPDX-License-Identifier: MIT
#include "app/optionspage.h"

#include <chrono>
#include <tuple>

#include <QBoxLayout>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLabel>
#include <QLibraryInfo>
#include <QLocale>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QStackedWidget>
#include <QTimer>
#include <QTranslator>

#include "app/filechooser.h"
#include "app/shopwindow.h"
#include "base/installation.h"
#include "base/trsettings.h"
#include "platform/informationbox.h"
#include "widgets/controls.h"
#include "widgets/dragthrough.h"
#include "widgets/namebutton.h"
#include "widgets/pictures.h"
#include "widgets/rowbutton.h"
#include "widgets/TrKineticScroller.h"
#include "widgets/turningpage.h"
#include "widgets/wraplabel.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// The values stored in the settings.
enum Language { SystemLanguage, English, Russian };

QString languageCode(int id)
{
    if (id == English)
        return u"en"_s;
    return id == Russian ? u"ru"_s : QString();
}

QLabel *groupTitle(const QString &text)
{
    auto *label = new WrapLabel;
    label->setText(text);
    Controls::setBold(label);
    return label;
}

} // namespace

void ShopWindow::buildOptionsPage()
{
    TurningPage *page = addPage(PageOptions, u"optionsPage"_s, tr("Options"));
    OptionsPage &p = *optionsPage;
    p = {Frames::makeToolbarFrame(page)};
    p.picture->setPicture(u":/img/tools.svg"_s, Controls::pictureExtent);

    p.enableGps = new RowCheckBox(u"enableGpsBox"_s, tr("Enable use of GPS"));
    p.gpsAlwaysActive = new RowCheckBox(u"gpsAlwaysActiveBox"_s, tr("GPS always active"));
    p.autoStartTracking = new RowCheckBox(u"autoStartTrackingBox"_s, tr("AutoStart tracking"));
    QLabel *soundCaption = Controls::caption(tr("Alarm Sound: "));
    p.sound = new NameButton;
    p.sound->setObjectName(u"soundButton"_s);
    p.sound->setMaximumWidth(textWidth);
    p.sound->setName(QFileInfo(soundFileName).fileName());
    p.sound->setAccessibleDescription(soundCaption->text());
    p.autoDetect = new RowRadioButton(u"autoDetectRadio"_s, tr("AutoDetect"));
    p.english = new RowRadioButton(u"englishRadio"_s, tr("English"));
    p.russian = new RowRadioButton(u"russianRadio"_s, tr("Russian"));

    auto *body = new QWidget;
    auto *rows = new QVBoxLayout(body);
    rows->setContentsMargins(Controls::sheetMargins);
    rows->setSpacing(Controls::captionGap);
    rows->addWidget(groupTitle(tr("GPS settings")));
    for (QCheckBox *box : {p.enableGps, p.gpsAlwaysActive, p.autoStartTracking})
        rows->addWidget(box);
    rows->addSpacing(Controls::paneGap);
    rows->addWidget(groupTitle(tr("Alarm settings")));
    rows->addWidget(soundCaption);
    rows->addWidget(p.sound);
    rows->addSpacing(Controls::paneGap);
    rows->addWidget(groupTitle(tr("Interface Language")));
    for (QRadioButton *radio : {p.autoDetect, p.english, p.russian})
        rows->addWidget(radio);
    rows->addStretch();
    QScrollArea *scrollArea = Controls::scrollArea(body);
    scrollArea->setObjectName(u"optionsScrollArea"_s);
    scrollArea->setAccessibleName(page->accessibleName());
    scrollArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    auto *scroller = new TrKineticScroller(scrollArea);
    scroller->enableKineticScrollFor(scrollArea);
    auto *dragThrough = new DragThrough(scrollArea, scroller);
    for (QAbstractButton *row : body->findChildren<QAbstractButton *>())
        dragThrough->watch(row);
    p.scrollBar = scrollArea->verticalScrollBar();

    p.ok = Controls::textButton(u"okButton"_s, u":/img/commit.png"_s, Controls::pictureExtent,
                                tr("OK"));
    p.cancel = Controls::textButton(u"cancelButton"_s, u":/img/red_round_error.svg"_s,
                                    Controls::pictureExtent, cancelText);
    Controls::setMain(p.ok);
    auto *buttons = new QHBoxLayout;
    buttons->setSpacing(Controls::stackGap);
    buttons->addWidget(p.ok, 1);
    buttons->addWidget(p.cancel, 1);
    auto *column = new QVBoxLayout;
    column->setSpacing(Controls::paneGap);
    column->addWidget(scrollArea, 1);
    column->addLayout(buttons);
    p.contents->addLayout(column, 1);

    connect(p.enableGps, &QCheckBox::toggled, this, &ShopWindow::enableGpsChanged);
    connect(p.gpsAlwaysActive, &QCheckBox::toggled, this, &ShopWindow::enableAutoStartChanged);
    connect(p.sound, &QPushButton::clicked, this, &ShopWindow::chooseSoundFile);
    connect(p.ok, &QPushButton::clicked, this, &ShopWindow::saveSettings);
    connect(p.cancel, &QPushButton::clicked, this, &ShopWindow::backClicked);
    connect(p.back, &QPushButton::clicked, this, &ShopWindow::backClicked);
    connect(p.help, &QPushButton::clicked, this, &ShopWindow::optionsPageHelp);
}

void ShopWindow::optionsClicked()
{
    const OptionsPage &p = *optionsPage;
    // Each of the three options requires the one before it.
    if (!gpsAvailable)
        gpsEnabled = false;
    p.enableGps->setEnabled(gpsAvailable);
    p.enableGps->setChecked(gpsEnabled);
    p.gpsAlwaysActive->setEnabled(p.enableGps->isEnabled() && p.enableGps->isChecked());
    p.gpsAlwaysActive->setChecked(p.gpsAlwaysActive->isEnabled() && gpsAutoStart);
    p.autoStartTracking->setEnabled(p.gpsAlwaysActive->isEnabled() &&
                                    p.gpsAlwaysActive->isChecked());
    p.autoStartTracking->setChecked(p.autoStartTracking->isEnabled() && trackAutoStart);
    p.scrollBar->setValue(0);
    pageStack->setCurrentIndex(PageOptions);
    p.sound->setName(QFileInfo(soundFileName).fileName());
    pendingSoundFileName = soundFileName;
    if (languageId == English)
        p.english->setChecked(true);
    else if (languageId == Russian)
        p.russian->setChecked(true);
    else
        p.autoDetect->setChecked(true);
}

void ShopWindow::enableGpsChanged(bool aState)
{
    optionsPage->gpsAlwaysActive->setEnabled(aState);
    if (!aState)
        optionsPage->gpsAlwaysActive->setChecked(false);
}

void ShopWindow::enableAutoStartChanged(bool aState)
{
    optionsPage->autoStartTracking->setEnabled(aState);
    if (!aState)
        optionsPage->autoStartTracking->setChecked(false);
}

void ShopWindow::chooseSoundFile()
{
    const QString file = FileChooser::openFile(this, tr("Open Sound"), QDir::rootPath(),
                                               tr("Sound Files (*.wav *.mp3)"));
    if (file.isEmpty())
        return;
    pendingSoundFileName = file;
    optionsPage->sound->setName(
        Frames::withoutHalfEmoji(QFileInfo(file).fileName().left(Frames::longestName)));
}

void ShopWindow::saveSettings()
{
    const OptionsPage &p = *optionsPage;
    gpsEnabled = p.enableGps->isChecked();
    gpsAutoStart = p.gpsAlwaysActive->isChecked();
    trackAutoStart = p.autoStartTracking->isChecked();
    soundFileName = pendingSoundFileName;
    TrSettings &settings = TrSettings::instance();
    std::ignore = settings.takeFailure(); // what was not stored before is of no interest here
    settings.setGpsEnabled(gpsEnabled);
    settings.setGpsAutoStart(gpsAutoStart);
    settings.setTrackAutoStart(trackAutoStart);
    settings.setSoundFileName(soundFileName);
    pageStack->setCurrentIndex(PageMain);
    applyGpsSettings();
    int language = SystemLanguage;
    if (p.english->isChecked())
        language = English;
    else if (p.russian->isChecked())
        language = Russian;
    if (language != languageId)
        changeLanguage(language);
    if (settings.takeFailure())
        InformationBox::information(this, tr("The options could not be saved."),
                                    InformationBox::adviceTime);
}

/// Builds all pages again in another language. The old pages are deleted later by the event loop,
/// because a button of theirs has called this function.
void ShopWindow::changeLanguage(int language)
{
    libraryTranslator.reset();
    applicationTranslator.reset();
    loadTranslations(languageCode(language));
    languageId = language;
    TrSettings::instance().setLanguageId(languageId);
    buildUserInterface();
    showMaximized();
    QTimer::singleShot(500ms, this, &ShopWindow::timerFired);
}

void ShopWindow::loadStoredLanguage()
{
    loadTranslations(languageCode(languageId));
}

void ShopWindow::loadTranslations(const QString &code)
{
    const QString locale = code.isEmpty() ? QLocale::system().name() : code;
    libraryTranslator = std::make_unique<QTranslator>();
    // If a file cannot be loaded, its texts stay English.
    std::ignore = libraryTranslator->load(u"qt_"_s + locale,
                                          QLibraryInfo::path(QLibraryInfo::TranslationsPath));
    QCoreApplication::installTranslator(libraryTranslator.get());
    // Qt's translation for a system that writes from right to left must not mirror English pages.
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
    applicationTranslator = std::make_unique<QTranslator>();
    std::ignore = applicationTranslator->load(u"trolleo_"_s + locale, installationFolder());
    QCoreApplication::installTranslator(applicationTranslator.get());
}
