"""The program's start and end, and the inputs of a scripted run."""

import os
import signal
import unittest

import accessibility
import pictures
from harness import Session, pace, wait_for
from quenlio import Quenlio


class Requests(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.session = Session()
        cls.addClassCleanup(cls.session.stop)
        cls.session.start()
        cls.elsewhere = cls.session.mkdir("home/elsewhere")

    def setUp(self):
        self.folder = self.session.mkdir(f"home/{self.id().rsplit('.', 1)[-1]}")
        self.quenlio = Quenlio(self.session, self.folder)
        self.addCleanup(self.end)

    def end(self):
        if self.quenlio.process:
            self.session.end(self.quenlio.process)

    def capture(self, number):
        return self.session.write(self.elsewhere / f"Screenshot {self.quenlio.run_id} {number}.png",
                                  pictures.png(number))

    def assert_shows(self, path, number):
        self.quenlio.wait_for_arrival(path)
        pictures.wait_until_shown(self.quenlio, number)
        pictures.wait_until_whole(self.quenlio, path)
        self.assertEqual(self.quenlio.state()["latestScreenshotPath"], str(path))
        self.assertEqual(self.quenlio.detections(path), 1)

    # Inputs

    def test_the_launch_argument_is_an_arrival(self):
        path = self.capture(1)
        self.quenlio.start("--release-test-ingest", path)
        self.assert_shows(path, 1)
        self.assertEqual(self.quenlio.count("release_test_launch_ingest_requested", path=path), 1)

    def test_a_notification_is_an_arrival_and_one_without_a_path_is_nothing(self):
        path = self.capture(2)
        self.quenlio.start()
        ingest = "com.quenlio.release-test.ingest-screenshot"
        self.session.notify(ingest, "{'other': <'nothing'>}")
        self.session.notify(ingest, "{'path': <int32 7>}")
        self.session.notify(ingest, "{'path': <''>}")
        self.session.notify("com.quenlio.release-test.something-else", f"{{'path': <'{self.capture(3)}'>}}")
        self.session.notify(ingest, f"{{'path': <'{path}'>}}")
        self.assert_shows(path, 2)
        self.assertEqual(self.quenlio.count("screenshot_detected"), 1)

    def test_a_request_file_is_an_arrival_and_is_consumed(self):
        path = self.capture(4)
        self.quenlio.start()
        self.quenlio.request(f"  {path}\n")
        self.assert_shows(path, 4)
        self.assertEqual(self.quenlio.count("release_test_request_consumed"), 1)
        self.assertFalse((self.quenlio.diagnostics / "ingest-screenshot-request.txt").exists())

    def test_a_blank_request_stays_and_an_update_check_is_consumed(self):
        self.quenlio.start()
        file = self.quenlio.diagnostics / "ingest-screenshot-request.txt"
        self.quenlio.request(" \n\n")
        wait_for(lambda: self.quenlio.count("release_test_request_detected") >= 2, "two looks at the blank request")
        self.assertTrue(file.exists())
        self.quenlio.request("__check_for_updates__\n")
        wait_for(lambda: self.quenlio.count("release_test_update_check_consumed") == 1, "the update check")
        self.assertFalse(file.exists())
        self.assertEqual(self.quenlio.count("screenshot_detected"), 0)

    def test_seeds_are_in_the_library_from_the_start_and_show_nothing(self):
        seeds = []
        for number, kind in enumerate(("png", "jpeg", "pdf")):
            data = pictures.converted(self.session, number, kind)
            seeds.append(str(self.session.write(self.folder / f"Seed {9 - number}.{kind}", data)))
            pace(0.03)  # their births are apart
        self.session.write(self.folder / "Seed 0.gif", pictures.converted(self.session, 0, "gif"))
        self.session.mkdir(f"{self.folder.relative_to(self.session.root)}/Folder.png")
        self.quenlio.start()
        told = [event["metadata"]["path"] for event in self.quenlio.events()
                if event["name"] == "release_test_seed_ingested_on_launch"]
        self.assertEqual(told, seeds)
        self.assertEqual(self.quenlio.state()["screenshotCount"], 3)
        self.assertEqual(self.quenlio.state()["latestScreenshotPath"], seeds[-1])
        self.quenlio.settle(4)
        self.assertEqual(self.quenlio.count("screenshot_detected"), 0)
        self.assertIsNone(self.quenlio.island())

    # Start and end

    def kept_files(self):
        """Which file it is, when it was written and what is in it: the settings and the pinned captures."""
        files = [self.session.home / f".config/quenlio/{self.quenlio.suite}.json", self.quenlio.support / "pinned.json"]
        return {file: (file.stat().st_ino, file.stat().st_mtime_ns, file.read_bytes()) for file in files}

    def test_a_second_start_shows_the_island_of_the_first_and_touches_no_file(self):
        self.quenlio.start("--release-test-ingest", self.capture(7))
        self.quenlio.wait_for_island()
        wait_for(lambda: (self.quenlio.support / "pinned.json").exists(), "the list of pinned captures")
        self.assertTrue(accessibility.act(self.session, self.quenlio.process.pid, "Close"))
        self.quenlio.wait_for_no_island()
        self.quenlio.settle(4)
        before = self.kept_files()
        self.assertIn(self.quenlio.bus_name, self.session.bus_names())
        self.assertIsNone(self.quenlio.island())
        launched_at = self.quenlio.state()["launchedAt"]
        second = self.quenlio.spawn("--release-test-ingest", self.capture(8))  # what would rewrite the list
        self.assertEqual(second.wait(10), 0)
        self.quenlio.wait_for_island()
        self.assertEqual(self.quenlio.count("screenshot_detected"), 1)
        self.assertEqual(self.quenlio.count("app_launched"), 1)
        self.assertEqual(self.quenlio.state()["launchedAt"], launched_at)
        self.assertIsNone(self.quenlio.process.poll())
        self.assertEqual(self.kept_files(), before)

    def assert_ends_in_order(self, with_signal):
        path = self.capture(5)
        self.quenlio.start("--release-test-ingest", path)
        self.assert_shows(path, 5)
        self.assertEqual(self.quenlio.stop(with_signal), 0)
        self.assertEqual(self.quenlio.state()["latestScreenshotPath"], str(path))

    def test_sigterm_ends_it_in_order(self):
        self.assert_ends_in_order(signal.SIGTERM)

    def test_sigint_ends_it_in_order(self):
        self.assert_ends_in_order(signal.SIGINT)

    def test_a_signal_during_the_launch_ends_it_in_order_too(self):
        self.quenlio.start(ready=False)
        wait_for(lambda: self.quenlio.count("app_launched") or self.quenlio.must_run(), "the first event")
        self.assertEqual(self.quenlio.stop(), 0)

    def test_a_users_own_run_watches_the_chosen_folder_and_leaves_no_diagnostics(self):
        # Another folder than the one that a scripted run would be told to watch.
        chosen = self.session.mkdir("home/chosen by the user")
        self.quenlio.extra = {"QUENLIO_INTERNAL_TESTING": "0", "XDG_SCREENSHOTS_DIR": chosen}
        self.quenlio.start(ready=False)
        wait_for(lambda: self.watches(chosen) or self.quenlio.must_run(), "the watch on the folder")
        self.assertFalse(self.watches(self.folder))
        self.session.write(chosen / "Screenshot from 2026-11-15 21-04-33.png", pictures.png(6))
        pictures.wait_until_shown(self.quenlio, 6)
        self.assertIn("com.quenlio.app", self.session.bus_names())
        self.assertEqual(self.quenlio.stop(), 0)
        self.assertEqual(os.listdir(self.quenlio.diagnostics), [])

    def watches(self, folder):
        """Whether the kernel says that the program has a watch on this folder."""
        inode = f"ino:{os.stat(folder).st_ino:x} "
        told = f"/proc/{self.quenlio.process.pid}/fdinfo"
        for entry in os.listdir(told):
            try:
                with open(f"{told}/{entry}", encoding="ascii") as info:
                    if any(line.startswith("inotify wd:") and inode in line for line in info):
                        return True
            except OSError:
                continue
        return False


if __name__ == "__main__":
    unittest.main()
