"""Who has the keyboard while something is open over the island or in it, and what a pointer that only passes leaves
behind: no key that was meant for something else does anything to a capture."""

import os
import signal
import unittest

import accessibility
import partners
from harness import SCREEN_HEIGHT, wait_for
from island import IslandTest, middle
from quenlio import QuenlioWithSettings

NAME_FIELD = "Filename"
COPY_FIELD = "File name:"
TICKS_HELD = 3  # a second and more
BAR_HEIGHT = 60


class Focus(IslandTest):
    def text(self, field):
        return accessibility.text(self.session, self.quenlio.process.pid, field)

    def wait_for_text(self, field, text):
        wait_for(lambda: self.text(field) == text or self.quenlio.must_run(), f"{text!r} in {field!r}")

    def begin_rename(self):
        self.session.key("Return")
        self.wait_to_say(NAME_FIELD)

    def point(self):
        """The pointer comes to the middle of the island, whatever comes of that."""
        island = self.quenlio.wait_for_island()
        self.session.move_pointer(island.x + island.width // 2, island.y + island.height // 2)

    def hold(self, key):
        """Long enough that the key has come many times over."""
        self.session.run(["xdotool", "keydown", key])
        self.addCleanup(self.session.run, ["xdotool", "keyup", key])
        self.quenlio.settle(TICKS_HELD)
        self.session.run(["xdotool", "keyup", key])


class KeysElsewhere(Focus):
    def setUp(self):
        super().setUp()
        self.newest, self.middle, self.oldest = self.start_with(3)
        self.enter()

    def assert_all_there(self, *others):
        for path in (self.newest, self.middle, self.oldest, *others):
            self.assertTrue(path.exists(), path)
        self.assertEqual(self.trashed(), [])

    def test_a_dialog_over_the_island_has_the_keys_that_are_typed_into_it(self):
        entry = partners.middle(self.open_share_menu()["Save a Copy…"])
        island = self.quenlio.wait_for_island()
        self.assertTrue(island.x <= entry[0] < island.x + island.width, "the pointer stays over the island")
        self.assertTrue(island.y <= entry[1] < island.y + island.height, "the pointer stays over the island")
        self.session.click(*entry)
        self.wait_to_say("Save a Copy")
        wait_for(lambda: partners.focused(self.session) != island.number, "the keyboard in the dialog")
        self.session.key("ctrl+a")
        self.session.key("BackSpace")
        self.wait_for_text(COPY_FIELD, "")
        self.session.type("my shot")
        self.wait_for_text(COPY_FIELD, "my shot")
        self.session.key("Escape")
        self.wait_not_to_say("Save a Copy")
        self.assert_all_there()
        self.assertFalse(self.quenlio.says("1 of 3"))

    def test_a_name_that_is_typed_stays_so_while_the_pointer_goes_and_comes(self):
        self.begin_rename()
        self.session.type("bill")
        self.leave()
        self.point()
        self.session.key("BackSpace")
        self.wait_for_text(NAME_FIELD, "bil")
        self.assert_all_there()

    def test_the_fields_own_menu_gives_the_keyboard_back_to_the_field(self):
        self.begin_rename()
        island = self.windows()
        self.session.move_pointer(*middle(self.find(NAME_FIELD)))
        self.session.run(["xdotool", "click", "3"])
        wait_for(lambda: self.windows() > island, "the field's menu")
        self.session.key("Escape")
        wait_for(lambda: self.windows() == island, "no menu")
        self.session.key("BackSpace")
        self.wait_for_text(NAME_FIELD, "")
        self.assert_all_there()

    def test_a_name_that_is_typed_outlasts_an_arrival(self):
        self.begin_rename()
        self.session.type("bill")
        added = self.capture(9)
        self.session.key("BackSpace")
        self.wait_for_text(NAME_FIELD, "bil")
        self.assert_all_there(added)
        self.session.key("Return")
        wait_for(self.newest.with_name("bil.png").exists, "the new name in the folder")
        self.assertTrue(added.exists())

    def test_a_key_right_after_return_finds_the_field(self):
        pid = self.quenlio.process.pid
        os.kill(pid, signal.SIGSTOP)  # both keys are waiting for it
        try:
            self.session.run(["xdotool", "key", "Return", "BackSpace"])
        finally:
            os.kill(pid, signal.SIGCONT)
        self.wait_to_say(NAME_FIELD)
        self.wait_for_text(NAME_FIELD, "")
        self.assert_all_there()

    def test_a_held_key_does_what_it_does_once(self):
        self.hold("space")
        self.wait_to_say("1 of 3")
        self.session.key("space")
        self.wait_not_to_say("1 of 3")
        self.wait_for_keyboard()
        self.hold("Return")
        self.wait_to_say(NAME_FIELD)
        self.session.key("Escape")
        self.wait_not_to_say(NAME_FIELD)
        self.hold("BackSpace")
        self.wait_for_trashed(self.newest)

    def test_arrows_go_along_the_strip_whatever_has_the_focus(self):
        self.session.key("Tab")
        self.session.key("Right")
        self.assert_previewed(self.middle)

    def test_a_preview_keeps_the_keyboard_when_a_capture_arrives(self):
        self.session.run(["xdotool", "key", "space", "mousemove", "5", "5"])
        self.capture(9)
        self.wait_to_say("1 of 3")
        self.assertNotEqual(partners.focused(self.session), self.quenlio.wait_for_island().number)
        self.session.key("End")
        self.wait_to_say("3 of 3")


class KeysPassingBy(Focus):
    def setUp(self):
        super().setUp()
        self.newest, self.older = self.start_with(2)
        self.other = partners.OtherWindow(self.session)
        self.addCleanup(self.other.end)
        self.other.focus()

    def wait_for_others_keyboard(self):
        wait_for(lambda: partners.focused(self.session) == self.other.number, "the keyboard in the other window")

    def test_a_pointer_that_only_passes_takes_the_keyboard_back_with_it(self):
        self.point()
        self.wait_for_keyboard()
        self.leave()
        self.wait_for_others_keyboard()
        self.session.key("BackSpace")
        wait_for(lambda: self.other.pressed("BackSpace") == 1, "the key in the other window")
        self.assertTrue(self.newest.exists())

    def test_a_key_on_the_island_keeps_the_keyboard_there(self):
        self.point()
        self.wait_for_keyboard()
        self.session.key("Right")
        self.assert_previewed(self.older)
        self.leave()
        self.session.key("Left")
        self.assert_previewed(self.newest)

    def put_away(self):
        island = self.quenlio.wait_for_island()
        self.session.run(["xdotool", "windowminimize", island.number])
        self.quenlio.wait_for_no_island()

    def test_a_capture_brings_an_island_back_that_was_put_away(self):
        self.put_away()
        self.capture(9)
        self.quenlio.wait_for_island()
        self.assertEqual(partners.focused(self.session), self.other.number)

    def test_a_second_start_brings_an_island_back_that_was_put_away(self):
        self.put_away()
        self.assertEqual(self.quenlio.spawn().wait(10), 0)
        self.quenlio.wait_for_island()
        self.wait_for_keyboard()


class Hiding(Focus):
    def start_hiding(self, mode, **settings):
        self.quenlio = QuenlioWithSettings(self.session, self.folder, islandDurationMode=mode, **settings)
        self.quenlio.start()

    def point_where_it_comes_up(self):
        self.session.move_pointer(1150, 670)

    def test_an_island_stays_under_its_open_menu_and_goes_when_the_pointer_is_elsewhere_by_then(self):
        self.start_hiding("hideWhenInactive")
        self.point_where_it_comes_up()
        self.capture(0)
        self.wait_for_keyboard()
        shown = self.windows()
        self.open_menu()
        self.quenlio.settle(TICKS_HELD)
        self.assertTrue(self.quenlio.island())
        self.session.key("Escape")
        wait_for(lambda: self.windows() == shown, "no menu")
        self.quenlio.settle(TICKS_HELD)
        self.assertTrue(self.quenlio.island())

        self.open_menu()
        self.leave()
        self.session.key("Escape")
        self.quenlio.wait_for_no_island()

    def start_renaming_and_let_it_go(self):
        """The capture whose name is half typed, on an island that has gone."""
        self.start_hiding("timed", islandDurationSeconds=1)
        self.point_where_it_comes_up()
        path = self.capture(0)
        self.wait_for_keyboard()
        self.begin_rename()
        self.session.type("half")
        self.wait_for_text(NAME_FIELD, "half")
        self.leave()
        self.quenlio.wait_for_no_island()
        return path

    def test_a_name_that_is_half_typed_waits_for_the_island_to_come_back(self):
        path = self.start_renaming_and_let_it_go()
        self.point_where_it_comes_up()
        self.assertEqual(self.quenlio.spawn().wait(10), 0)
        self.quenlio.wait_for_island()
        self.wait_for_keyboard()
        self.wait_for_text(NAME_FIELD, "half")
        self.session.key("BackSpace")
        self.session.type("f time")
        self.wait_for_text(NAME_FIELD, "half time")
        self.session.key("Return")
        wait_for(path.with_name("half time.png").exists, "the new name in the folder")
        self.assertEqual(self.trashed(), [])

    def test_an_island_that_comes_back_with_a_capture_is_about_that_one(self):
        path = self.start_renaming_and_let_it_go()
        self.point_where_it_comes_up()
        added = self.capture(1)
        self.wait_to_say(added.name)
        self.assertFalse(self.quenlio.says(NAME_FIELD))
        self.wait_for_keyboard()
        self.session.key("BackSpace")
        self.wait_for_trashed(added)
        self.assertTrue(path.exists())

    def test_an_island_goes_once_a_capture_has_been_dragged_out_of_it(self):
        self.start_hiding("hideWhenInactive")
        self.point_where_it_comes_up()
        path = self.capture(0)
        self.wait_for_keyboard()
        shown = self.windows()
        self.session.move_pointer(*middle(self.find(f"{path.name} preview")))
        self.session.press_button()
        self.addCleanup(self.session.release_button)
        self.session.move_by(-10, -6, steps=4)
        wait_for(lambda: self.windows() > shown, "the picture of what is dragged")
        self.session.move_pointer(600, 60)
        self.quenlio.settle(TICKS_HELD)
        self.assertTrue(self.quenlio.island())
        self.session.release_button()  # over nothing
        self.quenlio.wait_for_no_island()
        self.assertTrue(path.exists())

    def test_an_island_goes_once_it_has_been_moved_from_under_the_pointer(self):
        bar = partners.Bar(self.session, BAR_HEIGHT)
        self.addCleanup(bar.end)
        self.start_hiding("hideWhenInactive")
        self.session.move_pointer(1150, 670 - BAR_HEIGHT)
        self.capture(0)
        self.wait_for_keyboard()
        island = self.quenlio.wait_for_island()
        x, y, width, height = self.find("Move to Trash")["box"]
        self.session.move_pointer((x + width + self.find("Close")["box"][0]) // 2, y + height // 2)
        self.session.press_button()
        self.addCleanup(self.session.release_button)
        self.session.move_by(0, SCREEN_HEIGHT, steps=16)  # which the bar does not let it do
        wait_for(lambda: self.quenlio.wait_for_island().y > island.y, "the island at the bar")
        self.quenlio.settle(TICKS_HELD)
        self.assertTrue(self.quenlio.island())
        self.session.release_button()
        self.quenlio.wait_for_no_island()


if __name__ == "__main__":
    unittest.main()
