"""What was copied outlives the program where the desktop has a clipboard manager."""

import unittest

import partners
from harness import wait_for
from island import IslandTest


class AfterTheEnd(IslandTest):
    def setUp(self):
        super().setUp()
        manager = partners.ClipboardManager(self.session)
        self.addCleanup(manager.end)

    def copy(self, *paths):
        self.session.key("ctrl+c")
        wait_for(lambda: self.clipboard.files() == [partners.address(path) for path in paths], "the copied files")

    def assert_kept(self, *paths):
        """By somebody else than the program."""
        self.assertEqual(self.quenlio.stop(), 0)
        addresses = [partners.address(path) for path in paths]
        self.assertEqual(self.clipboard.files(), addresses)
        self.assertEqual(self.clipboard.get("x-special/gnome-copied-files"), "\n".join(["copy", *addresses]).encode())
        self.assertEqual(self.clipboard.get("text/plain"), "\n".join(map(str, paths)).encode())

    def test_one_capture_is_still_there_as_picture_and_as_file(self):
        (path,) = self.start_with(1)
        self.enter()
        self.copy(path)
        self.assert_kept(path)
        self.assertEqual(self.clipboard.get("image/png"), path.read_bytes())

    def test_several_are_still_there_as_files(self):
        newest, older = self.start_with(2)
        self.enter()
        self.session.key("shift+Right")
        self.wait_to_say("2 selected")
        self.copy(newest, older)
        self.assert_kept(newest, older)
        self.assertNotIn("image/png", self.clipboard.kinds())


if __name__ == "__main__":
    unittest.main()
