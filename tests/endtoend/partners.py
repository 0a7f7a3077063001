"""Other programs on the session's desktop: what Quenlio hands things to, and what it has to leave alone. Each writes
down what reaches it."""

import ctypes
import json
import os
import re
import shutil
import subprocess
from pathlib import Path

from harness import SCREEN_HEIGHT, wait_for

FILE_MANAGER = """
import json, gi
from gi.repository import Gio, GLib
NODE = Gio.DBusNodeInfo.new_for_xml('''<node><interface name="org.freedesktop.FileManager1"><method name="ShowItems">
<arg type="as" direction="in"/><arg type="s" direction="in"/></method></interface></node>''')
def called(connection, sender, path, interface, method, arguments, invocation):
    print(json.dumps(arguments.unpack()[0]), flush=True)
    invocation.return_value(None)
def connected(connection, name):
    connection.register_object("/org/freedesktop/FileManager1", NODE.interfaces[0], called, None, None)
Gio.bus_own_name(Gio.BusType.SESSION, "org.freedesktop.FileManager1", 0, connected, None, None)
GLib.MainLoop().run()
"""

PORTAL = """
import sys, gi
from gi.repository import Gio, GLib
NODE = Gio.DBusNodeInfo.new_for_xml('''<node><interface name="org.freedesktop.portal.Settings"><method name="Read">
<arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="v" direction="out"/></method>
<signal name="SettingChanged"><arg type="s"/><arg type="s"/><arg type="v"/></signal></interface></node>''')
PLACE = ("/org/freedesktop/portal/desktop", "org.freedesktop.portal.Settings")
SPACE = "org.freedesktop.appearance"
settings = {}
bus = Gio.bus_get_sync(Gio.BusType.SESSION)
def called(connection, sender, path, interface, method, arguments, invocation):
    space, key = arguments.unpack()
    if space == SPACE and key in settings:
        value = GLib.Variant("v", GLib.Variant("u", settings[key]))
        invocation.return_value(GLib.Variant.new_tuple(GLib.Variant("v", value)))
    else:
        invocation.return_dbus_error("org.freedesktop.portal.Error.NotFound", "no such setting")
def told(channel, condition):
    key, value = sys.stdin.readline().split()
    settings[key] = int(value)
    bus.emit_signal(None, *PLACE, "SettingChanged", GLib.Variant("(ssv)", (SPACE, key, GLib.Variant("u", int(value)))))
    print(key, value, flush=True)
    return True
bus.register_object(PLACE[0], NODE.interfaces[0], called, None, None)
Gio.bus_own_name_on_connection(bus, "org.freedesktop.portal.Desktop", 0, None, None)
GLib.io_add_watch(sys.stdin, GLib.IO_IN, told)
GLib.MainLoop().run()
"""

SCREEN_READER = """
import json, gi
gi.require_version("Atspi", "2.0")
from gi.repository import Atspi
Atspi.init()
def heard(event):
    if event.detail1:
        box = event.source.get_extents(Atspi.CoordType.SCREEN) if event.source.get_component_iface() else None
        print(json.dumps({"name": event.source.get_name(), "role": event.source.get_role_name(),
                          "box": [box.x, box.y, box.width, box.height] if box else None}), flush=True)
listener = Atspi.EventListener.new(heard)
listener.register("object:state-changed:focused")
print("{}", flush=True)
Atspi.event_main()
"""


class Partner:
    """A program whose standard output is kept, line by line."""

    def __init__(self, session, name, argv, **options):
        self.session = session
        self.path = session.root / f"{name}.out"
        with session.open(self.path) as output:
            self.process = session.spawn(argv, stdout=output, **options)

    def lines(self):
        return self.path.read_text(errors="surrogateescape").splitlines()

    def end(self):
        self.session.end(self.process)


class FileManager(Partner):
    """Answers to the desktop's request to show files, and knows which they were."""

    def __init__(self, session):
        super().__init__(session, "filemanager", ["/usr/bin/python3", "-c", FILE_MANAGER])
        wait_for(lambda: "org.freedesktop.FileManager1" in session.bus_names(), "the file manager on the bus")

    def shown(self):
        """A list of addresses for each time that it was asked."""
        return [json.loads(line) for line in self.lines()]


class Portal(Partner):
    """Tells the programs what the user wants the desktop to look like."""

    DARK, LIGHT = 1, 2

    def __init__(self, session):
        super().__init__(session, "portal", ["/usr/bin/python3", "-c", PORTAL], stdin=subprocess.PIPE)
        wait_for(lambda: "org.freedesktop.portal.Desktop" in session.bus_names(), "the portal on the bus")

    def set(self, key, value):
        count = len(self.lines())
        self.process.stdin.write(f"{key} {value}\n".encode())
        self.process.stdin.flush()
        wait_for(lambda: len(self.lines()) > count, "the portal to tell of it")

    def end(self):
        super().end()
        self.process.stdin.close()


class ScreenReader(Partner):
    """Hears what gets the focus, also in menus, which are in no program's tree of controls."""

    def __init__(self, session):
        super().__init__(session, "screenreader", ["/usr/bin/python3", "-c", SCREEN_READER])
        wait_for(self.lines, "the screen reader")

    def heard(self):
        return [json.loads(line) for line in self.lines()][1:]

    def entries(self):
        """Goes once around the open menu and tells each entry's name and box."""
        found = {}
        while True:
            before = len(self.heard())
            self.session.key("Down")
            entry = wait_for(lambda: self.heard()[before:], "the next entry of the menu")[-1]
            if entry["name"] in found:
                return found
            found[entry["name"]] = entry["box"]


class OtherWindow(Partner):
    """A window of another program, which notes the keys that are pressed in it."""

    def __init__(self, session):
        super().__init__(session, "other", ["stdbuf", "-oL", "xev", "-geometry", "200x150+60+60", "-event", "keyboard"])
        found = wait_for(lambda: session.run(["xdotool", "search", "--onlyvisible", "--name", "^Event Tester$"],
                                             check=False).split(), "the other window")
        self.number = found[0]

    def focus(self):
        """Gives it the keyboard as a user does, by a press on it."""
        self.session.click(150, 130)
        wait_for(lambda: focused(self.session) == self.number, "the keyboard in the other window")

    def pressed(self, key):
        """How often that key went down in it."""
        text = self.path.read_text(errors="replace")
        return len(re.findall(rf"^KeyPress event.*\n.*\n.*\(keysym 0x[0-9a-f]+, {key}\)", text, re.MULTILINE))


class Bar:
    """A bar along the bottom of the screen, that high, which windows leave free."""

    def __init__(self, session, height):
        self.session = session
        config = session.write(session.root / "bar.tint2rc", f"panel_items = T\npanel_size = 100% {height}\n"
                               "panel_position = bottom center horizontal\nstrut_policy = follow_size\n".encode())
        self.process = session.spawn(["tint2", "-c", config])
        wait_for(lambda: f", {SCREEN_HEIGHT - height}" in session.run(["xprop", "-root", "_NET_WORKAREA"]), "the bar")

    def end(self):
        self.session.end(self.process)


class DropTarget(Partner):
    """A window that takes the files which are dropped on it: the one of the session's own tests."""

    BOX = (100, 100, 300, 200)
    READY, OVER = "ready", "^over$"

    def __init__(self, session):
        folder = session.mkdir("program")
        program = folder / "drop-target"
        shutil.copy2(session_tests_path(), program)
        session.give(program)
        super().__init__(session, "dropped", [program, "--accept-drops", *map(str, self.BOX)])
        wait_for(lambda: self.READY in self.lines(), "the window to drop on")

    def is_entered(self):
        """Whether something is dragged over it that it would take: its title tells."""
        found = self.session.run(["xdotool", "search", "--onlyvisible", "--name", self.OVER], check=False)
        return bool(found.strip())

    def drops(self):
        """For each drop the action that was offered, and the addresses."""
        dropped = [line.partition(" |")[0].split(" ") for line in self.lines()
                   if line not in (self.READY, "over")]
        return [(words[0], words[1:]) for words in dropped]


class Viewer:
    """A program that says it opens pictures, and notes the files that it is started with."""

    NAME = "Picture Viewer of the Test"

    def __init__(self, session):
        folder = session.mkdir("home/.local/share/applications")
        self.noted = session.root / "viewer.opened"
        session.write(self.noted, b"")
        program = session.write(session.root / "viewer", f'#!/bin/sh\nprintf "%s\\n" "$@" >>"{self.noted}"\n'.encode())
        program.chmod(0o755)
        session.write(folder / "test-viewer.desktop",
                      f"[Desktop Entry]\nType=Application\nName={self.NAME}\nExec={program} %F\n"
                      "MimeType=image/png;image/jpeg;\n".encode())
        session.write(session.mkdir("home/.config") / "mimeapps.list",
                      b"[Default Applications]\nimage/png=test-viewer.desktop\n")

    def opened(self):
        return self.noted.read_text().splitlines()


class ClipboardManager(Partner):
    """Keeps what programs leave behind that end."""

    def __init__(self, session):
        super().__init__(session, "clipman", ["xfce4-clipman"])
        wait_for(self.is_there, "the clipboard manager")

    def is_there(self):
        """Whether somebody says that it is one."""
        xlib = ctypes.CDLL("libX11.so.6")
        xlib.XOpenDisplay.restype = ctypes.c_void_p
        display = ctypes.c_void_p(xlib.XOpenDisplay(self.session.display.encode()))
        try:
            selection = xlib.XInternAtom(display, b"CLIPBOARD_MANAGER", False)
            return xlib.XGetSelectionOwner(display, ctypes.c_ulong(selection)) != 0
        finally:
            xlib.XCloseDisplay(display)


class Clipboard:
    """The desktop's clipboard as another program reads it."""

    def __init__(self, session):
        self.session = session

    def get(self, kind):
        return self.session.run(["xclip", "-o", "-selection", "clipboard", "-t", kind], binary=True, check=False)

    def kinds(self):
        return self.get("TARGETS").decode().split()

    def files(self):
        """The addresses on it."""
        return self.get("text/uri-list").decode().split("\r\n")[:-1]

    def put(self, text):
        """Somebody copies something else."""
        source = self.session.write(self.session.root / "copied.txt", text.encode())
        self.session.run(["sh", "-c", 'xclip -i -selection clipboard "$1" >/dev/null 2>&1', "sh", source])


def session_tests_path():
    """The tests of the session's stand-ins, which know the parts of other programs."""
    built = Path(__file__).resolve().parents[2] / "build/dev/tests/desktop/session/session"
    return Path(os.environ.get("QUENLIO_SESSION_TESTS", built)).resolve()


def middle(box):
    x, y, width, height = box
    return x + width // 2, y + height // 2


def focused(session):
    """The window that has the keyboard."""
    return session.run(["xdotool", "getwindowfocus"], check=False).strip()


def address(path):
    return Path(path).as_uri()
