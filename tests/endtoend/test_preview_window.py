"""The preview window with files of every kind, by what it shows on the screen."""

import unittest

import pictures
from harness import wait_for
from island import IslandTest

KINDS = ("jpeg", "tiff", "pdf", "heic")
SIZE_8K = (7680, 4320)
CAPTION, INSET = 40, 8  # above the picture, and around it
# The island stands before the lower right corner of the largest window, where it hides a seventh of a quarter.
WITH_ISLAND = 0.8
STEP = 7  # so many pixels are enough
PATIENCE = 30  # seconds


class PreviewWindow(IslandTest):
    def window(self):
        """That of the preview: the program's other one is the island."""
        listed = self.session.run(["xdotool", "search", "--onlyvisible", "--pid", str(self.quenlio.process.pid)],
                                  check=False)
        island = self.quenlio.wait_for_island()
        windows = [self.quenlio.measure(number) for number in listed.split() if number != island.number]
        return next((window for window in windows if window), None)

    def shown(self):
        """The quarters of the picture in it, which has to be there whole."""
        window = self.window()
        if not window:
            return None
        box = (window.x + INSET, window.y + CAPTION, window.width - 2 * INSET, window.height - CAPTION - INSET)
        return pictures.recognised(pictures.pixels(self.session, box), box[2], WITH_ISLAND, STEP)

    def assert_shows(self, number, position):
        self.wait_to_say(position)
        wait_for(lambda: self.shown() == pictures.quarters(number) or self.quenlio.must_run(),
                 f"picture {number} in the preview window", PATIENCE)

    def save(self, number, kind, data):
        path = self.session.write(self.folder / f"Screenshot 2026-11-15 at 21.04.{number:02}.{kind}", data)
        self.quenlio.wait_for_arrival(path)
        self.assert_previewed(path)

    def test_every_kind_of_file_is_shown_whole_in_its_place(self):
        self.quenlio.start()
        for number, kind in enumerate(KINDS, 1):
            self.save(number, kind, pictures.converted(self.session, number, kind))
        self.save(len(KINDS) + 1, "png", pictures.png(len(KINDS) + 1, *SIZE_8K))
        self.enter()
        self.session.key("space")
        count = len(KINDS) + 1
        for number in range(count, 0, -1):
            self.assert_shows(number, f"{count - number + 1} of {count}")
            self.session.key("Right")
        # And back, to what is no neighbour any more when it is come to again.
        for number in range(2, count + 1):
            self.session.key("Left")
            self.assert_shows(number, f"{count - number + 1} of {count}")


if __name__ == "__main__":
    unittest.main()
