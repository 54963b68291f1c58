# SPDX-License-Identifier: MIT
"""What a screen reader is told about every page, in both languages."""
import contextlib
import pathlib
import re
import sys
import tempfile
import unittest

SOURCES = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(SOURCES / "tests" / "support"))
sys.path.insert(0, str(SOURCES / "scripts" / "demo"))
from screenshots import FIXES_BEFORE_THE_BAKERY, LANGUAGES, Tour  # noqa: E402
from surroundings import Surroundings  # noqa: E402
from desktop import Desktop, pyatspi, role_of, wait_for  # noqa: E402

TITLES = {
    "00-main": "Main Page",
    "01-shopping": "Shoppings",
    "02-tracking": "Reminders (GPS tracking)",
    "03-stores": "Stores",
    "04-items-list": "Items List",
    "05-list-edit": "Shopping List Edit",
    "06-shopping-lists": "Shopping Lists",
    "07-item-edit": "Item Add/Edit",
    "08-store-list": "Stores List",
    "09-store-edit": "Store Add/Edit",
    "10-category-list": "Category List",
    "11-category-edit": "Add/Edit Category",
    "12-message": "Main Page",
    "13-do-shopping": "Do Shopping",
    "14-options": "Options",
    "15-waiting": "Update in Progress",
    "16-confirmation": "Deleting Shopping List",
    "17-tracked-list": "Tracking",
    "17-tracked-map": "Tracking",
    "18-reminder": "You have a Shopping List for this Store:",
    "19-coordinates": "Coords input",
    "19-coordinates-map": "Coords input",
}
ROLES = {"12-message": "dialog", "15-waiting": "dialog", "16-confirmation": "dialog",
         "18-reminder": "alert"}
# Roles of controls, whether they can have the focus or not.
CONTROLS = {"button", "check box", "list", "list item", "page tab", "radio button", "spin button",
            "text"}
PICTURE = re.compile(r"\.(svg|png)|:/|\ufffc")


class Listener(Tour):
    """Visits the pages and records what a screen reader is told about each."""

    def __init__(self, test, language, folder, desktop, surroundings):
        super().__init__(folder, desktop, surroundings, language)
        self.test = test
        self.language = language
        self.shown = []
        self.page = ("panel", self.tr["Main Page"])  # the first page; there is no event for it
        self.visited = []
        self.roles = set()
        pyatspi.Registry.registerEventListener(self.note, "object:state-changed:showing")

    def note(self, event):
        if event.detail1 and role_of(event.source) in ("panel", "dialog", "alert"):
            self.shown.append((role_of(event.source), event.source.name))

    def forget(self):
        pyatspi.Registry.deregisterEventListener(self.note, "object:state-changed:showing")

    def picture(self, name):
        """Called where the tour would take a picture."""
        with self.test.subTest(page=name, language=self.language):
            self.check(name)
        self.visited.append(name)

    def check(self, name):
        title = self.tr[TITLES[name]]
        role = ROLES.get(name, "panel")
        page = wait_for(f"the page {title}", lambda: next(
            (page for page in self.program.find_all(role) if page.name.startswith(title)), None))
        if (role, page.name) != self.page:
            self.page = (role, page.name)
            wait_for("the page to be announced", lambda: self.page in self.shown)
        self.shown.clear()
        nodes = list(self.nodes(page))
        controls = [node for node in nodes if role_of(node) in CONTROLS
                    or node.getState().contains(pyatspi.STATE_FOCUSABLE)]
        roles = {role_of(node) for node in controls}
        self.test.assertIn("button", roles)
        self.roles |= roles
        for node in controls:
            self.test.assertTrue(node.name.strip(), f"a {role_of(node)} without a name")
        for node in nodes:
            self.test.assertNotRegex(node.name, PICTURE)
            self.test.assertNotRegex(node.description, PICTURE)
        if name != "00-main":  # the initial page sets the focus only after a key press
            wait_for("the focus on the page", lambda: any(
                node.getState().contains(pyatspi.STATE_FOCUSED) for node in [page, *self.nodes(page)]))
        if name == "18-reminder":
            self.test.assertRegex(page.name, r"Sunrise Bakery \(at \d+\.\d\d meters\)")
        if name == "12-message":
            text = next(node.name for node in nodes
                        if role_of(node) == "label" and len(node.name) > 100)
            for line, button in (("Options page;", "Options"), ("this page;", "Help"),
                                 ("Stores management page.", "Shops")):
                self.test.assertIn(f"{self.tr[button]} - {self.tr[line]}", text)

    def nodes(self, node):
        for child in node:
            if child is not None and child.getState().contains(pyatspi.STATE_SHOWING):
                yield child
                yield from self.nodes(child)


class TestAccess(unittest.TestCase):
    def hear_every_page(self, language):
        with contextlib.ExitStack() as cleanup:
            desktop = Desktop(800, 480, phone=True)
            cleanup.callback(desktop.stop)
            folder = pathlib.Path(cleanup.enter_context(tempfile.TemporaryDirectory()))
            surroundings = Surroundings(cleanup, LANGUAGES[language],
                                        first_fix=FIXES_BEFORE_THE_BAKERY)
            tour = Listener(self, language, folder / language, desktop, surroundings)
            cleanup.callback(tour.forget)
            cleanup.callback(tour.stop)
            tour.run()
            self.assertEqual(sorted(tour.visited), sorted(TITLES))
            # If a role does not occur on any page, it has another name now and was not checked.
            self.assertEqual(CONTROLS - tour.roles, set())

    def test_english(self):
        self.hear_every_page("en")

    def test_russian(self):
        self.hear_every_page("ru")


if __name__ == "__main__":
    unittest.main(verbosity=2)
