#!/usr/bin/python3
"""The generated submenus: All Applications, Preference Panes, Recent Items, Desktop."""

import os
import pathlib
import struct
import subprocess
import unittest
import urllib.parse
import zlib

from marrowick_desktop import (SEPARATOR, Exchange, FileManagerService, FinderCase, OwnMounts, SubmenuCase, fill, run,
                               wait_for)

TITLES = ["Programs", "Desktop", "Processes", "Preference Panes", "Recent Items"]
RED = 0xFF0000


def write_picture(path, red, green, blue):
    """A square picture of one colour."""
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    rows = (b"\0" + bytes((red, green, blue)) * 32) * 32
    path.write_bytes(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", 32, 32, 8, 2, 0, 0, 0)) +
                     chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b""))


class InstalledApplications(SubmenuCase):
    def test_TheFiveStandInTheItemsMenu(self):
        self.run_submenus()
        menu = self.open_menu()
        self.assertEqual(menu.titles()[:5], TITLES)
        self.assertTrue(all(entry.opens_submenu for entry in menu.entries()[:5]))

    def test_ApplicationsAreListedByTheirNames(self):
        self.install("org.example.Zoo", "apple")
        self.install("a", "Zebra")
        self.install("b", "App 10")
        self.install("c", "App 9")
        self.install("d", "Same")
        self.install("e", "Same", shared=True)
        self.install("f", "Theirs", shared=True)
        self.install("f", "Mine")
        self.install("g", "Not shown", "NoDisplay=true\n")
        self.install("h", "Deleted", shared=True)
        self.install("h", "Deleted", "Hidden=true\n")
        self.install("i", "Of another desktop", "OnlyShowIn=Other;\n")
        self.install("j", "Not there", "TryExec=marrowick-no-such-program\n")
        self.assertEqual(self.titles("Programs"), ["App 9", "App 10", "apple", "Mine", "Same", "Same", "Test Editor",
                                                   "Test Files", "Zebra"])

    def test_WhatIsInstalledMeanwhileIsThereAtTheNextOpening(self):
        usual = ["Test Editor", "Test Files"]
        self.assertEqual(self.titles("Programs"), usual)
        added = self.install("added", "Added", "Categories=Settings;\n")
        self.assertEqual(self.titles("Programs"), ["Added"] + usual)
        self.assertEqual(self.titles("Preference Panes"), ["Added"])
        added.entry.unlink()
        self.assertEqual(self.titles("Programs"), usual)

    def test_EntryRemovedWhileTheMenuIsOpenDoesNothing(self):
        gone, there = self.install("gone", "Gone"), self.install("there", "There")
        menu = self.open("Programs")
        gone.entry.unlink()
        self.menus.click(menu, "Gone")
        self.assertNothingHappened()
        self.choose_from("Programs", "There")
        there.wait_for_start()
        self.assertFalse(gone.has_started())

    def test_ChosenApplicationIsToldAboutItsStart(self):
        notified = self.install("notified", "Notified", "StartupNotify=true\n")
        plain = self.install("plain", "Plain")
        self.choose_from("Programs", "Notified")
        arguments, variables = notified.wait_for_start()
        self.assertEqual(arguments, [])
        self.assertRegex(variables["DESKTOP_STARTUP_ID"], r"^marrowick-.*_TIME[1-9][0-9]*$")
        self.choose_from("Programs", "Plain")
        self.assertNotIn("DESKTOP_STARTUP_ID", plain.wait_for_start()[1])

    def test_IconIsTheEntrysOwn(self):
        picture = self.place / "red.png"
        write_picture(picture, 255, 0, 0)
        self.install("red", "Red", f"Icon={picture}\n")
        menu = self.open("Programs")
        for title, is_red in (("Red", True), ("Test Editor", False)):
            self.assertEqual(self.colours(menu, title)[1][RED] > 100, is_red, title)

    def test_FileNamesAreShownWhereExtensionsAreKept(self):
        self.install("org.example.Kept", "Kept")
        self.desktop.set("tossDotAppExtension", "false")
        self.assertIn("org.example.Kept.desktop", self.titles("Programs"))

    def test_RevealKeyShowsTheEntrysFile(self):
        manager = FileManagerService()
        self.addCleanup(manager.close)
        shown = self.install("shown", "Shown")
        self.open("Programs")
        self.menus.highlight("Shown")
        self.screen.key("r")
        self.assertEqual(manager.wait_for_call(), ("ShowItems", ["file://" + urllib.parse.quote(str(shown.entry))]))

    def test_PreferencePanesAreTheDesktopsSettings(self):
        self.assertEqual(self.titles("Preference Panes"), ["(Empty — drag items into this folder)"])
        panel = self.install("keyboard", "Keyboard", "Categories=GTK;Settings;HardwareSettings;\n")
        self.install("displays", "displays", "Categories=X-XFCE-SettingsDialog;\n", shared=True)
        self.install("hidden", "Hidden panel", "Categories=Settings;\nNoDisplay=true\n")
        self.install("game", "Game", "Categories=Game;\n")
        menu = self.open("Preference Panes")
        self.assertEqual(menu.titles(), ["displays", "Keyboard"])
        self.menus.click(menu, "Keyboard")
        panel.wait_for_start()


class ApplicationsForTheSelection(FinderCase, SubmenuCase):
    def test_ChosenApplicationGetsTheSelectedFiles(self):
        viewer = self.install("viewer", "Viewer", "StartupNotify=true\n")
        selected = self.select("a b.txt", "ümläut.txt")
        self.choose_from("Programs", "Viewer")
        arguments, variables = viewer.wait_for_start()
        self.assertEqual(arguments, [os.fsdecode(item) for item in selected])
        self.assertIn("DESKTOP_STARTUP_ID", variables)


class RecentItems(SubmenuCase):
    def file(self, path, seconds):
        target = self.desktop.home / path
        fill(self.desktop.home, path)
        os.utime(target, (seconds, seconds))
        return target

    def test_NewestFilesOfTheThreeFoldersComeFirst(self):
        self.file("Documents/old.txt", 1_000_000)
        self.file("Downloads/Report---z.pdf", 4_000_000)
        self.file("Desktop/middle.txt", 3_000_000)
        self.file("Downloads/.hidden.txt", 9_000_000)
        self.file("Documents/Folder/inside.txt", 9_000_000)
        (self.desktop.home / "Desktop/Saved.app").mkdir()
        self.assertEqual(self.titles("Recent Items"), ["Report---z.pdf", "middle.txt", "old.txt"])
        changed = self.file("Documents/old.txt", 5_000_000)
        menu = self.open("Recent Items")
        self.assertEqual(menu.titles()[0], "old.txt")
        self.menus.click(menu, "old.txt")
        self.assertEqual(self.desktop.applications.wait_for_call(), ["editor", str(changed)])

    def test_FifteenAreEnough(self):
        for number in range(20):
            self.file(f"Downloads/{number:02}.txt", 1_000_000 + number)
        self.assertEqual(self.titles("Recent Items"), [f"{number:02}.txt" for number in range(19, 4, -1)])

    def test_ThousandsOfDownloadsAreNotFelt(self):
        for number in range(5_000):
            (self.desktop.home / f"Downloads/{number}.txt").touch()
        self.file("Documents/newest.txt", 9_000_000_000)
        self.run_submenus()
        self.open_menu()
        before = self.used()
        self.menus.open_submenu("Recent Items")
        # Well below what anybody notices, on a slow machine and in a build for finding faults too.
        self.assertLess(self.used() - before, 0.5)
        self.assertEqual(self.menus.wait_for_depth(2).titles()[0], "newest.txt")

    def used(self):
        """The seconds of processor time that the program has used."""
        fields = pathlib.Path(f"/proc/{self.program.pid}/stat").read_text().rpartition(")")[2].split()
        return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


class DesktopFolder(SubmenuCase):
    def test_VolumesComeFirstThenTheDesktop(self):
        fill(self.desktop.home / "Desktop", "02)b.txt---z", "01)a.txt")
        for menu in (self.open("Desktop"), None):
            menu = menu or self.open_menu(modifiers=["Shift"])
            titles = menu.titles()
            self.assertEqual(titles[0], "/")
            self.assertEqual(titles[titles.index(SEPARATOR):], [SEPARATOR, "a.txt", "b.txt"])
            self.assertTrue(menu.entry("/").opens_submenu)
            self.menus.close()

    def test_ControlWhileItOpensLeavesTheVolumesAlone(self):
        fill(self.desktop.home / "Desktop", "a.txt")
        volumes = self.titles("Desktop")
        volumes = volumes[:volumes.index(SEPARATOR)]
        self.assertEqual(self.titles("Desktop", modifiers=["Control"]), volumes)
        menu = self.open_menu(modifiers=["Shift", "Control"])
        self.assertEqual((menu.title(), menu.titles()), ("Desktop", volumes))


class Volumes(SubmenuCase):
    """What is mounted and unmounted while the program runs."""

    @classmethod
    def setUpClass(cls):
        try:
            cls.mounts = OwnMounts()
        except OSError as problem:
            raise unittest.SkipTest(f"this system allows no mounts of one's own: {problem}") from None
        super().setUpClass()

    def test_MountedVolumeIsListedAtTheNextOpeningWithWhatItHolds(self):
        self.assertEqual(self.titles("Desktop"), ["/", SEPARATOR])
        volume = self.mounts.mount("Stick")
        fill(volume, "letter.txt", "Folder/deep.txt")
        menu = self.open("Desktop")
        self.assertEqual(menu.titles(), ["/", "Stick", SEPARATOR])
        self.menus.click(menu, "Stick")
        inner = self.menus.wait_for_depth(3)
        self.assertEqual(sorted(inner.titles()), ["Folder", "letter.txt"])
        self.menus.click(inner, "letter.txt")
        self.assertEqual(self.desktop.applications.wait_for_call(), ["editor", str(volume / "letter.txt")])
        self.mounts.unmount(volume)
        self.assertEqual(self.titles("Desktop"), ["/", SEPARATOR])

    def test_WhatTheSystemMountsForItselfIsNotListed(self):
        inner = self.mounts.place / "Inner"
        inner.mkdir()
        subprocess.run(["mount", "-t", "tmpfs", "memory", inner], check=True)
        try:
            self.assertEqual(self.titles("Desktop"), ["/", SEPARATOR])
        finally:
            self.mounts.unmount(inner)

    def test_VolumeThatDoesNotAnswerDoesNotHoldTheMenu(self):
        fill(self.desktop.home / "Desktop", "a.txt")
        try:
            volume, server = self.mounts.mount_silent("Silent")
        except OSError as problem:
            self.skipTest(f"this system has no file systems of its users: {problem}")
        asking = subprocess.Popen(["stat", str(volume)], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        try:
            self.run_submenus()
            menu = self.open_menu(modifiers=["Shift"])
            self.assertEqual(menu.titles(), ["/", "Silent", SEPARATOR, "a.txt"])
            self.menus.click(menu, "a.txt")
            self.desktop.applications.wait_for_call()
            self.assertIsNone(asking.poll(), "the volume keeps everyone waiting")
        finally:
            os.close(server)
            asking.wait(10)
            self.mounts.unmount(volume)

    @staticmethod
    def published_below(name):
        """The titles directly below a root of the snapshot."""
        return [child["name"] for root in Exchange().roots() or [] if root["name"] == name
                for child in root["children"]]

    def test_WhatLeadsIntoAVolumeThatDoesNotAnswerDoesNotHoldTheMenu(self):
        desktop = self.desktop.home / "Desktop"
        fill(desktop, "a.txt", "Plain/")
        try:
            volume, server = self.mounts.mount_silent(desktop / "Silent")
        except OSError as problem:
            self.skipTest(f"this system has no file systems of its users: {problem}")
        try:
            (desktop / "Link").symlink_to("Silent")
            (desktop / "To plain").symlink_to("Plain")
            for name in ("Deep", "Deep.desktop", "Other.app"):
                (self.items / name).symlink_to(volume / "folder")
            (volume.parent / "Round").symlink_to(self.items / "Deep")
            self.run_submenus()
            for mode in ("alphabetical", "dateModified", "kindThenAlphabetical"):
                with self.subTest(mode):
                    self.desktop.set("sortMode", f"'{mode}'")
                    menu = self.open_menu()
                    for title in ("Deep", "Deep.desktop", "Other"):
                        self.assertFalse(menu.entry(title).opens_submenu)
                    self.menus.close()
                    menu = self.open("Desktop")
                    self.assertEqual({title: menu.entry(title).opens_submenu for title in menu.titles()
                                      if title not in ("/", SEPARATOR)},
                                     {"Silent": True, "Link": False, "Round": False, "a.txt": False, "Plain": True,
                                      "To plain": True})
                    self.menus.close()
            self.choose_from("Desktop", "a.txt")
            self.desktop.applications.wait_for_call()
            # The folders for the file manager's extension are told all the same, and the program ends.
            wait_for(lambda: "Plain" in self.published_below("Desktop"), "a snapshot of the Desktop")
            self.program.stop()
        finally:
            os.close(server)
            self.mounts.unmount(volume)


if __name__ == "__main__":
    run()
