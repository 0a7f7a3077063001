"""script/bench arrival: how long after its writer has closed it a capture is named in the island, and its picture there.

Each series is one run of the program on a display of its own, with a compositor. bench-arrival writes the captures and
watches the screen; both ends of a time are moments of its clock. The floor is what the two looks at a new file take, at
their interval; decoding is that of the same files by the program's own code, measured between their arrivals.
"""

import itertools
import os
import shutil
import subprocess
import sys
import time
from pathlib import Path

from support.desktop import COLOUR, PANEL_X, PANEL_Y, Desktop, Quenlio
from support.goals import Goals, median, percentile, table

import pictures  # of the end-to-end tests

ARRIVALS = int(os.environ.get("QUENLIO_BENCH_ARRIVALS", "200"))
OTHER_FILES = 10_000
AGE = 6.0  # seconds before the watch begins: what is older than that by four is no arrival
FLOOR = 60.0  # ms: two looks
SIZES = {"1080p": (1920, 1080), "4K": (3840, 2160)}
ISLANDS = ("hidden", "up")


class Series:
    """What was measured, in milliseconds."""

    def __init__(self, lines):
        samples = [tuple(map(float, line.split())) for line in lines]
        self.named, self.pixels, self.decoding = zip(*samples)


def others(session):
    """Captures of the past: small ones, but whole, and named as captures are."""
    folder = session.mkdir("home/Pictures/Past")
    data = pictures.png(1, 8, 8)
    for number in range(OTHER_FILES):
        day, minute = divmod(number, 1440)
        name = f"Screenshot from 20{10 + day}-01-01 {minute // 60:02}-{minute % 60:02}-00.png"
        session.write(folder / name, data)
    time.sleep(AGE)
    return folder


def move_in(quenlio, past):
    """What is older than the watch is moved in under its eyes, and is no arrival. What lies in the folder when a
    diagnostics run begins would become its library instead."""
    for path in past.iterdir():
        path.rename(quenlio.folder / path.name)
    quenlio.settle()
    if quenlio.state()["screenshotCount"] != 0:
        sys.exit("files of the past have arrived")


def measure(program, size, island, crowded):
    os.environ["QUENLIO_PROGRAM"] = str(program)
    with Desktop() as session:
        folder = session.mkdir("home/Pictures/Screenshots")
        past = others(session) if crowded else None
        quenlio = Quenlio(session, folder).start()
        if past:
            move_in(quenlio, past)
        tool = session.root / "bench-arrival"
        shutil.copy2(program.parent / "bench/bench-arrival", tool)
        process = session.spawn([tool, folder, ARRIVALS, *size, island, PANEL_X, PANEL_Y, COLOUR],
                                stdout=subprocess.PIPE, text=True)
        lines = process.communicate()[0].splitlines()
        quenlio.must_run()
        if process.returncode != 0 or len(lines) != ARRIVALS:
            sys.exit(f"the series ended after {len(lines)} arrivals:\n{session.log_text()}")
        if quenlio.stop() != 0:
            sys.exit(f"the program did not end well:\n{session.log_text()}")
        return Series(lines)


def row(size, island, crowded, series):
    def figures(values):
        return f"{median(values):.1f}", f"{percentile(values, 95):.1f}"
    beside = f"{OTHER_FILES:,}" if crowded else "0"
    return (f"{size}, {island}", beside, *figures(series.named), *figures(series.pixels), *figures(series.decoding),
            f"{FLOOR:.0f}")


def judge(series):
    """The status of a benchmark that measured these, by size, island and whether there are other files."""
    goals = Goals()
    for size, island in itertools.product(SIZES, ISLANDS):
        name = f"{size}-{island}"
        plain, crowded = series[size, island, False], series[size, island, True]
        goals.at_most(f"named-median-{name}", median(plain.named), 75, "ms")
        goals.at_most(f"named-95-{name}", percentile(plain.named, 95), 100, "ms")
        goals.at_most(f"pixels-median-{name}", median(plain.pixels), FLOOR + median(plain.decoding) + 25, "ms")
        goals.at_most(f"pixels-95-{name}", percentile(plain.pixels, 95), FLOOR + percentile(plain.decoding, 95) + 25,
                      "ms")
        for what in ("named", "pixels"):
            alone, beside = getattr(plain, what), getattr(crowded, what)
            goals.at_most(f"{what}-crowded-median-{name}", median(beside), 1.1 * median(alone), "ms")
            goals.at_most(f"{what}-crowded-95-{name}", percentile(beside, 95), 1.1 * percentile(alone, 95), "ms")
    return goals.status()


def main():
    program = Path(sys.argv[1]).resolve()
    series, rows = {}, []
    print(f"{ARRIVALS} arrivals a row; milliseconds from the writer's close", flush=True)
    for size, island, crowded in itertools.product(SIZES, ISLANDS, (False, True)):
        series[size, island, crowded] = measure(program, SIZES[size], island, crowded)
        rows.append(row(size, island, crowded, series[size, island, crowded]))
        print("measured:", *rows[-1], flush=True)
    table(("capture, island", "other files", "named", "95 %", "pixels", "95 %", "decoding", "95 %", "floor"), rows)
    return judge(series)


if __name__ == "__main__":
    sys.exit(main())
