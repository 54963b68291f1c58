#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Generates the walks in the folder walks/: the sentences of a receiver, one every three seconds of
a walk, and for each walk a table of stores, lists, criterion and the expected reminders. The
expectations are computed here, by a model that shares no code with the program.

The lines of a table:
    category ID NAME
    store ID NAME LATITUDE LONGITUDE CATEGORY   "-" for none
    list ID NAME STORE STATE
    criterion all | store NAME | category NAME
    rubbish LINE BYTES                          that many bytes of noise before that sentence
    reminder LINE ANSWER TEXT                   the sentence that rings; next, stop or start is pressed
"""
import math
import pathlib
import random
import struct
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import nmea  # noqa: E402

FOLDER = pathlib.Path(__file__).with_name("walks")
EARTH_RADIUS = 6371007.2  # metres; the mean radius by authalic area
THRESHOLD = 250.0  # metres
STEP = 3  # seconds
SPEED = 1.4  # metres per second
PER_DEGREE = math.radians(1) * EARTH_RADIUS


def single(value):
    """Returns the value rounded to single precision."""
    return struct.unpack("f", struct.pack("f", value))[0]


def neighbour(value, direction):
    bits = struct.unpack("I", struct.pack("f", value))[0]
    return struct.unpack("f", struct.pack("I", bits + direction))[0]


def distance(latitude1, longitude1, latitude2, longitude2):
    """Returns the great-circle distance in metres (haversine formula) between points in single
    precision, rounded to it."""
    latitude1, longitude1, latitude2, longitude2 = (
        math.radians(single(value)) for value in (latitude1, longitude1, latitude2, longitude2))
    root = (math.sin((latitude2 - latitude1) / 2) ** 2 + math.cos(latitude1) * math.cos(latitude2)
            * math.sin((longitude2 - longitude1) / 2) ** 2)
    return single(2 * math.asin(math.sqrt(root)) * EARTH_RADIUS)


class Walk:
    def __init__(self, name):
        self.name = name
        self.categories = []  # (id, name)
        self.stores = {}  # id: (name, latitude, longitude, category)
        self.lists = []  # (id, name, store, state)
        self.criterion = "all"
        self.tracked = None  # ids, when the criterion is not "all"
        self.answers = ["next"]  # one for each reminder; the last one for all further ones
        self.rubbish = []
        self.lines = []
        self.positions = []  # (line number, latitude, longitude)
        self.second = 8 * 3600

    def store(self, name, latitude, longitude, category=None, states=(1,)):
        store_id = len(self.stores) + 1
        self.stores[store_id] = (name, latitude, longitude, category)
        for state in states:
            list_id = len(self.lists) + 1
            self.lists.append((list_id, f"List{list_id}", store_id, state))
        return store_id

    def add(self, line):
        self.lines.append(line)

    def fix(self, latitude, longitude, counts=True, alter=lambda line: line):
        line = alter(nmea.rmc(self.second, latitude, longitude))
        self.add(line)
        if counts:
            self.positions.append((len(self.lines), nmea.rounded(latitude), nmea.rounded(longitude)))
        self.second += STEP

    def go(self, begin, end, **options):
        """Walks straight from one point to another; points are (latitude, longitude)."""
        length = distance(*begin, *end)
        steps = max(1, round(length / (SPEED * STEP)))
        for step in range(steps + 1):
            part = step / steps
            self.fix(begin[0] + (end[0] - begin[0]) * part, begin[1] + (end[1] - begin[1]) * part,
                     **options)

    def reminders(self):
        left = [store_id for store_id, (_, latitude, _, _) in self.stores.items()
                if latitude is not None
                and any(store == store_id and state in (1, 2) for _, _, store, state in self.lists)
                and (self.tracked is None or store_id in self.tracked)]
        answers = list(self.answers)
        for line, latitude, longitude in self.positions:
            if not left:
                return
            meters, nearest = min((distance(latitude, longitude, *self.stores[store_id][1:3]), store_id)
                                  for store_id in left)
            if meters >= THRESHOLD:
                continue
            answer = answers[0]
            if len(answers) > 1:
                answers.pop(0)
            yield line, answer, f"{self.stores[nearest][0]} (at {meters:.2f} meters)"
            if answer != "next":
                return
            left.remove(nearest)

    def write(self):
        table = [f"category {category} {name}" for category, name in self.categories]
        for store_id, (name, latitude, longitude, category) in self.stores.items():
            place = "- -" if latitude is None else f"{latitude!r} {longitude!r}"
            table.append(f"store {store_id} {name} {place} {category or '-'}")
        table += [f"list {list_id} {name} {store} {state}" for list_id, name, store, state in self.lists]
        table.append(f"criterion {self.criterion}")
        table += [f"rubbish {line} {size}" for line, size in self.rubbish]
        table += [f"reminder {line} {answer} {text}" for line, answer, text in self.reminders()]
        (FOLDER / f"{self.name}.txt").write_text("\n".join(table) + "\n")
        (FOLDER / f"{self.name}.nmea").write_text("".join(self.lines), newline="")


def north(latitude, meters):
    return latitude + meters / PER_DEGREE


def east(latitude, longitude, meters):
    return longitude + meters / PER_DEGREE / math.cos(math.radians(latitude))


LATITUDE, LONGITUDE = 59.913822, 10.738741


def past(walk, offset, begin=-500, end=500):
    """Walks past a store at LATITUDE, LONGITUDE, at a distance of `offset` metres to the east."""
    longitude = east(LATITUDE, LONGITUDE, offset)
    walk.go((north(LATITUDE, begin), longitude), (north(LATITUDE, end), longitude))


def straight_past(walk):
    walk.store("Bakery", LATITUDE, LONGITUDE)
    past(walk, 40)


def past_at_260_meters(walk):
    walk.store("Bakery", LATITUDE, LONGITUDE)
    past(walk, 260)


def jitter_around_250_meters(walk):
    walk.store("Bakery", LATITUDE, LONGITUDE)
    source = random.Random(1)
    for _ in range(300):
        walk.fix(north(LATITUDE, 250 + source.uniform(-30, 30)), LONGITUDE)


def two_stores(walk):
    walk.store("Bakery", LATITUDE, LONGITUDE)
    walk.store("Dairy", north(LATITUDE, 700), east(LATITUDE, LONGITUDE, -60))
    past(walk, 20, -400, 1200)


def two_stores_at_once(walk):
    walk.store("Bakery", LATITUDE, LONGITUDE)
    walk.store("Dairy", north(LATITUDE, 30), LONGITUDE)
    past(walk, 20)


def skip_and_stay(walk):
    walk.store("Bakery", LATITUDE, LONGITUDE)
    walk.store("Dairy", north(LATITUDE, 2000), LONGITUDE)
    past(walk, 10, -400, 0)
    for _ in range(200):
        walk.fix(LATITUDE, LONGITUDE)


def skip_and_walk_to_the_next(walk):
    walk.store("Bakery", LATITUDE, LONGITUDE)
    walk.store("Dairy", north(LATITUDE, 600), LONGITUDE)
    walk.answers = ["next", "stop"]
    past(walk, 10, -400, 0)
    past(walk, 10, 0, 600)
    past(walk, 10, 600, 0)  # stopped: nothing rings on the way back


def three_lists_start_shopping(walk):
    walk.store("Bakery", LATITUDE, LONGITUDE, states=(2, 1, 1))
    walk.answers = ["start"]
    past(walk, 10)


def closed_list(walk):
    walk.store("Bakery", LATITUDE, LONGITUDE, states=(3,))
    walk.store("Dairy", north(LATITUDE, 5000), LONGITUDE)
    past(walk, 0)


def empty_list(walk):
    walk.store("Bakery", LATITUDE, LONGITUDE, states=(0,))
    walk.store("Dairy", north(LATITUDE, 5000), LONGITUDE)
    past(walk, 0)


def no_coordinates(walk):
    walk.store("Bakery", None, None)
    walk.store("Dairy", north(LATITUDE, 5000), LONGITUDE)
    past(walk, 0)


def coordinates_that_are_no_place(walk):
    walk.store("Nowhere", 999.0, 999.0)
    walk.store("Bakery", LATITUDE, LONGITUDE)
    past(walk, 0)
    walk.tracked = {2}


def by_store(walk):
    walk.store("Bakery", LATITUDE, LONGITUDE)
    walk.store("Dairy", north(LATITUDE, 300), LONGITUDE, states=(1, 2))
    walk.criterion = "store Dairy"
    walk.tracked = {2}
    past(walk, 10, -400, 700)


def by_category(walk):
    walk.categories = [(1, "Food"), (2, "Hardware")]
    walk.store("Bakery", LATITUDE, LONGITUDE, category=1)
    walk.store("Nails", north(LATITUDE, 300), LONGITUDE, category=2)
    walk.store("Dairy", north(LATITUDE, 900), LONGITUDE, category=1)
    walk.store("Loose", north(LATITUDE, 600), LONGITUDE)
    walk.criterion = "category Food"
    walk.tracked = {1, 3}
    past(walk, 10, -400, 1300)


def gap_of_an_hour(walk):
    walk.store("Bakery", LATITUDE, LONGITUDE)
    past(walk, 0, -900, -400)
    walk.second += 3600
    past(walk, 0, 200, 600)


def bad_checksums(walk):
    walk.store("Bakery", LATITUDE, LONGITUDE)

    def spoil(line):
        return line[:-4] + f"{int(line[-4:-2], 16) ^ 1:02X}\r\n"
    walk.go((north(LATITUDE, -400), LONGITUDE), (LATITUDE, LONGITUDE), counts=False, alter=spoil)
    past(walk, 0, 300, 100)


def without_fix(walk):
    walk.store("Bakery", LATITUDE, LONGITUDE)

    def lose(line):
        return nmea.sentence(line[1:line.index("*")].replace(",A,", ",V,", 1))
    walk.go((north(LATITUDE, -400), LONGITUDE), (LATITUDE, LONGITUDE), counts=False, alter=lose)
    for second in range(50):
        walk.add(nmea.sentence(f"GPRMC,{9:02d}{second:02d}00.00,V,,,,,,,211126,,,N"))
    past(walk, 0, 300, 100)


def cut_in_the_middle(walk):
    walk.store("Bakery", LATITUDE, LONGITUDE)
    for index in range(60):
        walk.fix(LATITUDE, LONGITUDE, counts=False, alter=lambda line: line[:index + 1] + "\r\n")
    past(walk, 0, -300, -200)


def out_of_range(walk):
    walk.store("Bakery", LATITUDE, LONGITUDE)
    for place in ("9100.00000,N,01044.32446,E", "5954.82932,N,18100.00000,E", "5999.99999,N,,E",
                  "nan,N,nan,E", ",,,"):
        walk.add(nmea.sentence(f"GPRMC,080000.00,A,{place},2.7,0.0,211126,,,A"))
    past(walk, 0, -300, -200)


def a_megabyte_of_rubbish(walk):
    walk.store("Bakery", LATITUDE, LONGITUDE)
    past(walk, 0, -400, -300)
    walk.rubbish = [(len(walk.lines) // 2, 1 << 20), (len(walk.lines), 1 << 16)]
    past(walk, 0, -300, -200)


def date_line(walk):
    walk.store("Bakery", -16.8, 179.9995)
    walk.go((-16.8, -179.9930), (-16.8, -179.99999))
    walk.go((-16.8, 179.99999), (-16.8, 179.9995))


def north_pole(walk):
    walk.store("Bakery", 90.0, 0.0)
    walk.go((north(90, -400), 30), (89.999999, 30))


def south_pole(walk):
    walk.store("Bakery", -89.9999, 10.0)
    walk.go((north(-90, 400), -170), (-89.999999, -170))


def equator_and_prime_meridian(walk):
    walk.store("Bakery", 0.0, 0.0)
    walk.go((north(0, 300), -0.001), (north(0, -300), 0.001))


def thousand_stores(walk):
    source = random.Random(2)
    for index in range(1000):
        walk.store(f"Store{index + 1}", north(LATITUDE, source.uniform(-6000, 6000)),
                   east(LATITUDE, LONGITUDE, source.uniform(-6000, 6000)))
    past(walk, 0, -1500, 1500)


def place_at_250_meters():
    """Returns a place that is exactly 250 m from the intersection of equator and prime meridian."""
    for step in range(1000):
        longitude = single(step * 1e-6)
        latitude = single(0.00224)
        while distance(0, 0, latitude, longitude) < THRESHOLD:
            latitude = neighbour(latitude, 1)
        if distance(0, 0, latitude, longitude) == THRESHOLD:
            return latitude, longitude
    raise AssertionError("there is no such place")


def just_250_meters(walk):
    walk.store("Bakery", *place_at_250_meters())
    for _ in range(10):
        walk.fix(0, 0)


def just_below_250_meters(walk):
    latitude, longitude = place_at_250_meters()
    while distance(0, 0, latitude, longitude) == THRESHOLD:
        latitude = neighbour(latitude, -1)
    walk.store("Bakery", latitude, longitude)
    for _ in range(10):
        walk.fix(0, 0)


def main():
    for make in (straight_past, past_at_260_meters, jitter_around_250_meters, two_stores,
                 two_stores_at_once, skip_and_stay, skip_and_walk_to_the_next,
                 three_lists_start_shopping, closed_list, empty_list, no_coordinates,
                 coordinates_that_are_no_place, by_store, by_category, gap_of_an_hour, bad_checksums,
                 without_fix, cut_in_the_middle, out_of_range, a_megabyte_of_rubbish, date_line,
                 north_pole, south_pole, equator_and_prime_meridian, thousand_stores,
                 just_250_meters, just_below_250_meters):
        walk = Walk(make.__name__.replace("_", "-"))
        make(walk)
        walk.write()


main()
