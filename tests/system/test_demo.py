# SPDX-License-Identifier: MIT
"""The demo, on a machine without a display."""
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

SOURCES = pathlib.Path(__file__).resolve().parents[2]
STEPS = ["main-page", "tracked-stores", "map", "tracking", "reminder", "shopping", "checked-off",
         "finished"]
PNG = b"\x89PNG\r\n\x1a\n"


class TestDemo(unittest.TestCase):
    def setUp(self):
        # A copy, with its own pictures and data.
        folder = tempfile.TemporaryDirectory(prefix="trolleo-demo-")
        self.addCleanup(folder.cleanup)
        self.sources = pathlib.Path(folder.name) / "sources"
        for part in ("scripts/demo", "tests/support", "resources/demo"):
            shutil.copytree(SOURCES / part, self.sources / part)
        self.temporary = pathlib.Path(folder.name) / "temporary"
        self.temporary.mkdir()

    def run_demo(self):
        environment = {name: value for name, value in os.environ.items()
                       if name not in ("DISPLAY", "WAYLAND_DISPLAY")}
        environment["TMPDIR"] = str(self.temporary)
        return subprocess.run([sys.executable, "-W", "ignore", self.sources / "scripts/demo/demo.py"],
                              env=environment, capture_output=True, text=True, timeout=200)

    def pictures(self):
        return sorted((self.sources / "build" / "demo").iterdir())

    def test_whole_story(self):
        demo = self.run_demo()
        self.assertEqual((demo.returncode, demo.stderr), (0, ""))
        lines = demo.stdout.splitlines()
        self.assertEqual([line.split(":")[0] for line in lines[:-1]],
                         [f"{number} {step}" for number, step in enumerate(STEPS, 1)])
        self.assertRegex(lines[4], r"Sunrise Bakery \(at 2\d\d\.\d\d meters\), \d\.\d s after")
        self.assertEqual(lines[-1], "The pictures are in build/demo.")
        self.assertEqual([picture.name for picture in self.pictures()],
                         [f"{number}-{step}.png" for number, step in enumerate(STEPS, 1)])
        contents = {picture.read_bytes() for picture in self.pictures()}
        self.assertEqual(len(contents), len(STEPS))
        self.assertTrue(all(content.startswith(PNG) for content in contents))
        # Its home, its receiver and its screen have been removed.
        self.assertEqual(list(self.temporary.iterdir()), [])

    def test_failing_step_is_named(self):
        sample = self.sources / "resources" / "demo" / "sample.sql"
        sample.write_text(sample.read_text() + "delete from shoplist where id = 3;")
        demo = self.run_demo()
        self.assertEqual(demo.returncode, 1)
        self.assertIn('the step "tracked stores" failed', demo.stderr)
        self.assertEqual([picture.name for picture in self.pictures()], ["1-main-page.png"])
        self.assertEqual(list(self.temporary.iterdir()), [])


if __name__ == "__main__":
    unittest.main(verbosity=2)
