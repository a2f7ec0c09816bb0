"""A desktop for a test: accessibility, a window manager, settings, windows of other programs."""

import os
import pathlib
import shutil
import subprocess
import tempfile

from Xlib import X, Xatom, Xutil, display
from Xlib.protocol import event

from .accessibility import Bus
from .processes import Process
from .recorders import DefaultApplications
from .screen import Screen
from .waiting import wait_for

CONFIG = pathlib.Path(__file__).resolve().parent.parent / "config"
SETTINGS = "/org/marrowick/Marrowick/"


class Desktop:
    """What is there for all tests of one session."""

    def __init__(self):
        self.home = pathlib.Path(os.environ["HOME"])
        self.place = pathlib.Path(tempfile.mkdtemp(prefix="desktop-", dir=self.home.parent))
        self.logs = self.place / "logs"
        self.logs.mkdir()
        self._log_count = 0
        self.screen = Screen()
        self.bus = Bus()
        self.applications = DefaultApplications(self.place)
        self.window_manager = None

    @property
    def default_items_folder(self):
        return pathlib.Path(os.environ["XDG_DATA_HOME"]) / "Marrowick" / "Marrowick Items"

    def new_log(self, name):
        """A file of its own for the output of one program."""
        self._log_count += 1
        return self.logs / f"{name}-{self._log_count}.log"

    def start_window_manager(self):
        self.window_manager = Process(["openbox", "--config-file", str(CONFIG / "openbox.xml")],
                                      self.logs / "openbox.log")
        wait_for(lambda: self.screen.property(self.screen.root, "_NET_SUPPORTING_WM_CHECK") is not None,
                 "the window manager")
        probe = Window("Probe")
        wait_for(lambda: self._is_managed(probe), "the window manager to take care of windows")
        probe.close()

    def _is_managed(self, window):
        # It oversees requests that come while it starts, until something else happens, such as a property that changes.
        self.screen.root.change_property(self.screen.display.intern_atom("_MARROWICK_TEST"), Xatom.STRING, 8, b"x")
        self.screen.display.sync()
        return window.is_listed(self.screen)

    def set(self, key, value):
        """Sets a setting as a user does it from outside; `value` is text in the notation of `dconf write`."""
        subprocess.run(["dconf", "write", SETTINGS + key, value], check=True, timeout=30)

    def reset_settings(self):
        subprocess.run(["dconf", "reset", "-f", SETTINGS], check=True, timeout=30)

    def close(self):
        if self.window_manager:
            self.window_manager.dispose()


class Window:
    """A window of another program, made by the test itself."""

    def __init__(self, program_class, title="A window", icon=None, skips_taskbar=False):
        """`icon` is the colour, opacity first, of a square picture that the window brings along."""
        self.display = display.Display()
        screen = self.display.screen()
        self.window = screen.root.create_window(40, 300, 200, 100, 0, screen.root_depth, X.InputOutput,
                                                background_pixel=screen.white_pixel)
        self.window.set_wm_class(program_class.lower(), program_class)
        self.window.set_wm_name(title)
        self.window.set_wm_hints(flags=Xutil.InputHint | Xutil.StateHint, input=1, initial_state=Xutil.NormalState)
        if icon is not None:
            self._set("_NET_WM_ICON", Xatom.CARDINAL, [32, 32] + [icon] * (32 * 32))
        if skips_taskbar:
            self._set("_NET_WM_STATE", Xatom.ATOM, [self.display.intern_atom("_NET_WM_STATE_SKIP_TASKBAR")])
        self.window.map()
        self.display.sync()
        self.id = self.window.id

    def _set(self, name, kind, values):
        self.window.change_property(self.display.intern_atom(name), kind, 32, values)

    def activate(self, screen):
        """Makes it the active window, the way a taskbar does it."""
        wait_for(lambda: self.is_listed(screen), "the window manager to know the window")
        subprocess.run(["wmctrl", "-i", "-a", hex(self.id)], check=True, timeout=30)
        screen.wait_for_active(self.id)

    def minimise(self, screen):
        wait_for(lambda: self.is_listed(screen), "the window manager to know the window")
        root = self.display.screen().root
        message = event.ClientMessage(window=self.window, client_type=self.display.intern_atom("WM_CHANGE_STATE"),
                                      data=(32, [Xutil.IconicState, 0, 0, 0, 0]))
        root.send_event(message, X.SubstructureNotifyMask | X.SubstructureRedirectMask)
        self.display.sync()
        wait_for(lambda: self.is_minimised(screen), "the window to be minimised")

    def is_minimised(self, screen):
        state = screen.property(self.window, "_NET_WM_STATE")
        return state is not None and self.display.intern_atom("_NET_WM_STATE_HIDDEN") in state

    def is_listed(self, screen):
        """Whether the window manager has the window among its own."""
        listed = screen.property(screen.root, "_NET_CLIENT_LIST")
        return listed is not None and self.id in listed

    def close(self):
        self.window.destroy()
        self.display.sync()
        self.display.close()


def fill(folder, *names):
    """Makes entries in a folder: a name with a final slash is a folder, another one a small text file."""
    for name in names:
        path = pathlib.Path(folder) / name.rstrip("/")
        if name.endswith("/"):
            path.mkdir(parents=True)
        else:
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(f"This is {path.name}.\n")


def empty(folder):
    """Removes a folder whatever it holds; fine when there is none."""
    if os.path.islink(folder) or os.path.isfile(folder):
        os.unlink(folder)
    elif os.path.isdir(folder):
        shutil.rmtree(folder)
