"""Files whose decoding takes very long: nothing else waits for them."""

import unittest
from pathlib import Path

import pictures
from arrivals import RunningQuenlio
from harness import wait_for

# In the place of the program's own: says what it was started for, and never answers.
DECODER = """#!/bin/sh
echo "$$ $4 $(readlink /proc/$$/fd/0)" >> '{record}'
exec sleep 600
"""
THUMBNAIL, SHARPER = "centred", "within-enlarging"


class SlowDecoder(RunningQuenlio):
    @classmethod
    def prepare(cls):
        cls.record = cls.session.write(cls.session.root / "decoders", b"")
        program = cls.session.mkdir("program") / "quenlio-decoder"
        cls.session.write(program, DECODER.format(record=cls.record).encode()).chmod(0o755)

    def decoders(self, running=False):
        """What was decoded for which file, in the order of starting."""
        started = [line.split(" ", 2) for line in self.record.read_text().splitlines()]
        return [(use, Path(path).name) for process, use, path in started
                if not running or Path("/proc", process).exists()]

    def slow_document(self, name):
        """Arrives and is selected. Without its thumbnail for a while, the island has the file itself decoded too."""
        path = self.save(name, pictures.converted(self.session, next(self.numbers), "pdf"))
        self.assert_arrives(path)
        wait_for(lambda: (SHARPER, name) in self.decoders(), f"a decoder for the preview of {name}")

    def test_the_next_capture_is_shown_while_two_documents_are_being_decoded(self):
        self.slow_document("Screenshot 2026-11-15 at 21.04.01.pdf")
        self.slow_document("Screenshot 2026-11-15 at 21.04.02.pdf")
        number = next(self.numbers)
        path = self.save("Screenshot 2026-11-15 at 21.04.03.png", pictures.png(number))
        pictures.wait_until_shown(self.quenlio, number, deadline=3)
        self.assert_shows(path, number)
        # One after the other, and none for a picture that is no longer on the screen.
        wait_for(lambda: self.decoders(running=True) == [(THUMBNAIL, "Screenshot 2026-11-15 at 21.04.01.pdf")],
                 "one decoder alone")


if __name__ == "__main__":
    unittest.main()
