"""Captures dragged out of the island into the window of another program."""

import unittest

import partners
from harness import wait_for
from island import IslandTest, middle


class DragOut(IslandTest):
    def setUp(self):
        super().setUp()
        self.target = partners.DropTarget(self.session)
        self.addCleanup(self.target.end)

    def pick_up(self, name):
        """Presses on what goes by that name and moves until the drag has begun."""
        before = self.windows()
        self.session.move_pointer(*middle(self.find(name)))
        self.session.press_button()
        self.addCleanup(self.session.release_button)
        self.session.move_by(-10, -6, steps=4)
        wait_for(lambda: self.windows() > before or self.quenlio.must_run(), "the picture of what is dragged")

    def carry_over(self):
        x, y, width, height = self.target.BOX
        self.session.move_pointer(x + width // 2 - 10, y + height // 2)
        self.session.move_by(10, 0, steps=2)

    def drop(self):
        self.carry_over()
        wait_for(self.target.is_entered, "the drag over the other window")
        self.session.release_button()

    def assert_dropped(self, *paths):
        wait_for(self.target.drops, "the drop in the other program")
        self.assertEqual(self.target.drops(), [("copy", [partners.address(path) for path in paths])])
        for path in paths:
            self.assertTrue(path.exists(), path)

    def test_one_capture_is_dragged_out_of_the_preview(self):
        newest, older = self.start_with(2)
        self.pick_up(f"{newest.name} preview")
        self.drop()
        self.assert_dropped(newest)
        # It was a copy: the library is as it was, and the island has its keys again.
        self.enter()
        self.session.key("Right")
        self.assert_previewed(older)
        self.assertEqual(self.quenlio.strip(), [newest.name, older.name])

    def test_a_drag_is_no_click(self):
        (path,) = self.start_with(1)
        self.pick_up(f"{path.name} preview")
        self.drop()
        self.assert_dropped(path)
        self.quenlio.settle(2)  # longer than a click waits for a second one
        self.assertFalse(self.quenlio.says("1 of 1"))

    def test_seven_captures_are_dragged_out_together(self):
        paths = self.start_with(7)
        self.enter()
        for _ in paths[1:]:
            self.session.key("shift+Right")
        self.wait_to_say("7 selected")
        self.pick_up(f"{paths[-1].name} preview")
        self.drop()
        self.assert_dropped(*paths)

    def test_a_capture_is_dragged_out_of_the_strip(self):
        newest, older = self.start_with(2)
        self.pick_up(older.name)
        self.drop()
        self.assert_dropped(older)
        self.assertTrue(newest.exists())

    def test_the_island_stays_while_something_is_dragged_out_of_it(self):
        (path,) = self.start_with(1)
        self.pick_up(f"{path.name} preview")
        self.session.move_pointer(600, 60)
        self.quenlio.settle(2)
        self.assertTrue(self.quenlio.island())
        self.session.release_button()  # over nothing
        self.quenlio.settle(2)
        self.assertEqual(self.target.drops(), [])
        # And once more, so that it is the place that made the difference.
        self.pick_up(f"{path.name} preview")
        self.drop()
        self.assert_dropped(path)

    def test_moving_the_island_drops_nothing(self):
        (path,) = self.start_with(1)
        island = self.quenlio.wait_for_island()
        x, y, width, height = self.find("Move to Trash")["box"]
        right = self.find("Close")["box"][0]
        self.session.move_pointer((x + width + right) // 2, y + height // 2)
        self.session.press_button()
        self.addCleanup(self.session.release_button)
        self.session.move_by(-20, -20)
        self.carry_over()
        wait_for(lambda: self.quenlio.wait_for_island().x < island.x - 100, "the island under way")
        self.session.release_button()
        self.quenlio.settle(2)
        self.assertFalse(self.target.is_entered())
        self.assertEqual(self.target.drops(), [])
        self.capture(5)  # brings it back to its corner
        wait_for(lambda: self.quenlio.wait_for_island().box == island.box, "the island in its corner")
        self.pick_up(path.name)
        self.drop()
        self.assert_dropped(path)


if __name__ == "__main__":
    unittest.main()
