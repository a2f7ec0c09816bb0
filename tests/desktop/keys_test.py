#!/usr/bin/python3
"""Keys in an open menu."""

import urllib.parse

from marrowick_desktop import DesktopCase, FileManagerService, centre, holds_for, run, wait_for


class KeyCase(DesktopCase):
    """A menu of three entries, with the first file highlighted, and a file manager that remembers."""

    names = ("alpha.txt", "beta.txt", "Folder/inside.txt")

    def setUp(self):
        super().setUp()
        self.manager = FileManagerService()
        self.addCleanup(self.manager.close)

    def uri(self, name):
        return "file://" + urllib.parse.quote(str(self.items / name))

    def open_at(self, title="alpha.txt"):
        """Opens the menu and highlights an entry."""
        if not self.program:
            self.run_with(*self.names)
        self.manager.calls.clear()
        menu = self.open_menu()
        if title:
            self.menus.highlight(title)
        return menu

    def assertAsked(self, method, name):
        called, uris = self.manager.wait_for_call()
        self.assertEqual((called, [uri.rstrip("/") for uri in uris]), (method, [self.uri(name)]))
        holds_for(lambda: len(self.manager.calls) == 1, 0.05, "the file manager is asked once")

    def assertStaysOpen(self, depth=1):
        holds_for(lambda: len(self.menus.open_menus()) == depth, 0.15, f"{depth} open menus")
        self.assertEqual(self.manager.calls, [])
        self.assertEqual(self.desktop.applications.calls(), [])


class KeyTable(KeyCase):
    """Every row of the table of action keys."""

    def test_RevealKeysRevealAndClose(self):
        for keys in (["r"], ["g"], ["Super", "r"], ["Super", "x"], ["Super", "BackSpace"], ["Super", "q"],
                     ["Super", "comma"], ["Super", "Tab"]):
            with self.subTest(keys=keys):
                self.open_at("beta.txt")
                self.screen.key(*keys)
                self.menus.wait_for_depth(0)
                self.assertAsked("ShowItems", "beta.txt")
        self.assertTrue(self.program.runs())

    def test_InformationKeysOpenTheInformationWindowAndClose(self):
        for keys in (["i"], ["Super", "Alt", "x"], ["Super", "Alt", "r"]):
            with self.subTest(keys=keys):
                self.open_at("beta.txt")
                self.screen.key(*keys)
                self.menus.wait_for_depth(0)
                self.assertAsked("ShowItemProperties", "beta.txt")

    def test_TrashKeysAskAndClose(self):
        for keys in (["Delete"], ["BackSpace"], ["Super", "Alt", "Control", "x"]):
            with self.subTest(keys=keys):
                self.open_at("beta.txt")
                self.screen.key(*keys)
                dialog = self.dialogs.wait_for("Move to Trash", "Cancel")
                self.assertEqual(dialog.texts(), ["Move “beta.txt” to the Trash?"])
                self.assertEqual(self.menus.open_menus(), [])
                self.screen.key("Escape")
                self.dialogs.wait_for_none()
                self.assertTrue((self.items / "beta.txt").exists())
        self.assertEqual(self.manager.calls, [])

    def test_PreviewAndInfoKeysCloseAndLeaveTheFileManagerAlone(self):
        for keys in (["p"], ["q"], ["Super", "Alt", "Shift", "x"], ["Tab"]):
            with self.subTest(keys=keys):
                self.open_at()
                self.screen.key(*keys)
                self.menus.wait_for_depth(0)
                self.assertEqual(self.manager.calls, [])
                self.assertEqual(self.desktop.applications.calls(), [])

    def test_OtherCombinationsAreNoActionKeys(self):
        for keys in (["Super", "Alt", "Control", "Shift", "x"], ["Shift", "r"], ["Control", "r"], ["Alt", "r"],
                     ["Super", "Shift", "r"], ["Super", "Control", "r"], ["Alt", "Shift", "p"], ["Control", "i"],
                     ["x"], ["F5"]):
            with self.subTest(keys=keys):
                menu = self.open_at()
                self.screen.key(*keys)
                self.assertStaysOpen()
                self.assertEqual(menu.highlighted(), "alpha.txt")
                self.menus.close()

    def test_ActionKeyWithoutAHighlightIsSwallowed(self):
        self.run_with("report.txt", "index.txt", "page.txt", "queue.txt")
        menu = self.open_at(title=None)
        for keys in (["r"], ["i"], ["p"], ["q"], ["Delete"], ["Tab"], ["Super", "x"], ["Super", "q"],
                     ["Super", "Alt", "x"]):
            with self.subTest(keys=keys):
                self.screen.key(*keys)
                self.assertStaysOpen()
                self.assertIsNone(menu.highlighted())

    def test_ActionKeyOnTheEmptyFoldersEntryIsSwallowed(self):
        self.names = ()
        menu = self.open_at(title=None)
        self.screen.move(*centre(menu.entries()[0].area))
        for key in ("i", "r"):
            self.screen.key(key)
            self.assertStaysOpen()

    def test_ActionKeyOnAnEntryOfTheProgramIsSwallowed(self):
        self.open_at("Preferences…")
        self.screen.key("r")
        self.assertStaysOpen()
        self.screen.key("Super", "q")
        self.assertStaysOpen()
        self.assertTrue(self.program.runs())

    def test_KeyGoesToTheDeepestMenuThatHasAHighlight(self):
        self.open_at("Folder")
        self.menus.open_submenu("Folder")
        self.screen.key("r")
        self.menus.wait_for_depth(0)
        self.assertAsked("ShowItems", "Folder")

    def test_KeyInASubmenuActsOnTheEntryHighlightedThere(self):
        self.open_at("Folder")
        self.screen.key("Right")
        inner = self.menus.wait_for_depth(2)
        self.menus.highlight("inside.txt")
        self.assertEqual(inner.highlighted(), "inside.txt")
        self.screen.key("r")
        self.menus.wait_for_depth(0)
        self.assertAsked("ShowItems", "Folder/inside.txt")

    def test_HighlightByThePointerCounts(self):
        menu = self.open_at(title=None)
        self.screen.move(*centre(menu.entry("beta.txt").area))
        wait_for(lambda: menu.highlighted() == "beta.txt", "the highlight to follow the pointer")
        self.screen.key("r")
        self.assertAsked("ShowItems", "beta.txt")


class KeysThatLeaveTheMenuOpen(KeyCase):
    """The same with `immedActionOnKeyPress` off."""

    def setUp(self):
        super().setUp()
        self.desktop.set("immedActionOnKeyPress", "false")

    def test_RevealHappensBehindTheOpenMenu(self):
        menu = self.open_at("beta.txt")
        self.screen.key("r")
        self.assertAsked("ShowItems", "beta.txt")
        self.assertEqual(self.menus.open_menus(), [menu])
        self.assertEqual(menu.highlighted(), "beta.txt")

    def test_PreviewKeyLeavesTheMenuOpen(self):
        self.open_at()
        self.screen.key("p")
        self.assertStaysOpen()


class MovingAround(KeyCase):
    """The keyboard without action keys."""

    def test_ArrowsReturnAndEscapeWorkTheWholeMenu(self):
        menu = self.open_at(title=None)
        self.screen.key("Down")
        wait_for(lambda: menu.highlighted() == "alpha.txt", "Down to highlight the first entry")
        self.screen.key("Up")
        wait_for(lambda: menu.highlighted() == "Quit Marrowick", "Up to go round to the last entry")
        self.menus.highlight("Folder")
        self.screen.key("Right")
        inner = self.menus.wait_for_depth(2)
        wait_for(lambda: inner.highlighted() == "inside.txt", "the submenu's first entry to be highlighted")
        self.screen.key("Left")
        self.menus.wait_for_depth(1)
        self.screen.key("Return")
        self.menus.wait_for_depth(2)
        self.screen.key("Escape")
        self.menus.wait_for_depth(1)
        self.screen.key("Escape")
        self.menus.wait_for_depth(0)
        self.assertEqual(self.desktop.applications.calls(), [])

    def test_TypedLetterGoesToTheNextEntryThatStartsWithIt(self):
        self.names = ("alpha.txt", "banana.txt", "bread.txt", "cake.txt")
        menu = self.open_at(title=None)
        for key, title in (("b", "banana.txt"), ("b", "bread.txt"), ("b", "banana.txt"), ("c", "cake.txt"),
                           ("a", "alpha.txt")):
            self.screen.key(key)
            wait_for(lambda: menu.highlighted() == title, f"{key!r} to highlight {title!r}")

    def test_LetterThatNoEntryStartsWithLeavesTheHighlight(self):
        menu = self.open_at("beta.txt")
        self.screen.key("z")
        self.assertStaysOpen()
        self.assertEqual(menu.highlighted(), "beta.txt")

    def test_ModifierKeysAloneDoNothing(self):
        menu = self.open_at("beta.txt")
        for key in ("Shift_L", "Control_L", "Alt_L", "Super_L"):
            with self.subTest(key=key):
                self.screen.key(key)
                self.assertStaysOpen()
                self.assertEqual(menu.highlighted(), "beta.txt")


if __name__ == "__main__":
    run()
