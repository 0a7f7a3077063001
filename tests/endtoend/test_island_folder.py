"""The screenshot folder is taken away and given back while the program runs."""

import os
import unittest

from harness import wait_for
from island import IslandTest

NEEDED = "Folder Access Needed"


class FolderAccess(IslandTest):
    def start_with_an_older_capture(self):
        """One that is too old to count as new when the watching begins anew, and the island closed."""
        (path,) = self.start_with(1)
        self.close()
        self.quenlio.settle(10)  # five seconds
        return path

    def show(self):
        """The user asks for the island by starting the program again."""
        self.assertEqual(self.quenlio.spawn().wait(10), 0)
        self.quenlio.wait_for_island()

    def close(self):
        self.press("Close")
        self.quenlio.wait_for_no_island()

    def assert_asks_for_access(self):
        self.wait_to_say(NEEDED)
        self.wait_to_say("Allow Access")
        said = {found["name"] for found in self.objects()}
        self.assertIn("Allow access to your screenshot folder so the island can display captures.", said)
        self.assertIsNone(self.previewed())
        # The rest of the toolbar stays.
        self.assertIn("Close", said)

    def allow(self):
        self.press("Allow Access")
        self.wait_not_to_say(NEEDED)

    def give_back_access(self):
        self.folder.chmod(0o755)

    def test_a_locked_folder_is_asked_for_until_it_can_be_read_again(self):
        path = self.start_with_an_older_capture()
        self.addCleanup(self.give_back_access)
        self.folder.chmod(0)
        self.show()
        self.assert_asks_for_access()
        self.press("Allow Access")  # and nobody has
        self.quenlio.settle(2)
        self.assert_asks_for_access()

        self.give_back_access()
        self.allow()
        self.assert_previewed(path)
        self.capture(1)

    def test_a_folder_that_went_away_is_watched_again_when_it_is_back(self):
        self.start_with_an_older_capture()
        elsewhere = self.folder.with_name("elsewhere")
        os.rename(self.folder, elsewhere)
        self.show()
        self.assert_asks_for_access()
        os.rename(elsewhere, self.folder)
        self.allow()
        added = self.capture(2)
        wait_for(lambda: added.name in self.quenlio.strip(), "the new capture in the strip")

    def test_the_next_showing_finds_the_folder_by_itself(self):
        path = self.start_with_an_older_capture()
        self.addCleanup(self.give_back_access)
        self.folder.chmod(0)
        self.show()
        self.assert_asks_for_access()
        self.close()
        self.give_back_access()
        self.show()
        self.assert_previewed(path)
        self.assertFalse(self.quenlio.says(NEEDED))


if __name__ == "__main__":
    unittest.main()
