"""Killed in the middle of writing: every file is as before that write or as after it, never a half."""

import json
import signal
import unittest

import pictures
from changes import Changes
from harness import Session, wait_for
from quenlio import Quenlio, QuenlioWithSettings

ROUNDS = 60
LONG = 40_000  # bytes: other files and the logs stay far below
LIMITS = (LONG // 4, LONG // 2, LONG - 1)
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


class CutShort(unittest.TestCase):
    """The system kills it in the middle of a write: where the file that it writes would become longer than a limit. The
    file in question is made the longest of all, so that no other comes to that length."""

    def setUp(self):
        self.session = Session()
        self.addCleanup(self.session.stop)
        self.session.start()
        self.addCleanup(self.end)

    def end(self):
        self.session.end(self.quenlio.process)

    def assert_cut(self, file, limit, change):
        """The change ends it with so many bytes written, and the file is as it was."""
        quenlio = self.quenlio
        before = file.read_bytes()
        self.session.log.truncate(0)  # the program writes there as well
        self.session.run(["prlimit", "--pid", quenlio.process.pid, "--core=0", f"--fsize={limit}"])
        change()
        self.assertEqual(quenlio.process.wait(10), -signal.SIGXFSZ)
        wait_for(lambda: quenlio.bus_name not in self.session.bus_names(), "its name to be free")
        self.assertEqual(file.read_bytes(), before)
        self.assertIn(limit, {path.stat().st_size for path in file.parent.iterdir()}, "the write that was cut")

    def capture(self, number):
        return self.session.write(self.quenlio.folder / f"Screenshot_20261115_2104{number:02}.png",
                                  pictures.png(number))

    def assert_next_capture_arrives(self, number):
        self.quenlio.wait_for_arrival(self.capture(number))
        self.assertEqual(self.quenlio.stop(), 0)

    def test_settings(self):
        self.quenlio = quenlio = QuenlioWithSettings(self.session, self.session.mkdir("home/Desktop"), maxHistory=10)
        self.session.mkdir("home/.config/quenlio")
        self.session.write(quenlio.saved_settings, json.dumps({"padding": {"string": "x" * LONG}}).encode())
        for number, limit in enumerate(LIMITS):
            # Each launch writes what the cut one could not.
            quenlio.start()
            self.assertGreater(quenlio.saved_settings.stat().st_size, LONG)
            self.assert_cut(quenlio.saved_settings, limit, lambda: quenlio.write({"maxHistory": 100 + number}))
        # Between the length it has and the one it would get.
        quenlio.start()
        self.assert_cut(quenlio.saved_settings, quenlio.saved_settings.stat().st_size + 1,
                        lambda: quenlio.write({"maxHistory": 123456}))
        quenlio.start()
        self.assert_next_capture_arrives(0)

    def test_pins(self):
        folder = self.session.mkdir("home/Desktop")
        self.quenlio = quenlio = Quenlio(self.session, folder)
        kept = [self.session.write(folder / f"{number:03}{'x' * 200}.png", b"x") for number in range(LONG // 200)]
        pins = self.session.write(quenlio.support / "pinned.json", json.dumps(
            [{"path": str(path), "isPinned": True} for path in kept]).encode())
        for number, limit in enumerate(LIMITS):
            quenlio.start()
            self.assertGreater(pins.stat().st_size, LONG)
            self.assert_cut(pins, limit, lambda: self.capture(number))
        quenlio.start()
        self.assertEqual(len(json.loads(pins.read_text())), len(kept))
        self.assert_next_capture_arrives(len(LIMITS))

    def test_the_state(self):
        # It names the newest capture and the selected one by their whole paths.
        folder = self.session.mkdir("home/" + "/".join(["x" * 250] * 12))
        self.quenlio = quenlio = Quenlio(self.session, folder)
        state, log = quenlio.diagnostics / "state.json", quenlio.diagnostics / "events.jsonl"
        for number, limit in enumerate((4000, 5000, 6000)):
            quenlio.start()
            wait_for(lambda: quenlio.state()["permissionState"]["screenRecordingGranted"], "the last part of the state")
            self.assertLess(state.stat().st_size, 2000)
            endless = quenlio.diagnostics / "endless"
            endless.symlink_to("/dev/null")  # which has no length
            endless.rename(log)
            self.assert_cut(state, limit, lambda: self.capture(number))
            log.unlink()
            for path in folder.iterdir():
                path.unlink()
        quenlio.start()
        self.assert_next_capture_arrives(0)
        self.assertGreater(state.stat().st_size, 6000)


if __name__ == "__main__":
    unittest.main()
