#!/usr/bin/python3
"""How menus look and behave on the screen."""

import os
import unicodedata

from marrowick_desktop import DesktopCase, FolderReads, centre, fill, holds_for, run, wait_for


class Refreshing(DesktopCase):
    """Menus are read from disk when they open, once."""

    def reads(self, folder):
        reads = FolderReads(folder)
        self.addCleanup(reads.close)
        return reads

    def test_MenuIsReadOncePerOpening(self):
        self.run_with("Folder/inside.txt", "notes.txt")
        top, inner = self.reads(self.items), self.reads(self.items / "Folder")
        for opening in (1, 2, 3):
            self.open_menu()
            self.assertEqual((top.count(), inner.count()), (opening, 0))
            self.menus.close()

    def test_SubmenuIsReadWhenItOpensAndOnlyThen(self):
        self.run_with("Outer/Inner/deep.txt", "Other/file.txt")
        outer, inner, other = (self.reads(self.items / name) for name in ("Outer", "Outer/Inner", "Other"))
        self.open_menu()
        self.menus.open_submenu("Outer")
        self.assertEqual((outer.count(), inner.count(), other.count()), (1, 0, 0))
        self.menus.click(self.menus.wait_for_depth(2), "Inner")
        self.menus.wait_for_depth(3)
        self.assertEqual((outer.count(), inner.count(), other.count()), (1, 1, 0))

    def test_SubmenuOpensWhenThePointerRestsOnIt(self):
        self.run_with("Folder/inside.txt")
        menu = self.open_menu()
        self.screen.move(*centre(menu.entry("Folder").area))
        self.assertEqual(self.menus.wait_for_depth(2).titles(), ["inside.txt"])


class Titles(DesktopCase):
    """Names are shown safely."""

    def test_AmpersandsAreShownAsTheyAre(self):
        names = ["&first", "a & b", "a && b", "last&"]
        self.run_with(*names)
        self.assertEqual(sorted(self.items_titles()), sorted(names))

    def test_ControlAndDirectionCharactersDoNotReachTheScreen(self):
        names = ["tab\there.txt", "new\nline.txt", "escape\x1b[31m.txt", "right\u202eto left.txt", "isolate\u2067x.txt",
                 "c1\x85x.txt", "delete\x7fx.txt", "para\u2029graph.txt"]
        self.run_with("plain.txt", *names)
        menu = self.open_menu()
        entries = [entry for entry in menu.entries()][:len(names) + 1]
        height = menu.entry("plain.txt").area.height
        for entry in entries:
            with self.subTest(title=entry.title):
                bad = [c for c in entry.title if unicodedata.category(c) in ("Cc", "Zl", "Zp") or
                       unicodedata.bidirectional(c) in ("RLO", "LRO", "RLE", "LRE", "PDF", "RLI", "LRI", "FSI", "PDI")]
                self.assertEqual(bad, [])
                self.assertEqual(entry.area.height, height)
        self.assertEqual(sorted(entry.title[:2] for entry in entries), sorted(name[:2] for name in ["plain", *names]))

    def test_BrokenTextIsRepaired(self):
        self.run_with("z.txt")
        for name in (b"a\xff\xfe.txt", b"b\xed\xa0\x80.txt", b"\xc3"):
            with open(os.fsencode(self.items) + b"/" + name, "w"):
                pass
        titles = self.items_titles()
        self.assertEqual(len(titles), 4)
        self.assertEqual(sum("\ufffd" in title for title in titles), 3)

    def test_MarkupIsShownAsItIs(self):
        self.run_with("<b>bold<&lt;b>.txt")
        self.assertEqual(self.items_titles(), ["<b>bold<&lt;b>.txt"])

    def test_LongTitleIsShortenedInTheMiddleAndItsTooltipHasTheWholeName(self):
        name = "beginning " + "m" * 200 + " the end.txt"
        self.run_with(name, "short.txt")
        menu = self.open_menu()
        self.assertLess(menu.area().width, self.screen.size[0] // 2 + 100)
        entry = menu.entries()[0]
        self.screen.move(*centre(entry.area))
        tip = wait_for(self.tooltip, "a tooltip")
        self.assertGreater(tip.width, menu.area().width)

    def tooltip(self):
        """The area of the program's tooltip window, or None."""
        for window in self.screen.popups_of(self.program.pid):
            kinds = self.screen.property(window, "_NET_WM_WINDOW_TYPE")
            if kinds is not None and self.screen.display.intern_atom("_NET_WM_WINDOW_TYPE_TOOLTIP") in kinds:
                return self.screen.area(window)
        return None


class TallMenus(DesktopCase):
    """A menu with more entries than the screen has room for."""

    def setUp(self):
        super().setUp()
        self.run_with(*(f"entry {number:03}.txt" for number in range(50)))

    def on_screen(self, area):
        return 0 <= area.y and area.y + area.height <= self.screen.size[1]

    def test_MenuStaysOnTheScreenAndTheKeysReachEveryEnd(self):
        menu = self.open_menu()
        self.assertTrue(self.on_screen(menu.area()))
        self.assertFalse(self.on_screen(menu.entry("entry 049.txt").area))
        self.screen.key("Up")
        wait_for(lambda: menu.highlighted() == "Quit Marrowick", "the last entry to be highlighted")
        wait_for(lambda: self.on_screen(menu.entry("Quit Marrowick").area), "the last entry to scroll into sight")
        self.screen.key("Down")
        wait_for(lambda: self.on_screen(menu.entry("entry 000.txt").area), "the first entry to scroll into sight")

    def test_PointerAtTheEdgeScrollsToTheLastEntry(self):
        menu = self.open_menu()
        area = menu.area()
        bottom = area.y + area.height - 4
        self.screen.move(area.x + area.width // 2, bottom - 40)
        self.screen.move(area.x + area.width // 2, bottom)
        wait_for(lambda: self.on_screen(menu.entry("Quit Marrowick").area), "the last entry to scroll into sight")
        self.menus.click(menu, "entry 049.txt")
        self.assertEqual(self.desktop.applications.wait_for_call(), ["editor", str(self.items / "entry 049.txt")])


class Pictures(DesktopCase):
    """Icons and key equivalents are drawn."""

    def drawn_left_of_title(self, entry):
        area = entry.area
        return self.screen.drawing_in(area._replace(x=area.x + 2, y=area.y + 2, width=26, height=area.height - 4))

    def test_EntriesHaveIconsUnlessTheyAreCodedWithout(self):
        self.run_with("Folder/", "file.txt", "bare.txt---z")
        menu = self.open_menu()
        self.screen.key("End")
        for title, has_icon in (("Folder", True), ("file.txt", True), ("bare.txt", False)):
            with self.subTest(title=title):
                area = wait_for(lambda: self.drawn_left_of_title(menu.entry(title)), "icon") if has_icon else \
                    self.drawn_left_of_title(menu.entry(title))
                self.assertEqual(area is not None, has_icon)
                if has_icon:
                    self.assertLessEqual(max(area.width, area.height), 16)

    def test_KeyEquivalentsStandBesideTheTitles(self):
        self.run_with("notes.txt")
        menu = self.open_menu()
        keys = {entry.title: entry.accessible.key_binding() for entry in menu.entries() if not entry.separator}
        self.assertEqual(keys, {"notes.txt": "", "Preferences…": "Super+,", "Quit Marrowick": "Super+Q"})
        area = menu.entry("Quit Marrowick").area
        right = area._replace(x=area.x + area.width // 2, y=area.y + 2, width=area.width // 2 - 4, height=area.height - 4)
        self.assertIsNotNone(self.screen.drawing_in(right))

    def test_MenuChangesOnlyAtTheNextOpening(self):
        self.run_with("notes.txt")
        menu = self.open_menu()
        before = menu.titles()
        fill(self.items, "another.txt")
        holds_for(lambda: menu.titles() == before, 0.2, "the open menu stays as it is")


if __name__ == "__main__":
    run()
