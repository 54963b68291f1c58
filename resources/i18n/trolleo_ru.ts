<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ru_RU">
<context>
    <name>ShopWindow</name>
    <message>
        <source>Help</source>
        <translation>Справка</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Назад</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Сохранить</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Удалить</translation>
    </message>
    <message>
        <source>Main Page</source>
        <translation>Главная страница</translation>
    </message>
    <message>
        <source>You are on a Main Page of the App.</source>
        <translation>Это главная страница программы.</translation>
    </message>
    <message>
        <source>Main buttons here:</source>
        <translation>Основные кнопки:</translation>
    </message>
    <message>
        <source>Shopping page, shopping Lists management;</source>
        <translation>покупки и списки покупок;</translation>
    </message>
    <message>
        <source>Reminders over GPS tracking of closest to You Stores;</source>
        <translation>напоминания о ближайших магазинах по GPS;</translation>
    </message>
    <message>
        <source>Stores management page.</source>
        <translation>магазины.</translation>
    </message>
    <message>
        <source>Toolbar buttons:</source>
        <translation>Кнопки панели:</translation>
    </message>
    <message>
        <source>Options page;</source>
        <translation>настройки;</translation>
    </message>
    <message>
        <source>this page;</source>
        <translation>эта справка;</translation>
    </message>
    <message>
        <source>About page.</source>
        <translation>о программе.</translation>
    </message>
    <message>
        <source>About Trolleo</source>
        <translation>О программе Trolleo</translation>
    </message>
    <message>
        <source>This program is intended to help a User not forget about all the planned shoppings and make shopping process itself more handy.</source>
        <translation>Эта программа помогает не забыть о запланированных покупках и делает сами покупки удобнее.</translation>
    </message>
    <message>
        <source>Program version: </source>
        <translation>Версия программы: </translation>
    </message>
    <message>
        <source>Developed with: </source>
        <translation>Средства разработки: </translation>
    </message>
    <message>
        <source>Send reports to: </source>
        <translation>Сообщения об ошибках: </translation>
    </message>
    <message>
        <source>This build runs on Qt %1 and is free software under the MIT licence. Map data: %2.</source>
        <translation>Эта сборка работает на Qt %1. Программа свободная, распространяется по лицензии MIT. Данные карты: %2.</translation>
    </message>
    <message>
        <source>Options</source>
        <translation>Настройки</translation>
    </message>
    <message>
        <source>Here You can Enable/Disable GPS, change AutoStart settings, select Sound and Language</source>
        <translation>Здесь можно включить и выключить GPS, настроить автозапуск, выбрать звук и язык.</translation>
    </message>
    <message>
        <source>GPS settings:</source>
        <translation>Настройки GPS:</translation>
    </message>
    <message>
        <source>Enable use of GPS - without it the App never asks for Your position;</source>
        <translation>Использовать GPS — без этого программа не узнаёт, где вы находитесь;</translation>
    </message>
    <message>
        <source>GPS always active - GPS works from the start of the App, so a position is found sooner, but the battery lasts shorter;</source>
        <translation>GPS всегда включён — GPS работает с самого запуска программы: место определяется раньше, но батарея садится быстрее;</translation>
    </message>
    <message>
        <source>Alarm settings:</source>
        <translation>Настройки сигнала:</translation>
    </message>
    <message>
        <source>Press the button with the file name to choose another sound (wav or mp3). The defualt one comes with the App.</source>
        <translation>Нажмите кнопку с именем файла, чтобы выбрать другой звук (wav или mp3). Стандартный звук поставляется с программой.</translation>
    </message>
    <message>
        <source>Interface languge:</source>
        <translation>Язык интерфейса:</translation>
    </message>
    <message>
        <source>AutoDetect takes the language of Your device. Selected translation will be loaded right after You exit the Options.</source>
        <translation>«Автоматически» — язык вашего устройства. Выбранный перевод загрузится сразу после выхода из настроек.</translation>
    </message>
    <message>
        <source>back to the Main Page, nothing is saved.</source>
        <translation>назад на главную страницу без сохранения.</translation>
    </message>
    <message>
        <source>Buttons at the bottom:</source>
        <translation>Кнопки внизу:</translation>
    </message>
    <message>
        <source>save the Options;</source>
        <translation>сохранить настройки;</translation>
    </message>
    <message>
        <source>exit without saving.</source>
        <translation>выйти без сохранения.</translation>
    </message>
    <message>
        <source>Reminders (GPS tracking)</source>
        <translation>Напоминания (слежение по GPS)</translation>
    </message>
    <message>
        <source>You are on a Reminders page.</source>
        <translation>Это страница напоминаний.</translation>
    </message>
    <message>
        <source>While tracking works, the App follows Your position. When You are 250 meters or less from a Store with an active Shopping List, it rings.</source>
        <translation>Пока идёт слежение, программа отслеживает ваше положение. Когда до магазина с активным списком покупок остаётся 250 метров или меньше, раздаётся сигнал.</translation>
    </message>
    <message>
        <source>What to track:</source>
        <translation>За чем следить:</translation>
    </message>
    <message>
        <source>All Stores / Lists - every Store that has coordinates and an active List;</source>
        <translation>Все магазины / списки — все магазины, у которых есть координаты и активный список;</translation>
    </message>
    <message>
        <source>By Category - Stores of one Category, press the button below to choose it;</source>
        <translation>По категории — магазины одной категории; она выбирается кнопкой ниже;</translation>
    </message>
    <message>
        <source>By Store - one Store, press the button below to choose it.</source>
        <translation>По магазину — один магазин; он выбирается кнопкой ниже.</translation>
    </message>
    <message>
        <source>Main buttons:</source>
        <translation>Основные кнопки:</translation>
    </message>
    <message>
        <source>Stores that match the critaria sortde by distance;</source>
        <translation>подходящие магазины, ближайшие в начале;</translation>
    </message>
    <message>
        <source>stop tracking;</source>
        <translation>остановить слежение;</translation>
    </message>
    <message>
        <source>start tracking.</source>
        <translation>начать слежение.</translation>
    </message>
    <message>
        <source>Tracking</source>
        <translation>Слежение</translation>
    </message>
    <message>
        <source>Here You can vew tracked Stores, sorted by distance from current location. </source>
        <translation>Здесь показаны отслеживаемые магазины, ближайшие в начале. </translation>
    </message>
    <message>
        <source>List updates every 3 seconds</source>
        <translation>Список обновляется каждые 3 секунды</translation>
    </message>
    <message>
        <source>List of the Stores, distances are in meters;</source>
        <translation>список магазинов и расстояния до них;</translation>
    </message>
    <message>
        <source>Map; this view is available only when GPS is active. Hold a finger on it to go to the closest Store or to Your position;</source>
        <translation>карта (доступна, только когда работает GPS). Подержите на ней палец, чтобы перейти к ближайшему магазину или к своему местоположению;</translation>
    </message>
    <message>
        <source>back to the Reminders page;</source>
        <translation>назад на страницу напоминаний;</translation>
    </message>
    <message>
        <source>this page.</source>
        <translation>эта справка.</translation>
    </message>
    <message>
        <source>back to the Reminders page.</source>
        <translation>назад на страницу напоминаний.</translation>
    </message>
    <message>
        <source>Do Shopping</source>
        <translation>Покупки по списку</translation>
    </message>
    <message>
        <source>Here You can check/uncheck bought goods. When You check one of the items it will be moved below last unchecked item. Also remember that even one unchecked item makes the list to be still active - i.e. this list still can be used in a reminders.</source>
        <translation>Здесь отмечаются купленные товары. Отмеченный товар перемещается ниже последнего неотмеченного. Помните: пока остаётся хотя бы один неотмеченный товар, список активен и о нём могут приходить напоминания.</translation>
    </message>
    <message>
        <source>List usage:</source>
        <translation>Работа со списком:</translation>
    </message>
    <message>
        <source>Tap an item twice to check or uncheck it. It is saved at once.</source>
        <translation>Коснитесь товара дважды, чтобы отметить его или снять отметку. Изменение сохраняется сразу.</translation>
    </message>
    <message>
        <source>finish shopping;</source>
        <translation>закончить покупки;</translation>
    </message>
    <message>
        <source>finish shopping.</source>
        <translation>закончить покупки.</translation>
    </message>
    <message>
        <source>Shoppings</source>
        <translation>Покупки</translation>
    </message>
    <message>
        <source>You are on a Shopping Page.</source>
        <translation>Это страница покупок.</translation>
    </message>
    <message>
        <source>It shows the active Shopping List, its Store and its state.</source>
        <translation>Здесь показаны текущий список покупок, его магазин и состояние.</translation>
    </message>
    <message>
        <source>back to the Main Page.</source>
        <translation>назад на главную страницу.</translation>
    </message>
    <message>
        <source>start shopping with the active List;</source>
        <translation>начать покупки по текущему списку;</translation>
    </message>
    <message>
        <source>name, Store and state of the List;</source>
        <translation>название, магазин и состояние списка;</translation>
    </message>
    <message>
        <source>goods of the List;</source>
        <translation>товары списка;</translation>
    </message>
    <message>
        <source>select another List, or add a New One.</source>
        <translation>выбрать другой список или добавить новый.</translation>
    </message>
    <message>
        <source>Shopping Lists</source>
        <translation>Списки покупок</translation>
    </message>
    <message>
        <source>You are on a Shopping Lists Page.</source>
        <translation>Это страница списков покупок.</translation>
    </message>
    <message>
        <source>Tap a List to choose it, tap it twice to make it the active one. Beside its name stands the Store it is bouded to.</source>
        <translation>Коснитесь списка, чтобы выделить его, или дважды, чтобы сделать его текущим. Рядом с названием указан магазин, к которому он привязан.</translation>
    </message>
    <message>
        <source>return to previuos page;</source>
        <translation>вернуться на предыдущую страницу;</translation>
    </message>
    <message>
        <source>add a New List;</source>
        <translation>добавить новый список;</translation>
    </message>
    <message>
        <source>make the chosen List the active one.</source>
        <translation>сделать выделенный список текущим.</translation>
    </message>
    <message>
        <source>Shopping List Edit</source>
        <translation>Изменение списка</translation>
    </message>
    <message>
        <source>You are on a Shopping List Edit Page.</source>
        <translation>Это страница изменения списка покупок.</translation>
    </message>
    <message>
        <source>Shopping List caption can not be empty.</source>
        <translation>Название списка не может быть пустым.</translation>
    </message>
    <message>
        <source>return to previuos page, nothing is saved.</source>
        <translation>вернуться на предыдущую страницу без сохранения.</translation>
    </message>
    <message>
        <source>save the List;</source>
        <translation>сохранить список;</translation>
    </message>
    <message>
        <source>delete the List with its goods.</source>
        <translation>удалить список вместе с товарами.</translation>
    </message>
    <message>
        <source>Items List</source>
        <translation>Товары</translation>
    </message>
    <message>
        <source>You are on an Items List Page.</source>
        <translation>Это страница товаров списка.</translation>
    </message>
    <message>
        <source>Tap an item twice to edit it.</source>
        <translation>Коснитесь товара дважды, чтобы изменить его.</translation>
    </message>
    <message>
        <source>return to previuos page, nothing is saved;</source>
        <translation>вернуться на предыдущую страницу без сохранения;</translation>
    </message>
    <message>
        <source>add a New item;</source>
        <translation>добавить новый товар;</translation>
    </message>
    <message>
        <source>save all the items.</source>
        <translation>сохранить все товары.</translation>
    </message>
    <message>
        <source>Item Add/Edit</source>
        <translation>Товар</translation>
    </message>
    <message>
        <source>Here You can edit item&apos;s parameters. Or You can delete current Item from the List. </source>
        <translation>Здесь можно изменить товар или удалить его из списка. </translation>
    </message>
    <message>
        <source>return to previuos page, nothing is changed.</source>
        <translation>вернуться на предыдущую страницу без изменений.</translation>
    </message>
    <message>
        <source>put the item into the List;</source>
        <translation>поместить товар в список;</translation>
    </message>
    <message>
        <source>delete the item.</source>
        <translation>удалить товар.</translation>
    </message>
    <message>
        <source>Stores</source>
        <translation>Магазины</translation>
    </message>
    <message>
        <source>You are on a Stores Page.</source>
        <translation>Это страница магазинов.</translation>
    </message>
    <message>
        <source>It shows the current Store, its Category and how far it is.</source>
        <translation>Здесь показаны текущий магазин, его категория и расстояние до него.</translation>
    </message>
    <message>
        <source>Buttons at the bottom bottom:</source>
        <translation>Кнопки в самом низу:</translation>
    </message>
    <message>
        <source>edit the current Store;</source>
        <translation>изменить текущий магазин;</translation>
    </message>
    <message>
        <source>select another Store;</source>
        <translation>выбрать другой магазин;</translation>
    </message>
    <message>
        <source>add a New Store.</source>
        <translation>добавить новый магазин.</translation>
    </message>
    <message>
        <source>Stores List</source>
        <translation>Список магазинов</translation>
    </message>
    <message>
        <source>Here You can select Store, or add a New One.</source>
        <translation>Здесь можно выбрать магазин или добавить новый.</translation>
    </message>
    <message>
        <source>Tap a Store to choose it, tap it twice to select it at once.</source>
        <translation>Коснитесь магазина, чтобы выделить его, или дважды, чтобы сразу выбрать.</translation>
    </message>
    <message>
        <source>return to previuos page, nothing is selected;</source>
        <translation>вернуться на предыдущую страницу, ничего не выбирая;</translation>
    </message>
    <message>
        <source>add a New Store;</source>
        <translation>добавить новый магазин;</translation>
    </message>
    <message>
        <source>select the chosen Store.</source>
        <translation>выбрать выделенный магазин.</translation>
    </message>
    <message>
        <source>Store Add/Edit</source>
        <translation>Магазин</translation>
    </message>
    <message>
        <source>Here You can edit selected Store properties.</source>
        <translation>Здесь можно изменить выбранный магазин.</translation>
    </message>
    <message>
        <source>Press the button with the Category to select it, and the one with the GPS to set coordinates. A Store without coordinates can not remind of itself.</source>
        <translation>Кнопка в строке «Категория» выбирает категорию, в строке «GPS» — задаёт координаты. О магазине без координат напоминаний не будет.</translation>
    </message>
    <message>
        <source>save the Store;</source>
        <translation>сохранить магазин;</translation>
    </message>
    <message>
        <source>delete the Store; its Lists stay.</source>
        <translation>удалить магазин; его списки останутся.</translation>
    </message>
    <message>
        <source>Coords input</source>
        <translation>Ввод координат</translation>
    </message>
    <message>
        <source>Here You can set GPS coordinates for store. There are 3 ways:</source>
        <translation>Здесь задаются координаты магазина. Есть 3 способа:</translation>
    </message>
    <message>
        <source>stand in the Store and take them from GPS;</source>
        <translation>определить их по GPS, находясь в магазине;</translation>
    </message>
    <message>
        <source>hold a finger on the Map and press &quot;Set Coords&quot;.</source>
        <translation>подержать палец на карте и нажать «Задать координаты».</translation>
    </message>
    <message>
        <source>return to previuos page.</source>
        <translation>вернуться на предыдущую страницу.</translation>
    </message>
    <message>
        <source>ask GPS for the position;</source>
        <translation>определить координаты по GPS;</translation>
    </message>
    <message>
        <source>take the enetered coordinates. They are saved with the Store.</source>
        <translation>принять введённые координаты. Они сохраняются вместе с магазином.</translation>
    </message>
    <message>
        <source>Category List</source>
        <translation>Категории</translation>
    </message>
    <message>
        <source>Here You can manage Categories (select one or Add a New one).</source>
        <translation>Здесь можно выбрать категорию или добавить новую.</translation>
    </message>
    <message>
        <source>Tap a Category to choose it, tap it twice to edit it.</source>
        <translation>Коснитесь категории, чтобы выделить её, или дважды, чтобы изменить.</translation>
    </message>
    <message>
        <source>add a New Category;</source>
        <translation>добавить новую категорию;</translation>
    </message>
    <message>
        <source>select the chosen Category.</source>
        <translation>выбрать выделенную категорию.</translation>
    </message>
    <message>
        <source>Add/Edit Category</source>
        <translation>Категория</translation>
    </message>
    <message>
        <source>Here You can edit Category properties. Or You can Delete current category.</source>
        <translation>Здесь можно изменить категорию или удалить её.</translation>
    </message>
    <message>
        <source>save the Category;</source>
        <translation>сохранить категорию;</translation>
    </message>
    <message>
        <source>delete the Category; its Stores stay.</source>
        <translation>удалить категорию; её магазины останутся.</translation>
    </message>
    <message>
        <source>Shopping</source>
        <translation>Покупки</translation>
    </message>
    <message>
        <source>Reminder</source>
        <translation>Напоминания</translation>
    </message>
    <message>
        <source>Shops</source>
        <translation>Магазины</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Выход</translation>
    </message>
    <message>
        <source>About</source>
        <translation>О программе</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Message</source>
        <translation>Сообщение</translation>
    </message>
    <message>
        <source>Update in Progress</source>
        <translation>Определение координат</translation>
    </message>
    <message>
        <source>Requesting GPS coordinates. Please wait. You can cancel GPS requesting.</source>
        <translation>Запрашиваются координаты GPS. Пожалуйста, подождите. Запрос можно отменить.</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Да</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Нет</translation>
    </message>
    <message>
        <source>Enable use of GPS</source>
        <translation>Использовать GPS</translation>
    </message>
    <message>
        <source>GPS always active</source>
        <translation>GPS всегда включён</translation>
    </message>
    <message>
        <source>AutoStart tracking</source>
        <translation>Автозапуск слежения</translation>
    </message>
    <message>
        <source>Alarm Sound: </source>
        <translation>Звук сигнала: </translation>
    </message>
    <message>
        <source>AutoDetect</source>
        <translation>Автоматически</translation>
    </message>
    <message>
        <source>English</source>
        <translation>Английский</translation>
    </message>
    <message>
        <source>Russian</source>
        <translation>Русский</translation>
    </message>
    <message>
        <source>GPS settings</source>
        <translation>Настройки GPS</translation>
    </message>
    <message>
        <source>Alarm settings</source>
        <translation>Настройки сигнала</translation>
    </message>
    <message>
        <source>Interface Language</source>
        <translation>Язык интерфейса</translation>
    </message>
    <message>
        <source>Open Sound</source>
        <translation>Выбор звука</translation>
    </message>
    <message>
        <source>Sound Files (*.wav *.mp3)</source>
        <translation>Звуковые файлы (*.wav *.mp3)</translation>
    </message>
    <message>
        <source>Can&apos;t open database</source>
        <translation>Не удалось открыть базу данных</translation>
    </message>
    <message>
        <source>(click to select)</source>
        <translation>(выберите)</translation>
    </message>
    <message>
        <source>(not selected)</source>
        <translation>(не выбрано)</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Отмена</translation>
    </message>
    <message>
        <source>Check</source>
        <translation>Отметить</translation>
    </message>
    <message>
        <source>Uncheck</source>
        <translation>Снять отметку</translation>
    </message>
    <message>
        <source>No Shop List selected</source>
        <translation>Список не выбран</translation>
    </message>
    <message>
        <source>Please select Shop List or create a New One</source>
        <translation>Выберите список покупок или создайте новый</translation>
    </message>
    <message>
        <source>New item</source>
        <translation>Новый товар</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Название</translation>
    </message>
    <message>
        <source>Less</source>
        <translation>Меньше</translation>
    </message>
    <message>
        <source>More</source>
        <translation>Больше</translation>
    </message>
    <message>
        <source>Amount</source>
        <translation>Кол-во</translation>
    </message>
    <message>
        <source>Deleting List Item</source>
        <translation>Удаление товара</translation>
    </message>
    <message>
        <source>Are You really want to delete item &apos;%1&apos; ?</source>
        <translation>Удалить товар «%1»?</translation>
    </message>
    <message>
        <source>checked</source>
        <translation>отмечен</translation>
    </message>
    <message>
        <source>unchecked</source>
        <translation>не отмечен</translation>
    </message>
    <message>
        <source>Select</source>
        <translation>Выбрать</translation>
    </message>
    <message>
        <source>New list</source>
        <translation>Новый список</translation>
    </message>
    <message>
        <source>%1 m</source>
        <translation>%1 м</translation>
    </message>
    <message>
        <source>%1 km</source>
        <translation>%1 км</translation>
    </message>
    <message>
        <source>unknown</source>
        <translation>неизвестно</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>Сброс</translation>
    </message>
    <message>
        <source>ShopList</source>
        <translation>Список</translation>
    </message>
    <message>
        <source>Store</source>
        <translation>Магазин</translation>
    </message>
    <message>
        <source>State</source>
        <translation>Состояние</translation>
    </message>
    <message>
        <source>List Created</source>
        <translation>Список создан</translation>
    </message>
    <message>
        <source>Shopping List created. But it is empty for now. Fill it with shopping Items.</source>
        <translation>Список покупок создан, но пока пуст. Добавьте в него товары.</translation>
    </message>
    <message>
        <source>Deleting Shopping List</source>
        <translation>Удаление списка</translation>
    </message>
    <message>
        <source>Are You really want to delete list named &apos;%1&apos; ?</source>
        <translation>Удалить список «%1»?</translation>
    </message>
    <message>
        <source>List</source>
        <translation>Список</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Начать</translation>
    </message>
    <message>
        <source>Edit</source>
        <translation>Изменить</translation>
    </message>
    <message>
        <source>Goods</source>
        <translation>Товары</translation>
    </message>
    <message>
        <source>Lists</source>
        <translation>Списки</translation>
    </message>
    <message>
        <source>(unknown)</source>
        <translation>(неизвестен)</translation>
    </message>
    <message>
        <source>Empty</source>
        <translation>Пуст</translation>
    </message>
    <message>
        <source>Active (unchecked)</source>
        <translation>Активен (нет отметок)</translation>
    </message>
    <message>
        <source>Active (partial checked)</source>
        <translation>Активен (есть отметки)</translation>
    </message>
    <message>
        <source>Finished (checked)</source>
        <translation>Завершён (всё отмечено)</translation>
    </message>
    <message>
        <source>Not selected</source>
        <translation>Не выбрано</translation>
    </message>
    <message>
        <source>Please select one of the items in a list</source>
        <translation>Выберите что-нибудь из списка</translation>
    </message>
    <message>
        <source>Name field is Empty</source>
        <translation>Название не указано</translation>
    </message>
    <message>
        <source>Please fill the Name field</source>
        <translation>Введите название</translation>
    </message>
    <message>
        <source>New category</source>
        <translation>Новая категория</translation>
    </message>
    <message>
        <source>Category</source>
        <translation>Категория</translation>
    </message>
    <message>
        <source>Deleting Category</source>
        <translation>Удаление категории</translation>
    </message>
    <message>
        <source>Are You really want to delete category &apos;%1&apos; ?</source>
        <translation>Удалить категорию «%1»?</translation>
    </message>
    <message>
        <source>(set Coordinates)</source>
        <translation>(задать)</translation>
    </message>
    <message>
        <source>GPS</source>
        <translation>GPS</translation>
    </message>
    <message>
        <source>(GPS is not Available)</source>
        <translation>(GPS недоступен)</translation>
    </message>
    <message>
        <source>coords is set (edit...)</source>
        <translation>заданы (изменить)</translation>
    </message>
    <message>
        <source>(enter GPS)</source>
        <translation>(ввести)</translation>
    </message>
    <message>
        <source>Deleting Store</source>
        <translation>Удаление магазина</translation>
    </message>
    <message>
        <source>Are You really want to delete store named &apos;%1&apos; ?</source>
        <translation>Удалить магазин «%1»?</translation>
    </message>
    <message>
        <source>(empty)</source>
        <translation>(пусто)</translation>
    </message>
    <message>
        <source>(not set)</source>
        <translation>(не задана)</translation>
    </message>
    <message>
        <source>(GPS not active)</source>
        <translation>(GPS не работает)</translation>
    </message>
    <message>
        <source>Distance</source>
        <translation>Расстояние</translation>
    </message>
    <message>
        <source>Edit Store</source>
        <translation>Изменить</translation>
    </message>
    <message>
        <source>New</source>
        <translation>Новый</translation>
    </message>
    <message>
        <source>(no Coordinates set)</source>
        <translation>(координаты не заданы)</translation>
    </message>
    <message>
        <source>(GPS disabled)</source>
        <translation>(GPS выключен)</translation>
    </message>
    <message>
        <source>(calculating)</source>
        <translation>(определяется)</translation>
    </message>
    <message>
        <source>%1 meters</source>
        <translation>%1 м</translation>
    </message>
    <message>
        <source>New store</source>
        <translation>Новый магазин</translation>
    </message>
    <message>
        <source>From GPS</source>
        <translation>По GPS</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Ввод</translation>
    </message>
    <message>
        <source>Map</source>
        <translation>Карта</translation>
    </message>
    <message>
        <source>Set</source>
        <translation>Задать</translation>
    </message>
    <message>
        <source>Getting coords from GPS</source>
        <translation>Координаты по GPS</translation>
    </message>
    <message>
        <source>Get from GPS</source>
        <translation>Определить по GPS</translation>
    </message>
    <message>
        <source>Lon:</source>
        <translation>Долгота:</translation>
    </message>
    <message>
        <source>Lat:</source>
        <translation>Широта:</translation>
    </message>
    <message>
        <source>Latitude</source>
        <translation>Широта</translation>
    </message>
    <message>
        <source>Longitude</source>
        <translation>Долгота</translation>
    </message>
    <message>
        <source>decimal degrees</source>
        <translation>десятичные градусы</translation>
    </message>
    <message>
        <source>degrees</source>
        <translation>градусы</translation>
    </message>
    <message>
        <source>minutes</source>
        <translation>минуты</translation>
    </message>
    <message>
        <source>seconds</source>
        <translation>секунды</translation>
    </message>
    <message>
        <source>DD.DD°</source>
        <translation>ГГ.ГГ°</translation>
    </message>
    <message>
        <source>DD°MM&apos;SS&apos;&apos;</source>
        <translation>ГГ°ММ&apos;СС&apos;&apos;</translation>
    </message>
    <message>
        <source>Coordinates is not Set</source>
        <translation>Координаты не заданы</translation>
    </message>
    <message>
        <source>Current store Coordinates</source>
        <translation>Текущие координаты магазина</translation>
    </message>
    <message>
        <source>Coordinates are out of range</source>
        <translation>Недопустимые координаты</translation>
    </message>
    <message>
        <source>Latitude goes from -90 to 90 degrees, longitude from -180 to 180.</source>
        <translation>Широта может быть от −90 до 90 градусов, долгота — от −180 до 180.</translation>
    </message>
    <message>
        <source>Coordinates is Empty</source>
        <translation>Координаты не указаны</translation>
    </message>
    <message>
        <source>You can not save zero or empty coordinates. Press Cancel instead.</source>
        <translation>Нулевые или пустые координаты сохранить нельзя. Чтобы выйти без них, нажмите «Назад».</translation>
    </message>
    <message>
        <source>Requesting NEW store Coordinates from GPS...</source>
        <translation>Запрашиваются НОВЫЕ координаты магазина по GPS...</translation>
    </message>
    <message>
        <source>Current store Coordinates UPDATED</source>
        <translation>Координаты магазина ОБНОВЛЕНЫ</translation>
    </message>
    <message>
        <source>coords is set (update...)</source>
        <translation>заданы (обновить)</translation>
    </message>
    <message>
        <source>You have a Shopping List for this Store:</source>
        <translation>У вас есть список покупок для этого магазина:</translation>
    </message>
    <message>
        <source>Next Store</source>
        <translation>Следующий магазин</translation>
    </message>
    <message>
        <source>Stop tracking</source>
        <translation>Остановить слежение</translation>
    </message>
    <message>
        <source>Start Shopping</source>
        <translation>Начать покупки</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Остановить</translation>
    </message>
    <message>
        <source>View tracked</source>
        <translation>Просмотр</translation>
    </message>
    <message>
        <source>All Stores / Lists</source>
        <translation>Все магазины / списки</translation>
    </message>
    <message>
        <source>By Category</source>
        <translation>По категории</translation>
    </message>
    <message>
        <source>By Store</source>
        <translation>По магазину</translation>
    </message>
    <message>
        <source>No GPS available</source>
        <translation>GPS недоступен</translation>
    </message>
    <message>
        <source>GPS tracking can not be started, cause no GPS available on this device.</source>
        <translation>Слежение не запущено: на этом устройстве нет GPS.</translation>
    </message>
    <message>
        <source>GPS is not Enabled</source>
        <translation>GPS выключен</translation>
    </message>
    <message>
        <source>GPS tracking can not be started, cause GPS is Diasabled.  You can enable GPS usage in the Option at the Main page.</source>
        <translation>Слежение не запущено: GPS выключен. Включить его можно в настройках на главной странице.</translation>
    </message>
    <message>
        <source>Tracking Warning</source>
        <translation>Слежение не начато</translation>
    </message>
    <message>
        <source>There are no stores matching selected criteria with active shopping lists.</source>
        <translation>Нет подходящих магазинов с активными списками покупок.</translation>
    </message>
    <message>
        <source>Store: %1</source>
        <translation>Магазин: %1</translation>
    </message>
    <message>
        <source>By category: %1</source>
        <translation>По категории: %1</translation>
    </message>
    <message>
        <source>Goto Store</source>
        <translation>К магазину</translation>
    </message>
    <message>
        <source>Goto Current GPS</source>
        <translation>Моё местоположение</translation>
    </message>
    <message>
        <source>Set Coords</source>
        <translation>Задать координаты</translation>
    </message>
    <message>
        <source>Center by GPS</source>
        <translation>Моё местоположение</translation>
    </message>
    <message>
        <source>AutoStart tracking - tracking of all Stores begins when the App starts, and when You save the Options.</source>
        <translation>Автозапуск слежения — слежение за всеми магазинами начинается при запуске программы и при сохранении настроек.</translation>
    </message>
    <message>
        <source>back to the Main Page, tracking goes on.</source>
        <translation>назад на главную страницу, слежение продолжается.</translation>
    </message>
    <message>
        <source>check the chosen item;</source>
        <translation>отметить выделенный товар;</translation>
    </message>
    <message>
        <source>uncheck the chosen item;</source>
        <translation>снять отметку с выделенного товара;</translation>
    </message>
    <message>
        <source>Press the button with the Store to bind the List to a Store. Reset makes all goods of the List unchecked again, at once.</source>
        <translation>Чтобы привязать список к магазину, нажмите кнопку в строке «Магазин». «Сброс» сразу снимает отметки со всех товаров списка.</translation>
    </message>
    <message>
        <source>What is enetered here is saved with the whole List. Minus and plus change the amount.</source>
        <translation>Введённое здесь сохраняется вместе со всем списком. Минус и плюс меняют количество.</translation>
    </message>
    <message>
        <source>type them, in degrees or in degrees, minutes and seconds; N/S and E/W change the hemisphere;</source>
        <translation>ввести их в градусах или в градусах, минутах и секундах; N/S и E/W меняют полушарие;</translation>
    </message>
    <message>
        <source>No position yet. Is location switched on, and the sky in sight?</source>
        <translation>Местоположения пока нет. Включено ли определение местоположения, видно ли небо?</translation>
    </message>
    <message>
        <source>Location is switched off, or not allowed for this program. Allow it in the settings of the system.</source>
        <translation>Определение местоположения выключено или не разрешено этой программе. Разрешите его в настройках системы.</translation>
    </message>
    <message>
        <source>Your position is known to within %1 km only.</source>
        <translation>Местоположение известно только с точностью до %1 км.</translation>
    </message>
    <message>
        <source>This number does not fit. Choose the place on the map, or get it from the GPS.</source>
        <translation>Такое число не помещается. Укажите место на карте или получите его от GPS.</translation>
    </message>
    <message>
        <source>Another program is using the lists. Nothing is saved until it has finished.</source>
        <translation>Списки заняты другой программой. Пока она не закончит, ничего не сохраняется.</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Домой</translation>
    </message>
    <message>
        <source>Music</source>
        <translation>Музыка</translation>
    </message>
    <message>
        <source>The options could not be saved.</source>
        <translation>Не удалось сохранить настройки.</translation>
    </message>
    <message>
        <source>Tap it again to edit it</source>
        <translation>Нажмите ещё раз, чтобы изменить</translation>
    </message>
    <message>
        <source>Tap it again to choose it</source>
        <translation>Нажмите ещё раз, чтобы выбрать</translation>
    </message>
    <message>
        <source>Tap it again to check it off</source>
        <translation>Нажмите ещё раз, чтобы отметить</translation>
    </message>
    <message>
        <source>Tap it again to uncheck it</source>
        <translation>Нажмите ещё раз, чтобы снять отметку</translation>
    </message>
    <message>
        <source>Tracking pauses while the device sleeps.</source>
        <translation>Пока устройство спит, слежение приостановлено.</translation>
    </message>
    <message>
        <source>Reminds of shopping lists on the way</source>
        <translation>Напоминает о списках покупок в пути</translation>
    </message>
    <message>
        <source>Tracking is running</source>
        <translation>Слежение запущено</translation>
    </message>
    <message>
        <source>Trolleo rings when a Store with an open List is near.</source>
        <translation>Trolleo подаст сигнал, когда рядом окажется магазин с незавершённым списком.</translation>
    </message>
    <message>
        <source>Open Trolleo</source>
        <translation>Открыть Trolleo</translation>
    </message>
    <message>
        <source>While the Map shows, distances stay as they were.</source>
        <translation>Пока показана карта, расстояния не обновляются.</translation>
    </message>
    <message>
        <source>No lists yet. Press + to make one.</source>
        <translation>Списков пока нет. Нажмите +, чтобы создать.</translation>
    </message>
    <message>
        <source>No goods yet. Press + to add one.</source>
        <translation>Товаров пока нет. Нажмите +, чтобы добавить.</translation>
    </message>
    <message>
        <source>No stores yet. Press + to add one.</source>
        <translation>Магазинов пока нет. Нажмите +, чтобы добавить.</translation>
    </message>
    <message>
        <source>No categories yet. Press + to add one.</source>
        <translation>Категорий пока нет. Нажмите +, чтобы добавить.</translation>
    </message>
    <message>
        <source>Nothing to buy on this list.</source>
        <translation>В этом списке нечего покупать.</translation>
    </message>
    <message>
        <source>No stores to show.</source>
        <translation>Нет магазинов.</translation>
    </message>
</context>
</TS>
