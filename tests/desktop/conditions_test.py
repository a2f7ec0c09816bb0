#!/usr/bin/python3
"""Entries that depend on the application in front."""

import subprocess

from marrowick_desktop import DesktopCase, Process, Window, run, wait_for

NAMES = ("always.txt", "editor testeditor-!!!", "not the editor !testeditor-!!!", "browser BROWSER-!!!")


class Conditions(DesktopCase):
    def window(self, program_class):
        window = Window(program_class)
        self.addCleanup(window.close)
        return window

    def test_ActivatingAnotherWindowChangesTheEntries(self):
        editor, browser = self.window("org.example.TestEditor"), self.window("Test-Browser")
        self.run_with(*NAMES)
        editor.activate(self.screen)
        self.assertEqual(self.items_titles(), ["always.txt", "editor"])
        browser.activate(self.screen)
        self.assertEqual(self.items_titles(), ["always.txt", "browser", "not the editor"])
        editor.activate(self.screen)
        self.assertEqual(self.items_titles(), ["always.txt", "editor"])

    def test_ApplicationActiveAtTheStartCounts(self):
        self.window("org.example.TestEditor").activate(self.screen)
        self.run_with(*NAMES)
        self.assertEqual(self.items_titles(), ["always.txt", "editor"])

    def test_WithoutAnyApplicationOnlyNegatedConditionsHold(self):
        self.run_with(*NAMES)
        self.assertEqual(self.items_titles(), ["always.txt", "not the editor"])

    def test_OpeningTheMenuLeavesTheApplicationInFront(self):
        self.window("org.example.TestEditor").activate(self.screen)
        self.run_with(*NAMES)
        for _ in range(2):
            self.assertEqual(self.items_titles(), ["always.txt", "editor"])

    def test_ApplicationThatEndedStaysTheOneInFront(self):
        editor = Window("org.example.TestEditor")
        editor.activate(self.screen)
        self.run_with(*NAMES)
        editor.close()
        wait_for(lambda: not editor.is_listed(self.screen), "the window to be gone")
        self.assertEqual(self.items_titles(), ["always.txt", "editor"])

    def test_ConditionAppliesInASubmenuWhenItOpens(self):
        self.run_with(*("Folder/" + name for name in NAMES))
        self.open_menu()
        self.assertEqual(self.menus.open_submenu("Folder").titles(), ["always.txt", "not the editor"])
        self.menus.close()
        self.window("org.example.TestEditor").activate(self.screen)
        self.open_menu()
        self.assertEqual(self.menus.open_submenu("Folder").titles(), ["always.txt", "editor"])

    def test_IdentifierIsTheDesktopFilesNameWhereThereIsOne(self):
        applications = self.desktop.home / ".local/share/applications"
        entry = applications / "org.example.FullName.desktop"
        entry.write_text("[Desktop Entry]\nType=Application\nName=Some Tool\nExec=true\nStartupWMClass=sometool\n")
        self.addCleanup(entry.unlink)
        tool = self.window("sometool")
        self.run_with("by file fullname-!!!", "by class sometool-!!!")
        tool.activate(self.screen)
        self.assertEqual(self.items_titles(), ["by file"])

    def test_RealProgramIsRecognised(self):
        terminal = Process(["xterm", "-e", "sleep", "600"], self.desktop.new_log("xterm"))
        self.addCleanup(terminal.dispose)
        wait_for(lambda: self.screen.windows("XTerm"), "a terminal")
        subprocess.run(["wmctrl", "-x", "-a", "xterm.XTerm"], check=True, timeout=30)
        self.run_with("terminal xterm-!!!", "other !xterm-!!!")
        self.assertEqual(self.items_titles(), ["terminal"])


if __name__ == "__main__":
    run()
