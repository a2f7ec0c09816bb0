#!/usr/bin/python3
"""The submenu of the applications that run."""

import os
import shutil
import urllib.parse

from marrowick_desktop import SEPARATOR, FileManagerService, Process, SubmenuCase, Window, holds_for, run, wait_for

RED = 0xFFFF0000


class Processes(SubmenuCase):
    def client(self, *options):
        """A program of its own with a window, and the file in which it notes that it was asked to quit."""
        asked = self.desktop.place / "asked"
        asked.unlink(missing_ok=True)
        client = Process([os.environ["MARROWICK_TEST_CLIENT"], "Client", str(asked), *options],
                         self.desktop.new_log("client"))
        self.addCleanup(client.dispose)
        wait_for(lambda: self.screen.windows("Client"), "the program's window")
        return client, asked

    def background(self):
        """An installed application that runs without a window."""
        program = self.place / "marrowick-background"
        shutil.copy("/bin/sleep", program)
        entry = self.own / "background.desktop"
        entry.write_text(f"[Desktop Entry]\nType=Application\nName=In the background\nExec={program}\n")
        self.addCleanup(entry.unlink)
        process = Process([str(program), "600"], self.desktop.new_log("background"))
        self.addCleanup(process.dispose)
        wait_for(lambda: os.readlink(f"/proc/{process.pid}/exe") == str(program), "the program to run")
        return process

    def stacking(self):
        return list(self.screen.property(self.screen.root, "_NET_CLIENT_LIST_STACKING"))

    def act_on(self, title, *keys):
        """Highlights a process and presses a key."""
        self.open("Processes")
        self.menus.highlight(title)
        self.screen.key(*keys)
        self.menus.wait_for_depth(0)

    def test_ApplicationsWithWindowsAreListedOnceInTheOrderOfTheirStarts(self):
        self.install("org.example.Editor", "An Editor", "StartupWMClass=TestEditor\n")
        for program_class in ("Unknown", "TestEditor", "Unknown"):
            self.window(program_class)
        self.window("Panel", skips_taskbar=True)
        self.background()
        self.desktop.set("sortProcessMenu", "false")
        listed = self.titles("Processes")
        known = [title for title in listed if title in ("Unknown", "An Editor", "Panel")]
        self.assertEqual(known, ["Unknown", "An Editor", "Panel"])
        self.assertNotIn("In the background", listed)
        self.assertNotIn("Marrowick", listed)
        self.assertEqual(listed[-2:], [SEPARATOR, "Marrowick Preferences…"])

    def test_UsuallyTheyAreSortedByName(self):
        for program_class in ("zebra", "App 10", "App 9"):
            self.window(program_class)
        listed = self.titles("Processes")
        self.assertEqual([title for title in listed if title in ("zebra", "App 10", "App 9")],
                         ["App 9", "App 10", "zebra"])

    def test_ControlWhileItOpensAddsWhatHasNoWindow(self):
        self.background()
        self.window("Unknown")
        self.assertIn("In the background", self.titles("Processes", modifiers=["Control"]))
        self.assertNotIn("In the background", self.titles("Processes"))
        for modifiers, is_listed in ((["Super"], False), (["Super", "Control"], True)):
            with self.subTest(modifiers=modifiers):
                menu = self.open_menu(modifiers=modifiers)
                self.assertEqual(menu.title(), "Processes")
                self.assertIn("Unknown", menu.titles())
                self.assertEqual("In the background" in menu.titles(), is_listed)
                self.menus.close()

    def test_IconOfAHiddenApplicationIsFaded(self):
        self.window("Shown", icon=RED)
        hidden = self.window("Hidden", icon=RED)
        hidden.minimise(self.screen)
        menu = self.open("Processes")
        red = RED & 0xFFFFFF
        background, colours = self.colours(menu, "Shown")
        self.assertGreater(colours[red], 100)
        background, colours = self.colours(menu, "Hidden")
        self.assertEqual(colours[red], 0)
        faded = [0.4 * (red >> shift & 255) + 0.6 * (background >> shift & 255) for shift in (16, 8, 0)]
        close = sum(count for colour, count in colours.items()
                    if all(abs((colour >> shift & 255) - part) <= 3 for shift, part in zip((16, 8, 0), faded)))
        self.assertGreater(close, 100, (hex(background), faded, colours.most_common(4)))

    def test_ChoosingBringsAllWindowsForwardAndWithAltTheFrontOne(self):
        first, second, other = (self.window(name) for name in ("Twin", "Twin", "Other"))
        for modifiers in ([], ["Alt"]):
            for window in (first, second, other):
                window.activate(self.screen)
            self.choose_from("Processes", "Twin", modifiers=modifiers)
            self.screen.wait_for_active(second.id)
            order = [number for number in self.stacking() if number in (first.id, second.id, other.id)]
            behind = [first.id, other.id] if modifiers else [other.id, first.id]
            self.assertEqual(order, [*behind, second.id], modifiers)

    def test_ChoosingAHiddenApplicationShowsItAgain(self):
        hidden, other = self.window("Hidden"), self.window("Other")
        hidden.minimise(self.screen)
        other.activate(self.screen)
        self.choose_from("Processes", "Hidden")
        self.screen.wait_for_active(hidden.id)
        wait_for(lambda: not hidden.is_minimised(self.screen), "the window to be shown")

    def test_ChoosingOneThatHasEndedDoesNothing(self):
        other = self.window("Other")
        gone = Window("Gone")
        wait_for(lambda: gone.is_listed(self.screen), "the window")
        other.activate(self.screen)
        menu = self.open("Processes")
        gone.close()
        wait_for(lambda: gone.id not in self.stacking(), "the window to be gone")
        self.menus.click(menu, "Gone")
        self.assertNothingHappened()
        self.assertEqual(self.screen.active_window(), other.id)

    def test_QuitKeysAskTheApplicationToQuit(self):
        for keys in (["Delete"], ["BackSpace"], ["Super", "Alt", "Control", "x"]):
            with self.subTest(keys=keys):
                client, asked = self.client()
                self.act_on("Client", *keys)
                self.assertEqual(client.wait(), 0)
                self.assertEqual(asked.read_text(), "asked\n")
                wait_for(lambda: not self.screen.windows("Client"), "the window to be gone")

    def test_ApplicationThatDoesNotWantToQuitGoesOn(self):
        client, asked = self.client("--stays")
        self.act_on("Client", "Delete")
        wait_for(asked.exists, "the program to be asked")
        holds_for(client.runs, 0.2, "the program goes on")
        self.assertIn("Client", self.titles("Processes"))

    def test_QuitKeyEndsWhatHasNoWindow(self):
        process = self.background()
        self.open("Processes", modifiers=["Control"])
        self.menus.highlight("In the background")
        self.screen.key("Delete")
        self.assertEqual(process.wait(), -15)

    def test_FileKeysActOnTheDesktopEntry(self):
        manager = FileManagerService()
        self.addCleanup(manager.close)
        editor = self.install("org.example.Editor", "An Editor", "StartupWMClass=TestEditor\n")
        uris = ["file://" + urllib.parse.quote(str(editor.entry))]
        self.window("TestEditor")
        for key, method in (("r", "ShowItems"), ("i", "ShowItemProperties")):
            with self.subTest(key=key):
                manager.calls.clear()
                self.act_on("An Editor", key)
                self.assertEqual(manager.wait_for_call(), (method, uris))

    def test_FileKeyOnAnApplicationWithoutAnEntryDoesNothing(self):
        manager = FileManagerService()
        self.addCleanup(manager.close)
        self.window("Unknown")
        self.act_on("Unknown", "r")
        holds_for(lambda: not manager.calls, 0.2, "the file manager is left alone")
        self.assertNothingHappened()


if __name__ == "__main__":
    run()
