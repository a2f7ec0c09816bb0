#!/usr/bin/python3
"""The program and a real file manager with its companion: what the mouse selects there decides what happens here.

    companions_test.py [WithThunar | WithSanitizedThunar | WithCaja | WithNemo | WithNautilus]
"""

import os
import sys

from marrowick_desktop import Area, Caja, CompanionCase, Nautilus, Nemo, Thunar, empty, fill, run, wait_for

ASKED = ("Move Here", "Copy Here", "Alias Here", "Cancel")
# Each with a part that every file manager shows as it is.
HOSTILE = {"a b": b"a b.txt", "100": b"100%25 #1?.txt", "line": b"new\nline.txt", "broken": b"broken\xff.txt",
           "score": b"under_score.txt", "quo": b"quo\"te's.txt", "ml": "ümläut.txt".encode(), "dash": b"-dash.txt"}
# How often selection and menu change where it matters that nothing piles up; a thousand times take minutes.
ROUNDS = int(os.environ.get("MARROWICK_TEST_ROUNDS", "60"))
OPERATIONS = ["Put Into…", "Move To", "Copy To", "Alias To"]


class Companion:
    """What is the same with each of them."""

    kind = None
    # Whether its own context menu gives its memory back.
    menus_end = True
    # How many folders are offered where memory is looked at.
    folders = 0

    def shown(self, *names, **about):
        """The file manager with these files in a list, and the places of its rows."""
        self.work_on(*names)
        self.manager = self.show(self.kind, **about)
        return self.manager.wait_for_rows(*names)

    def test_SelectionBringsItsEntriesAndTakesThemAlong(self):
        rows = self.shown("a.txt", "b.txt")
        self.assertEqual(self.items_titles(), self.plain)
        self.manager.click_row(rows["b.txt"])
        self.manager.wait_for_selection(*self.in_work("b.txt"))
        self.assertEqual(self.items_titles(), self.selecting)
        self.manager.click_nothing()
        self.manager.wait_for_selection()
        self.assertEqual(self.items_titles(), self.plain)
        self.assertEqual(self.own_lines(), [])

    def test_FolderTakesTheSelectedFilesInTheOrderOfTheView(self):
        rows = self.shown("a.txt", "b.txt", "c.txt", "d.txt")
        self.manager.turn_around()
        # Accessibility clients are not told of the other order.
        rows = dict(zip(reversed(rows), rows.values()))
        self.manager.select_rows(rows["a.txt"], rows["d.txt"], rows["b.txt"])
        self.manager.wait_for_selection(*self.in_work("d.txt", "b.txt", "a.txt"))
        self.answer(self.question_on("d.txt", "b.txt", "a.txt"), "Alias")
        self.wait_for_names(self.inbox, "a alias.txt", "b alias.txt", "d alias.txt")
        self.answer(self.question_on("d.txt", "b.txt", "a.txt"), "Copy")
        aliases = ["a alias.txt", "b alias.txt", "d alias.txt"]
        self.wait_for_names(self.inbox, *aliases, "a.txt", "b.txt", "d.txt")
        self.assertEqual((self.inbox / "d.txt").read_text(), "This is d.txt.\n")
        for name in ("a.txt", "b.txt", "d.txt"):
            (self.inbox / name).unlink()
        self.answer(self.question_on("d.txt", "b.txt", "a.txt"), "Move")
        self.wait_for_names(self.inbox, *aliases, "a.txt", "b.txt", "d.txt")
        self.wait_for_names(self.work, "c.txt")

    def test_IconsDrawnAroundAreArgumentsOfAScriptInTheOrderOfTheView(self):
        self.work_on("a.txt", "b.txt", "c.txt")
        self.manager = self.show(self.kind, icons=True)
        _, second, _ = wait_for(lambda: len(self.manager.icons()) == 3 and self.manager.icons(), "three icons")
        self.manager.draw_around_everything()
        self.manager.wait_for_selection(*self.in_work("a.txt", "b.txt", "c.txt"))
        self.manager.click_icon(second, modifiers=["Control"])
        self.manager.wait_for_selection(*self.in_work("a.txt", "c.txt"))
        self.choose("script.sh")
        arguments, environment = self.scripts.wait_for_run()
        self.assertEqual(arguments, [os.fsencode(path) for path in [self.script, *self.in_work("a.txt", "c.txt")]])
        self.assertEqual(environment[b"MW_NARGS"], b"2")
        self.assertEqual(environment[b"MW_CLICKWIN"], os.fsencode(self.work))

    def test_NamesOfAListKeepTheirBytes(self):
        self.work_on(*HOSTILE.values())
        self.manager = self.show(self.kind)
        rows = self.manager.wait_for_row_count(len(HOSTILE))
        self.manager.click_row(rows[0][1])
        wait_for(lambda: len(self.manager.selected()) == 1, "the first row to be selected")
        # The rows may have moved by then.
        rows = self.manager.wait_for_row_count(len(HOSTILE))
        self.manager.click_row(rows[-1][1], modifiers=["Shift"])
        self.assertArguments([next(name for part, name in HOSTILE.items() if part in label) for label, _ in rows])

    def test_NamesOfIconsKeepTheirBytes(self):
        self.work_on(*HOSTILE.values())
        # Some show it as "Viewer".
        (self.work / "launcher.desktop").write_text("[Desktop Entry]\nType=Application\nName=Viewer\nExec=true\n")
        (self.work / "launcher.desktop").chmod(0o755)
        count = len(HOSTILE) + 1
        self.manager = self.show(self.kind, icons=True)
        wait_for(self.manager.icons, "icons")
        self.manager.draw_around_everything()
        wait_for(lambda: len(self.manager.selected()) == count,
                 lambda: f"{count} selected icons, there are {self.manager.selected()}")
        self.assertArguments([os.path.basename(path) for path in self.manager.selected()])

    def test_ThousandFilesAreArgumentsAndAreMoved(self):
        names = [f"f{number:03}.txt" for number in range(1000)]
        self.work_on(*names)
        self.manager = self.show(self.kind)
        self.manager.click_first_row()
        wait_for(lambda: len(self.manager.selected()) == 1, "the first row to be selected")
        self.screen.key("Control", "a")
        self.manager.wait_for_selection(*self.in_work(*names))
        self.assertEqual(self.items_titles(), self.selecting)
        self.assertArguments([name.encode() for name in names])
        self.manager.open_context_menu_by_keys().open("Move To").choose("Inbox")
        self.wait_for_names(self.inbox, *names)
        self.assertEqual(self.names(self.work), [])

    def assertArguments(self, names):
        """The script is given these, and they are all that the folder holds."""
        self.assertEqual(sorted(names), sorted(os.listdir(os.fsencode(self.work))))
        expected = [os.fsencode(self.work) + b"/" + name for name in names]
        wait_for(lambda: self.manager.selected() == expected,
                 lambda: f"{expected} selected, there is {self.manager.selected()}")
        self.choose("script.sh")
        arguments, environment = self.scripts.wait_for_run()
        self.assertEqual(arguments, [os.fsencode(self.script), *expected])
        self.assertEqual(environment[b"MW_NARGS"], b"%d" % len(names))

    def test_TabOnTheScreenCounts(self):
        rows = self.shown("a.txt", "b.txt")
        self.manager.select_rows(rows["a.txt"])
        self.screen.key("Control", "t")
        self.manager.wait_for_selection()
        self.assertEqual(self.items_titles(), self.plain)
        self.screen.key("Control", "Prior")
        self.manager.wait_for_selection(*self.in_work("a.txt"))
        self.assertEqual(self.items_titles(), self.selecting)

    def test_WindowInFrontCounts(self):
        rows = self.shown("a.txt", "b.txt")
        self.manager.select_rows(rows["b.txt"])
        other = self.desktop.place / "other # 1%"
        empty(other)
        other.mkdir()
        second = self.manager.open_window(other, Area(440, 200, 760, 480))
        self.assertTemplateGoesTo(other)
        self.manager.activate()
        self.assertEqual(self.items_titles(), self.selecting)
        self.manager.activate(second)
        self.assertEqual(self.items_titles(), self.plain)
        self.manager.close_window(second)
        self.assertEqual(self.items_titles(), self.selecting)

    def assertTemplateGoesTo(self, folder):
        self.choose("Templates", "letter.txt")
        self.wait_for_names(folder, "letter.txt")

    def test_MemoryStaysWithSelectionsAndMenus(self):
        self.work_on("a.txt", "b.txt", "c.txt")
        fill(self.inbox, *(f"{number}/" for number in range(self.folders)))
        self.items.joinpath("Changed").mkdir()
        wait_for(lambda: b"Changed" in self.exchange.published(), "a snapshot of all that")
        self.manager = self.show(self.kind, environment={"NO_AT_BRIDGE": "1", "GTK_A11Y": "none"})
        self.manager.click_first_row()
        self.manager.wait_for_selection(self.work / "a.txt")
        self.select_and_open_menus(20)
        before = self.manager.memory()
        self.select_and_open_menus(ROUNDS)
        grown = self.manager.memory() - before
        print(f"{self.kind.name}: {grown // 1024} KiB more after {ROUNDS} rounds", file=sys.stderr)
        self.assertLess(grown, 2 * 1024 * 1024)

    def select_and_open_menus(self, rounds):
        for number in range(rounds):
            self.screen.key("Up" if number % 2 else "Down")
            self.manager.wait_for_selection(self.work / ("a.txt" if number % 2 else "b.txt"))
            if not self.menus_end:
                continue
            self.screen.key("Shift", "F10")
            wait_for(self.manager.menu_windows, "a context menu")
            self.screen.key("Escape")
            wait_for(lambda: not self.manager.menu_windows(), "the context menu to close")

    def test_TemplateIsCopiedIntoTheFolderShown(self):
        self.shown("a.txt")
        self.choose("Templates", "letter.txt")
        self.wait_for_names(self.work, "a.txt", "letter.txt")
        self.manager.wait_for_rows("a.txt", "letter.txt")

    def test_ContextMenuMovesTheSelectedFileThroughARequest(self):
        rows = self.shown("a.txt", "b.txt")
        self.manager.open_context_menu(rows["b.txt"]).open("Move To").choose("Inbox")
        self.wait_for_names(self.inbox, "b.txt")
        self.wait_for_names(self.work, "a.txt")
        self.assertEqual(self.exchange.waiting(), [])
        self.assertEqual(self.dialogs.open_dialogs(), [])

    def test_ContextMenuAsksAboutAllSelectedFiles(self):
        rows = self.shown("a.txt", "b.txt", "c.txt")
        self.manager.select_rows(rows["c.txt"], rows["a.txt"])
        self.manager.wait_for_selection(*self.in_work("a.txt", "c.txt"))
        self.manager.open_context_menu(rows["c.txt"]).open("Put Into…").choose("Inbox")
        dialog = self.dialogs.wait_for(*ASKED)
        self.assertEqual(dialog.texts(), ["What would you like to do?", "2 items → “Inbox---X”"])
        self.answer(dialog, "Copy Here")
        self.wait_for_names(self.inbox, "a.txt", "c.txt")
        self.wait_for_names(self.work, "a.txt", "b.txt", "c.txt")

    def test_ContextMenuIsThatOfTheLatestSnapshot(self):
        rows = self.shown("a.txt")
        self.assertEqual(self.offered(self.manager.open_context_menu()), [])
        self.assertEqual(self.offered(self.manager.open_context_menu(rows["a.txt"])), OPERATIONS)
        # The selection stays as it is, so there is nothing else that file managers would ask anew for.
        self.exchange.snapshot.unlink()
        wait_for(lambda: self.offered() == [], "a menu that offers nothing")
        # Comes as a whole: only what happens directly in the items folder makes a snapshot.
        made = self.items.with_name("Snake_case folder")
        made.joinpath("Inner").mkdir(parents=True)
        made.rename(self.items / made.name)
        wait_for(lambda: self.offered() == OPERATIONS, "a menu that offers the folders again")
        menu = self.manager.open_context_menu_by_keys().open("Copy To")
        self.assertEqual(menu.titles(), ["Inbox", "Snake_case folder"])
        inner = menu.open("Snake_case folder")
        self.assertEqual(inner.titles(), ["“Snake_case folder”", "Inner"])
        inner.choose("Inner")
        self.wait_for_names(self.items / "Snake_case folder/Inner", "a.txt")

    def offered(self, menu=None):
        """What the companion has added to the context menu, which is closed again."""
        menu = menu or self.manager.open_context_menu_by_keys()
        titles = [title for title in menu.titles() if title in OPERATIONS]
        self.manager.close_context_menu()
        return titles


class WithThunar(Companion, CompanionCase):
    kind = Thunar
    # So many that it would show when a menu is not let go of.
    folders = 60


class SanitizedThunar(Thunar):
    """Loads a companion that watches over its own use of memory."""

    companions = "MARROWICK_TEST_SANITIZED_COMPANIONS"
    wrapper = ("env", "LD_PRELOAD=" + os.environ.get("MARROWICK_TEST_PRELOADED", ""))
    # What the file manager itself does not let go of is not looked at.
    environment = {"ASAN_OPTIONS": "detect_leaks=0"}


class WithSanitizedThunar(WithThunar):
    kind = SanitizedThunar
    # Memory that was let go of is kept for a while, to see who uses it nevertheless.
    test_MemoryStaysWithSelectionsAndMenus = None


class WithCaja(Companion, CompanionCase):
    kind = Caja


class WithNemo(Companion, CompanionCase):
    kind = Nemo


class WithNautilus(Companion, CompanionCase):
    kind = Nautilus
    # Without a companion too each opening keeps about 45 KiB.
    menus_end = False


if __name__ == "__main__":
    run()
