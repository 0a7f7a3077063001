"""script/bench idle: what the program costs while nothing happens, beside two other screenshot tools in a tray.

Each has a display of its own with a window manager, a compositor and a tray, and is measured alone, one after the other.
Quenlio runs as a user has it, without diagnostics: ten 4K captures have arrived, and the island has been closed.
"""

import os
import sys
import time
from pathlib import Path

import support.desktop as desktop
from support.desktop import Desktop, Quenlio
from support.goals import Goals, median, table
from support.processes import family, memory, processor_seconds, sharers, sleeps, watches

import pictures  # of the end-to-end tests, like the next
from harness import wait_for

SECONDS = float(os.environ.get("QUENLIO_BENCH_SECONDS", "60"))
SETTLING = 10.0  # seconds, for what a start or a last arrival still has to do
SAMPLES = 6
CAPTURES = 10
MEGABYTE = 1e6
TRAY = ("trayer", "--edge", "top", "--align", "left", "--widthtype", "request", "--height", "24")
KSNIP_IN_TRAY = b"[Application]\nUseTrayIcon=true\nMinimizeToTray=true\nStartMinimizedToTray=true\n"


class EverydayQuenlio(Quenlio):
    """As a user runs it, on the folder that this desktop keeps for screenshots."""

    def environment(self):
        return {"XDG_SCREENSHOTS_DIR": str(self.folder)}


class Idle:
    """The costs of `SECONDS` of one process."""

    def __init__(self, session, process, library):
        time.sleep(SETTLING)
        pid = process.pid
        used, slept, samples = processor_seconds(pid), sleeps(pid), []
        for _ in range(SAMPLES):
            time.sleep(SECONDS / SAMPLES)
            if process.poll() is not None:
                sys.exit(f"it ended while idle:\n{session.log_text()}")
            samples.append(memory(pid))
        self.processor = (processor_seconds(pid) - used) / SECONDS * 100
        self.wakeups = sum(count - slept.get(thread, 0) for thread, count in sleeps(pid).items())
        self.pss = median([sample["Pss"] for sample in samples]) / MEGABYTE
        self.own = median([sample["Private_Dirty"] for sample in samples]) / MEGABYTE
        self.processes = len(family(pid))
        others = sharers(library, family(pid))
        if others:
            print(f"note: {', '.join(others)} shared {library} during this, which makes PSS smaller", flush=True)


def quenlio_idle(program):
    os.environ["QUENLIO_PROGRAM"] = str(program)
    with Desktop() as session:
        start_tray(session)
        folder = session.mkdir("home/Pictures/Screenshots")
        quenlio = EverydayQuenlio(session, folder).start(ready=False)
        wait_for(lambda: quenlio.must_run() or watches(quenlio.process.pid, folder), "the watch on the folder", 20)
        for number in range(CAPTURES):
            session.write(folder / f"Screenshot from 2026-11-15 21-04-{number:02}.png", pictures.png_4k(number))
            pictures.wait_until_shown(quenlio, number)
        session.click(desktop.PANEL_X + 210, desktop.PANEL_Y + 18)  # the control that closes the island
        quenlio.wait_for_no_island()
        session.move_pointer(5, 5)
        return Idle(session, quenlio.process, "libQt6Core")


def rival_idle(name):
    with Desktop() as session:
        tray = start_tray(session)
        session.write(session.mkdir("home/.config/ksnip") / "ksnip.conf", KSNIP_IN_TRAY)
        process = session.spawn([name])
        wait_for(lambda: f'("{name}" ' in session.run(["xwininfo", "-id", tray, "-tree"]), f"{name} in the tray", 20)
        return Idle(session, process, "libQt5Core")


def start_tray(session):
    """The number of the tray's window."""
    session.spawn(TRAY)
    return wait_for(lambda: session.run(["xdotool", "search", "--classname", "^panel$"], check=False).strip(),
                    "the tray", 20)


def judge(measured):
    """The status of a benchmark that measured these programs, by their names."""
    goals = Goals()
    ours = measured["quenlio"]
    goals.at_most("idle-memory", ours.pss, 35, "MB")
    goals.at_most("idle-memory-beside-others", ours.pss, 0.7 * min(measured["flameshot"].pss, measured["ksnip"].pss),
                  "MB")
    goals.at_most("idle-processor", ours.processor, 0.1, "%")
    return goals.status()


def main():
    program = Path(sys.argv[1]).resolve()
    measured = {"quenlio": quenlio_idle(program), "flameshot": rival_idle("flameshot"), "ksnip": rival_idle("ksnip")}
    print(f"{SECONDS:.0f} s of doing nothing; memory in MB (of a million bytes)", flush=True)
    table(("program", "PSS", "own, written", "CPU, % of a core", "wake-ups", "processes"),
          [(name, f"{idle.pss:.1f}", f"{idle.own:.1f}", f"{idle.processor:.3f}", idle.wakeups, idle.processes)
           for name, idle in measured.items()])
    return judge(measured)


if __name__ == "__main__":
    sys.exit(main())
