"""The system's limits: no room on the file system, no more watches to be had."""

import errno
import json
import os
import subprocess
import unittest
from pathlib import Path

import accessibility
import pictures
from harness import Session, wait_for
from quenlio import Quenlio, QuenlioWithSettings

ROOM = 128 * 1024  # for a capture that needs more
BLOCK = 4096
LARGE = 420  # the side of the large island

# The system answers the same when the process has no descriptor left: that must not be what ends it.
EAT_INSTANCES = """
import ctypes, errno, os, resource, sys
_, most = resource.getrlimit(resource.RLIMIT_NOFILE)
resource.setrlimit(resource.RLIMIT_NOFILE, (most, most))
libc = ctypes.CDLL(None, use_errno=True)
while libc.inotify_init1(0) >= 0:
    pass
assert ctypes.get_errno() == errno.EMFILE, ctypes.get_errno()
os.close(os.open("/dev/null", os.O_RDONLY))
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

    def assert_captures_are_found_without_the_stream(self):
        self.assertIn(f"Failed to start FSEvent stream for {self.quenlio.folder}\n", self.session.log_text())
        for number in (1, 2):
            path = self.session.write(self.quenlio.folder / f"Screenshot 2026-11-15 at 21.04.3{number}.png",
                                      pictures.png(number))
            self.quenlio.wait_for_arrival(path)
            pictures.wait_until_shown(self.quenlio, number)
            pictures.wait_until_whole(self.quenlio, path)
            self.assertEqual(self.quenlio.detections(path), 1)
        self.assertEqual(self.quenlio.stop(), 0)

    def test_captures_are_found_with_every_inotify_instance_in_use(self):
        eater = self.session.spawn(["/usr/bin/python3", "-c", EAT_INSTANCES], stdin=subprocess.PIPE,
                                   stdout=subprocess.PIPE)
        self.addCleanup(eater.stdout.close)
        self.addCleanup(eater.stdin.close)
        self.assertEqual(eater.stdout.readline(), b"full\n")
        self.quenlio.start()
        self.assert_captures_are_found_without_the_stream()

    def test_captures_are_found_with_no_watch_to_be_had(self):
        # A user namespace has limits of its own.
        self.quenlio.command = ["unshare", "--user", "--map-current-user", "--keep-caps", "sh", "-c",
                                'echo 0 > /proc/sys/user/max_inotify_watches && exec "$@"', "sh"]
        self.quenlio.start()
        self.assert_captures_are_found_without_the_stream()


class FullFileSystem(unittest.TestCase):
    """Captures, settings, pins and diagnostics lie on a small file system, which is full for a while."""

    def setUp(self):
        self.session = Session()
        self.addCleanup(self.session.stop)
        self.session.start()
        self.start()
        self.folder = self.inside / "Desktop"

    def start(self):
        # Only the program's own view of the machine has the small file system.
        mount = self.session.mkdir("small")
        script = (f'mount -t tmpfs -o size=1m tmpfs "{mount}" && cd "{mount}" && mkdir Desktop config support '
                  f'diagnostics && chown -R {self.session.uid}:{self.session.gid} . && cd / && exec "$@"')
        namespace = ["--mount"] if os.geteuid() == 0 else ["--user", "--map-root-user", "--mount"]
        self.quenlio = quenlio = QuenlioWithSettings(self.session, mount / "Desktop")
        quenlio.extra["XDG_CONFIG_HOME"] = mount / "config"
        quenlio.support, quenlio.diagnostics = mount / "support", mount / "diagnostics"
        quenlio.start(wrapper=["unshare", *namespace, "sh", "-c", script, "sh"], ready=False)
        self.inside = Path(f"/proc/{quenlio.process.pid}/root{mount}")
        quenlio.diagnostics = self.inside / "diagnostics"
        quenlio.saved_settings = self.inside / f"config/quenlio/{quenlio.suite}.json"
        wait_for(lambda: quenlio.launches() or quenlio.must_run(), "the end of the launch", 20)

    def test_a_full_file_system_costs_a_capture_and_no_file_that_was_there(self):
        quenlio = self.quenlio
        first = self.save("Screenshot_20261115_210401.png", pictures.png(1))
        self.assert_arrives(first, 1)
        quenlio.set(islandSize="small")
        staged = self.save(".staged", pictures.png(2))
        settings, pins = quenlio.saved_settings.read_bytes(), self.inside / "support/pinned.json"

        self.fill(self.inside / "filler", room=ROOM)
        cut = self.save_as_far_as_it_goes("Screenshot_20261115_210402.png", pictures.png(3, 1920, 1080, noise=7))
        self.assertGreater(cut.stat().st_size, ROOM // 2)
        empty = self.save_as_far_as_it_goes("Screenshot_20261115_210403.png", pictures.png(5))
        self.assertEqual(empty.stat().st_size, 0)
        self.leave_the_log_no_room_for_an_event()
        self.wait_until_previewed(cut)
        self.assertIn("Failed to persist pinned items: ", self.session.log_text())
        whole = self.folder / "Screenshot_20261115_210404.png"
        os.rename(staged, whole)
        self.assert_shown(whole, 2)
        quenlio.write({"islandSize": "large"})
        wait_for(lambda: quenlio.wait_for_island().width == LARGE, "the large island")
        self.assertEqual(quenlio.saved_settings.read_bytes(), settings)
        self.assertEqual(json.loads(pins.read_text()), [])
        self.assertEqual(quenlio.state()["runID"], quenlio.run_id)

        os.unlink(self.inside / "filler")
        quenlio.set(islandSize="large", maxHistory=5)
        last = self.save("Screenshot_20261115_210405.png", pictures.png(4))
        self.assert_arrives(last, 4)
        quenlio.settle()
        # The one cut short is there once, to be thrown away or written anew, and has no picture; the empty one is none.
        self.assertEqual(sorted(quenlio.strip()), [path.name for path in (first, cut, whole, last)])
        self.assertTrue(pictures.shows_colours(quenlio))
        self.assertTrue(accessibility.act(self.session, quenlio.process.pid, cut.name))
        self.wait_until_previewed(cut)
        wait_for(lambda: not pictures.shows_colours(quenlio), "the other picture to leave the preview")
        quenlio.settle(2)
        self.assertFalse(pictures.shows_colours(quenlio))
        self.assertEqual(json.loads(pins.read_text()), [])
        self.assertEqual(quenlio.stop(), 0)

    def save(self, name, data):
        return self.session.write(self.folder / name, data)

    def save_as_far_as_it_goes(self, name, data):
        with self.assertRaises(OSError) as failure:
            with self.session.open(self.folder / name) as stream:
                for at in range(0, len(data), BLOCK):
                    stream.write(data[at:at + BLOCK])
        self.assertEqual(failure.exception.errno, errno.ENOSPC)
        return self.folder / name

    def fill(self, path, room):
        """Uses up all of the file system but this much."""
        with open(path, "wb", buffering=0) as stream:
            for block in (b"\0" * BLOCK, b"\0"):
                try:
                    while stream.write(block):
                        pass
                except OSError as error:
                    self.assertEqual(error.errno, errno.ENOSPC)
            stream.truncate(stream.tell() - room)

    def leave_the_log_no_room_for_an_event(self):
        """What the file system has given to the log is used up but for the beginning of an event."""
        log = self.quenlio.diagnostics / "events.jsonl"
        with open(log, "ab", buffering=0) as stream:
            stream.write(b"\n" * (-log.stat().st_size % BLOCK - 20))

    def assert_arrives(self, path, number):
        known = self.quenlio.folder / path.name  # as the program knows it
        self.quenlio.wait_for_arrival(known)
        self.assert_shown(path, number)
        self.assertEqual(self.quenlio.detections(known), 1)

    def wait_until_previewed(self, path):
        wait_for(lambda: self.quenlio.says(f"{path.name} preview"), f"{path.name} in the preview")

    def assert_shown(self, path, number):
        """All of its picture in the island, and its name."""
        pictures.wait_until_shown(self.quenlio, number)
        pictures.wait_until_whole(self.quenlio, path)
        self.wait_until_previewed(path)


if __name__ == "__main__":
    unittest.main()
