<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US">
<context>
    <name>ShopWindow</name>
    <message>
        <source>Help</source>
        <translation>Help</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Back</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Save</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Delete</translation>
    </message>
    <message>
        <source>Main Page</source>
        <translation>Main Page</translation>
    </message>
    <message>
        <source>You are on a Main Page of the App.</source>
        <translation>You are on a Main Page of the App.</translation>
    </message>
    <message>
        <source>Main buttons here:</source>
        <translation>Main buttons here:</translation>
    </message>
    <message>
        <source>Shopping page, shopping Lists management;</source>
        <translation>Shopping page, shopping Lists management;</translation>
    </message>
    <message>
        <source>Reminders over GPS tracking of closest to You Stores;</source>
        <translation>Reminders over GPS tracking of closest to You Stores;</translation>
    </message>
    <message>
        <source>Stores management page.</source>
        <translation>Stores management page.</translation>
    </message>
    <message>
        <source>Toolbar buttons:</source>
        <translation>Toolbar buttons:</translation>
    </message>
    <message>
        <source>Options page;</source>
        <translation>Options page;</translation>
    </message>
    <message>
        <source>this page;</source>
        <translation>this page;</translation>
    </message>
    <message>
        <source>About page.</source>
        <translation>About page.</translation>
    </message>
    <message>
        <source>About Trolleo</source>
        <translation>About Trolleo</translation>
    </message>
    <message>
        <source>This program is intended to help a User not forget about all the planned shoppings and make shopping process itself more handy.</source>
        <translation>This program is intended to help a User not forget about all the planned shoppings and make shopping process itself more handy.</translation>
    </message>
    <message>
        <source>Program version: </source>
        <translation>Program version: </translation>
    </message>
    <message>
        <source>Developed with: </source>
        <translation>Developed with: </translation>
    </message>
    <message>
        <source>Send reports to: </source>
        <translation>Send reports to: </translation>
    </message>
    <message>
        <source>This build runs on Qt %1 and is free software under the MIT licence. Map data: %2.</source>
        <translation>This build runs on Qt %1 and is free software under the MIT licence. Map data: %2.</translation>
    </message>
    <message>
        <source>Options</source>
        <translation>Options</translation>
    </message>
    <message>
        <source>Here You can Enable/Disable GPS, change AutoStart settings, select Sound and Language</source>
        <translation>Here You can Enable/Disable GPS, change AutoStart settings, select Sound and Language</translation>
    </message>
    <message>
        <source>GPS settings:</source>
        <translation>GPS settings:</translation>
    </message>
    <message>
        <source>Enable use of GPS - without it the App never asks for Your position;</source>
        <translation>Enable use of GPS - without it the App never asks for Your position;</translation>
    </message>
    <message>
        <source>GPS always active - GPS works from the start of the App, so a position is found sooner, but the battery lasts shorter;</source>
        <translation>GPS always active - GPS works from the start of the App, so a position is found sooner, but the battery lasts shorter;</translation>
    </message>
    <message>
        <source>Alarm settings:</source>
        <translation>Alarm settings:</translation>
    </message>
    <message>
        <source>Press the button with the file name to choose another sound (wav or mp3). The defualt one comes with the App.</source>
        <translation>Press the button with the file name to choose another sound (wav or mp3). The defualt one comes with the App.</translation>
    </message>
    <message>
        <source>Interface languge:</source>
        <translation>Interface languge:</translation>
    </message>
    <message>
        <source>AutoDetect takes the language of Your device. Selected translation will be loaded right after You exit the Options.</source>
        <translation>AutoDetect takes the language of Your device. Selected translation will be loaded right after You exit the Options.</translation>
    </message>
    <message>
        <source>back to the Main Page, nothing is saved.</source>
        <translation>back to the Main Page, nothing is saved.</translation>
    </message>
    <message>
        <source>Buttons at the bottom:</source>
        <translation>Buttons at the bottom:</translation>
    </message>
    <message>
        <source>save the Options;</source>
        <translation>save the Options;</translation>
    </message>
    <message>
        <source>exit without saving.</source>
        <translation>exit without saving.</translation>
    </message>
    <message>
        <source>Reminders (GPS tracking)</source>
        <translation>Reminders (GPS tracking)</translation>
    </message>
    <message>
        <source>You are on a Reminders page.</source>
        <translation>You are on a Reminders page.</translation>
    </message>
    <message>
        <source>While tracking works, the App follows Your position. When You are 250 meters or less from a Store with an active Shopping List, it rings.</source>
        <translation>While tracking works, the App follows Your position. When You are 250 meters or less from a Store with an active Shopping List, it rings.</translation>
    </message>
    <message>
        <source>What to track:</source>
        <translation>What to track:</translation>
    </message>
    <message>
        <source>All Stores / Lists - every Store that has coordinates and an active List;</source>
        <translation>All Stores / Lists - every Store that has coordinates and an active List;</translation>
    </message>
    <message>
        <source>By Category - Stores of one Category, press the button below to choose it;</source>
        <translation>By Category - Stores of one Category, press the button below to choose it;</translation>
    </message>
    <message>
        <source>By Store - one Store, press the button below to choose it.</source>
        <translation>By Store - one Store, press the button below to choose it.</translation>
    </message>
    <message>
        <source>Main buttons:</source>
        <translation>Main buttons:</translation>
    </message>
    <message>
        <source>Stores that match the critaria sortde by distance;</source>
        <translation>Stores that match the critaria sortde by distance;</translation>
    </message>
    <message>
        <source>stop tracking;</source>
        <translation>stop tracking;</translation>
    </message>
    <message>
        <source>start tracking.</source>
        <translation>start tracking.</translation>
    </message>
    <message>
        <source>Tracking</source>
        <translation>Tracking</translation>
    </message>
    <message>
        <source>Here You can vew tracked Stores, sorted by distance from current location. </source>
        <translation>Here You can vew tracked Stores, sorted by distance from current location. </translation>
    </message>
    <message>
        <source>List updates every 3 seconds</source>
        <translation>List updates every 3 seconds</translation>
    </message>
    <message>
        <source>List of the Stores, distances are in meters;</source>
        <translation>List of the Stores, distances are in meters;</translation>
    </message>
    <message>
        <source>Map; this view is available only when GPS is active. Hold a finger on it to go to the closest Store or to Your position;</source>
        <translation>Map; this view is available only when GPS is active. Hold a finger on it to go to the closest Store or to Your position;</translation>
    </message>
    <message>
        <source>back to the Reminders page;</source>
        <translation>back to the Reminders page;</translation>
    </message>
    <message>
        <source>this page.</source>
        <translation>this page.</translation>
    </message>
    <message>
        <source>back to the Reminders page.</source>
        <translation>back to the Reminders page.</translation>
    </message>
    <message>
        <source>Do Shopping</source>
        <translation>Do Shopping</translation>
    </message>
    <message>
        <source>Here You can check/uncheck bought goods. When You check one of the items it will be moved below last unchecked item. Also remember that even one unchecked item makes the list to be still active - i.e. this list still can be used in a reminders.</source>
        <translation>Here You can check/uncheck bought goods. When You check one of the items it will be moved below last unchecked item. Also remember that even one unchecked item makes the list to be still active - i.e. this list still can be used in a reminders.</translation>
    </message>
    <message>
        <source>List usage:</source>
        <translation>List usage:</translation>
    </message>
    <message>
        <source>Tap an item twice to check or uncheck it. It is saved at once.</source>
        <translation>Tap an item twice to check or uncheck it. It is saved at once.</translation>
    </message>
    <message>
        <source>finish shopping;</source>
        <translation>finish shopping;</translation>
    </message>
    <message>
        <source>finish shopping.</source>
        <translation>finish shopping.</translation>
    </message>
    <message>
        <source>Shoppings</source>
        <translation>Shoppings</translation>
    </message>
    <message>
        <source>You are on a Shopping Page.</source>
        <translation>You are on a Shopping Page.</translation>
    </message>
    <message>
        <source>It shows the active Shopping List, its Store and its state.</source>
        <translation>It shows the active Shopping List, its Store and its state.</translation>
    </message>
    <message>
        <source>back to the Main Page.</source>
        <translation>back to the Main Page.</translation>
    </message>
    <message>
        <source>start shopping with the active List;</source>
        <translation>start shopping with the active List;</translation>
    </message>
    <message>
        <source>name, Store and state of the List;</source>
        <translation>name, Store and state of the List;</translation>
    </message>
    <message>
        <source>goods of the List;</source>
        <translation>goods of the List;</translation>
    </message>
    <message>
        <source>select another List, or add a New One.</source>
        <translation>select another List, or add a New One.</translation>
    </message>
    <message>
        <source>Shopping Lists</source>
        <translation>Shopping Lists</translation>
    </message>
    <message>
        <source>You are on a Shopping Lists Page.</source>
        <translation>You are on a Shopping Lists Page.</translation>
    </message>
    <message>
        <source>Tap a List to choose it, tap it twice to make it the active one. Beside its name stands the Store it is bouded to.</source>
        <translation>Tap a List to choose it, tap it twice to make it the active one. Beside its name stands the Store it is bouded to.</translation>
    </message>
    <message>
        <source>return to previuos page;</source>
        <translation>return to previuos page;</translation>
    </message>
    <message>
        <source>add a New List;</source>
        <translation>add a New List;</translation>
    </message>
    <message>
        <source>make the chosen List the active one.</source>
        <translation>make the chosen List the active one.</translation>
    </message>
    <message>
        <source>Shopping List Edit</source>
        <translation>Shopping List Edit</translation>
    </message>
    <message>
        <source>You are on a Shopping List Edit Page.</source>
        <translation>You are on a Shopping List Edit Page.</translation>
    </message>
    <message>
        <source>Shopping List caption can not be empty.</source>
        <translation>Shopping List caption can not be empty.</translation>
    </message>
    <message>
        <source>return to previuos page, nothing is saved.</source>
        <translation>return to previuos page, nothing is saved.</translation>
    </message>
    <message>
        <source>save the List;</source>
        <translation>save the List;</translation>
    </message>
    <message>
        <source>delete the List with its goods.</source>
        <translation>delete the List with its goods.</translation>
    </message>
    <message>
        <source>Items List</source>
        <translation>Items List</translation>
    </message>
    <message>
        <source>You are on an Items List Page.</source>
        <translation>You are on an Items List Page.</translation>
    </message>
    <message>
        <source>Tap an item twice to edit it.</source>
        <translation>Tap an item twice to edit it.</translation>
    </message>
    <message>
        <source>return to previuos page, nothing is saved;</source>
        <translation>return to previuos page, nothing is saved;</translation>
    </message>
    <message>
        <source>add a New item;</source>
        <translation>add a New item;</translation>
    </message>
    <message>
        <source>save all the items.</source>
        <translation>save all the items.</translation>
    </message>
    <message>
        <source>Item Add/Edit</source>
        <translation>Item Add/Edit</translation>
    </message>
    <message>
        <source>Here You can edit item&apos;s parameters. Or You can delete current Item from the List. </source>
        <translation>Here You can edit item&apos;s parameters. Or You can delete current Item from the List. </translation>
    </message>
    <message>
        <source>return to previuos page, nothing is changed.</source>
        <translation>return to previuos page, nothing is changed.</translation>
    </message>
    <message>
        <source>put the item into the List;</source>
        <translation>put the item into the List;</translation>
    </message>
    <message>
        <source>delete the item.</source>
        <translation>delete the item.</translation>
    </message>
    <message>
        <source>Stores</source>
        <translation>Stores</translation>
    </message>
    <message>
        <source>You are on a Stores Page.</source>
        <translation>You are on a Stores Page.</translation>
    </message>
    <message>
        <source>It shows the current Store, its Category and how far it is.</source>
        <translation>It shows the current Store, its Category and how far it is.</translation>
    </message>
    <message>
        <source>Buttons at the bottom bottom:</source>
        <translation>Buttons at the bottom bottom:</translation>
    </message>
    <message>
        <source>edit the current Store;</source>
        <translation>edit the current Store;</translation>
    </message>
    <message>
        <source>select another Store;</source>
        <translation>select another Store;</translation>
    </message>
    <message>
        <source>add a New Store.</source>
        <translation>add a New Store.</translation>
    </message>
    <message>
        <source>Stores List</source>
        <translation>Stores List</translation>
    </message>
    <message>
        <source>Here You can select Store, or add a New One.</source>
        <translation>Here You can select Store, or add a New One.</translation>
    </message>
    <message>
        <source>Tap a Store to choose it, tap it twice to select it at once.</source>
        <translation>Tap a Store to choose it, tap it twice to select it at once.</translation>
    </message>
    <message>
        <source>return to previuos page, nothing is selected;</source>
        <translation>return to previuos page, nothing is selected;</translation>
    </message>
    <message>
        <source>add a New Store;</source>
        <translation>add a New Store;</translation>
    </message>
    <message>
        <source>select the chosen Store.</source>
        <translation>select the chosen Store.</translation>
    </message>
    <message>
        <source>Store Add/Edit</source>
        <translation>Store Add/Edit</translation>
    </message>
    <message>
        <source>Here You can edit selected Store properties.</source>
        <translation>Here You can edit selected Store properties.</translation>
    </message>
    <message>
        <source>Press the button with the Category to select it, and the one with the GPS to set coordinates. A Store without coordinates can not remind of itself.</source>
        <translation>Press the button with the Category to select it, and the one with the GPS to set coordinates. A Store without coordinates can not remind of itself.</translation>
    </message>
    <message>
        <source>save the Store;</source>
        <translation>save the Store;</translation>
    </message>
    <message>
        <source>delete the Store; its Lists stay.</source>
        <translation>delete the Store; its Lists stay.</translation>
    </message>
    <message>
        <source>Coords input</source>
        <translation>Coords input</translation>
    </message>
    <message>
        <source>Here You can set GPS coordinates for store. There are 3 ways:</source>
        <translation>Here You can set GPS coordinates for store. There are 3 ways:</translation>
    </message>
    <message>
        <source>stand in the Store and take them from GPS;</source>
        <translation>stand in the Store and take them from GPS;</translation>
    </message>
    <message>
        <source>hold a finger on the Map and press &quot;Set Coords&quot;.</source>
        <translation>hold a finger on the Map and press &quot;Set Coords&quot;.</translation>
    </message>
    <message>
        <source>return to previuos page.</source>
        <translation>return to previuos page.</translation>
    </message>
    <message>
        <source>ask GPS for the position;</source>
        <translation>ask GPS for the position;</translation>
    </message>
    <message>
        <source>take the enetered coordinates. They are saved with the Store.</source>
        <translation>take the enetered coordinates. They are saved with the Store.</translation>
    </message>
    <message>
        <source>Category List</source>
        <translation>Category List</translation>
    </message>
    <message>
        <source>Here You can manage Categories (select one or Add a New one).</source>
        <translation>Here You can manage Categories (select one or Add a New one).</translation>
    </message>
    <message>
        <source>Tap a Category to choose it, tap it twice to edit it.</source>
        <translation>Tap a Category to choose it, tap it twice to edit it.</translation>
    </message>
    <message>
        <source>add a New Category;</source>
        <translation>add a New Category;</translation>
    </message>
    <message>
        <source>select the chosen Category.</source>
        <translation>select the chosen Category.</translation>
    </message>
    <message>
        <source>Add/Edit Category</source>
        <translation>Add/Edit Category</translation>
    </message>
    <message>
        <source>Here You can edit Category properties. Or You can Delete current category.</source>
        <translation>Here You can edit Category properties. Or You can Delete current category.</translation>
    </message>
    <message>
        <source>save the Category;</source>
        <translation>save the Category;</translation>
    </message>
    <message>
        <source>delete the Category; its Stores stay.</source>
        <translation>delete the Category; its Stores stay.</translation>
    </message>
    <message>
        <source>Shopping</source>
        <translation>Shopping</translation>
    </message>
    <message>
        <source>Reminder</source>
        <translation>Reminder</translation>
    </message>
    <message>
        <source>Shops</source>
        <translation>Shops</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Exit</translation>
    </message>
    <message>
        <source>About</source>
        <translation>About</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Message</source>
        <translation>Message</translation>
    </message>
    <message>
        <source>Update in Progress</source>
        <translation>Update in Progress</translation>
    </message>
    <message>
        <source>Requesting GPS coordinates. Please wait. You can cancel GPS requesting.</source>
        <translation>Requesting GPS coordinates. Please wait. You can cancel GPS requesting.</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Yes</translation>
    </message>
    <message>
        <source>No</source>
        <translation>No</translation>
    </message>
    <message>
        <source>Enable use of GPS</source>
        <translation>Enable use of GPS</translation>
    </message>
    <message>
        <source>GPS always active</source>
        <translation>GPS always active</translation>
    </message>
    <message>
        <source>AutoStart tracking</source>
        <translation>AutoStart tracking</translation>
    </message>
    <message>
        <source>Alarm Sound: </source>
        <translation>Alarm Sound: </translation>
    </message>
    <message>
        <source>AutoDetect</source>
        <translation>AutoDetect</translation>
    </message>
    <message>
        <source>English</source>
        <translation>English</translation>
    </message>
    <message>
        <source>Russian</source>
        <translation>Russian</translation>
    </message>
    <message>
        <source>GPS settings</source>
        <translation>GPS settings</translation>
    </message>
    <message>
        <source>Alarm settings</source>
        <translation>Alarm settings</translation>
    </message>
    <message>
        <source>Interface Language</source>
        <translation>Interface Language</translation>
    </message>
    <message>
        <source>Open Sound</source>
        <translation>Open Sound</translation>
    </message>
    <message>
        <source>Sound Files (*.wav *.mp3)</source>
        <translation>Sound Files (*.wav *.mp3)</translation>
    </message>
    <message>
        <source>Can&apos;t open database</source>
        <translation>Can&apos;t open database</translation>
    </message>
    <message>
        <source>(click to select)</source>
        <translation>(click to select)</translation>
    </message>
    <message>
        <source>(not selected)</source>
        <translation>(not selected)</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>Check</source>
        <translation>Check</translation>
    </message>
    <message>
        <source>Uncheck</source>
        <translation>Uncheck</translation>
    </message>
    <message>
        <source>No Shop List selected</source>
        <translation>No Shop List selected</translation>
    </message>
    <message>
        <source>Please select Shop List or create a New One</source>
        <translation>Please select Shop List or create a New One</translation>
    </message>
    <message>
        <source>New item</source>
        <translation>New item</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Less</source>
        <translation>Less</translation>
    </message>
    <message>
        <source>More</source>
        <translation>More</translation>
    </message>
    <message>
        <source>Amount</source>
        <translation>Amount</translation>
    </message>
    <message>
        <source>Deleting List Item</source>
        <translation>Deleting List Item</translation>
    </message>
    <message>
        <source>Are You really want to delete item &apos;%1&apos; ?</source>
        <translation>Are You really want to delete item &apos;%1&apos; ?</translation>
    </message>
    <message>
        <source>checked</source>
        <translation>checked</translation>
    </message>
    <message>
        <source>unchecked</source>
        <translation>unchecked</translation>
    </message>
    <message>
        <source>Select</source>
        <translation>Select</translation>
    </message>
    <message>
        <source>New list</source>
        <translation>New list</translation>
    </message>
    <message>
        <source>%1 m</source>
        <translation>%1 m</translation>
    </message>
    <message>
        <source>%1 km</source>
        <translation>%1 km</translation>
    </message>
    <message>
        <source>unknown</source>
        <translation>unknown</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>Reset</translation>
    </message>
    <message>
        <source>ShopList</source>
        <translation>ShopList</translation>
    </message>
    <message>
        <source>Store</source>
        <translation>Store</translation>
    </message>
    <message>
        <source>State</source>
        <translation>State</translation>
    </message>
    <message>
        <source>List Created</source>
        <translation>List Created</translation>
    </message>
    <message>
        <source>Shopping List created. But it is empty for now. Fill it with shopping Items.</source>
        <translation>Shopping List created. But it is empty for now. Fill it with shopping Items.</translation>
    </message>
    <message>
        <source>Deleting Shopping List</source>
        <translation>Deleting Shopping List</translation>
    </message>
    <message>
        <source>Are You really want to delete list named &apos;%1&apos; ?</source>
        <translation>Are You really want to delete list named &apos;%1&apos; ?</translation>
    </message>
    <message>
        <source>List</source>
        <translation>List</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>Edit</source>
        <translation>Edit</translation>
    </message>
    <message>
        <source>Goods</source>
        <translation>Goods</translation>
    </message>
    <message>
        <source>Lists</source>
        <translation>Lists</translation>
    </message>
    <message>
        <source>(unknown)</source>
        <translation>(unknown)</translation>
    </message>
    <message>
        <source>Empty</source>
        <translation>Empty</translation>
    </message>
    <message>
        <source>Active (unchecked)</source>
        <translation>Active (unchecked)</translation>
    </message>
    <message>
        <source>Active (partial checked)</source>
        <translation>Active (partial checked)</translation>
    </message>
    <message>
        <source>Finished (checked)</source>
        <translation>Finished (checked)</translation>
    </message>
    <message>
        <source>Not selected</source>
        <translation>Not selected</translation>
    </message>
    <message>
        <source>Please select one of the items in a list</source>
        <translation>Please select one of the items in a list</translation>
    </message>
    <message>
        <source>Name field is Empty</source>
        <translation>Name field is Empty</translation>
    </message>
    <message>
        <source>Please fill the Name field</source>
        <translation>Please fill the Name field</translation>
    </message>
    <message>
        <source>New category</source>
        <translation>New category</translation>
    </message>
    <message>
        <source>Category</source>
        <translation>Category</translation>
    </message>
    <message>
        <source>Deleting Category</source>
        <translation>Deleting Category</translation>
    </message>
    <message>
        <source>Are You really want to delete category &apos;%1&apos; ?</source>
        <translation>Are You really want to delete category &apos;%1&apos; ?</translation>
    </message>
    <message>
        <source>(set Coordinates)</source>
        <translation>(set Coordinates)</translation>
    </message>
    <message>
        <source>GPS</source>
        <translation>GPS</translation>
    </message>
    <message>
        <source>(GPS is not Available)</source>
        <translation>(GPS is not Available)</translation>
    </message>
    <message>
        <source>coords is set (edit...)</source>
        <translation>coords is set (edit...)</translation>
    </message>
    <message>
        <source>(enter GPS)</source>
        <translation>(enter GPS)</translation>
    </message>
    <message>
        <source>Deleting Store</source>
        <translation>Deleting Store</translation>
    </message>
    <message>
        <source>Are You really want to delete store named &apos;%1&apos; ?</source>
        <translation>Are You really want to delete store named &apos;%1&apos; ?</translation>
    </message>
    <message>
        <source>(empty)</source>
        <translation>(empty)</translation>
    </message>
    <message>
        <source>(not set)</source>
        <translation>(not set)</translation>
    </message>
    <message>
        <source>(GPS not active)</source>
        <translation>(GPS not active)</translation>
    </message>
    <message>
        <source>Distance</source>
        <translation>Distance</translation>
    </message>
    <message>
        <source>Edit Store</source>
        <translation>Edit Store</translation>
    </message>
    <message>
        <source>New</source>
        <translation>New</translation>
    </message>
    <message>
        <source>(no Coordinates set)</source>
        <translation>(no Coordinates set)</translation>
    </message>
    <message>
        <source>(GPS disabled)</source>
        <translation>(GPS disabled)</translation>
    </message>
    <message>
        <source>(calculating)</source>
        <translation>(calculating)</translation>
    </message>
    <message>
        <source>%1 meters</source>
        <translation>%1 meters</translation>
    </message>
    <message>
        <source>New store</source>
        <translation>New store</translation>
    </message>
    <message>
        <source>From GPS</source>
        <translation>From GPS</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Type</translation>
    </message>
    <message>
        <source>Map</source>
        <translation>Map</translation>
    </message>
    <message>
        <source>Set</source>
        <translation>Set</translation>
    </message>
    <message>
        <source>Getting coords from GPS</source>
        <translation>Getting coords from GPS</translation>
    </message>
    <message>
        <source>Get from GPS</source>
        <translation>Get from GPS</translation>
    </message>
    <message>
        <source>Lon:</source>
        <translation>Lon:</translation>
    </message>
    <message>
        <source>Lat:</source>
        <translation>Lat:</translation>
    </message>
    <message>
        <source>Latitude</source>
        <translation>Latitude</translation>
    </message>
    <message>
        <source>Longitude</source>
        <translation>Longitude</translation>
    </message>
    <message>
        <source>decimal degrees</source>
        <translation>decimal degrees</translation>
    </message>
    <message>
        <source>degrees</source>
        <translation>degrees</translation>
    </message>
    <message>
        <source>minutes</source>
        <translation>minutes</translation>
    </message>
    <message>
        <source>seconds</source>
        <translation>seconds</translation>
    </message>
    <message>
        <source>DD.DD°</source>
        <translation>DD.DD°</translation>
    </message>
    <message>
        <source>DD°MM&apos;SS&apos;&apos;</source>
        <translation>DD°MM&apos;SS&apos;&apos;</translation>
    </message>
    <message>
        <source>Coordinates is not Set</source>
        <translation>Coordinates is not Set</translation>
    </message>
    <message>
        <source>Current store Coordinates</source>
        <translation>Current store Coordinates</translation>
    </message>
    <message>
        <source>Coordinates are out of range</source>
        <translation>Coordinates are out of range</translation>
    </message>
    <message>
        <source>Latitude goes from -90 to 90 degrees, longitude from -180 to 180.</source>
        <translation>Latitude goes from -90 to 90 degrees, longitude from -180 to 180.</translation>
    </message>
    <message>
        <source>Coordinates is Empty</source>
        <translation>Coordinates is Empty</translation>
    </message>
    <message>
        <source>You can not save zero or empty coordinates. Press Cancel instead.</source>
        <translation>You can not save zero or empty coordinates. Press Cancel instead.</translation>
    </message>
    <message>
        <source>Requesting NEW store Coordinates from GPS...</source>
        <translation>Requesting NEW store Coordinates from GPS...</translation>
    </message>
    <message>
        <source>Current store Coordinates UPDATED</source>
        <translation>Current store Coordinates UPDATED</translation>
    </message>
    <message>
        <source>coords is set (update...)</source>
        <translation>coords is set (update...)</translation>
    </message>
    <message>
        <source>You have a Shopping List for this Store:</source>
        <translation>You have a Shopping List for this Store:</translation>
    </message>
    <message>
        <source>Next Store</source>
        <translation>Next Store</translation>
    </message>
    <message>
        <source>Stop tracking</source>
        <translation>Stop tracking</translation>
    </message>
    <message>
        <source>Start Shopping</source>
        <translation>Start Shopping</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Stop</translation>
    </message>
    <message>
        <source>View tracked</source>
        <translation>View tracked</translation>
    </message>
    <message>
        <source>All Stores / Lists</source>
        <translation>All Stores / Lists</translation>
    </message>
    <message>
        <source>By Category</source>
        <translation>By Category</translation>
    </message>
    <message>
        <source>By Store</source>
        <translation>By Store</translation>
    </message>
    <message>
        <source>No GPS available</source>
        <translation>No GPS available</translation>
    </message>
    <message>
        <source>GPS tracking can not be started, cause no GPS available on this device.</source>
        <translation>GPS tracking can not be started, cause no GPS available on this device.</translation>
    </message>
    <message>
        <source>GPS is not Enabled</source>
        <translation>GPS is not Enabled</translation>
    </message>
    <message>
        <source>GPS tracking can not be started, cause GPS is Diasabled.  You can enable GPS usage in the Option at the Main page.</source>
        <translation>GPS tracking can not be started, cause GPS is Diasabled.  You can enable GPS usage in the Option at the Main page.</translation>
    </message>
    <message>
        <source>Tracking Warning</source>
        <translation>Tracking Warning</translation>
    </message>
    <message>
        <source>There are no stores matching selected criteria with active shopping lists.</source>
        <translation>There are no stores matching selected criteria with active shopping lists.</translation>
    </message>
    <message>
        <source>Store: %1</source>
        <translation>Store: %1</translation>
    </message>
    <message>
        <source>By category: %1</source>
        <translation>By category: %1</translation>
    </message>
    <message>
        <source>Goto Store</source>
        <translation>Goto Store</translation>
    </message>
    <message>
        <source>Goto Current GPS</source>
        <translation>Goto Current GPS</translation>
    </message>
    <message>
        <source>Set Coords</source>
        <translation>Set Coords</translation>
    </message>
    <message>
        <source>Center by GPS</source>
        <translation>Center by GPS</translation>
    </message>
    <message>
        <source>AutoStart tracking - tracking of all Stores begins when the App starts, and when You save the Options.</source>
        <translation>AutoStart tracking - tracking of all Stores begins when the App starts, and when You save the Options.</translation>
    </message>
    <message>
        <source>back to the Main Page, tracking goes on.</source>
        <translation>back to the Main Page, tracking goes on.</translation>
    </message>
    <message>
        <source>check the chosen item;</source>
        <translation>check the chosen item;</translation>
    </message>
    <message>
        <source>uncheck the chosen item;</source>
        <translation>uncheck the chosen item;</translation>
    </message>
    <message>
        <source>Press the button with the Store to bind the List to a Store. Reset makes all goods of the List unchecked again, at once.</source>
        <translation>Press the button with the Store to bind the List to a Store. Reset makes all goods of the List unchecked again, at once.</translation>
    </message>
    <message>
        <source>What is enetered here is saved with the whole List. Minus and plus change the amount.</source>
        <translation>What is enetered here is saved with the whole List. Minus and plus change the amount.</translation>
    </message>
    <message>
        <source>type them, in degrees or in degrees, minutes and seconds; N/S and E/W change the hemisphere;</source>
        <translation>type them, in degrees or in degrees, minutes and seconds; N/S and E/W change the hemisphere;</translation>
    </message>
    <message>
        <source>No position yet. Is location switched on, and the sky in sight?</source>
        <translation>No position yet. Is location switched on, and the sky in sight?</translation>
    </message>
    <message>
        <source>Location is switched off, or not allowed for this program. Allow it in the settings of the system.</source>
        <translation>Location is switched off, or not allowed for this program. Allow it in the settings of the system.</translation>
    </message>
    <message>
        <source>Your position is known to within %1 km only.</source>
        <translation>Your position is known to within %1 km only.</translation>
    </message>
    <message>
        <source>This number does not fit. Choose the place on the map, or get it from the GPS.</source>
        <translation>This number does not fit. Choose the place on the map, or get it from the GPS.</translation>
    </message>
    <message>
        <source>Another program is using the lists. Nothing is saved until it has finished.</source>
        <translation>Another program is using the lists. Nothing is saved until it has finished.</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Home</translation>
    </message>
    <message>
        <source>Music</source>
        <translation>Music</translation>
    </message>
    <message>
        <source>The options could not be saved.</source>
        <translation>The options could not be saved.</translation>
    </message>
    <message>
        <source>Tap it again to edit it</source>
        <translation>Tap it again to edit it</translation>
    </message>
    <message>
        <source>Tap it again to choose it</source>
        <translation>Tap it again to choose it</translation>
    </message>
    <message>
        <source>Tap it again to check it off</source>
        <translation>Tap it again to check it off</translation>
    </message>
    <message>
        <source>Tap it again to uncheck it</source>
        <translation>Tap it again to uncheck it</translation>
    </message>
    <message>
        <source>Tracking pauses while the device sleeps.</source>
        <translation>Tracking pauses while the device sleeps.</translation>
    </message>
    <message>
        <source>Reminds of shopping lists on the way</source>
        <translation>Reminds of shopping lists on the way</translation>
    </message>
    <message>
        <source>Tracking is running</source>
        <translation>Tracking is running</translation>
    </message>
    <message>
        <source>Trolleo rings when a Store with an open List is near.</source>
        <translation>Trolleo rings when a Store with an open List is near.</translation>
    </message>
    <message>
        <source>Open Trolleo</source>
        <translation>Open Trolleo</translation>
    </message>
    <message>
        <source>While the Map shows, distances stay as they were.</source>
        <translation>While the Map shows, distances stay as they were.</translation>
    </message>
    <message>
        <source>No lists yet. Press + to make one.</source>
        <translation>No lists yet. Press + to make one.</translation>
    </message>
    <message>
        <source>No goods yet. Press + to add one.</source>
        <translation>No goods yet. Press + to add one.</translation>
    </message>
    <message>
        <source>No stores yet. Press + to add one.</source>
        <translation>No stores yet. Press + to add one.</translation>
    </message>
    <message>
        <source>No categories yet. Press + to add one.</source>
        <translation>No categories yet. Press + to add one.</translation>
    </message>
    <message>
        <source>Nothing to buy on this list.</source>
        <translation>Nothing to buy on this list.</translation>
    </message>
    <message>
        <source>No stores to show.</source>
        <translation>No stores to show.</translation>
    </message>
</context>
</TS>
