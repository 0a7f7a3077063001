"""The system's limits: no room on the file system, no more watches to be had."""

import errno
import json
import os
import subprocess
import unittest
from pathlib import Path

import pictures
from harness import Session, wait_for
from quenlio import Quenlio

EAT_INSTANCES = """
import ctypes, sys
libc = ctypes.CDLL(None)
while libc.inotify_init1(0) >= 0:
    pass
print("full", flush=True)
sys.stdin.read()
"""


class WatchLimits(unittest.TestCase):
    """As an account of its own: the limits are the account's."""

    def setUp(self):
        self.session = Session(user="games")
        self.addCleanup(self.session.stop)
        self.session.start()
        self.quenlio = Quenlio(self.session, self.session.mkdir("home/Desktop"))

    def assert_captures_are_found(self):
        for number in (1, 2):
            path = self.session.write(self.quenlio.folder / f"Screenshot 2026-11-15 at 21.04.3{number}.png",
                                      pictures.png(number))
            self.quenlio.wait_for_arrival(path)
            pictures.wait_until_shown(self.quenlio, number)
            self.assertEqual(self.quenlio.detections(path), 1)
        self.assertEqual(self.quenlio.stop(), 0)

    def test_captures_are_found_with_every_inotify_instance_in_use(self):
        eater = self.session.spawn(["/usr/bin/python3", "-c", EAT_INSTANCES], stdin=subprocess.PIPE,
                                   stdout=subprocess.PIPE)
        self.addCleanup(eater.stdout.close)
        self.addCleanup(eater.stdin.close)
        self.assertEqual(eater.stdout.readline(), b"full\n")
        self.quenlio.start()
        self.assert_captures_are_found()

    def test_captures_are_found_with_no_watch_to_be_had(self):
        # A user namespace has limits of its own.
        self.quenlio.command = ["unshare", "--user", "--map-current-user", "--keep-caps", "sh", "-c",
                                'echo 0 > /proc/sys/user/max_inotify_watches && exec "$@"', "sh"]
        self.quenlio.start()
        self.assert_captures_are_found()


class FullFileSystem(unittest.TestCase):
    def setUp(self):
        self.session = Session()
        self.addCleanup(self.session.stop)
        self.session.start()

    def test_a_full_file_system_costs_a_capture_and_no_file_that_was_there(self):
        mount = self.session.mkdir("small")
        quenlio = Quenlio(self.session, mount / "Desktop", {"XDG_CONFIG_HOME": mount / "config"})
        quenlio.support = mount / "support"
        # Only the program's own view of the machine has the small file system.
        script = (f'mount -t tmpfs -o size=1m tmpfs "{mount}" && cd "{mount}" && mkdir Desktop config support && '
                  f'chown -R {self.session.uid}:{self.session.gid} . && cd / && exec "$@"')
        namespace = ["--mount"] if os.geteuid() == 0 else ["--user", "--map-root-user", "--mount"]
        quenlio.start(wrapper=["unshare", *namespace, "sh", "-c", script, "sh"])
        inside = Path(f"/proc/{quenlio.process.pid}/root{mount}")
        folder = inside / "Desktop"

        self.assert_arrives(quenlio, self.session.write(folder / "Screenshot_20261115_210401.png", pictures.png(1)), 1)
        staged = self.session.write(folder / ".staged", pictures.png(2))
        self.fill(inside / "filler")
        with self.assertRaises(OSError) as failure:
            self.session.write(folder / "Screenshot_20261115_210402.png", pictures.png(3, 1920, 1080, noise=7))
        self.assertEqual(failure.exception.errno, errno.ENOSPC)

        whole = folder / "Screenshot_20261115_210403.png"
        os.rename(staged, whole)
        self.assert_arrives(quenlio, whole, 2)
        for kept in [inside / "support/pinned.json", *(inside / "config/quenlio").glob("*.json")]:
            json.loads(kept.read_text())

        os.unlink(inside / "filler")
        self.assert_arrives(quenlio, self.session.write(folder / "Screenshot_20261115_210404.png", pictures.png(4)), 4)
        self.assertEqual(json.loads((inside / "support/pinned.json").read_text()), [])
        self.assertEqual(quenlio.stop(), 0)

    def fill(self, path):
        with open(path, "wb", buffering=0) as stream:
            for block in (b"\0" * 4096, b"\0"):
                try:
                    while stream.write(block):
                        pass
                except OSError as error:
                    self.assertEqual(error.errno, errno.ENOSPC)

    def assert_arrives(self, quenlio, path, number):
        """The path as the program knows it, and its picture in the island."""
        known = quenlio.folder / path.name
        quenlio.wait_for_arrival(known)
        pictures.wait_until_shown(quenlio, number)
        wait_for(lambda: quenlio.says(path.name), f"the name {path.name} in the island")
        self.assertEqual(quenlio.detections(known), 1)


if __name__ == "__main__":
    unittest.main()
