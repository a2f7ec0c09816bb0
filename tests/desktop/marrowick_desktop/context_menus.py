"""Context menus of other programs, as an accessibility client reads them and as a user works them by the mouse."""

from .accessibility import Gone
from .screen import centre
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

    def _meet(self, title):
        """The entry, and the point by which it is met."""
        entry = self._entry(title)
        return entry, centre(wait_until_steady(lambda: self._place(entry), f"a place for {title!r}"))

    def choose(self, title):
        """Clicks an entry, and returns it."""
        entry, point = self._meet(title)
        self.screen.click(*point)
        return entry

    def open(self, title):
        """Rests on an entry that has a submenu, and returns that. A click that came while the submenu opens for the
        pointer would close it."""
        entry, point = self._meet(title)
        self.screen.move(*point)
        submenu = ContextMenu(entry, self.screen)
        wait_for(submenu._shown, f"the submenu of {title!r}")
        return submenu


class Popover(ContextMenu):
    """A menu of GTK 4, in which submenus take the place of what opened them, under a heading that leads back."""

    def __init__(self, accessible, screen, pid, page=None):
        """`page` is what holds the entries of a submenu and first of all its heading."""
        super().__init__(accessible, screen)
        self.pid = pid
        self.page = page

    def _shown(self):
        entries = [entry for _, entry in sorted(_placed(self.page or self.accessible), key=lambda each: each[0].y)]
        return [(self._title(entry), entry) for entry in entries[1 if self.page else 0:]]

    @staticmethod
    def _title(entry):
        # Marks that nobody sees keep submenus of one title apart.
        return entry.name().strip("\u200b\u200c")

    def _place(self, entry):
        inside, area = self.accessible.area(), entry.area()
        outside = [self.screen.area(window) for window in self.screen.popups_of(self.pid)]
        outside = next((each for each in outside if each and each[2:] == inside[2:]), None)
        return outside and area._replace(x=area.x - inside.x + outside.x, y=area.y - inside.y + outside.y)

    def open(self, title):
        opener = self.choose(title)
        page = wait_for(lambda: _page_of(opener.name(), opener, self.accessible), f"the submenu of {title!r}")
        return Popover(self.accessible, self.screen, self.pid, page)


def _placed(accessible):
    """The entries that have a place, and that."""
    for child in accessible.children():
        if child.role() not in ITEMS:
            yield from _placed(child)
        elif (area := child.area()).width > 0:
            yield area, child


def _page_of(heading, opener, accessible):
    """What holds the entry of this name that has a place and is not the one that opened it; None for none."""
    for child in accessible.children():
        if child.role() not in ITEMS:
            if page := _page_of(heading, opener, child):
                return page
        elif child != opener and child.name() == heading and child.area().width > 0:
            return accessible
    return None
