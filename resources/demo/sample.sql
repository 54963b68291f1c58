-- What a person who lives in the town of town.json has typed.
insert into category values (1, 'Food'), (2, 'Health'), (3, 'House and garden');
insert into magazin values
    (1, 'Sunrise Bakery', 1, null), (2, 'Green Grocer', 1, null), (3, 'Bridge Pharmacy', 2, null),
    (4, 'Hardware Hall', 3, null);
insert into gpscoord values
    (1, 50.1001, 14.19888, 251), (2, 50.10324, 14.20295, 254), (3, 50.10036, 14.20757, 249),
    (4, 50.09586, 14.19565, 246);
insert into shoplist values
    (1, 'Breakfast', 1, 1), (2, 'Weekend', 2, 2), (3, 'Medicine chest', 3, 1), (4, 'New shelf', 4, 3);
insert into purchase values
    (1, 'Bread', 1, 1, 0), (2, 'Croissants', 1, 4, 0), (3, 'Butter', 1, 1, 0),
    (4, 'Apples', 2, 6, 0), (5, 'Tomatoes', 2, 8, 0), (6, 'Lettuce', 2, 1, 1),
    (7, 'Plasters', 3, 1, 0), (8, 'Hand cream', 3, 2, 0),
    (9, 'Screws', 4, 40, 1), (10, 'Brackets', 4, 4, 1);
