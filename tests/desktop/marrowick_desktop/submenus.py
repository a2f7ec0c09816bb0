"""The base of the tests of the generated submenus."""

import os
import pathlib
from collections import Counter

from .cases import DesktopCase
from .desktop import Window, empty, fill
from .recorders import InstalledApplication
from .screen import Area, centre
from .waiting import wait_for

ITEMS = ("01)Programs---a", "02)---d", "03)---p", "04)---n", "05)---R")


class SubmenuCase(DesktopCase):
    """An items folder with all five, on a desktop where only the test installs applications."""

    def setUp(self):
        super().setUp()
        self.own = pathlib.Path(os.environ["XDG_DATA_HOME"]) / "applications"
        self.place = self.desktop.place / "installed"
        empty(self.place)
        system = self.place / "share"
        self.shared = system / "applications"
        self.shared.mkdir(parents=True)
        for name in ("mime", "icons", "themes"):
            if os.path.isdir("/usr/share/" + name):
                os.symlink("/usr/share/" + name, system / name)
        self.environment = {"XDG_DATA_DIRS": str(system)}
        for name in ("Desktop", "Documents", "Downloads"):
            empty(self.desktop.home / name)
            (self.desktop.home / name).mkdir()

    def install(self, identifier, name, keys="", shared=False):
        folder = self.shared if shared else self.own
        application = InstalledApplication(self.place, folder, identifier, name, keys)
        self.addCleanup(application.entry.unlink, missing_ok=True)
        return application

    def window(self, program_class, **about):
        window = Window(program_class, **about)
        self.addCleanup(window.close)
        wait_for(lambda: window.is_listed(self.screen), "the window manager to know the window")
        return window

    def run_submenus(self):
        fill(self.items, *ITEMS)
        self.switch_generated_off()
        self.start(self.environment)
        self.host.icon(self.program.pid)

    def open(self, title, modifiers=()):
        """Opens one of the five; the modifiers are held while it opens and not before."""
        if not self.program:
            self.run_submenus()
        menu = self.open_menu()
        area = menu.entry(title).area
        with self.screen.held(modifiers):
            self.screen.click(*centre(area))
            return self.menus.wait_for_depth(2)

    def titles(self, title, modifiers=()):
        """What one of the five lists."""
        titles = self.open(title, modifiers).titles()
        self.menus.close()
        return titles

    def choose_from(self, submenu, title, modifiers=()):
        menu = self.open(submenu)
        self.menus.click(menu, title, modifiers=modifiers)

    def colours(self, menu, title):
        """The background of an entry, and how often each colour stands in the square of its icon."""
        area = menu.entry(title).area
        background = Counter(colour for row in self.screen.pixels(area) for colour in row).most_common(1)[0][0]
        square = Area(area.x, area.y, 2 * area.height, area.height)
        return background, Counter(colour for row in self.screen.pixels(square) for colour in row)

    def assertNothingHappened(self):
        self.menus.wait_for_depth(0)
        self.assertTrue(self.program.runs())
        self.assertEqual([line for line in self.program.lines() if "Marrowick: " in line], [])
