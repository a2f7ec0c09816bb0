#!/usr/bin/python3
"""Settings, changed from outside while the program runs."""

from marrowick_desktop import ENDING, GENERATED, SEPARATOR, DesktopCase, empty, fill, run


class Settings(DesktopCase):
    def generated(self):
        """The titles between the items and the fixed ending."""
        titles = self.items_titles()
        return titles[1:]

    def test_FreshUserHasTheDefaults(self):
        self.run_with("Mail.app/", "Tool.scpt", generated=True)
        self.assertEqual(self.open_menu().titles(), ["Mail", "Tool.scpt", SEPARATOR, "Desktop", "Processes",
                                                     "Recent Items"] + ENDING)

    def test_EachGeneratedSubmenuFollowsItsSettingAtTheNextOpening(self):
        self.run_with("notes.txt", generated=True)
        titles = dict(zip(GENERATED, ("Desktop", "Processes", "Preference Panes", "Recent Items")))
        self.switch_generated_off()
        self.assertEqual(self.generated(), [])
        for key, title in titles.items():
            with self.subTest(key=key):
                self.desktop.set(key, "true")
                self.assertEqual(self.generated(), [SEPARATOR, title])
                self.desktop.set(key, "false")
        for key in GENERATED:
            self.desktop.set(key, "true")
        self.assertEqual(self.generated(), [SEPARATOR, *titles.values()])

    def test_AllGeneratedSubmenusOffLeavesOneSeparator(self):
        self.run_with("notes.txt")
        self.assertEqual(self.open_menu().titles(), ["notes.txt", SEPARATOR, "Preferences…", "Quit Marrowick"])

    def test_TextInPlaceOfABooleanGivesTheDefault(self):
        self.run_with("notes.txt")
        self.desktop.set("addPrefPanesSubmenu", "'YES'")
        self.desktop.set("addDesktopSubmenu", "'NO'")
        self.assertEqual(self.generated(), [SEPARATOR, "Desktop"])

    def test_NumberCountsAsABoolean(self):
        self.run_with("notes.txt")
        for value, shown in (("1", True), ("0", False), ("uint32 7", True), ("0.0", False), ("byte 0x01", True)):
            with self.subTest(value=value):
                self.desktop.set("addDesktopSubmenu", value)
                self.assertEqual(self.generated(), [SEPARATOR, "Desktop"] if shown else [])

    def test_ItemsFolderIsReadAnewAtEachOpening(self):
        self.run_with("one.txt")
        other = self.desktop.home / "Other items"
        self.addCleanup(empty, other)
        fill(other, "two.txt")
        self.desktop.set("itemsFolderPath", f"'{other}'")
        self.assertEqual(self.items_titles(), ["two.txt"])
        self.desktop.reset_settings()
        self.switch_generated_off()
        self.assertEqual(self.items_titles(), ["one.txt"])

    def test_MissingItemsFolderIsCreatedAtTheStartWithItsParents(self):
        missing = self.desktop.home / "some" / "where" / "Items"
        self.addCleanup(empty, self.desktop.home / "some")
        self.desktop.set("itemsFolderPath", f"'{missing}'")
        self.run_with()
        self.assertTrue(missing.is_dir())
        self.assertEqual(list(missing.iterdir()), [])

    def test_DefaultItemsFolderIsCreatedAtTheStart(self):
        empty(self.items.parent)
        self.switch_generated_off()
        self.start()
        self.host.icon(self.program.pid)
        self.assertEqual(list(self.items.iterdir()), [])

    def test_ItemsFolderThatIsAFileIsLeftAlone(self):
        fill(self.desktop.home, "a file")
        path = self.desktop.home / "a file"
        self.addCleanup(empty, path)
        self.desktop.set("itemsFolderPath", f"'{path}'")
        self.run_with()
        self.assertEqual(self.items_titles(), ["(Empty — drag items into this folder)"])
        self.assertTrue(path.is_file())
        self.assertEqual([line for line in self.program.lines() if "Marrowick: " in line], [])


if __name__ == "__main__":
    run()
