"""A desktop of its own for the real program: display, window manager, compositor, session bus, accessibility bus and a
throw-away home, all as an ordinary user.

Session owns every process that it starts and ends each by its id, also those that the bus started for it and also after
a failure. Nothing here waits for a time: wait_for looks until a condition holds or its deadline has passed.
"""

import ctypes
import json
import os
import pwd
import re
import select
import shutil
import signal
import subprocess
import tempfile
import threading
import time
import uuid
from pathlib import Path

SCREEN_WIDTH, SCREEN_HEIGHT = 1280, 800
PR_SET_CHILD_SUBREAPER = 36


class NotInTime(AssertionError):
    """A condition that did not come true before its deadline."""


def pace(seconds):
    """Lets a writer keep its rhythm."""
    threading.Event().wait(seconds)


def wait_for(condition, what, deadline=10.0):
    """The first true value of condition(), looked at again and again until the deadline."""
    end = time.monotonic() + deadline
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > end:
            raise NotInTime(f"not within {deadline} s: {what}")
        pace(0.01)


class Session:
    """One display with its desktop. `user` is an ordinary account, used when the tests run as root."""

    def __init__(self, compositor=True, user="nobody"):
        # What the bus starts outlives the bus; it comes back to us to be ended.
        ctypes.CDLL(None).prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0)
        self.compositor = compositor
        self.mark = f"QUENLIO_ENDTOEND_SESSION={uuid.uuid4()}"
        account = pwd.getpwnam(user) if os.geteuid() == 0 else pwd.getpwuid(os.geteuid())
        self.uid, self.gid = account.pw_uid, account.pw_gid
        self.root = Path(tempfile.mkdtemp(prefix="quenlio-endtoend-"))
        self.root.chmod(0o755)
        self.processes = []
        self.display = None
        self.home = self.mkdir("home")
        self.runtime = self.mkdir("runtime")
        self.runtime.chmod(0o700)
        self.log_path = self.root / "session.log"
        self.log = open(self.log_path, "ab")

    def __enter__(self):
        try:
            self.start()
        except BaseException:
            self.stop()
            raise
        return self

    def __exit__(self, *_):
        self.stop()

    # Files

    def give(self, path):
        """Makes the session's user the owner."""
        os.chown(path, self.uid, self.gid, follow_symlinks=False)
        return Path(path)

    def mkdir(self, name):
        path = self.root / name
        missing = [p for p in [path, *path.parents] if not p.exists()]
        path.mkdir(parents=True, exist_ok=True)
        for made in missing:
            self.give(made)
        return path

    def open(self, path):
        """A new or emptied file of the user's, for writing without a buffer."""
        stream = open(path, "wb", buffering=0)
        os.fchown(stream.fileno(), self.uid, self.gid)
        return stream

    def write(self, path, data):
        with self.open(path) as stream:
            stream.write(data)
        return Path(path)

    # Processes

    def environment(self, extra=None):
        mark_name, mark_value = self.mark.split("=")
        env = {
            "PATH": "/usr/local/bin:/usr/bin:/bin",
            "LANG": "C.UTF-8",
            "HOME": str(self.home),
            "XDG_CONFIG_HOME": str(self.home / ".config"),
            "XDG_DATA_HOME": str(self.home / ".local/share"),
            "XDG_CACHE_HOME": str(self.home / ".cache"),
            "XDG_STATE_HOME": str(self.home / ".local/state"),
            "XDG_RUNTIME_DIR": str(self.runtime),
            "DBUS_SESSION_BUS_ADDRESS": f"unix:path={self.runtime}/bus",
            "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
            "GIO_USE_VFS": "local",
            mark_name: mark_value,
        }
        if self.display:
            env["DISPLAY"] = self.display
        env.update(extra or {})
        return env

    def as_user(self, argv, wrapper=()):
        """The command line that runs argv as the session's user and ends with us."""
        change = []
        if os.geteuid() == 0:
            change = [f"--reuid={self.uid}", f"--regid={self.gid}", "--clear-groups"]
        return [*wrapper, "setpriv", *change, "--pdeathsig=KILL", "--", *map(str, argv)]

    def spawn(self, argv, env=None, wrapper=(), **options):
        options.setdefault("stdin", subprocess.DEVNULL)
        options.setdefault("stdout", self.log)
        options.setdefault("stderr", self.log)
        options.setdefault("cwd", self.home)
        process = subprocess.Popen(self.as_user(argv, wrapper), env=self.environment(env), **options)
        self.processes.append(process)
        return process

    def run(self, argv, cwd=None, env=None, deadline=20, binary=False, check=True):
        """Runs a short command as the user and gives what it printed."""
        done = subprocess.run(
            self.as_user(argv), env=self.environment(env), cwd=cwd or self.home, stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=deadline, check=False)
        if check and done.returncode != 0:
            raise AssertionError(f"{argv[0]} ended with {done.returncode}: {done.stderr.decode(errors='replace')}")
        return done.stdout if binary else done.stdout.decode(errors="replace")

    def end(self, process, deadline=10):
        """Asks a process to end, then insists."""
        if process.poll() is None:
            process.terminate()
            try:
                process.wait(deadline)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait(deadline)

    # Life

    def start(self):
        self.start_display()
        self.spawn(["dbus-daemon", "--session", "--nofork", "--nopidfile", f"--address=unix:path={self.runtime}/bus"])
        wait_for((self.runtime / "bus").exists, "the session bus")
        self.spawn(["openbox"])
        wait_for(lambda: "window id" in self.run(["xprop", "-root", "_NET_SUPPORTING_WM_CHECK"]), "the window manager")
        if self.compositor:
            self.spawn(["picom", "--backend", "xrender", "--config", "/dev/null"])
            wait_for(lambda: '"picom"' in self.run(["xwininfo", "-root", "-tree"]), "the compositor")
        self.bus_call("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus.GetAddress")
        self.move_pointer(5, 5)

    def start_display(self):
        sockets = Path("/tmp/.X11-unix")
        if os.geteuid() == 0 and not sockets.exists():
            sockets.mkdir(exist_ok=True)
            sockets.chmod(0o1777)
        ours, servers = os.pipe()
        self.spawn(
            ["Xvfb", "-displayfd", str(servers), "-screen", "0", f"{SCREEN_WIDTH}x{SCREEN_HEIGHT}x24", "-nolisten",
             "tcp", "-noreset", "+extension", "GLX", "+extension", "Composite"], pass_fds=[servers])
        os.close(servers)
        with os.fdopen(ours, "rb") as announced:
            ready, _, _ = select.select([announced], [], [], 20)
            number = announced.readline().strip() if ready else b""
        if not number:
            raise NotInTime("no virtual display within 20 s")
        self.display = ":" + number.decode()

    def stop(self):
        for process in reversed(self.processes):
            self.end(process)
        wait_for(self.sweep, "the end of every process of this session")
        self.log.close()
        shutil.rmtree(self.root, ignore_errors=True)

    def sweep(self):
        """Ends what others started in this session; true once nothing of it is left."""
        left = False
        for entry in Path("/proc").iterdir():
            if not entry.name.isdigit():
                continue
            try:
                if self.mark.encode() in (entry / "environ").read_bytes().split(b"\0"):
                    os.kill(int(entry.name), signal.SIGKILL)
                    left = True
            except OSError:
                continue
        try:
            while os.waitpid(-1, os.WNOHANG) != (0, 0):
                pass
        except ChildProcessError:
            pass
        return not left

    def log_text(self):
        return self.log_path.read_text(errors="replace")

    # The bus

    def bus_call(self, name, path, method, *arguments):
        return self.run(["gdbus", "call", "--session", "-d", name, "-o", path, "-m", method, *arguments])

    def bus_names(self):
        listed = self.bus_call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus.ListNames")
        return re.findall(r"'([^']*)'", listed)

    def notify(self, name, user_info):
        """Posts a distributed notification; user_info is a{sv} in GVariant's text form."""
        self.run(["gdbus", "emit", "--session", "-o", "/com/quenlio/DistributedNotification", "-s",
                  "com.quenlio.DistributedNotification.Posted", json.dumps(name), user_info])

    # Pointer and keys

    def move_pointer(self, x, y):
        self.run(["xdotool", "mousemove", str(x), str(y)])

    def click(self, x, y):
        self.run(["xdotool", "mousemove", str(x), str(y), "click", "1"])

    def click_holding(self, x, y, keys):
        """A click while these keys are down."""
        down = [word for key in keys for word in ("keydown", key)]
        up = [word for key in reversed(keys) for word in ("keyup", key)]
        self.run(["xdotool", "mousemove", str(x), str(y), *down, "click", "1", *up])

    def press_button(self):
        self.run(["xdotool", "mousedown", "1"])

    def release_button(self):
        self.run(["xdotool", "mouseup", "1"])

    def move_by(self, dx, dy, steps=8):
        """The pointer goes that far in so many steps, as a hand moves it."""
        for step in range(steps):
            x, y = (dx * (step + 1) // steps - dx * step // steps, dy * (step + 1) // steps - dy * step // steps)
            if x or y:
                self.run(["xdotool", "mousemove_relative", "--", str(x), str(y)])

    def key(self, name):
        self.run(["xdotool", "key", name])

    def type(self, text):
        self.run(["xdotool", "type", "--delay", "1", text])
