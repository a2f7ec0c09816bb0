"""Open menus, as an accessibility client reads them and as a user works them."""

from dataclasses import dataclass

from .accessibility import Accessible, Gone
from .screen import Area, centre
from .waiting import wait_for, wait_until_steady

SEPARATOR = "---"


@dataclass
class Entry:
    """One entry of an open menu at the moment it was read."""

    title: str
    enabled: bool
    separator: bool
    opens_submenu: bool
    highlighted: bool
    description: str
    area: Area
    accessible: Accessible


class Menu:
    """One open menu."""

    def __init__(self, accessible):
        self.accessible = accessible

    def __eq__(self, other):
        return isinstance(other, Menu) and self.accessible == other.accessible

    def title(self):
        return self.accessible.name()

    def area(self):
        return self.accessible.area()

    def entries(self):
        return [_entry(child) for child in self.accessible.children()]

    def titles(self):
        """The titles in order, with SEPARATOR for a line."""
        return [SEPARATOR if entry.separator else entry.title for entry in self.entries()]

    def entry(self, title):
        for entry in self.entries():
            if entry.title == title and not entry.separator:
                return entry
        raise AssertionError(f"no entry {title!r} in {self.titles()}")

    def highlighted(self):
        """The title of the highlighted entry, or None."""
        for entry in self.entries():
            if entry.highlighted:
                return entry.title
        return None


def _entry(accessible):
    states = accessible.states()
    role = accessible.role()
    return Entry(title=accessible.name(), enabled="enabled" in states or "sensitive" in states,
                 separator=role == "separator", opens_submenu=bool(states & {"has-popup", "expandable"}),
                 highlighted="focused" in states or "selected" in states, description=accessible.description(),
                 area=accessible.area(), accessible=accessible)


class Menus:
    """The open menus of the program, the first one outermost."""

    def __init__(self, bus, pid, screen):
        self.bus = bus
        self.pid = pid
        self.screen = screen
        self._application = None

    def open_menus(self):
        self._application = self._application or self.bus.application(self.pid)
        if self._application is None:
            return []
        try:
            return [Menu(child) for child in self._application.children()
                    if child.role() == "popup menu" and "showing" in child.states()]
        except Gone:
            return []

    def wait_for_depth(self, depth):
        """Waits until exactly `depth` menus are open, and returns the deepest."""
        def reached():
            menus = self.open_menus()
            return menus if len(menus) == depth else None

        menus = wait_for(reached, lambda: f"{depth} open menus, there are {len(self.open_menus())}") if depth else None
        return menus[-1] if depth else wait_for(lambda: not self.open_menus(), "the menus to close")

    def click(self, menu, title, button=1, modifiers=()):
        """Clicks an entry of an open menu."""
        area = wait_until_steady(lambda: menu.entry(title).area, f"a place for {title!r}", span=0.02)
        self.screen.click(*centre(area), button=button, modifiers=modifiers)

    def open_submenu(self, *titles):
        """Opens nested submenus by clicks, from the outermost menu on, and returns the deepest."""
        for depth, title in enumerate(titles):
            menu = self.wait_for_depth(depth + 1)
            self.click(menu, title)
        return self.wait_for_depth(len(titles) + 1)

    def highlight(self, title):
        """Moves the highlight of the deepest menu to an entry by the arrow keys."""
        menu = self.open_menus()[-1]
        for _ in range(2 * len(menu.entries())):
            if menu.highlighted() == title:
                return
            before = menu.highlighted()
            self.screen.key("Down")
            wait_for(lambda: menu.highlighted() != before, "the highlight to move")
        raise AssertionError(f"{title!r} cannot be highlighted among {menu.titles()}")

    def close(self):
        """Closes every menu by Escape."""
        while True:
            depth = len(self.open_menus())
            if not depth:
                return
            self.screen.key("Escape")
            wait_for(lambda: len(self.open_menus()) < depth, "Escape to close a menu")
