"""The desktop that a benchmark measures on: that of the end-to-end tests, but as a user has it who needs no screen
reader, and of one even colour."""

import sys
from pathlib import Path

sys.path.append(str(Path(__file__).resolve().parents[2] / "tests/endtoend"))

from harness import SCREEN_HEIGHT, SCREEN_WIDTH, Session  # noqa: E402
from quenlio import Quenlio  # noqa: E402,F401

COLOUR = "5a6b7c"
# The smallest island, which a new user has, in its corner.
SIDE, MARGIN = 232, 12
PANEL_X, PANEL_Y = SCREEN_WIDTH - SIDE - MARGIN, SCREEN_HEIGHT - SIDE - MARGIN


class Desktop(Session):
    def environment(self, extra=None):
        env = super().environment(extra)
        env.pop("QT_LINUX_ACCESSIBILITY_ALWAYS_ON")
        return env

    def start(self):
        super().start()
        self.run(["hsetroot", "-solid", f"#{COLOUR}"])
