#!/usr/bin/python3
"""Requests of the file manager's extension, dropped as another program drops them, and what becomes of them."""

import contextlib
import json
import os
import socket

from marrowick_desktop import ExchangeCase, fill, holds_for, run, wait_for, written

ASKED = ("Move Here", "Copy Here", "Alias Here", "Cancel")


class RequestCase(ExchangeCase):
    """One known destination with a folder in it, and files beside it."""

    def setUp(self):
        super().setUp()
        self.publish("Dest/Inside/")
        self.dest = self.items / "Dest"
        fill(self.work, "a.txt", "b.txt", "c.txt")
        self.a, self.b, self.c = (self.work / name for name in ("a.txt", "b.txt", "c.txt"))

    def wait_until_taken(self):
        wait_for(lambda: not self.exchange.waiting(), lambda: f"{self.exchange.waiting()} to be taken")

    def assertTaken(self, *others):
        """A request that comes last has been carried out, so those before it have been looked at."""
        fill(self.work, "last.txt")
        self.exchange.drop("move", self.dest / "Inside", self.work / "last.txt")
        wait_for((self.dest / "Inside/last.txt").exists, "the last request to be carried out")
        self.assertEqual(self.exchange.waiting(), sorted(others))
        (self.dest / "Inside/last.txt").unlink()


class CarryingOut(RequestCase):
    def test_Move(self):
        self.exchange.drop("move", self.dest, self.b, self.a)
        self.wait_for_names(self.dest, "Inside", "a.txt", "b.txt")
        self.assertEqual((self.dest / "a.txt").read_text(), "This is a.txt.\n")
        self.wait_for_names(self.work, "c.txt")
        self.wait_until_taken()
        self.assertEqual(self.dialogs.open_dialogs(), [])

    def test_Copy(self):
        self.exchange.drop("copy", self.dest / "Inside", self.a)
        self.wait_for_names(self.dest / "Inside", "a.txt")
        self.assertTaken()
        self.wait_for_names(self.work, "a.txt", "b.txt", "c.txt")

    def test_Alias(self):
        self.exchange.drop("alias", self.dest, self.a)
        self.wait_for_names(self.dest, "Inside", "a alias.txt")
        self.assertEqual(os.readlink(self.dest / "a alias.txt"), str(self.a))

    def test_SameSourceAgainAMissingOneAndTheOwnFolderAreSkippedSilently(self):
        inside = self.dest / "own.txt"
        inside.write_text("own\n")
        for op in ("move", "alias"):
            self.exchange.drop(op, self.dest, inside, self.work / "missing", "relative", "", str(self.a) + "\0")
        self.exchange.drop("move", self.dest, self.a, self.a)
        self.assertTaken()
        self.wait_for_names(self.dest, "Inside", "a.txt", "own.txt")
        self.exchange.drop("copy", self.dest, inside)
        self.wait_for_names(self.dest, "Inside", "a.txt", "own.txt", "own 2.txt")
        self.assertEqual(self.dialogs.open_dialogs(), [])
        self.assertEqual(self.own_lines(), [])

    def test_OtherKeysAreIgnored(self):
        self.exchange.drop("move", self.dest, self.a, version=2, more={"op": "copy"})
        self.wait_for_names(self.dest, "Inside", "a.txt")

    def test_WhatIsNoRequestIsTakenAndIgnored(self):
        whole = {"op": "move", "dest": str(self.dest), "sources": [str(self.a)]}
        for key in whole:
            self.exchange.drop_bytes(json.dumps({name: value for name, value in whole.items() if name != key}).encode())
        for key, value in (("op", 1), ("op", "Move"), ("dest", None), ("sources", str(self.a)), ("sources", [1])):
            self.exchange.drop_bytes(json.dumps({**whole, key: value}).encode())
        text = json.dumps(whole).encode()
        for content in (b"", text[:-1], text + b"{}", b"\xef\xbb\xbf" + text, b"[" + text + b"]",
                        text.replace(b"a.txt", b"a\xff.txt"), text.replace(b"a.txt", b"\\ud800"), b"[" * 1_000_000):
            self.exchange.drop_bytes(content)
        self.assertTaken()
        self.assertEqual(self.names(self.work), ["a.txt", "b.txt", "c.txt"])
        self.assertEqual(self.names(self.dest), ["Inside"])
        self.assertEqual(self.own_lines(), [])

    def test_WhatHasAnotherNameOrIsNoFileStays(self):
        text = json.dumps({"op": "move", "dest": str(self.dest), "sources": [str(self.a)]})
        outside = self.desktop.place / "outside.json"
        outside.write_text(text)
        for name in ("req.JSON", "req.json.tmp", "json", ".json", "b.txt"):
            self.exchange.drop_bytes(text.encode(), name)
        (self.exchange.requests / "link.json").symlink_to(outside)
        (self.exchange.requests / "folder.json").mkdir()
        (self.exchange.requests / "folder.json/inside.json").write_text(text)
        os.mkfifo(self.exchange.requests / "fifo.json")
        # The whole path would be too long for a socket's address.
        with socket.socket(socket.AF_UNIX) as listener, contextlib.chdir(self.exchange.requests):
            listener.bind("socket.json")
        self.assertTaken("req.JSON", "req.json.tmp", "json", ".json", "b.txt", "link.json", "folder.json", "fifo.json",
                         "socket.json")
        self.assertEqual(self.names(self.work), ["a.txt", "b.txt", "c.txt"])
        self.assertEqual((outside.read_text(), self.names(self.exchange.requests / "folder.json")),
                         (text, ["inside.json"]))
        (self.exchange.requests / "req.JSON").rename(self.exchange.requests / "req.json")
        self.wait_for_names(self.dest, "Inside", "a.txt")

    def test_UnknownDestinationIsOneLineInTheLog(self):
        unknown = [str(self.dest) + "/", str(self.dest).replace("Dest", "dest"), str(self.work),
                   "/%n%s\n\x1b[31m\x7fé", "", str(self.dest) + "/./Inside"]
        for dest in unknown:
            self.exchange.drop("move", dest, self.a)
        self.assertTaken()
        prefix = "Marrowick: ignoring request for unknown destination "
        shown = [dest.replace("\n", "\\x0A").replace("\x1b", "\\x1B").replace("\x7f", "\\x7F") for dest in unknown]
        self.assertEqual(sorted(self.own_lines()), sorted(prefix + dest for dest in shown))
        self.assertEqual(self.names(self.work), ["a.txt", "b.txt", "c.txt"])

    def test_SnapshotOnDiskDecides(self):
        content = self.exchange.published()
        self.exchange.snapshot.write_bytes(content.replace(b'Z","roots"', b'.5Z","roots"'))
        self.exchange.drop("move", self.dest, self.a)
        self.wait_until_taken()
        wait_for(lambda: self.own_lines() == [
            f"Marrowick: ignoring request for unknown destination {self.dest}"], "the line in the log")
        self.exchange.snapshot.unlink()
        self.exchange.drop("move", self.dest, self.a)
        self.wait_until_taken()
        self.exchange.snapshot.write_bytes(content.replace(written(self.dest), written(self.dest).replace(b"\\/", b"/")))
        self.assertTaken()
        self.assertEqual(len(self.own_lines()), 1)
        self.assertEqual(self.names(self.work), ["a.txt", "b.txt", "c.txt"])
        self.exchange.drop("move", self.dest, self.a)
        self.wait_for_names(self.dest, "Inside", "a.txt")

    def test_TenThousandAtOnceAreEachCarriedOutOnce(self):
        self.program.stop()
        for number in range(10_000):
            (self.work / f"f{number}").touch()
            self.exchange.drop("copy", self.dest / "Inside", self.work / f"f{number}")
        self.start()
        expected = sorted(f"f{number}" for number in range(10_000))
        wait_for(lambda: not self.exchange.waiting(), "all to be taken", deadline=120)
        wait_for(lambda: self.names(self.dest / "Inside") == expected, "each file once")


class LeftOver(RequestCase):
    def test_IsCarriedOutAtTheNextStart(self):
        self.program.stop()
        self.exchange.drop("move", self.dest, self.a)
        self.exchange.drop("ask", self.dest, self.b)
        self.start()
        self.dialogs.wait_for(*ASKED).press("Copy Here")
        self.wait_for_names(self.dest, "Inside", "a.txt", "b.txt")
        self.host.icon(self.program.pid)
        self.assertTaken()

    def test_IsCarriedOutOnceWhereItCannotBeDeleted(self):
        self.program.stop()
        first = self.exchange.drop("copy", self.dest, self.a)
        self.exchange.requests.chmod(0o555)
        self.addCleanup(self.exchange.requests.chmod, 0o755)
        self.start_bound_by_permissions()
        self.wait_for_names(self.dest, "Inside", "a.txt")
        self.exchange.requests.chmod(0o755)
        self.assertTaken(first.name)
        self.wait_for_names(self.dest, "Inside", "a.txt")
        first.unlink()
        self.assertTaken()
        self.exchange.drop("copy", self.dest, self.a, name=first.name)
        self.wait_for_names(self.dest, "Inside", "a.txt", "a 2.txt")


class Asking(RequestCase):
    def ask(self, *sources):
        self.exchange.drop("ask", self.dest, *sources)
        dialog = self.dialogs.wait_for(*ASKED)
        self.assertEqual(dialog.texts()[0], "What would you like to do?")
        return dialog

    def test_ReturnMoves(self):
        dialog = self.ask(self.a)
        self.assertEqual(dialog.texts()[1:], ["“a.txt” → “Dest”"])
        self.screen.key("Return")
        self.wait_for_names(self.dest, "Inside", "a.txt")
        self.wait_for_names(self.work, "b.txt", "c.txt")

    def test_CopyCopies(self):
        dialog = self.ask(self.a, self.b, self.c)
        self.assertEqual(dialog.texts()[1:], ["3 items → “Dest”"])
        dialog.press("Copy Here")
        self.wait_for_names(self.dest, "Inside", "a.txt", "b.txt", "c.txt")
        self.wait_for_names(self.work, "a.txt", "b.txt", "c.txt")

    def test_AliasMakesLinks(self):
        self.ask(self.a, self.b).press("Alias Here")
        self.wait_for_names(self.dest, "Inside", "a alias.txt", "b alias.txt")

    def test_CancelAndEscapeDoNothing(self):
        self.ask(self.a).press("Cancel")
        self.dialogs.wait_for_none()
        self.ask(self.a)
        self.screen.key("Escape")
        self.dialogs.wait_for_none()
        self.assertTaken()
        self.assertEqual(self.names(self.dest), ["Inside"])
        self.wait_for_names(self.work, "a.txt", "b.txt", "c.txt")

    def test_WithoutSourcesItStillAsks(self):
        dialog = self.ask()
        self.assertEqual(dialog.texts()[1:], ["0 items → “Dest”"])
        dialog.press("Move Here")
        self.dialogs.wait_for_none()
        self.assertTaken()

    def test_HostileNameIsShownHarmlessly(self):
        name = "<b>&amp; & \n\u202e.txt"
        (self.work / name).write_text("x\n")
        dialog = self.ask(self.work / name)
        self.assertEqual(dialog.texts()[1:], ["“<b>&amp; & \u240a\ufffd.txt” → “Dest”"])
        dialog.press("Move Here")
        self.wait_for_names(self.dest, "Inside", name)

    def test_FailureAfterTheAnswerNamesTheOperationChosen(self):
        self.ask(self.dest, self.items).press("Copy Here")
        self.assertIn("Marrowick couldn't copy everything", self.dialogs.wait_for("OK").texts())
        self.dialogs.wait_for("OK").press("OK")
        self.dialogs.wait_for_none()

    def test_RequestsThatComeMeanwhileWaitForTheAnswer(self):
        first = self.ask(self.a)
        self.exchange.drop("move", self.dest, self.b)
        self.exchange.drop("ask", self.dest, self.c)
        holds_for(lambda: len(self.exchange.waiting()) == 2 and len(self.dialogs.open_dialogs()) == 1, 0.5,
                  "one question, and nothing is taken")
        first.press("Cancel")
        wait_for(lambda: self.dialogs.texts() == [["What would you like to do?", "“c.txt” → “Dest”"]],
                 "the other question")
        self.dialogs.wait_for(*ASKED).press("Move Here")
        self.wait_for_names(self.dest, "Inside", "b.txt", "c.txt")
        self.assertTaken()

    def test_SnapshotIsNotWrittenMeanwhileButAfterwards(self):
        dialog = self.ask(self.a)
        (self.items / "New").mkdir()
        holds_for(lambda: len(self.exchange.roots()) == 1, 0.3, "the snapshot stays")
        dialog.press("Cancel")
        wait_for(lambda: len(self.exchange.roots()) == 2, "the new folder in the snapshot")

    def test_EndOfTheProgramIsNoAnswer(self):
        self.ask(self.a)
        self.program.stop()
        self.assertEqual(self.names(self.work), ["a.txt", "b.txt", "c.txt"])
        self.assertEqual(self.exchange.waiting(), [])

    def test_WhatWaitsBehindAQuestionAtTheEndIsKeptForTheNextStart(self):
        self.ask(self.a)
        kept = [self.exchange.drop("ask", self.dest, self.b).name, self.exchange.drop("move", self.dest, self.c).name]
        self.program.stop()
        self.assertEqual(self.names(self.work), ["a.txt", "b.txt", "c.txt"])
        self.assertEqual(self.exchange.waiting(), sorted(kept))


class Reporting(RequestCase):
    def test_IntoItself(self):
        inside = self.dest / "Inside"
        self.exchange.drop("move", inside, self.a, self.dest, self.b, self.items, self.c)
        dialog = self.dialogs.wait_for("OK")
        self.assertEqual(dialog.texts(), ["Marrowick couldn't move everything",
                                          "Can't put “Dest” inside itself.\n"
                                          "Can't put “Marrowick Items” inside itself."])
        self.screen.key("Return")
        self.dialogs.wait_for_none()
        self.wait_for_names(inside, "a.txt", "b.txt", "c.txt")

    def test_OntoItselfIsTheFileSystemsError(self):
        self.exchange.drop("copy", self.dest, self.dest)
        dialog = self.dialogs.wait_for("OK")
        title, line = dialog.texts()
        self.assertEqual(title, "Marrowick couldn't copy everything")
        self.assertRegex(line, r"\A“Dest”: [^\n]+\Z")
        dialog.press("OK")
        self.dialogs.wait_for_none()

    def test_DestinationThatIsGone(self):
        gone = self.dest / "Inside"
        gone.rmdir()
        for what in ("nothing", "a file"):
            self.exchange.drop("alias", gone, self.a, self.b)
            dialog = self.dialogs.wait_for("OK")
            title, lines = dialog.texts()
            self.assertEqual(title, "Marrowick couldn't alias everything", what)
            self.assertRegex(lines, r"\A“a.txt”: [^\n]+\n“b.txt”: [^\n]+\Z")
            dialog.press("OK")
            self.dialogs.wait_for_none()
            gone.write_text("a file in its place\n")
        self.assertEqual(gone.read_text(), "a file in its place\n")
        self.wait_for_names(self.work, "a.txt", "b.txt", "c.txt")


if __name__ == "__main__":
    run()
