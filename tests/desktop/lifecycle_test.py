#!/usr/bin/python3
"""Starts and ends of the program, under good and bad conditions."""

import shutil
import signal
import subprocess

from gi.repository import Gio, GLib
from marrowick_desktop import ENDING, DesktopCase, Marrowick, fill, run, wait_for

NAME = "org.marrowick.Marrowick"


class LifecycleCase(DesktopCase):
    def start_and_wait(self, environment=None):
        self.start(environment)
        self.host.icon(self.program.pid)

    def wait_for_popup(self):
        """The program's open menu as the X server sees it, where no accessibility bus can be asked."""
        return wait_for(lambda: self.screen.popups_of(self.program.pid), "an open menu")[0]


class OneInstance(LifecycleCase):
    def second(self):
        """Starts the program once more and returns it when it has ended."""
        other = Marrowick(self.desktop.new_log("second"))
        self.addCleanup(other.dispose)
        self.assertEqual(other.wait(), 0)
        other.check_log()
        return other

    def test_SecondStartEndsAndPopsTheItemsMenuUpAtThePointer(self):
        self.run_with("notes.txt")
        x, y = 500, 400
        self.screen.move(x, y)
        self.second()
        menu = self.menus.wait_for_depth(1)
        self.assertEqual((menu.title(), menu.titles()), ("Marrowick", ["notes.txt"] + ENDING))
        area = menu.area()
        self.assertLess(abs(area.x - x) + abs(area.y - y), 20)
        self.assertTrue(self.program.runs())

    def test_SecondStartOpensTheItemsWhateverModifiersAreHeld(self):
        self.run_with("notes.txt")
        with self.screen.held(["Shift"]):
            self.second()
            menu = self.menus.wait_for_depth(1)
            self.assertEqual(menu.title(), "Marrowick")

    def test_SecondStartCreatesNothing(self):
        self.run_with("notes.txt")
        shutil.rmtree(self.items.parent)
        self.second()
        self.menus.wait_for_depth(1)
        self.assertFalse(self.items.exists())

    def test_ActivationOverTheBusDoesTheSame(self):
        self.run_with("notes.txt")
        connection = Gio.bus_get_sync(Gio.BusType.SESSION)
        connection.call_sync(NAME, "/org/marrowick/Marrowick", "org.freedesktop.Application", "Activate",
                             GLib.Variant("(a{sv})", ({},)), None, Gio.DBusCallFlags.NO_AUTO_START, 10000, None)
        self.assertEqual(self.menus.wait_for_depth(1).titles(), ["notes.txt"] + ENDING)

    def test_AnotherStartWorksWhenTheFirstHasEnded(self):
        self.run_with("notes.txt")
        self.program.stop()
        self.start_and_wait()
        self.assertEqual(self.items_titles(), ["notes.txt"])

    def test_AnotherStartWorksWhenTheFirstWasKilled(self):
        self.run_with("notes.txt")
        self.program.kill()
        self.start_and_wait()
        self.assertEqual(self.items_titles(), ["notes.txt"])


class Ending(LifecycleCase):
    def test_TerminationSignalEndsCleanly(self):
        self.run_with("notes.txt")
        self.program.stop()

    def test_TerminationSignalEndsCleanlyWithAnOpenMenu(self):
        self.run_with("Folder/inside.txt")
        self.open_menu()
        self.menus.open_submenu("Folder")
        self.program.stop()

    def test_TerminationSignalEndsCleanlyRightAfterTheStart(self):
        self.start()
        wait_for(lambda: b"marrowick" in open(f"/proc/{self.program.pid}/cmdline", "rb").read(), "the program to run")
        connection = Gio.bus_get_sync(Gio.BusType.SESSION)
        wait_for(lambda: has_owner(connection, NAME), "the program's name on the bus")
        self.program.stop()

    def test_TheIconGoesAwayWithTheProgram(self):
        self.run_with("notes.txt")
        self.program.stop()
        self.assertIsNone(self.host.find_icon(self.program.pid))

    def test_NothingIsLoggedInAnOrdinaryLife(self):
        self.run_with("notes.txt")
        self.items_titles()
        self.program.stop()
        self.assertEqual(self.own_lines(), [])


def has_owner(connection, name):
    return connection.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                                "NameHasOwner", GLib.Variant("(s)", (name,)), None, Gio.DBusCallFlags.NONE, 5000,
                                None).unpack()[0]


class PoorSurroundings(LifecycleCase):
    """Something that a desktop usually has is missing."""

    def test_WithoutASessionBusTheMenuWorksAndTheLogSaysSoOnce(self):
        self.switch_generated_off()
        self.start_and_wait({"DBUS_SESSION_BUS_ADDRESS": "unix:path=" + str(self.desktop.place / "nobody")})
        self.click_icon()
        self.wait_for_popup()
        self.assertEqual(len(self.own_lines()), 1, self.program.log())
        self.assertIn("session bus", self.own_lines()[0])

    def test_WithoutAnIconThemeTheMenuWorksAndTheLogSaysSoOnce(self):
        self.switch_generated_off()
        fill(self.items, "notes.txt", "Folder/inside.txt")
        bare = self.desktop.place / "share"
        bare.mkdir(exist_ok=True)
        self.start_and_wait({"XDG_DATA_DIRS": str(bare)})
        self.assertEqual(self.items_titles(), ["Folder", "notes.txt"])
        self.assertEqual(self.items_titles(), ["Folder", "notes.txt"])
        self.assertEqual(len(self.own_lines()), 1, self.program.log())
        self.assertIn("icon", self.own_lines()[0])

    def test_WithoutHomeItWorksSilently(self):
        self.switch_generated_off()
        self.desktop.set("itemsFolderPath", f"'{self.items}'")
        fill(self.items, "notes.txt")
        self.start_and_wait({"HOME": None})
        self.assertEqual(self.items_titles(), ["notes.txt"])
        self.assertEqual(self.own_lines(), [])

    def test_WithAReadOnlyHomeItWorksSilently(self):
        self.switch_generated_off()
        sealed = self.desktop.place / "sealed"
        sealed.mkdir()
        sealed.chmod(0o555)
        self.addCleanup(sealed.chmod, 0o755)
        self.start_bound_by_permissions({"HOME": str(sealed), "XDG_DATA_HOME": None, "XDG_CACHE_HOME": None,
                                         "XDG_STATE_HOME": None})
        self.host.icon(self.program.pid)
        self.assertEqual(self.items_titles(), ["(Empty — drag items into this folder)"])
        self.assertEqual(self.own_lines(), [])
        self.assertEqual(list(sealed.iterdir()), [])


class NoStatusArea(LifecycleCase):
    host_type = None

    def test_LogSaysSoOnceAndASecondStartStillShowsTheMenu(self):
        fill(self.items, "notes.txt")
        self.switch_generated_off()
        self.start()
        wait_for(lambda: self.own_lines(), "a line in the log")
        self.assertEqual(subprocess.run([Marrowick.path()], timeout=30).returncode, 0)
        self.assertEqual(self.menus.wait_for_depth(1).titles(), ["notes.txt"] + ENDING)
        self.assertEqual(len(self.own_lines()), 1, self.program.log())
        self.assertIn("status area", self.own_lines()[0])


class NoWindowManager(LifecycleCase):
    window_manager = False

    def test_MenuWorks(self):
        self.run_with("notes.txt")
        self.assertEqual(self.items_titles(), ["notes.txt"])


class NoDisplay(LifecycleCase):
    host_type = None

    def test_WithoutADisplayItEndsWithAMessage(self):
        program = Marrowick(self.desktop.new_log("blind"), {"DISPLAY": None})
        self.addCleanup(program.dispose)
        self.assertNotEqual(program.wait(), 0)
        self.assertNotEqual(program.log().strip(), "")
        self.assertNotEqual(program.popen.returncode, -signal.SIGSEGV)


if __name__ == "__main__":
    run()
