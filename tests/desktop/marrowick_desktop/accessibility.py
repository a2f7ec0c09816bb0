"""What an accessibility client sees of a program, asked over AT-SPI's own bus."""

from gi.repository import Gio, GLib

from .screen import Area
from .waiting import wait_for

ACCESSIBLE = "org.a11y.atspi.Accessible"
STATES = {"active": 1, "checked": 4, "enabled": 8, "focused": 12, "has-tooltip": 13, "selected": 23, "sensitive": 24, "showing": 25,
          "visible": 30, "has-popup": 42, "expandable": 9, "defunct": 6}


class Gone(Exception):
    """The object went away while it was asked."""


class Bus:
    """The accessibility bus of the session, switched on as a screen reader does it."""

    def __init__(self):
        session = Gio.bus_get_sync(Gio.BusType.SESSION)
        session.call_sync("org.a11y.Bus", "/org/a11y/bus", "org.freedesktop.DBus.Properties", "Set",
                          GLib.Variant("(ssv)", ("org.a11y.Status", "IsEnabled", GLib.Variant("b", True))),
                          None, Gio.DBusCallFlags.NONE, 10000, None)
        address = session.call_sync("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress", None,
                                    GLib.VariantType("(s)"), Gio.DBusCallFlags.NONE, 10000, None).unpack()[0]
        flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
        self.connection = Gio.DBusConnection.new_for_address_sync(address, flags, None, None)

    def call(self, owner, path, interface, method, arguments=None):
        try:
            answer = self.connection.call_sync(owner, path, interface, method, arguments, None,
                                               Gio.DBusCallFlags.NONE, 5000, None)
        except GLib.Error as problem:
            raise Gone(problem.message) from None
        return answer.unpack()

    def application(self, pid):
        """The accessible root of the program with this process id, or None."""
        try:
            children = self.call("org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root", ACCESSIBLE,
                                 "GetChildren")[0]
        except Gone:
            return None
        for owner, path in children:
            try:
                process = self.call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                                    "GetConnectionUnixProcessID", GLib.Variant("(s)", (owner,)))[0]
            except Gone:
                continue
            if process == pid:
                return Accessible(self, owner, path)
        return None


class Accessible:
    """One accessible object. Every question is asked anew."""

    def __init__(self, bus, owner, path):
        self.bus = bus
        self.owner = owner
        self.path = path

    def __eq__(self, other):
        return isinstance(other, Accessible) and (self.owner, self.path) == (other.owner, other.path)

    def __hash__(self):
        return hash((self.owner, self.path))

    def _ask(self, interface, method, arguments=None):
        return self.bus.call(self.owner, self.path, interface, method, arguments)

    def children(self):
        return [Accessible(self.bus, owner, path) for owner, path in self._ask(ACCESSIBLE, "GetChildren")[0]
                if not path.endswith("/null")]

    def _property(self, name):
        return self._ask("org.freedesktop.DBus.Properties", "Get", GLib.Variant("(ss)", (ACCESSIBLE, name)))[0]

    def name(self):
        return self._property("Name")

    def description(self):
        return self._property("Description")

    def role(self):
        return self._ask(ACCESSIBLE, "GetRoleName")[0]

    def states(self):
        low, high = self._ask(ACCESSIBLE, "GetState")[0]
        bits = low | high << 32
        return {name for name, bit in STATES.items() if bits >> bit & 1}

    def area(self):
        return Area(*self._ask("org.a11y.atspi.Component", "GetExtents", GLib.Variant("(u)", (0,)))[0])

    def actions(self):
        return [action[0] for action in self._ask("org.a11y.atspi.Action", "GetActions")[0]]

    def text(self):
        """What a text area holds."""
        return self._ask("org.a11y.atspi.Text", "GetText", GLib.Variant("(ii)", (0, -1)))[0]

    def key_binding(self):
        """The keys that a client would say for the object's action; empty for none."""
        return "".join(action[2] for action in self._ask("org.a11y.atspi.Action", "GetActions")[0])

    def act(self, name):
        """Performs the action of this name, as a screen reader does."""
        index = wait_for(lambda: [i for i, each in enumerate(self.actions()) if each.lower() == name.lower()],
                         f"an action {name!r}")[0]
        self._ask("org.a11y.atspi.Action", "DoAction", GLib.Variant("(i)", (index,)))
