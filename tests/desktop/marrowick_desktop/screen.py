"""The display: windows, the pointer, keys and pictures."""

import subprocess
import time
from collections import Counter, namedtuple

from Xlib import X, XK, display, error
from Xlib.ext import xtest

from .waiting import wait_for

Area = namedtuple("Area", "x y width height")

MODIFIERS = {"Shift": "Shift_L", "Control": "Control_L", "Alt": "Alt_L", "Super": "Super_L"}


def centre(area):
    return area.x + area.width // 2, area.y + area.height // 2


class Screen:
    """One connection to the X server, for looking and for acting."""

    def __init__(self):
        self.display = display.Display()
        self.root = self.display.screen().root

    @property
    def size(self):
        return self.display.screen().width_in_pixels, self.display.screen().height_in_pixels

    # Acting

    def move(self, x, y):
        xtest.fake_input(self.display, X.MotionNotify, x=int(x), y=int(y))
        self.display.sync()

    def click(self, x, y, button=1, modifiers=()):
        self.move(x, y)
        with self.held(modifiers):
            xtest.fake_input(self.display, X.ButtonPress, button)
            self.display.sync()
            xtest.fake_input(self.display, X.ButtonRelease, button)
            self.display.sync()

    def drag(self, start, end, steps=12, modifiers=()):
        """Moves the pointer with the first button down from one point to another, and lets go there."""
        self.move(*start)
        with self.held(modifiers):
            xtest.fake_input(self.display, X.ButtonPress, 1)
            self.display.sync()
            for step in range(1, steps + 1):
                self.move(*(a + (b - a) * step / steps for a, b in zip(start, end)))
                # What lies under the pointer has to answer each step before the drop.
                time.sleep(0.05)
            xtest.fake_input(self.display, X.ButtonRelease, 1)
            self.display.sync()

    def key(self, *names):
        """Presses the last key while the ones before it are held: `key("Shift", "r")`."""
        with self.held(names[:-1]):
            code = self._code(names[-1])
            xtest.fake_input(self.display, X.KeyPress, code)
            xtest.fake_input(self.display, X.KeyRelease, code)
            self.display.sync()

    def held(self, modifiers):
        return _Held(self, [self._code(MODIFIERS[name]) for name in modifiers])

    def _code(self, name):
        symbol = XK.string_to_keysym(name)
        assert symbol != X.NoSymbol, name
        code = self.display.keysym_to_keycode(symbol)
        assert code, name
        return code

    def paint_background(self, top, bottom):
        """Paints the root window from one colour at the top to another at the bottom."""
        _, height = self.size
        rows = b"".join(_between(top, bottom, row / (height - 1)).to_bytes(4, "little") for row in range(height))
        column = self.root.create_pixmap(1, height, self.root.get_geometry().depth)
        graphics = column.create_gc()
        column.put_image(graphics, 0, 0, 1, height, X.ZPixmap, self.root.get_geometry().depth, 0, rows)
        self.root.change_attributes(background_pixmap=column)
        self.root.clear_area(0, 0, *self.size)
        self.display.sync()

    # Looking

    def windows(self, program_class):
        """All mapped windows at any depth whose class or instance is `program_class`."""
        return self._mapped(lambda window: program_class in (window.get_wm_class() or ()))

    def windows_of(self, pid):
        """All mapped windows at any depth that say they belong to this process."""
        def belongs(window):
            owner = self.property(window, "_NET_WM_PID")
            return owner is not None and len(owner) and owner[0] == pid

        return self._mapped(belongs)

    def popups(self):
        """The mapped windows that go past the window manager, as menus do."""
        found = []
        for window in self.root.query_tree().children:
            try:
                state = window.get_attributes()
                shape = window.get_geometry()
            except error.XError:
                continue
            # A window manager keeps small windows of its own out of sight.
            if state.override_redirect and state.map_state == X.IsViewable and min(shape.width, shape.height) > 10:
                found.append(window)
        return found

    def popups_of(self, pid):
        """The menus of a process that has another mapped window, such as an icon: they come from the same client."""
        mask = self.display.display.info.resource_id_mask
        clients = {window.id & ~mask for window in self.windows_of(pid)}
        return [window for window in self.popups() if window.id & ~mask in clients]

    def _mapped(self, accepts):
        """The mapped windows at any depth that `accepts` is true for."""
        found = []

        def walk(window):
            try:
                if accepts(window) and window.get_attributes().map_state == X.IsViewable:
                    found.append(window)
                children = window.query_tree().children
            except error.XError:
                return
            for child in children:
                walk(child)

        walk(self.root)
        return found

    def is_embedded(self, window):
        """Whether the window sits in another program's window that is no window manager's frame."""
        return window.query_tree().parent != self.root and self.property(window, "WM_STATE") is None

    def area(self, window):
        try:
            shape = window.get_geometry()
            place = self.root.translate_coords(window, 0, 0)
        except error.XError:
            return None
        return Area(place.x, place.y, shape.width, shape.height)

    def property(self, window, name):
        """The value of a property of one window, or None."""
        try:
            value = window.get_full_property(self.display.intern_atom(name), X.AnyPropertyType)
        except error.XError:
            return None
        return value.value if value else None

    def owner(self, selection):
        """The window that owns a selection; None when nobody does."""
        window = self.display.get_selection_owner(self.display.intern_atom(selection))
        return window if window != X.NONE else None

    def clipboard(self):
        """The text that can be pasted; None when there is none."""
        atom = self.display.intern_atom
        window = self.root.create_window(0, 0, 1, 1, 0, X.CopyFromParent)
        try:
            window.convert_selection(atom("CLIPBOARD"), atom("UTF8_STRING"), atom("MARROWICK_TEST"), X.CurrentTime)
            self.display.sync()
            answer = wait_for(lambda: self._next(X.SelectionNotify), "an answer about the clipboard")
            text = self.property(window, "MARROWICK_TEST") if answer.property != X.NONE else None
        finally:
            window.destroy()
        return text

    def _next(self, kind):
        """The next event if it is of this kind; others are dropped."""
        while self.display.pending_events():
            event = self.display.next_event()
            if event.type == kind:
                return event
        return None

    def active_window(self):
        value = self.property(self.root, "_NET_ACTIVE_WINDOW")
        return value[0] if value is not None and len(value) else 0

    def work_area(self):
        value = self.property(self.root, "_NET_WORKAREA")
        return Area(*value[:4]) if value is not None else Area(0, 0, *self.size)

    def bytes(self, area):
        """The raw pixels of an area, for comparing."""
        data = self.root.get_image(area.x, area.y, area.width, area.height, X.ZPixmap, 0xFFFFFFFF).data
        return data if isinstance(data, bytes) else data.encode("latin-1")

    def pixels(self, area):
        """The colours of an area as rows of integers."""
        data = self.bytes(area)
        stride = len(data) // area.height
        return [[int.from_bytes(data[row * stride + column * 4:row * stride + column * 4 + 3], "little")
                 for column in range(area.width)] for row in range(area.height)]

    def drawing_in(self, area):
        """The smallest area around everything that is not the commonest colour of `area`; None when it is plain."""
        rows = self.pixels(area)
        background = Counter(colour for row in rows for colour in row).most_common(1)[0][0]
        drawn = [(x, y) for y, row in enumerate(rows) for x, colour in enumerate(row)
                 if _distance(colour, background) > 60]
        if not drawn:
            return None
        left, right = min(x for x, _ in drawn), max(x for x, _ in drawn)
        top, bottom = min(y for _, y in drawn), max(y for _, y in drawn)
        return Area(area.x + left, area.y + top, right - left + 1, bottom - top + 1)

    def drawings_in(self, area, gap=9):
        """The areas, full height, of what is drawn side by side in `area`, at least `gap` apart."""
        rows = self.pixels(area)
        background = Counter(colour for row in rows for colour in row).most_common(1)[0][0]
        drawn = [x for x in range(area.width) if any(_distance(row[x], background) > 60 for row in rows)]
        spans = []
        for x in drawn:
            if spans and x - spans[-1][1] < gap:
                spans[-1][1] = x
            else:
                spans.append([x, x])
        return [area._replace(x=area.x + start, width=end - start + 1) for start, end in spans]

    def shoot(self, path, area=None):
        """Writes a picture of the screen, or of an area of it."""
        command = ["import", "-silent", "-window", "root"]
        if area:
            command += ["-crop", f"{area.width}x{area.height}+{area.x}+{area.y}", "+repage"]
        subprocess.run(command + [str(path)], check=True, timeout=60)

    def wait_for_active(self, window):
        wait_for(lambda: self.active_window() == window, "the window to become the active one")


class _Held:
    """Keys that are down inside a `with` block."""

    def __init__(self, screen, codes):
        self.screen = screen
        self.codes = codes

    def __enter__(self):
        for code in self.codes:
            xtest.fake_input(self.screen.display, X.KeyPress, code)
        self.screen.display.sync()

    def __exit__(self, *_):
        for code in reversed(self.codes):
            xtest.fake_input(self.screen.display, X.KeyRelease, code)
        self.screen.display.sync()


def _distance(a, b):
    return sum(abs((a >> shift & 255) - (b >> shift & 255)) for shift in (0, 8, 16))


def _between(start, end, part):
    return sum(round((start >> shift & 255) * (1 - part) + (end >> shift & 255) * part) << shift
               for shift in (0, 8, 16))
