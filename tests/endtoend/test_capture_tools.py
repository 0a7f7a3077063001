"""Each common capture tool, writing as it writes, into a folder that is kept for screenshots."""

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

    def test_each_tools_capture_is_shown(self):
        stamp = time.strftime("%Y-%m-%d %H-%M-%S")
        tools = {
            "scrot": ["scrot"],
            "maim": ["maim", f"{int(time.time())}.png"],  # the name its manual shows
            "gnome-screenshot": ["gnome-screenshot", "-f", self.folder / f"Screenshot from {stamp}.png"],
            "import": ["import", "-window", "root", f"Screenshot at {stamp}.png"],
        }
        for tool, argv in tools.items():
            with self.subTest(tool=tool):
                path, number = self.capture(argv)
                self.assert_shows(path, number, WITH_ISLAND)


class WithoutCompositor(CaptureTools):
    COMPOSITOR = False

    def test_each_tools_capture_is_shown(self):
        path, number = self.capture(["scrot"])
        self.assert_shows(path, number, WITH_ISLAND)
        island = self.quenlio.island()
        self.assertEqual(island.box, (1280 - 232 - 12, 800 - 232 - 12, 232, 232))


if __name__ == "__main__":
    unittest.main()
