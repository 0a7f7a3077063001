"""A long random life of the library: captures arrive, are selected, renamed, thrown away and brought back. After each
step every capture that the island lists is there, and whatever ever arrived is, byte for byte, in the folder or in the
trash.

QUENLIO_SOAK_STEPS and QUENLIO_SOAK_SEED make it longer or another one.
"""

import os
import random
import re
import unittest
from pathlib import Path

import pictures
from harness import wait_for
from island import IslandTest
from quenlio import QuenlioWithSettings

STEPS = int(os.environ.get("QUENLIO_SOAK_STEPS", 200))
SEED = int(os.environ.get("QUENLIO_SOAK_SEED", 1))
REMEMBERED = 30  # deletions
# In KB: what a capture that is listed or can be brought back holds, and what caches and the allocator may still take
# after a quarter of the steps.
THUMBNAIL = 280 * 220 * 4 // 1024
GROWTH = 3000


class Soak(IslandTest):
    def setUp(self):
        super().setUp()
        self.trash = self.session.home / ".local/share/Trash/files"
        self.quenlio = QuenlioWithSettings(self.session, self.folder, islandDurationMode="neverHide")
        self.quenlio.start()
        self.random = random.Random(SEED)
        self.arrived = set()  # their bytes
        self.deletions = 0  # that can be taken back
        self.made = 0

    def files(self):
        return sorted(self.folder.iterdir())

    def cells(self):
        """Their names. The program's answer also says that it has done what came before."""
        return self.quenlio.strip()

    # Steps

    def arrive(self):
        self.made += 1
        data = pictures.png(self.made, 64, 40, text={"Title": str(self.made)})
        path = self.folder / f"Screenshot_20261115_{self.made:06}.png"
        self.arrived.add(data)
        self.session.write(path, data)
        self.quenlio.wait_for_arrival(path)

    def select(self):
        self.session.key(self.random.choice(("Left", "Right", "Right", "shift+Left", "shift+Right", "shift+Right")))

    def throw_away(self):
        if not self.cells():
            return
        before = len(self.files())
        self.session.key(self.random.choice(("BackSpace", "Delete")))
        wait_for(lambda: len(self.files()) < before, "a capture to leave its folder")
        self.cells()
        self.deletions = min(self.deletions + before - len(self.files()), REMEMBERED)

    def undo(self):
        if not self.deletions:
            return
        before = len(self.files())
        self.session.key("ctrl+z")
        wait_for(lambda: len(self.files()) == before + 1, "a capture back in its folder")
        self.deletions -= 1

    def rename(self):
        if not self.cells():
            return
        self.press_cell(self.random.choice(self.cells_in_sight())["name"])
        self.session.key("Return")
        self.wait_to_say("Filename")
        self.session.type(f"Name {self.random.randrange(5)}")
        self.session.key("Return")
        self.wait_not_to_say("Filename")

    # What holds after each

    def assert_nothing_is_lost(self):
        for name in self.cells():
            self.assertTrue((self.folder / name).exists(), name)
        kept = [path.read_bytes() for place in (self.folder, self.trash) if place.exists()
                for path in place.iterdir()]
        self.assertEqual(len(kept), len(self.arrived))
        self.assertEqual(set(kept), self.arrived)

    def memory(self):
        """What the program has for itself beside the thumbnails, in KB. Other programs that run do not change it."""
        told = Path(f"/proc/{self.quenlio.process.pid}/smaps_rollup").read_text()
        dirty = int(re.search(r"^Private_Dirty:\s+(\d+)", told, re.MULTILINE).group(1))
        return dirty - THUMBNAIL * (len(self.cells()) + self.deletions)

    def test_nothing_is_ever_lost(self):
        steps = (self.arrive, self.select, self.select, self.throw_away, self.undo, self.rename)
        self.arrive()
        self.enter()
        early = None
        for number in range(STEPS):
            step = self.random.choice(steps)
            try:
                step()
                self.assert_nothing_is_lost()
            except AssertionError as failure:
                raise AssertionError(f"{step.__name__}, step {number} of seed {SEED}: {failure}") from failure
            if number == STEPS // 4:
                early = self.memory()
        self.assertLess(self.memory(), early + GROWTH, f"seed {SEED}")
        self.assertEqual(self.quenlio.count("screenshot_duplicate_ignored"), 0)


if __name__ == "__main__":
    unittest.main()
