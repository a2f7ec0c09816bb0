#!/usr/bin/python3
"""Several real file managers with their companions at once, and such that hang, crash and come later."""

import os
import time

from marrowick_desktop import Area, Caja, CompanionCase, Nautilus, Nemo, Thunar, empty, fill, is_built, run, wait_for

LEFT, RIGHT = Area(10, 60, 620, 560), Area(640, 60, 630, 560)


class Several(CompanionCase):
    def pair(self, first, second):
        """Two file managers beside each other, each with a file selected, the second in front."""
        for kind in (first, second):
            if not is_built(kind):
                self.skipTest(f"no companion was built for {kind.name}")
        self.work_on("a.txt", "b.txt")
        other = self.desktop.place / "other"
        empty(other)
        fill(other, "c.txt")
        managers = self.show(first, place=LEFT), self.show(second, other, place=RIGHT)
        for manager, name in zip(managers, ("b.txt", "c.txt")):
            row = next(area for label, area in manager.wait_for_row_count(2 if manager is managers[0] else 1)
                       if label == name)
            manager.select_rows(row)
        return managers, (self.work / "b.txt", other / "c.txt")

    def assertScriptGets(self, path):
        self.scripts.write(self.script)
        self.choose("script.sh")
        arguments, environment = self.scripts.wait_for_run()
        self.assertEqual(arguments[1:], [os.fsencode(path)])
        self.assertEqual(environment[b"MW_CLICKWIN"], os.fsencode(path.parent))

    def assertFrontAnswers(self, first, second):
        managers, selected = self.pair(first, second)
        self.assertScriptGets(selected[1])
        managers[0].activate()
        self.assertScriptGets(selected[0])
        managers[1].activate()
        self.assertScriptGets(selected[1])

    def test_FrontOneOfThunarAndCajaAnswers(self):
        self.assertFrontAnswers(Thunar, Caja)

    def test_FrontOneOfNemoAndNautilusAnswers(self):
        self.assertFrontAnswers(Nemo, Nautilus)

    def test_OtherOneAnswersWhenTheFrontOneIsKilled(self):
        managers, selected = self.pair(Thunar, Caja)
        managers[1].kill()
        self.assertScriptGets(selected[0])


class Trouble(CompanionCase):
    kind = Thunar

    def setUp(self):
        if not is_built(self.kind):
            self.skipTest(f"no companion was built for {self.kind.name}")
        super().setUp()

    def shown(self):
        manager = self.show(self.kind)
        manager.select_rows(manager.wait_for_rows("a.txt")["a.txt"])
        return manager

    def test_StoppedOneKeepsNoMenuFromOpening(self):
        self.work_on("a.txt")
        manager = self.shown()
        self.assertEqual(self.items_titles(), self.selecting)
        manager.freeze()
        for expected_lines in (1, 1):
            began = time.monotonic()
            self.assertEqual(self.items_titles(), self.plain)
            # Far more than the question may take, and far less than an answer that never comes.
            self.assertLess(time.monotonic() - began, 5)
            self.assertEqual(len(self.own_lines()), expected_lines)
        self.assertIn("AppleEvent timed out", self.own_lines()[0])
        manager.thaw()
        wait_for(lambda: self.items_titles() == self.selecting, "the file manager to be asked again")

    def test_KilledOneIsForgottenAndItsSuccessorAnswers(self):
        self.work_on("a.txt")
        self.shown().kill()
        self.assertEqual(self.items_titles(), self.plain)
        self.shown()
        self.assertEqual(self.items_titles(), self.selecting)
        self.assertEqual(self.own_lines(), [])

    def test_OneThatIsThereBeforeTheProgramAnswers(self):
        fill(self.work, "a.txt")
        self.shown()
        self.work_on("a.txt")
        self.assertEqual(self.items_titles(), self.selecting)


if __name__ == "__main__":
    run()
