"""The file managers that people use, each with the companion that was built for it, worked by the mouse."""

import os
import pathlib
import signal
import subprocess
import sysconfig
from urllib.parse import unquote_to_bytes

from gi.repository import Gio, GLib

from .accessibility import Gone
from .context_menus import ContextMenu, Popover
from .processes import CRASH, Process
from .screen import Area, centre
from .waiting import wait_for, wait_until_steady

COMPANIONS = "MARROWICK_TEST_COMPANIONS"
PLACE = Area(40, 60, 760, 560)
INSTALLED = pathlib.Path("/usr/lib") / (sysconfig.get_config_var("MULTIARCH") or "")

# Shows a folder in another place to the command that follows, and to nobody else.
IN_PLACE = ["unshare", "--mount", "sh", "-c", 'mount --bind "$1" "$2" && shift 2 && exec "$@"', "sh"]


def reason_for_none():
    """Why no companion can be given to a file manager here; None where it can be."""
    if not os.environ.get(COMPANIONS):
        return f"{COMPANIONS} does not say where the companions are"
    if subprocess.run(["unshare", "--mount", "true"], stderr=subprocess.DEVNULL, check=False).returncode:
        return "only the superuser may show a file manager its companion in place"
    return None


def is_built(kind):
    """Whether there is a companion for this kind of file manager."""
    return (pathlib.Path(os.environ[COMPANIONS]) / kind.name.lower()).is_dir()


def path_of(uri):
    """The bytes of the path that a URI stands for."""
    assert uri.startswith("file:///"), uri
    return unquote_to_bytes(uri[len("file://"):])


class RealFileManager:
    """A file manager that shows one folder in a window at a fixed place of the screen."""

    # A part of the name that the companion has on the bus.
    name = ""
    command = ()
    # What else the command needs to open another window.
    new_window = ()
    # Where it looks for extensions.
    extensions = ""
    # What says where its companion was built, and what is put before its command.
    companions = COMPANIONS
    wrapper = ()
    environment = {}
    # What `dconf` sets before it starts, for a list and for icons.
    list_settings = {}
    icon_settings = {}
    # How far the part with the files is from the window's edges: left, top, right, bottom.
    margins = (0, 0, 0, 0)
    # How far the first row of a list is below the top of that part.
    first_row = 30
    # How high the first row of icons is, with their labels.
    icon_height = 100

    def __init__(self, desktop, place=PLACE):
        self.desktop = desktop
        self.screen = desktop.screen
        self.place = place
        self.process = None
        self.was_killed = False
        self.window = 0

    # Its life

    def start(self, folder, icons=False, environment=None):
        """Shows `folder`, and waits until the companion tells so."""
        self.prepare(icons)
        built = pathlib.Path(os.environ[self.companions]) / self.name.lower()
        self.process = Process([*IN_PLACE, built, INSTALLED / self.extensions, *self.wrapper, *self.command, folder],
                               self.desktop.new_log(self.name), {**self.environment, **(environment or {})})
        self.window = wait_for(self.windows, f"a window of {self.name}")[0]
        self.move(self.window, self.place)
        self.wait_for_folder(folder)
        return self

    def prepare(self, icons):
        """Settles how it will show a folder."""
        for key, value in (self.icon_settings if icons else self.list_settings).items():
            subprocess.run(["dconf", "write", key, value], check=True, timeout=30)

    def windows(self):
        """The numbers of its windows, as the window manager knows them."""
        listed = self.screen.property(self.screen.root, "_NET_CLIENT_LIST")
        mine = {window.id for window in self.screen.windows_of(self.process.pid)}
        return [window for window in (() if listed is None else listed) if window in mine]

    def open_window(self, folder, place):
        """Shows another folder in another window, and returns that."""
        before = set(self.windows())
        client = Process([*self.command, *self.new_window, folder], self.desktop.new_log(self.name), self.environment)
        window = wait_for(lambda: set(self.windows()) - before, f"another window of {self.name}").pop()
        client.wait()
        self.move(window, place)
        self.wait_for_folder(folder, window)
        self.activate(window)
        return window

    def close_window(self, window):
        subprocess.run(["wmctrl", "-i", "-c", hex(window)], check=True, timeout=30)
        wait_for(lambda: window not in self.windows(), "the window to close")

    def move(self, window, place):
        subprocess.run(["wmctrl", "-i", "-r", hex(window), "-e", "0," + ",".join(map(str, place))], check=True,
                       timeout=30)

    def activate(self, window=None):
        """Brings a window to the front, the way a taskbar does it."""
        window = window or self.window
        subprocess.run(["wmctrl", "-i", "-a", hex(window)], check=True, timeout=30)
        self.screen.wait_for_active(window)

    def freeze(self):
        """Lets it hang as a program does that waits for a disk."""
        self.process.popen.send_signal(signal.SIGSTOP)

    def thaw(self):
        self.process.popen.send_signal(signal.SIGCONT)

    def kill(self):
        """Ends it at once, without a chance to say goodbye."""
        self.process.kill()
        self.was_killed = True

    def close(self):
        """Ends it; fails when it has ended by itself or reports broken memory."""
        ran = self.process.runs() or self.was_killed
        if self.process.runs():
            self.thaw()
        self.process.dispose()
        match = CRASH.search(self.process.log())
        if not ran or match:
            raise AssertionError(f"{self.name} ended by itself or is broken:\n{self.process.log()}")

    def memory(self):
        """Its own memory, without mapped files, in bytes."""
        status = pathlib.Path(f"/proc/{self.process.pid}/status").read_text(encoding="ascii")
        return next(int(line.split()[1]) * 1024 for line in status.splitlines() if line.startswith("RssAnon"))

    # What its companion tells

    def state(self):
        """The windows as the companion tells them; None while it does not answer."""
        try:
            return Gio.bus_get_sync(Gio.BusType.SESSION).call_sync(
                f"org.marrowick.FileManager.{self.name}", "/org/marrowick/FileManager", "org.marrowick.FileManager",
                "GetState", None, GLib.VariantType("(a(tsassb))"), Gio.DBusCallFlags.NO_AUTO_START, 5000,
                None).unpack()[0]
        except GLib.Error:
            return None

    def _told(self, window):
        return next((each for each in self.state() or [] if each[0] == (window or self.window)), None)

    def folder(self, window=None):
        """The folder that a window shows, None where there is no such window."""
        told = self._told(window)
        return path_of(told[1]) if told else None

    def wait_for_folder(self, folder, window=None):
        wait_for(lambda: self.folder(window) == os.fsencode(folder),
                 lambda: f"{folder} in {self.name}, it tells {self.state()}")

    def selected(self, window=None):
        """The paths that are selected in a window."""
        told = self._told(window)
        return [path_of(each) for each in told[2]] if told else None

    def wait_for_selection(self, *paths):
        """Waits until these are selected, in this order."""
        expected = [os.fsencode(path) for path in paths]
        wait_for(lambda: self.selected() == expected,
                 lambda: f"{expected} selected in {self.name}, there is {self.selected()}")

    # The files in its window

    def application(self):
        """What an accessibility client sees of it."""
        return self.desktop.bus.application(self.process.pid)

    def rows(self):
        """The labels and places of the items in the list, from top to bottom."""
        rows = {}
        for cell in self.find_list().children():
            # A cell that holds an icon as well has the name in a cell of its own.
            for part in [cell, *cell.children()]:
                if part.role() != "table cell" or not part.name():
                    continue
                area = part.area()
                if area.width > 1 and (area.y not in rows or area.x < rows[area.y][1].x):
                    rows[area.y] = (part.name(), area)
        return [rows[y] for y in sorted(rows)]

    def find_list(self):
        """The list of files that is on the screen: another one, of places, is on its left."""
        lists = found(self.application(), ("table", "tree table"))
        return max(lists, key=lambda each: each.area().x, default=None)

    def wait_for_rows(self, *labels):
        """Waits until the list shows exactly these, and returns their places."""
        def shown():
            try:
                return self.rows()
            except (AttributeError, StopIteration, Gone):
                return []

        def expected():
            rows = shown()
            return rows if [label for label, _ in rows] == list(labels) else None

        rows = wait_until_steady(expected, lambda: f"the rows {labels} in {self.name}, there are {shown()}")
        return dict(rows)

    def wait_for_row_count(self, count):
        """Waits until the list shows so many items, and returns their labels and places."""
        def shown():
            try:
                return self.rows()
            except (StopIteration, Gone):
                return []

        return wait_until_steady(lambda: shown() if len(shown()) == count else None,
                                 lambda: f"{count} rows in {self.name}, there are {shown()}")

    def click_first_row(self):
        """Clicks the first row of a list of any length, which an accessibility client would be long to read."""
        area = self.area()
        wait_until_steady(lambda: self.screen.drawing_in(area) and self.screen.bytes(area), "a list at rest", span=0.3)
        self.screen.click(area.x + 40, area.y + self.first_row)

    def click_row(self, area, button=1, modifiers=()):
        # Near the left end, so that it meets the name, however short.
        self.screen.click(area.x + min(10, area.width // 2), area.y + area.height // 2, button, modifiers)

    def area(self):
        """The part of the window that shows the files."""
        window = self.x_area(self.window)
        left, top, right, bottom = self.margins
        return Area(window.x + left, window.y + top, window.width - left - right, window.height - top - bottom)

    def turn_around(self):
        """Turns the order of the list around by a click on the heading of its first column, and waits until it is."""
        before = self.screen.bytes(self.area())
        self.click_heading()

        def changed():
            pixels = self.screen.bytes(self.area())
            return pixels if pixels != before else None

        wait_until_steady(changed, "another order of the list", span=0.3)

    def click_heading(self):
        heading = next(each for each in self.find_list().children() if each.role() == "table column header")
        self.screen.click(*centre(heading.area()))

    def icons(self):
        """The places of the items in the first row of the view as icons, from left to right."""
        area = self.area()
        return self.screen.drawings_in(area._replace(height=self.icon_height))

    def click_icon(self, area, modifiers=()):
        self.screen.click(*centre(area), modifiers=modifiers)

    def select_rows(self, *areas):
        """Clicks the first and the others with Control held, each when the one before it has been seen."""
        for count, area in enumerate(areas, 1):
            self.click_row(area, modifiers=["Control"] if count > 1 else ())
            wait_for(lambda: len(self.selected()) == count,
                     lambda: f"{count} selected items in {self.name}, there are {self.selected()}")

    def x_area(self, window):
        return self.screen.area(self.screen.display.create_resource_object("window", window))

    def click_nothing(self, button=1):
        """Clicks where there is no item."""
        area = self.area()
        self.screen.click(area.x + area.width - 30, area.y + area.height - 30, button)

    def draw_around_everything(self):
        """Draws a rectangle around all items, beginning below them."""
        area = self.area()
        self.screen.drag((area.x + area.width - 12, area.y + area.height - 12), (area.x + 4, area.y + 4))

    # Its context menu

    def open_context_menu(self, area=None):
        """Clicks an item with the right button, or where there is none, and returns the menu that opens."""
        if area:
            self.click_row(area, button=3)
        else:
            self.click_nothing(button=3)
        return wait_for(self.find_context_menu, f"the context menu of {self.name}")

    def open_context_menu_by_keys(self):
        """Returns the menu that opens for what is selected."""
        self.screen.key("Shift", "F10")
        return wait_for(self.find_context_menu, f"the context menu of {self.name}")

    def menu_windows(self):
        """What its open menus are for the X server."""
        return self.screen.popups_of(self.process.pid)

    def find_context_menu(self):
        """The open menu, or None."""
        try:
            windows = [each for each in self.application().children() if each.role() == "window"]
            menus = [each for window in windows for each in window.children()]
            return next((ContextMenu(each, self.screen) for each in menus
                         if each.role() == "menu" and "showing" in each.states()), None)
        except Gone:
            return None

    def close_context_menu(self):
        self.screen.key("Escape")
        wait_for(lambda: not self.find_context_menu(), "the context menu to close")


def found(accessible, roles, states=("showing",)):
    """The descendants that have one of these roles, none inside another, where all above them have these states."""
    for child in accessible.children():
        if child.role() in roles:
            yield child
        elif child.states().issuperset(states):
            yield from found(child, roles, states)


class Thunar(RealFileManager):
    name = "Thunar"
    command = ("thunar",)
    extensions = "thunarx-3"
    margins = (178, 112, 6, 34)

    def prepare(self, icons):
        subprocess.run(["xfconf-query", "-c", "thunar", "-p", "/", "-r", "-R"], check=True, timeout=30)
        view = "ThunarIconView" if icons else "ThunarDetailsView"
        subprocess.run(["xfconf-query", "-c", "thunar", "-p", "/default-view", "-n", "-t", "string", "-s", view],
                       check=True, timeout=30)


class Caja(RealFileManager):
    name = "Caja"
    command = ("caja", "--no-desktop", "--browser")
    extensions = "caja/extensions-2.0"
    list_settings = {"/org/mate/caja/preferences/default-folder-viewer": "'list-view'"}
    icon_settings = {"/org/mate/caja/preferences/default-folder-viewer": "'icon-view'"}
    margins = (160, 120, 6, 34)


class Nemo(RealFileManager):
    name = "Nemo"
    command = ("nemo",)
    extensions = "nemo/extensions-3.0"
    list_settings = {"/org/nemo/preferences/default-folder-viewer": "'list-view'"}
    icon_settings = {"/org/nemo/preferences/default-folder-viewer": "'icon-view'"}
    margins = (178, 112, 6, 46)


class Nautilus(RealFileManager):
    """Its accessibility tells places in the window, and nothing of what is shown and what is not."""

    name = "Nautilus"
    command = ("nautilus",)
    new_window = ("--new-window",)
    extensions = "nautilus/extensions-4"
    # Drawing by software GL leaves it no time to read folders.
    environment = {"GSK_RENDERER": "cairo"}
    list_settings = {"/org/gnome/nautilus/preferences/default-folder-viewer": "'list-view'"}
    icon_settings = {"/org/gnome/nautilus/preferences/default-folder-viewer": "'icon-view'"}
    margins = (255, 60, 12, 12)
    first_row = 72
    icon_height = 160

    def window_in(self):
        """The window as it sees itself, and where that begins on the screen: it draws a border of its own around."""
        inside = next(each for each in self.application().children() if each.role() == "window")
        area, outside = inside.area(), self.x_area(self.window)
        return inside, outside.x + (outside.width - area.width) // 2, outside.y + (outside.height - area.height) // 2

    def rows(self):
        window, left, top = self.window_in()
        rows = []
        for row in next(found(next(found(window, ("tree grid",), ())), ("list",), ())).children():
            label = next(found(row.children()[0], ("label",), ()))
            area = label.area()
            rows.append((label.name(), area._replace(x=area.x + left, y=area.y + top)))
        return rows

    def click_heading(self):
        _, area = self.rows()[0]
        self.screen.click(area.x, area.y - 30)

    def find_context_menu(self):
        try:
            popups = self.screen.popups_of(self.process.pid)
            window, _, _ = self.window_in()
            menu = next(found(window, ("menu",), ()), None) if popups else None
            return Popover(menu, self.screen, self.process.pid) if menu else None
        except Gone:
            return None
