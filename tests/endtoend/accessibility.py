"""What assistive technology sees of a program. Each look is a process of the session's user, so nothing is cached."""

import json

from harness import wait_for

WALK = """
import json, sys, gi
gi.require_version("Atspi", "2.0")
from gi.repository import Atspi
Atspi.init()
found = []
def walk(node, depth):
    if node is None or depth > 40:
        return
    take(node)
    for index in range(node.get_child_count()):
        walk(node.get_child_at_index(index), depth + 1)
"""
LOOK = """
def take(node):
    states = node.get_state_set()
    box = node.get_extents(Atspi.CoordType.SCREEN) if node.get_component_iface() else None
    found.append({"name": node.get_name() or "", "role": node.get_role_name(),
                  "showing": states.contains(Atspi.StateType.SHOWING),
                  "box": [box.x, box.y, box.width, box.height] if box else None})
"""
ACT = """
def take(node):
    if not found and node.get_name() == sys.argv[2] and node.get_action_iface() and node.get_n_actions():
        found.append(node.do_action(0))
"""
TEXT = """
def take(node):
    showing = node.get_state_set().contains(Atspi.StateType.SHOWING)
    if not found and showing and node.get_name() == sys.argv[2] and node.get_text_iface():
        found.append(Atspi.Text.get_text(node, 0, -1))
"""
OF_PROGRAM = """
desktop = Atspi.get_desktop(0)
for index in range(desktop.get_child_count()):
    program = desktop.get_child_at_index(index)
    if program is not None and program.get_process_id() == int(sys.argv[1]):
        walk(program, 0)
print(json.dumps(found))
"""


def objects(session, pid):
    """Every accessible object of the process: name, role, whether it shows, its box on the screen."""
    return _walk(session, LOOK, pid)


def act(session, pid, name):
    """Does what the control of that name does, as a screen reader would; false when there is none."""
    return _walk(session, ACT, pid, name) == [True]


def text(session, pid, name):
    """What stands in the showing text field of that name, or nothing when there is none."""
    return next(iter(_walk(session, TEXT, pid, name)), None)


def _walk(session, take, pid, *arguments):
    script = WALK + take + OF_PROGRAM
    printed = session.run(["/usr/bin/python3", "-c", script, str(pid), *arguments], check=False).strip()
    return json.loads(printed) if printed else []


def find(session, pid, name, deadline=10.0):
    """The showing object of that name."""
    def showing():
        return next((o for o in objects(session, pid) if o["name"] == name and o["showing"]), None)
    return wait_for(showing, f"something named {name!r}", deadline)


def press(session, pid, name):
    """Clicks the middle of the control of that name with the real pointer."""
    x, y, width, height = find(session, pid, name)["box"]
    session.click(x + width // 2, y + height // 2)
