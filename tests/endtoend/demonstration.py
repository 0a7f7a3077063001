"""demonstration.py PROGRAM PICTURE [SECONDS]: the main job on a display of its own.

A capture tool takes a screenshot under its own default name, the program's events are printed as they come, and the
screen with the island is saved as PICTURE. Ends with 0 only when the island shows that very screenshot, within SECONDS
(15 when they are not given).
"""

import os
import sys
from pathlib import Path

import pictures
from harness import NotInTime, Session, wait_for
from quenlio import Quenlio

DESKTOP = 1  # the picture that the desktop is painted with, and so what the capture shows
WITH_ISLAND = 0.6


class EventPrinter:
    def __init__(self, quenlio):
        self.quenlio = quenlio
        self.printed = 0

    def print_new(self):
        events = self.quenlio.events()
        for event in events[self.printed:]:
            details = " ".join(f"{key}={value}" for key, value in event["metadata"].items())
            print(f"  {event['timestamp']}  {event['name']}  {details}", flush=True)
        self.printed = len(events)


def capture(session, folder):
    session.run(["scrot"], cwd=folder)
    (path,) = folder.iterdir()
    return path


def problem_with(quenlio, expected):
    """Why the island does not show the capture, or nothing when it does."""
    path = expected.path
    island = quenlio.island()
    state = quenlio.state()
    if not island:
        return "there is no island on the screen"
    if island.box != (1280 - 232 - 12, 800 - 232 - 12, 232, 232):
        return f"the island is at {island.box}"
    if state["latestScreenshotPath"] != str(path):
        return f"the newest capture is said to be {state['latestScreenshotPath']}"
    if pictures.shown(quenlio, WITH_ISLAND) != pictures.quarters(DESKTOP):
        return "the island's picture is not the desktop's"
    if expected.difference() > pictures.ALIKE:
        return "the island's picture is not all of the capture"
    return None


def main():
    os.environ["QUENLIO_PROGRAM"] = sys.argv[1]
    picture = Path(sys.argv[2])
    seconds = float(sys.argv[3]) if len(sys.argv) > 3 else 15
    picture.unlink(missing_ok=True)
    with Session() as session:
        folder = session.mkdir("home/Pictures/Screenshots")
        pictures.paint_desktop(session, DESKTOP)
        quenlio = Quenlio(session, folder).start()
        events = EventPrinter(quenlio)
        print(f"Quenlio runs on a virtual display and watches {folder}", flush=True)
        events.print_new()
        path = capture(session, folder)
        print(f"scrot has written {path.name}", flush=True)
        expected = pictures.Expected(quenlio, path)

        def done():
            events.print_new()
            return not problem_with(quenlio, expected) or quenlio.must_run()

        try:
            wait_for(done, "the island with the capture", seconds)
        except NotInTime:
            pass  # said below
        finally:
            picture.parent.mkdir(parents=True, exist_ok=True)
            picture.write_bytes(session.run(["import", "-silent", "-window", "root", "png:-"], binary=True))
            events.print_new()
            print(f"The screen is in {picture}", flush=True)
        problem = problem_with(quenlio, expected)
        print(problem or f"The island shows {path.name}")
        code = quenlio.stop()
        if code != 0:
            print(f"Quenlio ended with {code}")
        return 1 if problem or code else 0


if __name__ == "__main__":
    sys.exit(main())
