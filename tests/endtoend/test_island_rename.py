"""Renaming in the island, with real keys and a real pointer, as the folder shows it."""

import unittest

import accessibility
from harness import wait_for
from island import IslandTest, middle


class Rename(IslandTest):
    def setUp(self):
        super().setUp()
        self.path, self.other = self.start_with(2)
        self.bytes = self.path.read_bytes()
        self.enter()

    def begin(self):
        self.session.key("Return")
        self.wait_for_field()

    def wait_for_field(self):
        self.wait_to_say("Filename")

    def field(self):
        """What stands in the field."""
        return accessibility.text(self.session, self.quenlio.process.pid, "Filename")

    def wait_for_draft(self, text):
        wait_for(lambda: self.field() == text or self.quenlio.must_run(), f"{text!r} in the field")

    def press_starting_with(self, words):
        found = wait_for(lambda: next((o for o in self.objects() if o["name"].startswith(words)), None),
                         f"something named {words!r}")
        self.session.click(*middle(found))

    def hover_name(self):
        name = next(o for o in self.objects() if o["name"] == self.path.name and o["role"] == "label")
        self.session.move_pointer(*middle(name))

    def assert_renamed(self, name):
        renamed = self.path.with_name(name)
        wait_for(renamed.exists, f"{name} in the folder")
        self.assertFalse(self.path.exists())
        self.assertEqual(renamed.read_bytes(), self.bytes)
        self.wait_not_to_say("Filename")
        self.wait_to_say(name)
        self.assert_previewed(renamed)
        return renamed

    def assert_not_renamed(self):
        self.wait_not_to_say("Filename")
        self.wait_to_say(self.path.name)
        self.assertEqual(sorted(self.folder.iterdir()), sorted([self.path, self.other]))

    def test_return_begins_and_return_confirms(self):
        self.begin()
        self.wait_for_draft(self.path.stem)
        self.session.type("Invoice of May")  # the stem is selected, so that it is replaced
        self.wait_for_draft("Invoice of May")
        self.session.key("Return")
        self.assert_renamed("Invoice of May.png")
        # The keys are the island's again.
        self.session.key("Right")
        self.assert_previewed(self.other)

    def test_the_pencil_begins_and_the_button_confirms(self):
        self.hover_name()
        self.press("Rename")
        self.wait_for_field()
        self.session.type("By hand")
        self.wait_for_draft("By hand")
        self.press_starting_with("Save filename")
        self.assert_renamed("By hand.png")

    def test_the_button_cancels(self):
        self.begin()
        self.session.type("Never mind")
        self.wait_for_draft("Never mind")
        self.press_starting_with("Cancel rename")
        self.assert_not_renamed()

    def test_escape_cancels_and_leaves_the_island(self):
        self.begin()
        self.session.type("Never mind")
        self.wait_for_draft("Never mind")
        self.session.key("Escape")
        self.assert_not_renamed()
        self.assertTrue(self.quenlio.island())
        self.session.key("Right")
        self.assert_previewed(self.other)

    def test_what_cannot_be_a_name_is_refused_in_place(self):
        self.begin()
        self.session.key("BackSpace")
        self.wait_for_draft("")
        self.session.key("Return")
        self.wait_to_say("Enter a name")
        self.assertTrue(self.quenlio.says("Filename"))
        self.assertTrue(self.path.exists())
        self.session.type("Better")
        self.wait_not_to_say("Enter a name")
        self.session.key("Return")
        self.assert_renamed("Better.png")

    def test_keys_edit_the_text_and_not_the_library(self):
        self.begin()
        self.session.key("End")
        self.session.key("BackSpace")
        self.wait_for_draft(self.path.stem[:-1])
        for key in ("Home", "Delete"):
            self.session.key(key)
        self.wait_for_draft(self.path.stem[1:-1])
        self.session.type("a b")
        self.wait_for_draft("a b" + self.path.stem[1:-1])
        self.session.key("ctrl+z")
        wait_for(lambda: self.field() != "a b" + self.path.stem[1:-1], "the typing taken back")
        self.assertEqual(sorted(self.folder.iterdir()), sorted([self.path, self.other]))
        self.assertEqual(self.trashed(), [])
        self.assertFalse(self.quenlio.says("1 of 2"))

    def test_a_pointer_that_leaves_and_comes_back_leaves_the_keyboard_to_the_text(self):
        self.begin()
        self.session.type("Draft")
        self.wait_for_draft("Draft")
        self.leave()
        self.enter()
        self.session.key("BackSpace")
        self.wait_for_draft("Draf")
        # So does a press on what is no control, and the buttons' own keyboard.
        row = self.find("Filename")["box"]
        self.session.key("Tab")
        self.leave()
        self.enter()
        self.session.key("BackSpace")
        self.wait_for_draft("Dra")
        island = self.quenlio.wait_for_island()
        self.session.click(island.x + island.width // 2, row[1] + row[3] + 1)
        self.session.key("BackSpace")
        self.wait_for_draft("Dr")
        self.assertEqual(self.trashed(), [])
        self.assertEqual(sorted(self.folder.iterdir()), sorted([self.path, self.other]))
        self.session.key("Return")
        self.assert_renamed("Dr.png")

    def test_a_name_that_is_taken_gets_a_number_and_no_file_is_lost(self):
        others = self.other.read_bytes()
        self.begin()
        self.session.type(self.other.stem)
        self.session.key("Return")
        self.assert_renamed(f"{self.other.stem} 2.png")
        self.assertEqual(self.other.read_bytes(), others)

    def test_slashes_and_colons_become_dashes(self):
        self.begin()
        self.session.type("a/b:c")
        self.session.key("Return")
        self.assert_renamed("a-b-c.png")

    def test_a_renamed_capture_is_no_arrival(self):
        self.begin()
        self.session.type("Screenshot from 2026-11-15 21-04-33")  # as a capture is named
        self.session.key("Return")
        renamed = self.assert_renamed("Screenshot from 2026-11-15 21-04-33.png")
        self.quenlio.settle()
        self.assertEqual(self.quenlio.detections(renamed), 0)
        self.assertEqual(self.quenlio.count("screenshot_detected"), 2)


if __name__ == "__main__":
    unittest.main()
