#!/usr/bin/python3
"""What choosing an entry does."""

import os
import shutil
import urllib.parse

from marrowick_desktop import DesktopCase, FileManagerService, holds_for, run, wait_for


class Choosing(DesktopCase):
    def assertOpened(self, application, path):
        """The application was started once, with this path, and no menu is open any more."""
        self.assertEqual(self.desktop.applications.wait_for_call(), [application, os.fsdecode(path)])
        self.menus.wait_for_depth(0)
        holds_for(lambda: len(self.desktop.applications.calls()) == 1, 0.1, "started once")

    def test_TextFileOpensInTheDefaultApplication(self):
        self.run_with("notes.txt", "other.txt")
        self.menus.click(self.open_menu(), "notes.txt")
        self.assertOpened("editor", self.items / "notes.txt")

    def test_TextFileWithCodesOpensToo(self):
        self.run_with("01)notes.txt---z")
        self.menus.click(self.open_menu(), "notes.txt")
        self.assertOpened("editor", self.items / "01)notes.txt---z")

    def test_FolderWithoutSubmenuOpensInTheFileManager(self):
        self.run_with("Pictures---X/inside.txt")
        self.menus.click(self.open_menu(), "Pictures")
        self.assertOpened("files", self.items / "Pictures---X")

    def test_EntryOfANestedSubmenuOpens(self):
        self.run_with("Outer/Inner/deep file.txt")
        self.open_menu()
        inner = self.menus.open_submenu("Outer", "Inner")
        self.menus.click(inner, "deep file.txt")
        self.assertOpened("editor", self.items / "Outer/Inner/deep file.txt")

    def test_EntryOfAnInlineFolderOpens(self):
        self.run_with("All---i/file.txt")
        self.menus.click(self.open_menu(), "file.txt")
        self.assertOpened("editor", self.items / "All---i/file.txt")

    def test_LinkToAFileOpens(self):
        self.run_with("real.txt")
        os.symlink(self.items / "real.txt", self.items / "link.txt")
        self.menus.click(self.open_menu(), "link.txt")
        call = self.desktop.applications.wait_for_call()
        self.assertEqual(call[0], "editor")
        self.assertEqual(os.path.realpath(call[1]), str(self.items / "real.txt"))

    def test_NameThatIsNotTextKeepsItsBytes(self):
        self.run_with("z.txt")
        name = os.fsencode(self.items) + b"/a\xff b.txt"
        with open(name, "w") as stream:
            stream.write("text\n")
        menu = self.open_menu()
        self.menus.click(menu, menu.titles()[0])
        self.assertOpened("editor", name)

    def test_ReturnChoosesTheHighlightedEntry(self):
        self.run_with("a.txt", "b.txt")
        self.open_menu()
        self.menus.highlight("b.txt")
        self.screen.key("Return")
        self.assertOpened("editor", self.items / "b.txt")

    def test_AccessibilityClientChoosesAnEntryAndTheMenusClose(self):
        self.run_with("notes.txt")
        entry = self.open_menu().entry("notes.txt")
        entry.accessible.act("Press")
        self.assertOpened("editor", self.items / "notes.txt")

    def test_AccessibilityClientChoosesAnEntryOfASubmenu(self):
        self.run_with("Folder/notes.txt")
        self.open_menu()
        self.menus.open_submenu("Folder").entry("notes.txt").accessible.act("Press")
        self.assertOpened("editor", self.items / "Folder/notes.txt")

    def test_ChoosingTheEmptyFoldersEntryDoesNothing(self):
        self.run_with()
        menu = self.open_menu()
        self.menus.click(menu, menu.titles()[0])
        holds_for(lambda: not self.desktop.applications.calls(), 0.2, "nothing is opened")
        self.assertTrue(self.program.runs())

    def test_FileThatIsGoneWhenItIsChosenDoesNothing(self):
        self.run_with("gone.txt", "there.txt")
        menu = self.open_menu()
        (self.items / "gone.txt").unlink()
        self.menus.click(menu, "gone.txt")
        self.menus.wait_for_depth(0)
        self.menus.click(self.open_menu(), "there.txt")
        self.assertOpened("editor", self.items / "there.txt")

    def test_ClickOutsideClosesTheMenuWithoutAChoice(self):
        self.run_with("notes.txt")
        self.open_menu()
        self.screen.click(20, self.screen.size[1] - 20)
        self.menus.wait_for_depth(0)
        self.assertEqual(self.desktop.applications.calls(), [])


class ItemsFolder(DesktopCase):
    """The commands of the program itself."""

    def setUp(self):
        super().setUp()
        self.manager = FileManagerService()
        self.addCleanup(self.manager.close)

    def uri(self, path):
        return "file://" + urllib.parse.quote(str(path))

    def revealed(self):
        method, uris = self.manager.wait_for_call()
        return method, [uri.rstrip("/") for uri in uris]

    def test_RevealItemsFolderSelectsItInTheFileManager(self):
        self.run_with("notes.txt")
        self.menus.click(self.open_menu(button=3), "Reveal Items Folder")
        self.assertEqual(self.revealed(), ("ShowItems", [self.uri(self.items)]))

    def test_RevealItemsFolderMakesItAgainWhenItIsGone(self):
        self.run_with("notes.txt")
        shutil.rmtree(self.items.parent)
        self.menus.click(self.open_menu(button=3), "Reveal Items Folder")
        self.assertEqual(self.revealed(), ("ShowItems", [self.uri(self.items)]))
        self.assertTrue(self.items.is_dir())

    def test_ScriptWithAltHeldIsShownInItsFolderAndOpenedInTheEditor(self):
        self.run_with("run me.sh")
        script = self.items / "run me.sh"
        script.write_text(f"touch '{self.items.parent}/ran'\n")
        self.menus.click(self.open_menu(), "run me.sh", modifiers=["Alt"])
        self.assertEqual(self.revealed(), ("ShowItems", [self.uri(script)]))
        calls = wait_for(lambda: len(self.desktop.applications.calls()) == 2 and self.desktop.applications.calls(),
                         "the folder and the editor to open")
        self.assertEqual(sorted(calls), [["editor", str(script)], ["files", str(self.items)]])
        self.assertFalse((self.items.parent / "ran").exists())

    def assertQuits(self, button):
        self.run_with("notes.txt")
        self.menus.click(self.open_menu(button=button), "Quit Marrowick")
        self.assertEqual(self.program.wait(), 0)
        self.program.check_log()
        self.program = None

    def test_QuitOfTheItemsMenuEndsTheProgramWithStatusZero(self):
        self.assertQuits(button=1)

    def test_QuitOfTheApplicationMenuEndsTheProgramWithStatusZero(self):
        self.assertQuits(button=3)


if __name__ == "__main__":
    run()
