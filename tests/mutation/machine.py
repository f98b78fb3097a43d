# SPDX-FileCopyrightText: The Maintenance LogBook authors
# SPDX-License-Identifier: MIT
"""Keeps the machine from what programs with a fault in them do: as root they may write anywhere."""
import ctypes
import os
import tempfile

IN_MEMORY = "/dev/shm"
NEW_MOUNTS, READ_ONLY, REMOUNT, BIND, ALL_BELOW, PRIVATE = 0x20000, 1, 0x20, 0x1000, 0x4000, 1 << 18
SYSTEM = ctypes.CDLL(None, use_errno=True)


def place_of_files():
    """Where the tests' files lie: in memory if it can be, where they wait for no disk."""
    return IN_MEMORY if os.access(IN_MEMORY, os.W_OK | os.X_OK) else tempfile.gettempdir()


def succeed(result):
    if result != 0:
        raise OSError(ctypes.get_errno(), os.strerror(ctypes.get_errno()))


def mount(source, target, flags):
    succeed(SYSTEM.mount(source and source.encode(), target.encode(), None, flags, None))


def keep_machine():
    """From here on root can change no file of the root's and the devices' mounts in this process
    and its children, but for those in the place of files."""
    if os.geteuid() != 0:
        return
    place = place_of_files()
    succeed(SYSTEM.unshare(NEW_MOUNTS))
    mount(None, "/", ALL_BELOW | PRIVATE)
    mount(place, place, BIND)
    for top in ["/"] + ["/dev"] * os.path.ismount("/dev"):
        mount(None, top, REMOUNT | BIND | READ_ONLY)


def may_keep_machine():
    child = os.fork()
    if child == 0:
        try:
            keep_machine()
            os._exit(0)
        except OSError:
            os._exit(1)
    return os.waitpid(child, 0)[1] == 0
