"""What script/run shows where there is no display: it has to end well with the program, and badly with a wrong one."""

import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

from quenlio import program_path

DEMONSTRATION = Path(__file__).with_name("demonstration.py")
SECONDS = 3  # in which a program that does not show the capture is given up


class Demonstration(unittest.TestCase):
    def setUp(self):
        self.folder = Path(tempfile.mkdtemp(prefix="quenlio-demonstration-"))
        self.addCleanup(shutil.rmtree, self.folder)
        self.folder.chmod(0o755)  # the program runs as another user
        self.picture = self.folder / "pictures/screen.png"

    def run_with(self, program, *arguments):
        return subprocess.run([sys.executable, DEMONSTRATION, program, self.picture, *arguments],
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                              timeout=60, check=False)

    def assert_screen_is_saved(self):
        self.assertTrue(self.picture.read_bytes().startswith(b"\x89PNG"))

    def test_it_ends_well_when_the_island_shows_the_capture(self):
        done = self.run_with(program_path())
        self.assertEqual(done.returncode, 0, done.stdout)
        self.assertIn("\nThe island shows ", done.stdout)
        self.assertIn("  screenshot_detected  ", done.stdout)
        self.assert_screen_is_saved()

    def test_it_ends_badly_with_a_program_that_watches_another_folder(self):
        for name in (program_path().name, "quenlio-decoder"):
            shutil.copy2(program_path().with_name(name), self.folder / name)
        astray = self.folder / "astray"
        astray.write_text('#!/bin/sh\nmkdir "$HOME/Elsewhere"\nexport QUENLIO_TEST_SCREENSHOT_DIR="$HOME/Elsewhere"\n'
                          f'exec "{self.folder / program_path().name}" "$@"\n')
        astray.chmod(0o755)
        done = self.run_with(astray, str(SECONDS))
        self.assertEqual(done.returncode, 1, done.stdout)
        self.assertIn("\nthere is no island on the screen\n", done.stdout)
        self.assert_screen_is_saved()


if __name__ == "__main__":
    unittest.main()
