"""A test class with the island on the screen: a few captures in it, the pointer over it, and other programs around."""

import unittest
from pathlib import Path

import accessibility
import partners
import pictures
from harness import Session, wait_for
from quenlio import Quenlio

CELL_EDGE = 8  # pixels at the strip's ends, where cells fade
PREVIEW_ENDING = " preview"  # of the name that the preview goes by, after that of the file


class IslandTest(unittest.TestCase):
    """Each test has a program, a folder and an empty library of its own; a class shares one desktop."""

    @classmethod
    def setUpClass(cls):
        cls.session = Session()
        cls.addClassCleanup(cls.session.stop)
        cls.session.start()
        cls.clipboard = partners.Clipboard(cls.session)

    def setUp(self):
        self.session.move_pointer(5, 5)
        self.folder = self.session.mkdir(f"home/{self.id().rsplit('.', 1)[-1]}")
        self.quenlio = Quenlio(self.session, self.folder)
        self.addCleanup(self.end)

    def end(self):
        if self.quenlio.process:
            self.session.end(self.quenlio.process)

    # Captures

    def capture(self, number):
        """One that has arrived and is selected."""
        path = self.folder / f"Screenshot_20261115_21{number // 60:02}{number % 60:02}.png"
        self.session.write(path, pictures.png(number))
        self.quenlio.wait_for_arrival(path)
        self.assert_previewed(path)
        return path

    def start_with(self, count):
        """The running program with so many captures, in the order of the strip: the newest first."""
        self.quenlio.start()
        return [self.capture(number) for number in range(count)][::-1]

    # The island

    def enter(self):
        """The pointer comes into the island, which takes the keyboard."""
        island = self.quenlio.wait_for_island()
        self.session.move_pointer(5, 5)
        self.session.move_pointer(island.x + island.width // 2, island.y + island.height // 2)
        self.wait_for_keyboard()

    def leave(self):
        self.session.move_pointer(5, 5)

    def windows(self):
        """How many windows the program has on the screen, with menus and with what is dragged."""
        pid = str(self.quenlio.process.pid)
        return len(self.session.run(["xdotool", "search", "--onlyvisible", "--pid", pid], check=False).split())

    def wait_for_keyboard(self):
        wait_for(lambda: partners.focused(self.session) == self.quenlio.wait_for_island().number,
                 "the keyboard in the island")

    def objects(self):
        return self.quenlio.shown_objects()

    def find(self, name):
        return accessibility.find(self.session, self.quenlio.process.pid, name)

    def press(self, name, *modifiers):
        """Clicks the middle of what goes by that name, with these keys held."""
        self.session.click_holding(*middle(self.find(name)), modifiers)

    def press_cell(self, path, *modifiers):
        """Clicks a capture in the strip."""
        self.session.click_holding(*middle(self.cell(path)), modifiers)

    def cells_in_sight(self):
        """Those of the strip that a press would hit: others are scrolled away."""
        found = self.objects()
        left, _, width, _ = next(other["box"] for other in found if other["name"] == "Screenshots")
        return [cell for cell in found
                if cell["role"] == "list item" and left + CELL_EDGE <= middle(cell)[0] < left + width - CELL_EDGE]

    def cell(self, path):
        def in_sight():
            return next((cell for cell in self.cells_in_sight() if cell["name"] == Path(path).name), None)
        return wait_for(in_sight, f"the cell of {Path(path).name}")

    def wait_to_say(self, name):
        wait_for(lambda: self.quenlio.says(name) or self.quenlio.must_run(), f"something named {name!r}")

    def wait_not_to_say(self, name):
        wait_for(lambda: not self.quenlio.says(name) or self.quenlio.must_run(), f"nothing named {name!r}")

    # The share menu

    def open_menu(self):
        island = self.windows()
        self.session.key("ctrl+shift+s")
        wait_for(lambda: self.windows() > island, "the menu")

    def open_share_menu(self):
        """The boxes of its entries, by their names."""
        reader = partners.ScreenReader(self.session)
        self.addCleanup(reader.end)
        self.open_menu()
        return reader.entries()

    # What is selected

    def previewed(self):
        """The name of the file in the preview."""
        return next((found["name"].removesuffix(PREVIEW_ENDING) for found in self.objects()
                     if found["name"].endswith(PREVIEW_ENDING)), None)

    def assert_previewed(self, path):
        wait_for(lambda: self.previewed() == Path(path).name or self.quenlio.must_run(),
                 f"{Path(path).name} in the preview")

    def assert_selected(self, *paths):
        """Exactly these are selected, in the order of the strip: that is what is copied."""
        self.clipboard.put("nothing yet")
        wait_for(lambda: self.clipboard.get("UTF8_STRING") == b"nothing yet", "another program's copy")
        self.session.key("ctrl+c")
        wait_for(lambda: self.clipboard.files(), "the selected files on the clipboard")
        self.assertEqual(self.clipboard.files(), [partners.address(path) for path in paths])

    # Files

    def trashed(self):
        """Where each file in the trash was, as another program tells it."""
        return sorted(line.split(" ", 2)[2] for line in self.session.run(["trash-list"]).splitlines()
                      if f"{self.folder}/" in line)

    def wait_for_trashed(self, *paths):
        wait_for(lambda: self.trashed() == sorted(map(str, paths)), "exactly these in the trash")


def middle(found):
    return partners.middle(found["box"])
