#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Draw every picture of the program from the Fluent Emoji Flat set.

    npm pack @iconify-json/fluent-emoji-flat@1.2.6
    tar xf iconify-json-fluent-emoji-flat-1.2.6.tgz
    resources/make-pictures.py package/icons.json

The results are committed, so only someone who changes a picture needs this.
A picture is one or more layers of the set: (icon, placement, colour changes).
SVG files say 192 x 192, because Qt first renders an SVG at the size it states;
PNG files are rendered at 192 x 192 by rsvg-convert (package librsvg2-bin).
Then tst_pictures writes resources/ready/ (see there).
"""
import json
import pathlib
import subprocess
import sys

EXTENT = 192
VIEW_BOX = 32
OUT = pathlib.Path(__file__).parent / "img"

GREEN, AQUA, WHITE, DARK_BLUE = "#00d26a", "#00a6ed", "#fff", "#0074ba"
PURPLE, GREY, RED, DARK_RED = "#785dc8", "#9b9b9b", "#f8312f", "#ca0b4a"

# Placements are SVG transforms within the 32 x 32 view box.
WHOLE = ""
INSIDE = "translate(7 7) scale(.5625)"
SHRUNK = "scale(.86)"
BADGE = "translate(16.5 16.5) scale(.47)"
BADGE_SIGN = "translate(19.8 19.8) scale(.265)"
# The pin's tip has to be the lower right corner: that corner marks the place.
TIP_LOWER_RIGHT = "translate(34 2.6) scale(-1 1) translate(2 -.3)"

ADD = [("green-circle", BADGE, {}), ("plus", BADGE_SIGN, {PURPLE: WHITE})]
EDIT = [("pencil", BADGE, {})]


def plain(icon, colours=None):
    return [(icon, WHOLE, colours or {})]


def badged(icon, badge):
    return [(icon, SHRUNK, {})] + badge


def sign(disc, icon, colour):
    return [(disc, WHOLE, {}), (icon, INSIDE, {colour: WHITE})]


PICTURES = {
    "House.png": plain("house"),
    "back.svg": plain("left-arrow"),
    "bee.png": plain("honeybee"),
    "blue_pin.svg": [("pushpin", TIP_LOWER_RIGHT, {RED: AQUA, DARK_RED: DARK_BLUE})],
    "categAdd.png": badged("honeybee", ADD),
    "categEdit.png": badged("honeybee", EDIT),
    "check-aqua.svg": plain("check-box-with-check", {PURPLE: AQUA}),
    "check-list.svg": plain("clipboard"),
    "check_sign_empt.svg": plain("white-circle"),
    "check_sign_fill.svg": sign("green-circle", "check-mark", PURPLE),
    "commit.png": plain("check-mark-button"),
    "edit.svg": plain("pencil"),
    "error.svg": plain("no-entry"),
    "exit.svg": plain("door"),
    "eye.svg": plain("eye"),
    "gps.svg": plain("satellite-antenna"),
    "gps_ed.svg": plain("input-numbers"),
    "info.png": plain("information"),
    "itemAdd.png": badged("red-apple", ADD),
    "itemEdit.png": badged("red-apple", EDIT),
    "listList.png": plain("bookmark-tabs"),
    "map_icon.svg": plain("world-map"),
    "market.png": plain("convenience-store"),
    "next.svg": plain("next-track-button"),
    "plus.svg": sign("green-circle", "plus", PURPLE),
    "question.png": sign("blue-circle", "white-question-mark", GREY),
    "red_round_error.svg": sign("red-circle", "multiply", PURPLE),
    "reminder.svg": plain("alarm-clock"),
    "shopping-cart.svg": plain("shopping-cart"),
    "smile.svg": plain("slightly-smiling-face"),
    "start.png": plain("play-button"),
    "stop.svg": plain("stop-button"),
    "storeAdd.png": badged("convenience-store", ADD),
    "storeEdit.png": badged("convenience-store", EDIT),
    "storeList.svg": plain("department-store"),
    "tools.svg": plain("hammer-and-wrench"),
    "trash.svg": plain("wastebasket"),
    "warning_r.svg": plain("warning"),
}

# The set's own box is white, which glares on a dark ground; this frame has a clear middle.
FRAME = (
    '<g fill="none"><path fill="#7a8794" fill-rule="evenodd" d="M5 1.5A3.5 3.5 0 0 0 1.5 5v22A3.5 3.5 '
    '0 0 0 5 30.5h22a3.5 3.5 0 0 0 3.5-3.5V5A3.5 3.5 0 0 0 27 1.5zm0 2.4h22A1.1 1.1 0 0 1 28.1 5v22a1.1 '
    '1.1 0 0 1-1.1 1.1H5A1.1 1.1 0 0 1 3.9 27V5A1.1 1.1 0 0 1 5 3.9"/></g>'
)
DRAWN_HERE = {"uncheck-aqua.svg": FRAME}


def layer(icons, icon, placement, colours):
    body = icons[icon]["body"]
    for old, new in colours.items():
        if old not in body:
            sys.exit(f"{icon} has no colour {old}")
        body = body.replace(old, new)
    return f'<g transform="{placement}">{body}</g>' if placement else body


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    icons = json.loads(pathlib.Path(sys.argv[1]).read_text())["icons"]
    drawings = {name: "".join(layer(icons, *each) for each in layers)
                for name, layers in PICTURES.items()}
    for name, drawing in (drawings | DRAWN_HERE).items():
        svg = (
            f'<svg xmlns="http://www.w3.org/2000/svg" width="{EXTENT}" height="{EXTENT}" '
            f'viewBox="0 0 {VIEW_BOX} {VIEW_BOX}">{drawing}</svg>\n'
        )
        target = OUT / name
        if target.suffix == ".svg":
            target.write_text(svg)
        else:
            size = str(EXTENT)
            command = ["rsvg-convert", "-w", size, "-h", size, "-o", str(target)]
            subprocess.run(command, input=svg.encode(), check=True)


main()
