"""Throwing captures away and taking that back, by real keys, as the desktop's other programs see it."""

import os
import subprocess
import unittest
from pathlib import Path

import pictures
from harness import Session, wait_for
from quenlio import Quenlio


class Trash(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.session = Session()
        cls.addClassCleanup(cls.session.stop)
        cls.session.start()
        cls.trash = cls.session.home / ".local/share/Trash"

    def setUp(self):
        self.folder = self.session.mkdir(f"home/{self.id().rsplit('.', 1)[-1]}")
        self.quenlio = Quenlio(self.session, self.folder)
        self.addCleanup(self.end)

    def end(self):
        if self.quenlio.process:
            self.session.end(self.quenlio.process)

    def capture(self, number, folder=None):
        """A capture that is shown and selected, as the program knows its path, with the keyboard in the island."""
        name = f"Screenshot_20261115_2104{number:02}.png"
        self.session.write((folder or self.folder) / name, pictures.png(number))
        known = self.quenlio.folder / name
        self.quenlio.wait_for_arrival(known)
        pictures.wait_until_shown(self.quenlio, number)
        island = self.quenlio.wait_for_island()
        # Out and in again: the island takes the keyboard when the pointer comes in.
        self.session.move_pointer(5, 5)
        self.session.move_pointer(island.x + island.width // 2, island.y + island.height // 2)
        wait_for(lambda: self.session.run(["xdotool", "getwindowfocus"], check=False).strip() == island.number,
                 "the keyboard in the island")
        return known

    def listed(self):
        """Where each file in the trash was, as trash-list tells it."""
        return sorted(line.split(" ", 2)[2] for line in self.session.run(["trash-list"]).splitlines()
                      if f"{self.folder}/" in line)

    def gio_listed(self):
        lines = self.session.run(["gio", "trash", "--list"], env={"GIO_USE_VFS": "gvfs"}).splitlines()
        return sorted(line.split("\t")[1] for line in lines if f"{self.folder}/" in line)

    def notes(self):
        return sorted(path.name for path in (self.trash / "info").glob("*"))

    def test_a_capture_is_listed_in_the_trash_and_undo_brings_it_back(self):
        self.quenlio.start()
        path = self.capture(1)
        before = path.read_bytes()
        self.session.key("BackSpace")
        wait_for(lambda: not path.exists(), "the capture to leave its folder")
        wait_for(lambda: self.listed() == [str(path)], "the capture in the trash")
        self.assertEqual(self.gio_listed(), [str(path)])
        self.assertEqual((self.trash / "files" / path.name).read_bytes(), before)

        self.session.key("ctrl+z")
        wait_for(path.exists, "the capture back in its folder")
        self.assertEqual(path.read_bytes(), before)
        wait_for(lambda: self.listed() == [], "an empty trash")
        self.assertEqual(self.gio_listed(), [])
        self.assertEqual(self.notes(), [])
        self.quenlio.settle()
        self.assertEqual(self.quenlio.detections(path), 1)

    def test_a_capture_comes_back_beside_a_new_one_of_its_name_and_is_no_arrival(self):
        self.quenlio.start()
        path = self.capture(2)
        before = path.read_bytes()
        self.session.key("BackSpace")
        wait_for(lambda: self.listed() == [str(path)], "the capture in the trash")
        self.session.write(path, pictures.png(3))
        taken = path.read_bytes()
        self.session.key("ctrl+z")
        restored = path.with_name(f"{path.stem} (Restored 1).png")
        wait_for(restored.exists, "the capture under another name")
        self.quenlio.settle()
        self.assertEqual(restored.read_bytes(), before)
        self.assertEqual(path.read_bytes(), taken)
        self.assertEqual(self.quenlio.detections(restored), 0)
        self.assertEqual(self.notes(), [])

    def test_another_program_brings_a_capture_back(self):
        self.quenlio.start()
        path = self.capture(4)
        before = path.read_bytes()
        self.session.key("Delete")
        wait_for(lambda: self.listed() == [str(path)], "the capture in the trash")
        restored = subprocess.run(self.session.as_user(["trash-restore"]), env=self.session.environment(),
                                  cwd=self.folder, input=b"0\n", capture_output=True, timeout=20, check=True)
        self.assertIn(str(path).encode(), restored.stdout)
        self.assertEqual(path.read_bytes(), before)
        self.assertEqual(self.notes(), [])

    def test_a_capture_on_another_file_system_goes_to_the_trash_there(self):
        mount = self.session.mkdir("disk")
        self.quenlio.folder = mount / "Captures"
        script = (f'mount -t tmpfs -o size=16m tmpfs "{mount}" && mkdir "{mount}/Captures" && '
                  f'chown -R {self.session.uid}:{self.session.gid} "{mount}" && exec "$@"')
        namespace = ["--mount"] if os.geteuid() == 0 else ["--user", "--map-root-user", "--mount"]
        self.quenlio.start(wrapper=["unshare", *namespace, "sh", "-c", script, "sh"])
        # Only the program's own view of the machine has that file system.
        inside = Path(f"/proc/{self.quenlio.process.pid}/root{mount}")
        known = self.capture(5, inside / "Captures")
        user = self.session.uid if os.geteuid() == 0 else 0
        trash = inside / f".Trash-{user}"
        path = inside / "Captures" / known.name
        before = path.read_bytes()
        self.session.key("BackSpace")
        wait_for(lambda: not path.exists(), "the capture to leave its folder")
        self.assertEqual((trash / "files" / known.name).read_bytes(), before)
        note = (trash / "info" / f"{known.name}.trashinfo").read_text()
        self.assertIn(f"\nPath=Captures/{known.name}\n", note)
        self.assertEqual(self.listed(), [])

        self.session.key("ctrl+z")
        wait_for(path.exists, "the capture back in its folder")
        self.assertEqual(path.read_bytes(), before)
        self.assertEqual([*(trash / "info").iterdir(), *(trash / "files").iterdir()], [])


if __name__ == "__main__":
    unittest.main()
