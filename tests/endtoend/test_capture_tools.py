"""Each common capture tool, writing as it writes: into a folder that is kept for screenshots, and into one that holds
all sorts of files.
"""

import time
import unittest

import pictures
from arrivals import RunningQuenlio

# The island itself covers a part of the lower right quarter of what a tool captures.
WITH_ISLAND = 0.6


class CaptureTools(RunningQuenlio):
    FOLDER = "home/Pictures/Screenshots"

    def capture(self, argv):
        """The one new file that the tool has left in the folder, and the number of the picture on the desktop."""
        number = next(self.numbers)
        pictures.paint_desktop(self.session, number)
        before = set(self.folder.iterdir())
        self.session.run(argv, cwd=self.folder)
        (path,) = set(self.folder.iterdir()) - before
        return path, number

    def assert_captures_are_shown(self, tools):
        stamp = time.strftime("%Y-%m-%d %H-%M-%S")
        commands = {
            "scrot": ["scrot"],
            "maim": ["maim", f"{int(time.time())}.png"],  # the name its manual shows
            "gnome-screenshot": ["gnome-screenshot", "-f", self.folder / f"Screenshot from {stamp}.png"],
            "import": ["import", "-window", "root", f"Screenshot at {stamp}.png"],
        }
        for tool in tools:
            with self.subTest(tool=tool):
                path, number = self.capture(commands[tool])
                self.assert_shows(path, number, WITH_ISLAND)


class KeptForScreenshots(CaptureTools):
    def test_each_tools_capture_is_shown(self):
        self.assert_captures_are_shown(("scrot", "maim", "gnome-screenshot", "import"))


class AmongOtherFiles(CaptureTools):
    """Where the folder's name says nothing, a capture's own name or texts have to."""

    FOLDER = "home/Desktop"

    def test_a_tools_capture_is_shown_and_another_picture_is_not(self):
        other = self.save("Invoice.png", pictures.png(0))
        self.assert_captures_are_shown(("scrot", "gnome-screenshot"))
        self.quenlio.settle()
        self.assertEqual(self.quenlio.detections(other), 0)


class WithoutCompositor(CaptureTools):
    COMPOSITOR = False

    def test_a_tools_capture_is_shown_in_the_corner(self):
        path, number = self.capture(["scrot"])
        self.assert_shows(path, number, WITH_ISLAND)
        island = self.quenlio.island()
        self.assertEqual(island.box, (1280 - 232 - 12, 800 - 232 - 12, 232, 232))


if __name__ == "__main__":
    unittest.main()
