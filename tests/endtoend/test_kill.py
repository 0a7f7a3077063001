"""Killed in the middle of writing: every file is as before that write or as after it, never a half."""

import json
import unittest

import pictures
from changes import Changes
from harness import Session, wait_for
from quenlio import Quenlio

ROUNDS = 60
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
        self.changes_until_arrival(quenlio, settings_folder, folder)
        (settings,) = settings_folder.glob(f"*{quenlio.suite}*.json")
        self.forget_all_but_the_lasting_key(settings)
        total = self.changes_until_arrival(quenlio, settings_folder, folder)

        cut_short = 0
        for number in range(ROUNDS):
            self.forget_all_but_the_lasting_key(settings)
            (quenlio.diagnostics / "events.jsonl").unlink(missing_ok=True)
            cut_short += self.kill_at_change(quenlio, settings_folder, folder, 1 + number * total // ROUNDS)
            with self.subTest(round=number):
                self.assertIn(LASTING_KEY, json.loads(settings.read_text()))
                self.assertEqual(quenlio.state()["runID"], quenlio.run_id)
                self.assertEqual(json.loads((quenlio.support / "pinned.json").read_text()), [])
        # It was at work in nearly all of them, or nothing has been tried.
        self.assertGreater(cut_short, ROUNDS * 3 // 4)

        quenlio.start()
        path = self.capture(folder, "Screenshot 2026-11-15 at 21.04.34.png")
        quenlio.wait_for_arrival(path)
        self.assertEqual(quenlio.stop(), 0)

    def forget_all_but_the_lasting_key(self, settings):
        """So that the next launch has all the others to write again."""
        kept = {LASTING_KEY: json.loads(settings.read_text())[LASTING_KEY]}
        part = self.session.write(settings.with_suffix(".part"), json.dumps(kept).encode())
        part.rename(settings)

    def capture(self, folder, name="Screenshot 2026-11-15 at 21.04.33.png"):
        path = folder / name
        path.unlink(missing_ok=True)
        return self.session.write(path, pictures.png(0))

    def changes_until_arrival(self, quenlio, settings_folder, folder):
        """How many changes of files a launch makes until the arrival that it is told of has been recorded."""
        path = self.capture(folder)
        arrivals = quenlio.detections(path)
        with Changes([settings_folder, quenlio.support, quenlio.diagnostics]) as changes:
            quenlio.start("--release-test-ingest", path, ready=False)
            count = 0
            while quenlio.detections(path) == arrivals:
                count += changes.next(5) or self.fail("nothing changes, and nothing arrives")
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
