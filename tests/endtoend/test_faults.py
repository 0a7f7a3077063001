"""What may go wrong with folders and files while the program runs or before it starts."""

import json
import os
import shutil
import unittest

import pictures
from harness import Session, wait_for
from quenlio import Quenlio

# More than two turns of the folder poll, in turns of the request poll.
POLL_HAS_LOOKED = 5


class Faults(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.session = Session()
        cls.addClassCleanup(cls.session.stop)
        cls.session.start()

    def setUp(self):
        self.folder = self.session.mkdir(f"home/{self.id().rsplit('.', 1)[-1]}/Captures")
        self.quenlio = Quenlio(self.session, self.folder)
        self.addCleanup(self.end)
        self.number = 0

    def end(self):
        if self.quenlio.process:
            self.session.end(self.quenlio.process)

    def assert_next_capture_is_shown(self):
        self.number += 1
        path = self.session.write(self.folder / f"Screenshot_20261115_2104{self.number:02}.png",
                                  pictures.png(self.number))
        self.quenlio.wait_for_arrival(path)
        pictures.wait_until_shown(self.quenlio, self.number)
        pictures.wait_until_whole(self.quenlio, path)
        self.assertEqual(self.quenlio.detections(path), 1)
        return path

    def make_folder(self):
        self.session.mkdir(str(self.folder.relative_to(self.session.root)))

    def test_a_folder_that_is_deleted_and_made_again_is_watched_again(self):
        self.quenlio.start()
        self.assert_next_capture_is_shown()
        shutil.rmtree(self.folder)
        self.quenlio.settle(POLL_HAS_LOOKED)
        self.make_folder()
        self.quenlio.settle(POLL_HAS_LOOKED)
        self.assert_next_capture_is_shown()

    def test_a_folder_that_is_replaced_at_once_is_watched_again(self):
        self.quenlio.start()
        self.assert_next_capture_is_shown()
        shutil.rmtree(self.folder)
        self.make_folder()
        self.assert_next_capture_is_shown()

    def test_a_folder_that_cannot_be_read_is_told_and_watched_again_when_it_can(self):
        self.quenlio.start()
        self.assert_next_capture_is_shown()
        self.folder.chmod(0)
        self.assertEqual(self.quenlio.spawn().wait(10), 0)  # a second start shows the island again
        wait_for(lambda: self.quenlio.says("Folder Access Needed"), "the island to ask for the folder")
        self.quenlio.settle(POLL_HAS_LOOKED)
        self.folder.chmod(0o755)
        self.assert_next_capture_is_shown()
        self.assertFalse(self.quenlio.says("Folder Access Needed"))

    def settings_files(self):
        return sorted((self.session.home / ".config/quenlio").glob(f"*{self.quenlio.suite}*.json"))

    def test_damaged_settings_count_as_empty_and_are_kept_aside(self):
        self.quenlio.start()
        self.assert_next_capture_is_shown()
        self.assertEqual(self.quenlio.stop(), 0)
        (settings,) = self.settings_files()
        json.loads(settings.read_text())
        damage = b'{"settings.islandEnabled": {"bool": fal\x00\xff'
        settings.write_bytes(damage)
        self.quenlio.start()
        self.assert_next_capture_is_shown()
        self.assertEqual(self.quenlio.stop(), 0)
        json.loads(settings.read_text())
        aside = [path for path in settings.parent.iterdir() if path != settings and path.read_bytes() == damage]
        self.assertEqual(len(aside), 1)

    def test_a_damaged_pin_file_counts_as_empty(self):
        pins = self.session.write(self.quenlio.support / "pinned.json", b'[{"path": "/nowhere.png", "isPinned": tr')
        self.quenlio.start()
        self.assert_next_capture_is_shown()
        wait_for(lambda: json.loads(pins.read_text()) == [], "a whole pin file")

    def test_pins_that_cannot_be_written_stay_as_they_were(self):
        kept = self.session.write(self.folder / "Screenshot_20261115_090000.png", pictures.png(0))
        before = json.dumps([{"path": str(kept), "isPinned": True}]).encode()
        pins = self.session.write(self.quenlio.support / "pinned.json", before)
        self.quenlio.support.chmod(0o555)
        self.quenlio.start()
        self.assert_next_capture_is_shown()
        self.assertEqual(pins.read_bytes(), before)
        self.assertEqual(os.listdir(self.quenlio.support), ["pinned.json"])
        self.assertIn("Failed to persist pinned items: ", self.session.log_text())


if __name__ == "__main__":
    unittest.main()
