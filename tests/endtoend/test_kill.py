"""Killed in the middle of writing: every file is as before that write or as after it, never a half."""

import json
import unittest

import pictures
from changes import Changes
from harness import Session, wait_for
from quenlio import Quenlio

ROUNDS = 40
# Survives every later run, since nothing ever clears it.
LASTING_KEY = "analytics.firstScreenshotTracked"


class Killed(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.session = Session()
        cls.addClassCleanup(cls.session.stop)
        cls.session.start()

    def test_files_are_whole_whenever_it_is_killed(self):
        folder = self.session.mkdir("home/Desktop")
        quenlio = Quenlio(self.session, folder)
        settings_folder = self.session.mkdir("home/.config/quenlio")
        total = self.changes_of_a_whole_run(quenlio, settings_folder, folder)
        (settings,) = settings_folder.glob(f"*{quenlio.suite}*.json")
        self.assertIn(LASTING_KEY, settings.read_text())

        cut_short = 0
        for number in range(ROUNDS):
            (quenlio.diagnostics / "events.jsonl").unlink()
            cut_short += self.kill_at_change(quenlio, settings_folder, folder, 1 + number * total // ROUNDS)
            with self.subTest(round=number):
                self.assertIn(LASTING_KEY, json.dumps(json.loads(settings.read_text())))
                self.assertEqual(quenlio.state()["runID"], quenlio.run_id)
                self.assertEqual(json.loads((quenlio.support / "pinned.json").read_text()), [])
        # It was at work in nearly all of them, or nothing has been tried.
        self.assertGreater(cut_short, ROUNDS * 3 // 4)

        quenlio.start()
        self.arrive(quenlio, folder)
        self.assertEqual(quenlio.stop(), 0)

    def capture(self, folder, name="Screenshot 2026-11-15 at 21.04.33.png"):
        path = folder / name
        path.unlink(missing_ok=True)
        return self.session.write(path, pictures.png(0))

    def arrive(self, quenlio, folder):
        path = self.capture(folder, "Screenshot 2026-11-15 at 21.04.34.png")
        quenlio.wait_for_arrival(path)
        path.unlink()

    def changes_of_a_whole_run(self, quenlio, settings_folder, folder):
        """How many changes of files one launch with one arrival makes."""
        with Changes([settings_folder, quenlio.support, quenlio.diagnostics]) as changes:
            path = self.capture(folder)
            quenlio.start("--release-test-ingest", path)
            quenlio.wait_for_arrival(path)
            count = changes.next(5)
            while more := changes.next(0):
                count += more
        self.assertEqual(quenlio.stop(), 0)
        return count

    def kill_at_change(self, quenlio, settings_folder, folder, moment):
        """Kills it at that change of its files; true when the arrival was still to come."""
        path = self.capture(folder)
        with Changes([settings_folder, quenlio.support, quenlio.diagnostics]) as changes:
            quenlio.start("--release-test-ingest", path, ready=False)
            seen = 0
            while seen < moment:
                more = changes.next(5)
                self.assertTrue(more, f"only {seen} of {moment} changes")
                seen += more
            quenlio.process.kill()
        quenlio.process.wait(10)
        wait_for(lambda: quenlio.bus_name not in self.session.bus_names(), "its name to be free")
        return not quenlio.detections(path)


if __name__ == "__main__":
    unittest.main()
