"""The window of the settings, as an accessibility client reads it and as a user works it."""

import subprocess

from .accessibility import Gone
from .screen import centre
from .waiting import wait_for

TITLE = "Marrowick Preferences"


def descendants(accessible):
    for child in accessible.children():
        yield child
        yield from descendants(child)


def stored(key):
    """The setting in the notation of `dconf`; the empty text where there is none."""
    command = ["dconf", "read", "/org/marrowick/Marrowick/" + key]
    return subprocess.run(command, check=True, timeout=30, capture_output=True, text=True).stdout.strip()


class PreferencesWindow:
    """The window of one program; it need not be open."""

    def __init__(self, bus, pid, screen):
        self.bus = bus
        self.pid = pid
        self.screen = screen

    def frames(self, title=TITLE):
        """The windows of this title that are on the screen."""
        try:
            application = self.bus.application(self.pid)
            return [each for each in (application.children() if application else [])
                    if each.name() == title and "showing" in each.states()]
        except Gone:
            return []

    def wait_until_open(self):
        """Waits until the window is there and has the keyboard."""
        wait_for(lambda: any("active" in frame.states() for frame in self.frames()), "the Preferences window")
        return self

    def wait_until_closed(self):
        wait_for(lambda: not self.frames(), "the Preferences window to close")

    def all(self, *roles):
        return [each for each in descendants(self.frames()[0]) if each.role() in roles]

    def control(self, name, *roles):
        def find():
            try:
                return [each for each in self.all(*roles) if each.name() == name]
            except (Gone, IndexError):
                return None
        return wait_for(find, f"{name!r} among the controls")[0]

    def checkbox(self, title):
        return self.control(title, "check box")

    def is_checked(self, title):
        return "checked" in self.checkbox(title).states()

    def click(self, control):
        self.screen.click(*centre(control.area()))

    def folder(self):
        """The path that the window shows, in full."""
        labels = [each.name() for each in self.all("label") if each.name().startswith("/")]
        return labels[0] if len(labels) == 1 else None

    def sort_modes(self):
        return self.all("combo box")[0]
