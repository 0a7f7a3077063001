"""A long history of deletions and of taking them back, and what the program's own moves are not: arrivals."""

import os
import unittest

import pictures
from harness import wait_for
from island import IslandTest
from quenlio import QuenlioWithSettings

REMEMBERED = 30


class TrashHistory(IslandTest):
    def entries(self):
        """Everything in the home trash, of every test."""
        trash = self.session.home / ".local/share/Trash"
        return sorted(entry.relative_to(trash) for part in ("files", "info") for entry in (trash / part).glob("*"))

    def test_thirty_of_thirty_one_deletions_are_taken_back_newest_first(self):
        count = REMEMBERED + 1
        self.quenlio = QuenlioWithSettings(self.session, self.folder, maxHistory=count + 1)
        self.quenlio.start()
        paths = []
        for number in range(count):
            path = self.folder / f"Screenshot_20261115_2104{number:02}.png"
            paths.append(self.session.write(path, pictures.png(number, 64, 40)))
            self.quenlio.wait_for_arrival(path)
        paths.reverse()
        before = {path: path.read_bytes() for path in paths}
        self.enter()
        for _ in range(count - 1):
            self.session.key("shift+Right")
        self.wait_to_say(f"{count} selected")
        self.session.key("BackSpace")
        wait_for(lambda: not any(self.folder.iterdir()), "an empty folder", 30)
        self.assertEqual(self.trashed(), sorted(map(str, paths)))

        for back, path in enumerate(reversed(paths[1:]), 1):
            self.session.key("ctrl+z")
            wait_for(path.exists, f"{path.name} back in its folder")
            self.assertEqual(len(os.listdir(self.folder)), back)
        self.session.key("ctrl+z")
        self.session.key("Right")  # taken after it
        self.assert_previewed(paths[2])
        self.assertEqual(sorted(self.folder.iterdir()), sorted(paths[1:]))
        self.assertEqual(self.trashed(), [str(paths[0])])
        for path in paths[1:]:
            self.assertEqual(path.read_bytes(), before[path])
        self.quenlio.settle()
        self.assertEqual(self.quenlio.count("screenshot_detected"), count)
        self.assertEqual(self.quenlio.count("screenshot_duplicate_ignored"), 0)

    def test_an_emptied_trash_uses_the_deletion_up(self):
        newest, older = self.start_with(2)
        self.enter()
        self.session.key("BackSpace")
        self.wait_for_trashed(newest)
        self.session.key("Right")
        self.assert_previewed(older)
        self.session.run(["trash-empty"])
        self.wait_for_trashed()
        self.session.key("BackSpace")
        self.wait_for_trashed(older)
        self.session.key("ctrl+z")
        wait_for(older.exists, "the one that is still there")
        self.session.key("ctrl+z")  # of what is gone for good
        self.session.key("BackSpace")
        self.wait_for_trashed(older)
        self.assertEqual(os.listdir(self.folder), [])

    def test_undo_leaves_nothing_behind_in_the_trash(self):
        before = self.entries()
        (path,) = self.start_with(1)
        self.enter()
        for _ in range(3):
            self.session.key("Delete")
            self.wait_for_trashed(path)
            self.assertEqual(len(self.entries()), len(before) + 2)
            self.session.key("ctrl+z")
            wait_for(path.exists, "the capture back in its folder")
            self.assertEqual(self.entries(), before)

    def test_undo_reaches_past_a_capture_that_came_meanwhile(self):
        newest, older = self.start_with(2)
        self.enter()
        self.session.key("BackSpace")
        self.wait_for_trashed(newest)
        self.leave()
        added = self.capture(7)
        self.enter()
        self.session.key("ctrl+z")
        wait_for(newest.exists, "the capture back in its folder")
        self.assert_previewed(newest)
        self.assertEqual(sorted(self.folder.iterdir()), sorted([newest, older, added]))


if __name__ == "__main__":
    unittest.main()
