#!/usr/bin/python3
"""The questions before files are moved, copied, linked, replaced or trashed, and what the answers do."""

import os
import urllib.parse

from marrowick_desktop import FinderCase, holds_for, run, wait_for


def tree(folder):
    """The names in a folder with what they hold; of a link, where it leads."""
    found = {}
    for name in os.listdir(os.fsencode(folder)):
        path = os.path.join(os.fsencode(folder), name)
        if os.path.islink(path):
            found[name] = b"-> " + os.readlink(path)
        else:
            with open(path, "rb") as stream:
                found[name] = stream.read()
    return found


def content(name):
    return b"This is " + name + b".\n"


class TransferCase(FinderCase):
    """A folder without submenu in the menu, called "Inbox"."""

    def setUp(self):
        super().setUp()
        self.inbox = self.items / "Inbox---X"
        self.run_with("Inbox---X/")

    def drop(self, *names):
        """Selects these files, chooses the folder, and returns the question."""
        self.sources = self.select(*names)
        self.choose("Inbox")
        return self.dialogs.wait_for("Move", "Copy", "Alias", "Cancel")

    def assertHas(self, folder, expected):
        wait_for(lambda: tree(folder) == expected, lambda: f"{expected} in {folder}, there is {tree(folder)}")


class MoveCopyOrAlias(TransferCase):
    both = {b"b.txt": content(b"b.txt"), b"a.txt": content(b"a.txt")}

    def ask(self):
        dialog = self.drop("b.txt", "a.txt")
        self.assertEqual(dialog.texts(), ["Move, copy, or alias?", "Put b.txt, a.txt into “Inbox---X”."])
        self.assertEqual(self.menus.open_menus(), [])
        return dialog

    def test_ReturnMoves(self):
        self.ask()
        self.screen.key("Return")
        self.dialogs.wait_for_none()
        self.assertHas(self.inbox, self.both)
        self.assertHas(self.work, {})

    def test_CopyCopies(self):
        self.ask().press("Copy")
        self.dialogs.wait_for_none()
        self.assertHas(self.inbox, self.both)
        self.assertHas(self.work, self.both)

    def test_AliasMakesLinks(self):
        self.ask().press("Alias")
        self.dialogs.wait_for_none()
        self.assertHas(self.inbox, {b"b alias.txt": b"-> " + self.sources[0], b"a alias.txt": b"-> " + self.sources[1]})
        self.assertHas(self.work, self.both)

    def test_EscapeDoesNothing(self):
        self.ask()
        self.screen.key("Escape")
        self.assertNothingHappens()

    def test_CancelDoesNothing(self):
        self.ask().press("Cancel")
        self.assertNothingHappens()

    def assertNothingHappens(self):
        self.dialogs.wait_for_none()
        holds_for(lambda: tree(self.inbox) == {} and tree(self.work) == self.both, 0.1, "nothing is moved")
        self.assertEqual(self.desktop.applications.calls(), [])

    def test_WithoutASelectionTheFolderOpens(self):
        self.select()
        self.choose("Inbox")
        self.assertEqual(self.desktop.applications.wait_for_call(), ["files", str(self.inbox)])

    def test_NamesAreShownHarmlesslyAndKeepTheirBytes(self):
        names = [b"<b>bold<br> &amp; &x.txt", b"new\nline \xe2\x80\xae.txt", b"broken\xff.txt", b"-rf", b"100%41.txt"]
        dialog = self.drop(*names)
        self.assertEqual(dialog.texts()[1], "Put <b>bold<br> &amp; &x.txt, new\u240aline \ufffd.txt, broken\ufffd.txt, "
                                            "-rf, 100%41.txt into “Inbox---X”.")
        dialog.press("Move")
        self.dialogs.wait_for_none()
        self.assertHas(self.inbox, {name: content(name) for name in names})
        self.assertHas(self.work, {})

    def test_FileThatIsGoneIsAnErrorAndTheNextGoesOn(self):
        dialog = self.drop("b.txt", "gone.txt", "a.txt")
        (self.work / "gone.txt").unlink()
        dialog.press("Copy")
        error = self.dialogs.wait_for("OK")
        self.assertIn("gone.txt", " ".join(error.texts()))
        error.press("OK")
        self.dialogs.wait_for_none()
        self.assertHas(self.inbox, self.both)


class Replacing(TransferCase):
    def question(self, name=b"a.txt", answer="Copy"):
        """The question that follows when the name is taken in the folder."""
        (self.inbox / os.fsdecode(name)).write_bytes(b"old\n")
        self.drop(name, "z.txt").press(answer)
        return self.dialogs.wait_for("Replace", "Cancel")

    def test_CancelLeavesBothAndTheNextFileIsStillCopied(self):
        dialog = self.question()
        self.assertEqual(dialog.texts(), ["“a.txt” already exists in “Inbox---X”.", "Do you want to replace it?"])
        dialog.press("Cancel")
        self.dialogs.wait_for_none()
        self.assertHas(self.inbox, {b"a.txt": b"old\n", b"z.txt": content(b"z.txt")})
        self.assertHas(self.work, {name: content(name) for name in (b"a.txt", b"z.txt")})

    def test_EscapeCancels(self):
        self.question(answer="Move")
        self.screen.key("Escape")
        self.dialogs.wait_for_none()
        self.assertHas(self.inbox, {b"a.txt": b"old\n", b"z.txt": content(b"z.txt")})
        self.assertHas(self.work, {b"a.txt": content(b"a.txt")})

    def test_ReturnReplaces(self):
        self.question()
        self.screen.key("Return")
        self.dialogs.wait_for_none()
        self.assertHas(self.inbox, {name: content(name) for name in (b"a.txt", b"z.txt")})

    def test_HostileNameIsShownHarmlessly(self):
        name = b"<i>\n&x\xff</i>".replace(b"/", b":")
        dialog = self.question(name, "Move")
        self.assertEqual(dialog.texts()[0], "“<i>\u240a&x\ufffd<:i>” already exists in “Inbox---X”.")
        dialog.press("Replace")
        self.dialogs.wait_for_none()
        self.assertHas(self.inbox, {name: content(name), b"z.txt": content(b"z.txt")})
        self.assertHas(self.work, {})


class Trashing(FinderCase):
    def setUp(self):
        super().setUp()
        self.trash = self.desktop.home / ".local/share/Trash"

    def ask(self, name):
        """Presses Delete on the entry of the only file, and returns the question."""
        self.run_with()
        path = os.fsencode(self.items) + b"/" + name
        with open(path, "wb") as stream:
            stream.write(b"precious\n")
        self.menus.highlight(self.open_menu().titles()[0])
        self.screen.key("Delete")
        dialog = self.dialogs.wait_for("Move to Trash", "Cancel")
        self.assertEqual(self.menus.open_menus(), [])
        return path, dialog

    def originals(self):
        """Where the files in the trash were."""
        lines = b"\n".join(path.read_bytes() for path in self.trash.glob("info/*.trashinfo")).split(b"\n")
        return [urllib.parse.unquote_to_bytes(line.partition(b"=")[2]) for line in lines if line.startswith(b"Path=")]

    def test_EscapeLeavesTheFile(self):
        path, dialog = self.ask(b"notes.txt")
        self.assertEqual(dialog.texts(), ["Move “notes.txt” to the Trash?"])
        self.screen.key("Escape")
        self.dialogs.wait_for_none()
        holds_for(lambda: os.path.exists(path), 0.2, "the file stays")
        self.assertNotIn(path, self.originals())

    def test_ReturnTrashes(self):
        path, _ = self.ask(b"trashed notes.txt")
        self.screen.key("Return")
        self.dialogs.wait_for_none()
        self.assertIsInTheTrash(path)
        self.assertEqual((self.trash / "files/trashed notes.txt").read_text(), "precious\n")

    def test_HostileNameIsShownHarmlesslyAndTrashed(self):
        path, dialog = self.ask(b"<b>\n&x\xff%41")
        self.assertEqual(dialog.texts(), ["Move “<b>\u240a&x\ufffd%41” to the Trash?"])
        dialog.press("Move to Trash")
        self.assertIsInTheTrash(path)

    def assertIsInTheTrash(self, path):
        wait_for(lambda: not os.path.lexists(path), "the file to go")
        wait_for(lambda: path in self.originals(), lambda: f"{path} among {self.originals()}")


if __name__ == "__main__":
    run()
