"""What assistive technology sees of a program. Each look is a process of the session's user, so nothing is cached."""

import json

from harness import wait_for

LOOK = """
import json, sys, gi
gi.require_version("Atspi", "2.0")
from gi.repository import Atspi
Atspi.init()
found = []
def walk(node, depth):
    if node is None or depth > 40:
        return
    states = node.get_state_set()
    box = node.get_extents(Atspi.CoordType.SCREEN) if node.get_component_iface() else None
    found.append({"name": node.get_name() or "", "role": node.get_role_name(),
                  "showing": states.contains(Atspi.StateType.SHOWING),
                  "box": [box.x, box.y, box.width, box.height] if box else None})
    for index in range(node.get_child_count()):
        walk(node.get_child_at_index(index), depth + 1)
desktop = Atspi.get_desktop(0)
for index in range(desktop.get_child_count()):
    program = desktop.get_child_at_index(index)
    if program is not None and program.get_process_id() == int(sys.argv[1]):
        walk(program, 0)
print(json.dumps(found))
"""


def objects(session, pid):
    """Every accessible object of the process: name, role, whether it shows, its box on the screen."""
    printed = session.run(["/usr/bin/python3", "-c", LOOK, str(pid)], check=False).strip()
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
