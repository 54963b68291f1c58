# SPDX-License-Identifier: MIT
"""The town of the demo: its places, its map as tiles, and a walk through it."""
import io
import json
import math
import pathlib
import sys

import cairo

SOURCES = pathlib.Path(__file__).resolve().parents[2]
DATA = SOURCES / "resources" / "demo"
# The demo uses the support code of the system tests.
sys.path.insert(0, str(SOURCES / "tests" / "support"))
from nmea import METERS_PER_DEGREE  # noqa: E402

TILE = 256  # pixels
GROUND = (0.955, 0.945, 0.925)
WATER = (0.66, 0.81, 0.90)
PARK = (0.78, 0.89, 0.72)
SQUARE = (0.92, 0.89, 0.86)
HOUSE = (0.86, 0.82, 0.78)
STREET = (1, 1, 1)
CASING = (0.76, 0.73, 0.69)
TEXT = (0.25, 0.25, 0.28)
ZOOM_OF_ALL_NAMES = 15  # one level below, only names of wide streets are shown
WIDE = 9  # metres
LAST_HOUSE = 1250  # metres from the centre of the town, in each direction


class Town:
    def __init__(self):
        self.town = json.loads((DATA / "town.json").read_text(encoding="utf-8"))
        self.latitude = self.town["origin"]["latitude"]
        self.longitude = self.town["origin"]["longitude"]
        self.houses = list(self.rows_of_houses())

    def coordinates(self, east, north):
        """Returns the latitude and longitude of a place, given in metres from the centre of the town."""
        return (self.latitude + north / METERS_PER_DEGREE,
                self.longitude + east / METERS_PER_DEGREE / math.cos(math.radians(self.latitude)))

    def along(self, points, step):
        """Yields places on a line at equal distances, with the direction of the line there."""
        rest = 0.0
        for (x0, y0), (x1, y1) in zip(points, points[1:]):
            length = math.hypot(x1 - x0, y1 - y0)
            at = rest
            while at < length:
                yield (x0 + (x1 - x0) * at / length, y0 + (y1 - y0) * at / length,
                       math.atan2(y1 - y0, x1 - x0))
                at += step
            rest = at - length

    def walk(self):
        """Yields the latitudes and longitudes of the walk, one for each fix of the receiver."""
        walk = self.town["walk"]
        for east, north, _ in self.along(walk["points"], walk["metres per fix"]):
            yield self.coordinates(east, north)

    def rows_of_houses(self):
        """Yields houses on both sides of the streets, as centre, direction and size, but none on a
        street."""
        def is_free(x, y, clearance):
            for street in self.town["streets"]:
                for (x0, y0), (x1, y1) in zip(street["points"], street["points"][1:]):
                    length = math.hypot(x1 - x0, y1 - y0)
                    along = ((x - x0) * (x1 - x0) + (y - y0) * (y1 - y0)) / length ** 2
                    along = min(1, max(0, along))
                    if math.hypot(x - x0 - along * (x1 - x0), y - y0 - along * (y1 - y0)) < (
                            street["width"] / 2 + clearance):
                        return False
            return not any(inside(x, y, area["points"])
                           for kind in ("water", "parks", "squares") for area in self.town[kind])

        for street in self.town["streets"]:
            if street["name"] in ("River Walk", "Bridge Lane"):
                continue
            for index, (x, y, angle) in enumerate(self.along(street["points"], 31)):
                for side in (-1, 1):
                    size = 15 + (index * 7 + side * 3) % 9
                    away = street["width"] / 2 + 6 + size / 2
                    middle = (x - side * away * math.sin(angle), y + side * away * math.cos(angle))
                    if max(map(abs, middle)) < LAST_HOUSE and is_free(*middle, size * 0.75):
                        yield *middle, angle, size

    def tile(self, zoom, column, row):
        """Returns a slippy-map tile as PNG."""
        surface = cairo.ImageSurface(cairo.FORMAT_RGB24, TILE, TILE)
        context = cairo.Context(surface)
        context.set_source_rgb(*GROUND)
        context.paint()
        world = TILE * 2 ** zoom
        scale = world / 360 / METERS_PER_DEGREE / math.cos(math.radians(self.latitude))  # px per metre

        def pixel(point):
            latitude, longitude = self.coordinates(*point)
            x = (longitude + 180) / 360 * world
            y = (1 - math.asinh(math.tan(math.radians(latitude))) / math.pi) / 2 * world
            return x - column * TILE, y - row * TILE

        def trace(points):
            context.new_path()
            for point in points:
                context.line_to(*pixel(point))

        for kind, color in (("water", WATER), ("parks", PARK), ("squares", SQUARE)):
            for area in self.town[kind]:
                trace(area["points"])
                context.close_path()
                context.set_source_rgb(*color)
                context.fill()
        context.set_source_rgb(*HOUSE)
        for east, north, angle, size in self.houses:
            context.save()
            context.translate(*pixel((east, north)))
            context.rotate(-angle)
            context.rectangle(-size * scale / 2, -size * scale / 2, size * scale, size * scale)
            context.fill()
            context.restore()
        context.set_line_cap(cairo.LINE_CAP_ROUND)
        context.set_line_join(cairo.LINE_JOIN_ROUND)
        for color, wider in ((CASING, 2), (STREET, 0)):
            context.set_source_rgb(*color)
            for street in self.town["streets"]:
                trace(street["points"])
                context.set_line_width(max(1.5, street["width"] * scale) + wider)
                context.stroke()
        self.write_names(context, pixel, zoom)
        buffer = io.BytesIO()
        surface.write_to_png(buffer)
        return buffer.getvalue()

    def write_names(self, context, pixel, zoom):
        if zoom < ZOOM_OF_ALL_NAMES - 1:
            return
        context.select_font_face("DejaVu Sans")
        context.set_font_size(11)
        apart = 240 * 2 ** max(0, 16 - zoom)  # metres
        for street in self.town["streets"]:
            if zoom < ZOOM_OF_ALL_NAMES and street["width"] < WIDE:
                continue
            for east, north, angle in list(self.along(street["points"], apart))[1:]:
                if math.cos(angle) < -1e-9:
                    angle += math.pi
                self.write(context, street["name"], pixel((east, north)), -angle)
        for kind in ("water", "parks", "squares"):
            for area in self.town[kind]:
                points = area["points"]
                middle = [sum(axis) / len(points) for axis in zip(*points)]
                self.write(context, area["name"], pixel(middle), 0)

    @staticmethod
    def write(context, text, place, angle):
        extents = context.text_extents(text)
        context.save()
        context.translate(*place)
        context.rotate(angle)
        context.move_to(-extents.width / 2, extents.height / 2)
        context.text_path(text)
        context.set_source_rgb(*STREET)
        context.set_line_width(3)
        context.stroke_preserve()
        context.set_source_rgb(*TEXT)
        context.fill()
        context.restore()


def inside(x, y, points):
    """Returns whether a place is in a polygon, by the even-odd rule."""
    result = False
    for (x0, y0), (x1, y1) in zip(points, points[1:] + points[:1]):
        if (y0 > y) != (y1 > y) and x < (x1 - x0) * (y - y0) / (y1 - y0) + x0:
            result = not result
    return result
