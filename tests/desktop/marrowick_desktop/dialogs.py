"""The program's alerts, as an accessibility client reads them and as a user answers them."""

from .accessibility import Gone
from .waiting import wait_for

ROLES = ("alert", "dialog")


def _descendants(accessible):
    for child in accessible.children():
        yield child
        yield from _descendants(child)


class Dialog:
    """One alert on the screen."""

    def __init__(self, accessible):
        self.accessible = accessible

    def texts(self):
        """The paragraphs from top to bottom."""
        labels = [(each.area().y, each.name()) for each in _descendants(self.accessible) if each.role() == "label"]
        return [name for _, name in sorted(labels) if name]

    def _buttons(self):
        buttons = [each for each in _descendants(self.accessible) if each.role() == "push button"]
        return sorted(buttons, key=lambda button: button.area().x)

    def buttons(self):
        """The titles from left to right."""
        return [button.name() for button in self._buttons()]

    def press(self, title):
        """Presses a button as a screen reader does."""
        next(button for button in self._buttons() if button.name() == title).act("Press")


class Dialogs:
    """The alerts of the program."""

    def __init__(self, bus, pid):
        self.bus = bus
        self.pid = pid

    def open_dialogs(self):
        try:
            application = self.bus.application(self.pid)
            return [Dialog(child) for child in (application.children() if application else [])
                    if child.role() in ROLES and "showing" in child.states()]
        except Gone:
            return []

    def texts(self):
        """The paragraphs of each; None while one goes away."""
        try:
            return [each.texts() for each in self.open_dialogs()]
        except Gone:
            return None

    def wait_for(self, *buttons):
        """The alert with these buttons, as soon as it has the keyboard."""
        def front():
            try:
                return [each for each in self.open_dialogs()
                        if "active" in each.accessible.states() and each.buttons() == list(buttons)]
            except Gone:
                return None

        return wait_for(front, f"an alert with the buttons {buttons}")[0]

    def wait_for_none(self):
        wait_for(lambda: not self.open_dialogs(), "the alert to close")
