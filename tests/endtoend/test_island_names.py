"""File names that are hard to handle, through all that is done with a capture."""

import os
import unittest

import partners
import pictures
from harness import wait_for
from island import IslandTest
from quenlio import Quenlio

LONGEST = 255  # bytes
NAMES = {
    "that is no text": b"Screenshot \xff\xfe 2026-11-15.png",
    "of two lines": b"Screenshot of\ntwo lines.png",
    "as long as may be": b"Screenshot ".ljust(LONGEST - 4, b"x") + b".png",
    "of quotes and escapes": b"Screenshot '\"%41\\n $HOME #?.png",
}


class Names(IslandTest):
    def setUp(self):
        super().setUp()
        # Kept for screenshots, so that every name is one.
        self.folder = self.session.mkdir("home/Pictures/Screenshots")
        self.quenlio = Quenlio(self.session, self.folder)

    def arrive(self, name, number):
        path = self.folder / os.fsdecode(name)
        self.session.write(path, pictures.png(number))
        self.quenlio.wait_for_arrival(path)
        wait_for(lambda: self.quenlio.state()["selectedScreenshotPath"] == str(path), "the capture's selection")
        pictures.wait_until_shown(self.quenlio, number)
        return path

    def notes(self):
        """Of what is in the trash."""
        return sorted((self.session.home / ".local/share/Trash/info").glob("*"))

    def test_a_capture_is_copied_shown_thrown_away_brought_back_and_renamed(self):
        manager = partners.FileManager(self.session)
        self.addCleanup(manager.end)
        self.quenlio.start()
        for number, (kind, name) in enumerate(NAMES.items(), 1):
            with self.subTest(kind=kind):
                path = self.arrive(name, number)
                before = path.read_bytes()
                self.enter()
                self.session.key("ctrl+c")
                wait_for(lambda: self.clipboard.files() == [partners.address(path)], "the capture on the clipboard")
                self.assertEqual(self.clipboard.get("text/plain"), os.fsencode(path))
                self.session.key("ctrl+o")
                wait_for(lambda: [partners.address(path)] in manager.shown(), "a request to the file manager")

                notes = self.notes()
                self.session.key("BackSpace")
                wait_for(lambda: not path.exists(), "the capture to leave its folder")
                wait_for(lambda: len(self.notes()) == len(notes) + 1, "its note in the trash")
                self.session.key("ctrl+z")
                wait_for(path.exists, "the capture back in its folder")
                self.assertEqual(path.read_bytes(), before)
                wait_for(lambda: self.notes() == notes, "the end of its note")

                self.session.key("Return")
                self.wait_to_say("Filename")
                self.session.type(f"Plain {number}")
                self.session.key("Return")
                renamed = path.with_name(f"Plain {number}.png")
                wait_for(renamed.exists, "the capture under a plain name")
                self.assertFalse(path.exists())
                self.assertEqual(renamed.read_bytes(), before)
                self.leave()
        self.quenlio.settle()
        self.assertEqual(self.quenlio.count("screenshot_detected"), len(NAMES))


if __name__ == "__main__":
    unittest.main()
