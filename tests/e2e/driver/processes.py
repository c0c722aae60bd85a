"""Processes of a run, and waiting for what they do."""
import contextlib
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import time
from pathlib import Path

import psutil
from gi.repository import GLib


def start(command, **options):
    """A process that the kernel ends when this one ends, however it does."""
    return subprocess.Popen(["setpriv", "--pdeathsig", "KILL", "--", *map(str, command)], **options)


def wait_for(condition, seconds=10, what="it", detail=lambda: ""):
    """Looks again and again until `condition` gives something, and returns that. A program that
    is gone or does not answer gives nothing. The only way to wait here: for what can be seen."""
    end = time.monotonic() + seconds
    while True:
        try:
            if seen := condition():
                return seen
        except GLib.Error:
            pass
        if time.monotonic() > end:
            raise AssertionError(f"{what}: not seen in {seconds} s\n{detail()}")
        time.sleep(0.015)


def below(folder):
    """The processes that run a program below `folder`: number and program of each."""
    prefix = f"{os.path.realpath(folder)}/"
    found = {}
    for pid in psutil.pids():
        try:
            program = os.readlink(f"/proc/{pid}/exe")
        except OSError:  # gone, ended but not waited for, or somebody else's
            continue
        if program.startswith(prefix):
            found[pid] = os.path.basename(program)
    return found


def kill_below(folder):
    """Daemons leave their parent and start each other: looks until none is left."""
    def none_left():
        left = below(folder)
        for pid in left:
            with contextlib.suppress(ProcessLookupError):
                os.kill(pid, signal.SIGKILL)
        return not left
    wait_for(none_left, what=f"end of what runs below {folder}")


class Folder:
    """A new folder. When this process ends, however it does, what runs below it is killed and the
    folder goes. Its path is short, because that of the client's local socket has to be."""

    def __init__(self):
        self.path = Path(tempfile.mkdtemp(prefix="veltaro-"))
        self._keeper = subprocess.Popen(
            ["setsid", "--fork", "/usr/bin/python3", __file__, self.path], stdin=subprocess.PIPE)

    def remove(self):
        self._keeper.stdin.close()
        self._keeper.wait()
        wait_for(lambda: not self.path.exists(), what=f"{self.path} gone")


if __name__ == "__main__":  # a folder's keeper, which reads until nobody holds the other end
    sys.stdin.read()
    kill_below(sys.argv[1])
    shutil.rmtree(sys.argv[1], ignore_errors=True)
