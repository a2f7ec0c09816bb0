#!/usr/bin/python3
"""Status areas that come, go and sit at every edge of the screen."""

from marrowick_desktop import ENDING, DesktopCase, LxqtPanel, Trayer, XfcePanel, run, wait_for


class HostCase(DesktopCase):
    """Each test starts the status areas it needs."""

    host_type = None

    def start_host(self, host_type, **options):
        self.host = host_type(self.screen, self.desktop.logs, **options).start()
        self.addCleanup(self.stop_host, self.host)
        return self.host

    @staticmethod
    def stop_host(host):
        if host.process.runs():
            host.stop()

    def assertWorks(self):
        """The icon is there, and a click on it opens the items."""
        self.assertEqual(self.open_menu().titles(), ["notes.txt"] + ENDING)
        self.menus.close()

    def start_without_host(self):
        fill_and_start(self)
        wait_for(lambda: status_area_lines(self.program), "a line about the missing status area")


def fill_and_start(case):
    (case.items / "notes.txt").write_text("text\n")
    case.switch_generated_off()
    case.start()


def status_area_lines(program):
    return [line for line in program.lines() if "status area" in line.lower()]


class Appearing(HostCase):
    def test_IconIsThereAsSoonAsAStatusAreaIs(self):
        for host_type in (Trayer, XfcePanel, LxqtPanel):
            with self.subTest(host=host_type.__name__):
                self.start_without_host()
                host = self.start_host(host_type)
                self.assertWorks()
                self.assertEqual(len(status_area_lines(self.program)), 1, self.program.log())
                self.program.stop()
                self.program = None
                host.stop()

    def test_IconComesBackWithARestartedStatusArea(self):
        for host_type in (Trayer, XfcePanel, LxqtPanel):
            with self.subTest(host=host_type.__name__):
                self.start_host(host_type)
                fill_and_start(self)
                self.assertWorks()
                self.host.kill()
                self.start_host(host_type)
                self.assertWorks()
                self.host.stop()
                host = self.start_host(host_type)
                self.assertWorks()
                self.program.stop()
                self.program = None
                host.stop()

    def test_IconMovesToAStatusAreaOfTheOtherKind(self):
        self.start_without_host()
        for host_type in (Trayer, LxqtPanel, XfcePanel, Trayer):
            with self.subTest(host=host_type.__name__):
                host = self.start_host(host_type)
                self.assertWorks()
                host.stop()

    def test_StatusAreaKilledUnderAnOpenMenuDoesNoHarm(self):
        self.start_host(Trayer)
        fill_and_start(self)
        self.open_menu()
        self.host.kill()
        self.assertTrue(self.program.runs())
        self.menus.close()
        self.start_host(Trayer)
        self.assertWorks()


class Placement(HostCase):
    """The menu opens beside the icon, on the screen."""

    def menu_and_icon(self):
        fill_and_start(self)
        icon = self.host.icon(self.program.pid)
        menu = self.open_menu().area()
        width, height = self.screen.size
        self.assertGreaterEqual(min(menu.x, menu.y), 0)
        self.assertLessEqual(menu.x + menu.width, width)
        self.assertLessEqual(menu.y + menu.height, height)
        return menu, icon

    def test_BelowAnIconAtTheTop(self):
        for align in ("left", "right"):
            with self.subTest(align=align):
                self.start_host(Trayer, edge="top", align=align)
                menu, icon = self.menu_and_icon()
                self.assertLess(abs(menu.y - (icon.y + icon.height)), 8)
                self.assertLess(menu.x, icon.x + icon.width)
                self.assertGreater(menu.x + menu.width, icon.x)
                self.program.stop()
                self.program = None
                self.host.stop()

    def test_AboveAnIconAtTheBottom(self):
        self.start_host(Trayer, edge="bottom")
        menu, icon = self.menu_and_icon()
        self.assertLess(abs(menu.y + menu.height - icon.y), 8)

    def test_BesideAnIconAtTheLeft(self):
        self.start_host(Trayer, edge="left", align="center")
        menu, icon = self.menu_and_icon()
        self.assertLess(menu.x, icon.x + icon.width + 8)
        self.assertFalse(overlap(menu, icon))

    def test_BesideAnIconAtTheRight(self):
        self.start_host(Trayer, edge="right", align="center")
        menu, icon = self.menu_and_icon()
        self.assertFalse(overlap(menu, icon))

    def test_AboveAPanelAtTheBottomThatTellsNoPlace(self):
        self.start_host(LxqtPanel)
        menu, _ = self.menu_and_icon()
        panel = self.host.panel_area()
        self.assertLessEqual(menu.y + menu.height, panel.y + 2)

    def test_BelowAPanelAtTheTopThatTellsNoPlace(self):
        self.start_host(XfcePanel)
        menu, _ = self.menu_and_icon()
        panel = self.host.panel_area()
        self.assertGreaterEqual(menu.y, panel.y + panel.height - 2)

    def test_TallMenuOfABottomPanelKeepsItsEntriesOnTheScreen(self):
        self.start_host(Trayer, edge="bottom")
        for number in range(120):
            (self.items / f"{number}.txt").touch()
        menu, icon = self.menu_and_icon()
        self.assertFalse(overlap(menu, icon))


class PanelsOwnMenu(HostCase):
    """Panels that keep right clicks show the application menu themselves."""

    def test_RightClickOffersTheApplicationMenu(self):
        for host_type in (XfcePanel, LxqtPanel):
            with self.subTest(host=host_type.__name__):
                host = self.start_host(host_type)
                fill_and_start(self)
                before = set(map(str, self.screen.popups()))
                self.click_icon(button=3)
                wait_for(lambda: set(map(str, self.screen.popups())) - before, "a menu of the panel")
                self.screen.key("Up")
                self.screen.key("Return")
                self.assertEqual(self.program.wait(), 0)
                self.program.check_log()
                self.program = None
                host.stop()


def overlap(a, b):
    return a.x < b.x + b.width and b.x < a.x + a.width and a.y < b.y + b.height and b.y < a.y + a.height


if __name__ == "__main__":
    run()
