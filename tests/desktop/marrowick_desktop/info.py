"""The Info window, as an accessibility client reads it and as a user works it."""

from .accessibility import Gone
from .screen import centre
from .waiting import wait_for


class InfoWindow:
    """The Info window of one program; it need not be open."""

    def __init__(self, bus, pid, screen):
        self.bus = bus
        self.pid = pid
        self.screen = screen

    def frame(self):
        """The window on the screen, or None."""
        try:
            application = self.bus.application(self.pid)
            for child in application.children() if application else []:
                if child.name().endswith(" Info") and "showing" in child.states():
                    return child
        except Gone:
            pass
        return None

    def wait_until_open(self, name):
        """Waits until the window tells about the file of this name."""
        wait_for(lambda: self.frame() and self.frame().name() == name + " Info", f"the Info window on {name}")
        return self

    def wait_for_keys(self):
        wait_for(lambda: self.frame() and "active" in self.frame().states(), "the Info window to have the keys")
        return self

    def wait_until_closed(self):
        wait_for(lambda: not self.frame(), "the Info window to close")

    def parts(self, role):
        """What is showing of this kind, from the top left to the bottom right."""
        found = [each for each in self.frame().children() if each.role() == role and "showing" in each.states()]
        return sorted(found, key=lambda each: (each.area().y, each.area().x))

    def texts(self):
        """Name, summary and path."""
        return [each.name() for each in self.parts("label")]

    def icon(self):
        return self.parts("graphic")[0]

    def path(self):
        return self.parts("label")[2]

    def preview(self):
        """The text of the preview; None where it is hidden."""
        areas = self.parts("text")
        return areas[0].text() if areas else None

    def button(self, title):
        return next(each for each in self.parts("push button") if each.name() == title)

    def click(self, part, times=1):
        # Asked once: a slow answer in between would make two single clicks of a double one.
        place = centre(part.area())
        for _ in range(times):
            self.screen.click(*place)

    def x_window(self):
        """The window as the X server knows it."""
        return next(window for window in self.screen.windows_of(self.pid)
                    if (self.screen.property(window, "_NET_WM_NAME") or b"").decode().endswith(" Info"))
