"""Status areas: trayer with XEmbed, and the panels of Xfce and LXQt with StatusNotifier."""

import os
import pathlib
import shutil

from gi.repository import Gio, GLib

from .processes import Process
from .screen import Area
from .waiting import wait_for, wait_until_steady

CONFIG = pathlib.Path(__file__).resolve().parent.parent / "config"
WATCHER = "org.kde.StatusNotifierWatcher"


def watcher_property(name):
    """A property of the session's StatusNotifier watcher; None when there is no watcher."""
    connection = Gio.bus_get_sync(Gio.BusType.SESSION)
    try:
        owned = connection.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                                     "NameHasOwner", GLib.Variant("(s)", (WATCHER,)), None,
                                     Gio.DBusCallFlags.NONE, 5000, None).unpack()[0]
        if not owned:
            return None
        return connection.call_sync(WATCHER, "/StatusNotifierWatcher", "org.freedesktop.DBus.Properties", "Get",
                                    GLib.Variant("(ss)", (WATCHER, name)), None, Gio.DBusCallFlags.NO_AUTO_START,
                                    5000, None).unpack()[0]
    except GLib.Error:
        return None


def configure(source, target=None):
    """Copies a configuration to its place in the home folder, and returns that place."""
    path = pathlib.Path(os.environ["XDG_CONFIG_HOME"]) / (target or source)
    path.parent.mkdir(parents=True, exist_ok=True)
    shutil.copy(CONFIG / source, path)
    return path


class Host:
    """A status area that a test starts and ends."""

    def __init__(self, screen, logs):
        self.screen = screen
        self.logs = logs
        self.process = None

    def start(self):
        self.process = Process(self.command(), self.logs / f"{type(self).__name__}.log", self.environment())
        wait_for(self.is_ready, lambda: f"{type(self).__name__} to be ready; it said:\n{self.process.log()}")
        return self

    def environment(self):
        return {}

    def stop(self):
        self.process.dispose()
        wait_for(lambda: not self.is_ready(), f"{type(self).__name__} to be gone")

    def kill(self):
        self.process.kill()
        wait_for(lambda: not self.is_ready(), f"{type(self).__name__} to be gone")

    def icon(self, pid):
        """The place of the program's icon as soon as it is shown and stays where it is."""
        return wait_until_steady(lambda: self.find_icon(pid), f"an icon in {type(self).__name__}")


class Trayer(Host):
    """An XEmbed status area of its own at an edge of the screen."""

    def __init__(self, screen, logs, edge="top", align="right"):
        super().__init__(screen, logs)
        self.edge = edge
        self.align = align

    def command(self):
        return ["trayer", "--edge", self.edge, "--align", self.align, "--widthtype", "request",
                "--heighttype", "pixel", "--height", "26", "--SetDockType", "true", "--SetPartialStrut", "true"]

    def is_ready(self):
        return self.screen.owner("_NET_SYSTEM_TRAY_S0") is not None

    def find_icon(self, pid):
        for window in self.screen.windows_of(pid):
            if self.screen.is_embedded(window):
                return self.screen.area(window)
        return None


class Panel(Host):
    """A panel that holds a status area and nothing else."""

    window_class = ""

    def panel_area(self):
        areas = [self.screen.area(window) for window in self.screen.windows(self.window_class)]
        areas = [area for area in areas if area and area.height < 100 and area.width > 100]
        return max(areas, key=lambda area: area.width, default=None)

    def is_ready(self):
        return bool(watcher_property("IsStatusNotifierHostRegistered")) and self.panel_area() is not None

    def find_icon(self, pid):
        if not watcher_property("RegisteredStatusNotifierItems"):
            return None
        area = self.panel_area()
        if not area:
            return None
        inner = Area(area.x + 2, area.y + 2, area.width - 4, area.height - 4)
        drawing = self.screen.drawing_in(inner)
        return drawing if drawing and drawing.width >= 8 and drawing.height >= 8 else None


class XfcePanel(Panel):
    """xfce4-panel at the top of the screen with its systray plugin."""

    window_class = "xfce4-panel"

    def command(self):
        configure("xfce4/xfconf/xfce-perchannel-xml/xfce4-panel.xml")
        return ["xfce4-panel", "--disable-wm-check"]

    def stop(self):
        super().stop()
        # The wrapper of the plugin ends by itself when the panel is gone.
        wait_for(lambda: self.screen.owner("_NET_SYSTEM_TRAY_S0") is None, "the plugin to end")

    kill = Host.kill


class LxqtPanel(Panel):
    """lxqt-panel at the bottom of the screen with its statusnotifier plugin."""

    window_class = "lxqt-panel"
    config = "lxqt/panel.conf"

    def command(self):
        return ["lxqt-panel", "-c", str(configure(self.config, "lxqt/panel.conf"))]
