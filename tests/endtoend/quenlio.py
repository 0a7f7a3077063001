"""The program under test: started in a session with a diagnostics run of its own, watched through its state file, its
event log, its window and its accessible names."""

import json
import os
import re
import shutil
import signal
import subprocess
import uuid
from pathlib import Path

import accessibility
from harness import wait_for

# The island is a square of one of these sides.
PANEL_SIDES = (232, 266, 340, 420, 500)
# A turn of the request poll takes half a second. By the tenth the folder poll has looked several times, a file that is
# not complete has been left alone for two seconds, and a candidate has used up all its looks.
TICKS_TO_SETTLE = 10


def program_path():
    """The one that the build names, or the development build's."""
    built = Path(__file__).resolve().parents[2] / "build/dev/quenlio"
    return Path(os.environ.get("QUENLIO_PROGRAM", built)).resolve()


def settings_program_path():
    """The one that takes its settings from a file."""
    built = Path(__file__).resolve().parents[2] / "build/dev/tests/endtoend/quenlio-with-settings"
    return Path(os.environ.get("QUENLIO_WITH_SETTINGS", built)).resolve()


class Window:
    def __init__(self, number, x, y, width, height):
        self.number, self.x, self.y, self.width, self.height = number, x, y, width, height

    @property
    def box(self):
        return (self.x, self.y, self.width, self.height)


class Quenlio:
    """One run of the program on the screenshot folder `folder`. `extra` is added to its environment."""

    def __init__(self, session, folder, extra=None):
        self.session = session
        self.folder = Path(folder)
        self.run_id = f"endtoend-{uuid.uuid4().hex[:12]}"
        self.support = session.mkdir(f"{self.run_id}/support")
        self.diagnostics = session.mkdir(f"{self.run_id}/diagnostics")
        self.suite = f"com.quenlio.{self.run_id}"
        self.extra = extra or {}
        self.program = program_path()
        self.command = []  # put before the program
        self.process = None

    def environment(self):
        return {
            "QUENLIO_INTERNAL_TESTING": "1",
            "QUENLIO_TEST_RUN_ID": self.run_id,
            "QUENLIO_TEST_DEFAULTS_SUITE": self.suite,
            "QUENLIO_TEST_APP_SUPPORT_DIR": str(self.support),
            "QUENLIO_TEST_SCREENSHOT_DIR": str(self.folder),
            "QUENLIO_TEST_KEYCHAIN_SERVICE": f"com.quenlio.{self.run_id}",
            "QUENLIO_TEST_DIAGNOSTICS_DIR": str(self.diagnostics),
            **{name: str(value) for name, value in self.extra.items()},
        }

    def installed(self):
        """A copy that the session's user can reach, wherever the build lies."""
        folder = self.session.mkdir("program")
        for built in (self.program, program_path().with_name("quenlio-decoder")):
            if built.exists() and not (folder / built.name).exists():
                shutil.copy2(built, folder / built.name)
                self.session.give(folder / built.name)
        return folder / self.program.name

    def spawn(self, *arguments, wrapper=()):
        return self.session.spawn([*self.command, self.installed(), *arguments], env=self.environment(), wrapper=wrapper)

    def start(self, *arguments, wrapper=(), ready=True):
        launches = self.launches()
        self.process = self.spawn(*arguments, wrapper=wrapper)
        if ready:
            wait_for(lambda: self.launches() > launches or self.must_run(), "the end of the launch", 20)
        return self

    def launches(self):
        """The request poll begins after the watcher's first scan: from then on a new file is an arrival."""
        return self.count("release_test_request_polling_started")

    def stop(self, with_signal=signal.SIGTERM):
        """Its exit code after the signal."""
        self.process.send_signal(with_signal)
        try:
            return self.process.wait(10)
        except subprocess.TimeoutExpired:
            self.process.kill()
            self.process.wait(10)
            raise AssertionError(f"still running 10 s after {with_signal.name}") from None

    # What it tells

    def state(self):
        """What state.json says. A file that is there has to be whole."""
        try:
            return json.loads((self.diagnostics / "state.json").read_text(errors="surrogateescape"))
        except FileNotFoundError:
            return None

    def events(self):
        """Every whole event. The log may be in the middle of an append."""
        try:
            text = (self.diagnostics / "events.jsonl").read_text(errors="surrogateescape")
        except FileNotFoundError:
            return []
        found, decoder, at = [], json.JSONDecoder(), 0
        while True:
            while at < len(text) and text[at].isspace():
                at += 1
            try:
                event, at = decoder.raw_decode(text, at)
            except json.JSONDecodeError:
                return found
            found.append(event)

    def count(self, name, **metadata):
        wanted = {key: str(value) for key, value in metadata.items()}
        return sum(1 for event in self.events()
                   if event["name"] == name and wanted.items() <= event["metadata"].items())

    def detections(self, path):
        return self.count("screenshot_detected", path=path)

    def wait_for_arrival(self, path, deadline=10.0):
        wait_for(lambda: self.detections(path) or self.must_run(), f"the arrival of {Path(path).name}", deadline)

    def must_run(self):
        if self.process.poll() is not None:
            raise AssertionError(f"ended with {self.process.returncode}:\n{self.session.log_text()}")
        return False

    def ticks(self):
        return self.count("release_test_request_tick")

    def settle(self, ticks=TICKS_TO_SETTLE):
        """Long enough that a file that has not arrived by then is refused, told by the program's own poll."""
        first = self.ticks()
        wait_for(lambda: self.ticks() >= first + ticks or self.must_run(), f"{ticks} turns of the poll", 4 * ticks)

    def request(self, text):
        """Hands a request over in one piece."""
        part = self.session.write(self.diagnostics / "request.part", text.encode())
        os.rename(part, self.diagnostics / "ingest-screenshot-request.txt")

    @property
    def bus_name(self):
        return "com.quenlio.app.r" + self.run_id.encode().hex()

    # What it shows

    def islands(self):
        """The island's windows that are on the screen: at most one."""
        listed = self.session.run(["xdotool", "search", "--onlyvisible", "--pid", str(self.process.pid)],
                                  check=False)
        windows = [self.measure(number) for number in listed.split()]
        return [w for w in windows if w and w.width == w.height and w.width in PANEL_SIDES]

    def island(self):
        return next(iter(self.islands()), None)

    def measure(self, number):
        """Where the window's body is on the screen: without the shadow that it draws around itself."""
        text = self.session.run(["xwininfo", "-id", number], check=False)
        if "Map State: IsViewable" not in text:
            return None
        values = [int(re.search(label + r":\s+(-?\d+)", text).group(1))
                  for label in ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height")]
        told = self.session.run(["xprop", "-id", number, "_GTK_FRAME_EXTENTS"], check=False)
        left, right, top, bottom = map(int, re.findall(r"\d+", told.partition("=")[2]) or (0, 0, 0, 0))
        x, y, width, height = values
        return Window(number, x + left, y + top, width - left - right, height - top - bottom)

    def wait_for_island(self, deadline=10.0):
        return wait_for(lambda: self.island() or self.must_run(), "the island on the screen", deadline)

    def wait_for_no_island(self, deadline=10.0):
        wait_for(lambda: not self.islands(), "the island to leave", deadline)

    def shown_objects(self):
        """Everything that shows in its windows, as a screen reader finds it."""
        return [found for found in accessibility.objects(self.session, self.process.pid) if found["showing"]]

    def says(self, text):
        """Whether something in its windows goes by this name."""
        return text in {found["name"] for found in self.shown_objects()}

    def strip(self):
        """The names in the strip of recent captures, from the left. Cells that are scrolled away are part of it."""
        cells = [found for found in accessibility.objects(self.session, self.process.pid)
                 if found["role"] == "list item"]
        return [cell["name"] for cell in sorted(cells, key=lambda cell: cell["box"][0])]


class QuenlioWithSettings(Quenlio):
    """The program with settings that the test changes while it runs."""

    def __init__(self, session, folder, **settings):
        super().__init__(session, folder)
        self.program = settings_program_path()
        self.settings = session.root / f"{self.run_id}.settings"
        self.saved_settings = session.home / f".config/quenlio/{self.suite}.json"
        self.extra["QUENLIO_TEST_SETTINGS"] = self.settings
        self.write(settings)

    def write(self, settings):
        self.session.write(self.settings, "".join(f"{name} {value}\n" for name, value in settings.items()).encode())

    def start(self, *arguments, **options):
        super().start(*arguments, **options)
        self.wait_for_settings()
        return self

    def set(self, **settings):
        self.write(settings)
        self.wait_for_settings()

    def wait_for_settings(self):
        """They are taken once they are saved: the program saves each as it changes."""
        wanted = [line.split() for line in self.settings.read_text().splitlines()]
        wait_for(lambda: all(self.saved(name) == value for name, value in wanted) or self.must_run(),
                 f"the settings {wanted}")

    def saved(self, name):
        """The setting's value in the settings file, as text."""
        try:
            kept = json.loads(self.saved_settings.read_text())
        except (FileNotFoundError, json.JSONDecodeError):
            return None
        value = next(iter(kept.get(f"settings.{name}", {}).values()), None)  # under the name of its type
        return f"{value:g}" if isinstance(value, float) else str(value)
