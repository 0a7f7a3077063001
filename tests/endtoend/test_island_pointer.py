"""The island under a real pointer: how it comes and goes, where it is dragged, what its strip and its toolbar do."""

import time
import unittest

import partners
from harness import SCREEN_HEIGHT, SCREEN_WIDTH, wait_for
from island import IslandTest, middle
from quenlio import PANEL_SIDES, QuenlioWithSettings
from ring import ring

MARGIN = 12
SIZES = dict(zip(("extraSmall", "small", "medium", "large", "xLarge"), PANEL_SIDES))


def corner(side):
    return (SCREEN_WIDTH - side - MARGIN, SCREEN_HEIGHT - side - MARGIN, side, side)


class ComingAndGoing(IslandTest):
    def start(self, **settings):
        self.quenlio = QuenlioWithSettings(self.session, self.folder, **settings)
        self.quenlio.start()

    def ring(self):
        """How much of the ring around the close glyph is left, or nothing when there is no ring."""
        return ring(self.session, self.close)

    def find_close(self):
        self.close = self.find("Close")["box"]

    def test_a_countdown_shows_as_a_ring_and_ends_with_the_island(self):
        self.start(islandDurationMode="timed", islandDurationSeconds=8)
        self.capture(1)
        self.find_close()
        left = []
        while self.quenlio.island():
            if (share := self.ring()) is not None:
                left.append(share)
        self.assertGreater(len(left), 5)
        self.assertGreater(left[0], left[len(left) // 2])
        self.assertGreater(left[len(left) // 2], left[-1])
        self.assertLess(left[-1], 0.4)
        rises = [after - before for before, after in zip(left, left[1:])]
        self.assertLess(max(rises), 0.05, left)

    def test_the_pointer_holds_the_countdown_and_leaving_begins_it_anew(self):
        self.start(islandDurationMode="timed", islandDurationSeconds=6)
        self.capture(1)
        self.find_close()
        wait_for(lambda: (self.ring() or 0) > 0, "the ring")
        self.enter()
        wait_for(lambda: self.ring() is None, "no ring under the pointer")
        self.quenlio.settle(14)  # seven seconds
        self.assertTrue(self.quenlio.island())
        left = time.monotonic()
        self.leave()
        wait_for(lambda: (self.ring() or 0) > 0.6, "the ring anew")
        self.quenlio.wait_for_no_island()
        self.assertGreater(time.monotonic() - left, 5.9)

    def test_it_can_leave_as_soon_as_the_pointer_does(self):
        self.start(islandDurationMode="hideWhenInactive", islandDurationSeconds=30)
        self.capture(1)
        self.quenlio.wait_for_no_island()
        self.session.move_pointer(SCREEN_WIDTH - 100, SCREEN_HEIGHT - 100)
        self.capture(2)
        self.wait_for_keyboard()
        self.find_close()
        self.quenlio.settle(4)
        self.assertTrue(self.quenlio.island())
        self.assertIsNone(self.ring())
        left = time.monotonic()
        self.leave()
        while self.quenlio.island():
            self.assertIsNone(self.ring())
        gone = time.monotonic() - left
        self.assertGreater(gone, 0.75)
        self.assertLess(gone, 5)

    def test_it_can_stay_until_it_is_closed(self):
        self.start(islandDurationMode="neverHide", islandDurationSeconds=1)
        self.capture(1)
        self.find_close()
        self.quenlio.settle(5)
        self.assertIsNone(self.ring())
        self.enter()
        self.leave()
        self.quenlio.settle(5)
        self.assertIsNone(self.ring())
        self.press("Close")
        self.quenlio.wait_for_no_island()

    def test_another_mode_holds_at_once(self):
        self.start(islandDurationMode="neverHide", islandDurationSeconds=2)
        self.capture(1)
        self.find_close()
        self.assertIsNone(self.ring())
        self.quenlio.set(islandDurationMode="timed")
        wait_for(lambda: (self.ring() or 0) > 0, "the ring")
        self.quenlio.set(islandDurationMode="neverHide")
        wait_for(lambda: self.ring() is None, "no ring")
        self.quenlio.settle(5)
        self.assertTrue(self.quenlio.island())
        self.quenlio.set(islandDurationMode="hideWhenInactive")
        self.quenlio.wait_for_no_island()

    def test_it_takes_another_size_where_it_is(self):
        self.start(islandDurationMode="neverHide", islandSize="xLarge")
        self.capture(1)
        for size in ("xLarge", "large", "medium", "small", "extraSmall"):
            self.quenlio.set(islandSize=size)
            wait_for(lambda side=SIZES[size]: self.quenlio.wait_for_island().box == corner(side),
                     f"the {size} island in its corner")
            self.assertTrue(self.quenlio.says("Close"))

    def test_the_library_keeps_so_many_captures(self):
        self.start(maxHistory=2)
        first, second, third = [self.capture(number) for number in range(3)]
        wait_for(lambda: self.quenlio.strip() == [third.name, second.name], "two captures in the strip")
        self.assertTrue(first.exists())


class Handling(IslandTest):
    def handle(self):
        """An empty place of the toolbar, by which the panel is dragged."""
        x, y, width, height = self.find("Move to Trash")["box"]
        right = self.find("Close")["box"][0]
        self.assertGreater(right - x - width, 2, "there is no handle")
        return (x + width + right) // 2, y + height // 2

    def drag(self, dx, dy):
        self.session.move_pointer(*self.handle())
        self.session.press_button()
        self.addCleanup(self.session.release_button)
        self.session.move_by(dx, dy)
        self.session.release_button()

    def wait_for_place(self, x, y):
        wait_for(lambda: self.quenlio.wait_for_island().box[:2] == (x, y), f"the island at {x}, {y}")

    def test_it_is_dragged_by_its_toolbar_and_the_next_capture_brings_it_back(self):
        self.start_with(1)
        x, y, side, _ = self.quenlio.wait_for_island().box
        self.assertEqual((x, y, side, side), corner(side))
        self.drag(-300, -200)
        self.wait_for_place(x - 300, y - 200)
        self.leave()
        self.capture(1)
        self.wait_for_place(x, y)

    def test_it_is_not_dragged_off_the_screen(self):
        self.start_with(1)
        side = self.quenlio.wait_for_island().width
        self.drag(40, 60)
        self.wait_for_place(SCREEN_WIDTH - side, SCREEN_HEIGHT - side)
        self.drag(-SCREEN_WIDTH, -SCREEN_HEIGHT)
        self.wait_for_place(0, 0)

    def test_it_keeps_its_place_while_it_is_only_hovered(self):
        self.start_with(1)
        box = self.quenlio.wait_for_island().box
        for _ in range(2):
            self.enter()
            self.leave()
        self.assertEqual(self.quenlio.wait_for_island().box, box)


class Strip(IslandTest):
    def setUp(self):
        super().setUp()
        self.paths = self.start_with(4)
        self.enter()

    def test_a_click_selects(self):
        for index in (2, 0, 1):
            self.press_cell(self.paths[index])
            self.assert_previewed(self.paths[index])
            self.assert_selected(self.paths[index])

    def test_shift_and_click_selects_all_between(self):
        self.press_cell(self.paths[1])
        self.assert_previewed(self.paths[1])
        self.press_cell(self.paths[3], "shift")
        self.wait_to_say("3 selected")
        self.assert_selected(*self.paths[1:])
        # From the same end to the other side.
        self.press_cell(self.paths[0], "shift")
        self.wait_to_say("2 selected")
        self.assert_selected(*self.paths[:2])

    def test_control_and_click_selects_one_more_or_less(self):
        self.press_cell(self.paths[2], "ctrl")
        self.wait_to_say("2 selected")
        self.assert_previewed(self.paths[2])
        self.press_cell(self.paths[3], "ctrl")
        self.wait_to_say("3 selected")
        self.assert_selected(self.paths[0], self.paths[2], self.paths[3])
        self.press_cell(self.paths[3], "ctrl")
        self.wait_to_say("2 selected")
        self.assert_previewed(self.paths[0])
        self.assert_selected(self.paths[0], self.paths[2])

    def test_control_shift_and_click_adds_all_between(self):
        self.press_cell(self.paths[3])
        self.press_cell(self.paths[1], "ctrl")
        self.wait_to_say("2 selected")
        self.press_cell(self.paths[0], "ctrl", "shift")
        self.wait_to_say("3 selected")
        self.assert_selected(self.paths[0], self.paths[1], self.paths[3])


class Preview(IslandTest):
    def test_a_click_opens_the_preview_window_and_a_second_one_does_not(self):
        newest, _ = self.start_with(2)
        self.enter()
        self.press(f"{newest.name} preview")
        self.wait_to_say("1 of 2")
        self.session.key("Escape")
        self.wait_not_to_say("1 of 2")
        # A double click is for the editor alone.
        x, y = middle(self.find(f"{newest.name} preview"))
        self.session.run(["xdotool", "mousemove", str(x), str(y), "click", "--repeat", "2", "--delay", "40", "1"])
        self.quenlio.settle(2)
        self.assertFalse(self.quenlio.says("1 of 2"))


class Toolbar(IslandTest):
    def setUp(self):
        super().setUp()
        self.newest, self.older = self.start_with(2)

    def test_copy(self):
        self.press("Copy")
        wait_for(lambda: self.clipboard.files() == [partners.address(self.newest)], "the capture on the clipboard")

    def test_edit_breaks_nothing(self):
        self.press("Edit")
        self.press("Copy")
        wait_for(lambda: self.clipboard.files() == [partners.address(self.newest)], "the capture on the clipboard")

    def test_share(self):
        reader = partners.ScreenReader(self.session)
        self.addCleanup(reader.end)
        island = self.windows()
        self.press("Share")
        wait_for(lambda: self.windows() > island, "the menu")
        self.assertIn("Copy Path", reader.entries())
        self.session.key("Escape")
        wait_for(lambda: self.windows() == island, "no menu")

    def test_view_in_folder(self):
        manager = partners.FileManager(self.session)
        self.addCleanup(manager.end)
        self.press("View in Folder")
        wait_for(manager.shown, "a request to the file manager")
        self.assertEqual(manager.shown(), [[partners.address(self.newest)]])

    def test_move_to_trash(self):
        self.press("Move to Trash")
        self.wait_for_trashed(self.newest)
        self.assertTrue(self.older.exists())

    def test_close_takes_the_first_click_also_while_another_window_is_used(self):
        other = partners.OtherWindow(self.session)
        self.addCleanup(other.end)
        other.focus()
        self.press("Close")
        self.quenlio.wait_for_no_island()
        self.assertTrue(self.newest.exists())

    def test_each_control_has_a_tooltip(self):
        for name, help_text in (("Copy", "Copy (Ctrl+C)"), ("Edit", "Edit (Ctrl+E)"), ("Share", "Share (Ctrl+Shift+S)"),
                                ("View in Folder", "View in Folder (Ctrl+O)"),
                                ("Move to Trash", "Move to Trash (Backspace)")):
            self.session.move_pointer(*middle(self.find(name)))
            self.wait_to_say(help_text)
        self.leave()
        self.wait_not_to_say("Move to Trash (Backspace)")


if __name__ == "__main__":
    unittest.main()
