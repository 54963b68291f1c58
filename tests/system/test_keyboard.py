# SPDX-License-Identifier: MIT
"""A complete shopping trip, and a reminder, with the installed program and only the keyboard."""
import contextlib
import pathlib
import sys
import time
import unittest

SOURCES = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(SOURCES / "tests" / "support"))
sys.path.insert(0, str(SOURCES / "scripts" / "demo"))
from screenshots import FIXES_BEFORE_THE_BAKERY  # noqa: E402
from surroundings import Surroundings  # noqa: E402
from desktop import ProgramTest, pyatspi, role_of, tool, wait_for  # noqa: E402

MOST_STOPS = 20  # presses of the Tab key on a page


class TestKeyboard(ProgramTest):
    def setUp(self):
        super().setUp()
        wait_for("the keyboard", lambda: self.desktop.run(
            [tool("xdotool"), "getactivewindow", "getwindowname"]).strip() == "Trolleo")

    def keys(self, *keys):
        self.desktop.run([tool("xdotool"), "key", *keys])

    def type(self, text):
        wait_for("a field with the focus", lambda: self.role_of_focused() == "text")
        self.desktop.run([tool("xdotool"), "type", text])
        wait_for("the text", lambda: self.program.focused().queryText().getText(0, -1) == text)

    def role_of_focused(self):
        node = self.program.focused()
        return node and role_of(node)

    def go_to(self, names):
        """Presses Tab until one of these has the focus."""
        wait_for(f"{names}", lambda: any(self.program.find("button", name)
                                         or self.program.find("list", name) for name in names))
        for _ in range(MOST_STOPS):
            before = self.program.focused()
            if before is not None and before.name in names:
                return before
            self.keys("Tab")
            wait_for("the focus to move", lambda: self.program.focused() != before)
        self.fail(f"the Tab key does not lead to {names}")

    def press(self, name):
        self.go_to([name])
        self.keys("space")

    def select(self, row):
        """Goes to a row of the page's list."""
        rows = wait_for("the rows", lambda: row in self.program.rows() and self.program.rows())
        self.go_to([self.program.find("list").name, *rows])
        self.keys("Home", *["Down"] * rows.index(row))
        wait_for(f"{row} selected", lambda: self.program.find("list item", row).getState().contains(
            pyatspi.STATE_SELECTED))

    def wait_for_title(self, title):
        wait_for(f"the page {title}", lambda: self.program.find("panel", title))

    def test_from_a_category_to_a_finished_list(self):
        self.press("Shops")
        self.wait_for_title("Stores")
        self.press("New")
        self.type("Corner shop")
        self.press("(click to select)")
        self.press("New category")
        self.type("Food")
        self.keys("Return")
        self.select("Food")
        self.press("Select")
        self.press("Save")
        self.wait_for_title("Stores")
        self.keys("Escape")

        self.press("Shopping")
        self.press("Lists")
        self.press("New list")
        self.type("Weekend")
        self.press("Store")
        self.select("Corner shop, Food")
        self.press("Select")
        self.press("Save")
        self.press("OK")
        for good in ("Milk", "Bread"):
            self.press("New item")
            self.type(good)
            self.keys("Tab", "Up", "Up")
            self.press("Save")
        wait_for("the goods", lambda: self.program.rows() == ["Milk, 3", "Bread, 3"])
        self.press("OK")
        self.press("Select")

        self.press("Start")
        # The list's own key, and the page's button.
        self.select("Bread, 3, unchecked")
        self.keys("Return")
        wait_for("bread checked", lambda: "Bread, 3, checked" in self.program.rows())
        self.select("Milk, 3, unchecked")
        self.press("Check")
        wait_for("milk checked", lambda: "Milk, 3, checked" in self.program.rows())
        self.press("OK")
        wait_for("the finished list", lambda: self.program.find("label", "Finished (checked)"))
        self.keys("Escape")
        self.wait_for_title("Main Page")
        self.press("Exit")
        self.assertEqual(self.program.wait_for_exit(), 0)

        self.assertEqual(self.home.query("select name, categoryid from magazin"),
                         [("Corner shop", 1)])
        self.assertEqual(self.home.query("select name, magazinid, state from shoplist"),
                         [("Weekend", 1, 3)])
        self.assertEqual(self.home.query("select name, amount, checkstate from purchase"),
                         [("Milk", 3, 1), ("Bread", 3, 1)])

    def test_from_tracking_to_shopping(self):
        self.program.stop()
        with contextlib.ExitStack() as cleanup:
            surroundings = Surroundings(cleanup, first_fix=FIXES_BEFORE_THE_BAKERY)
            self.program = surroundings.start_program(self.desktop)
            cleanup.callback(self.program.stop)
            self.program.wait_for_window()
            surroundings.furnish()
            self.press("Reminder")
            self.wait_for_title("Reminders (GPS tracking)")
            self.press("Start")
            wait_for("the reminder", lambda: self.program.find("button", "Start Shopping"), 60)
            time.sleep(1.2)  # input is ignored at first
            self.press("Start Shopping")
            self.wait_for_title("Do Shopping")
            wait_for("the goods", lambda: len(self.program.rows()) == 3)


if __name__ == "__main__":
    unittest.main()
