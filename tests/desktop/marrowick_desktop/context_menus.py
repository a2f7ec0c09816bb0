"""Context menus of other programs, as an accessibility client reads them and as a user works them by the mouse."""

from .accessibility import Gone
from .screen import Area, centre
from .waiting import wait_for, wait_until_steady

ITEMS = ("menu item", "menu", "check menu item")


class ContextMenu:
    """A menu of GTK 3, or a submenu of one."""

    def __init__(self, accessible, screen):
        self.accessible = accessible
        self.screen = screen

    def _shown(self):
        """The entries on the screen with their titles, from top to bottom."""
        entries = [each for each in self.accessible.children() if each.role() in ITEMS and "showing" in each.states()]
        return [(self._title(entry), entry) for entry in entries]

    @staticmethod
    def _title(entry):
        return entry.name()

    def titles(self):
        return wait_until_steady(lambda: [title for title, _ in self._shown()], "the entries of a context menu")

    def _entry(self, title):
        def find():
            try:
                return next((entry for each, entry in self._shown() if each == title), None)
            except Gone:
                return None

        return wait_for(find, lambda: f"{title!r} among {self.titles()}")

    def _place(self, entry):
        return entry.area()

    def choose(self, title):
        """Clicks an entry."""
        entry = self._entry(title)
        self.screen.click(*centre(wait_until_steady(lambda: self._place(entry), f"a place for {title!r}")))

    def open(self, title):
        """Clicks an entry that has a submenu, and returns that."""
        self.choose(title)
        submenu = ContextMenu(self._entry(title), self.screen)
        wait_for(lambda: submenu._shown(), f"the submenu of {title!r}")
        return submenu
