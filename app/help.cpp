// SPDX-License-Identifier: MIT
// The texts are the keys of the translations, so even their spelling mistakes must be kept.
#include <QAbstractButton>
#include <QLabel>
#include <QStackedWidget>
#include <QString>
#include <QTextDocumentFragment>

#include "app/messagepages.h"
#include "app/shopwindow.h"
#include "base/pages.h"
#include "map/tileserver.h"
#include "widgets/controls.h"

using namespace Qt::StringLiterals;

namespace {

const QString pictureOfHelp = u":/img/question.png"_s;

/// Returns the HTML for `picture`, a resource path, within a line of text.
QString inlinePicture(const QString &picture)
{
    return u"<img src=\"%1\" width=24 height=24>"_s.arg(picture);
}

/// Returns a help text for screen readers, as plain text. The names of the buttons of `page`
/// replace their pictures.
QString spokenHelp(QString text, const QWidget *page)
{
    for (const QAbstractButton *button : page->findChildren<QAbstractButton *>()) {
        const QString picture = Controls::pictureOf(button);
        const QString name =
            button->accessibleName().isEmpty() ? button->text() : button->accessibleName();
        if (!picture.isEmpty())
            text.replace(inlinePicture(picture), name);
    }
    return QTextDocumentFragment::fromHtml(text).toPlainText();
}

} // namespace

QString ShopWindow::helpLine(const QString &text) const
{
    return text + htmlBreak;
}

QString ShopWindow::helpHeading(const QString &text) const
{
    return htmlBreak + htmlBoldOpen + text + htmlBoldClose + htmlBreak;
}

QString ShopWindow::helpButton(QLatin1StringView picture, const QString &text) const
{
    return inlinePicture(u":/img/%1"_s.arg(picture)) + u" - "_s + text + htmlBreak;
}

void ShopWindow::showHelp(const QString &title, const QString &text, int returnPage)
{
    showMessage(title, text, pictureOfHelp, returnPage);
    messagePage->text->setAccessibleName(spokenHelp(text, pageStack->widget(returnPage)));
}

void ShopWindow::mainPageHelp()
{
    showHelp(
        tr("Main Page"),
        helpLine(tr("You are on a Main Page of the App.")) + helpHeading(tr("Main buttons here:")) +
            helpButton("shopping-cart.svg"_L1, tr("Shopping page, shopping Lists management;")) +
            helpButton("reminder.svg"_L1,
                       tr("Reminders over GPS tracking of closest to You Stores;")) +
            helpButton("market.png"_L1, tr("Stores management page.")) +
            helpHeading(tr("Toolbar buttons:")) + helpButton("tools.svg"_L1, tr("Options page;")) +
            helpButton("question.png"_L1, tr("this page;")) +
            helpButton("info.png"_L1, tr("About page.")),
        PageMain);
}

void ShopWindow::mainPageAbout()
{
    const QString contact = QStringLiteral(TROLLEO_CONTACT);
    // The zero-width space allows a line break after the "@".
    const QString shownContact = QString(contact).replace(u'@', u"@\u200b"_s);
    // The labels are translated, the values are not.
    showMessage(
        tr("About Trolleo"),
        helpLine(htmlBoldOpen + u"Trolleo"_s + htmlBoldClose) +
            helpLine(tr("This program is intended to help a User not forget about all the planned "
                        "shoppings and make shopping process itself more handy.")) +
            helpLine(tr("Program version: ") + u"1.1.0 for Maemo 5"_s) +
            helpLine(tr("Developed with: ") + u"Qt 4.6.3"_s) +
            helpLine(tr("Send reports to: ") +
                     u"<a href=\"mailto:%1\">%2</a>"_s.arg(contact, shownContact)) +
            tr("This build runs on Qt %1 and is free software under the MIT licence. Map data: %2.")
                .arg(QString::fromLatin1(qVersion()), TileServer::attribution()),
        u":/img/info.png"_s, PageMain);
}

void ShopWindow::optionsPageHelp()
{
    showHelp(
        tr("Options"),
        helpLine(tr("Here You can Enable/Disable GPS, change AutoStart settings, select Sound and "
                    "Language")) +
            helpHeading(tr("GPS settings:")) +
            helpLine(tr("Enable use of GPS - without it the App never asks for Your position;")) +
            helpLine(tr("GPS always active - GPS works from the start of the App, so a position is "
                        "found sooner, but the battery lasts shorter;")) +
            helpLine(tr(
                "AutoStart tracking - tracking of all Stores begins when the App starts, and when "
                "You save the Options.")) +
            helpHeading(tr("Alarm settings:")) +
            helpLine(tr("Press the button with the file name to choose another sound (wav or mp3). "
                        "The defualt one comes with the App.")) +
            helpHeading(tr("Interface languge:")) +
            helpLine(
                tr("AutoDetect takes the language of Your device. Selected translation will be "
                   "loaded right after You exit the Options.")) +
            helpHeading(tr("Toolbar buttons:")) + helpButton("question.png"_L1, tr("this page;")) +
            helpButton("back.svg"_L1, tr("back to the Main Page, nothing is saved.")) +
            helpHeading(tr("Buttons at the bottom:")) +
            helpButton("commit.png"_L1, tr("save the Options;")) +
            helpButton("red_round_error.svg"_L1, tr("exit without saving.")),
        PageOptions);
}

void ShopWindow::trackingPageHelp()
{
    showHelp(
        tr("Reminders (GPS tracking)"),
        helpLine(tr("You are on a Reminders page.")) +
            helpLine(tr("While tracking works, the App follows Your position. When You are 250 "
                        "meters or less from a Store with an active Shopping List, it rings.")) +
            helpHeading(tr("What to track:")) +
            helpLine(
                tr("All Stores / Lists - every Store that has coordinates and an active List;")) +
            helpLine(
                tr("By Category - Stores of one Category, press the button below to choose it;")) +
            helpLine(tr("By Store - one Store, press the button below to choose it.")) +
            helpHeading(tr("Toolbar buttons:")) + helpButton("question.png"_L1, tr("this page;")) +
            helpButton("back.svg"_L1, tr("back to the Main Page, tracking goes on.")) +
            helpHeading(tr("Main buttons:")) +
            helpButton("eye.svg"_L1, tr("Stores that match the critaria sortde by distance;")) +
            helpButton("stop.svg"_L1, tr("stop tracking;")) +
            helpButton("start.png"_L1, tr("start tracking.")),
        PageTracking);
}

void ShopWindow::trackingListHelp()
{
    showHelp(
        tr("Tracking"),
        helpLine(
            tr("Here You can vew tracked Stores, sorted by distance from current location. ")) +
            helpLine(tr("List updates every 3 seconds")) +
            helpLine(tr("While the Map shows, distances stay as they were.")) +
            helpHeading(tr("Toolbar buttons:")) +
            helpButton("eye.svg"_L1, tr("List of the Stores, distances are in meters;")) +
            helpButton("map_icon.svg"_L1,
                       tr("Map; this view is available only when GPS is active. Hold a finger on "
                          "it to go to the closest Store or to Your position;")) +
            helpButton("back.svg"_L1, tr("back to the Reminders page;")) +
            helpButton("question.png"_L1, tr("this page.")) +
            helpHeading(tr("Buttons at the bottom bottom:")) +
            helpButton("commit.png"_L1, tr("back to the Reminders page.")),
        PageTrackedList);
}

void ShopWindow::doShoppingHelp()
{
    showHelp(
        tr("Do Shopping"),
        helpLine(tr("Here You can check/uncheck bought goods. When You check one of the items it "
                    "will be moved below last unchecked item. Also remember that even one "
                    "unchecked item makes the list to be still active - i.e. this list still can "
                    "be used in a reminders.")) +
            helpHeading(tr("List usage:")) +
            helpLine(tr("Tap an item twice to check or uncheck it. It is saved at once.")) +
            helpHeading(tr("Toolbar buttons:")) +
            helpButton("back.svg"_L1, tr("finish shopping;")) +
            helpButton("question.png"_L1, tr("this page.")) + helpHeading(tr("Main buttons:")) +
            helpButton("check_sign_fill.svg"_L1, tr("check the chosen item;")) +
            helpButton("check_sign_empt.svg"_L1, tr("uncheck the chosen item;")) +
            helpButton("commit.png"_L1, tr("finish shopping.")),
        PageDoShopping);
}

void ShopWindow::shopListPageHelp()
{
    showHelp(tr("Shoppings"),
             helpLine(tr("You are on a Shopping Page.")) +
                 helpLine(tr("It shows the active Shopping List, its Store and its state.")) +
                 helpHeading(tr("Toolbar buttons:")) +
                 helpButton("question.png"_L1, tr("this page;")) +
                 helpButton("back.svg"_L1, tr("back to the Main Page.")) +
                 helpHeading(tr("Main buttons:")) +
                 helpButton("check-list.svg"_L1, tr("start shopping with the active List;")) +
                 helpButton("edit.svg"_L1, tr("name, Store and state of the List;")) +
                 helpButton("shopping-cart.svg"_L1, tr("goods of the List;")) +
                 helpButton("listList.png"_L1, tr("select another List, or add a New One.")),
             PageShopping);
}

void ShopWindow::shopListsHelp()
{
    showHelp(tr("Shopping Lists"),
             helpLine(tr("You are on a Shopping Lists Page.")) + helpHeading(tr("List usage:")) +
                 helpLine(tr("Tap a List to choose it, tap it twice to make it the active one. "
                             "Beside its name stands the Store it is bouded to.")) +
                 helpHeading(tr("Toolbar buttons:")) +
                 helpButton("back.svg"_L1, tr("return to previuos page;")) +
                 helpButton("question.png"_L1, tr("this page.")) +
                 helpHeading(tr("Main buttons:")) +
                 helpButton("plus.svg"_L1, tr("add a New List;")) +
                 helpButton("commit.png"_L1, tr("make the chosen List the active one.")),
             PageShoppingLists);
}

void ShopWindow::shopListEditHelp()
{
    showHelp(
        tr("Shopping List Edit"),
        helpLine(tr("You are on a Shopping List Edit Page.")) +
            helpLine(tr("Shopping List caption can not be empty.")) +
            helpLine(tr("Press the button with the Store to bind the List to a Store. Reset makes "
                        "all goods of the List unchecked again, at once.")) +
            helpHeading(tr("Toolbar buttons:")) + helpButton("question.png"_L1, tr("this page;")) +
            helpButton("back.svg"_L1, tr("return to previuos page, nothing is saved.")) +
            helpHeading(tr("Main buttons:")) + helpButton("commit.png"_L1, tr("save the List;")) +
            helpButton("trash.svg"_L1, tr("delete the List with its goods.")),
        PageListEdit);
}

void ShopWindow::editItemsListHelp()
{
    showHelp(
        tr("Items List"),
        helpLine(tr("You are on an Items List Page.")) + helpHeading(tr("List usage:")) +
            helpLine(tr("Tap an item twice to edit it.")) + helpHeading(tr("Toolbar buttons:")) +
            helpButton("back.svg"_L1, tr("return to previuos page, nothing is saved;")) +
            helpButton("question.png"_L1, tr("this page.")) + helpHeading(tr("Main buttons:")) +
            helpButton("plus.svg"_L1, tr("add a New item;")) +
            helpButton("commit.png"_L1, tr("save all the items.")),
        PageItemsList);
}

void ShopWindow::addItemHelp()
{
    showHelp(
        tr("Item Add/Edit"),
        helpLine(tr("Here You can edit item's parameters. Or You can delete current Item from the "
                    "List. ")) +
            helpLine(tr("What is enetered here is saved with the whole List. Minus and plus change "
                        "the amount.")) +
            helpHeading(tr("Toolbar buttons:")) + helpButton("question.png"_L1, tr("this page;")) +
            helpButton("back.svg"_L1, tr("return to previuos page, nothing is changed.")) +
            helpHeading(tr("Main buttons:")) +
            helpButton("commit.png"_L1, tr("put the item into the List;")) +
            helpButton("trash.svg"_L1, tr("delete the item.")),
        PageItemEdit);
}

void ShopWindow::shopsHelp()
{
    showHelp(tr("Stores"),
             helpLine(tr("You are on a Stores Page.")) +
                 helpLine(tr("It shows the current Store, its Category and how far it is.")) +
                 helpHeading(tr("Toolbar buttons:")) +
                 helpButton("question.png"_L1, tr("this page;")) +
                 helpButton("back.svg"_L1, tr("back to the Main Page.")) +
                 helpHeading(tr("Main buttons:")) +
                 helpButton("edit.svg"_L1, tr("edit the current Store;")) +
                 helpButton("storeList.svg"_L1, tr("select another Store;")) +
                 helpButton("plus.svg"_L1, tr("add a New Store.")),
             PageStores);
}

void ShopWindow::magazinListHelp()
{
    showHelp(tr("Stores List"),
             helpLine(tr("Here You can select Store, or add a New One.")) +
                 helpHeading(tr("List usage:")) +
                 helpLine(tr("Tap a Store to choose it, tap it twice to select it at once.")) +
                 helpHeading(tr("Toolbar buttons:")) +
                 helpButton("back.svg"_L1, tr("return to previuos page, nothing is selected;")) +
                 helpButton("question.png"_L1, tr("this page.")) +
                 helpHeading(tr("Main buttons:")) +
                 helpButton("plus.svg"_L1, tr("add a New Store;")) +
                 helpButton("commit.png"_L1, tr("select the chosen Store.")),
             PageStoreList);
}

void ShopWindow::addShopHelp()
{
    showHelp(
        tr("Store Add/Edit"),
        helpLine(tr("Here You can edit selected Store properties.")) +
            helpLine(
                tr("Press the button with the Category to select it, and the one with the GPS "
                   "to set coordinates. A Store without coordinates can not remind of itself.")) +
            helpHeading(tr("Toolbar buttons:")) + helpButton("question.png"_L1, tr("this page;")) +
            helpButton("back.svg"_L1, tr("return to previuos page, nothing is saved.")) +
            helpHeading(tr("Main buttons:")) + helpButton("commit.png"_L1, tr("save the Store;")) +
            helpButton("trash.svg"_L1, tr("delete the Store; its Lists stay.")),
        PageStoreEdit);
}

void ShopWindow::gpsEnterHelp()
{
    showHelp(
        tr("Coords input"),
        helpLine(tr("Here You can set GPS coordinates for store. There are 3 ways:")) +
            helpButton("gps.svg"_L1, tr("stand in the Store and take them from GPS;")) +
            helpButton("gps_ed.svg"_L1,
                       tr("type them, in degrees or in degrees, minutes and seconds; N/S and E/W "
                          "change the hemisphere;")) +
            helpButton("map_icon.svg"_L1,
                       tr("hold a finger on the Map and press \"Set Coords\".")) +
            helpHeading(tr("Toolbar buttons:")) + helpButton("question.png"_L1, tr("this page;")) +
            helpButton("back.svg"_L1, tr("return to previuos page.")) +
            helpHeading(tr("Main buttons:")) +
            helpButton("gps.svg"_L1, tr("ask GPS for the position;")) +
            helpButton("commit.png"_L1,
                       tr("take the enetered coordinates. They are saved with the Store.")),
        PageCoordinates);
}

void ShopWindow::categoryListHelp()
{
    showHelp(tr("Category List"),
             helpLine(tr("Here You can manage Categories (select one or Add a New one).")) +
                 helpHeading(tr("List usage:")) +
                 helpLine(tr("Tap a Category to choose it, tap it twice to edit it.")) +
                 helpHeading(tr("Toolbar buttons:")) +
                 helpButton("back.svg"_L1, tr("return to previuos page, nothing is selected;")) +
                 helpButton("question.png"_L1, tr("this page.")) +
                 helpHeading(tr("Main buttons:")) +
                 helpButton("plus.svg"_L1, tr("add a New Category;")) +
                 helpButton("commit.png"_L1, tr("select the chosen Category.")),
             PageCategoryList);
}

void ShopWindow::addCategoryHelp()
{
    showHelp(
        tr("Add/Edit Category"),
        helpLine(tr("Here You can edit Category properties. Or You can Delete current category.")) +
            helpHeading(tr("Toolbar buttons:")) + helpButton("question.png"_L1, tr("this page;")) +
            helpButton("back.svg"_L1, tr("return to previuos page, nothing is saved.")) +
            helpHeading(tr("Main buttons:")) +
            helpButton("commit.png"_L1, tr("save the Category;")) +
            helpButton("trash.svg"_L1, tr("delete the Category; its Stores stay.")),
        PageCategoryEdit);
}
