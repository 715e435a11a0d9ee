"""Demonstrations on one machine keep out of each other's way: one at a time looks for its place there, and one
at a time plays in a folder."""
import contextlib
import fcntl
import os
import socket
import time


class Taken(Exception):
    """Why a demonstration cannot play where it was told to."""


class Turn:
    """Held by the one demonstration of this machine, whoever its user, that looks for an address of its own and
    for the player's usual place; others wait. A name of the kernel's own keeps it, which goes with its holder."""

    NAME = "\0the demonstration of vexmonitor starts"

    def __init__(self):
        self._name = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
        told = False
        while not self._taken():
            if not told:
                print("Another demonstration is starting; this one comes next.", flush=True)
            told = True
            time.sleep(0.1)

    def _taken(self):
        try:
            self._name.bind(self.NAME)
            return True
        except OSError:
            return False

    def end(self):
        self._name.close()


@contextlib.contextmanager
def claim(folder):
    """Within it the folder is this demonstration's; it is made anew for each, so another must not play there."""
    folder.parent.mkdir(parents=True, exist_ok=True)
    with open(folder.parent / f"{folder.name}.lock", "wb") as lock:
        try:
            fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
        except OSError:
            raise Taken(f"{os.path.relpath(folder)} is in use: a demonstration that was started here still plays. "
                        "End it, or start this one from another copy of the project.") from None
        yield
