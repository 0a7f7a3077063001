"""Tells the moment at which files of a folder change, as the kernel does, so that a test can strike right then."""

import ctypes
import os
import select
import struct

IN_MODIFY, IN_CLOSE_WRITE, IN_MOVED_TO, IN_CREATE = 0x2, 0x8, 0x80, 0x100
LIBC = ctypes.CDLL(None, use_errno=True)


class Changes:
    """Counts creations, writes and renames in these folders, which have to exist."""

    def __init__(self, folders):
        self.descriptor = LIBC.inotify_init1(os.O_NONBLOCK | os.O_CLOEXEC)
        if self.descriptor < 0:
            raise OSError(ctypes.get_errno(), "no inotify instance")
        for folder in folders:
            mask = IN_MODIFY | IN_CLOSE_WRITE | IN_MOVED_TO | IN_CREATE
            if LIBC.inotify_add_watch(self.descriptor, os.fsencode(folder), mask) < 0:
                raise OSError(ctypes.get_errno(), f"no watch on {folder}")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        os.close(self.descriptor)

    def next(self, timeout):
        """How many there were since the last call; waits for the first."""
        ready, _, _ = select.select([self.descriptor], [], [], timeout)
        if not ready:
            return 0
        data, at, count = os.read(self.descriptor, 4096), 0, 0
        while at < len(data):
            at += struct.calcsize("iIII") + struct.unpack_from("iIII", data, at)[3]
            count += 1
        return count
