"""A test class whose tests share one running program, and one picture number after the other."""

import itertools
import unittest

import pictures
from harness import Session, wait_for
from quenlio import Quenlio


class RunningQuenlio(unittest.TestCase):
    """`FOLDER` is the screenshot folder under the home; each test leaves the program running."""

    FOLDER = "home/Desktop"
    COMPOSITOR = True

    @classmethod
    def setUpClass(cls):
        cls.session = Session(compositor=cls.COMPOSITOR)
        cls.addClassCleanup(cls.session.stop)
        cls.session.start()
        cls.folder = cls.session.mkdir(cls.FOLDER)
        cls.numbers = itertools.count(1)
        cls.arrived = []
        cls.quenlio = Quenlio(cls.session, cls.folder)
        cls.prepare()
        cls.quenlio.start()

    @classmethod
    def prepare(cls):
        """What has to be there before the program starts."""

    def save(self, name, data):
        return self.session.write(self.folder / name, data)

    @classmethod
    def tearDownClass(cls):
        """Whatever arrived, arrived once, also when the program has had all the time it takes to look again."""
        cls.quenlio.settle()
        counts = {path.name: cls.quenlio.detections(path) for path in cls.arrived}
        again = cls.quenlio.count("screenshot_duplicate_ignored")
        if again or set(counts.values()) != {1}:
            raise AssertionError(f"{again} second arrivals; arrivals by name: {counts}")

    def assert_arrives(self, path, deadline=10.0):
        self.quenlio.wait_for_arrival(path, deadline)
        self.arrived.append(path)

    def assert_shows(self, path, number, evenness=0.9, plain=None):
        """The capture arrives, is the newest and selected one, and the island shows all of it under its name. `plain` is
        a file with the same picture, for a format that the comparing program cannot read."""
        self.assert_arrives(path)
        pictures.wait_until_shown(self.quenlio, number, evenness)
        pictures.wait_until_whole(self.quenlio, plain or path)
        state = self.quenlio.state()
        self.assertEqual(state["latestScreenshotPath"], str(path))
        self.assertEqual(state["selectedScreenshotPath"], str(path))
        wait_for(lambda: self.quenlio.says(path.name), f"the name {path.name} in the island")
        self.assertEqual(len(self.quenlio.islands()), 1)
