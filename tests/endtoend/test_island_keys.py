"""Every key that the island answers to, pressed for real, and what comes of it in other programs."""

import subprocess
import unittest

import partners
import pictures
from harness import wait_for
from island import IslandTest


class Keys(IslandTest):
    def setUp(self):
        super().setUp()
        self.newest, self.middle, self.oldest = self.start_with(3)
        self.enter()

    def key(self, name):
        self.session.key(name)

    def assert_still_listening(self, then):
        """Keys are taken one after the other: when this one has had its effect, those before have had theirs."""
        self.key("Right")
        self.assert_previewed(then)

    # Rename

    def test_return_and_enter_rename(self):
        for key in ("Return", "KP_Enter"):
            self.key(key)
            self.wait_to_say("Filename")
            self.key("Escape")
            self.wait_not_to_say("Filename")

    def test_return_does_nothing_with_several_selected(self):
        self.key("shift+Right")
        self.wait_to_say("2 selected")
        self.key("Return")
        self.assert_still_listening(self.oldest)
        self.assertFalse(self.quenlio.says("Filename"))

    def test_return_with_a_modifier_is_another_key(self):
        for key in ("shift+Return", "ctrl+Return", "alt+KP_Enter"):
            self.key(key)
        self.assert_still_listening(self.middle)
        self.assertFalse(self.quenlio.says("Filename"))

    # Preview

    def test_space_opens_the_preview_and_closes_it(self):
        for _ in range(2):
            self.key("space")
            self.wait_to_say("1 of 3")
            self.assertTrue(self.quenlio.says(self.newest.name))
            self.key("space")
            self.wait_not_to_say("1 of 3")
            self.wait_for_keyboard()
        self.assert_still_listening(self.middle)
        self.key("space")
        self.wait_to_say("2 of 3")

    def test_the_preview_follows_the_arrows(self):
        self.key("space")
        self.wait_to_say("1 of 3")
        for key, path, position in (("Right", self.middle, "2 of 3"), ("Right", self.oldest, "3 of 3"),
                                    ("Left", self.middle, "2 of 3")):
            self.key(key)
            self.wait_to_say(position)
            self.assert_previewed(path)

    def test_the_preview_has_arrows_of_its_own(self):
        self.key("space")
        self.wait_to_say("1 of 3")
        self.leave()
        self.key("Right")
        self.wait_to_say("2 of 3")
        self.key("End")
        self.wait_to_say("3 of 3")
        self.key("Escape")
        self.wait_not_to_say("3 of 3")
        self.assertTrue(self.quenlio.island())

    # Undo

    def test_control_z_takes_a_deletion_back_whatever_else_is_held(self):
        for key in ("ctrl+z", "ctrl+shift+z", "ctrl+alt+z"):
            self.key("BackSpace")
            wait_for(lambda: not self.newest.exists(), "the capture to leave its folder")
            self.key(key)
            wait_for(self.newest.exists, "the capture back in its folder")
            self.assert_previewed(self.newest)
        self.assertEqual(self.trashed(), [])

    # Handing out

    def open_share_menu(self):
        self.key("ctrl+s")  # is none
        return super().open_share_menu()

    def test_control_shift_s_shares_with_a_program_that_opens_the_file(self):
        viewer = partners.Viewer(self.session)
        entries = self.open_share_menu()
        self.assertEqual(list(entries)[0], partners.Viewer.NAME)
        self.assertEqual(list(entries)[-2:], ["Copy Path", "Save a Copy…"])
        self.session.click(*partners.middle(entries[partners.Viewer.NAME]))
        wait_for(viewer.opened, "the viewer with the file")
        self.assertEqual(viewer.opened(), [str(self.newest)])
        self.assertTrue(self.quenlio.island())

    def test_the_share_menu_copies_the_path(self):
        entries = self.open_share_menu()
        self.session.click(*partners.middle(entries["Copy Path"]))
        wait_for(lambda: self.clipboard.get("UTF8_STRING").decode().strip() == str(self.newest), "the copied path")

    def test_the_share_menu_goes_with_escape(self):
        island = self.windows()
        self.open_share_menu()
        self.key("Escape")
        wait_for(lambda: self.windows() == island, "no menu")
        self.assert_still_listening(self.middle)

    def test_control_c_copies_one_capture_as_picture_and_as_file(self):
        self.key("ctrl+c")
        wait_for(lambda: "image/png" in self.clipboard.kinds(), "the capture on the clipboard")
        copied = self.session.write(self.session.root / "copied.png", self.clipboard.get("image/png"))
        compared = subprocess.run(["compare", "-metric", "AE", copied, self.newest, "null:"], capture_output=True,
                                  timeout=20, check=False)
        self.assertEqual((compared.returncode, compared.stderr), (0, b"0"))
        self.assertEqual(self.clipboard.get("text/uri-list"), f"{partners.address(self.newest)}\r\n".encode())
        self.assertEqual(self.clipboard.get("x-special/gnome-copied-files"),
                         f"copy\n{partners.address(self.newest)}".encode())
        self.assertEqual(self.clipboard.get("text/plain"), str(self.newest).encode())

    def test_control_c_copies_several_as_files_alone(self):
        self.key("shift+Right")
        self.wait_to_say("2 selected")
        self.assert_selected(self.newest, self.middle)
        self.assertNotIn("image/png", self.clipboard.kinds())
        addresses = "\n".join(map(partners.address, (self.newest, self.middle)))
        self.assertEqual(self.clipboard.get("x-special/gnome-copied-files"), f"copy\n{addresses}".encode())

    def test_control_c_copies_also_under_a_keyboard_without_latin_letters(self):
        self.addCleanup(self.session.run, ["setxkbmap", "us"])
        self.session.run(["setxkbmap", "ru,us"])
        self.key("54")  # no letter: the place of the key
        self.assert_still_listening(self.middle)
        self.session.run(["xdotool", "keydown", "37", "key", "54", "keyup", "37"])
        wait_for(lambda: self.clipboard.files() == [partners.address(self.middle)], "the capture on the clipboard")

    def test_control_o_shows_the_selected_files_in_the_file_manager(self):
        manager = partners.FileManager(self.session)
        self.addCleanup(manager.end)
        self.key("ctrl+o")
        wait_for(manager.shown, "a request to the file manager")
        self.key("shift+Right")
        self.wait_to_say("2 selected")
        self.key("ctrl+shift+o")  # is none
        self.key("ctrl+o")
        wait_for(lambda: len(manager.shown()) > 1, "a second request to the file manager")
        self.assertEqual(manager.shown(), [[partners.address(self.newest)],
                                           [partners.address(self.newest), partners.address(self.middle)]])

    def test_control_e_breaks_nothing(self):
        self.key("ctrl+e")
        self.assert_still_listening(self.middle)
        self.assertTrue(self.quenlio.island())

    # Selection

    def test_arrows_move_the_selection_and_stop_at_the_ends(self):
        for key, path in (("Left", self.newest), ("Right", self.middle), ("Right", self.oldest),
                          ("Right", self.oldest), ("Left", self.middle)):
            self.key(key)
            self.assert_previewed(path)
        self.assert_selected(self.middle)

    def test_shift_and_arrows_stretch_the_selection_and_shrink_it(self):
        self.key("shift+Right")
        self.key("shift+Right")
        self.wait_to_say("3 selected")
        self.assert_previewed(self.oldest)
        self.key("shift+Left")
        self.wait_to_say("2 selected")
        self.assert_previewed(self.middle)
        self.assert_selected(self.newest, self.middle)

    def test_arrows_with_another_modifier_are_other_keys(self):
        for key in ("ctrl+Right", "alt+Right", "ctrl+shift+Right", "super+Right"):
            self.key(key)
        self.assert_still_listening(self.middle)
        self.assert_selected(self.middle)

    # Trash

    def test_backspace_and_delete_throw_away(self):
        self.key("BackSpace")
        self.wait_for_trashed(self.newest)
        self.key("Right")  # nothing is selected any more: to the second of the two
        self.assert_previewed(self.oldest)
        self.key("Delete")
        self.wait_for_trashed(self.newest, self.oldest)
        self.assertTrue(self.middle.exists())

    def test_delete_throws_all_selected_away(self):
        self.key("shift+Right")
        self.wait_to_say("2 selected")
        self.key("shift+Delete")  # is none
        self.key("Delete")
        self.wait_for_trashed(self.newest, self.middle)
        self.assertTrue(self.oldest.exists())

    # What is no key of the island's

    def test_escape_does_not_close(self):
        self.key("Escape")
        self.assert_still_listening(self.middle)
        self.assertTrue(self.quenlio.island())

    def test_keys_meant_for_another_program_are_left_alone(self):
        other = partners.OtherWindow(self.session)
        self.addCleanup(other.end)
        other.focus()
        self.key("BackSpace")
        wait_for(lambda: other.pressed("BackSpace") == 1, "the key in the other window")
        # Also under an island that has just appeared, as long as the pointer is not on it.
        added = self.capture(9)
        self.assertEqual(partners.focused(self.session), other.number)
        self.key("BackSpace")
        wait_for(lambda: other.pressed("BackSpace") == 2, "the key in the other window")
        self.quenlio.settle(2)
        for path in (added, self.newest, self.middle, self.oldest):
            self.assertTrue(path.exists(), path)

        self.enter()
        self.key("BackSpace")
        self.wait_for_trashed(added)
        self.assertEqual(other.pressed("BackSpace"), 2)


class NothingSelected(IslandTest):
    def setUp(self):
        super().setUp()
        self.manager = partners.FileManager(self.session)
        self.addCleanup(self.manager.end)

    def test_an_empty_library_has_nothing_for_any_key(self):
        (path,) = self.start_with(1)
        self.enter()
        self.session.key("Delete")
        self.wait_for_trashed(path)
        self.clipboard.put("kept")
        island = self.windows()
        for key in ("Return", "KP_Enter", "space", "ctrl+shift+s", "ctrl+c", "ctrl+e", "ctrl+o", "Left", "Right",
                    "shift+Left", "shift+Right", "BackSpace", "Delete"):
            self.session.key(key)
        self.quenlio.settle(2)
        self.assertEqual(self.windows(), island)
        self.assertFalse(self.quenlio.says("Filename"))
        self.assertEqual(self.trashed(), [str(path)])
        self.assertEqual(self.clipboard.get("UTF8_STRING"), b"kept")
        self.assertEqual(self.manager.shown(), [])
        # They have all been there: one that there is something for does it.
        self.session.key("ctrl+z")
        self.assert_previewed(path)
        self.assertTrue(path.exists())

    def test_with_none_selected_the_newest_is_meant(self):
        newest, older, oldest = self.start_with(3)
        self.enter()
        self.session.key("BackSpace")
        self.wait_for_trashed(newest)
        self.session.key("ctrl+o")
        wait_for(self.manager.shown, "a request to the file manager")
        self.assertEqual(self.manager.shown(), [[partners.address(older)]])
        self.session.key("Return")
        self.wait_to_say("Filename")
        self.session.type("renamed")
        self.session.key("Return")
        renamed = older.with_name("renamed.png")
        wait_for(renamed.exists, "the new name")
        self.session.key("BackSpace")
        self.wait_for_trashed(newest, renamed)
        self.assertTrue(oldest.exists())

    def test_nothing_is_taken_back_when_nothing_was_thrown_away(self):
        newest, older = self.start_with(2)
        self.enter()
        self.session.key("ctrl+z")
        self.session.key("Right")
        self.assert_previewed(older)
        self.assertEqual(self.quenlio.strip(), [newest.name, older.name])


if __name__ == "__main__":
    unittest.main()
