# SPDX-License-Identifier: MIT
"""The language in which the installed program starts."""
import pathlib
import sys
import unittest

SOURCES = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(SOURCES / "tests" / "support"))
from desktop import Desktop, Home, Program, wait_for  # noqa: E402


class TestLanguages(unittest.TestCase):
    def setUp(self):
        self.home = Home()
        self.addCleanup(self.home.remove)
        self.desktop = Desktop()
        self.addCleanup(self.desktop.stop)

    def assert_starts_with(self, name, locale):
        program = Program(self.desktop, self.home, LC_ALL=locale)
        self.addCleanup(program.stop)
        program.wait_for_window()
        wait_for(f"the button {name}", lambda: program.find("button", name))
        program.stop()

    def test_locale_of_the_system(self):
        for name, locale in (("Покупки", "ru_RU.UTF-8"), ("Shopping", "en_GB.UTF-8"),
                             ("Shopping", "de_DE.UTF-8"), ("Shopping", "C")):
            with self.subTest(locale):
                self.assert_starts_with(name, locale)

    def test_chosen_language(self):
        self.home.write_settings(LanguageId=2)
        self.assert_starts_with("Магазины", "en_GB.UTF-8")


if __name__ == "__main__":
    unittest.main(verbosity=2)
