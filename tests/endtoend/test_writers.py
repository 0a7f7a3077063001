"""The ways in which a capture may be written: slowly, in two goes, never closed, renamed into place, many at once."""

import os
import time
import unittest

import accessibility
import pictures
from arrivals import RunningQuenlio
from harness import pace, wait_for


def name(number):
    return f"Screenshot 2026-11-15 at 21.04.{number:02}.png"


class Writers(RunningQuenlio):
    def test_a_4k_picture_that_trickles_in_arrives_when_it_is_whole(self):
        number = next(self.numbers)
        path, data = self.folder / name(number), pictures.png_4k(number)
        steps, seconds = 100, 5
        size = -(-len(data) // steps)
        with self.session.open(path) as stream:
            for at in range(0, len(data), size):
                self.assertEqual(self.quenlio.detections(path), 0, f"arrived with {at} of {len(data)} bytes")
                pace(seconds / steps)
                stream.write(data[at:at + size])
        self.assert_shows(path, number)

    def test_a_temporary_file_renamed_into_place(self):
        number = next(self.numbers)
        part = self.session.write(self.folder / f".{name(number)}.part", pictures.png(number))
        path = self.folder / name(number)
        os.rename(part, path)
        self.assert_shows(path, number)

    def test_a_file_that_is_closed_empty_first(self):
        number = next(self.numbers)
        path, data = self.folder / name(number), pictures.png(number, 1920, 1080, noise=7)
        self.session.open(path).close()
        self.quenlio.settle()
        self.assertEqual(self.quenlio.detections(path), 0, "arrived empty")
        with open(path, "r+b") as stream:
            stream.write(data)
        self.assert_shows(path, number)

    def test_a_picture_without_its_lowest_fifth_would_be_noticed(self):
        """As when a capture were read before it had been written to its end."""
        number = next(self.numbers)
        path = self.save(name(number), pictures.png(number))
        self.assert_shows(path, number)
        shown = pictures.Expected(self.quenlio, path)
        self.assertLessEqual(shown.difference(), pictures.ALIKE)
        for fill in ("gray", "black", "white"):
            cut = self.session.root / "home" / f"cut-{fill}.png"
            self.session.run(["convert", path, "-fill", fill, "-draw", "rectangle 0,320 639,399", cut])
            with self.subTest(fill=fill):
                self.assertGreater(pictures.Expected(self.quenlio, cut).difference(), pictures.ALIKE)

    def test_a_writer_that_never_closes_its_stream(self):
        number = next(self.numbers)
        path = self.folder / name(number)
        with self.session.open(path) as stream:
            stream.write(pictures.png(number, 1920, 1080, noise=7))
            self.assert_shows(path, number)

    def test_fifty_files_in_one_second(self):
        data = {number: pictures.png(number) for number in range(50)}
        paths = []
        start = time.monotonic()
        for number in range(50):
            pace(max(0, start + number / 50 - time.monotonic()))
            path = self.folder / f"Screenshot_20261115_2104{number:02}.png"
            paths.append(self.session.write(path, data[number]))
        self.assertLess(time.monotonic() - start, 1.5)
        for path in paths:
            self.assert_arrives(path, 20)
        newest_first = [path.name for path in reversed(paths[-10:])]
        wait_for(lambda: self.quenlio.strip() == newest_first, "the newest ten, newest first")
        state = self.quenlio.state()
        self.assertEqual(state["latestScreenshotPath"], str(paths[-1]))
        self.assertEqual(state["selectedScreenshotPath"], str(paths[-1]))
        self.assertEqual(state["screenshotCount"], 10)
        pictures.wait_until_shown(self.quenlio, 49)
        pictures.wait_until_whole(self.quenlio, paths[-1])
        for number in reversed(range(40, 50)):
            with self.subTest(cell=paths[number].name):
                self.assertTrue(accessibility.act(self.session, self.quenlio.process.pid, paths[number].name))
                pictures.wait_until_shown(self.quenlio, number)
                pictures.wait_until_whole(self.quenlio, paths[number])
                wait_for(lambda: self.quenlio.says(f"{paths[number].name} preview"), "its name at the preview")


if __name__ == "__main__":
    unittest.main()
