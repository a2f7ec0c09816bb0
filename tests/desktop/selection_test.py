#!/usr/bin/python3
"""What the file manager shows decides what the menu holds and what a choice does."""

import os
import shutil

from marrowick_desktop import FileManager, FinderCase, RecordingScripts, Shown, holds_for, run, wait_for

HOSTILE = [b"a b.txt", b"quo\"te's.txt", b"new\nline.txt", b"-rf", b"100%25 $HOME `x`.txt", b"broken\xff.txt",
           "ümläut.txt".encode(), b"n" * 251 + b".txt"]


class Entries(FinderCase):
    """Codes that depend on the selection."""

    names = ("always.txt", "with.txt---f", "without.txt---N", "Templates---C/letter.txt")
    plain = ["always.txt", "Templates", "without.txt"]
    selecting = ["always.txt", "with.txt"]

    def test_SelectionAtTheMomentOfTheClickDecides(self):
        self.run_with(*self.names)
        self.assertEqual(self.items_titles(), self.plain)
        self.select("a.txt")
        self.assertEqual(self.items_titles(), self.selecting)
        self.select()
        self.assertEqual(self.items_titles(), self.plain)
        self.manager.tell(Shown("trash:///", ["trash:///a.txt"]))
        self.assertEqual(self.items_titles(), self.plain)
        self.assertEqual(self.own_lines(), [])

    def test_OnlyTheFrontWindowCounts(self):
        first, second = self.manager.open(self.screen), self.manager.open(self.screen)
        self.manager.tell(Shown("/one", ["/one/a.txt"], first), Shown("/two", [], second, active=True))
        self.run_with(*self.names)
        self.bring_up(first, over=second)
        self.assertEqual(self.items_titles(), self.selecting)
        self.bring_up(second, over=first)
        self.assertEqual(self.items_titles(), self.plain)

    def bring_up(self, window, over):
        def is_above():
            stacking = list(self.screen.property(self.screen.root, "_NET_CLIENT_LIST_STACKING"))
            return stacking.index(window) > stacking.index(over)

        self.manager.perform(f"raise {window}")
        wait_for(is_above, "the window to come up")

    def test_EachOpeningAsksTheTwoQuestionsOnce(self):
        self.run_with(*self.names)
        before = self.manager.count()
        for opening in (1, 2):
            self.open_menu()
            self.assertEqual(self.manager.count() - before, 2 * opening)
            self.menus.close()

    def test_HangingFileManagerKeepsNoMenuFromOpening(self):
        self.select("a.txt")
        self.run_with(*self.names)
        self.manager.perform("silent")
        before = self.manager.count()
        for _ in range(3):
            self.assertEqual(self.items_titles(), self.plain)
        self.assertEqual(self.manager.count() - before, 1)
        self.assertEqual(self.own_lines(), [
            'Marrowick: AppleScript error: { NSAppleScriptErrorMessage = "Finder got an error: AppleEvent timed out."; '
            'NSAppleScriptErrorNumber = "-1712"; }'])
        self.manager.perform("release")
        wait_for(lambda: self.items_titles() == self.selecting, "the file manager to be asked again")

    def test_StoppedFileManagerDoesNotHideAHealthyOne(self):
        healthy = FileManager("org.marrowick.FileManager.Healthy")
        self.addCleanup(healthy.close)
        healthy.tell(Shown("/two", ["/two/a.txt"]))
        self.run_with(*self.names)
        self.manager.stop()
        for _ in range(2):
            self.assertEqual(self.items_titles(), self.selecting)
        self.assertEqual(self.own_lines(), [])

    def test_FailureIsWrittenToTheLog(self):
        self.run_with(*self.names)
        self.manager.perform("fail No \x1b[31m windows")
        self.assertEqual(self.items_titles(), self.plain)
        self.assertEqual(self.own_lines(), [
            'Marrowick: AppleScript error: { NSAppleScriptErrorMessage = "Finder got an error: No \\x1B[31m windows"; '
            'NSAppleScriptErrorNumber = "-10000"; }'] * 2)


class Scripts(FinderCase):
    """Scripts learn what is selected and where."""

    def setUp(self):
        super().setUp()
        self.scripts = RecordingScripts(self.desktop.place)

    def script(self, name="script.sh"):
        return self.scripts.write(self.items / name)

    def recorded(self):
        return self.scripts.wait_for_run()

    def test_SelectedFilesAreArgumentsInTheirExactBytes(self):
        self.run_with()
        script = self.script("a 'script'.sh")
        folder = os.fsencode(self.work) + b"/in\n \xff%41"
        items = self.select(*HOSTILE, folder=folder)
        self.choose("a 'script'.sh")
        arguments, environment = self.recorded()
        self.assertEqual(arguments, [script, *items])
        self.assertEqual(environment[b"MW_NARGS"], b"%d" % len(items))
        self.assertEqual(environment[b"MW_CLICKWIN"], folder)

    def test_TwoSelectedFiles(self):
        self.run_with()
        script = self.script()
        items = self.select("z.txt", "a.txt")
        self.choose("script.sh")
        arguments, environment = self.recorded()
        self.assertEqual(arguments, [script, *items])
        self.assertEqual(environment[b"MW_NARGS"], b"2")
        self.assertEqual(environment[b"MW_CLICKWIN"], os.fsencode(self.work))

    def test_WithoutAWindowTheVariableIsAbsentEvenWhereTheProgramHasIt(self):
        self.switch_generated_off()
        script = self.script()
        self.start({"MW_CLICKWIN": "/elsewhere", "MW_NARGS": "9"})
        self.host.icon(self.program.pid)
        for windows in ([], [Shown("trash:///")]):
            with self.subTest(windows=windows):
                self.manager.tell(*windows)
                self.choose("script.sh")
                arguments, environment = self.recorded()
                self.assertEqual(arguments, [script])
                self.assertEqual(environment[b"MW_NARGS"], b"0")
                self.assertNotIn(b"MW_CLICKWIN", environment)
                self.script()

    def test_ScriptsAreOpenedWhereTheyAreNotToBeRun(self):
        self.desktop.set("runScriptFiles", "false")
        self.run_with()
        self.script("script.sh")
        self.select("a.txt")
        (self.items / "script.sh").chmod(0o644)
        self.choose("script.sh")
        self.menus.wait_for_depth(0)
        holds_for(lambda: not self.scripts.has_run(), 0.2, "the script is not run")


class Applications(FinderCase):
    def test_SelectedFilesAreOpenedWithTheChosenApplicationInOneStart(self):
        self.run_with()
        application = self.items / "Viewer.desktop"
        shutil.copy(self.desktop.home / ".local/share/applications/marrowick-test-editor.desktop", application)
        application.chmod(0o755)
        items = self.select("c.txt", "a b.txt", b"broken\xff.txt")
        menu = self.open_menu()
        self.menus.click(menu, menu.titles()[0])
        call = self.desktop.applications.wait_for_call()
        self.assertEqual(call, ["editor", *map(os.fsdecode, items)])
        holds_for(lambda: len(self.desktop.applications.calls()) == 1, 0.2, "started once")


class Templates(FinderCase):
    def test_EntryIsCopiedIntoTheFrontWindowsFolder(self):
        self.run_with("Templates---C/letter.txt", "Templates---C/Project/plan.txt")
        self.manager.tell(Shown(self.work))
        self.choose("Templates", "letter.txt")
        wait_for((self.work / "letter.txt").exists, "the copy")
        self.assertEqual((self.work / "letter.txt").read_text(), "This is letter.txt.\n")
        self.assertTrue((self.items / "Templates---C/letter.txt").exists())
        self.assertEqual(self.desktop.applications.calls(), [])

    def test_TemplateThatIsThereAlreadyIsAskedAbout(self):
        self.run_with("Templates---C/letter.txt")
        (self.work / "letter.txt").write_text("mine\n")
        self.manager.tell(Shown(self.work))
        self.choose("Templates", "letter.txt")
        dialog = self.dialogs.wait_for("Replace", "Cancel")
        self.assertEqual(dialog.texts(), ["“letter.txt” already exists in “work”.", "Do you want to replace it?"])
        dialog.press("Cancel")
        self.dialogs.wait_for_none()
        self.assertEqual((self.work / "letter.txt").read_text(), "mine\n")


if __name__ == "__main__":
    run()
