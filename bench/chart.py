#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Draws how the costs grow: reads the table of "scripts/bench growth", prints it and writes a picture.

Usage: bench/chart.py FILE.png < table
"""
import itertools
import math
import sys

import cairo

SCALE = 2  # pixels of the picture for each unit below, so that it is crisp on dense screens
WIDTH, HEIGHT = 772, 400
LEFT, RIGHT, TOP, BOTTOM = 76, 250, 24, 48
INK, MUTED, GRID = (0.09, 0.13, 0.17), (0.31, 0.36, 0.42), (0.88, 0.90, 0.92)
COLORS = ((0.04, 0.35, 0.66), (0.80, 0.30, 0.10), (0.13, 0.53, 0.30), (0.50, 0.25, 0.60),
          (0.45, 0.45, 0.45), (0.75, 0.55, 0.00))


def read_table(lines):
    """Returns the points (rows, milliseconds) of each line of the chart by its name."""
    series = {}
    for line in lines:
        print(line, end="", flush=True)
        what, *numbers = line[:34].strip(), *line[34:].split()
        if len(numbers) == 5 and numbers[0].isdigit():
            series.setdefault(what, []).append((int(numbers[0]), float(numbers[1])))
    return series


def decades(values):
    """Returns the powers of ten from below the least to above the greatest value."""
    return range(math.floor(math.log10(min(values))), math.ceil(math.log10(max(values))) + 1)


class Chart:
    def __init__(self, series):
        self.series = series
        self.surface = cairo.ImageSurface(cairo.FORMAT_RGB24, WIDTH * SCALE, HEIGHT * SCALE)
        self.context = cairo.Context(self.surface)
        self.context.scale(SCALE, SCALE)
        self.context.set_source_rgb(1, 1, 1)
        self.context.paint()
        self.context.select_font_face("DejaVu Sans")
        self.context.set_font_size(13)
        points = [point for line in series.values() for point in line]
        self.across = decades([rows for rows, _ in points])
        self.up = decades([time for _, time in points])

    def place(self, rows, time):
        def part(value, axis):
            return (math.log10(value) - axis[0]) / (axis[-1] - axis[0])
        return (LEFT + part(rows, self.across) * (WIDTH - LEFT - RIGHT),
                HEIGHT - BOTTOM - part(time, self.up) * (HEIGHT - TOP - BOTTOM))

    def text(self, x, y, text, color, anchor=0.0):
        """Draws a text whose left end, or with 1 its right end, is at x."""
        self.context.set_source_rgb(*color)
        self.context.move_to(x - anchor * self.context.text_extents(text).x_advance, y)
        self.context.show_text(text)

    def line(self, places, color, width):
        self.context.set_source_rgb(*color)
        self.context.set_line_width(width)
        self.context.new_path()  # a text leaves its end
        for place in places:
            self.context.line_to(*place)
        self.context.stroke()

    def draw_grid(self):
        for power in self.across:
            x, bottom = self.place(10 ** power, 10 ** self.up[0])
            self.line([(x, TOP), (x, bottom)], GRID, 1)
            self.text(x, bottom + 20, f"{10 ** power:,}", MUTED, 0.5)
        for power in self.up:
            left, y = self.place(10 ** self.across[0], 10 ** power)
            self.line([(left, y), (WIDTH - RIGHT, y)], GRID, 1)
            self.text(left - 8, y + 4, f"{10.0 ** power:g} ms", MUTED, 1)
        self.text((LEFT + WIDTH - RIGHT) / 2, HEIGHT - 8, "rows", MUTED, 0.5)

    def draw_lines(self):
        # Names beside the ends of their lines, and below each other where those are too close.
        least = TOP
        ends = sorted(self.series.items(), key=lambda item: -item[1][-1][1])
        for (what, points), color in zip(ends, itertools.cycle(COLORS)):
            places = [self.place(*point) for point in points]
            self.line(places, color, 2)
            for x, y in places:
                self.context.new_path()
                self.context.arc(x, y, 3, 0, 2 * math.pi)
                self.context.fill()
            x, y = places[-1]
            y = max(y + 4, least)
            least = y + 18
            self.text(x + 12, y, what, color)


def main():
    series = read_table(sys.stdin)
    if not series:
        sys.exit("chart: the table has no rows")
    chart = Chart(series)
    chart.draw_grid()
    chart.draw_lines()
    chart.surface.write_to_png(sys.argv[1])


if __name__ == "__main__":
    main()
