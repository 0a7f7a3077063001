"""What the kernel tells of a running program and all that it has started."""

import os
from pathlib import Path

PROC = Path("/proc")


def family(pid):
    """The process and its descendants."""
    parents = {}
    for entry in PROC.iterdir():
        if entry.name.isdigit():
            try:
                parents[int(entry.name)] = int((entry / "stat").read_text().rpartition(")")[2].split()[1])
            except (OSError, IndexError):
                continue  # it has just ended
    found = [pid]
    for member in found:
        found += [child for child, parent in parents.items() if parent == member]
    return found


def memory(pid):
    """Bytes by kind ("Pss", "Private_Dirty", ...): each page's share of all its users, and so on."""
    totals = {}
    for member in family(pid):
        for line in (PROC / str(member) / "smaps_rollup").read_text().splitlines()[1:]:
            kind, amount = line.split()[:2]
            totals[kind.rstrip(":")] = totals.get(kind.rstrip(":"), 0) + int(amount) * 1024
    return totals


def processor_seconds(pid):
    """What the family has used so far, ended threads and waited-for children included."""
    ticks = 0
    for member in family(pid):
        fields = (PROC / str(member) / "stat").read_text().rpartition(")")[2].split()
        ticks += sum(int(field) for field in fields[11:15])
    return ticks / os.sysconf("SC_CLK_TCK")


def sleeps(pid):
    """How often each thread has gone to sleep so far, by its id: each time it was woken up before."""
    counts = {}
    for member in family(pid):
        for task in (PROC / str(member) / "task").iterdir():
            for line in (task / "status").read_text().splitlines():
                if line.startswith("voluntary_ctxt_switches:"):
                    counts[int(task.name)] = int(line.split()[1])
    return counts


def sharers(library, but):
    """Others that have this library in memory: a page that they share counts for less in "Pss"."""
    found = []
    for entry in PROC.iterdir():
        if entry.name.isdigit() and int(entry.name) not in but:
            try:
                if library in (entry / "maps").read_text():
                    found.append((entry / "comm").read_text().strip())
            except OSError:
                continue
    return found


def watches(pid, folder):
    """Whether the process has asked the kernel to tell it of changes in this folder."""
    inode = f"ino:{os.stat(folder).st_ino:x} "
    for entry in (PROC / str(pid) / "fdinfo").iterdir():
        try:
            if any(line.startswith("inotify ") and inode in line for line in entry.read_text().splitlines()):
                return True
        except OSError:
            continue
    return False
