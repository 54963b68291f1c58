// SPDX-License-Identifier: MIT
#include "app/mainpage.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPushButton>

#include "app/shopwindow.h"
#include "widgets/controls.h"
#include "widgets/pictures.h"
#include "widgets/turningpage.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int largeButtonExtent = 96;
constexpr int toolExtent = 40;
constexpr int helpExtent = 52;

/// Creates one of the three large buttons, which share the height of the page.
QPushButton *largeButton(const QString &objectName, const QString &picture, const QString &text)
{
    QPushButton *button = Controls::door(objectName, picture, largeButtonExtent, text);
    QSizePolicy policy = button->sizePolicy();
    policy.setVerticalPolicy(QSizePolicy::Preferred);
    button->setSizePolicy(policy);
    return button;
}

} // namespace

void ShopWindow::buildMainPage()
{
    TurningPage *page = addPage(PageMain, u"mainPage"_s, tr("Main Page"));
    MainPage &p = *mainPage;

    p.shopping = largeButton(u"shoppingButton"_s, u":/img/shopping-cart.svg"_s, tr("Shopping"));
    p.reminder = largeButton(u"reminderButton"_s, u":/img/reminder.svg"_s, tr("Reminder"));
    p.shops = largeButton(u"shopsButton"_s, u":/img/market.png"_s, tr("Shops"));
    page->firstFocus = p.shopping;
    p.options = Controls::pictureButton(u"optionsButton"_s, u":/img/tools.svg"_s, toolExtent,
                                        tr("Options"));
    p.exit = Controls::pictureButton(u"exitButton"_s, u":/img/exit.svg"_s, toolExtent, tr("Exit"));
    p.help =
        Controls::pictureButton(u"helpButton"_s, u":/img/question.png"_s, helpExtent, tr("Help"));
    p.about =
        Controls::pictureButton(u"aboutButton"_s, u":/img/info.png"_s, helpExtent, tr("About"));
    PictureLabel *logo = Controls::pictureLabel(u"logo"_s);
    logo->setPicture(u":/img/House.png"_s, Controls::logoExtent);

    for (QPushButton *button : {p.options, p.exit, p.help, p.about})
        button->setFlat(true);
    auto *toolbar = new QBoxLayout(QBoxLayout::TopToBottom);
    toolbar->setSpacing(Controls::toolGap);
    toolbar->addWidget(logo);
    toolbar->addStretch();
    toolbar->addWidget(p.options);
    toolbar->addStretch();
    toolbar->addWidget(p.help);
    toolbar->addWidget(p.about);
    toolbar->addWidget(p.exit);

    auto *buttons = new QVBoxLayout;
    buttons->setSpacing(0); // the style leaves a gap above and below each button
    buttons->addWidget(p.shopping);
    buttons->addWidget(p.reminder);
    buttons->addWidget(p.shops);

    QFrame *line = Controls::separator(QFrame::VLine);
    auto *box = new QHBoxLayout(page);
    Controls::setPageSpacing(box);
    box->addLayout(toolbar);
    box->addWidget(line);
    box->addLayout(buttons, 1);
    page->turningBoxes = {.alongWidth = {box}, .acrossWidth = {toolbar}, .separators = {line}};

    connect(p.shopping, &QPushButton::clicked, this, &ShopWindow::buyClicked);
    connect(p.reminder, &QPushButton::clicked, this, &ShopWindow::trackingClicked);
    connect(p.shops, &QPushButton::clicked, this, &ShopWindow::shopsClicked);
    connect(p.options, &QPushButton::clicked, this, &ShopWindow::optionsClicked);
    connect(p.exit, &QPushButton::clicked, this, &ShopWindow::exitClicked);
    connect(p.help, &QPushButton::clicked, this, &ShopWindow::mainPageHelp);
    connect(p.about, &QPushButton::clicked, this, &ShopWindow::mainPageAbout);
}
