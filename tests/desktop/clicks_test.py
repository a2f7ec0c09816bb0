#!/usr/bin/python3
"""Which menu a click on the icon opens."""

from marrowick_desktop import ENDING, SEPARATOR, DesktopCase, LxqtPanel, XfcePanel, holds_for, run

APPLICATION_MENU = ["Preferences…", "Reveal Items Folder", SEPARATOR, "Quit Marrowick"]


class ClicksOnAnEmbeddedIcon(DesktopCase):
    def assertPopsUp(self, modifiers, title):
        menu = self.open_menu(modifiers=modifiers)
        self.assertEqual(menu.title(), title)
        self.menus.close()

    def test_PlainClickOpensTheItems(self):
        self.run_with("notes.txt")
        menu = self.open_menu()
        self.assertEqual((menu.title(), menu.titles()), ("Marrowick", ["notes.txt"] + ENDING))

    def test_ModifiersChooseTheMenu(self):
        self.run_with("notes.txt")
        for modifiers, title in ((["Shift"], "Desktop"), (["Super"], "Processes"), (["Shift", "Super"], "Desktop"),
                                 (["Control"], "Marrowick"), (["Alt"], "Marrowick"),
                                 (["Control", "Alt", "Super"], "Processes")):
            with self.subTest(modifiers=modifiers):
                self.assertPopsUp(modifiers, title)

    def test_RightClickOpensTheApplicationMenuWhateverModifiersAreHeld(self):
        self.run_with("notes.txt")
        for modifiers in ([], ["Shift"], ["Super"], ["Shift", "Super"], ["Control"], ["Alt"]):
            with self.subTest(modifiers=modifiers):
                menu = self.open_menu(button=3, modifiers=modifiers)
                self.assertEqual(menu.titles(), APPLICATION_MENU)
                self.menus.close()

    def test_SecondClickOnTheIconClosesTheMenu(self):
        self.run_with("notes.txt")
        for _ in range(2):
            self.open_menu()
            self.click_icon()
            self.menus.wait_for_depth(0)
            holds_for(lambda: not self.menus.open_menus(), 0.6, "the menu stays closed")

    def test_MenuWithoutEntriesIsOnTheScreenAndAClickElsewhereClosesIt(self):
        self.run_with()
        self.desktop.set("ignoreEmptyItemsFolder", "true")
        menu = self.open_menu(modifiers=["Shift"])
        self.assertGreater(min(menu.area().width, menu.area().height), 0)
        self.screen.click(20, self.screen.size[1] - 20)
        self.menus.wait_for_depth(0)

    def test_MiddleClickOpensNothing(self):
        self.run_with("notes.txt")
        self.click_icon(button=2)
        self.assertEqual(self.items_titles(), ["notes.txt"])


class ClicksOnAPanelIcon:
    """The same with a panel that is told about the icon over the bus."""

    def test_PlainClickOpensTheItems(self):
        self.run_with("notes.txt")
        self.assertEqual(self.open_menu().titles(), ["notes.txt"] + ENDING)

    def test_ModifiersChooseTheMenu(self):
        self.run_with("notes.txt")
        for modifiers, title in ((["Shift"], "Desktop"), (["Super"], "Processes"), (["Shift", "Super"], "Desktop"),
                                 (["Alt"], "Marrowick")):
            with self.subTest(modifiers=modifiers):
                self.assertEqual(self.open_menu(modifiers=modifiers).title(), title)
                self.menus.close()

    def test_SecondClickOnTheIconClosesTheMenu(self):
        self.run_with("notes.txt")
        for _ in range(2):
            self.open_menu()
            self.click_icon()
            self.menus.wait_for_depth(0)
            holds_for(lambda: not self.menus.open_menus(), 0.6, "the menu stays closed")


class ClicksInXfce(ClicksOnAPanelIcon, DesktopCase):
    host_type = XfcePanel


class ClicksInLxqt(ClicksOnAPanelIcon, DesktopCase):
    host_type = LxqtPanel


if __name__ == "__main__":
    run()
