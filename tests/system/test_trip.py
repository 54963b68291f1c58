# SPDX-License-Identifier: MIT
"""A complete shopping trip with the installed program, controlled like a screen reader does."""
import pathlib
import sys
import time
import unittest

SOURCES = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(SOURCES / "tests" / "support"))
from desktop import ProgramTest, wait_for  # noqa: E402


class TestTrip(ProgramTest):
    def type(self, text):
        field = wait_for("the name field", lambda: self.program.find("text"))
        field.queryEditableText().setTextContents(text)

    def add(self, button, name):
        self.program.press(button)
        self.type(name)
        self.program.press("Save")

    def test_from_a_category_to_a_finished_list(self):
        started = time.monotonic()
        program = self.program
        # A store in a category.
        program.press("Shops")
        program.press("New")
        self.type("Corner shop")
        program.press("(click to select)")
        self.add("New category", "Food & Drink")
        wait_for("the category", lambda: self.program.rows() == ["Food & Drink"])
        program.press("Select")
        program.press("Save")
        program.press("Back")

        # A list for that store, and goods for the list.
        program.press("Shopping")
        program.press("Lists")
        program.press("New list")
        self.type("Weekend")
        program.press("Store")
        self.program.select_row("Corner shop, Food & Drink")
        program.press("Select")
        program.press("Save")
        program.press("OK")
        for name, amount in (("Milk", 1), ("Bread", 2), ("Apples", 12)):
            program.press("New item")
            self.type(name)
            program.find("spin button").queryValue().currentValue = amount
            program.press("Save")
        wait_for("the goods", lambda: self.program.rows() == ["Milk, 1", "Bread, 2", "Apples, 12"])
        program.press("OK")
        program.press("Select")

        # The trip itself.
        program.press("Start")
        for good in ("Bread, 2", "Milk, 1", "Apples, 12"):
            self.program.select_row(f"{good}, unchecked")
            program.press("Check")
            wait_for(f"{good} checked", lambda: f"{good}, checked" in self.program.rows())
        self.assertEqual(self.program.rows(),
                         ["Apples, 12, checked", "Milk, 1, checked", "Bread, 2, checked"])
        program.press("OK")
        wait_for("the finished list", lambda: program.find("label", "Finished (checked)"))
        program.press("Back")
        program.press("Exit")
        self.assertEqual(program.wait_for_exit(), 0)
        self.assertLess(time.monotonic() - started, 60)

        self.assertEqual(self.home.query("select * from category"), [(1, "Food & Drink")])
        self.assertEqual(self.home.query("select * from magazin"), [(1, "Corner shop", 1, None)])
        self.assertEqual(self.home.query("select * from gpscoord"), [])
        self.assertEqual(self.home.query("select * from shoplist"), [(1, "Weekend", 1, 3)])
        self.assertEqual(
            self.home.query("select * from purchase order by id"),
            [(1, "Milk", 1, 1, 1), (2, "Bread", 1, 2, 1), (3, "Apples", 1, 12, 1)],
        )
        kinds = self.home.query("select distinct typeof(id), typeof(name), typeof(shoplistid), "
                                "typeof(amount), typeof(checkstate) from purchase")
        self.assertEqual(kinds, [("integer", "text", "integer", "integer", "integer")])
        self.assertEqual(self.home.query("select * from purref"), [])
        self.assertEqual(self.home.query("select * from reminders"), [])
        self.assertEqual(self.home.query("pragma integrity_check"), [("ok",)])


if __name__ == "__main__":
    unittest.main()
