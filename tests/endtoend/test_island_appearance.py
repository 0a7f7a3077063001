"""The island follows what the user wants the desktop to look like, from its start on and while it is up."""

import unittest

import partners
import pictures
from harness import wait_for
from island import IslandTest
from quenlio import QuenlioWithSettings

# Of the smallest island: its body beside the preview, and the row with the name.
BODY = (3, 70, 5, 60)
NAME = (12, 167, 208, 24)
DARK, LIGHT = 90, 165  # of 255: a dark island is darker, a light one lighter, before a grey desktop
MORE = 10  # by which words stand out more with increased contrast


class Appearance(IslandTest):
    def setUp(self):
        super().setUp()
        self.portal = partners.Portal(self.session)
        self.addCleanup(self.portal.end)

    def start(self):
        self.quenlio = QuenlioWithSettings(self.session, self.folder, islandDurationMode="neverHide")
        self.quenlio.start()
        pictures.wait_until_whole(self.quenlio, self.capture(1))

    def pixels(self, part):
        island = self.quenlio.wait_for_island()
        x, y, width, height = part
        return pictures.pixels(self.session, (island.x + x, island.y + y, width, height))

    def tone(self):
        """How light the island is."""
        data = self.pixels(BODY)
        return sum(data) / len(data)

    def contrast(self):
        """How far the name's letters are from what they stand on."""
        data = self.pixels(NAME)
        return max(data) - min(data)

    def wait_until_dark(self):
        wait_for(lambda: self.tone() < DARK or self.quenlio.must_run(), "a dark island")

    def wait_until_light(self):
        wait_for(lambda: self.tone() > LIGHT or self.quenlio.must_run(), "a light island")

    def test_it_is_dark_from_its_start_where_the_desktop_is(self):
        self.portal.set("color-scheme", self.portal.DARK)
        self.start()
        self.wait_until_dark()

    def test_it_turns_with_the_desktop(self):
        self.portal.set("color-scheme", self.portal.LIGHT)
        self.start()
        self.wait_until_light()
        self.portal.set("color-scheme", self.portal.DARK)
        self.wait_until_dark()
        self.portal.set("color-scheme", self.portal.LIGHT)
        self.wait_until_light()

    def test_it_takes_more_contrast_and_less_again(self):
        self.start()
        for scheme, wait in ((self.portal.LIGHT, self.wait_until_light), (self.portal.DARK, self.wait_until_dark)):
            with self.subTest(scheme=scheme):
                self.portal.set("color-scheme", scheme)
                wait()
                wait_for(lambda: self.contrast() == self.contrast(), "the end of the turning")
                usual = self.contrast()
                self.portal.set("contrast", 1)
                wait_for(lambda: self.contrast() > usual + MORE or self.quenlio.must_run(), "more contrast")
                self.portal.set("contrast", 0)
                wait_for(lambda: self.contrast() == usual or self.quenlio.must_run(), "the usual contrast")


if __name__ == "__main__":
    unittest.main()
