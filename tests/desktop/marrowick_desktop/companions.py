"""The base of the tests with real file managers."""

import os
import unittest

from .cases import ExchangeCase
from .desktop import fill
from .file_managers import PLACE, reason_for_none
from .recorders import RecordingScripts


class CompanionCase(ExchangeCase):
    """An items folder with all that a selection matters to, a folder to work on, and file managers to show it."""

    ITEMS = ("always.txt", "with.txt---f", "without.txt---N", "Inbox---X/", "Templates---C/letter.txt")
    plain = ["always.txt", "Inbox", "script.sh", "Templates", "without.txt"]
    selecting = ["always.txt", "Inbox", "script.sh", "with.txt"]

    @classmethod
    def setUpClass(cls):
        reason = reason_for_none()
        if reason:
            raise unittest.SkipTest(reason)
        super().setUpClass()

    def setUp(self):
        super().setUp()
        self.inbox = self.items / "Inbox---X"
        self.script = self.items / "script.sh"
        self.scripts = RecordingScripts(self.desktop.place)

    def work_on(self, *names):
        """Makes these files in the folder, and starts the program."""
        for name in names:
            path = os.fsencode(self.work) + b"/" + os.fsencode(name)
            with open(path, "wb") as stream:
                stream.write(b"This is " + os.path.basename(path) + b".\n")
        self.items.mkdir(parents=True, exist_ok=True)
        self.scripts.write(self.script)
        self.publish(*self.ITEMS)

    def show(self, kind, folder=None, place=PLACE, **about):
        """Starts a file manager on a folder."""
        manager = kind(self.desktop, place)
        manager.start(folder or self.work, **about)
        self.addCleanup(manager.close)
        return manager

    def in_work(self, *names):
        return [self.work / name for name in names]

    def question_on(self, *names, folder="Inbox---X"):
        """Chooses the folder in the menu, and returns the question, which must be about these items."""
        self.choose("Inbox")
        dialog = self.dialogs.wait_for("Move", "Copy", "Alias", "Cancel")
        self.assertEqual(dialog.texts(), ["Move, copy, or alias?", f"Put {', '.join(names)} into “{folder}”."])
        return dialog

    def answer(self, dialog, answer):
        dialog.press(answer)
        self.dialogs.wait_for_none()
