"""A file manager with a companion: another process with real windows, which does what the test says."""

import os
import signal
import subprocess
from dataclasses import dataclass, field
from urllib.parse import quote_from_bytes

from gi.repository import GLib

from .waiting import wait_for

NAME = "org.marrowick.FileManager.Test"


def uri(path):
    """The URI of a path, every byte of it kept."""
    return "file://" + quote_from_bytes(os.fsencode(path))


@dataclass
class Shown:
    """A window as the companion tells it: its folder and its selected items are paths or URIs."""

    folder: object
    selected: list = field(default_factory=list)
    window: int = 0
    active: bool = False


def _location(place):
    return place if isinstance(place, str) and ":" in place.split("/")[0] else uri(place)


class FileManager:
    def __init__(self, name=NAME):
        self.popen = subprocess.Popen([os.environ["MARROWICK_TEST_FILE_MANAGER"], name],
                                      stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        assert self.popen.stdout.readline() == b"ready\n"

    def perform(self, command):
        self.popen.stdin.write(command.encode() + b"\n")
        self.popen.stdin.flush()
        return self.popen.stdout.readline().decode().rstrip("\n")

    def tell(self, *windows):
        """Answers questions with these windows from here on."""
        state = [(shown.window, _location(shown.folder), [_location(item) for item in shown.selected], "A title",
                  shown.active) for shown in windows]
        printed = GLib.Variant("(a(tsassb))", (state,)).print_(True)
        assert self.perform("answer " + printed) == "ok", printed

    def count(self):
        """How many questions have reached it."""
        return int(self.perform("count"))

    def open(self, screen):
        """Shows a window and returns its number once the window manager knows it."""
        number = int(self.perform("open NORMAL A folder"))

        def is_listed():
            listed = screen.property(screen.root, "_NET_CLIENT_LIST_STACKING")
            return listed is not None and number in listed

        wait_for(is_listed, "the window manager to know the window")
        return number

    def stop(self):
        """Lets it hang as a program does that waits for a disk."""
        self.popen.send_signal(signal.SIGSTOP)

    def close(self):
        self.popen.kill()
        self.popen.wait()
        self.popen.stdin.close()
        self.popen.stdout.close()
