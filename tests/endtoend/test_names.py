"""What counts as a screenshot in a folder that holds other files too, and what does not."""

import os
import time
import unittest

import pictures
from arrivals import RunningQuenlio
from harness import wait_for

# As the tools of the common desktops name their captures.
TOOL_NAMES = (
    "Screenshot from 2026-11-15 21-04-33.png",
    "Screenshot From 2026-11-15 21-04-34.png",
    "Bildschirmfoto vom 2026-11-15 21-04-33.png",
    "Screenshot_20261115_210433.png",
    "Screenshot_2026-11-15_21-04-33.png",
    "Screenshot at 2026-11-15 21-04-33.png",
    "Screenshot from 2026-11-15 21.04.33.png",
    "2026-11-15_21-04.png",
    "20261115_21h04m33s_grim.png",
    "2026-11-15-210433_1920x1080_scrot.png",
    "2026-11-15-210433_hyprshot.png",
    "ksnip_20261115-210433.png",
    "Screenshot from 2026-11-15 21-04-33-1.png",
    "Screenshot from 2026-11-15 21-04-33 - 1.png",
    "Screenshot_20261115_210433_1.png",
    # And the naming that needs nobody's opinion.
    "Screenshot 2026-11-15 at 21.04.33.png",
    "SCREENSHOT 2026-11-15.PNG",
)
# Texts that a tool leaves in the file, whatever it is called then.
TOOL_TEXTS = {
    "Holiday.png": {"Software": "gnome-screenshot"},
    "Harbour.png": {"Software": "mate-screenshot"},
    "Window.png": {"windowTitle": "Terminal", "screen": "DP-1"},
}
# Older than this before the watch began is too old to be new.
TOLERANCE = 4


class Names(RunningQuenlio):
    @classmethod
    def prepare(cls):
        elsewhere = cls.session.mkdir("home/elsewhere")
        cls.old = cls.session.write(elsewhere / "Screenshot 2026-11-14 at 09.00.00.png", pictures.png(0))
        written = time.time()
        wait_for(lambda: time.time() > written + TOLERANCE + 1, "the file to be old")

    def test_each_name_of_a_tool_is_taken(self):
        for name in TOOL_NAMES:
            with self.subTest(name=name):
                number = next(self.numbers)
                self.assert_shows(self.save(name, pictures.png(number)), number)
        for name, text in TOOL_TEXTS.items():
            with self.subTest(name=name):
                number = next(self.numbers)
                self.assert_shows(self.save(name, pictures.png(number, text=text)), number)

    def test_each_format_arrives_and_is_shown(self):
        for kind in ("jpeg", "tiff", "pdf", "heic"):
            with self.subTest(kind=kind):
                number = next(self.numbers)
                data = pictures.converted(self.session, number, kind)
                plain = self.session.root / f"convert-{number}.png" if kind in ("pdf", "heic") else None
                self.assert_shows(self.save(f"Screenshot 2026-11-15 at 22.00.00.{kind}", data), number, plain=plain)

    def test_a_text_file_with_a_capture_name_is_listed_without_a_picture(self):
        path = self.save("Screenshot 2026-11-15 at 21.05.00.png", b"no picture at all\n")
        self.assert_arrives(path)
        wait_for(lambda: self.quenlio.says(path.name), "its name in the island")
        self.assertIsNone(pictures.shown(self.quenlio))
        self.assertEqual(self.quenlio.state()["selectedScreenshotPath"], str(path))

    def test_what_is_no_new_screenshot_never_arrives(self):
        below = self.session.mkdir("home/Desktop/More")
        moved = self.folder / self.old.name
        os.rename(self.old, moved)
        gif = pictures.converted(self.session, 0, "gif")
        refused = [
            moved,
            self.save("Screenshot 2026-11-15 at 21.06.00.gif", gif),
            self.save("Screenshot from 2026-11-15 21-06-00.jpg", pictures.camera_jpeg(self.session, 0)),
            self.save("Invoice.png", pictures.png(0)),
            self.save("notes.png", b"a list of things\n"),
            self.session.write(below / "Screenshot 2026-11-15 at 21.06.01.png", pictures.png(0)),
            self.save(".Screenshot 2026-11-15 at 21.06.02.png", pictures.png(0)),
        ]
        # The same picture from no camera is taken, so it is the camera's mark that refuses the other.
        number = next(self.numbers)
        plain = self.save("Screenshot from 2026-11-15 21-06-01.jpg", pictures.converted(self.session, number, "jpeg"))
        self.assert_shows(plain, number)
        self.quenlio.settle()
        self.assertEqual([path.name for path in refused if self.quenlio.detections(path)], [])


if __name__ == "__main__":
    unittest.main()
