// SPDX-License-Identifier: MIT
#include "app/mainpage.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPushButton>

#include "app/shopwindow.h"
#include "widgets/controls.h"

namespace {

constexpr int largeButtonExtent = 96;
constexpr int toolExtent = 40;
constexpr int helpExtent = 52;

/// The three large buttons share the height of the page.
QPushButton *largeButton(const QString &objectName, const QString &picture, const QString &text)
{
    QPushButton *button = Controls::textButton(objectName, picture, largeButtonExtent, text);
    button->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    return button;
}

} // namespace

void ShopWindow::buildMainPage()
{
    QWidget *page = addPage(PageMain, QStringLiteral("mainPage"));
    MainPage &p = mainPage;

    p.shopping = largeButton(QStringLiteral("shoppingButton"),
                             QStringLiteral(":/img/shopping-cart.svg"), tr("Shopping"));
    p.reminder = largeButton(QStringLiteral("reminderButton"),
                             QStringLiteral(":/img/reminder.svg"), tr("Reminder"));
    p.shops = largeButton(QStringLiteral("shopsButton"), QStringLiteral(":/img/market.png"),
                          tr("Shops"));
    p.options = Controls::pictureButton(QStringLiteral("optionsButton"),
                                        QStringLiteral(":/img/tools.svg"), toolExtent,
                                        tr("Options"));
    p.exit = Controls::pictureButton(QStringLiteral("exitButton"),
                                     QStringLiteral(":/img/exit.svg"), toolExtent, tr("Exit"));
    p.help = Controls::pictureButton(QStringLiteral("helpButton"),
                                     QStringLiteral(":/img/question.png"), helpExtent, tr("Help"));
    p.about = Controls::pictureButton(QStringLiteral("aboutButton"),
                                      QStringLiteral(":/img/info.png"), helpExtent, tr("About"));
    QLabel *logo = Controls::pictureLabel(QStringLiteral("logo"));
    Controls::showPicture(logo, QStringLiteral(":/img/House.png"), Controls::logoExtent);

    auto *toolbar = new QBoxLayout(QBoxLayout::TopToBottom);
    toolbar->addWidget(logo);
    toolbar->addStretch();
    toolbar->addWidget(p.options);
    toolbar->addStretch();
    toolbar->addWidget(p.help);
    toolbar->addWidget(p.about);
    toolbar->addWidget(p.exit);

    auto *buttons = new QVBoxLayout;
    buttons->setSpacing(0);
    buttons->addWidget(p.shopping);
    buttons->addWidget(p.reminder);
    buttons->addWidget(p.shops);

    QFrame *line = Controls::separator(QFrame::VLine);
    auto *box = new QHBoxLayout(page);
    box->addLayout(toolbar);
    box->addWidget(line);
    box->addLayout(buttons, 1);
    p.turningBoxes = {.alongWidth = {box}, .acrossWidth = {toolbar}, .separators = {line}};

    connect(p.shopping, &QPushButton::clicked, this, &ShopWindow::buyClicked);
    connect(p.reminder, &QPushButton::clicked, this, &ShopWindow::trackingClicked);
    connect(p.shops, &QPushButton::clicked, this, &ShopWindow::shopsClicked);
    connect(p.options, &QPushButton::clicked, this, &ShopWindow::optionsClicked);
    connect(p.exit, &QPushButton::clicked, this, &ShopWindow::exitClicked);
    connect(p.help, &QPushButton::clicked, this, &ShopWindow::mainPageHelp);
    connect(p.about, &QPushButton::clicked, this, &ShopWindow::mainPageAbout);
}
