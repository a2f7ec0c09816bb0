#!/usr/bin/python3
"""The menu shows what the items folder holds."""

import os
import plistlib

from marrowick_desktop import ENDING, SEPARATOR, DesktopCase, fill, run

PLACEHOLDER = "(Empty — drag items into this folder)"


class Listing(DesktopCase):
    """What stands in the menu, and in which order."""

    def date(self, name, seconds):
        os.utime(self.items / name, (seconds, seconds), follow_symlinks=False)

    def test_ClickListsExactlyTheFolder(self):
        self.run_with("Letters/", "notes.txt", "Zebra.txt", "äpfel.txt", ".hidden.txt")
        self.assertEqual(self.items_titles(), ["äpfel.txt", "Letters", "notes.txt", "Zebra.txt"])

    def test_FileCreatedWhileTheMenuIsClosedIsThereAtTheNextOpening(self):
        self.run_with("first.txt")
        self.assertEqual(self.items_titles(), ["first.txt"])
        fill(self.items, "second.txt")
        self.assertEqual(self.items_titles(), ["first.txt", "second.txt"])
        (self.items / "first.txt").unlink()
        self.assertEqual(self.items_titles(), ["second.txt"])

    def test_FileCreatedInASubmenusFolderIsThereWhenThatSubmenuOpens(self):
        self.run_with("Folder/", "Folder/Inner/one.txt")
        menu = self.open_menu()
        self.assertTrue(menu.entry("Folder").opens_submenu)
        fill(self.items / "Folder", "two.txt")
        inner = self.menus.open_submenu("Folder")
        self.assertEqual(inner.titles(), ["Inner", "two.txt"])
        fill(self.items / "Folder" / "Inner", "three.txt")
        self.menus.click(inner, "Inner")
        self.assertEqual(self.menus.wait_for_depth(3).titles(), ["one.txt", "three.txt"])

    def test_SubmenuThatWasEmptyFillsWhenItOpensAgain(self):
        self.run_with("Folder/", "Other/")
        self.assertEqual([entry.title for entry in self.menus_of("Folder")], [PLACEHOLDER])
        fill(self.items / "Folder", "late.txt")
        self.assertEqual([entry.title for entry in self.menus_of("Folder")], ["late.txt"])

    def menus_of(self, *titles):
        """The entries of a submenu; all menus are closed afterwards."""
        self.open_menu()
        entries = self.menus.open_submenu(*titles).entries()
        self.menus.close()
        return entries

    def test_AlphabeticalOrderCountsNumbersAndPrefixes(self):
        self.run_with("item 10.txt", "item 9.txt", "Item 8.txt", "01)zebra.txt", "zz)apple.txt", "(1)x.txt", "a)")
        self.assertEqual(self.items_titles(), ["(1)x.txt", "zebra.txt", "a)", "Item 8.txt", "item 9.txt",
                                               "item 10.txt", "apple.txt"])

    def test_KindOrderPutsApplicationsBeforeFoldersBeforeFiles(self):
        self.run_with("b file.txt", "Template---C/", "a folder/", "Notes.rtfd/", "Zed.app/", "Line----", "Desk---d")
        self.desktop.set("sortMode", "'kindThenAlphabetical'")
        self.assertEqual(self.items_titles(), ["Zed", SEPARATOR, "a folder", "Desk", "Notes.rtfd", "b file.txt",
                                               "Template"])

    def test_DateOrderPutsTheNewestFirst(self):
        self.run_with("old.txt", "new.txt", "middle/")
        for name, seconds in (("old.txt", 1_000_000), ("middle", 2_000_000), ("new.txt", 3_000_000)):
            self.date(name, seconds)
        self.desktop.set("sortMode", "'dateModified'")
        self.assertEqual(self.items_titles(), ["new.txt", "middle", "old.txt"])

    def test_DateOrderTakesTheLinksOwnDate(self):
        self.run_with("a target.txt", "between.txt")
        os.symlink(self.items / "a target.txt", self.items / "link.txt")
        for name, seconds in (("a target.txt", 3_000_000), ("between.txt", 2_000_000), ("link.txt", 1_000_000)):
            self.date(name, seconds)
        self.desktop.set("sortMode", "'dateModified'")
        self.assertEqual(self.items_titles(), ["a target.txt", "between.txt", "link.txt"])

    def test_UnknownSortModeIsAlphabetical(self):
        self.run_with("b.txt", "a.txt")
        self.date("a.txt", 1_000_000)
        self.desktop.set("sortMode", "'DateModified'")
        self.assertEqual(self.items_titles(), ["a.txt", "b.txt"])

    def test_ExplicitOrderWinsWhateverTheSortMode(self):
        for writing in (plistlib.FMT_XML, plistlib.FMT_BINARY):
            with self.subTest(writing=writing):
                if not self.program:
                    self.run_with("A", "B", "C", "D")
                (self.items / ".mw-info.plist").write_bytes(plistlib.dumps(["B", "A"], fmt=writing))
                for mode in ("alphabetical", "kindThenAlphabetical", "dateModified"):
                    self.desktop.set("sortMode", f"'{mode}'")
                    titles = self.items_titles()
                    self.assertEqual(titles[:2], ["B", "A"])
                    self.assertEqual(sorted(titles[2:]), ["C", "D"])

    def test_OrderFileOfNonsenseLeavesTheListingUnsorted(self):
        names = [f"{letter}.txt" for letter in "qwertyuiopasdfgh"]
        self.run_with(*names)
        (self.items / ".mw-info.plist").write_text("no property list")
        listing = [name for name in os.listdir(self.items) if not name.startswith(".")]
        self.assertEqual(self.items_titles(), listing)

    def test_NameListedTwiceStopsTheProgramAndIsNamedInTheLog(self):
        self.run_with("Folder/A")
        (self.items / "Folder" / ".mw-info.plist").write_bytes(plistlib.dumps(["A", "B", "A"]))
        self.open_menu()
        menu = self.menus.wait_for_depth(1)
        self.menus.click(menu, "Folder")
        self.assertNotEqual(self.program.wait(), 0)
        about = [line for line in self.program.lines() if str(self.items / "Folder") in line]
        self.assertEqual(len(about), 1, self.program.log())
        self.assertRegex(about[0], r"\bA\b")
        self.program = None


class Codes(DesktopCase):
    """What the codes of a name do."""

    def test_CodesAndExtensionsAreNotShown(self):
        self.run_with("Report.pdf---z", "01)Mail.app---z/", "Tool.scpt", "Tool2.SCPT", "Apps---A", "Name---m",
                      "Folder---X---z/")
        self.desktop.set("tossDotScptExtension", "true")
        self.assertEqual(self.items_titles(), ["Mail", "Apps---A", "Folder", "Name", "Report.pdf", "Tool",
                                               "Tool2.SCPT"])

    def test_ExtensionsFollowTheirSettings(self):
        self.run_with("Mail.app/", "Tool.scpt")
        self.assertEqual(self.items_titles(), ["Mail", "Tool.scpt"])
        self.desktop.set("tossDotAppExtension", "false")
        self.assertEqual(self.items_titles(), ["Mail.app", "Tool.scpt"])

    def test_DividersAreSeparatorsEvenWhenDoubledOrAtTheEdge(self):
        self.run_with("01)----", "02)Line---f----", "03)middle.txt", "04)Folder-***/", "05)last.txt", "06)-***")
        self.assertEqual(self.items_titles(), [SEPARATOR, SEPARATOR, "middle.txt", SEPARATOR, "last.txt", SEPARATOR])

    def test_PlaceholdersOpenGeneratedSubmenus(self):
        self.run_with("1.)---a", "2.)---d", "3.)---p", "4.)---n", "5.)---R", "6.)Both---d---a")
        titles = ["All Applications", "Desktop", "Processes", "Preference Panes", "Recent Items", "Both"]
        menu = self.open_menu()
        self.assertEqual(menu.titles()[:6], titles)
        for title in titles:
            self.assertTrue(menu.entry(title).opens_submenu, title)

    def test_FolderWithoutSubmenuIsAPlainEntry(self):
        self.run_with("Plain---X/inside.txt", "Bare---x/inside.txt", "Ordinary/inside.txt")
        menu = self.open_menu()
        self.assertEqual([entry.opens_submenu for entry in map(menu.entry, ("Plain", "Bare", "Ordinary"))],
                         [False, False, True])

    def test_InlineFoldersAreFlattened(self):
        self.run_with("1.)In---i/b.txt", "1.)In---i/a.txt", "1.)In---i/Deep---i/deeper.txt", "2.)after.txt")
        self.assertEqual(self.items_titles(), ["a.txt", "b.txt", "deeper.txt", "after.txt"])

    def test_InlineFolderThatLeadsBackIntoItselfEnds(self):
        self.run_with("In---i/a.txt")
        os.symlink(self.items / "In---i", self.items / "In---i" / "back---i")
        os.symlink(self.items, self.items / "In---i" / "top---i")
        self.assertEqual(self.items_titles(), ["a.txt"])

    def test_EmptyTitleIsUntitled(self):
        self.run_with("---z")
        self.assertEqual(self.items_titles(), ["Untitled"])

    def test_SelectionCodesFollowAnEmptySelection(self):
        self.run_with("with---f", "without---N", "text---t", "Templates---C/", "Note---C")
        self.assertEqual(self.items_titles(), ["Note", "Templates", "without"])

    def test_TemplateFileOpensAnEmptySubmenu(self):
        self.run_with("Note---C")
        self.open_menu()
        self.assertEqual(self.menus.open_submenu("Note").titles(), [PLACEHOLDER])

    def test_LinkToAFolderIsASubmenuAndADanglingLinkAFile(self):
        self.run_with("Target/inside.txt")
        os.symlink(self.items / "Target", self.items / "link")
        os.symlink("Target", self.items / "relative")
        os.symlink(self.items / "nowhere", self.items / "dangling")
        menu = self.open_menu()
        self.assertEqual([menu.entry(title).opens_submenu for title in ("link", "relative", "dangling")],
                         [True, True, False])
        self.assertEqual(self.menus.open_submenu("relative").titles(), ["inside.txt"])

    def test_PackageIsASubmenuAndAnApplicationIsNot(self):
        self.run_with("Open.app/inside.txt", "Notes.rtfd/inside.txt")
        menu = self.open_menu()
        self.assertFalse(menu.entry("Open").opens_submenu)
        self.assertTrue(menu.entry("Notes.rtfd").opens_submenu)


class EmptyFolder(DesktopCase):
    """A folder without entries."""

    def test_EmptyItemsFolderSaysSo(self):
        self.run_with()
        menu = self.open_menu()
        self.assertEqual(menu.titles(), [PLACEHOLDER] + ENDING)
        self.assertFalse(menu.entry(PLACEHOLDER).enabled)

    def test_EmptyItemsFolderWithDefaultsIsFollowedByTheGeneratedSubmenus(self):
        self.run_with(generated=True)
        self.assertEqual(self.open_menu().titles(), [PLACEHOLDER, SEPARATOR, "Desktop", "Processes", "Recent Items"]
                         + ENDING)

    def test_IgnoredEmptyItemsFolderLeavesOnlyTheFixedEnding(self):
        self.run_with("Empty/")
        self.desktop.set("ignoreEmptyItemsFolder", "true")
        (self.items / "Empty").rmdir()
        self.assertEqual(self.open_menu().titles(), ENDING)

    def test_IgnoredEmptyFolderOpensASubmenuWithoutEntriesThatCloses(self):
        self.run_with("Empty/", "notes.txt")
        self.desktop.set("ignoreEmptyItemsFolder", "true")
        self.open_menu()
        self.assertEqual(self.menus.open_submenu("Empty").titles(), [])
        self.screen.key("Escape")
        self.menus.wait_for_depth(1)
        self.screen.key("Escape")
        self.menus.wait_for_depth(0)

    def test_EmptyInlineFolderAloneSaysSo(self):
        self.run_with("Nothing---i/")
        self.assertEqual(self.items_titles(), [PLACEHOLDER])

    def test_FolderThatIsGoneIsEmpty(self):
        self.run_with()
        self.items.rmdir()
        self.assertEqual(self.items_titles(), [PLACEHOLDER])


if __name__ == "__main__":
    run()
