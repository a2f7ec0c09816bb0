#!/usr/bin/python3
"""The Info window, worked by mouse, by keyboard and as a screen reader works it."""

import os
import subprocess
import urllib.parse

from marrowick_desktop import DesktopCase, FileManagerService, Process, centre, empty, fill, holds_for, run, wait_for
from marrowick_desktop.info import InfoWindow

ABOVE, SKIP_TASKBAR = "_NET_WM_STATE_ABOVE", "_NET_WM_STATE_SKIP_TASKBAR"
UTILITY = "_NET_WM_WINDOW_TYPE_UTILITY"


class InfoCase(DesktopCase):
    names = ("alpha.txt", "beta.png", "Folder/inside.txt")

    def start_program(self):
        self.run_with(*self.names)
        self.info = InfoWindow(self.desktop.bus, self.program.pid, self.screen)

    def show(self, name):
        """Highlights an entry and presses Tab."""
        if not self.program:
            self.start_program()
        self.open_menu()
        self.menus.highlight(name)
        self.screen.key("Tab")
        self.menus.wait_for_depth(0)
        return self.info.wait_until_open(name).wait_for_keys()

    def assertOpen(self):
        holds_for(self.info.frame, 0.15, "the Info window stays")

    def uri(self, path):
        return "file://" + urllib.parse.quote(str(path))


class Contents(InfoCase):
    def test_TextFileShowsItsTextAndWhatItIs(self):
        info = self.show("alpha.txt")
        name, detail, path = info.texts()
        self.assertEqual((name, path), ("alpha.txt", str(self.items / "alpha.txt")))
        size, kind, date = detail.split(" • ")
        self.assertEqual((size, kind), ("19 bytes", "plain text document"))
        self.assertTrue(date.startswith("Modified "), date)
        self.assertEqual(info.preview(), "This is alpha.txt.\n")
        self.assertEqual([each.name() for each in info.parts("push button")], ["Trash", "Reveal", "Get Info", "Dismiss"])

    def test_FolderShowsItsCountAndNoText(self):
        info = self.show("Folder")
        self.assertTrue(info.texts()[1].startswith("1 item • folder • Modified "), info.texts()[1])
        self.assertIsNone(info.preview())

    def test_ASecondItemTakesThePlaceOfTheFirst(self):
        info = self.show("alpha.txt")
        self.show("beta.png")
        self.assertEqual(info.texts()[0], "beta.png")
        self.assertIsNone(info.preview())
        self.assertEqual(len(self.info_windows()), 1)

    def info_windows(self):
        return [window for window in self.screen.windows_of(self.program.pid)
                if (self.screen.property(window, "_NET_WM_NAME") or b"").decode().endswith(" Info")]

    def test_FloatsInTheMiddleWithoutATaskbarEntry(self):
        info = self.show("alpha.txt")
        window = info.x_window()
        names = {self.screen.display.get_atom_name(atom) for kind in ("_NET_WM_STATE", "_NET_WM_WINDOW_TYPE")
                 for atom in self.screen.property(window, kind)}
        self.assertLessEqual({ABOVE, SKIP_TASKBAR, UTILITY}, names)
        x, y = centre(self.screen.area(window))
        width, height = self.screen.size
        self.assertLess(abs(x - width // 2) + abs(y - height // 2), 60)
        self.assertEqual(self.screen.area(window)[2:], (340, 420))

    def test_WithOpenMenusItWaitsForTheKeys(self):
        self.desktop.set("immedActionOnKeyPress", "false")
        self.start_program()
        menu = self.open_menu()
        self.menus.highlight("alpha.txt")
        self.screen.key("Tab")
        self.info.wait_until_open("alpha.txt")
        self.assertEqual(self.menus.open_menus(), [menu])
        self.screen.key("Down")
        wait_for(lambda: menu.highlighted() == "beta.png", "the menu to have the keys")
        self.screen.key("Tab")
        self.info.wait_until_open("beta.png")
        self.assertEqual(self.menus.open_menus(), [menu])
        self.screen.key("Escape")
        self.menus.wait_for_depth(0)
        self.info.wait_for_keys()
        self.screen.key("Escape")
        self.info.wait_until_closed()


class Actions(InfoCase):
    def setUp(self):
        super().setUp()
        self.manager = FileManagerService()
        self.addCleanup(self.manager.close)

    def ways(self, title, keys):
        """A press of a button by each of its keys, by the mouse and by a screen reader."""
        for key in keys:
            yield lambda info, key=key: self.screen.key(key)
        yield lambda info: info.click(info.button(title))
        yield lambda info: info.button(title).act("Press")

    def test_DismissCloses(self):
        for press in self.ways("Dismiss", ["Escape"]):
            press(self.show("alpha.txt"))
            self.info.wait_until_closed()
        self.assertTrue((self.items / "alpha.txt").exists())

    def test_TrashMovesToTheTrashWithoutAQuestionAndCloses(self):
        for press in self.ways("Trash", ["Delete", "BackSpace"]):
            fill(self.items, "alpha.txt")
            press(self.show("alpha.txt"))
            self.info.wait_until_closed()
            wait_for(lambda: not (self.items / "alpha.txt").exists(), "the file to go to the trash")
            self.assertEqual(self.dialogs.open_dialogs(), [])

    def test_RevealLeavesTheWindowOpen(self):
        for press in self.ways("Reveal", ["r"]):
            self.manager.calls.clear()
            press(self.show("alpha.txt"))
            self.assertEqual(self.manager.wait_for_call(), ("ShowItems", [self.uri(self.items / "alpha.txt")]))
            self.assertOpen()

    def test_GetInfoAsksTheFileManagerAndLeavesTheWindowOpen(self):
        for press in self.ways("Get Info", ["i"]):
            self.manager.calls.clear()
            press(self.show("alpha.txt"))
            self.assertEqual(self.manager.wait_for_call(), ("ShowItemProperties", [self.uri(self.items / "alpha.txt")]))
            self.assertOpen()

    def test_DoubleClickOnThePathCopiesItAndCloses(self):
        info = self.show("alpha.txt")
        info.click(info.path(), times=2)
        info.wait_until_closed()
        wait_for(lambda: self.screen.clipboard() == os.fsencode(self.items / "alpha.txt"),
                 lambda: f"the path on the clipboard, there is {self.screen.clipboard()}")

    def test_DoubleClickOnTheIconOpensAndCloses(self):
        info = self.show("alpha.txt")
        info.click(info.icon(), times=2)
        info.wait_until_closed()
        self.assertEqual(self.desktop.applications.wait_for_call(), ["editor", str(self.items / "alpha.txt")])

    def test_SingleClickOnTheIconDoesNothingAndTheWindowWorksOn(self):
        info = self.show("alpha.txt")
        info.click(info.icon())
        self.assertOpen()
        self.assertEqual(self.desktop.applications.calls(), [])
        info.click(info.button("Dismiss"))
        info.wait_until_closed()

    def test_WindowManagerClosesAndTheWindowComesAgain(self):
        info = self.show("alpha.txt")
        subprocess.run(["wmctrl", "-i", "-c", hex(info.x_window().id)], check=True, timeout=30)
        info.wait_until_closed()
        self.show("alpha.txt")
        self.assertTrue(self.program.runs())


class Dragging(InfoCase):
    """The icon, dragged into another program's window."""

    names = ("ä 100%.txt", "other.txt")

    def open_folder(self, command, window_class):
        """Shows an empty folder in a file manager; returns the folder and where its files go."""
        folder = self.desktop.place / "target"
        empty(folder)
        folder.mkdir()
        manager = Process([*command, str(folder)], self.desktop.new_log("file-manager"))
        self.addCleanup(manager.dispose)
        window = wait_for(lambda: self.listed(window_class), f"the window of {command[0]}")
        subprocess.run(["wmctrl", "-i", "-r", hex(window), "-e", "0,20,20,440,600"], check=True, timeout=30)
        wait_for(lambda: self.area(window).x < 60 and self.area(window).height > 500, "the window to move")
        return folder, self.area(window)

    def area(self, number):
        return self.screen.area(self.screen.display.create_resource_object("window", number))

    def listed(self, window_class):
        listed = self.screen.property(self.screen.root, "_NET_CLIENT_LIST")
        mine = {window.id for window in self.screen.windows(window_class)}
        return next((window for window in (() if listed is None else listed) if window in mine), None)

    def drag_to(self, area, modifiers=()):
        info = self.show("ä 100%.txt")
        target = (area.x + area.width * 2 // 3, area.y + area.height * 2 // 3)
        self.screen.drag(centre(info.icon().area()), target, modifiers=modifiers)

    def assertCopied(self, folder):
        wait_for(lambda: os.listdir(folder) == ["ä 100%.txt"], lambda: f"a copy, there is {os.listdir(folder)}")
        wait_for(lambda: (folder / "ä 100%.txt").read_text() == "This is ä 100%.txt.\n", "the copy to be whole")
        self.assertTrue((self.items / "ä 100%.txt").exists())
        self.assertOpen()
        self.info.click(self.info.button("Dismiss"))
        self.info.wait_until_closed()

    def test_ThunarCopiesWhatIsDroppedOnIt(self):
        folder, area = self.open_folder(["thunar"], "Thunar")
        self.drag_to(area, modifiers=["Control"])
        self.assertCopied(folder)

    def test_PcmanfmOffersAllActionsForWhatIsDroppedOnItAndCopies(self):
        folder, area = self.open_folder(["pcmanfm-qt", "--new-window"], "pcmanfm-qt")
        before = len(self.screen.popups())
        self.drag_to(area)
        wait_for(lambda: len(self.screen.popups()) > before, "the question what to do")
        for key in ("Down", "Return"):
            self.screen.key(key)
        self.assertCopied(folder)


if __name__ == "__main__":
    run()
