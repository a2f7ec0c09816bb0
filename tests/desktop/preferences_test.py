#!/usr/bin/python3
"""The window of the settings, worked by mouse, by keyboard and as a screen reader works it."""

import os
import subprocess
import urllib.parse

from marrowick_desktop import SEPARATOR, DesktopCase, empty, run
from marrowick_desktop.accessibility import Gone
from marrowick_desktop.exchange import Exchange
from marrowick_desktop.preferences import PreferencesWindow, descendants, stored
from marrowick_desktop.recorders import FileManagerService
from marrowick_desktop.waiting import wait_for

CHECKBOXES = [
    ("Use Finder label colors", "useFinderLabelColors", True),
    ("Hide “.app” extensions in menus", "tossDotAppExtension", True),
    ("Hide “.scpt” extensions in menus", "tossDotScptExtension", False),
    ("Inline Marrowick Items into the main menu", "inlineItemsIntoMainMenu", True),
    ("Add a Desktop submenu", "addDesktopSubmenu", True),
    ("Add a Processes submenu", "addProcessesSubmenu", True),
    ("Add a Preference Panes submenu", "addPrefPanesSubmenu", False),
    ("Add a Recent Items submenu", "addRecentItemsSubmenu", True),
    ("Hide the Items menu entirely when empty", "ignoreEmptyItemsFolder", False),
    ("Run .sh and .scpt items (Option-click to edit instead)", "runScriptFiles", True),
    ("Sort the Processes menu alphabetically", "sortProcessMenu", True),
    ("Add Marrowick Preferences to the Processes menu", "addMarrowickToProcessMenu", True),
]


class PreferencesCase(DesktopCase):
    def run_with(self, *names, generated=True):
        super().run_with(*names, generated=generated)
        self.window = PreferencesWindow(self.desktop.bus, self.program.pid, self.screen)

    def open_window(self):
        self.menus.click(self.open_menu(), "Preferences…")
        return self.window.wait_until_open()

    def wait_for_stored(self, key, value):
        wait_for(lambda: stored(key) == value, lambda: f"{key} to be {value}, it is {stored(key)!r}")


class Contents(PreferencesCase):
    def test_FreshUserSeesTheDefaults(self):
        self.run_with("notes.txt")
        window = self.open_window()
        self.assertEqual([each.name() for each in window.all("check box")], [title for title, _, _ in CHECKBOXES])
        for title, _, is_on in CHECKBOXES:
            self.assertEqual(window.is_checked(title), is_on, title)
        self.assertEqual(window.folder(), str(self.items))
        self.assertEqual(window.sort_modes().name(), "Alphabetically")

    def test_TextsStandFromTopToBottomInTheirOrder(self):
        self.run_with("notes.txt")
        window = self.open_window()
        shown = [(each.area().y, each.area().x, each.name()) for each in window.all("label", "push button")]
        self.assertEqual([name for _, _, name in sorted(shown)],
                         ["Marrowick Items Folder:", str(self.items), "Choose…", "Reveal", "Sort Items In MW Menus:",
                          "Appearance", "Menu Contents", "Behavior"])
        frame = window.frames()[0].area()
        self.assertGreaterEqual(frame.width, 460)
        self.assertGreaterEqual(frame.height, 480)

    def test_LongFolderIsElidedInTheWindowAndWholeForAScreenReader(self):
        long = self.desktop.home / ("a long name " * 15).strip()
        self.addCleanup(empty, long)
        self.run_with("notes.txt")
        self.desktop.set("itemsFolderPath", f"'{long}'")
        window = self.open_window()
        self.assertEqual(window.folder(), str(long))
        self.assertLess(window.frames()[0].area().width, 600)


class Toggles(PreferencesCase):
    def test_EachCheckboxWritesItsBooleanAtOnce(self):
        self.run_with("notes.txt")
        window = self.open_window()
        for title, key, is_on in CHECKBOXES:
            with self.subTest(title=title):
                for value in (not is_on, is_on):
                    window.checkbox(title).act("Toggle")
                    self.wait_for_stored(key, "true" if value else "false")
                    self.assertEqual(window.is_checked(title), value)

    def test_AClickTogglesToo(self):
        self.run_with("notes.txt")
        window = self.open_window()
        window.click(window.checkbox("Add a Desktop submenu"))
        self.wait_for_stored("addDesktopSubmenu", "false")

    def test_TheNextMenuShowsWhatWasToggled(self):
        self.run_with("notes.txt")
        window = self.open_window()
        window.checkbox("Add a Desktop submenu").act("Toggle")
        self.wait_for_stored("addDesktopSubmenu", "false")
        self.assertEqual(self.items_titles()[1:], [SEPARATOR, "Processes", "Recent Items"])

    def test_EachSortModeWritesItsName(self):
        self.run_with("notes.txt")
        window = self.open_window()
        for keys, name in ((("Down",), "kindThenAlphabetical"), (("Down",), "dateModified"),
                           (("Up", "Up"), "alphabetical")):
            window.click(window.sort_modes())
            wait_for(lambda: self.screen.popups_of(self.program.pid), "the list of sort modes")
            for key in (*keys, "Return"):
                self.screen.key(key)
            self.wait_for_stored("sortMode", f"'{name}'")
            wait_for(lambda: not self.screen.popups_of(self.program.pid), "the list to close")


class Window(PreferencesCase):
    def test_ChangesFromOutsideShowWhenItIsShownNext(self):
        self.run_with("notes.txt")
        window = self.open_window()
        self.desktop.set("addDesktopSubmenu", "false")
        self.desktop.set("tossDotScptExtension", "true")
        self.assertTrue(window.is_checked("Add a Desktop submenu"))
        self.open_window()
        wait_for(lambda: not window.is_checked("Add a Desktop submenu"), "the change to show")
        self.assertTrue(window.is_checked("Hide “.scpt” extensions in menus"))

    def test_EachOpeningPutsItIntoTheMiddle(self):
        self.run_with("notes.txt")
        frame = self.open_window().frames()[0]

        def is_in_the_middle():
            area, (width, height) = frame.area(), self.screen.size
            return abs(2 * area.x + area.width - width) < 60 and abs(2 * area.y + area.height - height) < 120

        wait_for(is_in_the_middle, "the window in the middle")
        subprocess.run(["wmctrl", "-r", "Marrowick Preferences", "-e", "0,0,0,-1,-1"], check=True, timeout=30)
        wait_for(lambda: frame.area().x < 100, "the window to be moved")
        self.open_window()
        wait_for(is_in_the_middle, "the window in the middle again")

    def test_ASecondOpeningBringsTheSameWindowToTheFront(self):
        self.run_with("notes.txt")
        window = self.open_window()
        frame = window.frames()[0]
        other = subprocess.Popen(["xterm", "-geometry", "150x60+0+0"])
        self.addCleanup(other.wait)
        self.addCleanup(other.terminate)
        wait_for(lambda: "active" not in frame.states(), "another window in front")
        self.open_window()
        self.assertEqual(window.frames(), [frame])

    def test_TheEntryOfTheRightClickAndTheOneOfProcessesOpenItToo(self):
        self.run_with("notes.txt")
        self.menus.click(self.open_menu(button=3), "Preferences…")
        self.window.wait_until_open()
        self.screen.key("Escape")
        self.window.wait_until_closed()
        self.open_menu()
        processes = self.menus.open_submenu("Processes")
        self.menus.click(processes, "Marrowick Preferences…")
        self.window.wait_until_open()

    def test_ItCanBeWorkedByKeysAlone(self):
        self.run_with("notes.txt")
        window = self.open_window()

        def focused():
            try:
                return [each.name() for each in window.all("check box", "push button", "combo box")
                        if "focused" in each.states()]
            except (Gone, IndexError):
                return []

        for _ in range(20):
            if focused() == ["Add a Preference Panes submenu"]:
                break
            before = focused()
            self.screen.key("Tab")
            wait_for(lambda: focused() != before, "the focus to move")
        self.assertEqual(focused(), ["Add a Preference Panes submenu"])
        self.screen.key("space")
        self.wait_for_stored("addPrefPanesSubmenu", "true")
        self.screen.key("Escape")
        window.wait_until_closed()


class Folder(PreferencesCase):
    def setUp(self):
        super().setUp()
        self.chosen = self.desktop.home / "Chosen folder"
        self.addCleanup(empty, self.chosen)
        empty(self.chosen)
        (self.chosen / "Plans").mkdir(parents=True)

    def dialog(self):
        def find():
            application = self.desktop.bus.application(self.program.pid)
            return [each for each in application.children()
                    if each.role() in ("file chooser", "dialog") and "active" in each.states()]
        return wait_for(find, "the folder dialog")[0]

    def choose(self, path):
        """Types a path into the real dialog and confirms it."""
        dialog = self.dialog()
        edits = wait_for(lambda: [each for each in descendants(dialog) if each.role() == "text"], "the field of a name")
        self.assertTrue(edits)
        subprocess.run(["xdotool", "key", "ctrl+a", "type", str(path)], check=True, timeout=60)
        subprocess.run(["xdotool", "key", "Return"], check=True, timeout=60)

    def test_AFolderChosenInTheRealDialogIsStoredWatchedAndPublished(self):
        self.run_with("notes.txt")
        exchange = Exchange()
        window = self.open_window()
        wait_for(exchange.published, "a snapshot")
        window.control("Choose…", "push button").act("Press")
        self.choose(self.chosen)
        self.wait_for_stored("itemsFolderPath", f"'{self.chosen}'")
        wait_for(lambda: window.folder() == str(self.chosen), "the window to show the folder")
        wait_for(lambda: [root["name"] for root in exchange.roots()] == ["Plans"], "the snapshot to follow")
        (self.chosen / "Later").mkdir()
        wait_for(lambda: [root["name"] for root in exchange.roots()] == ["Later", "Plans"],
                 "the chosen folder to be watched")
        self.assertEqual(self.open_menu().titles()[:2], ["Later", "Plans"])

    def test_TheDialogStartsInTheFolderAndCreatesOthers(self):
        self.run_with("notes.txt")
        window = self.open_window()
        window.control("Choose…", "push button").act("Press")
        dialog = self.dialog()

        def creator():
            return [each for each in descendants(dialog)
                    if each.role() == "push button" and each.name() == "Create New Folder"]

        wait_for(creator, "the button that creates a folder")[0].act("Press")
        wait_for((self.items / "New Folder").is_dir, "a folder in the one that the dialog starts in")
        # Its name is being edited.
        subprocess.run(["xdotool", "type", "Drafts"], check=True, timeout=60)
        self.screen.key("Return")
        wait_for((self.items / "Drafts").is_dir, "the folder to get its name")
        self.assertFalse((self.items / "New Folder").exists())
        self.screen.key("Escape")
        window.wait_until_open()
        self.assertEqual(stored("itemsFolderPath"), "")

    def test_CancellingChangesNothing(self):
        self.run_with("notes.txt")
        window = self.open_window()
        window.control("Choose…", "push button").act("Press")
        self.dialog()
        self.screen.key("Escape")
        window.wait_until_open()
        self.assertEqual(stored("itemsFolderPath"), "")
        self.assertEqual(window.folder(), str(self.items))

    def test_TheDialogLeavesTheWindowUsable(self):
        self.run_with("notes.txt")
        window = self.open_window()
        window.control("Choose…", "push button").act("Press")
        self.dialog()
        # Beside each other, since a click reaches what is on top. A window that is blocked hears none.
        subprocess.run(["wmctrl", "-r", "Marrowick Preferences", "-e", "0,0,0,-1,-1"], check=True, timeout=30)
        subprocess.run(["wmctrl", "-r", ":ACTIVE:", "-e", "0,640,0,600,400"], check=True, timeout=30)
        wait_for(lambda: window.checkbox("Add a Desktop submenu").area().x < 100 and self.dialog().area().x > 600,
                 "the windows to stand beside each other")
        window.click(window.checkbox("Add a Desktop submenu"))
        self.wait_for_stored("addDesktopSubmenu", "false")

    def test_RevealShowsTheFolderInTheFileManager(self):
        manager = FileManagerService()
        self.addCleanup(manager.close)
        self.run_with("notes.txt")
        window = self.open_window()
        window.control("Reveal", "push button").act("Press")
        method, uris = manager.wait_for_call()
        self.assertEqual((method, [uri.rstrip("/") for uri in uris]),
                         ("ShowItems", ["file://" + urllib.parse.quote(os.fspath(self.items))]))


if __name__ == "__main__":
    run()
