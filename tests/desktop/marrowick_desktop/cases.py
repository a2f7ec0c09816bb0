"""The base of the desktop tests."""

import os
import pathlib
import unittest

from .desktop import Desktop, empty, fill
from .dialogs import Dialogs
from .exchange import Exchange
from .file_manager import FileManager, Shown
from .hosts import Trayer
from .menus import Menus
from .processes import Marrowick
from .screen import centre
from .waiting import wait_for

# The entries that every items menu ends with when no generated submenu is switched on.
ENDING = ["---", "Preferences…", "Quit Marrowick"]
GENERATED = ("addDesktopSubmenu", "addProcessesSubmenu", "addPrefPanesSubmenu", "addRecentItemsSubmenu")


class DesktopCase(unittest.TestCase):
    """One desktop for all tests of a class, and one program for each test."""

    window_manager = True
    # The status area that is there before the program starts; None for none.
    host_type = Trayer

    @classmethod
    def setUpClass(cls):
        cls.desktop = Desktop()
        cls.addClassCleanup(cls.desktop.close)
        cls.screen = cls.desktop.screen
        if cls.window_manager:
            cls.desktop.start_window_manager()
        cls.host = None
        if cls.host_type:
            cls.host = cls.host_type(cls.screen, cls.desktop.logs).start()
            cls.addClassCleanup(cls.host.stop)

    def setUp(self):
        self.items = self.desktop.default_items_folder
        empty(self.items)
        self.items.mkdir(parents=True)
        self.desktop.reset_settings()
        self.desktop.applications.forget()
        self.screen.move(self.screen.size[0] // 2, self.screen.size[1] - 60)
        self.program = None
        self.menus = None
        self.dialogs = None
        self.addCleanup(self._end_program)

    def _end_program(self):
        if not self.program:
            return
        try:
            self.program.stop()
        finally:
            self.program.dispose()

    # The program

    def start(self, environment=None, prefix=()):
        """Starts the program, by the command `prefix` if there is one, without waiting for anything."""
        self.program = Marrowick(self.desktop.new_log("marrowick"), environment, prefix)
        self.menus = Menus(self.desktop.bus, self.program.pid, self.screen)
        self.dialogs = Dialogs(self.desktop.bus, self.program.pid)
        return self.program

    def start_bound_by_permissions(self, environment=None):
        """As `start`; the superuser loses the right to write where permissions forbid it."""
        prefix = []
        if os.geteuid() == 0:
            prefix = ["setpriv", "--inh-caps=-all", "--bounding-set=-dac_override,-dac_read_search"]
        return self.start(environment, prefix)

    def run_with(self, *names, generated=False):
        """Starts the program with these entries in the items folder, and waits for its icon."""
        fill(self.items, *names)
        if not generated:
            self.switch_generated_off()
        self.start()
        self.host.icon(self.program.pid)

    def switch_generated_off(self):
        for key in GENERATED:
            self.desktop.set(key, "false")

    # The menus

    def click_icon(self, button=1):
        self.screen.click(*centre(self.host.icon(self.program.pid)), button=button)

    def open_menu(self, button=1, modifiers=()):
        """Clicks the icon and returns the menu that opens. The modifiers stay down until it does."""
        with self.screen.held(modifiers):
            self.click_icon(button)
            return self.menus.wait_for_depth(1)

    def choose(self, *titles):
        """Opens the menu and its submenus on the way, and clicks the last entry."""
        self.open_menu()
        menu = self.menus.open_submenu(*titles[:-1]) if titles[1:] else self.menus.wait_for_depth(1)
        self.menus.click(menu, titles[-1])

    def own_lines(self):
        """What the program itself has written to the log."""
        return [line for line in self.program.lines() if "Marrowick: " in line]

    def items_titles(self):
        """Opens the items menu, closes it again, and returns its titles without the fixed ending."""
        menu = self.open_menu()
        titles = menu.titles()
        self.menus.close()
        self.assertEqual(titles[-len(ENDING):], ENDING)
        return titles[:-len(ENDING)]


class FinderCase(DesktopCase):
    """The program, a folder with files to work on, and a file manager that shows it."""

    def setUp(self):
        super().setUp()
        self.work = self.desktop.place / "work"
        empty(self.work)
        self.work.mkdir()
        self.manager = FileManager()
        self.addCleanup(self.manager.close)

    def select(self, *names, folder=None):
        """Makes these files, unless they are there, and lets the file manager show them selected in their order."""
        items = [os.fsencode(self.work) + b"/" + os.fsencode(name) for name in names]
        for item in items:
            if not os.path.lexists(item):
                with open(item, "wb") as stream:
                    stream.write(b"This is " + os.path.basename(item) + b".\n")
        self.manager.tell(Shown(folder or self.work, items))
        return items


class ExchangeCase(DesktopCase):
    """An items folder, a folder beside it to work on, and nothing that was exchanged before."""

    def setUp(self):
        super().setUp()
        self.exchange = Exchange()
        empty(self.exchange.folder)
        self.work = self.desktop.place / "work"
        empty(self.work)
        self.work.mkdir()

    def publish(self, *names):
        """Starts the program with these items and waits until they are published."""
        self.items.mkdir(parents=True, exist_ok=True)
        self.run_with(*names)
        wait_for(self.exchange.published, "a snapshot")

    def names(self, folder):
        return sorted(os.listdir(folder))

    def wait_for_names(self, folder, *names):
        wait_for(lambda: self.names(folder) == sorted(names),
                 lambda: f"{sorted(names)} in {folder}, there is {self.names(folder)}")


class PicturingResult(unittest.TextTestResult):
    """Keeps a picture of the screen at each failure, in the folder of MARROWICK_DESKTOP_PICTURES if there is one."""

    def addFailure(self, test, err):
        self._shoot(test)
        super().addFailure(test, err)

    def addError(self, test, err):
        self._shoot(test)
        super().addError(test, err)

    @staticmethod
    def _shoot(test):
        place = os.environ.get("MARROWICK_DESKTOP_PICTURES")
        if place and isinstance(test, DesktopCase):
            pathlib.Path(place).mkdir(parents=True, exist_ok=True)
            test.screen.shoot(pathlib.Path(place) / f"{test.id()}.png")


def run():
    unittest.main(testRunner=unittest.TextTestRunner(verbosity=2, resultclass=PicturingResult))
